#include "cimxml/states/MethodStates.h"

#include "cimxml/states/QualifierStates.h"

#include <boost/make_shared.hpp>

namespace NVRNORV20 {

void TCIMXMLParser::TStateMethod::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &methodName) || parser.HandleCIMType(attribute, &returnType);
  method = Require(cls).AddMethod(methodName, returnType);
}

void TCIMXMLParser::TStateMethod::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                               TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"parameter", 0, 4, kKeepPhase, &MakeParameter},
      {"parameter.reference", 0, 4, kKeepPhase, &MakeParameterReference},
      {"parameter.array", 0, 4, kKeepPhase, &MakeParameterArray},
      {"qualifier", 0, 4, kKeepPhase, &MakeQualifier},
      {"parameter.refarray", 0, 4, kKeepPhase, &MakeParameterRefArray},
  };
  AcceptChild(parser, name, attributes, kRows, 4);
}

void TCIMXMLParser::TStateMethod::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  Require(method).Commit();
  Pop(parser);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateMethod::MakeParameter(TCIMXMLParser &,
                                                                         TParseState &parent) {
  return boost::make_shared<TStateParameter>(static_cast<TStateMethod &>(parent).method);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateMethod::MakeParameterReference(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStateParameterReference>(static_cast<TStateMethod &>(parent).method);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateMethod::MakeParameterArray(TCIMXMLParser &,
                                                                              TParseState &parent) {
  return boost::make_shared<TStateParameterArray>(static_cast<TStateMethod &>(parent).method);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateMethod::MakeQualifier(TCIMXMLParser &,
                                                                         TParseState &parent) {
  return boost::make_shared<TStateQualifier>(static_cast<TStateMethod &>(parent).method);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateMethod::MakeParameterRefArray(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStateParameterRefArray>(static_cast<TStateMethod &>(parent).method);
}

void TCIMXMLParser::TStateParameter::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    property.Read(parser, attribute);
  parameter = Require(method).AddParameter(property.name, ParameterType());
}

TCIMType TCIMXMLParser::TStateParameter::ParameterType() const {
  if (property.kind == TPropertyAttributes::EKind::kReference)
    return TCIMType(kCIMTypeReference);
  return property.type;
}

void TCIMXMLParser::TStateParameter::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 0, kKeepPhase, &MakeQualifier},
      {"value", 0, 0, kKeepPhase, &MakeValue},
      {"value.array", 0, 0, kKeepPhase, &MakeValueArray},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

void TCIMXMLParser::TStateParameter::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (!valueSeen)
    defaultValue = TCIMValue(property.type, 0);
  Finish(parser);
}

void TCIMXMLParser::TStateParameter::EndAsReference(TCIMXMLParser &parser) {
  if (!valueSeen) {
    defaultValue = TCIMValue(TCIMType(kCIMTypeReference), 0);
    AttachReferencedClass(*Namespace(parser), property.referenceClass, defaultValue);
  }
  Finish(parser);
}

void TCIMXMLParser::TStateParameter::Finish(TCIMXMLParser &parser) {
  Require(parameter).Commit();
  Pop(parser);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateParameter::MakeQualifier(TCIMXMLParser &,
                                                                            TParseState &parent) {
  return boost::make_shared<TStateQualifier>(static_cast<TStateParameter &>(parent).parameter);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateParameter::MakeValue(TCIMXMLParser &parser,
                                                                        TParseState &parent) {
  auto &self = static_cast<TStateParameter &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValue>(parser, self.defaultValue, self.property.type);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateParameter::MakeValueArray(TCIMXMLParser &,
                                                                             TParseState &parent) {
  auto &self = static_cast<TStateParameter &>(parent);
  self.valueSeen = true;
  return boost::make_shared<TStateValueArray>(self.defaultValue, self.ParameterType(),
                                              self.property.arraySize);
}

void TCIMXMLParser::TStateParameterArray::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  EndAsReference(parser);
}

void TCIMXMLParser::TStateParameterReference::ChildElement(TCIMXMLParser &parser,
                                                           const std::string &name,
                                                           TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 1, kKeepPhase, &MakeQualifier},
      // Spelt so on purpose: "value.array" is not a reference parameter's child.
      {"value.aray", 0, 1, kKeepPhase, &MakeValueArray},
  };
  AcceptChild(parser, name, attributes, kRows, 1);
}

void TCIMXMLParser::TStateParameterReference::ElementEnd(TCIMXMLParser &parser,
                                                         const std::string &) {
  EndAsReference(parser);
}

} // namespace NVRNORV20
