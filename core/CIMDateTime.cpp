#include "core_api/CIMDateTime.h"

#include "core/AsciiText.h"
#include "core_api/ORVStatusCode.h"

namespace NVRNORV20 {

namespace {

constexpr std::size_t kCIMDateTimeLength = 25;

[[noreturn]] void ThrowInvalidDateTime() {
  throw TORVException(kORVStatusInvalidDateTime);
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// One fixed-width field of the text: all digits, or all asterisks when it
// is a wildcard. Mixed fields are not dates.
struct TField {
  std::uint32_t value = 0;
  bool wild = false;
};

TField ReadField(const char *text, std::size_t width) {
  TField field;
  if (text[0] == '*') {
    for (std::size_t i = 0; i < width; ++i)
      if (text[i] != '*')
        ThrowInvalidDateTime();
    field.wild = true;
    return field;
  }
  for (std::size_t i = 0; i < width; ++i) {
    if (!IsDigit(text[i]))
      ThrowInvalidDateTime();
    field.value = field.value * 10 + static_cast<std::uint32_t>(text[i] - '0');
  }
  return field;
}

// Writes value as width digits, or asterisks for a wildcard. A value wider
// than the field keeps its low digits, so the text is always 25 bytes.
void WriteField(char *out, std::uint32_t value, std::size_t width, bool wild) {
  for (std::size_t i = width; i-- > 0;) {
    out[i] = wild ? '*' : static_cast<char>('0' + value % 10);
    value /= 10;
  }
}

void AppendNumber(std::string &out, std::uint32_t value, std::size_t width, bool wild) {
  if (wild) {
    out += '*';
    return;
  }
  char digits[10];
  std::size_t length = 0;
  do {
    digits[length++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  for (std::size_t i = length; i < width; ++i)
    out += '0';
  while (length > 0)
    out += digits[--length];
}

} // namespace

TCIMDateTime::TCIMDateTime() = default;

TCIMDateTime::TCIMDateTime(unsigned short yearValue, unsigned short monthValue,
                           unsigned int dayValue, unsigned short hourValue,
                           unsigned short minuteValue, unsigned short secondValue,
                           unsigned int microsecondValue, short offsetMinutes)
    : day(dayValue), microseconds(microsecondValue), year(yearValue),
      month(static_cast<std::uint8_t>(monthValue)), hour(static_cast<std::uint8_t>(hourValue)),
      minute(static_cast<std::uint8_t>(minuteValue)),
      second(static_cast<std::uint8_t>(secondValue)), utcOffset(offsetMinutes) {}

TCIMDateTime TCIMDateTime::MakeInterval(unsigned int days, unsigned short hours,
                                        unsigned short minutes, unsigned short seconds,
                                        unsigned int microseconds) {
  TCIMDateTime result(0, 0, days, hours, minutes, seconds, microseconds, 0);
  result.interval = true;
  return result;
}

TCIMDateTime TCIMDateTime::Parse(const char *text, std::size_t length) {
  while (length > 0 && IsSpace(*text)) {
    ++text;
    --length;
  }
  while (length > 0 && IsSpace(text[length - 1]))
    --length;
  if (length != kCIMDateTimeLength || text[14] != '.')
    ThrowInvalidDateTime();

  TCIMDateTime result;
  result.wildcards = 0;
  const char sign = text[21];
  if (sign == ':') {
    // Interval "ddddddddhhmmss.mmmmmm:000": the tail is always zeros.
    if (text[22] != '0' || text[23] != '0' || text[24] != '0')
      ThrowInvalidDateTime();
    result.interval = true;
    const TField daysField = ReadField(text, 8);
    result.day = daysField.value;
    result.year = 0;
    result.month = 0;
    if (daysField.wild)
      result.wildcards |= kWildDay;
  } else if (sign == '+' || sign == '-') {
    const TField yearField = ReadField(text, 4);
    const TField monthField = ReadField(text + 4, 2);
    const TField dayField = ReadField(text + 6, 2);
    if ((!monthField.wild && (monthField.value < 1 || monthField.value > 12)) ||
        (!dayField.wild && (dayField.value < 1 || dayField.value > 31)))
      ThrowInvalidDateTime();
    result.year = static_cast<std::uint16_t>(yearField.value);
    result.month = static_cast<std::uint8_t>(monthField.value);
    result.day = dayField.value;
    result.wildcards |= (yearField.wild ? kWildYear : 0u) | (monthField.wild ? kWildMonth : 0u) |
                        (dayField.wild ? kWildDay : 0u);
    const TField offsetField = ReadField(text + 22, 3);
    result.utcOffset = static_cast<std::int16_t>(sign == '-' ? -static_cast<int>(offsetField.value)
                                                             : static_cast<int>(offsetField.value));
    if (offsetField.wild)
      result.wildcards |= kWildUtcOffset;
  } else {
    ThrowInvalidDateTime();
  }

  const TField hourField = ReadField(text + 8, 2);
  const TField minuteField = ReadField(text + 10, 2);
  const TField secondField = ReadField(text + 12, 2);
  // A timestamp may name the leap second 60; an interval counts seconds
  // below a minute.
  const std::uint32_t secondLimit = result.interval ? 59 : 60;
  if ((!hourField.wild && hourField.value > 23) || (!minuteField.wild && minuteField.value > 59) ||
      (!secondField.wild && secondField.value > secondLimit))
    ThrowInvalidDateTime();
  result.hour = static_cast<std::uint8_t>(hourField.value);
  result.minute = static_cast<std::uint8_t>(minuteField.value);
  result.second = static_cast<std::uint8_t>(secondField.value);
  result.wildcards |= (hourField.wild ? kWildHour : 0u) | (minuteField.wild ? kWildMinute : 0u) |
                      (secondField.wild ? kWildSecond : 0u);

  // Microseconds: digits, then asterisks for the least significant ones.
  std::uint32_t micro = 0;
  std::uint8_t wildDigits = 0;
  for (std::size_t i = 15; i < 21; ++i) {
    if (text[i] == '*') {
      ++wildDigits;
      micro *= 10;
    } else if (IsDigit(text[i]) && wildDigits == 0) {
      micro = micro * 10 + static_cast<std::uint32_t>(text[i] - '0');
    } else {
      ThrowInvalidDateTime();
    }
  }
  result.microseconds = micro;
  result.microsecondWildDigits = wildDigits;
  if (wildDigits != 0)
    result.wildcards |= kWildMicroseconds;
  return result;
}

std::string TCIMDateTime::ToString() const {
  char out[kCIMDateTimeLength];
  if (interval) {
    WriteField(out, day, 8, (wildcards & kWildDay) != 0);
  } else {
    WriteField(out, year, 4, (wildcards & kWildYear) != 0);
    WriteField(out + 4, month, 2, (wildcards & kWildMonth) != 0);
    WriteField(out + 6, day, 2, (wildcards & kWildDay) != 0);
  }
  WriteField(out + 8, hour, 2, (wildcards & kWildHour) != 0);
  WriteField(out + 10, minute, 2, (wildcards & kWildMinute) != 0);
  WriteField(out + 12, second, 2, (wildcards & kWildSecond) != 0);
  out[14] = '.';
  WriteField(out + 15, microseconds, 6, false);
  for (std::size_t i = 0; i < microsecondWildDigits && i < 6; ++i)
    out[20 - i] = '*';
  if (interval) {
    out[21] = ':';
    out[22] = out[23] = out[24] = '0';
  } else {
    out[21] = utcOffset < 0 ? '-' : '+';
    const int offset = utcOffset < 0 ? -utcOffset : utcOffset;
    WriteField(out + 22, static_cast<std::uint32_t>(offset), 3, (wildcards & kWildUtcOffset) != 0);
  }
  return std::string(out, kCIMDateTimeLength);
}

std::string TCIMDateTime::ToUIString() const {
  std::string out;
  out.reserve(40);
  if (interval) {
    AppendNumber(out, day, 1, (wildcards & kWildDay) != 0);
    out += (day == 1 && (wildcards & kWildDay) == 0) ? " day " : " days ";
  } else {
    AppendNumber(out, year, 4, (wildcards & kWildYear) != 0);
    out += '-';
    AppendNumber(out, month, 2, (wildcards & kWildMonth) != 0);
    out += '-';
    AppendNumber(out, day, 2, (wildcards & kWildDay) != 0);
    out += ' ';
  }
  AppendNumber(out, hour, 2, (wildcards & kWildHour) != 0);
  out += ':';
  AppendNumber(out, minute, 2, (wildcards & kWildMinute) != 0);
  out += ':';
  AppendNumber(out, second, 2, (wildcards & kWildSecond) != 0);
  if (microseconds != 0 || microsecondWildDigits != 0) {
    // The CIM field as written, so partly wild microseconds keep their
    // known digits.
    const std::string cim = ToString();
    out += '.';
    out.append(cim, 15, 6);
  }
  if (!interval) {
    if ((wildcards & kWildUtcOffset) != 0) {
      out += " UTC*";
    } else if (utcOffset != 0) {
      const int offset = utcOffset < 0 ? -utcOffset : utcOffset;
      out += utcOffset < 0 ? " UTC-" : " UTC+";
      AppendNumber(out, static_cast<std::uint32_t>(offset / 60), 2, false);
      out += ':';
      AppendNumber(out, static_cast<std::uint32_t>(offset % 60), 2, false);
    }
  }
  return out;
}

bool TCIMDateTime::operator==(const TCIMDateTime &other) const {
  return interval == other.interval && year == other.year && month == other.month &&
         day == other.day && hour == other.hour && minute == other.minute &&
         second == other.second && microseconds == other.microseconds &&
         utcOffset == other.utcOffset && wildcards == other.wildcards &&
         microsecondWildDigits == other.microsecondWildDigits;
}

} // namespace NVRNORV20
