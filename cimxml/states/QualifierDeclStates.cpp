#include "cimxml/states/QualifierDeclStates.h"

#include "cimxml/states/QualifierStates.h"
#include "core_api/ORVStatusCode.h"

#include <boost/make_shared.hpp>

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

// Phases: 0 before "scope", 1 after it. Unlike the CIM-XML document type
// we require the scope first, with its own message.
void TCIMXMLParser::TStateQualifierDeclaration::ChildElement(TCIMXMLParser &parser,
                                                             const std::string &name,
                                                             TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"scope", 0, 0, 1, &MakeScope},
      {"value", 1, 1, kKeepPhase, &MakeValue},
      {"value.array", 1, 1, kKeepPhase, &MakeValueArray},
  };
  if (phase == 0 && name != "scope")
    parser.FatalError("Expected SCOPE element");
  AcceptChild(parser, name, attributes, kRows, 1);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateQualifierDeclaration::MakeScope(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStateScope>(static_cast<TStateQualifierDeclaration &>(parent));
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateQualifierDeclaration::MakeValue(TCIMXMLParser &parser, TParseState &parent) {
  auto &self = static_cast<TStateQualifierDeclaration &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValue>(parser, self.defaultValue, self.type);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateQualifierDeclaration::MakeValueArray(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateQualifierDeclaration &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValueArray>(self.defaultValue, self.type, self.arraySize);
}

bool TCIMXMLParser::TStateQualifierDeclaration::AttributesAgree() const {
  if (isArrayGiven) {
    if (arraySize != 0 && !isArray)
      return false;
    if (valueSeen && defaultValue.IsArray() != isArray)
      return false;
  }
  if (valueSeen && (arraySize != 0) != defaultValue.IsArray())
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
    defaultValue = TCIMValue(type, arraySize);
  try {
    Require(Namespace(parser)->CreateQualifierDecl(qualifierName, defaultValue, scope, flavor))
        .Commit();
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
