#include "cimxml/states/RootStates.h"

#include "cimxml/states/InstanceStates.h"
#include "cimxml/states/MessageStates.h"
#include "cimxml/states/PathStates.h"
#include "cimxml/states/QualifierDeclStates.h"

namespace NVRNORV20 {

void TCIMXMLParser::TStateStart::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                              TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateCIM, TStateStart>("cim"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateCIM::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                            TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateDeclaration, TStateCIM>("declaration"),
      Child<TStateMessage, TStateCIM>("message"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateDeclaration::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateDeclGroup, TStateDeclaration>("declgroup"),
      Child<TStateDeclGroupWithName, TStateDeclaration>("declgroup.withname"),
      Child<TStateDeclGroupWithPath, TStateDeclaration>("declgroup.withpath"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateDeclGroup::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
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
                                                          TAttributes &attributes) {
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
                                                          TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateValueObjectWithPath, TStateDeclGroupWithPath>("value.objectwithpath"),
      Child<TStateValueObjectWithLocalPath, TStateDeclGroupWithPath>("value.objectwithlocalpath"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

} // namespace NVRNORV20
