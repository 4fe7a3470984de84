#include "cimxml/states/MethodStates.h"

#include "cimxml/states/QualifierStates.h"
#include "cimxml/states/ValueStates.h"
#include "xml/XmlBytes.h"

namespace NVRNORV20 {

void TCIMXMLParser::TStateMethod::ElementStart(TCIMXMLParser &parser,
                                               const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &methodName) || parser.HandleCIMType(attribute, &returnType) ||
        parser.HandleClassOrigin(attribute, &classOrigin) ||
        parser.HandlePropagated(attribute, propagated);
  method = Require(cls).AddMethod(methodName, returnType);
  boost::shared_ptr<ICIMClass> superClass = cls->GetSuperClass();
  if (IsFull(parser) && superClass && superClass->HasMethod(methodName))
    inheritedMethod = superClass->GetMethod(methodName);
}

void TCIMXMLParser::TStateMethod::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                               const TAttributeList &attributes) {
  // The full grammar takes qualifiers before parameters.
  using TSelf = TStateMethod;
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateParameter, TSelf>("parameter"),
      ClassicChild<TStateParameterReference, TSelf>("parameter.reference"),
      ClassicChild<TStateParameterArray, TSelf>("parameter.array"),
      ClassicChild<TStateQualifier, TSelf>("qualifier"),
      ClassicChild<TStateParameterRefArray, TSelf>("parameter.refarray"),
      FullChild<TStateQualifier, TSelf>("qualifier", kAnyOrder, kAnyOrder, kKeepPhase),
      FullChild<TStateParameter, TSelf>("parameter", kAnyOrder, kFullValueDone, kFullValueDone),
      FullChild<TStateParameterReference, TSelf>("parameter.reference", kAnyOrder, kFullValueDone,
                                                 kFullValueDone),
      FullChild<TStateParameterArray, TSelf>("parameter.array", kAnyOrder, kFullValueDone,
                                             kFullValueDone),
      FullChild<TStateParameterRefArray, TSelf>("parameter.refarray", kAnyOrder, kFullValueDone,
                                                kFullValueDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullValueDone);
}

void TCIMXMLParser::TStateMethod::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  Require(method).Commit();
  if (IsFull(parser) && propagated && TakesPropagated(parser, *cls))
    TakePropagated(parser, *cls, true, methodName, classOrigin);
  Pop(parser);
}

void TCIMXMLParser::TStateParameter::ElementStart(TCIMXMLParser &parser,
                                                  const TAttributeList &attributes) {
  const bool full = IsFull(parser);
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    if (!property.Read(parser, attribute) && full && referenceArray)
      parser.HandleArraySize(attribute, property.arraySize);
  parameter = Require(method).AddParameter(property.name, ParameterType(full));
  if (full) {
    parameter->SetReferenceClassName(property.referenceClass);
    parameter->SetArraySize(property.arraySize);
  }
}

boost::shared_ptr<ICIMQualifiedObject> TCIMXMLParser::TStateParameter::InheritedObject() const {
  if (inheritedFound)
    return inherited;
  inheritedFound = true;
  if (inheritedMethod)
    for (const boost::shared_ptr<ICIMParameter> &candidate : inheritedMethod->GetParameters())
      if (EqualsAsciiNoCase(candidate->GetName(), property.name)) {
        inherited = candidate;
        break;
      }
  return inherited;
}

TCIMType TCIMXMLParser::TStateParameter::ParameterType(bool full) const {
  TCIMType type = property.type;
  if (property.kind == TPropertyAttributes::EKind::kReference)
    type = TCIMType(kCIMTypeReference);
  // The classic grammar reads an array parameter as its element type.
  const bool array = property.kind == TPropertyAttributes::EKind::kArray || referenceArray;
  return full && array ? type.GetArrayType() : type;
}

void TCIMXMLParser::TStateParameter::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  const TAttributeList &attributes) {
  // A parameter holds qualifiers only in the full grammar.
  static constexpr TChildRow kRows[] = {
      Child<TStateQualifier, TStateParameter>("qualifier"),
      ClassicChild<TStateValue, TStateParameter>("value"),
      ClassicChild<TStateValueArray, TStateParameter>("value.array"),
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
                                                           const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateQualifier, TStateParameterReference>("qualifier"),
      // Spelt so on purpose: "value.array" is not a reference parameter's child.
      ClassicChild<TStateValueArray, TStateParameterReference>("value.aray"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateParameterReference::ElementEnd(TCIMXMLParser &parser,
                                                         const std::string &) {
  EndAsReference(parser);
}

} // namespace NVRNORV20
