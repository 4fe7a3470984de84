#include "cimxml/states/RootStates.h"

#include "cimxml/states/InstanceStates.h"
#include "cimxml/states/MessageStates.h"
#include "cimxml/states/PathStates.h"
#include "cimxml/states/QualifierDeclStates.h"

#include <boost/make_shared.hpp>

namespace NVRNORV20 {

void TCIMXMLParser::TStateStart::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                              TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"cim", 0, 0, kKeepPhase, &MakeCIM},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateStart::MakeCIM(TCIMXMLParser &, TParseState &) {
  return boost::make_shared<TStateCIM>();
}

void TCIMXMLParser::TStateCIM::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                            TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"declaration", 0, 0, kKeepPhase, &MakeDeclaration},
      {"message", 0, 0, kKeepPhase, &MakeMessage},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateCIM::MakeDeclaration(TCIMXMLParser &,
                                                                        TParseState &) {
  return boost::make_shared<TStateDeclaration>();
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateCIM::MakeMessage(TCIMXMLParser &,
                                                                    TParseState &) {
  return boost::make_shared<TStateMessage>();
}

void TCIMXMLParser::TStateDeclaration::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"declgroup", 0, 0, kKeepPhase, &MakeDeclGroup},
      {"declgroup.withname", 0, 0, kKeepPhase, &MakeDeclGroupWithName},
      {"declgroup.withpath", 0, 0, kKeepPhase, &MakeDeclGroupWithPath},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateDeclaration::MakeDeclGroup(TCIMXMLParser &,
                                                                              TParseState &) {
  return boost::make_shared<TStateDeclGroup>();
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateDeclaration::MakeDeclGroupWithName(TCIMXMLParser &, TParseState &) {
  return boost::make_shared<TStateDeclGroupWithName>();
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateDeclaration::MakeDeclGroupWithPath(TCIMXMLParser &, TParseState &) {
  return boost::make_shared<TStateDeclGroupWithPath>();
}

// Phases of both named and unnamed groups: 0 namespace path, 1 qualifier
// declarations, 2 value objects.
void TCIMXMLParser::TStateDeclGroup::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"namespacepath", 0, 0, 1, &MakeNamespacePath},
      {"localnamespacepath", 0, 0, 1, &MakeLocalNamespacePath},
      {"qualifier.declaration", 0, 1, 1, &MakeQualifierDeclaration},
      {"value.object", 0, 2, 2, &MakeValueObject},
  };
  AcceptChild(parser, name, attributes, kRows, 2, EMiss::kFallThrough);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateDeclGroup::MakeNamespacePath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateDeclGroup &>(parent);
  return boost::make_shared<TStateNamespacePath>(self.host, self.namespacePath);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateDeclGroup::MakeLocalNamespacePath(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStateLocalNamespacePath>(
      static_cast<TStateDeclGroup &>(parent).namespacePath);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateDeclGroup::MakeQualifierDeclaration(TCIMXMLParser &, TParseState &) {
  return boost::make_shared<TStateQualifierDeclaration>();
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateDeclGroup::MakeValueObject(TCIMXMLParser &,
                                                                              TParseState &) {
  return boost::make_shared<TStateValueObject>();
}

void TCIMXMLParser::TStateDeclGroupWithName::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"namespacepath", 0, 0, 1, &MakeNamespacePath},
      {"localnamespacepath", 0, 0, 1, &MakeLocalNamespacePath},
      {"qualifier.declaration", 0, 1, 1, &MakeQualifierDeclaration},
      {"value.namedobject", 0, 2, 2, &MakeValueNamedObject},
  };
  AcceptChild(parser, name, attributes, kRows, 2, EMiss::kFallThrough);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateDeclGroupWithName::MakeValueNamedObject(TCIMXMLParser &, TParseState &) {
  return boost::make_shared<TStateValueNamedObject>();
}

void TCIMXMLParser::TStateDeclGroupWithPath::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"value.objectwithpath", 0, 0, kKeepPhase, &MakeValueObjectWithPath},
      {"value.objectwithlocalpath", 0, 0, kKeepPhase, &MakeValueObjectWithLocalPath},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateDeclGroupWithPath::MakeValueObjectWithPath(TCIMXMLParser &, TParseState &) {
  return boost::make_shared<TStateValueObjectWithPath>();
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateDeclGroupWithPath::MakeValueObjectWithLocalPath(TCIMXMLParser &,
                                                                     TParseState &) {
  return boost::make_shared<TStateValueObjectWithLocalPath>();
}

} // namespace NVRNORV20
