#include "cimxml/states/PathStates.h"

#include "cimxml/states/ReferenceStates.h"

#include <boost/make_shared.hpp>

namespace NVRNORV20 {

namespace {

bool IsTrailingSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

// namespacepath ------------------------------------------------------------

void TCIMXMLParser::TStateNamespacePath::ChildElement(TCIMXMLParser &parser,
                                                      const std::string &name,
                                                      TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"host", 0, 0, 1, &MakeHost},
      {"localnamespacepath", 1, 1, 2, &MakeLocalNamespacePath},
  };
  // The last phase is 1, not 2: a child after the local namespace path is
  // taken as a corrupt state rather than an unexpected element.
  AcceptChild(parser, name, attributes, kRows, 1);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateNamespacePath::MakeHost(TCIMXMLParser &parser,
                                                                           TParseState &parent) {
  auto &self = static_cast<TStateNamespacePath &>(parent);
  return boost::make_shared<TStateHost>(parser, self.host);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateNamespacePath::MakeLocalNamespacePath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateNamespacePath &>(parent);
  return boost::make_shared<TStateLocalNamespacePath>(self.namespacePath);
}

// localnamespacepath -------------------------------------------------------

void TCIMXMLParser::TStateLocalNamespacePath::ChildElement(TCIMXMLParser &parser,
                                                           const std::string &name,
                                                           TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"namespace", 0, 0, kKeepPhase, &MakeNamespace},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateLocalNamespacePath::MakeNamespace(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateLocalNamespacePath &>(parent);
  self.namespaceSeen = true;
  // The previous component is final once the next one starts; the new one
  // begins as a copy of it, so a namespace without a name repeats it.
  self.namespacePath += self.component;
  return boost::make_shared<TStateNamespace>(self.component);
}

void TCIMXMLParser::TStateLocalNamespacePath::ElementEnd(TCIMXMLParser &parser,
                                                         const std::string &) {
  if (!namespaceSeen)
    parser.FatalError("Unexpected at least 1 NAMESPACE element");
  // Components are joined without a separator ("root", "cimv2" make
  // "rootcimv2"): the path is only kept, never used to find a namespace.
  namespacePath += component;
  Pop(parser);
}

// host ---------------------------------------------------------------------

TCIMXMLParser::TStateHost::TStateHost(TCIMXMLParser &parser, std::string &hostTarget)
    : host(hostTarget) {
  CharacterData(parser).clear();
}

void TCIMXMLParser::TStateHost::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  std::string &text = CharacterData(parser);
  // Trailing whitespace goes, walking back no further than the second
  // character: a host of one blank stays a blank. The buffer itself is
  // trimmed, as nothing else reads it before the next clearing.
  std::size_t length = text.size();
  while (length > 1 && IsTrailingSpace(text[length - 1]))
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

void TCIMXMLParser::TStateClassName::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
  AcceptChild(parser, name, attributes, nullptr, 0, 0);
}

// classpath, localclasspath ------------------------------------------------

void TCIMXMLParser::TStateClassPath::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"namespacepath", 0, 0, 1, &MakeNamespacePath},
      {"classname", 1, 1, 2, &MakeClassName},
  };
  AcceptChild(parser, name, attributes, kRows, 2);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateClassPath::MakeNamespacePath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateClassPath &>(parent);
  return boost::make_shared<TStateNamespacePath>(self.host, self.namespacePath);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateClassPath::MakeClassName(TCIMXMLParser &,
                                                                            TParseState &parent) {
  auto &self = static_cast<TStateClassPath &>(parent);
  return boost::make_shared<TStateClassName>(self.className);
}

void TCIMXMLParser::TStateLocalClassPath::ChildElement(TCIMXMLParser &parser,
                                                       const std::string &name,
                                                       TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"localnamespacepath", 0, 0, 1, &MakeLocalNamespacePath},
      {"classname", 1, 1, 2, &MakeClassName},
  };
  AcceptChild(parser, name, attributes, kRows, 2);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateLocalClassPath::MakeLocalNamespacePath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateLocalClassPath &>(parent);
  return boost::make_shared<TStateLocalNamespacePath>(self.namespacePath);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateLocalClassPath::MakeClassName(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateLocalClassPath &>(parent);
  return boost::make_shared<TStateClassName>(self.className);
}

// instancepath, localinstancepath ------------------------------------------

void TCIMXMLParser::TStateInstancePath::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"namespacepath", 0, 0, 1, &MakeNamespacePath},
      {"instancename", 1, 1, 2, &MakeInstanceName},
  };
  AcceptChild(parser, name, attributes, kRows, 2);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateInstancePath::MakeNamespacePath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateInstancePath &>(parent);
  return boost::make_shared<TStateNamespacePath>(self.host, self.namespacePath);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateInstancePath::MakeInstanceName(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateInstancePath &>(parent);
  return boost::make_shared<TStateInstanceName>(self.instanceName);
}

void TCIMXMLParser::TStateLocalInstancePath::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"localnamespacepath", 0, 0, 1, &MakeLocalNamespacePath},
      {"instancename", 1, 1, 2, &MakeInstanceName},
  };
  AcceptChild(parser, name, attributes, kRows, 2);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateLocalInstancePath::MakeLocalNamespacePath(TCIMXMLParser &,
                                                               TParseState &parent) {
  auto &self = static_cast<TStateLocalInstancePath &>(parent);
  return boost::make_shared<TStateLocalNamespacePath>(self.namespacePath);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateLocalInstancePath::MakeInstanceName(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateLocalInstancePath &>(parent);
  return boost::make_shared<TStateInstanceName>(self.instanceName);
}

} // namespace NVRNORV20
