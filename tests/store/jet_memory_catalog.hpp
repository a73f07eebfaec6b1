// A catalog held in memory for the translator's tests: tables with typed
// columns in field order, and stored queries with their Jet text.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/jet/translator.hpp"
#include "support/text.hpp"

namespace ldg::store::jet {

class MemoryCatalog : public Catalog {
 public:
  void AddTable(const std::string& name, std::vector<Column> columns) {
    tables_[FoldCase(name)] = {name, std::move(columns)};
  }
  void AddQuery(const std::string& name, std::string text) { queries_[FoldCase(name)] = std::move(text); }

  std::optional<std::vector<Column>> TableColumns(std::string_view table) const override {
    auto found = tables_.find(FoldCase(table));
    if (found == tables_.end()) return std::nullopt;
    return found->second.columns;
  }
  std::optional<std::string> QueryText(std::string_view name) const override {
    auto found = queries_.find(FoldCase(name));
    if (found == queries_.end()) return std::nullopt;
    return found->second;
  }
  std::string PhysicalName(std::string_view table) const override {
    auto found = tables_.find(FoldCase(table));
    const std::string name = found == tables_.end() ? std::string(table) : found->second.name;
    return "\"" + name + "\"";
  }

 private:
  struct Table {
    std::string name;
    std::vector<Column> columns;
  };
  std::map<std::string, Table> tables_;
  std::map<std::string, std::string> queries_;
};

}  // namespace ldg::store::jet
