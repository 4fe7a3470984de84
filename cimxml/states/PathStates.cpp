#include "cimxml/states/PathStates.h"

#include "cimxml/states/ReferenceStates.h"
#include "xml/XmlBytes.h"

namespace NVRNORV20 {

// namespacepath ------------------------------------------------------------

void TCIMXMLParser::TStateNamespacePath::ChildElement(TCIMXMLParser &parser,
                                                      const std::string &name,
                                                      const TAttributeList &attributes) {
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
                                                           const TAttributeList &attributes) {
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
  AppendComponent(parser);
  Pop(parser);
}

void TCIMXMLParser::TStateLocalNamespacePath::AppendComponent(const TCIMXMLParser &parser) {
  if (!IsFull(parser)) {
    // Components are joined without a separator ("root", "cimv2" make
    // "rootcimv2"): the path is only kept, never used to find a namespace.
    namespacePath += component;
    return;
  }
  if (component.empty())
    return;
  if (!namespacePath.empty())
    namespacePath += '/';
  namespacePath += component;
  component.clear();
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

void TCIMXMLParser::TStateNamespace::ElementStart(TCIMXMLParser &parser,
                                                  const TAttributeList &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &target);
}

TCIMXMLParser::TStateClassName::TStateClassName(TCIMXMLParser &parser, TStateValueReference &parent)
    : TStateNamespace(parent.className), className(parent.className), standalone(false) {
  parent.instanceName.SetNamespace(Namespace(parser));
}

void TCIMXMLParser::TStateClassName::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  const TAttributeList &attributes) {
  AcceptChild(parser, name, attributes, nullptr, 0, kAnyOrder);
}

void TCIMXMLParser::TStateClassName::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (standalone) {
    DeliverPath(parser,
                MakePath(TCIMXMLPath::EKind::kClass, std::string(), std::string(), className,
                         TCIMReference()),
                line);
    className.clear();
  }
  Pop(parser);
}

// classpath, localclasspath ------------------------------------------------

void TCIMXMLParser::TStateClassPath::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateNamespacePath, TStateClassPath>("namespacepath", kNamespacePath, kNamespacePath,
                                                  kClassName),
      Child<TStateClassName, TStateClassPath>("classname", kClassName, kClassName, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateLocalClassPath::ChildElement(TCIMXMLParser &parser,
                                                       const std::string &name,
                                                       const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateLocalNamespacePath, TStateLocalClassPath>("localnamespacepath", kLocalPath,
                                                            kLocalPath, kClassName),
      Child<TStateClassName, TStateLocalClassPath>("classname", kClassName, kClassName, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

// instancepath, localinstancepath ------------------------------------------

void TCIMXMLParser::TStateInstancePath::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     const TAttributeList &attributes) {
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
                                                          const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateLocalNamespacePath, TStateLocalInstancePath>("localnamespacepath", kLocalPath,
                                                               kLocalPath, kInstanceName),
      Child<TStateInstanceName, TStateLocalInstancePath>("instancename", kInstanceName,
                                                         kInstanceName, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateClassPath::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (standalone) {
    DeliverPath(
        parser,
        MakePath(TCIMXMLPath::EKind::kClass, host, namespacePath, className, TCIMReference()),
        line);
    host.clear();
    namespacePath.clear();
    className.clear();
  }
  Pop(parser);
}

void TCIMXMLParser::TStateLocalClassPath::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (standalone) {
    DeliverPath(parser,
                MakePath(TCIMXMLPath::EKind::kClass, std::string(), namespacePath, className,
                         TCIMReference()),
                line);
    namespacePath.clear();
    className.clear();
  }
  Pop(parser);
}

void TCIMXMLParser::TStateInstancePath::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (standalone) {
    DeliverPath(
        parser,
        MakePath(TCIMXMLPath::EKind::kInstance, host, namespacePath, std::string(), instanceName),
        line);
    host.clear();
    namespacePath.clear();
    instanceName = TCIMReference();
  }
  Pop(parser);
}

void TCIMXMLParser::TStateLocalInstancePath::ElementEnd(TCIMXMLParser &parser,
                                                        const std::string &) {
  if (standalone) {
    DeliverPath(parser,
                MakePath(TCIMXMLPath::EKind::kInstance, std::string(), namespacePath, std::string(),
                         instanceName),
                line);
    namespacePath.clear();
    instanceName = TCIMReference();
  }
  Pop(parser);
}

// objectpath ---------------------------------------------------------------

void TCIMXMLParser::TStateObjectPath::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                   const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateInstancePath, TStateObjectPath>("instancepath", kPath, kPath, kDone),
      Child<TStateClassPath, TStateObjectPath>("classpath", kPath, kPath, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateObjectPath::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  RequireComplete(parser, kDone);
  DeliverPath(parser, Path(), line);
  Pop(parser);
}

// Paths handed over -----------------------------------------------------------

TCIMXMLPath MakePath(TCIMXMLPath::EKind kind, const std::string &host,
                     const std::string &namespacePath, const std::string &className,
                     const TCIMReference &instanceName) {
  TCIMXMLPath path;
  path.kind = kind;

  if (kind == TCIMXMLPath::EKind::kInstance)
    path.reference = instanceName;
  else
    path.reference.SetClassName(className);
  if (!namespacePath.empty())
    path.reference.SetNamespaceName(namespacePath);
  path.reference.SetHost(host);
  return path;
}

} // namespace NVRNORV20
