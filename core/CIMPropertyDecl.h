// A property declared by a class.
#ifndef ORV_CORE_CIMPROPERTYDECL_H
#define ORV_CORE_CIMPROPERTYDECL_H

#include "core/CIMQualifier.h"
#include "core_api/CIMInterfaces.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>

namespace NVRNORV20 {

class TCIMPropertyDecl final : public TCIMQualified<ICIMPropertyDecl> {
public:
  /// classOrigin is the name of the declaring class; overridden is the
  /// inherited declaration of the same name, if any.
  TCIMPropertyDecl(std::string name, std::string classOrigin, TCIMValue value,
                   boost::shared_ptr<ICIMPropertyDecl> overridden);
  /// Releases the chain of overridden declarations in a loop.
  ~TCIMPropertyDecl() override;
  TCIMPropertyDecl(const TCIMPropertyDecl &) = delete;
  TCIMPropertyDecl &operator=(const TCIMPropertyDecl &) = delete;

  /// Settled again when the class is committed: the superclass may have
  /// gained the property after this declaration was added.
  void SetOverridden(boost::shared_ptr<ICIMPropertyDecl> property);
  /// Shows the to-subclass qualifiers of the overridden declaration that
  /// this one does not carry itself.
  void PropagateQualifiers();

  const std::string &GetClassOrigin(const TCIMOptions &options = TCIMOptions()) override;
  bool IsKey(const TCIMOptions &options = TCIMOptions()) override;
  /// Completes the declaration; a second call changes nothing.
  void Commit(const TCIMOptions &options = TCIMOptions()) override;
  bool IsCommitted(const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  /// The class the default value points to, else the overridden
  /// declaration's; "" when neither names one.
  std::string GetReferenceClassName(const TCIMOptions &options = TCIMOptions()) override;
  /// The default value's type; while that is none, the overridden
  /// declaration's.
  TCIMType GetType(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMPropertyDecl>
  GetOverriddenProperty(const TCIMOptions &options = TCIMOptions()) override;
  TCIMValue GetValue(const TCIMOptions &options = TCIMOptions()) override;
  void SetValue(const TCIMValue &newValue, const TCIMOptions &options = TCIMOptions()) override;
  /// "[Key] string Name = \"x\";", "uint8 Data[4];", "Class REF Name;"
  /// with the own qualifiers only. A reference whose class is not known is
  /// written as an "object REF".
  std::string ToMOF(const TCIMOptions &options = TCIMOptions()) override;
  void SetReferenceClassName(const std::string &className,
                             const TCIMOptions &options = TCIMOptions()) override;
  unsigned int GetArraySize(const TCIMOptions &options = TCIMOptions()) override;

private:
  std::string name;
  std::string classOrigin;
  TCIMValue value;
  boost::shared_ptr<ICIMPropertyDecl> overridden;
  /// Only a reference whose class is not loaded names it here: most
  /// properties never need the room.
  std::unique_ptr<std::string> referenceClassName;
  bool committed = false;
  /// A fixed size given beside a default with elements, which cannot carry
  /// it; a null default carries its own.
  unsigned int arraySize = 0;
};

} // namespace NVRNORV20

#endif
