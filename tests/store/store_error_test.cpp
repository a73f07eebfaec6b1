#include "store/store_error.hpp"

#include <gtest/gtest.h>

#include "support/error.hpp"

namespace ldg::store {
namespace {

TEST(RefuseQuote, ATextWithoutApostropheGoesThrough) {
  EXPECT_NO_THROW(RefuseQuote("Miete \"Mai\" *#"));
  EXPECT_NO_THROW(RefuseQuote(""));
}

TEST(RefuseQuote, AnApostropheAnywhereIsTheSyntaxErrorOfTheBrokenStatement) {
  for (const char* text : {"x', Amount=999 --", "'", "end'"}) {
    try {
      RefuseQuote(text);
      ADD_FAILURE() << "nothing was raised for " << text;
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), 3075);
      EXPECT_EQ(error.Description(), "Syntax error (missing operator) in query expression.");
      EXPECT_EQ(error.Source(), kStoreSource);
    }
  }
}

}  // namespace
}  // namespace ldg::store
