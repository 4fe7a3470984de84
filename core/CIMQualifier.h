// Qualifier declarations, qualifiers, and the qualifier list that every
// qualified element (class, property declaration, method, parameter) keeps.
#ifndef ORV_CORE_CIMQUALIFIER_H
#define ORV_CORE_CIMQUALIFIER_H

#include "core/CIMName.h"
#include "core_api/CIMInterfaces.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace NVRNORV20 {

class TCIMQualifierDecl final : public ICIMQualifierDecl {
public:
  /// The type comes from the default value; for an array type a null
  /// default's count is the declared size.
  TCIMQualifierDecl(std::string name, const TCIMValue &defaultValue, std::uint32_t scope,
                    std::uint32_t flavor);

  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  void Commit(const TCIMOptions &options = TCIMOptions()) override;
  std::uint32_t GetScope(const TCIMOptions &options = TCIMOptions()) override;
  std::uint32_t GetFlavor(const TCIMOptions &options = TCIMOptions()) override;
  TCIMValue GetDefaultValue(const TCIMOptions &options = TCIMOptions()) override;
  TCIMType GetType(const TCIMOptions &options = TCIMOptions()) override;
  bool IsArray(const TCIMOptions &options = TCIMOptions()) override;
  unsigned int GetArraySize(const TCIMOptions &options = TCIMOptions()) override;
  /// The size of an array declared with a default, which the default cannot carry.
  void SetArraySize(unsigned int size) { arraySize = size; }
  bool IsCommitted(const TCIMOptions &options = TCIMOptions()) override;
  std::string ToMOF(const TCIMOptions &options = TCIMOptions()) override;

private:
  std::string name;
  TCIMValue defaultValue;
  unsigned int arraySize;
  std::uint32_t scope;
  std::uint32_t flavor;
  bool committed = false;
};

class TCIMQualifier final : public ICIMQualifier {
public:
  /// A qualifier of the declaration, with the value fitted to it (see
  /// FitValue). An empty declaration throws kORVStatusNullObject.
  static boost::shared_ptr<TCIMQualifier> Make(boost::shared_ptr<ICIMQualifierDecl> declaration,
                                               const TCIMValue &value, std::uint32_t flavor);
  /// The qualifier that an element shows for a name it does not carry: no
  /// declaration, a null value without type.
  static boost::shared_ptr<TCIMQualifier> MakeAbsent(const std::string &name);
  /// The copy of an inherited qualifier that an overriding element shows,
  /// marked propagated.
  static boost::shared_ptr<TCIMQualifier> MakePropagated(ICIMQualifier &inherited);

  TCIMQualifier(const std::string &name, boost::shared_ptr<ICIMQualifierDecl> declaration,
                TCIMValue value, std::uint32_t flavor, bool propagated);

  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMQualifierDecl>
  GetDeclaration(const TCIMOptions &options = TCIMOptions()) override;
  std::uint32_t GetFlavor(const TCIMOptions &options = TCIMOptions()) override;
  void SetFlavor(std::uint32_t newFlavor, const TCIMOptions &options = TCIMOptions()) override;
  TCIMType GetType(const TCIMOptions &options = TCIMOptions()) override;
  bool IsPropagated(const TCIMOptions &options = TCIMOptions()) override;
  /// Fitted to the declaration like the value given at creation.
  void SetValue(const TCIMValue &newValue, const TCIMOptions &options = TCIMOptions()) override;
  /// With kMofFlavorsOption, the flavors that differ from the
  /// declaration's follow the value.
  std::string ToMOF(const TCIMOptions &options = TCIMOptions()) override;
  TCIMValue GetValue(const TCIMOptions &options = TCIMOptions()) override;

  /// The value a qualifier of the declared type takes for the given one: an
  /// untyped null becomes a null of the declared type. The element types
  /// must agree (kORVStatusTypeMismatch otherwise), but the array form is
  /// not required to: a declaration read from CIM-XML without a default
  /// carries its array flag nowhere, so an array qualifier of a declaration
  /// that looks scalar is taken as it is, and so is the reverse. A
  /// declaration without a type takes any value.
  static TCIMValue FitValue(const TCIMValue &value, TCIMType declared);

private:
  /// " : Flavor ..." for the flavors that differ from the declaration's.
  /// A translatable declaration's qualifier that is not translatable has no
  /// MOF flavor: it is a line, and left unwritten.
  std::string FlavorsMOF();

  /// A qualifier is named by its declaration; only one whose name differs
  /// from its declaration's (or that has none) keeps a name of its own.
  /// Schemas hold tens of thousands of qualifiers, and a copy of the name
  /// in each would cost a string apiece.
  std::unique_ptr<const std::string> ownName;
  boost::shared_ptr<ICIMQualifierDecl> declaration;
  TCIMValue value;
  std::uint32_t flavor;
  bool propagated;
};

/// The qualifiers of one element: its own in the order attached, then those
/// propagated from the element it overrides (settled when its class is
/// committed). An element carries a handful, found by a scan; only one that
/// carries many keeps an index (see TNamePositions).
class TCIMQualifierList {
public:
  /// Replaces an own qualifier of the same name in place. An empty pointer
  /// throws kORVStatusNullObject.
  void Add(boost::shared_ptr<ICIMQualifier> qualifier);
  std::vector<boost::shared_ptr<ICIMQualifier>> All() const;
  const std::vector<boost::shared_ptr<ICIMQualifier>> &Own() const { return own; }
  /// Own or propagated; empty when the element has none of that name.
  boost::shared_ptr<ICIMQualifier> Find(const std::string &name) const;
  bool Has(const std::string &name) const;
  /// Never empty: see TCIMQualifier::MakeAbsent.
  boost::shared_ptr<ICIMQualifier> Get(const std::string &name) const;
  /// True when the element has the qualifier with a true boolean value.
  bool IsTrue(const std::string &name) const;
  /// Replaces the propagated qualifiers with copies of the inherited ones
  /// whose flavor is to-subclass and that the element does not carry itself.
  void Propagate(const std::vector<boost::shared_ptr<ICIMQualifier>> &inherited);

private:
  using TList = std::vector<boost::shared_ptr<ICIMQualifier>>;

  /// The qualifier of that name in list, whose positions are given; empty
  /// when there is none.
  static boost::shared_ptr<ICIMQualifier> Scan(const TList &list, const TNamePositions &positions,
                                               const std::string &name);
  /// Appends to list, whose names do not include the qualifier's.
  static void Append(TList &list, TNamePositions &positions,
                     boost::shared_ptr<ICIMQualifier> qualifier);

  TList own;
  TList propagated;
  TNamePositions ownPositions;
  TNamePositions propagatedPositions;
};

/// The qualified-object operations over a TCIMQualifierList, for each
/// interface that derives from ICIMQualifiedObject.
template <class TInterface> class TCIMQualified : public TInterface {
public:
  void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier,
                    const TCIMOptions & = TCIMOptions()) override {
    qualifiers.Add(std::move(qualifier));
  }
  boost::shared_ptr<ICIMQualifier> CreateQualifier(boost::shared_ptr<ICIMQualifierDecl> declaration,
                                                   const TCIMValue &value, std::uint32_t flavor,
                                                   const TCIMOptions & = TCIMOptions()) override {
    return TCIMQualifier::Make(std::move(declaration), value, flavor);
  }
  std::vector<boost::shared_ptr<ICIMQualifier>>
  GetQualifiers(const TCIMOptions & = TCIMOptions()) override {
    return qualifiers.All();
  }
  bool HasQualifier(const std::string &name, const TCIMOptions & = TCIMOptions()) override {
    return qualifiers.Has(name);
  }
  boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string &name,
                                                const TCIMOptions & = TCIMOptions()) override {
    return qualifiers.Get(name);
  }

protected:
  TCIMQualifierList qualifiers;
};

} // namespace NVRNORV20

#endif
