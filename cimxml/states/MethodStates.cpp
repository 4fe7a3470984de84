#include "cimxml/states/MethodStates.h"

#include "cimxml/states/QualifierStates.h"
#include "cimxml/states/ValueStates.h"

namespace NVRNORV20 {

void TCIMXMLParser::TStateMethod::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &methodName) || parser.HandleCIMType(attribute, &returnType);
  method = Require(cls).AddMethod(methodName, returnType);
}

void TCIMXMLParser::TStateMethod::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                               TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateParameter, TStateMethod>("parameter"),
      Child<TStateParameterReference, TStateMethod>("parameter.reference"),
      Child<TStateParameterArray, TStateMethod>("parameter.array"),
      Child<TStateQualifier, TStateMethod>("qualifier"),
      Child<TStateParameterRefArray, TStateMethod>("parameter.refarray"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateMethod::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  Require(method).Commit();
  Pop(parser);
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
      Child<TStateQualifier, TStateParameter>("qualifier"),
      Child<TStateValue, TStateParameter>("value"),
      Child<TStateValueArray, TStateParameter>("value.array"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateParameter::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (!valueSeen)
    value = TCIMValue(property.type, 0);
  Finish(parser);
}

void TCIMXMLParser::TStateParameter::EndAsReference(TCIMXMLParser &parser) {
  if (!valueSeen) {
    value = TCIMValue(TCIMType(kCIMTypeReference), 0);
    AttachReferencedClass(*Namespace(parser), property.referenceClass, value);
  }
  Finish(parser);
}

void TCIMXMLParser::TStateParameter::Finish(TCIMXMLParser &parser) {
  Require(parameter).Commit();
  Pop(parser);
}

void TCIMXMLParser::TStateParameterArray::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  EndAsReference(parser);
}

void TCIMXMLParser::TStateParameterReference::ChildElement(TCIMXMLParser &parser,
                                                           const std::string &name,
                                                           TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateQualifier, TStateParameterReference>("qualifier"),
      // Spelt so on purpose: "value.array" is not a reference parameter's child.
      Child<TStateValueArray, TStateParameterReference>("value.aray"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateParameterReference::ElementEnd(TCIMXMLParser &parser,
                                                         const std::string &) {
  EndAsReference(parser);
}

} // namespace NVRNORV20
