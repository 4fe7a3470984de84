// A parent state for tests of path, reference and message states: pushed
// onto a real parser in place of the document's usual ancestors, it accepts
// any of those elements as the document's root and binds them to fields of
// its own, which a test reads after the parse. The states under test, the
// tokenizer and the frame are the real ones.
#ifndef ORV_TESTS_CIMXML_PROBESTATE_H
#define ORV_TESTS_CIMXML_PROBESTATE_H

#include "cimxml/CIMXMLParser.h"
#include "cimxml/states/MessageStates.h"
#include "cimxml/states/PathStates.h"
#include "cimxml/states/ReferenceStates.h"
#include "core_api/ORVStatusCode.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace orvtest {

class TProbeState : public NVRNORV20::TCIMXMLParser::TParseState {
  using TParser = NVRNORV20::TCIMXMLParser;

public:
  void ChildElement(TParser &parser, const std::string &name,
                    const TAttributeList &attributes) override {
    static constexpr TChildRow kRows[] = {
        Child<TParser::TStateNamespacePath, TProbeState>("namespacepath"),
        Child<TParser::TStateLocalNamespacePath, TProbeState>("localnamespacepath"),
        Child<TParser::TStateClassPath, TProbeState>("classpath"),
        Child<TParser::TStateLocalClassPath, TProbeState>("localclasspath"),
        Child<TParser::TStateClassName, TProbeState>("classname"),
        Child<TParser::TStateInstancePath, TProbeState>("instancepath"),
        Child<TParser::TStateLocalInstancePath, TProbeState>("localinstancepath"),
        Child<TParser::TStateInstanceName, TProbeState>("instancename"),
        Child<TParser::TStateKeyBinding, TProbeState>("keybinding"),
        Child<TParser::TStateValueReference, TProbeState>("value.reference"),
        Child<TParser::TStateMessage, TProbeState>("message"),
    };
    AcceptChild(parser, name, attributes, kRows, kAnyOrder);
  }
  /// The probe stays to the end: end tags that reach it (those of refused
  /// elements, and of elements whose state was ended early) are absorbed,
  /// so that a cascade never unwinds the stack below it.
  void ElementEnd(TParser &, const std::string &) override {}

  /// Runs a whole document under a new probe on a parser of ns; the probe
  /// stays behind for the test to read.
  static boost::shared_ptr<TProbeState> Run(const boost::shared_ptr<NVRNORV20::ICIMNamespace> &ns,
                                            const std::string &xml) {
    auto probe = boost::make_shared<TProbeState>();
    TParser parser(ns);
    const TAttributeList none;
    Push(parser, probe, none);
    std::vector<char> buffer(xml.begin(), xml.end());
    buffer.push_back('\0');
    try {
      parser.Parse(buffer.data());
    } catch (const NVRNORV20::TORVException &) {
      probe->aborted = true;
    }
    probe->classes = parser.GetClassesCollected();
    probe->instances = parser.GetInstancesCollected();
    return probe;
  }

  std::string host;
  std::string namespacePath;
  std::string className;
  NVRNORV20::TCIMReference reference;
  /// The name under which the states bind the reference.
  NVRNORV20::TCIMReference &instanceName = reference;
  NVRNORV20::TCIMValue value;
  bool valueSeen = false;
  /// The class a key binding looks its key up in.
  boost::shared_ptr<NVRNORV20::ICIMClass> keyClass;
  bool aborted = false;
  std::vector<boost::shared_ptr<NVRNORV20::ICIMClass>> classes;
  std::vector<boost::shared_ptr<NVRNORV20::ICIMInstance>> instances;
};

} // namespace orvtest

#endif
