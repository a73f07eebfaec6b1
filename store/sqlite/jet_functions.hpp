// The SQL functions and the collation that translated statements rely on:
// the collation NOCASE, replaced by text compared with Unicode simple case
// folding (also named "JET"), jet_like(value, pattern) with Jet's wildcards, jet_cat(a, b) for "&", and the aggregate
// jet_first(x), and jet_cur_mul(a, b), the product of two Currency values held
// as ten-thousandths. Every connection the store opens registers them; it also
// switches off SQLite's reading of an unknown double-quoted name as a string.
// Errors inside the functions (an invalid Like pattern, a Currency overflow)
// fail the statement with the message "Invalid pattern string." or
// "integer overflow", as SUM reports its own overflow.
#pragma once

struct sqlite3;

namespace ldg::store::sqlite {

void RegisterJetFunctions(sqlite3* db);

}  // namespace ldg::store::sqlite
