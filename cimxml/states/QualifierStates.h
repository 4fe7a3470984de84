// Parse states of qualifiers and of the value elements that carry the
// values of qualifiers, properties and parameters.
#ifndef ORV_CIMXML_STATES_QUALIFIERSTATES_H
#define ORV_CIMXML_STATES_QUALIFIERSTATES_H

#include "cimxml/CIMXMLParser.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <utility>
#include <vector>

namespace NVRNORV20 {

/// "qualifier": attaches one qualifier, typed by its declaration in the
/// namespace, to the object that contains it. Children: "value" and
/// "value.array", in any order and number (the last one wins).
class TCIMXMLParser::TStateQualifier : public TCIMXMLParser::TParseState {
public:
  explicit TStateQualifier(boost::shared_ptr<ICIMQualifiedObject> qualified)
      : target(std::move(qualified)) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  /// An undeclared qualifier is logged as "TCIMXMLParser: Couldn't find
  /// qualifier " + name and its exception passed on, so it is dropped. A
  /// propagated qualifier is read but never attached. Without a value child
  /// the value is an empty one of the declared type (not of the TYPE
  /// attribute, which only types the value child).
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  /// An unknown TYPE throws from the object model; the qualifier then
  /// parses its value child untyped.
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

private:
  static TParseStatePtr MakeValue(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeValueArray(TCIMXMLParser &parser, TParseState &parent);

  boost::shared_ptr<ICIMQualifiedObject> target;
  std::string qualifierName;
  TCIMType type;
  bool propagated = false;
  ICIMQualifierDecl::EFlavor flavor = ICIMQualifierDecl::kFlavorDefault;
  TCIMValue value;
  bool valueSeen = false;
};

/// "value": the element's text as a value of the creator's type, written
/// into the creator's slot at the end tag. Text that the type cannot read
/// gives a null value. It enters no child.
class TCIMXMLParser::TStateValue : public TCIMXMLParser::TParseState {
public:
  /// Empties the parser's text buffer, so that at the end it holds this
  /// element's text only.
  TStateValue(TCIMXMLParser &parser, TCIMValue &slot, TCIMType valueType);

  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

private:
  TCIMValue &target;
  TCIMType type;
};

/// "value.array": one element per "value" child, read as the element type,
/// written into the creator's slot as one array value at the end tag.
class TCIMXMLParser::TStateValueArray : public TCIMXMLParser::TParseState {
public:
  TStateValueArray(TCIMValue &slot, TCIMType valueType, unsigned arraySize)
      : target(slot), elementType(valueType), count(arraySize) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

private:
  static TParseStatePtr MakeElement(TCIMXMLParser &parser, TParseState &parent);

  TCIMValue &target;
  TCIMType elementType;
  unsigned count;
  /// A value state writes into the last element; the next element is added
  /// only when that state has been popped, so the reference stays valid.
  std::vector<TCIMValue> elements;
};

} // namespace NVRNORV20

#endif
