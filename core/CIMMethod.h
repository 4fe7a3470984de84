// Methods of a class and their parameters.
#ifndef ORV_CORE_CIMMETHOD_H
#define ORV_CORE_CIMMETHOD_H

#include "core/CIMName.h"
#include "core/CIMQualifier.h"
#include "core_api/CIMInterfaces.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace NVRNORV20 {

class TCIMParameter final : public TCIMQualified<ICIMParameter> {
public:
  TCIMParameter(std::string name, TCIMType type);

  /// Shows the to-subclass qualifiers of the parameter of the same name of
  /// the overridden method.
  void PropagateQualifiers(const std::vector<boost::shared_ptr<ICIMQualifier>> &inherited);

  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  TCIMType GetType(const TCIMOptions &options = TCIMOptions()) override;
  /// Completes the parameter; a second call changes nothing.
  void Commit(const TCIMOptions &options = TCIMOptions()) override;
  bool IsCommitted(const TCIMOptions &options = TCIMOptions()) override;
  /// "[IN] string Name", "uint8 Data[16]", "CIM_Job REF Job"; a reference
  /// parameter without a class as "object REF Name".
  std::string ToMOF(const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetReferenceClassName(const TCIMOptions &options = TCIMOptions()) override;
  void SetReferenceClassName(const std::string &className,
                             const TCIMOptions &options = TCIMOptions()) override;
  unsigned int GetArraySize(const TCIMOptions &options = TCIMOptions()) override;
  void SetArraySize(unsigned int size, const TCIMOptions &options = TCIMOptions()) override;

private:
  void ThrowIfCommitted() const;

  std::string name;
  TCIMType type;
  std::string referenceClass;
  unsigned int arraySize = 0;
  bool committed = false;
};

class TCIMMethod final : public TCIMQualified<ICIMMethod> {
public:
  /// classOrigin is the name of the declaring class; overridden is the
  /// inherited method of the same name, if any.
  TCIMMethod(std::string name, TCIMType returnType, std::string classOrigin,
             boost::shared_ptr<ICIMMethod> overridden);
  /// Releases the chain of overridden methods in a loop.
  ~TCIMMethod() override;
  TCIMMethod(const TCIMMethod &) = delete;
  TCIMMethod &operator=(const TCIMMethod &) = delete;

  /// Settled again when the class is committed, like a property's.
  void SetOverridden(boost::shared_ptr<ICIMMethod> method);
  /// Propagates the overridden method's to-subclass qualifiers to this
  /// method, and those of its parameters to the parameters of the same name.
  void PropagateQualifiers();
  boost::shared_ptr<ICIMMethod> GetOverridden() const { return overridden; }

  const std::string &GetName(const TCIMOptions &options = TCIMOptions()) override;
  TCIMType GetReturnType(const TCIMOptions &options = TCIMOptions()) override;
  /// Completes the method; a second call changes nothing.
  void Commit(const TCIMOptions &options = TCIMOptions()) override;
  bool IsCommitted(const TCIMOptions &options = TCIMOptions()) override;
  std::vector<boost::shared_ptr<ICIMParameter>>
  GetParameters(const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMParameter>
  GetParameter(const std::string &parameterName,
               const TCIMOptions &options = TCIMOptions()) override;
  boost::shared_ptr<ICIMParameter>
  AddParameter(const std::string &parameterName, TCIMType parameterType,
               const TCIMOptions &options = TCIMOptions()) override;
  const std::string &GetClassOrigin(const TCIMOptions &options = TCIMOptions()) override;
  /// "[Static] uint32 Start([IN] string Arg, [OUT] uint32 Code);"; "void"
  /// for a method without return type.
  std::string ToMOF(const TCIMOptions &options = TCIMOptions()) override;

private:
  std::string name;
  TCIMType returnType;
  std::string classOrigin;
  boost::shared_ptr<ICIMMethod> overridden;
  TNamedList<TCIMParameter> parameters;
  bool committed = false;
};

} // namespace NVRNORV20

#endif
