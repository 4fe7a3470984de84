#include "cimxml/states/ValueStates.h"

#include "cimxml/states/ReferenceStates.h"

#include <utility>

namespace NVRNORV20 {

namespace {

TCIMValue &AppendElement(std::vector<TCIMValue> &elements) {
  elements.emplace_back();
  return elements.back();
}

} // namespace

TCIMXMLParser::TStateValue::TStateValue(TCIMXMLParser &parser, TCIMValue &slot, TCIMType valueType)
    : target(slot), type(valueType) {
  CharacterData(parser).clear();
}

TCIMXMLParser::TStateValue::TStateValue(TCIMXMLParser &parser, TStateValueArray &parent)
    : TStateValue(parser, AppendElement(parent.elements), parent.elementType) {}

void TCIMXMLParser::TStateValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  target = parser.ParseValue(type, CharacterData(parser));
  Pop(parser);
}

void TCIMXMLParser::TStateValueArray::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                   const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateValue, TStateValueArray>("value"),
      FullChild<TStateValueNull, TStateValueArray>("value.null"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateValueArray::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  target.Set(elementType, count, std::move(elements));
  Pop(parser);
}

TCIMXMLParser::TStateValueNull::TStateValueNull(TCIMXMLParser &, TStateValueArray &parent) {
  parent.elements.emplace_back(parent.elementType, 0);
}

TCIMXMLParser::TStateValueNull::TStateValueNull(TCIMXMLParser &, TStateValueRefArray &parent) {
  parent.elements.emplace_back(TCIMType(kCIMTypeReference), 0);
}

void TCIMXMLParser::TStateValueRefArray::ChildElement(TCIMXMLParser &parser,
                                                      const std::string &name,
                                                      const TAttributeList &attributes) {
  // A reference is appended when the next child starts or the array ends,
  // once its own state has written it.
  if (valueSeen) {
    elements.push_back(value);
    value = TCIMValue();
    valueSeen = false;
  }
  static constexpr TChildRow kRows[] = {
      Child<TStateValueReference, TStateValueRefArray>("value.reference"),
      Child<TStateValueNull, TStateValueRefArray>("value.null"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateValueRefArray::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (valueSeen)
    elements.push_back(value);
  target.Set(TCIMType(kCIMTypeReference), 0, std::move(elements));
  Pop(parser);
}

} // namespace NVRNORV20
