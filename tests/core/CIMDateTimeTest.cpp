#include "core_api/CIMDateTime.h"

#include "support/Fixtures.h"

namespace orvtest {
namespace {

using DT = TCIMDateTime;

// Each text, whether it is an interval, its wildcards, how it is shown and,
// where it differs from the text, its canonical form.
const std::tuple<const char *, bool, std::uint32_t, const char *, const char *> kValid[] = {
    {"20230405060708.123456+060", false, 0, "2023-04-05 06:07:08.123456 UTC+01:00", ""},
    {"19700101000000.000000-000", false, 0, "1970-01-01 00:00:00", "19700101000000.000000+000"},
    // The leap second, and a negative offset in hours and minutes.
    {"20161231235960.000000-330", false, 0, "2016-12-31 23:59:60 UTC-05:30", ""},
    {" \t20230405060708.000001+000\r\n", false, 0, "2023-04-05 06:07:08.000001",
     "20230405060708.000001+000"},
    {"00000003040506.000000:000", true, 0, "3 days 04:05:06", ""},
    {"00000001000000.000500:000", true, 0, "1 day 00:00:00.000500", ""},
    {"99999999235959.999999:000", true, 0, "99999999 days 23:59:59.999999", ""},
    // Wildcards: whole fields, or trailing digits of the microseconds.
    {"2023****060708.000000+000", false, DT::kWildMonth | DT::kWildDay, "2023-*-* 06:07:08", ""},
    {"20230405060708.12****+000", false, DT::kWildMicroseconds, "2023-04-05 06:07:08.12****", ""},
    {"**************.******+***", false, 0xFF, "*-*-* *:*:*.****** UTC*", ""},
    {"********1200**.******:000", true, DT::kWildDay | DT::kWildSecond | DT::kWildMicroseconds,
     "* days 12:00:*.******", ""}};

TEST(CIMDateTimeTest, ValidFormsMatchTheConstructors) {
  for (const auto &[text, interval, wildcards, display, canonical] : kValid) {
    SCOPED_TRACE(text);
    const TCIMDateTime parsed = DT::Parse(text);
    EXPECT_EQ(parsed.IsInterval(), interval);
    EXPECT_EQ(parsed.GetWildcards(), wildcards);
    EXPECT_EQ(parsed.ToString(), *canonical ? canonical : text);
    EXPECT_EQ(parsed.ToUIString(), display);
    EXPECT_EQ(DT::Parse(parsed.ToString()), parsed);
  }
  const TCIMDateTime stamp = DT::Parse("20230405060708.123456-300");
  EXPECT_EQ(stamp, TCIMDateTime(2023, 4, 5, 6, 7, 8, 123456, -300));
  EXPECT_EQ(stamp.GetUtcOffset(), -300);
  EXPECT_NE(stamp, TCIMDateTime(2023, 4, 5, 6, 7, 8, 123456, 300));

  EXPECT_EQ(DT::Parse("00012345010203.000004:000"), DT::MakeInterval(12345, 1, 2, 3, 4));
  EXPECT_EQ(DT::MakeInterval(12345, 1, 2, 3, 4).GetDay(), 12345u);
  EXPECT_NE(DT::MakeInterval(1, 0, 0, 0, 0), TCIMDateTime(0, 0, 1, 0, 0, 0, 0, 0)) << "same digits";
  // Wildcards are part of the value.
  EXPECT_NE(DT::Parse("20230405060708.12****+000"), TCIMDateTime(2023, 4, 5, 6, 7, 8, 120000, 0));
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
    EXPECT_EQ(StatusOf([&] { DT::Parse(text); }), kORVStatusInvalidDateTime);
  }
}

} // namespace
} // namespace orvtest
