// Instances of classes that no namespace defines: each property is
// declared by the first value it is given.
#ifndef ORV_CORE_CIMSTANDALONEINSTANCE_H
#define ORV_CORE_CIMSTANDALONEINSTANCE_H

#include "core/CIMName.h"
#include "core_api/CIMInterfaces.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace NVRNORV20 {

class TCIMStandaloneInstance final : public ICIMInstance,
                                     public boost::enable_shared_from_this<TCIMStandaloneInstance> {
public:
  /// One property as this instance holds it.
  struct TSetProperty {
    std::string name;
    /// None until a typed value is set.
    TCIMType declared;
    TCIMValue value;
    bool key;
  };

  /// An empty class name throws kORVStatusInvalidArgument.
  TCIMStandaloneInstance(std::string className, boost::weak_ptr<ICIMNamespace> ns);

  /// The property at a position this instance has.
  const TSetProperty &At(std::size_t position) const { return properties[position]; }

  /// Empty: no namespace defines the class.
  boost::shared_ptr<ICIMClass> GetClass(const TCIMOptions &options = TCIMOptions()) override;
  /// Throws kORVStatusNotSupported: the namespace keeps instances by their
  /// class, and this one has none.
  void Commit(TCIMOptions options = TCIMOptions()) override;
  bool IsCommitted(const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetClassName(const TCIMOptions &options = TCIMOptions()) override;
  /// The key bindings are the properties marked as keys, in property order.
  TCIMReference GetPath(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMNamespace>
  GetNamespace(const TCIMOptions &options = TCIMOptions()) override;
  /// In the order first set.
  std::vector<boost::shared_ptr<ICIMProperty>>
  GetProperties(const TCIMOptions &options = TCIMOptions()) override;
  TCIMValue GetPropertyValue(const std::string &name,
                             const TCIMOptions &options = TCIMOptions()) override;
  bool HasProperty(const std::string &name, const TCIMOptions &options = TCIMOptions()) override;
  /// Every property, a null one as NULL, in the order first set.
  std::string ToMOF(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMProperty>
  GetPropertyDecl(const std::string &name, const TCIMOptions &options = TCIMOptions()) override;
  /// A new name (an empty one throws kORVStatusInvalidArgument) adds a
  /// property declared with the value's type. A name already set takes a
  /// value of its declared type, or an untyped null as null of that type;
  /// another type throws kORVStatusTypeMismatch. A property declared
  /// without a type takes any value, whose type it then declares. An
  /// option "KEY" makes the property a key when it is boolean true and
  /// clears that otherwise; without it, the mark stays as it was.
  void SetPropertyValue(const std::string &name, const TCIMValue &value,
                        const TCIMOptions &options = TCIMOptions()) override;

private:
  /// The position of the property of that name; the number of properties
  /// when none has it.
  std::size_t Find(const std::string &name) const;
  /// Throws kORVStatusNoSuchProperty for an unknown name.
  std::size_t PositionOf(const std::string &name) const;

  std::string className;
  boost::weak_ptr<ICIMNamespace> cimNamespace;
  /// In the order first set; never shrinks, so positions stay valid.
  std::vector<TSetProperty> properties;
  TNamePositions positions;
};

/// One property of a standalone instance: reads the instance's current
/// type, value and key mark.
class TCIMStandaloneProperty final : public ICIMProperty {
public:
  TCIMStandaloneProperty(boost::shared_ptr<TCIMStandaloneInstance> instance, std::size_t position);

  TCIMType GetDeclaredType(const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  TCIMValue GetValue(const TCIMOptions &options = TCIMOptions()) override;
  /// Empty: no class declares the property.
  boost::shared_ptr<ICIMPropertyDecl>
  GetPropertyDecl(const TCIMOptions &options = TCIMOptions()) override;
  bool IsKey(const TCIMOptions &options = TCIMOptions()) override;

private:
  boost::shared_ptr<TCIMStandaloneInstance> instance;
  std::size_t position;
  /// A copy: the instance's list moves its names when it grows.
  std::string name;
};

} // namespace NVRNORV20

#endif
