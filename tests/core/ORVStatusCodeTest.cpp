#include "core_api/ORVStatusCode.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace NVRNORV20;

namespace {

TEST(ORVStatusCodeTest, DefaultExceptionIsParserStateMissing) {
  TORVException ex;
  EXPECT_EQ(ex.GetStatusCode(), 3);
  EXPECT_STREQ(ex.what(), "Parser state missing");
}

TEST(ORVStatusCodeTest, WhatIsTheCodesTranslation) {
  for (EORVStatusCode code : {kORVStatusInvalidDocument, kORVStatusFileAccess,
                              kORVStatusInvalidFormat, kORVStatusNotGzip}) {
    TORVException ex{TORVStatusCode(code)};
    EXPECT_EQ(std::string(ex.what()), TORVStatusCode(code).TranslateStatusCode());
    EXPECT_EQ(ex.GetStatusCode(), code);
  }
}

TEST(ORVStatusCodeTest, AssignmentStoresAndReturnsACopy) {
  TORVStatusCode code(kORVStatusInvalidFormat);
  EXPECT_EQ(code.GetStatusCode(), 36);
  TORVStatusCode copy = (code = kORVStatusInvalidProperty);
  EXPECT_EQ(code.GetStatusCode(), 8);
  EXPECT_EQ(copy.GetStatusCode(), 8);
  // The expression's value is a separate object: changing it leaves the
  // assigned one alone.
  (code = kORVStatusFileAccess) = kORVStatusNotGzip;
  EXPECT_EQ(code.GetStatusCode(), 11);
  TORVStatusCode other(kORVStatusOK);
  (other = code) = kORVStatusGzipRead;
  EXPECT_EQ(other.GetStatusCode(), 11);
}

TEST(ORVStatusCodeTest, EveryCodeHasItsOwnText) {
  std::set<std::string> texts;
  const std::string unknown =
      TORVStatusCode(static_cast<EORVStatusCode>(999)).TranslateStatusCode();
  EXPECT_EQ(unknown, "Unknown status code");
  for (int value = 0; value <= 30; ++value) {
    const std::string &text =
        TORVStatusCode(static_cast<EORVStatusCode>(value)).TranslateStatusCode();
    EXPECT_NE(text, unknown) << value;
    EXPECT_TRUE(texts.insert(text).second) << "duplicate text for " << value;
  }
  EXPECT_NE(TORVStatusCode(kORVStatusInvalidFormat).TranslateStatusCode(), unknown);
}

TEST(ORVStatusCodeTest, ThrownByValueCaughtByReference) {
  try {
    throw TORVException(TORVStatusCode(kORVStatusInvalidDocument));
  } catch (const std::exception &ex) {
    EXPECT_STREQ(ex.what(), "Document is not valid CIM-XML");
  }
}

} // namespace
