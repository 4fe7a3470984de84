#include "cimxml/states/RootStates.h"

#include <boost/make_shared.hpp>

namespace NVRNORV20 {

void TCIMXMLParser::TStateStart::ChildElement(TCIMXMLParser &parser,
                                              const std::string &name,
                                              TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"cim", 0, 0, kKeepPhase, &MakeCIM},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateStart::MakeCIM(TCIMXMLParser &, TParseState &) {
  return boost::make_shared<TStateCIM>();
}

void TCIMXMLParser::TStateCIM::ChildElement(TCIMXMLParser &parser,
                                            const std::string &name,
                                            TAttributes &attributes) {
  // No child is accepted yet: every element inside the root is reported.
  AcceptChild(parser, name, attributes, nullptr, 0, 0);
}

} // namespace NVRNORV20
