#include "core/CIMValue.h"

#include "core/AsciiText.h"
#include "core/CIMValueTree.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>
#include <utility>

namespace NVRNORV20 {

namespace {

constexpr std::size_t kTypeCount = 16;

// Indexed by scalar type code. Never destroyed, so GetName's references stay
// valid during shutdown.
const std::array<std::string, kTypeCount> &TypeNames() {
  static const auto *const kNames = new std::array<std::string, kTypeCount>{
      {"", "boolean", "string", "char16", "uint8", "sint8", "uint16", "sint16", "uint32", "sint32",
       "uint64", "sint64", "real32", "real64", "datetime", "reference"}};
  return *kNames;
}

constexpr std::string_view kTypeNameViews[kTypeCount] = {
    "",       "boolean", "string", "char16", "uint8",  "sint8",  "uint16",   "sint16",
    "uint32", "sint32",  "uint64", "sint64", "real32", "real64", "datetime", "reference"};

void Trim(const char *&begin, const char *&end) {
  while (begin < end && IsSpace(*begin))
    ++begin;
  while (end > begin && IsSpace(end[-1]))
    --end;
}

// An integer as CIM-XML writes it: optional sign, then decimal digits or
// 0x and hexadecimal digits. The sign applies to hexadecimal too, so the
// smallest sint8 is also "-0x80". "-0" is zero for every type; any other
// negative number is out of an unsigned type's range rather than bad text.
struct TInteger {
  std::uint64_t unsignedValue;
  std::int64_t signedValue;
};

TInteger ParseInteger(ECIMType type, const char *begin, const char *end) {
  Trim(begin, end);
  bool negative = false;
  if (begin < end && (*begin == '+' || *begin == '-')) {
    negative = *begin == '-';
    ++begin;
  }
  int base = 10;
  if (end - begin > 2 && begin[0] == '0' && FoldAscii(begin[1]) == 'x') {
    base = 16;
    begin += 2;
  }
  // from_chars takes no sign of its own for unsigned numbers, so a second
  // sign is rejected as bad text here.
  std::uint64_t magnitude = 0;
  const auto result = std::from_chars(begin, end, magnitude, base);
  if (begin == end || result.ptr != end || result.ec == std::errc::invalid_argument)
    Throw(kORVStatusInvalidValueText);
  if (result.ec == std::errc::result_out_of_range)
    Throw(kORVStatusValueOutOfRange);

  const TIntegerRange range = RangeOf(type);
  TInteger value{0, 0};
  if (!range.isSigned) {
    if ((negative && magnitude != 0) || magnitude > range.max)
      Throw(kORVStatusValueOutOfRange);
    value.unsignedValue = magnitude;
    return value;
  }
  const std::uint64_t minMagnitude = 0 - static_cast<std::uint64_t>(range.min);
  if (negative ? magnitude > minMagnitude : magnitude > range.max)
    Throw(kORVStatusValueOutOfRange);
  // Negating in unsigned arithmetic keeps the smallest sint64 defined.
  value.signedValue =
      negative ? static_cast<std::int64_t>(0 - magnitude) : static_cast<std::int64_t>(magnitude);
  return value;
}

// Reals: decimal and exponent forms and INF, -INF and NaN in any letter
// case, read without regard to the process's locale. A value beyond the
// type's range, or too small to be told from zero, is out of range.
double ParseReal(ECIMType type, const char *begin, const char *end) {
  Trim(begin, end);
  if (begin < end && *begin == '+') {
    ++begin;
    if (begin < end && *begin == '-')
      Throw(kORVStatusInvalidValueText);
  }
  std::from_chars_result result{};
  double value = 0;
  if (type == kCIMTypeReal32) {
    float single = 0;
    result = std::from_chars(begin, end, single);
    value = single;
  } else {
    result = std::from_chars(begin, end, value);
  }
  if (begin == end || result.ptr != end || result.ec == std::errc::invalid_argument)
    Throw(kORVStatusInvalidValueText);
  if (result.ec == std::errc::result_out_of_range)
    Throw(kORVStatusValueOutOfRange);
  return value;
}

// char16: one byte, kept as its value, or one UTF-8 sequence of a code point
// in the basic multilingual plane (no surrogates, no overlong forms).
std::uint64_t ParseChar16(const std::string &text) {
  const auto *bytes = reinterpret_cast<const unsigned char *>(text.data());
  if (text.size() == 1)
    return bytes[0];
  std::uint32_t codePoint = 0;
  if (text.size() == 2 && (bytes[0] & 0xE0) == 0xC0 && (bytes[1] & 0xC0) == 0x80) {
    codePoint = ((bytes[0] & 0x1Fu) << 6) | (bytes[1] & 0x3Fu);
    if (codePoint >= 0x80)
      return codePoint;
  } else if (text.size() == 3 && (bytes[0] & 0xF0) == 0xE0 && (bytes[1] & 0xC0) == 0x80 &&
             (bytes[2] & 0xC0) == 0x80) {
    codePoint = ((bytes[0] & 0x0Fu) << 12) | ((bytes[1] & 0x3Fu) << 6) | (bytes[2] & 0x3Fu);
    if (codePoint >= 0x800 && (codePoint < 0xD800 || codePoint > 0xDFFF))
      return codePoint;
  }
  Throw(kORVStatusInvalidValueText);
}

void AppendUtf8(std::string &out, std::uint64_t codePoint) {
  if (codePoint < 0x80) {
    out += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    out += static_cast<char>(0xC0 | (codePoint >> 6));
    out += static_cast<char>(0x80 | (codePoint & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | ((codePoint >> 12) & 0x0F));
    out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (codePoint & 0x3F));
  }
}

template <typename TNumber> void AppendNumber(std::string &out, TNumber value) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  out.append(buffer, result.ptr);
}

// The shortest text that reads back as the same real of the type.
void AppendReal(std::string &out, ECIMType type, double value) {
  if (std::isnan(value)) {
    out += "NaN";
  } else if (std::isinf(value)) {
    out += value < 0 ? "-INF" : "INF";
  } else if (type == kCIMTypeReal32) {
    AppendNumber(out, static_cast<float>(value));
  } else {
    AppendNumber(out, value);
  }
}

} // namespace

// ---- TCIMType --------------------------------------------------------------

TCIMValue::TCIMType::TCIMType(const std::string &name) : typeCode(kCIMTypeNone) {
  // Every name has 5 to 9 letters; folding into a small buffer first keeps
  // the look-up to plain comparisons, as it runs for every TYPE attribute.
  constexpr std::size_t kLongestName = 9;
  if (name.size() < 5 || name.size() > kLongestName)
    Throw(kORVStatusInvalidTypeName);
  char folded[kLongestName];
  for (std::size_t i = 0; i < name.size(); ++i)
    folded[i] = FoldAscii(name[i]);
  const std::string_view key(folded, name.size());
  for (std::size_t code = 1; code < kTypeCount; ++code) {
    if (kTypeNameViews[code] == key) {
      typeCode = static_cast<ECIMType>(code);
      return;
    }
  }
  Throw(kORVStatusInvalidTypeName);
}

const std::string &TCIMValue::TCIMType::GetName() const {
  const std::uint32_t code = typeCode & ~static_cast<std::uint32_t>(kCIMTypeArrayFlag);
  return TypeNames()[code < kTypeCount ? code : 0];
}

// ---- text to values -------------------------------------------------------

TCIMValue::TCIMValue(TCIMType valueType, const std::string &valueText,
                     boost::shared_ptr<ICIMNamespace> ns)
    : type(valueType), null(false) {
  StartStorage();
  const char *begin = valueText.data();
  const char *end = begin + valueText.size();
  switch (static_cast<ECIMType>(valueType)) {
  case kCIMTypeBoolean:
    Trim(begin, end);
    if (EqualsNoCase({begin, static_cast<std::size_t>(end - begin)}, "true"))
      scalar.boolean = true;
    else if (EqualsNoCase({begin, static_cast<std::size_t>(end - begin)}, "false"))
      scalar.boolean = false;
    else
      Throw(kORVStatusInvalidValueText);
    break;
  case kCIMTypeString:
    text = valueText;
    break;
  case kCIMTypeChar16:
    scalar.unsignedValue = ParseChar16(valueText);
    break;
  case kCIMTypeUint8:
  case kCIMTypeUint16:
  case kCIMTypeUint32:
  case kCIMTypeUint64:
    scalar.unsignedValue = ParseInteger(valueType, begin, end).unsignedValue;
    break;
  case kCIMTypeSint8:
  case kCIMTypeSint16:
  case kCIMTypeSint32:
  case kCIMTypeSint64:
    scalar.signedValue = ParseInteger(valueType, begin, end).signedValue;
    break;
  case kCIMTypeReal32:
  case kCIMTypeReal64:
    scalar.realValue = ParseReal(valueType, begin, end);
    break;
  case kCIMTypeDateTime:
    dateTime = TCIMDateTime::Parse(begin, valueText.size());
    break;
  case kCIMTypeReference:
    OwnPayload().MutableReference() = TCIMReference::Parse(begin, valueText.size(), std::move(ns));
    break;
  default:
    Throw(kORVStatusInvalidArgument);
  }
}

// ---- values to text -------------------------------------------------------

std::string TCIMValue::ToString() const {
  std::string out;
  if (null)
    return out;
  if (IsArray() || type == kCIMTypeReference) {
    TCIMValueTree::AppendText(out, *this);
    return out;
  }
  switch (type) {
  case kCIMTypeBoolean:
    out = scalar.boolean ? "true" : "false";
    break;
  case kCIMTypeString:
    out = text;
    break;
  case kCIMTypeChar16:
    AppendUtf8(out, scalar.unsignedValue);
    break;
  case kCIMTypeUint8:
  case kCIMTypeUint16:
  case kCIMTypeUint32:
  case kCIMTypeUint64:
    AppendNumber(out, scalar.unsignedValue);
    break;
  case kCIMTypeSint8:
  case kCIMTypeSint16:
  case kCIMTypeSint32:
  case kCIMTypeSint64:
    AppendNumber(out, scalar.signedValue);
    break;
  case kCIMTypeReal32:
  case kCIMTypeReal64:
    AppendReal(out, type, scalar.realValue);
    break;
  case kCIMTypeDateTime:
    out = dateTime.ToString();
    break;
  default:
    break;
  }
  return out;
}

} // namespace NVRNORV20
