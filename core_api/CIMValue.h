// CIM types and values: every intrinsic CIM type, arrays of each, and null.
#ifndef ORV_CORE_API_CIMVALUE_H
#define ORV_CORE_API_CIMVALUE_H

#include "core_api/CIMDateTime.h"
#include "core_api/ORVExport.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace NVRNORV20 {

class ICIMClass;
class ICIMInstance;
class ICIMNamespace;
class TCIMReference;

/// Type codes. An array type is its element type's code or-ed with
/// kCIMTypeArrayFlag; code 0 means "no type" (an untyped null).
enum ECIMType : std::uint32_t {
  kCIMTypeNone = 0,
  kCIMTypeBoolean = 1,
  kCIMTypeString = 2,
  kCIMTypeChar16 = 3,
  kCIMTypeUint8 = 4,
  kCIMTypeSint8 = 5,
  kCIMTypeUint16 = 6,
  kCIMTypeSint16 = 7,
  kCIMTypeUint32 = 8,
  kCIMTypeSint32 = 9,
  kCIMTypeUint64 = 10,
  kCIMTypeSint64 = 11,
  kCIMTypeReal32 = 12,
  kCIMTypeReal64 = 13,
  kCIMTypeDateTime = 14,
  kCIMTypeReference = 15,
  kCIMTypeArrayFlag = 0x10,
};

class ORVCORE_API TCIMValue {
public:
  /// A CIM type: a scalar type code, possibly with the array flag.
  class ORVCORE_API TCIMType {
  public:
    TCIMType(ECIMType code = kCIMTypeNone) : typeCode(code) {}
    /// From a type name as CIM-XML writes it in TYPE and PARAMTYPE
    /// attributes ("boolean", "string", "char16", "uint8" ... "sint64",
    /// "real32", "real64", "datetime", "reference"), in any letter case.
    /// Any other name throws TORVException with kORVStatusInvalidTypeName.
    explicit TCIMType(const std::string &name);
    TCIMType(const TCIMType &other) = default;
    TCIMType &operator=(const TCIMType &other) = default;

    operator ECIMType() const { return typeCode; }

    bool IsArray() const { return (typeCode & kCIMTypeArrayFlag) != 0; }
    /// This type without the array flag.
    TCIMType GetElementType() const {
      return TCIMType(static_cast<ECIMType>(typeCode & ~kCIMTypeArrayFlag));
    }
    /// This type with the array flag.
    TCIMType GetArrayType() const {
      return TCIMType(static_cast<ECIMType>(typeCode | kCIMTypeArrayFlag));
    }
    /// The element type's CIM name ("uint8", "reference"); "" for no type.
    /// The array flag is not part of the name.
    const std::string &GetName() const;

  private:
    ECIMType typeCode;
  };

  /// Null, without a type.
  TCIMValue();
  TCIMValue(const TCIMValue &other);
  TCIMValue(TCIMValue &&other) noexcept;
  TCIMValue &operator=(const TCIMValue &other);
  TCIMValue &operator=(TCIMValue &&other) noexcept;
  ~TCIMValue();

  /// Null of the given type. For an array type, count is the array size that
  /// the declaration gives (kept for MOF); the value still holds no elements.
  TCIMValue(TCIMType type, unsigned int count);

  /// Reads text as CIM-XML writes a value of the type: booleans "true" or
  /// "false" in any letter case; integers in decimal with an optional sign
  /// (or 0x hexadecimal), range-checked; reals; char16 as one character;
  /// strings verbatim; datetimes in the 25-character CIM form; references as
  /// an object path ("ns:Class.key=value,..."). Surrounding whitespace is
  /// ignored except for strings and char16. ns gives a reference its
  /// namespace and may be empty.
  /// A datetime that does not parse throws kORVStatusInvalidDateTime; other
  /// bad text throws kORVStatusInvalidValueText, a number outside the type's
  /// range kORVStatusValueOutOfRange, an array or untyped type
  /// kORVStatusInvalidArgument.
  TCIMValue(TCIMType type, const std::string &text, boost::shared_ptr<ICIMNamespace> ns);

  explicit TCIMValue(bool value);
  explicit TCIMValue(const std::string &value);
  explicit TCIMValue(const char *value);
  explicit TCIMValue(const TCIMDateTime &value);
  explicit TCIMValue(const TCIMReference &value);
  /// An unsigned integer of the given type (uint8 ... uint64, or char16).
  /// Throws kORVStatusValueOutOfRange when it does not fit, and
  /// kORVStatusTypeMismatch for a type that is not an unsigned integer.
  static TCIMValue MakeUnsigned(ECIMType type, std::uint64_t value);
  /// A signed integer of the given type (sint8 ... sint64), checked likewise.
  static TCIMValue MakeSigned(ECIMType type, std::int64_t value);
  /// A real32 or real64.
  static TCIMValue MakeReal(ECIMType type, double value);

  TCIMType GetType() const { return TCIMType(type); }
  bool IsNull() const { return null; }
  bool IsArray() const { return (type & kCIMTypeArrayFlag) != 0; }
  /// Elements of an array value, or for a null array the declared count.
  unsigned int GetCount() const;

  /// The value as a boolean: a boolean's value; false for null and for
  /// every other type.
  explicit operator bool() const;
  /// The reference held; an empty reference for any other value.
  explicit operator TCIMReference() const;

  /// Typed access. Each throws kORVStatusTypeMismatch when the value is not
  /// of a fitting type, and kORVStatusNullObject when it is null.
  bool GetBoolean() const;
  std::uint64_t GetUnsigned() const; // uint8 ... uint64 and char16
  std::int64_t GetSigned() const;    // sint8 ... sint64
  double GetReal() const;            // real32, real64
  const std::string &GetString() const;
  TCIMDateTime GetDateTime() const;
  TCIMReference GetReference() const;
  const std::vector<TCIMValue> &GetElements() const;

  /// Makes this an array of the given element type (the array flag is added
  /// when missing). count is the declared size; the elements are copied.
  void Set(TCIMType type, unsigned int count, const std::vector<TCIMValue> &elements);
  /// The same, taking the elements over.
  void Set(TCIMType type, unsigned int count, std::vector<TCIMValue> &&elements);
  /// Makes this a reference value holding a copy of the reference.
  void Set(const TCIMReference &reference);
  /// The class that a reference value (or a typed null reference) points
  /// to. An empty pointer means no class. Held weakly: the namespace owns
  /// its classes.
  void SetReferencedClass(boost::shared_ptr<ICIMClass> cls);
  boost::shared_ptr<ICIMClass> GetReferencedClass() const;
  /// A scalar string that holds an embedded object (DSP0004's
  /// EmbeddedObject and EmbeddedInstance) keeps its text and, once read,
  /// the object, which MOF writes in its place. Another type throws
  /// kORVStatusTypeMismatch; an empty pointer removes the object.
  void SetEmbeddedObject(boost::shared_ptr<ICIMInstance> instance);
  void SetEmbeddedObject(boost::shared_ptr<ICIMClass> cls);
  /// The embedded object as SetEmbeddedObject gave it; empty otherwise.
  boost::shared_ptr<ICIMInstance> GetEmbeddedInstance() const;
  boost::shared_ptr<ICIMClass> GetEmbeddedClass() const;

  /// The value as a MOF literal: NULL, true/false, numbers, quoted and
  /// escaped strings and char16, datetimes as quoted CIM text, references as
  /// quoted object paths, arrays as {a, b}.
  std::string ToMOF() const;
  /// The value as CIM-XML text (what the text constructor reads back).
  /// Arrays give their elements' texts joined with ", ". Null gives "".
  /// A reference gives its path's text (see TCIMReference::ToString, also
  /// for the status a text too long throws; ToMOF quotes that text).
  std::string ToString() const;

  /// Same type, same nullness and equal contents.
  bool operator==(const TCIMValue &other) const;
  bool operator!=(const TCIMValue &other) const { return !(*this == other); }

private:
  /// Walks nested values (array elements, reference keys) with a stack of
  /// its own: releasing, comparing and writing them.
  friend class TCIMValueTree;

  /// The first member is the widest, so that value-initialising the union
  /// clears all of it.
  union TScalar {
    std::uint64_t unsignedValue;
    std::int64_t signedValue;
    double realValue;
    bool boolean;
  };
  /// What few values hold: a reference, array elements, the class that a
  /// reference points to. Allocated only for such values and shared by
  /// copies; a change to a shared one copies it first.
  struct TPayload;

  /// Which member of the union below is alive, by type alone: the text for
  /// a string scalar, the datetime for a datetime scalar, else the scalar.
  enum class EStorage : std::uint8_t { kScalar, kDateTime, kText };
  static EStorage StorageOf(ECIMType code) {
    return code == kCIMTypeString     ? EStorage::kText
           : code == kCIMTypeDateTime ? EStorage::kDateTime
                                      : EStorage::kScalar;
  }
  /// Ends the live member and makes the one for newType alive (empty).
  void ChangeStorage(ECIMType newType);
  /// With the scalar alive (as every constructor starts), makes the member
  /// for type alive.
  void StartStorage();
  /// Copies other's live member into this one's, whose type is other's.
  void CopyStorage(const TCIMValue &other);
  void MoveStorage(TCIMValue &other) noexcept;
  /// A payload that this value alone holds, made or copied as needed.
  TPayload &OwnPayload();
  /// The MOF literal of a value that is null or not an array.
  void AppendScalarMOF(std::string &out) const;

  ECIMType type = kCIMTypeNone;
  bool null = true;
  unsigned int count = 0;
  union {
    TScalar scalar{};
    TCIMDateTime dateTime;
    std::string text;
  };
  boost::shared_ptr<TPayload> payload;
};

using TCIMType = TCIMValue::TCIMType;

/// The options argument that every object-model operation takes last.
using TCIMOptions = std::map<std::string, TCIMValue>;

} // namespace NVRNORV20

#include "core_api/CIMReference.h"

#endif
