#include "cimxml/states/InstanceStates.h"

#include "cimxml/states/ClassStates.h"
#include "cimxml/states/PropertyStates.h"
#include "core_api/OSSpecific.h"

#include <boost/make_shared.hpp>

namespace NVRNORV20 {

void TCIMXMLParser::TStateInstance::ElementStart(TCIMXMLParser &parser,
                                                 TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleClassName(attribute, &className);
  // Instances of our own computer-system class need the object model's
  // parser mode; no other class switches it.
  if (className == "VRNSG_ComputerSystem")
    TOSSpecific::setORVParser(true);
  target = Require(Namespace(parser)->GetClass(className)).CreateInstance();
}

// Phases: 0 before the first property, 1 after it.
void TCIMXMLParser::TStateInstance::ChildElement(TCIMXMLParser &parser,
                                                 const std::string &name,
                                                 TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 0, kKeepPhase, &TStateProperty::MakeNoState},
      {"property", 0, 1, 1, &MakeProperty},
      {"property.array", 0, 1, 1, &MakePropertyArray},
      {"property.reference", 0, 1, 1, &MakePropertyReference},
  };
  AcceptChild(parser, name, attributes, kRows, 1, EMiss::kFallThrough);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateInstance::MakeProperty(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStateProperty>(static_cast<TStateInstance &>(parent).target);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateInstance::MakePropertyArray(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStatePropertyArray>(static_cast<TStateInstance &>(parent).target);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateInstance::MakePropertyReference(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStatePropertyReference>(
      static_cast<TStateInstance &>(parent).target);
}

// Phases: 0 before the child, 1 after it.
void TCIMXMLParser::TStateValueObject::ChildElement(TCIMXMLParser &parser,
                                                    const std::string &name,
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

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueObject::MakeClass(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateValueObject &>(parent);
  self.isClass = true;
  return boost::make_shared<TStateClass>(self.cls);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueObject::MakeInstance(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStateInstance>(static_cast<TStateValueObject &>(parent).instance);
}

// Phases: 0 before the instance name, 1 before the instance, 2 after it.
void TCIMXMLParser::TStateValueNamedInstance::ChildElement(TCIMXMLParser &parser,
                                                           const std::string &name,
                                                           TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"instance", 1, 1, 2, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

// Phases: 0 at the start, 1 after the instance name, 2 after the object.
void TCIMXMLParser::TStateValueNamedObject::ChildElement(TCIMXMLParser &parser,
                                                         const std::string &name,
                                                         TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"class", 0, 0, 2, &MakeClass},
      {"instance", 1, 1, 2, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

// Phases: 0 at the start, 1 after a class path, 2 after an instance path,
// 3 after the object.
void TCIMXMLParser::TStateValueObjectWithPath::ChildElement(TCIMXMLParser &parser,
                                                            const std::string &name,
                                                            TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"class", 1, 1, 3, &MakeClass},
      {"instance", 2, 2, 3, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

void TCIMXMLParser::TStateValueObjectWithLocalPath::ChildElement(TCIMXMLParser &parser,
                                                                 const std::string &name,
                                                                 TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"class", 1, 1, 3, &MakeClass},
      {"instance", 2, 2, 3, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

} // namespace NVRNORV20
