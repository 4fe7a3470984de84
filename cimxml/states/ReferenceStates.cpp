#include "cimxml/states/ReferenceStates.h"

#include "cimxml/states/InstanceStates.h"
#include "cimxml/states/PathStates.h"

#include <boost/make_shared.hpp>

#include <cstddef>
#include <map>
#include <string>

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
                                                     const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
    if (!parser.HandleClassName(attribute, &className))
      continue;
    instanceName.SetClassName(className);
    keyClass =
        IsFull(parser) ? FindClass(parser, className) : Namespace(parser)->GetClass(className);
  }
}

void TCIMXMLParser::TStateInstanceName::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateKeyBinding, TStateInstanceName>("keybinding", kStart, kKeyBindings, kKeyBindings),
      Child<TStateKeyValue, TStateInstanceName>("keyvalue", kStart, kStart, kKeyValue),
      Child<TStateValueReference, TStateInstanceName>("value.reference", kStart, kStart,
                                                      kReference),
  };
  AcceptChild(parser, name, attributes, kRows, kReference);
}

void TCIMXMLParser::TStateInstanceName::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (IsFull(parser)) {
    EndFull(parser);
    return;
  }
  if (valueSeen)
    instanceName = static_cast<TCIMReference>(value);
  else if (phase == kKeyValue)
    AddFirstKey(parser);
  // Key bindings have added their keys as each ended.
  Pop(parser);
}

TCIMXMLParser::TStateInstanceName::TStateInstanceName(TCIMXMLParser &parser,
                                                      TStateValueNamedInstance &parent)
    : TStateInstanceName(parent.instanceName) {
  instanceName.SetNamespace(Namespace(parser));
}

TCIMXMLParser::TStateInstanceName::TStateInstanceName(TCIMXMLParser &parser,
                                                      TStateValueReference &parent)
    : TStateInstanceName(parent.instanceName) {
  instanceName.SetNamespace(Namespace(parser));
}

void TCIMXMLParser::TStateInstanceName::AddFirstKey(TCIMXMLParser &parser) {
  for (const auto &property : Require(keyClass).GetProperties()) {
    if (!IsKeyProperty(Require(property)))
      continue;
    instanceName.AddKeyValue(property->GetName(),
                             parser.ParseValue(property->GetType(), keyValueText));
    return;
  }
  // Named after the attribute as written, not the class's own spelling.
  parser.FatalError(NoKeysMessage(className).c_str());
}

void TCIMXMLParser::TStateInstanceName::EndFull(TCIMXMLParser &parser) {
  if (phase == kKeyValue || phase == kReference) {
    // A single key without its name: the class says which key it is.
    boost::shared_ptr<ICIMPropertyDecl> key;
    if (keyClass)
      for (const auto &property : keyClass->GetProperties())
        if (IsKeyProperty(*property)) {
          key = property;
          break;
        }
    if (!key)
      Report(parser, "The key of " + className +
                         " is dropped: without the class loaded its name is not known");
    else if (phase == kReference)
      instanceName.AddKeyValue(key->GetName(), value);
    else
      instanceName.AddKeyValue(key->GetName(), parser.ParseValue(key->GetType(), keyValueText));
  }
  if (standalone) {
    DeliverPath(parser,
                MakePath(TCIMXMLPath::EKind::kInstance, std::string(), std::string(), std::string(),
                         instanceName),
                line);
    instanceName = TCIMReference();
  }
  Pop(parser);
}

// keybinding ---------------------------------------------------------------

void TCIMXMLParser::TStateKeyBinding::ElementStart(TCIMXMLParser &parser,
                                                   const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &keyName);
}

void TCIMXMLParser::TStateKeyBinding::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                   const TAttributeList &attributes) {
  // Any number, in any order: the last key value and any reference count.
  // The full grammar takes exactly one.
  using TSelf = TStateKeyBinding;
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateKeyValue, TSelf>("keyvalue"),
      ClassicChild<TStateValueReference, TSelf>("value.reference"),
      FullChild<TStateKeyValue, TSelf>("keyvalue", kAnyOrder, kAnyOrder, kFullValueDone),
      FullChild<TStateValueReference, TSelf>("value.reference", kAnyOrder, kAnyOrder,
                                             kFullValueDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullValueDone);
}

void TCIMXMLParser::TStateKeyBinding::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (valueSeen) {
    // A reference key is bound as given; the class is not consulted.
    instanceName.AddKeyValue(keyName, value);
  } else if (IsFull(parser)) {
    // The class types the key where it declares it; else the document
    // does.
    if (keyClass && keyClass->HasProperty(keyName))
      instanceName.AddKeyValue(
          keyName, parser.ParseValue(keyClass->GetProperty(keyName)->GetType(), keyValueText));
    else
      instanceName.AddKeyValue(keyName,
                               KeyValueFromDocument(parser, keyValueText, keyValueType, keyType));
  } else {
    ICIMClass &cls = Require(keyClass);
    ICIMPropertyDecl &property = Require(cls.GetProperty(keyName));
    // The same wording as for a class without keys, though only this one
    // binding is at fault.
    if (!IsKeyProperty(property))
      parser.FatalError(NoKeysMessage(cls.GetName()).c_str());
    instanceName.AddKeyValue(keyName, parser.ParseValue(property.GetType(), keyValueText));
  }
  Pop(parser);
}

// keyvalue -----------------------------------------------------------------

void TCIMXMLParser::TStateKeyValue::ElementStart(TCIMXMLParser &parser,
                                                 const TAttributeList &attributes) {
  if (!IsFull(parser))
    return;
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    if (attribute->name == "valuetype")
      valueType = attribute->value;
    else
      parser.HandleCIMType(attribute, &type);
}

TCIMValue KeyValueFromDocument(TCIMXMLParser &parser, std::string &text,
                               const std::string &valueType, TCIMType type) {
  if (type == kCIMTypeNone) {
    if (valueType == "boolean") {
      type = kCIMTypeBoolean;
    } else if (valueType == "numeric") {
      const bool real = text.find_first_of(".eE") != std::string::npos &&
                        text.find_first_of("xX") == std::string::npos;
      type = real                                  ? kCIMTypeReal64
             : text.find('-') != std::string::npos ? kCIMTypeSint64
                                                   : kCIMTypeUint64;
    } else {
      type = kCIMTypeString;
    }
  }
  return parser.ParseValue(type, text);
}

void TCIMXMLParser::TStateKeyValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  // Untrimmed: blanks and line breaks around a key are part of it.
  target = CharacterData(parser);
  Pop(parser);
}

// value.reference ----------------------------------------------------------

TCIMXMLParser::TStateValueReference::TStateValueReference(TCIMValue &value)
    : instanceName(boost::shared_ptr<ICIMNamespace>(), std::map<std::string, TCIMValue>()),
      target(value) {}

void TCIMXMLParser::TStateValueReference::ElementStart(TCIMXMLParser &parser,
                                                       const TAttributeList &) {
  // A stack no deeper than the bound cannot hold more references than it.
  if (parser.stateStack.size() <= kMaxNesting)
    return;
  // Only references nest without end in CIM-XML, so the stack holds few
  // other states, and none below a refused reference: counting is cheap.
  std::size_t nesting = 0;
  for (const TParseStatePtr &state : parser.stateStack)
    if (dynamic_cast<const TStateValueReference *>(state.get()) != nullptr)
      ++nesting;
  if (nesting <= kMaxNesting)
    return;
  refused = true;
  parser.FatalError(
      ("Reference nested more than " + std::to_string(kMaxNesting) + " deep").c_str());
}

void TCIMXMLParser::TStateValueReference::ChildElement(TCIMXMLParser &parser,
                                                       const std::string &name,
                                                       const TAttributeList &attributes) {
  if (refused) {
    Push(parser, boost::make_shared<TStateDropped>(), attributes);
    return;
  }
  // Any number of path children, each acting in turn.
  using TSelf = TStateValueReference;
  static constexpr TChildRow kRows[] = {
      Child<TStateClassPath, TSelf>("classpath", kUnnamed, kClassNamed, kClassNamed),
      Child<TStateClassPath, TSelf>("classpath", kInstanceNamed, kInstanceNamed, kKeepPhase),
      Child<TStateLocalClassPath, TSelf>("localclasspath", kUnnamed, kClassNamed, kClassNamed),
      Child<TStateLocalClassPath, TSelf>("localclasspath", kInstanceNamed, kInstanceNamed,
                                         kKeepPhase),
      Child<TStateClassName, TSelf>("classname", kUnnamed, kClassNamed, kClassNamed),
      Child<TStateClassName, TSelf>("classname", kInstanceNamed, kInstanceNamed, kKeepPhase),
      Child<TStateInstancePath, TSelf>("instancepath", kUnnamed, kInstanceNamed, kKeepPhase),
      Child<TStateLocalInstancePath, TSelf>("localinstancepath", kUnnamed, kInstanceNamed,
                                            kKeepPhase),
      Child<TStateInstanceName, TSelf>("instancename", kUnnamed, kInstanceNamed, kInstanceNamed),
  };
  // The full grammar takes one path, as the CIM-XML document type does.
  if (IsFull(parser) && pathSeen)
    parser.FatalError(("Unexpected element " + name).c_str());
  AcceptChild(parser, name, attributes, kRows, kInstanceNamed);
  pathSeen = true;
}

// The two path forms leave the reference without a namespace: their
// namespace path is text that names no namespace object of ours.

// The bare forms are taken as names in the document's own namespace.

void TCIMXMLParser::TStateValueReference::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (!refused) {
    // An instance name has set the class name itself, keys with it.
    if (phase == kClassNamed)
      instanceName.SetClassName(className);
    // The full grammar keeps the namespace and host that a path form
    // names.
    if (IsFull(parser) && !namespacePath.empty())
      instanceName.SetNamespaceName(namespacePath);
    if (IsFull(parser))
      instanceName.SetHost(host);
    if (instanceName.GetTextLength() > kMaxTextLength)
      parser.FatalError(
          ("Reference longer than " + std::to_string(kMaxTextLength) + " bytes as text").c_str());
    target.Set(instanceName);
  }
  Pop(parser);
}

// dropped -------------------------------------------------------------------

void TCIMXMLParser::TStateDropped::ChildElement(TCIMXMLParser &parser, const std::string &,
                                                const TAttributeList &attributes) {
  Push(parser, boost::make_shared<TStateDropped>(), attributes);
}

} // namespace NVRNORV20
