// The in-memory namespace: registry of qualifier declarations, classes and
// committed instances.
#ifndef ORV_CORE_CIMNAMESPACE_H
#define ORV_CORE_CIMNAMESPACE_H

#include "core/CIMClass.h"
#include "core/CIMInstance.h"
#include "core/CIMName.h"
#include "core/CIMQualifier.h"
#include "core/InstancePathIndex.h"
#include "core/SequenceList.h"
#include "core_api/CIMInterfaces.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace NVRNORV20 {

class TCIMNamespace final : public ICIMNamespace,
                            public boost::enable_shared_from_this<TCIMNamespace> {
public:
  explicit TCIMNamespace(std::string name);
  ~TCIMNamespace() override;

  TCIMNamespace(const TCIMNamespace &) = delete;
  TCIMNamespace &operator=(const TCIMNamespace &) = delete;

  /// Takes a committed instance into the registry. Its class must be this
  /// namespace's class of that name (kORVStatusSchemaLookup otherwise); a
  /// keyed instance whose path is taken throws kORVStatusAlreadyExists.
  void RegisterInstance(const boost::shared_ptr<TCIMInstance> &instance);

  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  std::vector<boost::shared_ptr<ICIMClass>>
  GetClasses(const TCIMOptions &options = TCIMOptions()) override;
  void DeleteClass(const std::string &className,
                   const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMClass> CreateClass(const std::string &className,
                                           boost::shared_ptr<ICIMClass> superClass,
                                           const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMClass> GetClass(const std::string &className,
                                        const TCIMOptions &options = TCIMOptions()) override;
  std::vector<boost::shared_ptr<ICIMQualifierDecl>>
  GetQualifierDecls(const TCIMOptions &options = TCIMOptions()) override;
  void DeleteQualifierDecl(const std::string &qualifierName,
                           const TCIMOptions &options = TCIMOptions()) override;
  /// An empty name throws kORVStatusInvalidArgument.
  boost::shared_ptr<ICIMQualifierDecl>
  CreateQualifierDecl(const std::string &qualifierName, const TCIMValue &defaultValue,
                      std::uint32_t scope, std::uint32_t flavor,
                      const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMQualifierDecl>
  GetQualifierDecl(const std::string &qualifierName,
                   const TCIMOptions &options = TCIMOptions()) override;
  bool HasClass(const std::string &className, const TCIMOptions &options = TCIMOptions()) override;
  /// An unknown class name throws kORVStatusSchemaLookup.
  std::vector<boost::shared_ptr<ICIMInstance>>
  GetInstances(const std::string &className, bool deep,
               const TCIMOptions &options = TCIMOptions()) override;
  /// Key values of the path are taken in the key properties' types (a text
  /// that reads as such a value matches). For a class without keys, the
  /// first committed instance of the class.
  boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference &path,
                                              const TCIMOptions &options = TCIMOptions()) override;
  /// Throws kORVStatusNoSuchInstance like GetInstance.
  void DeleteInstance(const TCIMReference &path,
                      const TCIMOptions &options = TCIMOptions()) override;
  /// For "", the classes without superclass (with deep, every class). An
  /// unknown class name throws kORVStatusSchemaLookup.
  std::vector<std::string> GetSubclassNames(const std::string &className, bool deep,
                                            const TCIMOptions &options = TCIMOptions()) override;
  std::string ToMOF(const TCIMOptions &options = TCIMOptions()) override;

private:
  struct TClassEntry {
    boost::shared_ptr<TCIMClass> cimClass;
    std::uint64_t sequence = 0;
    /// Names of the direct subclasses, in definition order.
    std::vector<std::string> subclasses;
    /// Committed instances of exactly this class, by commit sequence.
    TSequenceList<TCIMInstance> instances;
  };

  /// Null when the namespace has no class of that name.
  TClassEntry *FindEntry(const std::string &className);
  /// The entries of the class and of all its descendants.
  std::vector<TClassEntry *> CollectDescendants(TClassEntry &entry, bool includeSelf);
  /// Empty when no committed instance has the path.
  boost::shared_ptr<TCIMInstance> FindInstance(const TCIMReference &path);

  std::string name;
  TNamedList<TCIMQualifierDecl> qualifierDecls;
  TNameMap<TClassEntry> classes;
  TSequenceList<TCIMClass> classOrder;
  TSequenceList<TCIMInstance> instanceOrder;
  /// Committed instances of keyed classes by the text of their class name
  /// and key values.
  TInstancePathIndex<TCIMInstance> instancesByPath;
  std::uint64_t lastClassSequence = 0;
  std::uint64_t lastInstanceSequence = 0;
};

} // namespace NVRNORV20

#endif
