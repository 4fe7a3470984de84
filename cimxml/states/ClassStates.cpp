#include "cimxml/states/ClassStates.h"

#include "cimxml/states/MethodStates.h"
#include "cimxml/states/PropertyStates.h"
#include "cimxml/states/QualifierStates.h"

#include <boost/make_shared.hpp>

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

// Phases: 0 qualifiers, 1 properties, 2 methods.
void TCIMXMLParser::TStateClass::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                              TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"qualifier", 0, 0, kKeepPhase, &MakeQualifier},
      {"property", 0, 1, 1, &MakeProperty},
      {"property.array", 0, 1, 1, &MakePropertyArray},
      {"property.reference", 0, 1, 1, &MakePropertyReference},
      {"method", 0, 2, 2, &MakeMethod},
  };
  AcceptChild(parser, name, attributes, kRows, 2, EMiss::kFallThrough);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateClass::MakeQualifier(TCIMXMLParser &,
                                                                        TParseState &parent) {
  return boost::make_shared<TStateQualifier>(static_cast<TStateClass &>(parent).cls);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateClass::MakeProperty(TCIMXMLParser &,
                                                                       TParseState &parent) {
  return boost::make_shared<TStatePropertyDecl>(static_cast<TStateClass &>(parent).cls);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateClass::MakePropertyArray(TCIMXMLParser &,
                                                                            TParseState &parent) {
  return boost::make_shared<TStatePropertyArrayDecl>(static_cast<TStateClass &>(parent).cls);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateClass::MakePropertyReference(TCIMXMLParser &, TParseState &parent) {
  return boost::make_shared<TStatePropertyReferenceDecl>(static_cast<TStateClass &>(parent).cls);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateClass::MakeMethod(TCIMXMLParser &,
                                                                     TParseState &parent) {
  return boost::make_shared<TStateMethod>(static_cast<TStateClass &>(parent).cls);
}

} // namespace NVRNORV20
