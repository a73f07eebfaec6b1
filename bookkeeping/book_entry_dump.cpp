#include "bookkeeping/book_entry_dump.hpp"

#include <fstream>
#include <initializer_list>
#include <string>
#include <vector>

#include "accounts/account.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/movements.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/folders.hpp"
#include "support/sql_text.hpp"

namespace ldg {
namespace {

// A field between double quotes when it holds a separator, a quote or a line break.
std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  return QuoteText(text, "\"");
}

std::string Text(const Variant& value) {
  return value.IsNull() || value.IsEmpty() ? std::string() : CStr(value);
}
std::string Text(int32_t value) { return std::to_string(value); }
std::string Text(bool value) { return value ? "True" : "False"; }
std::string Text(Currency value) { return CurrencyToSqlText(value); }

void WriteRow(std::ofstream& out, const std::vector<std::string>& fields) {
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) out << ',';
    out << CsvField(fields[i]);
  }
  out << "\r\n";
}

void WriteEntry(std::ofstream& out, const BookEntry& entry) {
  WriteRow(out, {"ID", "JournalID", "EntryDate", "DocumentID", "Tag", "Definitive", "DefinitiveNumber",
                 "Marked", "Mark1", "Mark2", "Mark3", "Mark4", "Mark5", "Mark6", "Automatic", "Infotext",
                 "ClientID", "Tags"});
  std::vector<std::string> row = {Text(entry.ID()),
                                  Text(entry.JournalID()),
                                  Text(entry.EntryDate()),
                                  Text(entry.DocumentID()),
                                  Text(entry.Tag()),
                                  Text(entry.DefinitiveKey()),
                                  Text(entry.DefinitiveNumber()),
                                  Text(entry.Marked())};
  for (int32_t i = 1; i <= 6; ++i) row.push_back(Text(entry.Mark(i)));
  for (const std::string& field :
       {Text(entry.Automatic()), entry.Infotext(), Text(entry.ClientID()), entry.Tags()}) {
    row.push_back(field);
  }
  WriteRow(out, row);
}

void WriteLines(std::ofstream& out, const Movements& lines) {
  WriteRow(out, {"ID", "InternalID", "AccountID", "AccountCode", "BalancingAccountID", "Text", "Amount",
                 "FCID", "FCAmount", "Reference", "Valuta", "TaxID", "TaxManual", "IsNetAmount",
                 "DependentMovementID", "IsDependent", "MasterID"});
  for (const auto& line : lines) {
    const std::shared_ptr<Account> account = line->Account();
    WriteRow(out, {Text(line->ID()), Text(line->InternalID()), account ? Text(account->ID()) : std::string(),
                   account ? Text(account->Code()) : std::string(), Text(line->BalancingAccountID()),
                   Text(line->Text()), Text(line->Amount()), Text(line->FCID()), Text(line->FCAmount()),
                   Text(line->Reference()), Text(line->Valuta()), Text(line->TaxID()),
                   Text(line->TaxManual()), Text(line->IsNetAmount()), Text(line->DependentMovementID()),
                   Text(line->IsDependent()), Text(line->MasterID())});
  }
}

}  // namespace

std::string DumpBookEntry(const BookEntry& entry, const Movements& lines) {
  std::string path = TempFilePath("csv");
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) RaiseRuntime(kErrInvalidCall);
  WriteEntry(out, entry);
  WriteLines(out, lines);
  out.close();
  if (!out) RaiseRuntime(kErrInvalidCall);
  return path;
}

}  // namespace ldg
