#include "cimxml/states/ClassStates.h"

#include "cimxml/states/MethodStates.h"
#include "cimxml/states/PropertyStates.h"
#include "cimxml/states/QualifierStates.h"

namespace NVRNORV20 {

void TCIMXMLParser::TStateClass::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &className) ||
        parser.HandleSuperClass(attribute, &superClassName);
  // The look-up runs for every class: the object model answers the empty
  // name of a root class with an empty pointer.
  boost::shared_ptr<ICIMClass> superClass = Namespace(parser)->GetClass(superClassName);
  cls = Namespace(parser)->CreateClass(className, superClass);
  result = cls;
}

void TCIMXMLParser::TStateClass::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                              TAttributes &attributes) {
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

} // namespace NVRNORV20
