#include "cimxml/states/QualifierDeclStates.h"

#include "cimxml/states/ValueStates.h"
#include "core_api/ORVStatusCode.h"

namespace NVRNORV20 {

namespace {

struct TScopeBit {
  const char *attribute;
  std::uint32_t bit;
};

// The indication bit is never set from a document.
constexpr TScopeBit kScopeBits[] = {
    {"class", ICIMQualifierDecl::kScopeClass},
    {"association", ICIMQualifierDecl::kScopeAssociation},
    {"property", ICIMQualifierDecl::kScopeProperty},
    {"reference", ICIMQualifierDecl::kScopeReference},
    {"method", ICIMQualifierDecl::kScopeMethod},
    {"parameter", ICIMQualifierDecl::kScopeParameter},
};

} // namespace

void TCIMXMLParser::TStateQualifierDeclaration::ElementStart(TCIMXMLParser &parser,
                                                             TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
    if (parser.HandleCIMName(attribute, &qualifierName) || parser.HandleCIMType(attribute, &type) ||
        parser.HandleArraySize(attribute, arraySize))
      continue;
    if (attribute->first == "isarray") {
      isArray = ConvertBool(attribute->second);
      isArrayGiven = true;
      continue;
    }
    parser.HandleQualifierFlavor(attribute, &flavor);
  }
}

void TCIMXMLParser::TStateQualifierDeclaration::ChildElement(TCIMXMLParser &parser,
                                                             const std::string &name,
                                                             TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateScope, TStateQualifierDeclaration>("scope", kScope, kScope, kValue),
      Child<TStateValue, TStateQualifierDeclaration>("value", kValue, kValue, kKeepPhase),
      Child<TStateValueArray, TStateQualifierDeclaration>("value.array", kValue, kValue,
                                                          kKeepPhase),
  };
  if (phase == kScope && name != "scope")
    parser.FatalError("Expected SCOPE element");
  AcceptChild(parser, name, attributes, kRows, kValue);
}

bool TCIMXMLParser::TStateQualifierDeclaration::AttributesAgree() const {
  if (isArrayGiven) {
    if (arraySize != 0 && !isArray)
      return false;
    if (valueSeen && value.IsArray() != isArray)
      return false;
  }
  if (valueSeen && (arraySize != 0) != value.IsArray())
    return false;
  return true;
}

void TCIMXMLParser::TStateQualifierDeclaration::ElementEnd(TCIMXMLParser &parser,
                                                           const std::string &) {
  if (!AttributesAgree())
    parser.FatalError("Incompatible attributes");
  // Without a value the default is typed by TYPE alone: an array
  // declaration keeps its size but not the array flag.
  if (!valueSeen)
    value = TCIMValue(type, arraySize);
  try {
    Require(Namespace(parser)->CreateQualifierDecl(qualifierName, value, scope, flavor)).Commit();
  } catch (TORVException &error) {
    // A name declared before (by an earlier document, say) keeps its first
    // declaration.
    if (error.GetStatusCode() != kORVStatusSchemaLookup)
      throw;
  }
  Pop(parser);
}

void TCIMXMLParser::TStateScope::ElementStart(TCIMXMLParser &, TAttributes &attributes) {
  for (const auto &attribute : attributes)
    for (const auto &scopeBit : kScopeBits)
      if (attribute.first == scopeBit.attribute)
        declaration.scope |= scopeBit.bit;
}

} // namespace NVRNORV20
