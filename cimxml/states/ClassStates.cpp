#include "cimxml/states/ClassStates.h"

#include "cimxml/states/MethodStates.h"
#include "cimxml/states/PropertyStates.h"
#include "cimxml/states/QualifierStates.h"
#include "xml/XmlBytes.h"

namespace NVRNORV20 {

void TCIMXMLParser::TStateClass::ElementStart(TCIMXMLParser &parser,
                                              const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &className) ||
        parser.HandleSuperClass(attribute, &superClassName);
  if (IsFull(parser)) {
    CreateFull(parser);
    return;
  }
  // The look-up runs for every class: the object model answers the empty
  // name of a root class with an empty pointer.
  boost::shared_ptr<ICIMClass> superClass = Namespace(parser)->GetClass(superClassName);
  cls = Namespace(parser)->CreateClass(className, superClass);
  result = cls;
}

void TCIMXMLParser::TStateClass::CreateFull(TCIMXMLParser &parser) {
  boost::shared_ptr<ICIMClass> superClass = FindClass(parser, superClassName);
  const bool known =
      superClassName.empty() || (superClass && superClass->GetNamespace() == Namespace(parser));
  const bool standIn = !superClass && !superClassName.empty();
  if (standIn) {
    // A response carries classes without the ones they derive from; the
    // stand-in keeps the superclass's name and nothing else.
    Report(parser, "Superclass " + superClassName + " of class " + className +
                       " is not loaded: an empty class stands in for it");
    superClass = Scratch(parser)->CreateClass(superClassName, boost::shared_ptr<ICIMClass>());
    superClass->Commit();
  }
  boost::shared_ptr<ICIMNamespace> target =
      known && Registers(parser) ? Namespace(parser) : Scratch(parser);
  if (target->HasClass(className)) {
    if (target == Namespace(parser))
      parser.FatalError(("Class " + className + " is already defined").c_str());
    // Read only to be returned: a class met again in the same parse starts
    // a new scratch namespace rather than replacing what was handed over.
    target = RenewScratch(parser);
  }
  cls = target->CreateClass(className, superClass);
  result = cls;
  KeepPropagated(parser) = standIn || superClassName.empty();
}

void TCIMXMLParser::TStateClass::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  KeepPropagated(parser) = false;
  if (standalone)
    DeliverClass(parser, cls, nullptr, line);
  Pop(parser);
}

void TCIMXMLParser::TStateClass::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                              const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateQualifier, TStateClass>("qualifier", kQualifiers, kQualifiers, kKeepPhase),
      Child<TStatePropertyDecl, TStateClass>("property", kQualifiers, kProperties, kProperties),
      Child<TStatePropertyArrayDecl, TStateClass>("property.array", kQualifiers, kProperties,
                                                  kProperties),
      Child<TStatePropertyReferenceDecl, TStateClass>("property.reference", kQualifiers,
                                                      kProperties, kProperties),
      Child<TStateMethod, TStateClass>("method", kQualifiers, kMethods, kMethods),
  };
  AcceptChild(parser, name, attributes, kRows, kMethods, EMiss::kFallThrough);
}

void TCIMXMLParser::TParseState::TakePropagated(TCIMXMLParser &parser, ICIMClass &cls,
                                                bool isMethod, const std::string &name,
                                                const std::string &classOrigin) {
  // Most propagated members agree with what they copy: the member's words
  // are put together only for a line.
  const auto report = [&](const std::string &what) {
    Report(parser, (isMethod ? "Propagated method " : "Propagated property ") + name +
                       " of class " + cls.GetName() + what);
  };
  boost::shared_ptr<ICIMClass> superClass = cls.GetSuperClass();
  if (!superClass || !(isMethod ? superClass->HasMethod(name) : superClass->HasProperty(name))) {
    report(" is not in the superclass: it is read as the class's own");
    return;
  }
  boost::shared_ptr<ICIMQualifiedObject> copy;
  boost::shared_ptr<ICIMQualifiedObject> inherited;
  std::string origin;
  if (isMethod) {
    boost::shared_ptr<ICIMMethod> method = superClass->GetMethod(name);
    origin = method->GetClassOrigin();
    copy = cls.GetMethod(name);
    inherited = method;
  } else {
    boost::shared_ptr<ICIMPropertyDecl> property = superClass->GetProperty(name);
    boost::shared_ptr<ICIMPropertyDecl> own = cls.GetProperty(name);
    origin = property->GetClassOrigin();
    if (!(own->GetValue() == property->GetValue()))
      report(" has another default than the inherited one, which is kept");
    copy = own;
    inherited = property;
  }
  if (!classOrigin.empty() && !EqualsAsciiNoCase(classOrigin, origin))
    report(" names class origin " + classOrigin + ", but it comes from " + origin);
  for (const boost::shared_ptr<ICIMQualifier> &qualifier : copy->GetQualifiers())
    if (!(qualifier->GetValue() == inherited->GetQualifier(qualifier->GetName())->GetValue()))
      report(": qualifier " + qualifier->GetName() +
             " differs from the inherited one, which is kept");
  if (isMethod)
    cls.RemoveMethod(name);
  else
    cls.RemoveProperty(name);
}

} // namespace NVRNORV20
