#include "store/jet/jet_error.hpp"

#include "support/error.hpp"

namespace ldg::store::jet {

void RaiseSyntax() {
  throw Error(kErrSyntax, kAppTitle, "Syntax error (missing operator) in query expression.");
}

void RaiseStoreError(int number, std::string text) { throw Error(number, kAppTitle, std::move(text)); }

void RaiseUnknownTable(std::string_view name) {
  throw Error(kErrUnknownTable, kAppTitle,
              "The Microsoft Jet database engine cannot find the input table or query '" + std::string(name) +
                  "'. Make sure it exists and that its name is spelled correctly.");
}

}  // namespace ldg::store::jet
