// Instances of classes and the properties they show.
#ifndef ORV_CORE_CIMINSTANCE_H
#define ORV_CORE_CIMINSTANCE_H

#include "core/CIMClass.h"
#include "core_api/CIMInterfaces.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace NVRNORV20 {

class TCIMInstance final : public ICIMInstance,
                           public boost::enable_shared_from_this<TCIMInstance> {
public:
  /// Every property starts at its declaration's default value.
  /// An instance keeps only the values assigned to it: a property never
  /// assigned shows its declaration's default, which a committed class no
  /// longer changes. Instances of classes with many properties thus cost
  /// what their documents set, not a copy of every default.
  TCIMInstance(boost::shared_ptr<TCIMClass> cimClass, boost::weak_ptr<ICIMNamespace> ns,
               boost::shared_ptr<const TPropertyLayout> layout);

  const TPropertyLayout &GetLayout() const { return *layout; }
  TCIMValue ValueAt(std::size_t position) const {
    const std::uint32_t slot = slots[position];
    return slot == 0 ? layout->properties[position]->GetValue() : assigned[slot - 1];
  }
  /// The place in the namespace's commit order, given at Commit.
  std::uint64_t GetSequence() const { return sequence; }
  void SetSequence(std::uint64_t commitSequence) { sequence = commitSequence; }
  /// The key properties of the class as its Commit settled them, in
  /// property order, each with this instance's value.
  std::vector<std::pair<boost::shared_ptr<ICIMPropertyDecl>, TCIMValue>> GetKeyValues() const;

  boost::shared_ptr<ICIMClass> GetClass(const TCIMOptions &options = TCIMOptions()) override;
  /// Throws kORVStatusNamespaceGone when the namespace no longer exists.
  void Commit(TCIMOptions options = TCIMOptions()) override;
  bool IsCommitted(const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetClassName(const TCIMOptions &options = TCIMOptions()) override;
  TCIMReference GetPath(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMNamespace>
  GetNamespace(const TCIMOptions &options = TCIMOptions()) override;
  std::vector<boost::shared_ptr<ICIMProperty>>
  GetProperties(const TCIMOptions &options = TCIMOptions()) override;
  TCIMValue GetPropertyValue(const std::string &name,
                             const TCIMOptions &options = TCIMOptions()) override;
  bool HasProperty(const std::string &name, const TCIMOptions &options = TCIMOptions()) override;
  std::string ToMOF(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMProperty>
  GetPropertyDecl(const std::string &name, const TCIMOptions &options = TCIMOptions()) override;
  /// A property declared without a type takes a value of any type.
  void SetPropertyValue(const std::string &name, const TCIMValue &value,
                        const TCIMOptions &options = TCIMOptions()) override;

private:
  /// The property's place in the layout; kORVStatusNoSuchProperty for an
  /// unknown name.
  std::size_t PositionOf(const std::string &name) const;

  boost::shared_ptr<TCIMClass> cimClass;
  boost::weak_ptr<ICIMNamespace> cimNamespace;
  boost::shared_ptr<const TPropertyLayout> layout;
  /// Per property: 0 while it shows its default, else 1 + its place in
  /// assigned.
  std::vector<std::uint32_t> slots;
  std::vector<TCIMValue> assigned;
  std::uint64_t sequence = 0;
  bool committed = false;
};

/// One property of an instance: reads the instance's current value.
class TCIMInstanceProperty final : public ICIMProperty {
public:
  TCIMInstanceProperty(boost::shared_ptr<TCIMInstance> instance, std::size_t position);

  TCIMType GetDeclaredType(const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  TCIMValue GetValue(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMPropertyDecl>
  GetPropertyDecl(const TCIMOptions &options = TCIMOptions()) override;
  bool IsKey(const TCIMOptions &options = TCIMOptions()) override;

private:
  boost::shared_ptr<TCIMInstance> instance;
  std::size_t position;
};

} // namespace NVRNORV20

#endif
