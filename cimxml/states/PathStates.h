// Parse states for object paths: namespace paths, hosts, class paths and
// instance paths, local and remote. They build no object of the object
// model; each writes strings (host, namespace path, class name) or, through
// an instance name, a reference into fields of the state that pushed it,
// which lies below it on the stack and so outlives it.
#ifndef ORV_CIMXML_STATES_PATHSTATES_H
#define ORV_CIMXML_STATES_PATHSTATES_H

#include "cimxml/CIMXMLParser.h"

#include <string>

namespace NVRNORV20 {

/// "namespacepath": a host, then a local namespace path. A child out of that
/// order is "Unexpected element " + name; any child after both is "Parser
/// state corrupt" (unlike the class and instance paths, which report it as
/// unexpected).
class TCIMXMLParser::TStateNamespacePath : public TCIMXMLParser::TParseState {
public:
  TStateNamespacePath(std::string &hostTarget, std::string &pathTarget)
      : host(hostTarget), namespacePath(pathTarget) {}
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeHost(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeLocalNamespacePath(TCIMXMLParser &parser, TParseState &parent);

  std::string &host;
  std::string &namespacePath;
};

/// "localnamespacepath": the "name" attributes of its "namespace" children
/// appended to the target in document order with no separator (root, cimv2
/// gives rootcimv2). A namespace without a name repeats the component before
/// it. No namespace child at all is "Unexpected at least 1 NAMESPACE
/// element" at the end; any other child is "Unexpected element " + name.
class TCIMXMLParser::TStateLocalNamespacePath : public TCIMXMLParser::TParseState {
public:
  explicit TStateLocalNamespacePath(std::string &pathTarget)
      : namespacePath(pathTarget), namespaceSeen(false) {}
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

private:
  static TParseStatePtr MakeNamespace(TCIMXMLParser &parser, TParseState &parent);

  std::string &namespacePath;
  /// The latest component, appended when the next one starts or the path
  /// ends.
  std::string component;
  bool namespaceSeen;
};

/// "host": its text, with trailing blanks, tabs and line breaks removed from
/// the parser's own buffer (the first character always stays), becomes the
/// host. Child elements are neither entered nor reported.
class TCIMXMLParser::TStateHost : public TCIMXMLParser::TParseState {
public:
  /// Empties the parser's character buffer, so that the end sees this
  /// element's text only.
  TStateHost(TCIMXMLParser &parser, std::string &hostTarget);
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

private:
  std::string &host;
};

/// "namespace": its "name" attribute overwrites the target; without one the
/// target keeps its value. Child elements are neither entered nor reported.
class TCIMXMLParser::TStateNamespace : public TCIMXMLParser::TParseState {
public:
  explicit TStateNamespace(std::string &nameTarget) : target(nameTarget) {}
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

private:
  std::string &target;
};

/// "classname": read like a namespace component, from its "name" attribute
/// into the target; every child element is "Unexpected element " + name.
class TCIMXMLParser::TStateClassName : public TCIMXMLParser::TStateNamespace {
public:
  explicit TStateClassName(std::string &classNameTarget) : TStateNamespace(classNameTarget) {}
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
};

/// "classpath": a namespace path, then a class name; anything else, or a
/// third child, is "Unexpected element " + name.
class TCIMXMLParser::TStateClassPath : public TCIMXMLParser::TParseState {
public:
  TStateClassPath(std::string &hostTarget, std::string &pathTarget, std::string &classNameTarget)
      : host(hostTarget), namespacePath(pathTarget), className(classNameTarget) {}
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeNamespacePath(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeClassName(TCIMXMLParser &parser, TParseState &parent);

  std::string &host;
  std::string &namespacePath;
  std::string &className;
};

/// "localclasspath": a local namespace path, then a class name; anything
/// else, or a third child, is "Unexpected element " + name.
class TCIMXMLParser::TStateLocalClassPath : public TCIMXMLParser::TParseState {
public:
  TStateLocalClassPath(std::string &pathTarget, std::string &classNameTarget)
      : namespacePath(pathTarget), className(classNameTarget) {}
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeLocalNamespacePath(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeClassName(TCIMXMLParser &parser, TParseState &parent);

  std::string &namespacePath;
  std::string &className;
};

/// "instancepath": a namespace path, then an instance name that fills the
/// target reference; anything else, or a third child, is "Unexpected
/// element " + name.
class TCIMXMLParser::TStateInstancePath : public TCIMXMLParser::TParseState {
public:
  TStateInstancePath(std::string &hostTarget, std::string &pathTarget,
                     TCIMReference &instanceNameTarget)
      : host(hostTarget), namespacePath(pathTarget), instanceName(instanceNameTarget) {}
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeNamespacePath(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeInstanceName(TCIMXMLParser &parser, TParseState &parent);

  std::string &host;
  std::string &namespacePath;
  TCIMReference &instanceName;
};

/// "localinstancepath": a local namespace path, then an instance name that
/// fills the target reference; anything else, or a third child, is
/// "Unexpected element " + name.
class TCIMXMLParser::TStateLocalInstancePath : public TCIMXMLParser::TParseState {
public:
  TStateLocalInstancePath(std::string &pathTarget, TCIMReference &instanceNameTarget)
      : namespacePath(pathTarget), instanceName(instanceNameTarget) {}
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeLocalNamespacePath(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeInstanceName(TCIMXMLParser &parser, TParseState &parent);

  std::string &namespacePath;
  TCIMReference &instanceName;
};

} // namespace NVRNORV20

#endif
