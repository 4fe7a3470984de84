#include "cimxml/states/PropertyStates.h"

#include "cimxml/states/InstanceStates.h"
#include "cimxml/states/QualifierStates.h"
#include "cimxml/states/ReferenceStates.h"
#include "cimxml/states/ValueStates.h"
#include "core_api/ORVStatusCode.h"
#include "xml/XmlBytes.h"

namespace NVRNORV20 {

bool TPropertyAttributes::Read(TCIMXMLParser &parser, TXmlAttributeList::TIterator attribute) {
  if (parser.HandleCIMName(attribute, &name) || parser.HandleClassOrigin(attribute, &classOrigin) ||
      parser.HandlePropagated(attribute, propagated))
    return true;
  if (attribute->name == "embeddedobject") {
    embeddedObject = attribute->value;
    return true;
  }
  switch (kind) {
  case EKind::kScalar:
    return parser.HandleCIMType(attribute, &type);
  case EKind::kArray:
    return parser.HandleCIMType(attribute, &type) || parser.HandleArraySize(attribute, arraySize);
  case EKind::kReference:
    return parser.HandleReferenceClass(attribute, &referenceClass);
  }
  return false;
}

TCIMType TPropertyAttributes::ElementType() const {
  switch (kind) {
  case EKind::kScalar:
    return type;
  case EKind::kArray:
    return type.GetArrayType();
  case EKind::kReference:
    break;
  }
  return TCIMType(kCIMTypeReference);
}

TCIMValue TPropertyAttributes::EmptyValue(ICIMNamespace &ns) const {
  TCIMValue empty(ElementType(), kind == EKind::kArray ? arraySize : 0);
  if (kind == EKind::kReference)
    AttachReferencedClass(ns, referenceClass, empty);
  return empty;
}

void AttachReferencedClass(ICIMNamespace &ns, const std::string &className, TCIMValue &value) {
  try {
    value.SetReferencedClass(ns.GetClass(className));
  } catch (TORVException &error) {
    // A class defined later, or in another document, is not an error here.
    if (error.GetStatusCode() != kORVStatusSchemaLookup)
      throw;
  }
}

// Declaration variants.

boost::shared_ptr<ICIMQualifiedObject> TCIMXMLParser::TStatePropertyDecl::InheritedObject() const {
  if (inheritedFound)
    return inherited;
  inheritedFound = true;
  boost::shared_ptr<ICIMClass> superClass = cls ? cls->GetSuperClass() : nullptr;
  if (superClass && superClass->HasProperty(property.name))
    inherited = superClass->GetProperty(property.name);
  return inherited;
}

void TCIMXMLParser::TStatePropertyDecl::ElementStart(TCIMXMLParser &parser,
                                                     const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    property.Read(parser, attribute);
  // The type reaches the declaration with its default value at the end.
  declaration = Require(cls).AddProperty(property.name, TCIMValue());
}

void TCIMXMLParser::TStatePropertyDecl::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     const TAttributeList &attributes) {
  // The full grammar takes qualifiers, then one value at most.
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateQualifier, TStatePropertyDecl>("qualifier"),
      ClassicChild<TStateValue, TStatePropertyDecl>("value"),
      FullChild<TStateQualifier, TStatePropertyDecl>("qualifier", kAnyOrder, kAnyOrder, kKeepPhase),
      FullChild<TStateValue, TStatePropertyDecl>("value", kAnyOrder, kAnyOrder, kFullValueDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullValueDone);
}

void TCIMXMLParser::TStatePropertyDecl::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (!valueSeen)
    value = property.EmptyValue(*Namespace(parser));
  // The full grammar also finds a class read earlier only to be returned.
  if (!valueSeen && IsFull(parser) && property.kind == TPropertyAttributes::EKind::kReference &&
      !value.GetReferencedClass())
    value.SetReferencedClass(FindClass(parser, property.referenceClass));
  if (valueSeen && IsFull(parser) &&
      (!property.embeddedObject.empty() || DeclaresEmbedded(Require(declaration))))
    ReadEmbedded(parser, value, "Property " + property.name);
  // A default with elements cannot carry a fixed size: it goes beside.
  TCIMOptions sized;
  if (IsFull(parser) && property.arraySize != 0 && !value.IsNull())
    sized.emplace("ARRAYSIZE", TCIMValue::MakeUnsigned(kCIMTypeUint32, property.arraySize));
  Require(declaration).SetValue(value, sized);
  // A class named but not loaded, or defined further on, keeps its name.
  if (IsFull(parser) && property.kind == TPropertyAttributes::EKind::kReference &&
      declaration->GetReferenceClassName().empty())
    declaration->SetReferenceClassName(property.referenceClass);
  declaration->Commit();
  if (IsFull(parser) && property.propagated && TakesPropagated(parser, *cls))
    TakePropagated(parser, *cls, false, property.name, property.classOrigin);
  Pop(parser);
}

void TCIMXMLParser::TStatePropertyArrayDecl::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          const TAttributeList &attributes) {
  // The full grammar takes qualifiers, then one value at most.
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateQualifier, TStatePropertyArrayDecl>("qualifier"),
      ClassicChild<TStateValueArray, TStatePropertyArrayDecl>("value.array"),
      FullChild<TStateQualifier, TStatePropertyArrayDecl>("qualifier", kAnyOrder, kAnyOrder,
                                                          kKeepPhase),
      FullChild<TStateValueArray, TStatePropertyArrayDecl>("value.array", kAnyOrder, kAnyOrder,
                                                           kFullValueDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullValueDone);
}

void TCIMXMLParser::TStatePropertyReferenceDecl::ChildElement(TCIMXMLParser &parser,
                                                              const std::string &name,
                                                              const TAttributeList &attributes) {
  // The full grammar takes qualifiers, then one value at most.
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateQualifier, TStatePropertyReferenceDecl>("qualifier"),
      // A reference given in the document is taken as it is: no class is
      // looked up.
      ClassicChild<TStateValueReference, TStatePropertyReferenceDecl>("value.reference"),
      FullChild<TStateQualifier, TStatePropertyReferenceDecl>("qualifier", kAnyOrder, kAnyOrder,
                                                              kKeepPhase),
      FullChild<TStateValueReference, TStatePropertyReferenceDecl>("value.reference", kAnyOrder,
                                                                   kAnyOrder, kFullValueDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullValueDone);
}

// Value variants.

void TCIMXMLParser::TStateProperty::ElementStart(TCIMXMLParser &parser,
                                                 const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    property.Read(parser, attribute);
  // A standalone instance declares what its document says.
  if (IsFull(parser) && !Require(instance).GetClass()) {
    declaredType = property.ElementType();
    declaredTypeKnown = true;
  }
  if (!QN402Mode(parser) && DeclaredType(parser) != property.ElementType())
    parser.FatalError("Property type != property declaration type");
}

void TCIMXMLParser::TStateProperty::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                 const TAttributeList &attributes) {
  // Qualifiers of instances and of their properties are not attached: no
  // state is made, and the qualifier's attributes go to the start handler of
  // the state on top, which reads them as its own.
  static constexpr TChildRow kRows[] = {
      ClassicIgnored("qualifier", kAnyOrder, kAnyOrder, kKeepPhase),
      ClassicChild<TStateValue, TStateProperty>("value"),
      FullChild<TStateInstanceQualifier, TStateProperty>("qualifier", kAnyOrder, kAnyOrder,
                                                         kKeepPhase),
      FullChild<TStateValue, TStateProperty>("value", kAnyOrder, kAnyOrder, kFullValueDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullValueDone);
}

void TCIMXMLParser::TStateProperty::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (!valueSeen)
    value = property.kind == TPropertyAttributes::EKind::kScalar
                ? TCIMValue(DeclaredType(), 0)
                : property.EmptyValue(*Namespace(parser));
  if (IsFull(parser) && valueSeen && (!property.embeddedObject.empty() || DeclaredEmbedded(parser)))
    ReadEmbedded(parser, value, "Property " + property.name);
  if (!QN402Mode(parser) || DeclaredType() == value.GetType())
    Require(instance).SetPropertyValue(property.name, value);
  Pop(parser);
}

bool TCIMXMLParser::TStateProperty::DeclaredEmbedded(TCIMXMLParser &parser) const {
  boost::shared_ptr<ICIMClass> cls = Require(instance).GetClass();
  if (!cls)
    return false;
  auto found = parser.embeddedProperties.find(cls.get());
  if (found == parser.embeddedProperties.end()) {
    std::vector<std::string> names;
    for (const auto &declaration : cls->GetProperties())
      if (DeclaresEmbedded(*declaration))
        names.push_back(declaration->GetName());
    found =
        parser.embeddedProperties.emplace(cls.get(), std::make_pair(cls, std::move(names))).first;
  }
  for (const std::string &name : found->second.second)
    if (EqualsAsciiNoCase(name, property.name))
      return true;
  return false;
}

TCIMType TCIMXMLParser::TStateProperty::DeclaredType() const {
  // A failed look-up is not kept: it throws again where it is asked again.
  if (!declaredTypeKnown) {
    // The class's declaration is the instance's; asking the instance would
    // make a property object for every value read.
    ICIMInstance &read = Require(instance);
    if (boost::shared_ptr<ICIMClass> cls = read.GetClass())
      declaredType = Require(cls->GetProperty(property.name)).GetType();
    else
      declaredType = Require(read.GetPropertyDecl(property.name)).GetDeclaredType();
    declaredTypeKnown = true;
  }
  return declaredType;
}

TCIMType TCIMXMLParser::TStateProperty::DeclaredType(TCIMXMLParser &parser) const {
  if (!declaredTypeKnown) {
    boost::shared_ptr<ICIMClass> cls = Require(instance).GetClass();
    if (!cls)
      return DeclaredType();
    declaredType = parser.DeclaredPropertyType(cls, property.name);
    declaredTypeKnown = true;
  }
  return declaredType;
}

void TCIMXMLParser::TStateProperty::UnexpectedChild(TCIMXMLParser &parser, const std::string &name,
                                                    const TAttributeList &attributes) {
  if (IsFull(parser))
    parser.FatalError(("Unexpected element " + name).c_str());
  // ElementEnd pops this state, which may destroy it: from here on only
  // the arguments are used.
  ElementEnd(parser, name);
  if (!parser.stateStack.empty() && parser.stateStack.back())
    parser.stateStack.back()->ChildElement(parser, name, attributes);
  throw TORVException(kORVStatusInvalidFormat);
}

void TCIMXMLParser::TStatePropertyArray::ChildElement(TCIMXMLParser &parser,
                                                      const std::string &name,
                                                      const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      ClassicIgnored("qualifier", kAnyOrder, kAnyOrder, kKeepPhase),
      ClassicChild<TStateValueArray, TStatePropertyArray>("value.array"),
      FullChild<TStateInstanceQualifier, TStatePropertyArray>("qualifier", kAnyOrder, kAnyOrder,
                                                              kKeepPhase),
      FullChild<TStateValueArray, TStatePropertyArray>("value.array", kAnyOrder, kAnyOrder,
                                                       kFullValueDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullValueDone);
}

void TCIMXMLParser::TStatePropertyReference::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      ClassicIgnored("qualifier", kAnyOrder, kAnyOrder, kKeepPhase),
      ClassicChild<TStateValueReference, TStatePropertyReference>("value.reference"),
      FullChild<TStateInstanceQualifier, TStatePropertyReference>("qualifier", kAnyOrder, kAnyOrder,
                                                                  kKeepPhase),
      FullChild<TStateValueReference, TStatePropertyReference>("value.reference", kAnyOrder,
                                                               kAnyOrder, kFullValueDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullValueDone);
}

} // namespace NVRNORV20
