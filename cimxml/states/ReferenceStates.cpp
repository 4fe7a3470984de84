#include "cimxml/states/ReferenceStates.h"

#include "cimxml/states/PathStates.h"

#include <boost/make_shared.hpp>

#include <map>

namespace NVRNORV20 {

namespace {

/// A property is a key when its KEY qualifier has a value that is true; a
/// property without the qualifier gets a null value from the object model.
bool IsKeyProperty(ICIMPropertyDecl &property) {
  boost::shared_ptr<ICIMQualifier> qualifier = property.GetQualifier("KEY");
  if (!qualifier)
    return false;
  TCIMValue key = qualifier->GetValue();
  return !key.IsNull() && static_cast<bool>(key);
}

std::string NoKeysMessage(const std::string &className) {
  return "Class " + className + " doesn't have any key properties";
}

} // namespace

// instancename -------------------------------------------------------------

void TCIMXMLParser::TStateInstanceName::ElementStart(TCIMXMLParser &parser,
                                                     TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
    if (!parser.HandleClassName(attribute, &className))
      continue;
    target.SetClassName(className);
    cls = Namespace(parser)->GetClass(className);
  }
}

void TCIMXMLParser::TStateInstanceName::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     TAttributes &attributes) {
  // Key bindings (phase 1), or a single key value or reference (phase 2).
  static constexpr TChildRow kRows[] = {
      {"keybinding", 0, 1, 1, &MakeKeyBinding},
      {"keyvalue", 0, 0, 2, &MakeKeyValue},
      {"value.reference", 0, 0, 2, &MakeValueReference},
  };
  AcceptChild(parser, name, attributes, kRows, 2);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateInstanceName::MakeKeyBinding(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateInstanceName &>(parent);
  return boost::make_shared<TStateKeyBinding>(self.cls, self.target);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateInstanceName::MakeKeyValue(TCIMXMLParser &parser,
                                                                              TParseState &parent) {
  auto &self = static_cast<TStateInstanceName &>(parent);
  self.keyValueSeen = true;
  return boost::make_shared<TStateKeyValue>(parser, self.keyValueText);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateInstanceName::MakeValueReference(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateInstanceName &>(parent);
  self.referenceSeen = true;
  return boost::make_shared<TStateValueReference>(self.referenceValue);
}

void TCIMXMLParser::TStateInstanceName::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (referenceSeen)
    target = static_cast<TCIMReference>(referenceValue);
  else if (keyValueSeen)
    AddFirstKey(parser);
  // Key bindings have added their keys as each ended.
  Pop(parser);
}

void TCIMXMLParser::TStateInstanceName::AddFirstKey(TCIMXMLParser &parser) {
  for (const auto &property : Require(cls).GetProperties()) {
    if (!IsKeyProperty(Require(property)))
      continue;
    target.AddKeyValue(property->GetName(), parser.ParseValue(property->GetType(), keyValueText));
    return;
  }
  // Named after the attribute as written, not the class's own spelling.
  parser.FatalError(NoKeysMessage(className).c_str());
}

// keybinding ---------------------------------------------------------------

void TCIMXMLParser::TStateKeyBinding::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &keyName);
}

void TCIMXMLParser::TStateKeyBinding::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                   TAttributes &attributes) {
  // Any number, in any order: the last key value and any reference count.
  static constexpr TChildRow kRows[] = {
      {"keyvalue", 0, 0, kKeepPhase, &MakeKeyValue},
      {"value.reference", 0, 0, kKeepPhase, &MakeValueReference},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateKeyBinding::MakeKeyValue(TCIMXMLParser &parser,
                                                                            TParseState &parent) {
  auto &self = static_cast<TStateKeyBinding &>(parent);
  return boost::make_shared<TStateKeyValue>(parser, self.keyValueText);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateKeyBinding::MakeValueReference(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateKeyBinding &>(parent);
  self.referenceSeen = true;
  return boost::make_shared<TStateValueReference>(self.referenceValue);
}

void TCIMXMLParser::TStateKeyBinding::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (referenceSeen) {
    // A reference key is bound as given; the class is not consulted.
    target.AddKeyValue(keyName, referenceValue);
  } else {
    ICIMClass &keyClass = Require(cls);
    ICIMPropertyDecl &property = Require(keyClass.GetProperty(keyName));
    // The same wording as for a class without keys, though only this one
    // binding is at fault.
    if (!IsKeyProperty(property))
      parser.FatalError(NoKeysMessage(keyClass.GetName()).c_str());
    target.AddKeyValue(keyName, parser.ParseValue(property.GetType(), keyValueText));
  }
  Pop(parser);
}

// keyvalue -----------------------------------------------------------------

TCIMXMLParser::TStateKeyValue::TStateKeyValue(TCIMXMLParser &parser, std::string &text)
    : target(text) {
  CharacterData(parser).clear();
}

void TCIMXMLParser::TStateKeyValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  // Untrimmed: blanks and line breaks around a key are part of it.
  target = CharacterData(parser);
  Pop(parser);
}

// value.reference ----------------------------------------------------------

TCIMXMLParser::TStateValueReference::TStateValueReference(TCIMValue &value)
    : target(value), instanceNameSeen(false), classNameGiven(false),
      reference(boost::shared_ptr<ICIMNamespace>(), std::map<std::string, TCIMValue>()) {}

void TCIMXMLParser::TStateValueReference::ChildElement(TCIMXMLParser &parser,
                                                       const std::string &name,
                                                       TAttributes &attributes) {
  // Any number of path children, each acting in turn.
  static constexpr TChildRow kRows[] = {
      {"classpath", 0, 0, kKeepPhase, &MakeClassPath},
      {"localclasspath", 0, 0, kKeepPhase, &MakeLocalClassPath},
      {"classname", 0, 0, kKeepPhase, &MakeClassName},
      {"instancepath", 0, 0, kKeepPhase, &MakeInstancePath},
      {"localinstancepath", 0, 0, kKeepPhase, &MakeLocalInstancePath},
      {"instancename", 0, 0, kKeepPhase, &MakeInstanceName},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

// The two path forms leave the reference without a namespace: their
// namespace path is text that names no namespace object of ours.
TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueReference::MakeClassPath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateValueReference &>(parent);
  self.classNameGiven = true;
  return boost::make_shared<TStateClassPath>(self.host, self.namespacePath, self.className);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueReference::MakeLocalClassPath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateValueReference &>(parent);
  self.classNameGiven = true;
  return boost::make_shared<TStateLocalClassPath>(self.namespacePath, self.className);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueReference::MakeInstancePath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateValueReference &>(parent);
  return boost::make_shared<TStateInstancePath>(self.host, self.namespacePath, self.reference);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueReference::MakeLocalInstancePath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateValueReference &>(parent);
  return boost::make_shared<TStateLocalInstancePath>(self.namespacePath, self.reference);
}

// The bare forms are taken as names in the document's own namespace.
TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueReference::MakeClassName(TCIMXMLParser &parser, TParseState &parent) {
  auto &self = static_cast<TStateValueReference &>(parent);
  self.reference.SetNamespace(Namespace(parser));
  self.classNameGiven = true;
  return boost::make_shared<TStateClassName>(self.className);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateValueReference::MakeInstanceName(TCIMXMLParser &parser, TParseState &parent) {
  auto &self = static_cast<TStateValueReference &>(parent);
  self.reference.SetNamespace(Namespace(parser));
  self.instanceNameSeen = true;
  return boost::make_shared<TStateInstanceName>(self.reference);
}

void TCIMXMLParser::TStateValueReference::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  // An instance name has set the class name itself, keys with it.
  if (!instanceNameSeen && classNameGiven)
    reference.SetClassName(className);
  target.Set(reference);
  Pop(parser);
}

} // namespace NVRNORV20
