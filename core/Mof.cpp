#include "core/Mof.h"

namespace NVRNORV20 {

const char *const kMofIndent = "    ";

std::string MofTypeName(TCIMType type) {
  const std::string &name = type.GetElementType().GetName();
  return name.empty() ? std::string("void") : name;
}

std::string MofArraySuffix(TCIMType type, unsigned int arraySize) {
  if (!type.IsArray())
    return std::string();
  return arraySize == 0 ? std::string("[]") : "[" + std::to_string(arraySize) + "]";
}

std::string MofQualifierPrefix(const std::vector<boost::shared_ptr<ICIMQualifier>> &qualifiers) {
  std::string text;
  for (const auto &qualifier : qualifiers) {
    if (qualifier->IsPropagated())
      continue;
    text += text.empty() ? "[" : ", ";
    text += qualifier->ToMOF();
  }
  if (!text.empty())
    text += "] ";
  return text;
}

std::string MofScope(std::uint32_t scope) {
  static const struct {
    std::uint32_t bit;
    const char *name;
  } kScopes[] = {
      {ICIMQualifierDecl::kScopeClass, "class"},
      {ICIMQualifierDecl::kScopeAssociation, "association"},
      {ICIMQualifierDecl::kScopeIndication, "indication"},
      {ICIMQualifierDecl::kScopeProperty, "property"},
      {ICIMQualifierDecl::kScopeReference, "reference"},
      {ICIMQualifierDecl::kScopeMethod, "method"},
      {ICIMQualifierDecl::kScopeParameter, "parameter"},
  };
  if ((scope & ICIMQualifierDecl::kScopeAny) == ICIMQualifierDecl::kScopeAny)
    return "Scope(any)";
  std::string names;
  for (const auto &entry : kScopes) {
    if ((scope & entry.bit) == 0)
      continue;
    if (!names.empty())
      names += ", ";
    names += entry.name;
  }
  return names.empty() ? std::string() : "Scope(" + names + ")";
}

std::string MofFlavor(std::uint32_t flavor) {
  std::string text = "Flavor(";
  text += (flavor & ICIMQualifierDecl::kFlavorOverridable) ? "EnableOverride" : "DisableOverride";
  text += (flavor & ICIMQualifierDecl::kFlavorToSubclass) ? ", ToSubclass" : ", Restricted";
  if (flavor & ICIMQualifierDecl::kFlavorTranslatable)
    text += ", Translatable";
  return text + ")";
}

} // namespace NVRNORV20
