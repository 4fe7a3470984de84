#include "cimxml/states/QualifierStates.h"

#include "cimxml/states/ValueStates.h"
#include "core_api/ORVStatusCode.h"

namespace NVRNORV20 {

namespace {

std::uint32_t FlavorBit(std::string_view attribute) {
  if (attribute == "overridable")
    return ICIMQualifierDecl::kFlavorOverridable;
  if (attribute == "tosubclass")
    return ICIMQualifierDecl::kFlavorToSubclass;
  if (attribute == "translatable")
    return ICIMQualifierDecl::kFlavorTranslatable;
  return 0;
}

} // namespace

void TCIMXMLParser::TStateQualifier::ElementStart(TCIMXMLParser &parser,
                                                  const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
    if (parser.HandleCIMName(attribute, &qualifierName) || parser.HandleCIMType(attribute, &type) ||
        parser.HandlePropagated(attribute, propagated))
      continue;
    // The full grammar takes the flavors that the element does not state
    // from the declaration.
    if (parser.HandleQualifierFlavor(attribute, &flavor))
      flavorGiven |= FlavorBit(attribute->name);
  }
}

void TCIMXMLParser::TStateQualifier::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  const TAttributeList &attributes) {
  // The full grammar takes one value at most.
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateValue, TStateQualifier>("value"),
      ClassicChild<TStateValueArray, TStateQualifier>("value.array"),
      FullChild<TStateValue, TStateQualifier>("value", kAnyOrder, kAnyOrder, kFullValueDone),
      FullChild<TStateValueArray, TStateQualifier>("value.array", kAnyOrder, kAnyOrder,
                                                   kFullValueDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullValueDone);
}

void TCIMXMLParser::TStateQualifier::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  boost::shared_ptr<ICIMQualifierDecl> declaration;
  if (IsFull(parser)) {
    declaration = FullDeclaration(parser);
  } else {
    try {
      declaration = Namespace(parser)->GetQualifierDecl(qualifierName);
    } catch (TORVException &error) {
      // The exception itself carries no name; the line says which qualifier
      // was dropped.
      if (error.GetStatusCode() == kORVStatusQualifierNotDeclared)
        Log("TCIMXMLParser: Couldn't find qualifier " + qualifierName);
      throw;
    }
  }
  // A propagated qualifier comes again from the superclass at the class's
  // commit; without a superclass to give it, the full grammar keeps it.
  if ((!propagated || KeepPropagated(parser)) && declaration) {
    if (!valueSeen)
      value = TCIMValue(declaration->GetType(), 0);
    if (IsFull(parser))
      flavor = static_cast<ICIMQualifierDecl::EFlavor>((declaration->GetFlavor() & ~flavorGiven) |
                                                       (flavor & flavorGiven));
    if (OverridesFixed()) {
      Report(parser,
             "Qualifier " + qualifierName + " is not overridable: the inherited value is kept");
      Pop(parser);
      return;
    }
    auto qualifier = Require(target).CreateQualifier(declaration, value, flavor);
    target->AddQualifier(qualifier);
  }
  Pop(parser);
}

bool TCIMXMLParser::TStateQualifier::OverridesFixed() const {
  if (!inherited || !inherited->HasQualifier(qualifierName))
    return false;
  boost::shared_ptr<ICIMQualifier> fixed = inherited->GetQualifier(qualifierName);
  const std::uint32_t bits = fixed->GetFlavor();
  // A qualifier that is not handed to subclasses binds nothing there.
  return (bits & ICIMQualifierDecl::kFlavorToSubclass) != 0 &&
         (bits & ICIMQualifierDecl::kFlavorOverridable) == 0 && !(fixed->GetValue() == value);
}

boost::shared_ptr<ICIMQualifierDecl>
TCIMXMLParser::TStateQualifier::FullDeclaration(TCIMXMLParser &parser) const {
  boost::shared_ptr<ICIMNamespace> ns = Namespace(parser);
  for (const boost::shared_ptr<ICIMNamespace> &where : {ns, Scratch(parser)}) {
    try {
      return where->GetQualifierDecl(qualifierName);
    } catch (TORVException &error) {
      if (error.GetStatusCode() != kORVStatusQualifierNotDeclared)
        throw;
    }
  }
  // Classes of a response come without the declarations of their
  // qualifiers: one of the qualifier's own type, valid anywhere, stands in.
  const TCIMType declared = valueSeen && value.IsArray() ? type.GetArrayType() : type;
  boost::shared_ptr<ICIMQualifierDecl> implicit = Scratch(parser)->CreateQualifierDecl(
      qualifierName, TCIMValue(declared, 0), ICIMQualifierDecl::kScopeAny,
      ICIMQualifierDecl::kFlavorDefault);
  implicit->Commit();
  return implicit;
}

} // namespace NVRNORV20
