// The debugging dump of a book entry: a CSV file (RFC 4180) in the temporary
// folder, made of a header and a row with the entry's fields, then a header and
// one row for each of its lines. Dates are "dd.mm.yyyy", amounts use "." as
// decimal sign, Null and Empty are empty fields. It changes nothing.
#pragma once

#include <string>

namespace ldg {

class BookEntry;
class Movements;

// Writes the file under a unique name and returns its path.
std::string DumpBookEntry(const BookEntry& entry, const Movements& lines);

}  // namespace ldg
