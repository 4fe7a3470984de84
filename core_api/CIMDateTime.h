// A CIM datetime: either a point in time (timestamp) or a duration
// (interval), with the wildcard fields that CIM allows in both forms.
#ifndef ORV_CORE_API_CIMDATETIME_H
#define ORV_CORE_API_CIMDATETIME_H

#include "core_api/ORVExport.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace NVRNORV20 {

class ORVCORE_API TCIMDateTime {
public:
  /// Bits of GetWildcards(): a field written with asterisks in the text.
  enum EWildcard : std::uint32_t {
    kWildYear = 0x01,
    kWildMonth = 0x02,
    kWildDay = 0x04,
    kWildHour = 0x08,
    kWildMinute = 0x10,
    kWildSecond = 0x20,
    /// Some or all of the six microsecond digits are asterisks.
    kWildMicroseconds = 0x40,
    kWildUtcOffset = 0x80,
  };

  /// 1970-01-01 00:00:00 UTC.
  TCIMDateTime();
  /// A timestamp. utcOffset is in minutes east of UTC. Fields are stored as
  /// given; no range check is made here (Parse checks text).
  TCIMDateTime(unsigned short year, unsigned short month, unsigned int day, unsigned short hour,
               unsigned short minute, unsigned short second, unsigned int microseconds,
               short utcOffset);
  ~TCIMDateTime() = default;

  /// An interval of days, hours, minutes, seconds and microseconds.
  static TCIMDateTime MakeInterval(unsigned int days, unsigned short hours, unsigned short minutes,
                                   unsigned short seconds, unsigned int microseconds);

  /// Parses the 25-character CIM form: "yyyymmddhhmmss.mmmmmmsutc" for a
  /// timestamp (s is + or -) or "ddddddddhhmmss.mmmmmm:000" for an interval,
  /// with asterisks allowed for wildcard fields. Leading and trailing
  /// whitespace is ignored. Anything else throws TORVException with
  /// kORVStatusInvalidDateTime.
  static TCIMDateTime Parse(const char *text, std::size_t length);
  static TCIMDateTime Parse(const std::string &text) { return Parse(text.data(), text.size()); }

  bool IsInterval() const { return interval; }
  unsigned int GetYear() const { return year; }
  unsigned int GetMonth() const { return month; }
  /// The day of the month, or for an interval the number of days.
  unsigned int GetDay() const { return day; }
  unsigned int GetHour() const { return hour; }
  unsigned int GetMinute() const { return minute; }
  unsigned int GetSecond() const { return second; }
  unsigned int GetMicroseconds() const { return microseconds; }
  /// Minutes east of UTC; 0 for an interval.
  int GetUtcOffset() const { return utcOffset; }
  std::uint32_t GetWildcards() const { return wildcards; }

  /// The 25-character CIM text of this datetime (wildcards as asterisks).
  std::string ToString() const;
  /// A display text for people: "1970-01-01 00:00:00" for a timestamp (with
  /// ".mmmmmm" when microseconds are set and " UTC+hh:mm" for a non-zero
  /// offset), "3 days 04:05:06" for an interval; wildcard fields show as "*".
  std::string ToUIString() const;

  bool operator==(const TCIMDateTime &other) const;
  bool operator!=(const TCIMDateTime &other) const { return !(*this == other); }

private:
  std::uint32_t day = 1;
  std::uint32_t microseconds = 0;
  std::uint32_t wildcards = 0;
  /// Digits of the microsecond field that were asterisks, counted from the
  /// right (CIM lets the least significant ones be wildcards).
  std::uint8_t microsecondWildDigits = 0;
  std::uint16_t year = 1970;
  std::uint8_t month = 1;
  std::uint8_t hour = 0;
  std::uint8_t minute = 0;
  std::uint8_t second = 0;
  std::int16_t utcOffset = 0;
  bool interval = false;
};

} // namespace NVRNORV20

#endif
