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

// Some writers add ANY, which the DTD lacks; "true" is every scope.
constexpr TScopeBit kFullScopeBits[] = {
    {"any", ICIMQualifierDecl::kScopeAny},
    {"class", ICIMQualifierDecl::kScopeClass},
    {"association", ICIMQualifierDecl::kScopeAssociation},
    {"indication", ICIMQualifierDecl::kScopeIndication},
    {"property", ICIMQualifierDecl::kScopeProperty},
    {"reference", ICIMQualifierDecl::kScopeReference},
    {"method", ICIMQualifierDecl::kScopeMethod},
    {"parameter", ICIMQualifierDecl::kScopeParameter},
};

} // namespace

void TCIMXMLParser::TStateQualifierDeclaration::ElementStart(TCIMXMLParser &parser,
                                                             const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
    if (parser.HandleCIMName(attribute, &qualifierName) || parser.HandleCIMType(attribute, &type) ||
        parser.HandleArraySize(attribute, arraySize))
      continue;
    if (attribute->name == "isarray") {
      isArray = ConvertBool(attribute->value);
      isArrayGiven = true;
      continue;
    }
    parser.HandleQualifierFlavor(attribute, &flavor);
  }
}

void TCIMXMLParser::TStateQualifierDeclaration::ChildElement(TCIMXMLParser &parser,
                                                             const std::string &name,
                                                             const TAttributeList &attributes) {
  using TSelf = TStateQualifierDeclaration;
  // The full grammar takes the scope as optional and one value at most, as
  // the CIM-XML document type does.
  static constexpr TChildRow kRows[] = {
      Child<TStateScope, TSelf>("scope", kScope, kScope, kValue),
      ClassicChild<TStateValue, TSelf>("value", kValue, kValue, kKeepPhase),
      ClassicChild<TStateValueArray, TSelf>("value.array", kValue, kValue, kKeepPhase),
      FullChild<TStateValue, TSelf>("value", kScope, kValue, kFullDone),
      FullChild<TStateValueArray, TSelf>("value.array", kScope, kValue, kFullDone),
  };
  if (phase == kScope && name != "scope" && !IsFull(parser))
    parser.FatalError("Expected SCOPE element");
  AcceptChild(parser, name, attributes, kRows, kFullDone);
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
  if (IsFull(parser)) {
    EndFull(parser);
    return;
  }
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

void TCIMXMLParser::TStateQualifierDeclaration::EndFull(TCIMXMLParser &parser) {
  if (isArrayGiven && valueSeen && value.IsArray() != isArray)
    parser.FatalError("Incompatible attributes");
  // ISARRAY alone makes an array type, with or without a default.
  if (!valueSeen)
    value = TCIMValue(isArray ? type.GetArrayType() : type, arraySize);
  boost::shared_ptr<ICIMNamespace> target = TargetNamespace(parser);
  bool exists = true;
  try {
    target->GetQualifierDecl(qualifierName);
  } catch (TORVException &error) {
    if (error.GetStatusCode() != kORVStatusQualifierNotDeclared)
      throw;
    exists = false;
  }
  if (exists) {
    if (target == Namespace(parser))
      Report(parser, "Qualifier " + qualifierName +
                         " is already declared: this declaration is returned, not registered");
    target = RenewScratch(parser);
  }
  TCIMXMLObject object;
  object.kind = TCIMXMLObject::EKind::kQualifierDecl;
  // A default cannot carry the size of a fixed-size array: it goes beside.
  TCIMOptions sized;
  if (arraySize != 0 && !value.IsNull())
    sized.emplace("ARRAYSIZE", TCIMValue::MakeUnsigned(kCIMTypeUint32, arraySize));
  object.qualifierDecl = target->CreateQualifierDecl(qualifierName, value, scope, flavor, sized);
  object.qualifierDecl->Commit();
  object.registered = target == Namespace(parser);
  object.line = line;
  Deliver(parser, object);
  Pop(parser);
}

void TCIMXMLParser::TStateScope::ElementStart(TCIMXMLParser &parser,
                                              const TAttributeList &attributes) {
  if (IsFull(parser)) {
    // Each attribute says "true" or "false", as DSP0201 writes it.
    for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
      for (const auto &scopeBit : kFullScopeBits)
        if (attribute->name == scopeBit.attribute && ConvertBool(attribute->value))
          declaration.scope |= scopeBit.bit;
    return;
  }
  for (const auto &attribute : attributes)
    for (const auto &scopeBit : kScopeBits)
      if (attribute.name == scopeBit.attribute)
        declaration.scope |= scopeBit.bit;
}

} // namespace NVRNORV20
