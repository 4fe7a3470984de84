// What the three sources of TCIMValue share: CIMValue.cpp (storage and
// access), CIMValueText.cpp (text to values and back) and CIMValueMof.cpp
// (MOF literals). Internal to the core library; the class itself is
// declared in core_api/CIMValue.h.
#ifndef ORV_CORE_CIMVALUE_H
#define ORV_CORE_CIMVALUE_H

#include "core_api/CIMValue.h"
#include "core_api/ORVStatusCode.h"

#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace NVRNORV20 {

// Arrays, which schemas hold by the ten thousand, need no path: a
// reference value's path lives apart, made when one is set.
struct TCIMValue::TPayload {
  TPayload() = default;
  TPayload(const TPayload &other)
      : elements(other.elements), referencedClass(other.referencedClass),
        embeddedInstance(other.embeddedInstance), embeddedClass(other.embeddedClass) {
    if (other.path)
      path = std::make_unique<TCIMReference>(*other.path);
  }
  TPayload &operator=(const TPayload &) = delete;
  /// A key of the path may hold a reference that holds another, as deep as
  /// a document nests them: what this payload alone holds is released in a
  /// loop (TCIMValueTree::ReleaseNested), never by destructors nested as
  /// deep.
  ~TPayload();

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
  boost::shared_ptr<ICIMInstance> embeddedInstance;
  boost::shared_ptr<ICIMClass> embeddedClass;
  /// The next payload on the list that a release works through; empty
  /// outside a release.
  boost::shared_ptr<TPayload> nextReleased;
};

/// Every failure of a value operation is a TORVException with its status.
[[noreturn]] inline void Throw(EORVStatusCode code) {
  throw TORVException(code);
}

struct TIntegerRange {
  bool isSigned;
  std::int64_t min;
  std::uint64_t max;
};

// The range of an integer type, indexed by type code; char16 counts as an
// unsigned 16-bit number.
inline TIntegerRange RangeOf(ECIMType type) {
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

} // namespace NVRNORV20

#endif
