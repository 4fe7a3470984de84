#include "core_api/ORVStatusCode.h"

#include "support/Fixtures.h"

#include <set>

namespace orvtest {
namespace {

TEST(ORVStatusCodeTest, EveryCodeHasItsOwnText) {
  std::set<std::string> texts{"Unknown status code"};
  EXPECT_EQ(TORVStatusCode(static_cast<EORVStatusCode>(999)).TranslateStatusCode(), *texts.begin());
  for (int value : {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
                    16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 36}) {
    const TORVStatusCode code(static_cast<EORVStatusCode>(value));
    EXPECT_TRUE(texts.insert(code.TranslateStatusCode()).second) << value;
    EXPECT_EQ(TORVException(code).what(), code.TranslateStatusCode());
  }
  // The default exception is the one of an emptied state stack.
  EXPECT_EQ(TORVException().GetStatusCode(), kORVStatusParserStateMissing);
  EXPECT_STREQ(TORVException().what(), "Parser state missing");
}

// Kept as it is: assignment returns a copy, not the assigned object.
TEST(ORVStatusCodeTest, AssignmentReturnsACopy) {
  TORVStatusCode code(kORVStatusInvalidFormat);
  (code = kORVStatusFileAccess) = kORVStatusNotGzip;
  EXPECT_EQ(code.GetStatusCode(), kORVStatusFileAccess);
}

} // namespace
} // namespace orvtest
