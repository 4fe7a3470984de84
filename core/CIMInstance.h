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
#include <unordered_map>
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

  /// The value of the property declared by property at that position of
  /// this instance's layout: the one assigned, else the default.
  TCIMValue ValueAt(std::size_t position, ICIMPropertyDecl &property) const {
    const TAssigned *value = AssignedAt(position);
    return value ? value->value : property.GetValue();
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
  struct TAssigned {
    std::size_t position;
    /// Kept alive by the layout.
    ICIMPropertyDecl *property;
    TCIMValue value;
  };
  /// Up to this many values, the one at a position is found by a scan.
  static constexpr std::size_t kScannedValues = 16;
  /// Room for this many values is made when an instance is created.
  static constexpr std::size_t kReservedValues = 8;

  /// The property's entry in the layout; kORVStatusNoSuchProperty for an
  /// unknown name.
  const TNameTrie<ICIMPropertyDecl>::TEntry &EntryOf(const std::string &name) const;
  /// Null while the property shows its default.
  const TAssigned *AssignedAt(std::size_t position) const;

  boost::shared_ptr<TCIMClass> cimClass;
  boost::weak_ptr<ICIMNamespace> cimNamespace;
  boost::shared_ptr<const TPropertyLayout> layout;
  /// In the order assigned.
  std::vector<TAssigned> assigned;
  /// Position to place in assigned, once there are more than
  /// kScannedValues.
  std::unordered_map<std::size_t, std::size_t> assignedIndex;
  std::uint64_t sequence = 0;
  bool committed = false;
};

/// One property of an instance: reads the instance's current value.
class TCIMInstanceProperty final : public ICIMProperty {
public:
  TCIMInstanceProperty(boost::shared_ptr<TCIMInstance> instance, std::size_t position,
                       boost::shared_ptr<ICIMPropertyDecl> property);

  TCIMType GetDeclaredType(const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  TCIMValue GetValue(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMPropertyDecl>
  GetPropertyDecl(const TCIMOptions &options = TCIMOptions()) override;
  bool IsKey(const TCIMOptions &options = TCIMOptions()) override;

private:
  boost::shared_ptr<TCIMInstance> instance;
  std::size_t position;
  boost::shared_ptr<ICIMPropertyDecl> property;
};

} // namespace NVRNORV20

#endif
