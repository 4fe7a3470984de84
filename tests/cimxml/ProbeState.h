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

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace orvtest {

/// The line that the frame logs when an end handler throws.
inline std::string EndElementError(unsigned line, NVRNORV20::EORVStatusCode code) {
  NVRNORV20::TORVException exception{NVRNORV20::TORVStatusCode(code)};
  return "TCIMXMLParser: EndElement: Threw exception " + std::string(exception.what()) +
         " on line " + std::to_string(line);
}

class TProbeState : public NVRNORV20::TCIMXMLParser::TParseState {
  using TParser = NVRNORV20::TCIMXMLParser;
  using TParseStatePtr = TParser::TParseStatePtr;

public:
  TProbeState()
      : reference(boost::shared_ptr<NVRNORV20::ICIMNamespace>(),
                  std::map<std::string, NVRNORV20::TCIMValue>()) {}

  void ChildElement(TParser &parser, const std::string &name, TAttributes &attributes) override {
    static constexpr TChildRow kRows[] = {
        {"namespacepath", 0, 0, kKeepPhase, &Make<TParser::TStateNamespacePath>},
        {"localnamespacepath", 0, 0, kKeepPhase, &Make<TParser::TStateLocalNamespacePath>},
        {"classpath", 0, 0, kKeepPhase, &Make<TParser::TStateClassPath>},
        {"localclasspath", 0, 0, kKeepPhase, &Make<TParser::TStateLocalClassPath>},
        {"classname", 0, 0, kKeepPhase, &Make<TParser::TStateClassName>},
        {"instancepath", 0, 0, kKeepPhase, &Make<TParser::TStateInstancePath>},
        {"localinstancepath", 0, 0, kKeepPhase, &Make<TParser::TStateLocalInstancePath>},
        {"instancename", 0, 0, kKeepPhase, &Make<TParser::TStateInstanceName>},
        {"keybinding", 0, 0, kKeepPhase, &Make<TParser::TStateKeyBinding>},
        {"value.reference", 0, 0, kKeepPhase, &Make<TParser::TStateValueReference>},
        {"message", 0, 0, kKeepPhase, &Make<TParser::TStateMessage>},
    };
    AcceptChild(parser, name, attributes, kRows, 0);
  }
  /// The probe stays to the end: end tags that reach it (those of refused
  /// elements, and of elements whose state was ended early) are absorbed,
  /// so that a cascade never unwinds the stack below it.
  void ElementEnd(TParser &, const std::string &) override {}

  /// Runs a whole document under a new probe on a parser of ns; the probe
  /// stays behind for the test to read.
  static boost::shared_ptr<TProbeState> Run(const boost::shared_ptr<NVRNORV20::ICIMNamespace> &ns,
                                            const std::string &xml,
                                            boost::shared_ptr<NVRNORV20::ICIMClass> keyClass = {}) {
    auto probe = boost::make_shared<TProbeState>();
    probe->keyClass = std::move(keyClass);
    TParser parser(ns);
    TAttributes none;
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
  NVRNORV20::TCIMValue value;
  /// The class a key binding looks its key up in.
  boost::shared_ptr<NVRNORV20::ICIMClass> keyClass;
  bool aborted = false;
  std::vector<boost::shared_ptr<NVRNORV20::ICIMClass>> classes;
  std::vector<boost::shared_ptr<NVRNORV20::ICIMInstance>> instances;

private:
  // One maker per state, binding the fields that its constructor takes.
  template <class TState> static TParseStatePtr Make(TParser &parser, TParseState &parent) {
    auto &self = static_cast<TProbeState &>(parent);
    return self.MakeState(parser, static_cast<TState *>(nullptr));
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateNamespacePath *) {
    return boost::make_shared<TParser::TStateNamespacePath>(host, namespacePath);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateLocalNamespacePath *) {
    return boost::make_shared<TParser::TStateLocalNamespacePath>(namespacePath);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateClassPath *) {
    return boost::make_shared<TParser::TStateClassPath>(host, namespacePath, className);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateLocalClassPath *) {
    return boost::make_shared<TParser::TStateLocalClassPath>(namespacePath, className);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateClassName *) {
    return boost::make_shared<TParser::TStateClassName>(className);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateInstancePath *) {
    return boost::make_shared<TParser::TStateInstancePath>(host, namespacePath, reference);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateLocalInstancePath *) {
    return boost::make_shared<TParser::TStateLocalInstancePath>(namespacePath, reference);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateInstanceName *) {
    return boost::make_shared<TParser::TStateInstanceName>(reference);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateKeyBinding *) {
    return boost::make_shared<TParser::TStateKeyBinding>(keyClass, reference);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateValueReference *) {
    return boost::make_shared<TParser::TStateValueReference>(value);
  }
  TParseStatePtr MakeState(TParser &, TParser::TStateMessage *) {
    return boost::make_shared<TParser::TStateMessage>();
  }
};

} // namespace orvtest

#endif
