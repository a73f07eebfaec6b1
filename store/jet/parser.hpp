// The recursive-descent parser of Jet SQL: whole statements (with a PARAMETERS
// header, SELECT, INSERT INTO, UPDATE with joins, DELETE [*] FROM) and bare
// expressions (FindFirst criteria). Syntax errors raise store error 3075, a
// malformed FROM clause 3131, text after the closing ";" 3142.
#pragma once

#include <string_view>

#include "store/jet/ast.hpp"

namespace ldg::store::jet {

Statement ParseStatement(std::string_view text);
ExprPtr ParseCriterion(std::string_view text);

}  // namespace ldg::store::jet
