#include "core/CIMValue.h"

#include "core/CIMValueTree.h"

#include <boost/make_shared.hpp>

#include <cmath>
#include <limits>
#include <utility>

namespace NVRNORV20 {

namespace {

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

} // namespace

// ---- construction ----------------------------------------------------------

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
  Set(elementType, declaredCount, std::vector<TCIMValue>(newElements));
}

void TCIMValue::Set(TCIMType elementType, unsigned int declaredCount,
                    std::vector<TCIMValue> &&newElements) {
  const TCIMType scalarType = elementType.GetElementType();
  if (scalarType == kCIMTypeNone)
    Throw(kORVStatusInvalidArgument);
  // Built before anything changes, so a failed allocation leaves the value.
  auto fresh = boost::make_shared<TPayload>();
  fresh->elements = std::move(newElements);
  // A vector that grew element by element has room to spare, which a value
  // kept for the life of a schema should not hold: the elements move into
  // storage of their own size (their texts stay where they are).
  fresh->elements.shrink_to_fit();
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

void TCIMValue::SetEmbeddedObject(boost::shared_ptr<ICIMInstance> instance) {
  if (type != kCIMTypeString)
    Throw(kORVStatusTypeMismatch);
  TPayload &own = OwnPayload();
  own.embeddedInstance = std::move(instance);
  own.embeddedClass.reset();
}

void TCIMValue::SetEmbeddedObject(boost::shared_ptr<ICIMClass> cls) {
  if (type != kCIMTypeString)
    Throw(kORVStatusTypeMismatch);
  TPayload &own = OwnPayload();
  own.embeddedClass = std::move(cls);
  own.embeddedInstance.reset();
}

boost::shared_ptr<ICIMInstance> TCIMValue::GetEmbeddedInstance() const {
  return payload ? payload->embeddedInstance : boost::shared_ptr<ICIMInstance>();
}

boost::shared_ptr<ICIMClass> TCIMValue::GetEmbeddedClass() const {
  return payload ? payload->embeddedClass : boost::shared_ptr<ICIMClass>();
}

boost::shared_ptr<ICIMClass> TCIMValue::GetReferencedClass() const {
  if (!payload)
    return boost::shared_ptr<ICIMClass>();
  return payload->referencedClass.lock();
}

bool TCIMValue::operator==(const TCIMValue &other) const {
  return TCIMValueTree::Equal(*this, other);
}

TCIMValue::TPayload::~TPayload() {
  TCIMValueTree::ReleaseNested(*this);
}

} // namespace NVRNORV20
