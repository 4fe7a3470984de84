// Parse states of the value elements that carry the values of qualifiers,
// qualifier declarations, properties and parameters.
//
// A value state is built from its parent and writes into the parent's
// "value", which then counts as seen ("valueSeen"); the parent says as what
// type the text is read: ValueType() for "value", ElementType() and
// ArraySize() for the elements and count of "value.array".
#ifndef ORV_CIMXML_STATES_VALUESTATES_H
#define ORV_CIMXML_STATES_VALUESTATES_H

#include "cimxml/CIMXMLParser.h"

#include <vector>

namespace NVRNORV20 {

/// "value": the element's text as a value of the parent's type, written into
/// the parent's value at the end tag. Text that the type cannot read gives a
/// null value. It enters no child.
class TCIMXMLParser::TStateValue : public TCIMXMLParser::TParseState {
public:
  /// The type is asked for before the value counts as seen: a type that
  /// cannot be had leaves the parent's value unseen.
  template <class TParent>
  TStateValue(TCIMXMLParser &parser, TParent &parent)
      : TStateValue(parser, parent.value, parent.ValueType()) {
    parent.valueSeen = true;
  }
  /// One element of an array, appended to the array's elements.
  TStateValue(TCIMXMLParser &parser, TStateValueArray &parent);

  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

private:
  /// Empties the parser's text buffer, so that at the end it holds this
  /// element's text only.
  TStateValue(TCIMXMLParser &parser, TCIMValue &slot, TCIMType valueType);

  TCIMValue &target;
  TCIMType type;
};

/// "value.array": one element per "value" child, read as the parent's
/// element type, written into the parent's value as one array value at the
/// end tag.
class TCIMXMLParser::TStateValueArray : public TCIMXMLParser::TParseState {
public:
  template <class TParent>
  TStateValueArray(TCIMXMLParser &, TParent &parent)
      : elementType(parent.ElementType()), target(parent.value), count(parent.ArraySize()) {
    parent.valueSeen = true;
  }

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  TCIMType elementType;
  /// A value state writes into the last element; the next element is added
  /// only when that state has been popped, so the reference stays valid.
  std::vector<TCIMValue> elements;

private:
  TCIMValue &target;
  unsigned count;
};

/// "value.null", full grammar only: a null element of the array that holds
/// it.
class TCIMXMLParser::TStateValueNull : public TCIMXMLParser::TParseState {
public:
  TStateValueNull(TCIMXMLParser &parser, TStateValueArray &parent);
  TStateValueNull(TCIMXMLParser &parser, TStateValueRefArray &parent);
};

/// "value.refarray", full grammar only: references and null elements, in
/// order, written into the parent's value as one array of references.
class TCIMXMLParser::TStateValueRefArray : public TCIMXMLParser::TParseState {
public:
  template <class TParent>
  TStateValueRefArray(TCIMXMLParser &, TParent &parent) : target(parent.value) {
    parent.valueSeen = true;
  }

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  std::vector<TCIMValue> elements;
  /// What the reference child writes into before it is appended.
  TCIMValue value;
  bool valueSeen = false;

private:
  TCIMValue &target;
};

} // namespace NVRNORV20

#endif
