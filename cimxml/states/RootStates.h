// Parse states from the document's start down to where declarations begin:
// the state before the root element and the root element "cim".
#ifndef ORV_CIMXML_STATES_ROOTSTATES_H
#define ORV_CIMXML_STATES_ROOTSTATES_H

#include "cimxml/CIMXMLParser.h"

#include <string>

namespace NVRNORV20 {

/// The state that a new parser starts in. Its only child is the root element
/// "cim"; any other root is "Unexpected element " + name.
class TCIMXMLParser::TStateStart : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeCIM(TCIMXMLParser &parser, TParseState &parent);
};

/// The root element. Its attributes (the versions) are not read.
class TCIMXMLParser::TStateCIM : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
};

} // namespace NVRNORV20

#endif
