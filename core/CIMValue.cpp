#include "core_api/CIMValue.h"

#include "core/AsciiText.h"
#include "core_api/ORVStatusCode.h"

#include <boost/make_shared.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>
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

// Compares text with a lower-case word, folding the text's ASCII letters.
bool EqualsLowerWord(const char *text, std::size_t length, const char *word,
                     std::size_t wordLength) {
  if (length != wordLength)
    return false;
  for (std::size_t i = 0; i < length; ++i)
    if (FoldAscii(text[i]) != word[i])
      return false;
  return true;
}

[[noreturn]] void Throw(EORVStatusCode code) {
  throw TORVException(code);
}

struct TIntegerRange {
  bool isSigned;
  std::int64_t min;
  std::uint64_t max;
};

// The range of an integer type, indexed by type code; char16 counts as an
// unsigned 16-bit number.
TIntegerRange RangeOf(ECIMType type) {
  switch (type) {
  case kCIMTypeChar16:
    return {false, 0, 0xFFFF};
  case kCIMTypeUint8:
    return {false, 0, std::numeric_limits<std::uint8_t>::max()};
  case kCIMTypeSint8:
    return {true, std::numeric_limits<std::int8_t>::min(), std::numeric_limits<std::int8_t>::max()};
  case kCIMTypeUint16:
    return {false, 0, std::numeric_limits<std::uint16_t>::max()};
  case kCIMTypeSint16:
    return {true, std::numeric_limits<std::int16_t>::min(),
            std::numeric_limits<std::int16_t>::max()};
  case kCIMTypeUint32:
    return {false, 0, std::numeric_limits<std::uint32_t>::max()};
  case kCIMTypeSint32:
    return {true, std::numeric_limits<std::int32_t>::min(),
            std::numeric_limits<std::int32_t>::max()};
  case kCIMTypeUint64:
    return {false, 0, std::numeric_limits<std::uint64_t>::max()};
  case kCIMTypeSint64:
    return {true, std::numeric_limits<std::int64_t>::min(),
            std::numeric_limits<std::int64_t>::max()};
  default:
    Throw(kORVStatusTypeMismatch);
  }
}

bool IsUnsignedType(ECIMType type) {
  return type == kCIMTypeChar16 || type == kCIMTypeUint8 || type == kCIMTypeUint16 ||
         type == kCIMTypeUint32 || type == kCIMTypeUint64;
}

bool IsSignedType(ECIMType type) {
  return type == kCIMTypeSint8 || type == kCIMTypeSint16 || type == kCIMTypeSint32 ||
         type == kCIMTypeSint64;
}

bool IsRealType(ECIMType type) {
  return type == kCIMTypeReal32 || type == kCIMTypeReal64;
}

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

// A MOF string or character body: quotes and backslashes escaped, control
// characters by name or as \xHHHH; other bytes pass unchanged.
void AppendMOFEscaped(std::string &out, const std::string &text, char quote) {
  static const char kHex[] = "0123456789ABCDEF";
  for (char c : text) {
    switch (c) {
    case '\b':
      out += "\\b";
      break;
    case '\t':
      out += "\\t";
      break;
    case '\n':
      out += "\\n";
      break;
    case '\f':
      out += "\\f";
      break;
    case '\r':
      out += "\\r";
      break;
    case '\\':
      out += "\\\\";
      break;
    default:
      if (c == quote) {
        out += '\\';
        out += c;
      } else if ((c >= 0 && c < 0x20) || c == 0x7F) {
        out += "\\x00";
        out += kHex[(c >> 4) & 0xF];
        out += kHex[c & 0xF];
      } else {
        out += c;
      }
      break;
    }
  }
}

void AppendMOFQuoted(std::string &out, const std::string &text, char quote) {
  out += quote;
  AppendMOFEscaped(out, text, quote);
  out += quote;
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

// ---- construction ----------------------------------------------------------

// Arrays, which schemas hold by the ten thousand, need no path: a
// reference value's path lives apart, made when one is set.
struct TCIMValue::TPayload {
  TPayload() = default;
  TPayload(const TPayload &other)
      : elements(other.elements), referencedClass(other.referencedClass) {
    if (other.path)
      path = std::make_unique<TCIMReference>(*other.path);
  }
  TPayload &operator=(const TPayload &) = delete;

  const TCIMReference &Reference() const {
    static const TCIMReference kNoPath;
    return path ? *path : kNoPath;
  }
  TCIMReference &MutableReference() {
    if (!path)
      path = std::make_unique<TCIMReference>();
    return *path;
  }

  std::unique_ptr<TCIMReference> path;
  std::vector<TCIMValue> elements;
  boost::weak_ptr<ICIMClass> referencedClass;
};

void TCIMValue::StartStorage() {
  switch (StorageOf(type)) {
  case EStorage::kText:
    new (&text) std::string();
    break;
  case EStorage::kDateTime:
    new (&dateTime) TCIMDateTime();
    break;
  case EStorage::kScalar:
    break;
  }
}

void TCIMValue::ChangeStorage(ECIMType newType) {
  if (StorageOf(type) == EStorage::kText)
    text.~basic_string();
  type = newType;
  scalar.unsignedValue = 0;
  StartStorage();
}

void TCIMValue::CopyStorage(const TCIMValue &other) {
  switch (StorageOf(other.type)) {
  case EStorage::kText:
    text = other.text;
    break;
  case EStorage::kDateTime:
    dateTime = other.dateTime;
    break;
  case EStorage::kScalar:
    scalar = other.scalar;
    break;
  }
}

void TCIMValue::MoveStorage(TCIMValue &other) noexcept {
  switch (StorageOf(other.type)) {
  case EStorage::kText:
    text = std::move(other.text);
    break;
  case EStorage::kDateTime:
    dateTime = other.dateTime;
    break;
  case EStorage::kScalar:
    scalar = other.scalar;
    break;
  }
}

TCIMValue::TPayload &TCIMValue::OwnPayload() {
  if (!payload)
    payload = boost::make_shared<TPayload>();
  else if (payload.use_count() > 1)
    payload = boost::make_shared<TPayload>(*payload);
  return *payload;
}

TCIMValue::TCIMValue() {}

TCIMValue::TCIMValue(const TCIMValue &other)
    : type(other.type), null(other.null), count(other.count), payload(other.payload) {
  StartStorage();
  CopyStorage(other);
}

TCIMValue::TCIMValue(TCIMValue &&other) noexcept
    : type(other.type), null(other.null), count(other.count), payload(std::move(other.payload)) {
  StartStorage();
  MoveStorage(other);
}

TCIMValue &TCIMValue::operator=(const TCIMValue &other) {
  if (this == &other)
    return *this;
  // The text is copied before anything changes, so a failed allocation
  // leaves this value as it was.
  if (StorageOf(other.type) == EStorage::kText && StorageOf(type) != EStorage::kText) {
    std::string copy(other.text);
    ChangeStorage(other.type);
    text = std::move(copy);
  } else {
    if (StorageOf(other.type) != StorageOf(type))
      ChangeStorage(other.type);
    CopyStorage(other);
  }
  type = other.type;
  null = other.null;
  count = other.count;
  payload = other.payload;
  return *this;
}

TCIMValue &TCIMValue::operator=(TCIMValue &&other) noexcept {
  if (this == &other)
    return *this;
  if (StorageOf(other.type) != StorageOf(type))
    ChangeStorage(other.type);
  MoveStorage(other);
  type = other.type;
  null = other.null;
  count = other.count;
  payload = std::move(other.payload);
  return *this;
}

TCIMValue::~TCIMValue() {
  if (StorageOf(type) == EStorage::kText)
    text.~basic_string();
}

TCIMValue::TCIMValue(TCIMType nullType, unsigned int declaredCount)
    : type(nullType), count(declaredCount) {
  StartStorage();
}

TCIMValue::TCIMValue(TCIMType valueType, const std::string &valueText,
                     boost::shared_ptr<ICIMNamespace> ns)
    : type(valueType), null(false) {
  StartStorage();
  const char *begin = valueText.data();
  const char *end = begin + valueText.size();
  switch (static_cast<ECIMType>(valueType)) {
  case kCIMTypeBoolean:
    Trim(begin, end);
    if (EqualsLowerWord(begin, static_cast<std::size_t>(end - begin), "true", 4))
      scalar.boolean = true;
    else if (EqualsLowerWord(begin, static_cast<std::size_t>(end - begin), "false", 5))
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

TCIMValue::TCIMValue(bool value) : type(kCIMTypeBoolean), null(false) {
  scalar.boolean = value;
}

TCIMValue::TCIMValue(const std::string &value) : type(kCIMTypeString), null(false), text(value) {}

TCIMValue::TCIMValue(const char *value) : type(kCIMTypeString), text() {
  // A null pointer is a null string rather than a crash.
  if (value != nullptr) {
    null = false;
    text = value;
  }
}

TCIMValue::TCIMValue(const TCIMDateTime &value)
    : type(kCIMTypeDateTime), null(false), dateTime(value) {}

TCIMValue::TCIMValue(const TCIMReference &value) : type(kCIMTypeReference), null(false) {
  OwnPayload().MutableReference() = value;
}

TCIMValue TCIMValue::MakeUnsigned(ECIMType type, std::uint64_t value) {
  if (!IsUnsignedType(type))
    Throw(kORVStatusTypeMismatch);
  if (value > RangeOf(type).max)
    Throw(kORVStatusValueOutOfRange);
  TCIMValue result(TCIMType(type), 0);
  result.null = false;
  result.scalar.unsignedValue = value;
  return result;
}

TCIMValue TCIMValue::MakeSigned(ECIMType type, std::int64_t value) {
  if (!IsSignedType(type))
    Throw(kORVStatusTypeMismatch);
  const TIntegerRange range = RangeOf(type);
  if (value < range.min || (value > 0 && static_cast<std::uint64_t>(value) > range.max))
    Throw(kORVStatusValueOutOfRange);
  TCIMValue result(TCIMType(type), 0);
  result.null = false;
  result.scalar.signedValue = value;
  return result;
}

TCIMValue TCIMValue::MakeReal(ECIMType type, double value) {
  if (!IsRealType(type))
    Throw(kORVStatusTypeMismatch);
  if (type == kCIMTypeReal32 && std::isfinite(value)) {
    if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max()))
      Throw(kORVStatusValueOutOfRange);
    value = static_cast<double>(static_cast<float>(value));
  }
  TCIMValue result(TCIMType(type), 0);
  result.null = false;
  result.scalar.realValue = value;
  return result;
}

// ---- access ----------------------------------------------------------------

unsigned int TCIMValue::GetCount() const {
  if (IsArray())
    return null ? count : static_cast<unsigned int>(payload->elements.size());
  return null ? 0 : 1;
}

TCIMValue::operator bool() const {
  return type == kCIMTypeBoolean && !null && scalar.boolean;
}

namespace {
// What every typed getter checks first: the type, then that there is a
// value to give.
void CheckAccess(bool typeFits, bool isNull) {
  if (!typeFits)
    Throw(kORVStatusTypeMismatch);
  if (isNull)
    Throw(kORVStatusNullObject);
}
} // namespace

TCIMValue::operator TCIMReference() const {
  if (type == kCIMTypeReference && !null)
    return payload->Reference();
  return TCIMReference();
}

bool TCIMValue::GetBoolean() const {
  CheckAccess(type == kCIMTypeBoolean, null);
  return scalar.boolean;
}

std::uint64_t TCIMValue::GetUnsigned() const {
  CheckAccess(IsUnsignedType(type), null);
  return scalar.unsignedValue;
}

std::int64_t TCIMValue::GetSigned() const {
  CheckAccess(IsSignedType(type), null);
  return scalar.signedValue;
}

double TCIMValue::GetReal() const {
  CheckAccess(IsRealType(type), null);
  return scalar.realValue;
}

const std::string &TCIMValue::GetString() const {
  CheckAccess(type == kCIMTypeString, null);
  return text;
}

TCIMDateTime TCIMValue::GetDateTime() const {
  CheckAccess(type == kCIMTypeDateTime, null);
  return dateTime;
}

TCIMReference TCIMValue::GetReference() const {
  CheckAccess(type == kCIMTypeReference, null);
  return payload->Reference();
}

const std::vector<TCIMValue> &TCIMValue::GetElements() const {
  CheckAccess(IsArray(), null);
  return payload->elements;
}

// ---- change ----------------------------------------------------------------

void TCIMValue::Set(TCIMType elementType, unsigned int declaredCount,
                    const std::vector<TCIMValue> &newElements) {
  const TCIMType scalarType = elementType.GetElementType();
  if (scalarType == kCIMTypeNone)
    Throw(kORVStatusInvalidArgument);
  // Built before anything changes, so a failed allocation leaves the value.
  auto fresh = boost::make_shared<TPayload>();
  fresh->elements = newElements;
  if (scalarType == kCIMTypeReference && payload)
    fresh->referencedClass = payload->referencedClass;
  ChangeStorage(scalarType.GetArrayType());
  null = false;
  count = declaredCount;
  payload = std::move(fresh);
}

void TCIMValue::Set(const TCIMReference &newReference) {
  // The referenced class stays: it belongs to the declaration the value
  // fills, not to the path.
  auto fresh = boost::make_shared<TPayload>();
  fresh->MutableReference() = newReference;
  if (payload)
    fresh->referencedClass = payload->referencedClass;
  ChangeStorage(kCIMTypeReference);
  null = false;
  count = 0;
  payload = std::move(fresh);
}

// By value in the exported interface, which callers are built against.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void TCIMValue::SetReferencedClass(boost::shared_ptr<ICIMClass> cls) {
  const ECIMType scalarType = GetType().GetElementType();
  if (cls && scalarType != kCIMTypeReference && scalarType != kCIMTypeNone)
    Throw(kORVStatusTypeMismatch);
  if (!cls && (!payload || payload->referencedClass.expired()))
    return;
  OwnPayload().referencedClass = cls;
}

boost::shared_ptr<ICIMClass> TCIMValue::GetReferencedClass() const {
  if (!payload)
    return boost::shared_ptr<ICIMClass>();
  return payload->referencedClass.lock();
}

// ---- text ------------------------------------------------------------------

std::string TCIMValue::ToMOF() const {
  if (null)
    return "NULL";
  std::string out;
  if (IsArray()) {
    out += '{';
    bool first = true;
    for (const auto &element : payload->elements) {
      if (!first)
        out += ", ";
      first = false;
      out += element.ToMOF();
    }
    out += '}';
    return out;
  }
  switch (type) {
  case kCIMTypeString:
    AppendMOFQuoted(out, text, '"');
    break;
  case kCIMTypeChar16: {
    std::string character;
    AppendUtf8(character, scalar.unsignedValue);
    AppendMOFQuoted(out, character, '\'');
    break;
  }
  case kCIMTypeReal32:
  case kCIMTypeReal64: {
    AppendReal(out, type, scalar.realValue);
    // A MOF real needs its decimal point; "1e+20" becomes "1.0e+20".
    if (std::isfinite(scalar.realValue) && out.find('.') == std::string::npos) {
      const auto exponent = out.find('e');
      out.insert(exponent == std::string::npos ? out.size() : exponent, ".0");
    }
    break;
  }
  case kCIMTypeDateTime:
  case kCIMTypeReference:
    AppendMOFQuoted(out, ToString(), '"');
    break;
  default:
    out = ToString();
    break;
  }
  return out;
}

std::string TCIMValue::ToString() const {
  std::string out;
  if (null)
    return out;
  if (IsArray()) {
    bool first = true;
    for (const auto &element : payload->elements) {
      if (!first)
        out += ", ";
      first = false;
      out += element.ToString();
    }
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
  case kCIMTypeReference:
    out = payload->Reference().ToString();
    break;
  default:
    break;
  }
  return out;
}

bool TCIMValue::operator==(const TCIMValue &other) const {
  if (type != other.type || null != other.null)
    return false;
  if (null)
    return true;
  if (IsArray())
    return payload == other.payload || payload->elements == other.payload->elements;
  switch (type) {
  case kCIMTypeBoolean:
    return scalar.boolean == other.scalar.boolean;
  case kCIMTypeString:
    return text == other.text;
  case kCIMTypeReal32:
  case kCIMTypeReal64:
    // NaN equals NaN here, so that a value equals its own copy.
    return scalar.realValue == other.scalar.realValue ||
           (std::isnan(scalar.realValue) && std::isnan(other.scalar.realValue));
  case kCIMTypeDateTime:
    return dateTime == other.dateTime;
  case kCIMTypeReference:
    return payload == other.payload || payload->Reference() == other.payload->Reference();
  case kCIMTypeSint8:
  case kCIMTypeSint16:
  case kCIMTypeSint32:
  case kCIMTypeSint64:
    return scalar.signedValue == other.scalar.signedValue;
  default:
    return scalar.unsignedValue == other.scalar.unsignedValue;
  }
}

} // namespace NVRNORV20
