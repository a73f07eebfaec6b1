// DbOptions: free name and value pairs of the open database file for front
// ends, kept in "Settings" by name alone. It takes no notice of the instance id:
// a search finds the first row of that name of any instance, and a new row
// gets the column's default id. That asymmetry to Options is deliberate and
// pinned by a test. The dynaset it opens at creation lives as long as it does.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/database.hpp"
#include "store/recordset.hpp"

namespace ldg {

class DbOptions {
 public:
  explicit DbOptions(store::Database& database);
  // Closes the dynaset, ignoring errors.
  ~DbOptions();
  DbOptions(const DbOptions&) = delete;
  DbOptions& operator=(const DbOptions&) = delete;

  // The value of the first row of that name; "" when there is none or it is Null.
  std::string Value(std::string_view name) const;
  // An empty value deletes the row if there is one; any other adds or changes it.
  void Value(std::string_view name, std::string_view value);

 private:
  void FindName(std::string_view name) const;

  std::unique_ptr<store::Recordset> settings_;
};

}  // namespace ldg
