#include "cimxml/states/QualifierStates.h"

#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"

#include <boost/make_shared.hpp>

namespace NVRNORV20 {

void TCIMXMLParser::TStateQualifier::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &qualifierName) || parser.HandleCIMType(attribute, &type) ||
        parser.HandlePropagated(attribute, propagated) ||
        parser.HandleQualifierFlavor(attribute, &flavor);
}

void TCIMXMLParser::TStateQualifier::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"value", 0, 0, kKeepPhase, &MakeValue},
      {"value.array", 0, 0, kKeepPhase, &MakeValueArray},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateQualifier::MakeValue(TCIMXMLParser &parser,
                                                                        TParseState &parent) {
  auto &self = static_cast<TStateQualifier &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValue>(parser, self.value, self.type);
}

// A qualifier's array has no declared size.
TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateQualifier::MakeValueArray(TCIMXMLParser &,
                                                                             TParseState &parent) {
  auto &self = static_cast<TStateQualifier &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValueArray>(self.value, self.type, 0);
}

void TCIMXMLParser::TStateQualifier::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  boost::shared_ptr<ICIMQualifierDecl> declaration;
  try {
    declaration = Namespace(parser)->GetQualifierDecl(qualifierName);
  } catch (TORVException &error) {
    // The exception itself carries no name; the line says which qualifier
    // was dropped.
    if (error.GetStatusCode() == kORVStatusQualifierNotDeclared)
      TRootObject::GetCoreLogger()->Log(3,
                                        "TCIMXMLParser: Couldn't find qualifier " + qualifierName);
    throw;
  }
  if (!propagated && declaration) {
    if (!valueSeen)
      value = TCIMValue(declaration->GetType(), 0);
    auto qualifier = Require(target).CreateQualifier(declaration, value, flavor);
    target->AddQualifier(qualifier);
  }
  Pop(parser);
}

TCIMXMLParser::TStateValue::TStateValue(TCIMXMLParser &parser, TCIMValue &slot, TCIMType valueType)
    : target(slot), type(valueType) {
  CharacterData(parser).clear();
}

void TCIMXMLParser::TStateValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  target = parser.ParseValue(type, CharacterData(parser));
  Pop(parser);
}

void TCIMXMLParser::TStateValueArray::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                   TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"value", 0, 0, kKeepPhase, &MakeElement},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateValueArray::MakeElement(TCIMXMLParser &parser,
                                                                           TParseState &parent) {
  auto &self = static_cast<TStateValueArray &>(parent);
  self.elements.emplace_back();
  return boost::make_shared<TStateValue>(parser, self.elements.back(), self.elementType);
}

void TCIMXMLParser::TStateValueArray::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  target.Set(elementType, count, elements);
  Pop(parser);
}

} // namespace NVRNORV20
