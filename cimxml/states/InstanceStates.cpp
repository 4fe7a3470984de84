#include "cimxml/states/InstanceStates.h"

#include "cimxml/states/ClassStates.h"
#include "cimxml/states/PathStates.h"
#include "cimxml/states/PropertyStates.h"
#include "cimxml/states/ReferenceStates.h"
#include "core_api/OSSpecific.h"

namespace NVRNORV20 {

void TCIMXMLParser::TStateInstance::ElementStart(TCIMXMLParser &parser,
                                                 const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleClassName(attribute, &className);
  if (IsFull(parser)) {
    if (className.empty())
      parser.FatalError("Instance without a class name");
    boost::shared_ptr<ICIMClass> cls = FindClass(parser, className);
    instance = cls ? cls->CreateInstance() : CreateStandaloneInstance(className, Namespace(parser));
    return;
  }
  // Instances of our own computer-system class need the object model's
  // parser mode; no other class switches it.
  if (className == "VRNSG_ComputerSystem")
    TOSSpecific::setORVParser(true);
  instance = Require(Namespace(parser)->GetClass(className)).CreateInstance();
}

void TCIMXMLParser::TStateInstance::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                 const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      // Not attached; the instance reads the qualifier's attributes as its own.
      ClassicIgnored("qualifier", kQualifiers, kQualifiers, kKeepPhase),
      FullChild<TStateInstanceQualifier, TStateInstance>("qualifier", kQualifiers, kQualifiers,
                                                         kKeepPhase),
      Child<TStateProperty, TStateInstance>("property", kQualifiers, kProperties, kProperties),
      Child<TStatePropertyArray, TStateInstance>("property.array", kQualifiers, kProperties,
                                                 kProperties),
      Child<TStatePropertyReference, TStateInstance>("property.reference", kQualifiers, kProperties,
                                                     kProperties),
  };
  AcceptChild(parser, name, attributes, kRows, kProperties, EMiss::kFallThrough);
}

void TCIMXMLParser::TStateInstance::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (standalone)
    DeliverInstance(parser, instance, nullptr, line);
  Pop(parser);
}

void TCIMXMLParser::TStateInstanceQualifier::ElementStart(TCIMXMLParser &parser,
                                                          const TAttributeList &attributes) {
  auto name = attributes.Find("name");
  Report(parser, "Qualifier " +
                     (name != attributes.end() ? std::string(name->value) : std::string()) +
                     " of an instance is not kept");
}

void TCIMXMLParser::TStateValueObject::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateClass, TStateValueObject>("class", kObject, kObject, kDone),
      Child<TStateInstance, TStateValueObject>("instance", kObject, kObject, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

void TCIMXMLParser::TStateValueObject::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  RequireComplete(parser, finalPhase);
  if (IsFull(parser)) {
    EndFull(parser);
    return;
  }
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

void TCIMXMLParser::TStateValueNamedInstance::ChildElement(TCIMXMLParser &parser,
                                                           const std::string &name,
                                                           const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      // Unlike a named object's, this instance name lies in the parser's
      // namespace.
      Child<TStateInstanceName, TStateValueNamedInstance>("instancename", kName, kName, kInstance),
      Child<TStateInstance, TStateValueNamedInstance>("instance", kInstance, kInstance, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

void TCIMXMLParser::TStateValueNamedObject::ChildElement(TCIMXMLParser &parser,
                                                         const std::string &name,
                                                         const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateClass, TStateValueNamedObject>("class", kObjectOrName, kObjectOrName, kDone),
      Child<TStateInstanceName, TStateValueNamedObject>("instancename", kObjectOrName,
                                                        kObjectOrName, kInstance),
      Child<TStateInstance, TStateValueNamedObject>("instance", kInstance, kInstance, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

void TCIMXMLParser::TStateValueObjectWithPath::ChildElement(TCIMXMLParser &parser,
                                                            const std::string &name,
                                                            const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateClassPath, TStateValueObjectWithPath>("classpath", kPath, kPath, kClass),
      Child<TStateInstancePath, TStateValueObjectWithPath>("instancepath", kPath, kPath, kInstance),
      Child<TStateClass, TStateValueObjectWithPath>("class", kClass, kClass, kDone),
      Child<TStateInstance, TStateValueObjectWithPath>("instance", kInstance, kInstance, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

void TCIMXMLParser::TStateValueObjectWithLocalPath::ChildElement(TCIMXMLParser &parser,
                                                                 const std::string &name,
                                                                 const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateLocalClassPath, TStateValueObjectWithLocalPath>("localclasspath", kPath, kPath,
                                                                  kClass),
      Child<TStateLocalInstancePath, TStateValueObjectWithLocalPath>("localinstancepath", kPath,
                                                                     kPath, kInstance),
      Child<TStateClass, TStateValueObjectWithLocalPath>("class", kClass, kClass, kDone),
      Child<TStateInstance, TStateValueObjectWithLocalPath>("instance", kInstance, kInstance,
                                                            kDone),
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

void TCIMXMLParser::TStateValueObject::EndFull(TCIMXMLParser &parser) {
  if (isClass) {
    const TCIMXMLPath path = Path(TCIMXMLPath::EKind::kClass);
    DeliverClass(parser, cls, className.empty() ? nullptr : &path, line);
  } else {
    const TCIMXMLPath path = Path(TCIMXMLPath::EKind::kInstance);
    const bool named = !instanceName.GetClassName().empty();
    ICIMInstance &read = Require(instance);
    // A standalone instance learns its keys from the path beside it.
    if (named && !read.GetClass()) {
      TCIMOptions key;
      key["KEY"] = TCIMValue(true);
      for (const auto &binding : instanceName.GetKeyBindings())
        read.SetPropertyValue(binding.first,
                              read.HasProperty(binding.first) ? read.GetPropertyValue(binding.first)
                                                              : binding.second,
                              key);
    }
    DeliverInstance(parser, instance, named ? &path : nullptr, line);
  }
  Pop(parser);
}

void TCIMXMLParser::TStateValueInstanceWithPath::ChildElement(TCIMXMLParser &parser,
                                                              const std::string &name,
                                                              const TAttributeList &attributes) {
  using TSelf = TStateValueInstanceWithPath;
  static constexpr TChildRow kRows[] = {
      Child<TStateInstancePath, TSelf>("instancepath", kPath, kPath, kInstance),
      Child<TStateInstance, TSelf>("instance", kInstance, kInstance, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, finalPhase);
}

} // namespace NVRNORV20
