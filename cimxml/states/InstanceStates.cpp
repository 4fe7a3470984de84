#include "cimxml/states/InstanceStates.h"

#include "cimxml/states/ClassStates.h"
#include "cimxml/states/PathStates.h"
#include "cimxml/states/PropertyStates.h"
#include "cimxml/states/ReferenceStates.h"
#include "core_api/OSSpecific.h"

#include <boost/make_shared.hpp>

namespace NVRNORV20 {

void TCIMXMLParser::TStateInstance::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleClassName(attribute, &className);
  // Instances of our own computer-system class need the object model's
  // parser mode; no other class switches it.
  if (className == "VRNSG_ComputerSystem")
    TOSSpecific::setORVParser(true);
  target = Require(Namespace(parser)->GetClass(className)).CreateInstance();
}

// Phases: 0 before the first property, 1 after it.
void TCIMXMLParser::TStateInstance::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                 TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 0, kKeepPhase, &TStateProperty::MakeNoState},
      {"property", 0, 1, 1, &MakeProperty},
      {"property.array", 0, 1, 1, &MakePropertyArray},
      {"property.reference", 0, 1, 1, &MakePropertyReference},
  };
  AcceptChild(parser, name, attributes, kRows, 1, EMiss::kFallThrough);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateInstance::MakeProperty(TCIMXMLParser &,
                                                                          TParseState &parent) {
  return boost::make_shared<TStateProperty>(static_cast<TStateInstance &>(parent).target);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateInstance::MakePropertyArray(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStatePropertyArray>(static_cast<TStateInstance &>(parent).target);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateInstance::MakePropertyReference(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStatePropertyReference>(static_cast<TStateInstance &>(parent).target);
}

// Phases: 0 before the child, 1 after it.
void TCIMXMLParser::TStateValueObject::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"class", 0, 0, 1, &MakeClass},
      {"instance", 0, 0, 1, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

void TCIMXMLParser::TStateValueObject::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (phase != finalPhase)
    parser.FatalError("CIM element syntax error");
  if (isClass) {
    Require(cls).Commit();
    Collect(parser, cls);
  } else {
    Require(instance).Commit();
    if (collects)
      Collect(parser, instance);
  }
  Pop(parser);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateValueObject::MakeClass(TCIMXMLParser &,
                                                                          TParseState &parent) {
  auto &self = static_cast<TStateValueObject &>(parent);
  self.isClass = true;
  return boost::make_shared<TStateClass>(self.cls);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateValueObject::MakeInstance(TCIMXMLParser &,
                                                                             TParseState &parent) {
  return boost::make_shared<TStateInstance>(static_cast<TStateValueObject &>(parent).instance);
}

// Phases: 0 before the instance name, 1 before the instance, 2 after it.
void TCIMXMLParser::TStateValueNamedInstance::ChildElement(TCIMXMLParser &parser,
                                                           const std::string &name,
                                                           TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"instancename", 0, 0, 1, &MakeInstanceName},
      {"instance", 1, 1, 2, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

// Unlike a named object's, this instance name lies in the parser's namespace.
TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueNamedInstance::MakeInstanceName(TCIMXMLParser &parser,
                                                          TParseState &parent) {
  auto &self = static_cast<TStateValueNamedInstance &>(parent);
  self.instanceName.SetNamespace(Namespace(parser));
  return boost::make_shared<TStateInstanceName>(self.instanceName);
}

// Phases: 0 at the start, 1 after the instance name, 2 after the object.
void TCIMXMLParser::TStateValueNamedObject::ChildElement(TCIMXMLParser &parser,
                                                         const std::string &name,
                                                         TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"class", 0, 0, 2, &MakeClass},
      {"instancename", 0, 0, 1, &MakeInstanceName},
      {"instance", 1, 1, 2, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueNamedObject::MakeInstanceName(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStateInstanceName>(
      static_cast<TStateValueNamedObject &>(parent).instanceName);
}

// Phases: 0 at the start, 1 after a class path, 2 after an instance path,
// 3 after the object.
void TCIMXMLParser::TStateValueObjectWithPath::ChildElement(TCIMXMLParser &parser,
                                                            const std::string &name,
                                                            TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"classpath", 0, 0, 1, &MakeClassPath},
      {"instancepath", 0, 0, 2, &MakeInstancePath},
      {"class", 1, 1, 3, &MakeClass},
      {"instance", 2, 2, 3, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueObjectWithPath::MakeClassPath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateValueObjectWithPath &>(parent);
  return boost::make_shared<TStateClassPath>(self.host, self.namespacePath, self.className);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueObjectWithPath::MakeInstancePath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateValueObjectWithPath &>(parent);
  return boost::make_shared<TStateInstancePath>(self.host, self.namespacePath, self.instanceName);
}

void TCIMXMLParser::TStateValueObjectWithLocalPath::ChildElement(TCIMXMLParser &parser,
                                                                 const std::string &name,
                                                                 TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"localclasspath", 0, 0, 1, &MakeLocalClassPath},
      {"localinstancepath", 0, 0, 2, &MakeLocalInstancePath},
      {"class", 1, 1, 3, &MakeClass},
      {"instance", 2, 2, 3, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueObjectWithLocalPath::MakeLocalClassPath(TCIMXMLParser &,
                                                                  TParseState &parent) {
  auto &self = static_cast<TStateValueObjectWithLocalPath &>(parent);
  return boost::make_shared<TStateLocalClassPath>(self.namespacePath, self.className);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueObjectWithLocalPath::MakeLocalInstancePath(TCIMXMLParser &,
                                                                     TParseState &parent) {
  auto &self = static_cast<TStateValueObjectWithLocalPath &>(parent);
  return boost::make_shared<TStateLocalInstancePath>(self.namespacePath, self.instanceName);
}

} // namespace NVRNORV20
