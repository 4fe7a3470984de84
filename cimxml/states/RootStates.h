// Parse states from the document's start down to where declarations begin:
// the state before the root element, the root element "cim", "declaration"
// and the three declaration groups.
#ifndef ORV_CIMXML_STATES_ROOTSTATES_H
#define ORV_CIMXML_STATES_ROOTSTATES_H

#include "cimxml/CIMXMLParser.h"
#include "cimxml/states/StandaloneSink.h"

#include <cstdint>
#include <string>

namespace NVRNORV20 {

/// The state that a new parser starts in. Its only child is the root element
/// "cim"; any other root is "Unexpected element " + name. The full grammar
/// also reads a document whose root is an object, a value object or a path,
/// as that object.
class TCIMXMLParser::TStateStart : public TCIMXMLParser::TParseState, public TStandaloneSink {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// The root element. Its attributes (the versions) are not read; its
/// children come in any number and order, or in the full grammar exactly
/// one.
class TCIMXMLParser::TStateCIM : public TCIMXMLParser::TParseState {
public:
  /// The full grammar's phase once the one child has come.
  static constexpr std::int32_t kFullDone = 1;

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "declaration": any number of declaration groups of the three kinds, in
/// any order.
class TCIMXMLParser::TStateDeclaration : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "declgroup": an optional namespace path, then qualifier declarations,
/// then value objects. A child of an earlier kind after one of a later kind
/// is "Unexpected element " + name.
class TCIMXMLParser::TStateDeclGroup : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kNamespacePath, kQualifierDeclarations, kValueObjects };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;

  /// Filled by the namespace-path children; not read afterwards.
  std::string host;
  std::string namespacePath;
};

/// "declgroup.withname": the content model of "declgroup" with
/// "value.namedobject" in place of "value.object".
class TCIMXMLParser::TStateDeclGroupWithName : public TCIMXMLParser::TStateDeclGroup {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "declgroup.withpath": only the two value objects that carry a path, in
/// any number and order.
class TCIMXMLParser::TStateDeclGroupWithPath : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

} // namespace NVRNORV20

#endif
