#include "cimxml/states/PropertyStates.h"

#include "cimxml/states/QualifierStates.h"
#include "cimxml/states/ReferenceStates.h"
#include "core_api/ORVStatusCode.h"

#include <boost/make_shared.hpp>

namespace NVRNORV20 {

bool TPropertyAttributes::Read(TCIMXMLParser &parser,
                               TXmlParser::TAttributes::iterator &attribute) {
  if (parser.HandleCIMName(attribute, &name) || parser.HandleClassOrigin(attribute, &classOrigin) ||
      parser.HandlePropagated(attribute, propagated))
    return true;
  switch (kind) {
  case EKind::kScalar:
    return parser.HandleCIMType(attribute, &type);
  case EKind::kArray:
    return parser.HandleCIMType(attribute, &type) || parser.HandleArraySize(attribute, arraySize);
  case EKind::kReference:
    return parser.HandleReferenceClass(attribute, &referenceClass);
  }
  return false;
}

TCIMType TPropertyAttributes::ElementType() const {
  switch (kind) {
  case EKind::kScalar:
    return type;
  case EKind::kArray:
    return type.GetArrayType();
  case EKind::kReference:
    break;
  }
  return TCIMType(kCIMTypeReference);
}

TCIMValue TPropertyAttributes::EmptyValue(ICIMNamespace &ns) const {
  TCIMValue empty(ElementType(), kind == EKind::kArray ? arraySize : 0);
  if (kind == EKind::kReference)
    AttachReferencedClass(ns, referenceClass, empty);
  return empty;
}

void AttachReferencedClass(ICIMNamespace &ns, const std::string &className, TCIMValue &value) {
  try {
    value.SetReferencedClass(ns.GetClass(className));
  } catch (TORVException &error) {
    // A class defined later, or in another document, is not an error here.
    if (error.GetStatusCode() != kORVStatusSchemaLookup)
      throw;
  }
}

// Declaration variants.

void TCIMXMLParser::TStatePropertyDecl::ElementStart(TCIMXMLParser &parser,
                                                     TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    property.Read(parser, attribute);
  // The type reaches the declaration with its default value at the end.
  declaration = Require(cls).AddProperty(property.name, TCIMValue());
}

void TCIMXMLParser::TStatePropertyDecl::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 1, kKeepPhase, &MakeQualifier},
      {"value", 0, 1, kKeepPhase, &MakeValue},
  };
  AcceptChild(parser, name, attributes, kRows, 1);
}

void TCIMXMLParser::TStatePropertyDecl::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (!valueSeen)
    defaultValue = property.EmptyValue(*Namespace(parser));
  Require(declaration).SetValue(defaultValue);
  declaration->Commit();
  Pop(parser);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStatePropertyDecl::MakeQualifier(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStateQualifier>(static_cast<TStatePropertyDecl &>(parent).declaration);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStatePropertyDecl::MakeValue(TCIMXMLParser &parser,
                                                                           TParseState &parent) {
  auto &self = static_cast<TStatePropertyDecl &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValue>(parser, self.defaultValue, self.property.type);
}

void TCIMXMLParser::TStatePropertyArrayDecl::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 1, kKeepPhase, &MakeQualifier},
      {"value.array", 0, 1, kKeepPhase, &MakeValueArray},
  };
  AcceptChild(parser, name, attributes, kRows, 1);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStatePropertyArrayDecl::MakeValueArray(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStatePropertyArrayDecl &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValueArray>(self.defaultValue, self.property.type,
                                              self.property.arraySize);
}

void TCIMXMLParser::TStatePropertyReferenceDecl::ChildElement(TCIMXMLParser &parser,
                                                              const std::string &name,
                                                              TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 1, kKeepPhase, &MakeQualifier},
      {"value.reference", 0, 1, kKeepPhase, &MakeValueReference},
  };
  AcceptChild(parser, name, attributes, kRows, 1);
}

// A reference given in the document is taken as it is: no class is looked up.
TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStatePropertyReferenceDecl::MakeValueReference(TCIMXMLParser &,
                                                               TParseState &parent) {
  auto &self = static_cast<TStatePropertyReferenceDecl &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValueReference>(self.defaultValue);
}

// Value variants.

void TCIMXMLParser::TStateProperty::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    property.Read(parser, attribute);
  if (!QN402Mode(parser) && DeclaredType() != property.ElementType())
    parser.FatalError("Property type != property declaration type");
}

void TCIMXMLParser::TStateProperty::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                 TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 0, kKeepPhase, &MakeNoState},
      {"value", 0, 1, kKeepPhase, &MakeValue},
  };
  AcceptOrHandOver(parser, name, attributes, kRows);
}

void TCIMXMLParser::TStateProperty::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (!valueSeen)
    value = property.kind == TPropertyAttributes::EKind::kScalar
                ? TCIMValue(DeclaredType(), 0)
                : property.EmptyValue(*Namespace(parser));
  if (!QN402Mode(parser) || DeclaredType() == value.GetType())
    Require(instance).SetPropertyValue(property.name, value);
  Pop(parser);
}

TCIMType TCIMXMLParser::TStateProperty::DeclaredType() const {
  // A failed look-up is not kept: it throws again where it is asked again.
  if (!declaredTypeKnown) {
    declaredType = Require(Require(instance).GetPropertyDecl(property.name)).GetDeclaredType();
    declaredTypeKnown = true;
  }
  return declaredType;
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateProperty::MakeNoState(TCIMXMLParser &,
                                                                         TParseState &) {
  return TParseStatePtr();
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateProperty::MakeValue(TCIMXMLParser &parser,
                                                                       TParseState &parent) {
  auto &self = static_cast<TStateProperty &>(parent);
  auto state = boost::make_shared<TStateValue>(parser, self.value, self.DeclaredType());
  self.valueSeen = true;
  return state;
}

bool TCIMXMLParser::TStateProperty::Accepts(const TChildRow *rows, std::size_t rowCount,
                                            const std::string &name) const {
  for (std::size_t row = 0; row < rowCount; ++row)
    if (name == rows[row].name && rows[row].firstPhase <= phase && phase <= rows[row].lastPhase)
      return true;
  return false;
}

void TCIMXMLParser::TStateProperty::HandOver(TCIMXMLParser &parser, const std::string &name,
                                             TAttributes &attributes) {
  // ElementEnd pops this state, which may destroy it: from here on only
  // the arguments are used.
  ElementEnd(parser, name);
  if (!parser.stateStack.empty() && parser.stateStack.back())
    parser.stateStack.back()->ChildElement(parser, name, attributes);
  throw TORVException(kORVStatusInvalidFormat);
}

void TCIMXMLParser::TStatePropertyArray::ChildElement(TCIMXMLParser &parser,
                                                      const std::string &name,
                                                      TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 0, kKeepPhase, &MakeNoState},
      {"value.array", 0, 1, kKeepPhase, &MakeValueArray},
  };
  AcceptOrHandOver(parser, name, attributes, kRows);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStatePropertyArray::MakeValueArray(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStatePropertyArray &>(parent);
  auto state = boost::make_shared<TStateValueArray>(
      self.value, self.DeclaredType().GetElementType(), self.property.arraySize);
  self.valueSeen = true;
  return state;
}

void TCIMXMLParser::TStatePropertyReference::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 0, kKeepPhase, &MakeNoState},
      {"value.reference", 0, 1, kKeepPhase, &MakeValueReference},
  };
  AcceptOrHandOver(parser, name, attributes, kRows);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStatePropertyReference::MakeValueReference(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStatePropertyReference &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValueReference>(self.value);
}

} // namespace NVRNORV20
