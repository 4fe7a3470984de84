#include "core/CIMPropertyDecl.h"

#include "core/Mof.h"
#include "core/ReleaseChain.h"
#include "core_api/ORVStatusCode.h"

#include <utility>

namespace NVRNORV20 {

TCIMPropertyDecl::TCIMPropertyDecl(std::string propertyName, std::string origin,
                                   TCIMValue defaultValue,
                                   boost::shared_ptr<ICIMPropertyDecl> overriddenProperty)
    : name(std::move(propertyName)), classOrigin(std::move(origin)), value(std::move(defaultValue)),
      overridden(std::move(overriddenProperty)) {}

TCIMPropertyDecl::~TCIMPropertyDecl() {
  ReleaseChain(overridden, &TCIMPropertyDecl::overridden);
}

void TCIMPropertyDecl::SetOverridden(boost::shared_ptr<ICIMPropertyDecl> property) {
  overridden = std::move(property);
}

void TCIMPropertyDecl::PropagateQualifiers() {
  qualifiers.Propagate(overridden ? overridden->GetQualifiers()
                                  : std::vector<boost::shared_ptr<ICIMQualifier>>());
}

const std::string &TCIMPropertyDecl::GetClassOrigin(const TCIMOptions &) {
  return classOrigin;
}

bool TCIMPropertyDecl::IsKey(const TCIMOptions &) {
  return qualifiers.IsTrue("KEY");
}

void TCIMPropertyDecl::Commit(const TCIMOptions &) {
  committed = true;
}
void TCIMPropertyDecl::SetReferenceClassName(const std::string &className, const TCIMOptions &) {
  if (committed)
    throw TORVException(TORVStatusCode(kORVStatusAlreadyCommitted));
  referenceClassName = className.empty() ? nullptr : std::make_unique<std::string>(className);
}

bool TCIMPropertyDecl::IsCommitted(const TCIMOptions &) {
  return committed;
}
const std::string &TCIMPropertyDecl::GetName(const TCIMOptions &) {
  return name;
}

// Both follow the chain of overridden declarations, as long as the chain of
// classes, in a loop.
std::string TCIMPropertyDecl::GetReferenceClassName(const TCIMOptions &) {
  TCIMPropertyDecl *declaration = this;
  TCIMType type = GetType();
  for (;;) {
    if (type.GetElementType() != kCIMTypeReference)
      return std::string();
    const TCIMValue &own = declaration->value;
    if (boost::shared_ptr<ICIMClass> referenced = own.GetReferencedClass())
      return referenced->GetName();
    // A default given as a reference value names the class of the instance
    // it points to, which is the reference's class or one derived from it.
    if (!own.IsNull() && !own.IsArray())
      return own.GetReference().GetClassName();
    if (declaration->referenceClassName)
      return *declaration->referenceClassName;
    if (!declaration->overridden)
      return std::string();
    auto *next = dynamic_cast<TCIMPropertyDecl *>(declaration->overridden.get());
    if (!next)
      return declaration->overridden->GetReferenceClassName();
    // An untyped declaration shows the type of the next typed one below it,
    // as the untyped ones above it did.
    if (next->value.GetType() != kCIMTypeNone)
      type = next->value.GetType();
    else if (own.GetType() != kCIMTypeNone)
      type = next->GetType();
    declaration = next;
  }
}

TCIMType TCIMPropertyDecl::GetType(const TCIMOptions &) {
  for (TCIMPropertyDecl *declaration = this;;) {
    const TCIMType type = declaration->value.GetType();
    if (type != kCIMTypeNone || !declaration->overridden)
      return type;
    auto *next = dynamic_cast<TCIMPropertyDecl *>(declaration->overridden.get());
    if (!next)
      return declaration->overridden->GetType();
    declaration = next;
  }
}

boost::shared_ptr<ICIMPropertyDecl> TCIMPropertyDecl::GetOverriddenProperty(const TCIMOptions &) {
  return overridden;
}

TCIMValue TCIMPropertyDecl::GetValue(const TCIMOptions &) {
  return value;
}

void TCIMPropertyDecl::SetValue(const TCIMValue &newValue, const TCIMOptions &options) {
  const auto size = options.find("ARRAYSIZE");
  arraySize = size != options.end() && newValue.IsArray() && !size->second.IsNull()
                  ? static_cast<unsigned int>(size->second.GetUnsigned())
                  : 0;
  if (newValue.GetType() != kCIMTypeNone) {
    value = newValue;
    return;
  }
  // A failed text conversion leaves an untyped null: the declaration keeps
  // the type it has, or the one it inherits.
  const TCIMType type = GetType();
  value = type == kCIMTypeNone ? TCIMValue() : TCIMValue(type, 0);
}

unsigned int TCIMPropertyDecl::GetArraySize(const TCIMOptions &) {
  if (arraySize != 0)
    return arraySize;
  return value.IsArray() && value.IsNull() ? value.GetCount() : 0;
}

std::string TCIMPropertyDecl::ToMOF(const TCIMOptions &options) {
  const TCIMType type = GetType();
  const bool reference = type.GetElementType() == kCIMTypeReference;
  const std::string referenceClass = reference ? GetReferenceClassName() : std::string();
  if (!MofNamesValid("property", name,
                     referenceClass.empty() ? std::vector<const std::string *>()
                                            : std::vector<const std::string *>{&referenceClass}))
    return std::string();
  std::string text = MofQualifierPrefix(qualifiers.Own(), options);
  if (reference) {
    text += (referenceClass.empty() ? std::string("object") : referenceClass) + " REF " + name;
  } else {
    text += MofTypeName(type) + " " + name + MofArraySuffix(type, GetArraySize());
  }
  if (!value.IsNull())
    text += " = " + value.ToMOF();
  return text + ";";
}

} // namespace NVRNORV20
