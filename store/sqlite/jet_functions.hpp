// The SQL functions and the collation that translated statements rely on:
// collation "JET" (text compared by Unicode simple case folding), jet_like(value,
// pattern) with Jet's wildcards, jet_cat(a, b) for "&", and the aggregate
// jet_first(x). Every connection the store opens registers them.
#pragma once

struct sqlite3;

namespace ldg::store::sqlite {

void RegisterJetFunctions(sqlite3* db);

}  // namespace ldg::store::sqlite
