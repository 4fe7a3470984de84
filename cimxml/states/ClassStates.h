// The parse state of a class definition.
#ifndef ORV_CIMXML_STATES_CLASSSTATES_H
#define ORV_CIMXML_STATES_CLASSSTATES_H

#include "cimxml/CIMXMLParser.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace NVRNORV20 {

/// "class": creates the class at its start tag, so that its children add to
/// a live class, and hands it to the creator's slot. Children: qualifiers,
/// then properties of the three kinds in any mix, then methods; a child of
/// an earlier kind after a later one is "Unexpected element " + name. The
/// class is committed and collected by the creator, not here.
class TCIMXMLParser::TStateClass : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kQualifiers, kProperties, kMethods };

  /// Hands the class to the parent's cls, which now holds a class.
  template <class TParent> TStateClass(TCIMXMLParser &, TParent &parent) : result(parent.cls) {
    parent.isClass = true;
  }

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  /// Looks the superclass up (also an empty name) and creates the class.
  /// An unknown superclass or a class that cannot be created throws from
  /// the object model; the state then stays without a class, and each of
  /// its children fails when it would add to it.
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

  // What the children write into.
  boost::shared_ptr<ICIMQualifiedObject> QualifiedObject() const { return cls; }
  boost::shared_ptr<ICIMClass> cls;

private:
  std::string className;
  std::string superClassName;
  boost::shared_ptr<ICIMClass> &result;
};

} // namespace NVRNORV20

#endif
