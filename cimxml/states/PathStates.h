// Parse states for object paths: namespace paths, hosts, class paths and
// instance paths, local and remote. They build no object of the object
// model; each writes strings (host, namespace path, class name) or, through
// an instance name, a reference into fields of the state that pushed it,
// which lies below it on the stack and so outlives it.
//
// Each state is built from its parent and binds the parent's fields of the
// same names: host, namespacePath, className, instanceName. A parent that
// holds a path child offers those of them that the child writes.
#ifndef ORV_CIMXML_STATES_PATHSTATES_H
#define ORV_CIMXML_STATES_PATHSTATES_H

#include "cimxml/CIMXMLParser.h"
#include "cimxml/states/StandaloneSink.h"

#include <cstdint>
#include <string>

namespace NVRNORV20 {

/// "namespacepath": a host, then a local namespace path. A child out of that
/// order is "Unexpected element " + name; any child after both is "Parser
/// state corrupt" (unlike the class and instance paths, which report it as
/// unexpected).
class TCIMXMLParser::TStateNamespacePath : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kHost, kLocalPath, kDone };

  template <class TParent>
  TStateNamespacePath(TCIMXMLParser &, TParent &parent)
      : host(parent.host), namespacePath(parent.namespacePath) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;

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
  enum EPhase : std::int32_t { kNoNamespace, kNamespaces };

  template <class TParent>
  TStateLocalNamespacePath(TCIMXMLParser &, TParent &parent)
      : namespacePath(parent.namespacePath) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  std::string &namespacePath;
  /// The latest component, appended when the next one starts or the path
  /// ends.
  std::string component;

  /// Appends the latest component: as it is in the classic grammar, after a
  /// "/" in the full grammar, which joins the components as DSP0201 does.
  void AppendComponent(const TCIMXMLParser &parser);
};

/// "host": its text, with trailing blanks, tabs and line breaks removed from
/// the parser's own buffer (the first character always stays), becomes the
/// host. Child elements are neither entered nor reported.
class TCIMXMLParser::TStateHost : public TCIMXMLParser::TParseState {
public:
  /// Empties the parser's character buffer, so that the end sees this
  /// element's text only.
  template <class TParent> TStateHost(TCIMXMLParser &parser, TParent &parent) : host(parent.host) {
    CharacterData(parser).clear();
  }

  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

private:
  std::string &host;
};

/// "namespace": its "name" attribute overwrites the target; without one the
/// target keeps its value. Child elements are neither entered nor reported.
class TCIMXMLParser::TStateNamespace : public TCIMXMLParser::TParseState {
public:
  /// The previous component of the path is final once the next one starts;
  /// the new one begins as a copy of it, so a namespace without a name
  /// repeats it.
  TStateNamespace(TCIMXMLParser &parser, TStateLocalNamespacePath &parent)
      : target(parent.component) {
    parent.AppendComponent(parser);
  }

  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

protected:
  explicit TStateNamespace(std::string &nameTarget) : target(nameTarget) {}

private:
  std::string &target;
};

/// "classname": read like a namespace component, from its "name" attribute
/// into the parent's className; every child element is "Unexpected element
/// " + name.
class TCIMXMLParser::TStateClassName : public TCIMXMLParser::TStateNamespace {
public:
  template <class TParent>
  TStateClassName(TCIMXMLParser &parser, TParent &parent)
      : TStateNamespace(parent.className), className(parent.className),
        standalone(kStandsAlone<TParent> && IsFull(parser)) {}
  /// Under a reference value, the class name also puts the reference in the
  /// parser's namespace.
  TStateClassName(TCIMXMLParser &parser, TStateValueReference &parent);

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// A class name standing alone is handed over as a class path.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

private:
  std::string &className;
  const bool standalone;
};

/// "classpath": a namespace path, then a class name; anything else, or a
/// third child, is "Unexpected element " + name.
class TCIMXMLParser::TStateClassPath : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kNamespacePath, kClassName, kDone };

  template <class TParent>
  TStateClassPath(TCIMXMLParser &parser, TParent &parent)
      : host(parent.host), namespacePath(parent.namespacePath), className(parent.className),
        standalone(kStandsAlone<TParent> && IsFull(parser)) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// A path standing alone is handed over here.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  std::string &host;
  std::string &namespacePath;
  std::string &className;

private:
  const bool standalone;
};

/// "localclasspath": a local namespace path, then a class name; anything
/// else, or a third child, is "Unexpected element " + name.
class TCIMXMLParser::TStateLocalClassPath : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kLocalPath, kClassName, kDone };

  template <class TParent>
  TStateLocalClassPath(TCIMXMLParser &parser, TParent &parent)
      : namespacePath(parent.namespacePath), className(parent.className),
        standalone(kStandsAlone<TParent> && IsFull(parser)) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// A path standing alone is handed over here.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  std::string &namespacePath;
  std::string &className;

private:
  const bool standalone;
};

/// "instancepath": a namespace path, then an instance name that fills the
/// parent's instanceName; anything else, or a third child, is "Unexpected
/// element " + name.
class TCIMXMLParser::TStateInstancePath : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kNamespacePath, kInstanceName, kDone };

  template <class TParent>
  TStateInstancePath(TCIMXMLParser &parser, TParent &parent)
      : host(parent.host), namespacePath(parent.namespacePath), instanceName(parent.instanceName),
        standalone(kStandsAlone<TParent> && IsFull(parser)) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// A path standing alone is handed over here.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  std::string &host;
  std::string &namespacePath;
  TCIMReference &instanceName;

private:
  const bool standalone;
};

/// "localinstancepath": a local namespace path, then an instance name that
/// fills the parent's instanceName; anything else, or a third child, is
/// "Unexpected element " + name.
class TCIMXMLParser::TStateLocalInstancePath : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kLocalPath, kInstanceName, kDone };

  template <class TParent>
  TStateLocalInstancePath(TCIMXMLParser &parser, TParent &parent)
      : namespacePath(parent.namespacePath), instanceName(parent.instanceName),
        standalone(kStandsAlone<TParent> && IsFull(parser)) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// A path standing alone is handed over here.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  std::string &namespacePath;
  TCIMReference &instanceName;

private:
  const bool standalone;
};

/// "objectpath", full grammar only: one instance path or class path,
/// handed over as a path standing alone.
class TCIMXMLParser::TStateObjectPath : public TCIMXMLParser::TParseState, public TPathSlots {
public:
  enum EPhase : std::int32_t { kPath, kDone };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
};

} // namespace NVRNORV20

#endif
