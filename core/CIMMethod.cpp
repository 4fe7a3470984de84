#include "core/CIMMethod.h"

#include "core/Mof.h"
#include "core/ReleaseChain.h"
#include "core_api/ORVStatusCode.h"

#include <utility>

namespace NVRNORV20 {

TCIMParameter::TCIMParameter(std::string parameterName, TCIMType parameterType)
    : name(std::move(parameterName)), type(parameterType) {}

void TCIMParameter::PropagateQualifiers(
    const std::vector<boost::shared_ptr<ICIMQualifier>> &inherited) {
  qualifiers.Propagate(inherited);
}

const std::string &TCIMParameter::GetName(const TCIMOptions &) {
  return name;
}
TCIMType TCIMParameter::GetType(const TCIMOptions &) {
  return type;
}
void TCIMParameter::Commit(const TCIMOptions &) {
  committed = true;
}
bool TCIMParameter::IsCommitted(const TCIMOptions &) {
  return committed;
}

std::string TCIMParameter::ToMOF(const TCIMOptions &options) {
  std::vector<const std::string *> others;
  if (!referenceClass.empty())
    others.push_back(&referenceClass);
  if (!MofNamesValid("parameter", name, others))
    return std::string();
  std::string text = MofQualifierPrefix(qualifiers.Own(), options);
  if (type.GetElementType() == kCIMTypeReference) {
    text += referenceClass.empty() ? std::string("object") : referenceClass;
    return text + " REF " + name + MofArraySuffix(type, arraySize);
  }
  return text + MofTypeName(type) + " " + name + MofArraySuffix(type, arraySize);
}

const std::string &TCIMParameter::GetReferenceClassName(const TCIMOptions &) {
  return referenceClass;
}

void TCIMParameter::SetReferenceClassName(const std::string &className, const TCIMOptions &) {
  ThrowIfCommitted();
  referenceClass = className;
}

unsigned int TCIMParameter::GetArraySize(const TCIMOptions &) {
  return arraySize;
}

void TCIMParameter::SetArraySize(unsigned int size, const TCIMOptions &) {
  ThrowIfCommitted();
  arraySize = size;
}

void TCIMParameter::ThrowIfCommitted() const {
  if (committed)
    throw TORVException(TORVStatusCode(kORVStatusAlreadyCommitted));
}

TCIMMethod::TCIMMethod(std::string methodName, TCIMType methodReturnType, std::string origin,
                       boost::shared_ptr<ICIMMethod> overriddenMethod)
    : name(std::move(methodName)), returnType(methodReturnType), classOrigin(std::move(origin)),
      overridden(std::move(overriddenMethod)) {}

TCIMMethod::~TCIMMethod() {
  ReleaseChain(overridden, &TCIMMethod::overridden);
}

void TCIMMethod::SetOverridden(boost::shared_ptr<ICIMMethod> method) {
  overridden = std::move(method);
}

void TCIMMethod::PropagateQualifiers() {
  if (!overridden) {
    qualifiers.Propagate({});
    for (const auto &parameter : parameters.Items())
      parameter->PropagateQualifiers({});
    return;
  }
  qualifiers.Propagate(overridden->GetQualifiers());
  TNameMap<boost::shared_ptr<ICIMParameter>> inherited;
  for (auto &parameter : overridden->GetParameters())
    inherited.emplace(parameter->GetName(), parameter);
  for (const auto &parameter : parameters.Items()) {
    auto found = inherited.find(parameter->GetName());
    parameter->PropagateQualifiers(found == inherited.end()
                                       ? std::vector<boost::shared_ptr<ICIMQualifier>>()
                                       : found->second->GetQualifiers());
  }
}

const std::string &TCIMMethod::GetName(const TCIMOptions &) {
  return name;
}
TCIMType TCIMMethod::GetReturnType(const TCIMOptions &) {
  return returnType;
}
void TCIMMethod::Commit(const TCIMOptions &) {
  committed = true;
}
bool TCIMMethod::IsCommitted(const TCIMOptions &) {
  return committed;
}

std::vector<boost::shared_ptr<ICIMParameter>> TCIMMethod::GetParameters(const TCIMOptions &) {
  return std::vector<boost::shared_ptr<ICIMParameter>>(parameters.Items().begin(),
                                                       parameters.Items().end());
}

boost::shared_ptr<ICIMParameter> TCIMMethod::GetParameter(const std::string &parameterName,
                                                          const TCIMOptions &) {
  boost::shared_ptr<TCIMParameter> found = parameters.Find(parameterName);
  if (!found)
    throw TORVException(TORVStatusCode(kORVStatusNoSuchParameter));
  return found;
}

boost::shared_ptr<ICIMParameter> TCIMMethod::AddParameter(const std::string &parameterName,
                                                          TCIMType parameterType,
                                                          const TCIMOptions &) {
  if (parameterName.empty())
    throw TORVException(TORVStatusCode(kORVStatusInvalidArgument));
  boost::shared_ptr<TCIMParameter> parameter(new TCIMParameter(parameterName, parameterType));
  if (!parameters.Add(parameter))
    throw TORVException(TORVStatusCode(kORVStatusAlreadyExists));
  return parameter;
}

const std::string &TCIMMethod::GetClassOrigin(const TCIMOptions &) {
  return classOrigin;
}

std::string TCIMMethod::ToMOF(const TCIMOptions &options) {
  // A parameter left out would change the method's signature: the whole
  // method is left out instead.
  std::vector<const std::string *> parameterNames;
  for (const auto &parameter : parameters.Items())
    parameterNames.push_back(&parameter->GetName());
  if (!MofNamesValid("method", name, parameterNames))
    return std::string();
  std::string text =
      MofQualifierPrefix(qualifiers.Own(), options) + MofTypeName(returnType) + " " + name + "(";
  bool first = true;
  for (const auto &parameter : parameters.Items()) {
    if (!first)
      text += ", ";
    first = false;
    text += parameter->ToMOF(options);
  }
  return text + ");";
}

} // namespace NVRNORV20
