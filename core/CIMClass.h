// A class of a namespace.
#ifndef ORV_CORE_CIMCLASS_H
#define ORV_CORE_CIMCLASS_H

#include "core/CIMMethod.h"
#include "core/CIMName.h"
#include "core/CIMNameTrie.h"
#include "core/CIMPropertyDecl.h"
#include "core/CIMQualifier.h"
#include "core_api/CIMInterfaces.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace NVRNORV20 {

/// A class's methods: inherited ones first (an overridden one in its
/// inherited place), then its own new ones.
using TMethodLayout = TNameTrie<ICIMMethod>;

/// A class's properties as its instances see them, in the same order as
/// its methods, at positions 0 to Size() - 1. Shared by the class and every
/// instance made after its Commit, and node by node by its subclasses'
/// layouts.
struct TPropertyLayout {
  TNameTrie<ICIMPropertyDecl> members;
  /// The key properties with their positions, ascending.
  std::vector<std::pair<std::size_t, boost::shared_ptr<ICIMPropertyDecl>>> keys;
};

class TCIMClass final : public TCIMQualified<ICIMClass>,
                        public boost::enable_shared_from_this<TCIMClass> {
public:
  /// Made by the namespace, which registers it at once.
  TCIMClass(boost::weak_ptr<ICIMNamespace> ns, std::string name,
            boost::shared_ptr<ICIMClass> superClass);
  /// Releases the chain of superclasses in a loop (see ReleaseChain).
  ~TCIMClass() override;
  TCIMClass(const TCIMClass &) = delete;
  TCIMClass &operator=(const TCIMClass &) = delete;

  /// The layout settled at Commit; before Commit one built for the call.
  boost::shared_ptr<const TPropertyLayout> GetLayout();

  boost::shared_ptr<ICIMNamespace>
  GetNamespace(const TCIMOptions &options = TCIMOptions()) override;
  void Commit(const TCIMOptions &options = TCIMOptions()) override;
  bool IsCommitted(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMClass> GetSuperClass(const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetSuperClassName(const TCIMOptions &options = TCIMOptions()) override;
  bool IsAssociation(const TCIMOptions &options = TCIMOptions()) override;
  bool IsSubclassOf(const std::string &className,
                    const TCIMOptions &options = TCIMOptions()) override;
  std::vector<boost::shared_ptr<ICIMPropertyDecl>>
  GetKeyProperties(const TCIMOptions &options = TCIMOptions()) override;
  std::vector<boost::shared_ptr<ICIMPropertyDecl>>
  GetLocalProperties(const TCIMOptions &options = TCIMOptions()) override;
  bool HasProperty(const std::string &propertyName,
                   const TCIMOptions &options = TCIMOptions()) override;
  void RemoveProperty(const std::string &propertyName,
                      const TCIMOptions &options = TCIMOptions()) override;
  std::vector<boost::shared_ptr<ICIMMethod>>
  GetLocalMethods(const TCIMOptions &options = TCIMOptions()) override;
  bool HasMethod(const std::string &methodName,
                 const TCIMOptions &options = TCIMOptions()) override;
  std::vector<std::string> GetDerivation(const TCIMOptions &options = TCIMOptions()) override;
  /// An empty name throws kORVStatusInvalidArgument.
  boost::shared_ptr<ICIMPropertyDecl>
  AddProperty(const std::string &propertyName, TCIMValue value,
              const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMPropertyDecl>
  GetProperty(const std::string &propertyName, const TCIMOptions &options = TCIMOptions()) override;
  std::vector<boost::shared_ptr<ICIMPropertyDecl>>
  GetProperties(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMMethod> GetMethod(const std::string &methodName,
                                          const TCIMOptions &options = TCIMOptions()) override;
  std::vector<boost::shared_ptr<ICIMMethod>>
  GetMethods(const TCIMOptions &options = TCIMOptions()) override;
  /// An empty vector once the namespace is gone or no longer holds this
  /// class.
  std::vector<boost::shared_ptr<ICIMInstance>>
  GetInstances(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMInstance>
  CreateInstance(const TCIMOptions &options = TCIMOptions()) override;
  /// Throws kORVStatusNoSuchMethod for a name this class does not declare,
  /// kORVStatusAlreadyCommitted after Commit.
  void RemoveMethod(const std::string &methodName,
                    const TCIMOptions &options = TCIMOptions()) override;
  /// After Commit: kORVStatusAlreadyCommitted; an empty name:
  /// kORVStatusInvalidArgument.
  boost::shared_ptr<ICIMMethod> AddMethod(const std::string &methodName, TCIMType returnType,
                                          const TCIMOptions &options = TCIMOptions()) override;
  std::string ToMOF(const TCIMOptions &options = TCIMOptions()) override;

private:
  /// The inherited member of that name, empty when there is none.
  boost::shared_ptr<ICIMPropertyDecl> FindInherited(const std::string &propertyName) const;
  boost::shared_ptr<ICIMMethod> FindInheritedMethod(const std::string &methodName) const;
  /// Own or inherited; empty when there is none.
  boost::shared_ptr<ICIMPropertyDecl> FindProperty(const std::string &propertyName);
  boost::shared_ptr<ICIMMethod> FindMethod(const std::string &methodName);
  /// This class and its ancestors up to the first committed one (or one of
  /// another model), which is left in above (null when there is none).
  std::vector<TCIMClass *> UncommittedChain(ICIMClass *&above);
  /// A layout of this class not yet committed: the uncommitted chain above
  /// it laid out from its top down, each class with extend over the one
  /// above, starting from the settled layout of the first committed
  /// ancestor (or foreign's of one of another model).
  template <class TLayout>
  boost::shared_ptr<const TLayout>
  BuildOnChain(boost::shared_ptr<const TLayout> TCIMClass::*settled,
               boost::shared_ptr<const TLayout> (*foreign)(ICIMClass &),
               boost::shared_ptr<const TLayout> (TCIMClass::*extend)(const TLayout &) const);
  boost::shared_ptr<const TPropertyLayout> BuildLayout();
  /// The layout of this class over its superclass's.
  boost::shared_ptr<const TPropertyLayout> LayOut(const TPropertyLayout &above) const;
  boost::shared_ptr<const TMethodLayout> BuildMethods();
  /// This class's methods over its superclass's.
  boost::shared_ptr<const TMethodLayout> ListMethods(const TMethodLayout &above) const;
  void ThrowIfCommitted() const;

  boost::weak_ptr<ICIMNamespace> cimNamespace;
  std::string name;
  std::string superClassName;
  boost::shared_ptr<ICIMClass> superClass;
  TNamedList<TCIMPropertyDecl> localProperties;
  TNamedList<TCIMMethod> localMethods;
  bool committed = false;
  /// Settled at Commit.
  boost::shared_ptr<const TPropertyLayout> layout;
  boost::shared_ptr<const TMethodLayout> methods;
};

} // namespace NVRNORV20

#endif
