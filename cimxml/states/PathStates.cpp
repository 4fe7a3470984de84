#include "cimxml/states/PathStates.h"

#include "cimxml/states/ReferenceStates.h"
#include "xml/XmlBytes.h"

namespace NVRNORV20 {

// namespacepath ------------------------------------------------------------

void TCIMXMLParser::TStateNamespacePath::ChildElement(TCIMXMLParser &parser,
                                                      const std::string &name,
                                                      TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateHost, TStateNamespacePath>("host", kHost, kHost, kLocalPath),
      Child<TStateLocalNamespacePath, TStateNamespacePath>("localnamespacepath", kLocalPath,
                                                           kLocalPath, kDone),
  };
  // A child after the local namespace path is taken as a corrupt state
  // rather than an unexpected element.
  AcceptChild(parser, name, attributes, kRows, kLocalPath);
}

// localnamespacepath -------------------------------------------------------

void TCIMXMLParser::TStateLocalNamespacePath::ChildElement(TCIMXMLParser &parser,
                                                           const std::string &name,
                                                           TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateNamespace, TStateLocalNamespacePath>("namespace", kNoNamespace, kNamespaces,
                                                       kNamespaces),
  };
  AcceptChild(parser, name, attributes, kRows, kNamespaces);
}

void TCIMXMLParser::TStateLocalNamespacePath::ElementEnd(TCIMXMLParser &parser,
                                                         const std::string &) {
  if (phase == kNoNamespace)
    parser.FatalError("Unexpected at least 1 NAMESPACE element");
  // Components are joined without a separator ("root", "cimv2" make
  // "rootcimv2"): the path is only kept, never used to find a namespace.
  namespacePath += component;
  Pop(parser);
}

// host ---------------------------------------------------------------------

void TCIMXMLParser::TStateHost::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  std::string &text = CharacterData(parser);
  // Trailing whitespace goes, walking back no further than the second
  // character: a host of one blank stays a blank. The buffer itself is
  // trimmed, as nothing else reads it before the next clearing.
  std::size_t length = text.size();
  while (length > 1 && IsXmlSpace(text[length - 1]))
    --length;
  text.resize(length);
  host = text;
  Pop(parser);
}

// namespace, classname -----------------------------------------------------

void TCIMXMLParser::TStateNamespace::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &target);
}

TCIMXMLParser::TStateClassName::TStateClassName(TCIMXMLParser &parser, TStateValueReference &parent)
    : TStateNamespace(parent.className) {
  parent.instanceName.SetNamespace(Namespace(parser));
}

void TCIMXMLParser::TStateClassName::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
  AcceptChild(parser, name, attributes, nullptr, 0, kAnyOrder);
}

// classpath, localclasspath ------------------------------------------------

void TCIMXMLParser::TStateClassPath::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateNamespacePath, TStateClassPath>("namespacepath", kNamespacePath, kNamespacePath,
                                                  kClassName),
      Child<TStateClassName, TStateClassPath>("classname", kClassName, kClassName, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateLocalClassPath::ChildElement(TCIMXMLParser &parser,
                                                       const std::string &name,
                                                       TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateLocalNamespacePath, TStateLocalClassPath>("localnamespacepath", kLocalPath,
                                                            kLocalPath, kClassName),
      Child<TStateClassName, TStateLocalClassPath>("classname", kClassName, kClassName, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

// instancepath, localinstancepath ------------------------------------------

void TCIMXMLParser::TStateInstancePath::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateNamespacePath, TStateInstancePath>("namespacepath", kNamespacePath,
                                                     kNamespacePath, kInstanceName),
      Child<TStateInstanceName, TStateInstancePath>("instancename", kInstanceName, kInstanceName,
                                                    kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateLocalInstancePath::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateLocalNamespacePath, TStateLocalInstancePath>("localnamespacepath", kLocalPath,
                                                               kLocalPath, kInstanceName),
      Child<TStateInstanceName, TStateLocalInstancePath>("instancename", kInstanceName,
                                                         kInstanceName, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

} // namespace NVRNORV20
