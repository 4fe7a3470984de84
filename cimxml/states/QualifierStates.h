// The parse state of a qualifier.
#ifndef ORV_CIMXML_STATES_QUALIFIERSTATES_H
#define ORV_CIMXML_STATES_QUALIFIERSTATES_H

#include "cimxml/CIMXMLParser.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace NVRNORV20 {

/// "qualifier": attaches one qualifier, typed by its declaration in the
/// namespace, to the object that contains it. Children: "value" and
/// "value.array", in any order and number (the last one wins).
class TCIMXMLParser::TStateQualifier : public TCIMXMLParser::TParseState {
public:
  /// Qualifies the parent's QualifiedObject(). The full grammar also keeps
  /// what the parent inherits from, whose qualifiers may refuse an override.
  template <class TParent>
  TStateQualifier(TCIMXMLParser &parser, TParent &parent)
      : target(parent.QualifiedObject()),
        inherited(IsFull(parser) ? parent.InheritedObject() : nullptr) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// An undeclared qualifier is logged as "TCIMXMLParser: Couldn't find
  /// qualifier " + name and its exception passed on, so it is dropped. A
  /// propagated qualifier is read but never attached. Without a value child
  /// the value is an empty one of the declared type (not of the TYPE
  /// attribute, which only types the value child). In the full grammar, a
  /// qualifier that an inherited, not overridable one forbids to change is
  /// a line and not attached: the inherited one stands.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  /// An unknown TYPE throws from the object model; the qualifier then
  /// parses its value child untyped.
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  // What the value children write into.
  TCIMType ValueType() const { return type; }
  TCIMType ElementType() const { return type; }
  /// A qualifier's array has no declared size.
  static unsigned ArraySize() { return 0; }
  TCIMValue value;
  bool valueSeen = false;

private:
  /// The declaration in the namespace, else in the scratch namespace, else
  /// a new one there of the qualifier's own type.
  boost::shared_ptr<ICIMQualifierDecl> FullDeclaration(TCIMXMLParser &parser) const;

  /// Whether an inherited qualifier of the name is not overridable and has
  /// another value.
  bool OverridesFixed() const;

  boost::shared_ptr<ICIMQualifiedObject> target;
  boost::shared_ptr<ICIMQualifiedObject> inherited;
  std::string qualifierName;
  TCIMType type;
  bool propagated = false;
  ICIMQualifierDecl::EFlavor flavor = ICIMQualifierDecl::kFlavorDefault;
  /// The flavor bits that the element's attributes state.
  std::uint32_t flavorGiven = 0;
};

} // namespace NVRNORV20

#endif
