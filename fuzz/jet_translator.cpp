// Feeds arbitrary text to the Jet translator and to the criterion compiler
// over a small fixed catalog. Both may refuse the text, but only by raising
// ldg::Error; anything else (a crash, another exception) is a finding.
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "store/jet/translator.hpp"
#include "support/error.hpp"
#include "support/text.hpp"

namespace {

using ldg::store::FieldType;
using ldg::store::jet::Catalog;

class FixedCatalog : public Catalog {
 public:
  FixedCatalog() {
    tables_["accounts"] = {{"ID", FieldType::kLong},         {"ParentID", FieldType::kLong},
                           {"Code", FieldType::kText},       {"Name", FieldType::kText},
                           {"IsSum", FieldType::kBoolean},   {"Balance", FieldType::kCurrency},
                           {"Position", FieldType::kInteger}};
    tables_["movements"] = {{"ID", FieldType::kLong},        {"EntryID", FieldType::kLong},
                            {"AccountID", FieldType::kLong}, {"Amount", FieldType::kCurrency},
                            {"Text", FieldType::kText},      {"Rate", FieldType::kDouble}};
    tables_["bookentries"] = {
        {"ID", FieldType::kLong}, {"Date", FieldType::kDate}, {"Tag", FieldType::kMemo}};
    queries_["viewtree"] =
        "SELECT Accounts.ID, Accounts_1.* FROM Accounts INNER JOIN Accounts AS Accounts_1 ON Accounts.ID = "
        "Accounts_1.ParentID ORDER BY Accounts_1.Position;";
    queries_["viewsearch"] =
        "PARAMETERS Search Text; SELECT Code FROM Accounts WHERE Code Like [Search] & \"*\" ORDER BY Code;";
    queries_["loopa"] = "SELECT * FROM loopB";
    queries_["loopb"] = "SELECT * FROM loopA";
    queries_["action"] = "DELETE * FROM Movements";
  }

  std::optional<std::vector<Column>> TableColumns(std::string_view table) const override {
    auto found = tables_.find(ldg::FoldCase(table));
    if (found == tables_.end()) return std::nullopt;
    return found->second;
  }
  std::optional<std::string> QueryText(std::string_view name) const override {
    auto found = queries_.find(ldg::FoldCase(name));
    if (found == queries_.end()) return std::nullopt;
    return found->second;
  }
  std::string PhysicalName(std::string_view table) const override { return "\"" + std::string(table) + "\""; }

 private:
  std::map<std::string, std::vector<Column>> tables_;
  std::map<std::string, std::string> queries_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FixedCatalog catalog;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const ldg::store::jet::Translation translation = ldg::store::jet::Translate(text, catalog);
    (void)translation;
  } catch (const ldg::Error&) {
  }
  try {
    const std::vector<ldg::store::jet::ResultColumn> columns = {
        {"ID", FieldType::kLong, "Accounts", "ID"},
        {"Accounts.Code", FieldType::kText, "Accounts", "Code"},
        {"Balance", FieldType::kCurrency, "Accounts", "Balance"},
        {"Date", FieldType::kDate, "BookEntries", "Date"}};
    auto criterion = ldg::store::jet::CompileCriterion(text, columns);
    const std::vector<ldg::Variant> row = {ldg::Variant(int32_t{7}), ldg::Variant("Kasse"),
                                           ldg::Variant(ldg::Currency::FromRaw(12345)), ldg::Variant::Null()};
    (void)criterion->Matches(row);
  } catch (const ldg::Error&) {
  }
  return 0;
}
