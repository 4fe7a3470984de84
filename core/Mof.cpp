#include "core/Mof.h"

#include "core_api/Logger.h"

namespace NVRNORV20 {

namespace {

bool IsAsciiLetterOrUnderscore(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

} // namespace

std::size_t DecodeUtf8(std::string_view text, std::size_t i, std::uint32_t &codePoint) {
  const auto lead = static_cast<unsigned char>(text[i]);
  std::size_t length = 0;
  std::uint32_t least = 0;
  if (lead < 0x80) {
    codePoint = lead;
    return 1;
  }
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    least = 0x80;
    codePoint = lead & 0x1Fu;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    least = 0x800;
    codePoint = lead & 0x0Fu;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    least = 0x10000;
    codePoint = lead & 0x07u;
  } else {
    return 0;
  }
  if (text.size() - i < length)
    return 0;
  for (std::size_t k = 1; k < length; ++k) {
    const auto next = static_cast<unsigned char>(text[i + k]);
    if ((next & 0xC0u) != 0x80u)
      return 0;
    codePoint = (codePoint << 6) | (next & 0x3Fu);
  }
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return codePoint < least || surrogate || codePoint > 0x10FFFF ? 0 : length;
}

bool IsMofIdentifier(std::string_view name) {
  if (name.empty())
    return false;
  for (std::size_t i = 0; i < name.size();) {
    if (IsAsciiLetterOrUnderscore(name[i]) || (i != 0 && name[i] >= '0' && name[i] <= '9')) {
      ++i;
      continue;
    }
    std::uint32_t codePoint = 0;
    const std::size_t length = DecodeUtf8(name, i, codePoint);
    if (length == 0 || codePoint < 0x80 || codePoint > 0xFFEF)
      return false;
    i += length;
  }
  return true;
}

bool MofNamesValid(const char *kind, const std::string &name,
                   const std::vector<const std::string *> &others) {
  const std::string *invalid = IsMofIdentifier(name) ? nullptr : &name;
  for (const std::string *other : others)
    if (invalid == nullptr && !IsMofIdentifier(*other))
      invalid = other;
  if (invalid == nullptr)
    return true;
  TRootObject::Log(3, std::string("MOF: ") + kind + " '" + name + "' left out: '" + *invalid +
                          "' is not a valid CIM name");
  return false;
}

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

const char *const kMofFlavorsOption = "FLAVORS";

bool MofWritesFlavors(const TCIMOptions &options) {
  const auto found = options.find(kMofFlavorsOption);
  return found != options.end() && found->second.GetType() == kCIMTypeBoolean &&
         !found->second.IsNull() && found->second.GetBoolean();
}

std::string MofQualifierPrefix(const std::vector<boost::shared_ptr<ICIMQualifier>> &qualifiers,
                               const TCIMOptions &options) {
  std::string text;
  for (const auto &qualifier : qualifiers) {
    if (qualifier->IsPropagated())
      continue;
    const std::string mof = qualifier->ToMOF(options);
    if (mof.empty())
      continue;
    text += text.empty() ? "[" : ", ";
    text += mof;
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
