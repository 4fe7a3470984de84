#include "core_api/CIMDateTime.h"

#include "support/Fixtures.h"

namespace orvtest {
namespace {

struct TValidCase {
  const char *text;
  bool interval;
  std::uint32_t wildcards;
  const char *canonical;
  const char *display;
};

const TValidCase kValid[] = {
    {"20230405060708.123456+060", false, 0, "20230405060708.123456+060",
     "2023-04-05 06:07:08.123456 UTC+01:00"},
    {"19700101000000.000000+000", false, 0, "19700101000000.000000+000", "1970-01-01 00:00:00"},
    {"19700101000000.000000-000", false, 0, "19700101000000.000000+000", "1970-01-01 00:00:00"},
    // The leap second, and a negative offset in hours and minutes.
    {"20161231235960.000000-330", false, 0, "20161231235960.000000-330",
     "2016-12-31 23:59:60 UTC-05:30"},
    {" \t20230405060708.000001+000\r\n", false, 0, "20230405060708.000001+000",
     "2023-04-05 06:07:08.000001"},
    {"00000003040506.000000:000", true, 0, "00000003040506.000000:000", "3 days 04:05:06"},
    {"00000001000000.000500:000", true, 0, "00000001000000.000500:000", "1 day 00:00:00.000500"},
    {"99999999235959.999999:000", true, 0, "99999999235959.999999:000",
     "99999999 days 23:59:59.999999"},
    // Wildcards: whole fields, or trailing digits of the microseconds.
    {"2023****060708.000000+000", false, TCIMDateTime::kWildMonth | TCIMDateTime::kWildDay,
     "2023****060708.000000+000", "2023-*-* 06:07:08"},
    {"20230405060708.12****+000", false, TCIMDateTime::kWildMicroseconds,
     "20230405060708.12****+000", "2023-04-05 06:07:08.12****"},
    {"**************.******+***", false, 0xFF, "**************.******+***",
     "*-*-* *:*:*.****** UTC*"},
    {"********1200**.******:000", true,
     TCIMDateTime::kWildDay | TCIMDateTime::kWildSecond | TCIMDateTime::kWildMicroseconds,
     "********1200**.******:000", "* days 12:00:*.******"},
};

TEST(CIMDateTimeTest, ValidForms) {
  for (const auto &row : kValid) {
    SCOPED_TRACE(row.text);
    const TCIMDateTime parsed = TCIMDateTime::Parse(row.text);
    EXPECT_EQ(parsed.IsInterval(), row.interval);
    EXPECT_EQ(parsed.GetWildcards(), row.wildcards);
    EXPECT_EQ(parsed.ToString(), row.canonical);
    EXPECT_EQ(parsed.ToUIString(), row.display);
    EXPECT_EQ(TCIMDateTime::Parse(parsed.ToString()), parsed);
  }
}

TEST(CIMDateTimeTest, InvalidFormsThrowInvalidDateTime) {
  // 26 characters; month 13 and 0, day 0 and 32, hour 24, minute 60, second
  // 61; an interval's second 60, hour 24 and non-zero tail; no sign, no dot;
  // half a wildcard field, a digit after a wild digit, half a wild offset; a
  // letter and a blank inside; too short.
  // clang-format off
  const char *const kInvalid[] = {
      "20230405060708.123456+0600", "20231305060708.123456+060", "20230005060708.123456+060",
      "20230400060708.123456+060", "20230432060708.123456+060", "20230405240708.123456+060",
      "20230405066008.123456+060", "20230405060761.123456+060", "00000003040560.000000:000",
      "00000003240000.000000:000", "00000003040506.000000:001", "20230405060708.123456*060",
      "20230405060708,123456+060", "2023*405060708.123456+060", "20230405060708.1*3***+060",
      "20230405060708.123456+06*", "2023O405060708.123456+060", "2023 405060708.123456+060", "",
      "2023"};
  // clang-format on
  for (const char *text : kInvalid) {
    SCOPED_TRACE(text);
    EXPECT_EQ(StatusOf([&] { TCIMDateTime::Parse(text); }), kORVStatusInvalidDateTime);
  }
}

TEST(CIMDateTimeTest, FieldsMatchTheConstructors) {
  const TCIMDateTime stamp = TCIMDateTime::Parse("20230405060708.123456-300");
  EXPECT_EQ(stamp, TCIMDateTime(2023, 4, 5, 6, 7, 8, 123456, -300));
  EXPECT_EQ(stamp.GetUtcOffset(), -300);
  EXPECT_NE(stamp, TCIMDateTime(2023, 4, 5, 6, 7, 8, 123456, 300));

  const TCIMDateTime interval = TCIMDateTime::Parse("00012345010203.000004:000");
  EXPECT_EQ(interval, TCIMDateTime::MakeInterval(12345, 1, 2, 3, 4));
  EXPECT_EQ(interval.GetDay(), 12345u);
  // An interval and a timestamp with the same digits differ.
  EXPECT_NE(TCIMDateTime::MakeInterval(1, 0, 0, 0, 0), TCIMDateTime(0, 0, 1, 0, 0, 0, 0, 0));
  // Wildcards are part of the value.
  EXPECT_NE(TCIMDateTime::Parse("20230405060708.12****+000"),
            TCIMDateTime(2023, 4, 5, 6, 7, 8, 120000, 0));
}

} // namespace
} // namespace orvtest
