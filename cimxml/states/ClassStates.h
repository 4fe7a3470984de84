// The parse state of a class definition.
#ifndef ORV_CIMXML_STATES_CLASSSTATES_H
#define ORV_CIMXML_STATES_CLASSSTATES_H

#include "cimxml/CIMXMLParser.h"
#include "cimxml/states/StandaloneSink.h"

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
  template <class TParent>
  TStateClass(TCIMXMLParser &parser, TParent &parent)
      : result(parent.cls), standalone(kStandsAlone<TParent> && IsFull(parser)) {
    parent.isClass = true;
  }

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// Looks the superclass up (also an empty name) and creates the class.
  /// An unknown superclass or a class that cannot be created throws from
  /// the object model; the state then stays without a class, and each of
  /// its children fails when it would add to it.
  /// In the full grammar, the class goes into the namespace only when the
  /// parse registers and its superclass is the namespace's; otherwise it
  /// is made in the parser's scratch namespace, where an empty class of the
  /// superclass's name stands in for one that no namespace holds.
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
  /// A class standing alone is committed and handed over here.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  // What the children write into, and what the class inherits from.
  boost::shared_ptr<ICIMQualifiedObject> QualifiedObject() const { return cls; }
  boost::shared_ptr<ICIMQualifiedObject> InheritedObject() const {
    return cls ? cls->GetSuperClass() : nullptr;
  }
  boost::shared_ptr<ICIMClass> cls;

private:
  /// The full grammar's choice of namespace and superclass.
  void CreateFull(TCIMXMLParser &parser);

  std::string className;
  std::string superClassName;
  boost::shared_ptr<ICIMClass> &result;
  const bool standalone;
};

} // namespace NVRNORV20

#endif
