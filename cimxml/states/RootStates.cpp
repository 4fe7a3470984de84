#include "cimxml/states/RootStates.h"

#include "cimxml/states/ClassStates.h"
#include "cimxml/states/InstanceStates.h"
#include "cimxml/states/MessageStates.h"
#include "cimxml/states/PathStates.h"
#include "cimxml/states/QualifierDeclStates.h"
#include "cimxml/states/ReferenceStates.h"

namespace NVRNORV20 {

void TCIMXMLParser::TStateStart::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                              const TAttributeList &attributes) {
  using TSelf = TStateStart;
  static constexpr TChildRow kRows[] = {
      Child<TStateCIM, TSelf>("cim"),
      FullChild<TStateClass, TSelf>("class"),
      FullChild<TStateInstance, TSelf>("instance"),
      FullChild<TStateQualifierDeclaration, TSelf>("qualifier.declaration"),
      FullChild<TStateValueObject, TSelf>("value.object"),
      FullChild<TStateValueNamedInstance, TSelf>("value.namedinstance"),
      FullChild<TStateValueNamedObject, TSelf>("value.namedobject"),
      FullChild<TStateValueObjectWithPath, TSelf>("value.objectwithpath"),
      FullChild<TStateValueObjectWithLocalPath, TSelf>("value.objectwithlocalpath"),
      FullChild<TStateValueInstanceWithPath, TSelf>("value.instancewithpath"),
      FullChild<TStateClassName, TSelf>("classname"),
      FullChild<TStateInstanceName, TSelf>("instancename"),
      FullChild<TStateClassPath, TSelf>("classpath"),
      FullChild<TStateLocalClassPath, TSelf>("localclasspath"),
      FullChild<TStateInstancePath, TSelf>("instancepath"),
      FullChild<TStateLocalInstancePath, TSelf>("localinstancepath"),
      FullChild<TStateObjectPath, TSelf>("objectpath"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateCIM::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                            const TAttributeList &attributes) {
  // The full grammar takes exactly one of the two.
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateDeclaration, TStateCIM>("declaration"),
      ClassicChild<TStateMessage, TStateCIM>("message"),
      FullChild<TStateDeclaration, TStateCIM>("declaration", kAnyOrder, kAnyOrder, kFullDone),
      FullChild<TStateMessage, TStateCIM>("message", kAnyOrder, kAnyOrder, kFullDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullDone);
}

void TCIMXMLParser::TStateDeclaration::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateDeclGroup, TStateDeclaration>("declgroup"),
      Child<TStateDeclGroupWithName, TStateDeclaration>("declgroup.withname"),
      Child<TStateDeclGroupWithPath, TStateDeclaration>("declgroup.withpath"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateDeclGroup::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateNamespacePath, TStateDeclGroup>("namespacepath", kNamespacePath, kNamespacePath,
                                                  kQualifierDeclarations),
      Child<TStateLocalNamespacePath, TStateDeclGroup>("localnamespacepath", kNamespacePath,
                                                       kNamespacePath, kQualifierDeclarations),
      Child<TStateQualifierDeclaration, TStateDeclGroup>(
          "qualifier.declaration", kNamespacePath, kQualifierDeclarations, kQualifierDeclarations),
      Child<TStateValueObject, TStateDeclGroup>("value.object", kNamespacePath, kValueObjects,
                                                kValueObjects),
  };
  AcceptChild(parser, name, attributes, kRows, kValueObjects, EMiss::kFallThrough);
}

void TCIMXMLParser::TStateDeclGroupWithName::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateNamespacePath, TStateDeclGroupWithName>("namespacepath", kNamespacePath,
                                                          kNamespacePath, kQualifierDeclarations),
      Child<TStateLocalNamespacePath, TStateDeclGroupWithName>(
          "localnamespacepath", kNamespacePath, kNamespacePath, kQualifierDeclarations),
      Child<TStateQualifierDeclaration, TStateDeclGroupWithName>(
          "qualifier.declaration", kNamespacePath, kQualifierDeclarations, kQualifierDeclarations),
      Child<TStateValueNamedObject, TStateDeclGroupWithName>("value.namedobject", kNamespacePath,
                                                             kValueObjects, kValueObjects),
  };
  AcceptChild(parser, name, attributes, kRows, kValueObjects, EMiss::kFallThrough);
}

void TCIMXMLParser::TStateDeclGroupWithPath::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateValueObjectWithPath, TStateDeclGroupWithPath>("value.objectwithpath"),
      Child<TStateValueObjectWithLocalPath, TStateDeclGroupWithPath>("value.objectwithlocalpath"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

} // namespace NVRNORV20
