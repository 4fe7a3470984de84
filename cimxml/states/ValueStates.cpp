#include "cimxml/states/ValueStates.h"

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
                                                   TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateValue, TStateValueArray>("value"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateValueArray::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  target.Set(elementType, count, elements);
  Pop(parser);
}

} // namespace NVRNORV20
