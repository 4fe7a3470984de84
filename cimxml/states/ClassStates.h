// The parse state of a class definition.
#ifndef ORV_CIMXML_STATES_CLASSSTATES_H
#define ORV_CIMXML_STATES_CLASSSTATES_H

#include "cimxml/CIMXMLParser.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace NVRNORV20 {

/// "class": creates the class at its start tag, so that its children add to
/// a live class, and hands it to the creator's slot. Children: qualifiers,
/// then properties of the three kinds in any mix, then methods; a child of
/// an earlier kind after a later one is "Unexpected element " + name. The
/// class is committed and collected by the creator, not here.
class TCIMXMLParser::TStateClass : public TCIMXMLParser::TParseState {
public:
  explicit TStateClass(boost::shared_ptr<ICIMClass> &resultSlot) : result(resultSlot) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  /// Looks the superclass up (also an empty name) and creates the class.
  /// An unknown superclass or a class that cannot be created throws from
  /// the object model; the state then stays without a class, and each of
  /// its children fails when it would add to it.
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

private:
  static TParseStatePtr MakeQualifier(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeProperty(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakePropertyArray(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakePropertyReference(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeMethod(TCIMXMLParser &parser, TParseState &parent);

  std::string className;
  std::string superClassName;
  boost::shared_ptr<ICIMClass> &result;
  boost::shared_ptr<ICIMClass> cls;
};

} // namespace NVRNORV20

#endif
