// What a parent offers to the objects and paths that stand alone in it: in
// the full grammar, the elements that may hold a class, an instance or a
// path of their own (the document's start, return values, parameters,
// errors) let such a child hand itself over at its own end tag.
#ifndef ORV_CIMXML_STATES_STANDALONESINK_H
#define ORV_CIMXML_STATES_STANDALONESINK_H

#include "cimxml/CIMXMLDocument.h"
#include "core_api/CIMInterfaces.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <type_traits>

namespace NVRNORV20 {

/// The path that a class or instance path element wrote into its slots.
TCIMXMLPath MakePath(TCIMXMLPath::EKind kind, const std::string &host,
                     const std::string &namespacePath, const std::string &className,
                     const TCIMReference &instanceName);

/// The slots that the path children of a state write into: host, namespace
/// path, class name and instance name.
struct TPathSlots {
  std::string host;
  std::string namespacePath;
  std::string className;
  TCIMReference instanceName;

  /// What the slots hold, as a path of the kind.
  TCIMXMLPath Path(TCIMXMLPath::EKind kind) const {
    return MakePath(kind, host, namespacePath, className, instanceName);
  }
  /// An instance path when an instance name was written, else a class
  /// path.
  TCIMXMLPath Path() const {
    return Path(instanceName.GetClassName().empty() ? TCIMXMLPath::EKind::kClass
                                                    : TCIMXMLPath::EKind::kInstance);
  }
};

/// The slots that object, path and value children write into. A child
/// built under a sink delivers what it wrote at its own end and empties the
/// slots, so that every sibling starts from nothing.
class TStandaloneSink : public TPathSlots {
public:
  bool isClass = false;
  boost::shared_ptr<ICIMClass> cls;
  boost::shared_ptr<ICIMInstance> instance;

  /// Value children: read as valueType, which the sink sets from what it
  /// knows of the parameter (a string when nothing is known).
  TCIMValue value;
  bool valueSeen = false;
  TCIMType valueType = TCIMType(kCIMTypeString);
  TCIMType ValueType() const { return valueType; }
  TCIMType ElementType() const { return valueType.GetElementType(); }
  static unsigned ArraySize() { return 0; }
};

/// True when a child built under TParent stands alone there.
template <class TParent> constexpr bool kStandsAlone = std::is_base_of_v<TStandaloneSink, TParent>;

} // namespace NVRNORV20

#endif
