// The parser frame: the guards of the start handler, the markers, character
// data, and copies. Probe states, defined here, stand in for the element
// states so that the frame is tested by itself.
#include "cimxml/CIMXMLParser.h"

#include "support/Fixtures.h"

#include <boost/make_shared.hpp>

#include <algorithm>

using namespace NVRNORV20;

namespace {

using orvtest::Err;

/// What the probes saw, in order: "child NAME@PHASE", "start LABEL",
/// "end NAME", "text [TEXT]".
std::vector<std::string> gEvents;

/// A state for tests. Every probe accepts the same children; the child's name
/// says how its state behaves:
///   obj  phases 0..2, then 2     root any phase, phase kept
///   text a state holding text: the buffer is emptied at its push
///   failstart, format, badvalue: ElementStart throws 9, 36, 8
class TProbe : public TCIMXMLParser::TParseState {
public:
  using TParseStatePtr = TCIMXMLParser::TParseStatePtr;

  explicit TProbe(std::string name) : label(std::move(name)) {}
  /// The label is the element name, which the state does not see: the
  /// parent's last event names it.
  TProbe(TCIMXMLParser &, TProbe &)
      : label(gEvents.back().substr(6, gEvents.back().find('@') - 6)) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override {
    gEvents.push_back("child " + name + "@" + std::to_string(phase));
    static constexpr TChildRow kRows[] = {
        Child<TProbe, TProbe>("obj", 0, 2, 2),
        Child<TProbe, TProbe>("root", 0, 2, kKeepPhase),
        Child<TTextProbe, TProbe>("text", 0, 2, kKeepPhase),
        Child<TProbe, TProbe>("failstart", 0, 2, 1),
        Child<TProbe, TProbe>("format", 0, 2, kKeepPhase),
        Child<TProbe, TProbe>("badvalue", 0, 2, kKeepPhase),
    };
    AcceptChild(parser, name, attributes, kRows, 2);
  }

  void ElementStart(TCIMXMLParser &parser, TAttributes &) override {
    gEvents.push_back("start " + label);
    if (label == "failstart")
      parser.FatalError("start failed");
    if (label == "format")
      throw TORVException(TORVStatusCode(kORVStatusInvalidFormat));
    if (label == "badvalue")
      throw TORVException(TORVStatusCode(kORVStatusInvalidProperty));
  }

  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override {
    gEvents.push_back("end " + name);
    if (label == "text")
      gEvents.push_back("text [" + CharacterData(parser) + "]");
    Pop(parser);
  }

  /// Puts a probe on the parser's stack, as a parent state would.
  static TProbe &Install(TCIMXMLParser &parser) {
    auto probe = boost::make_shared<TProbe>("installed");
    TAttributes none;
    Push(parser, probe, none);
    return *probe;
  }
  static std::string &Text(TCIMXMLParser &parser) { return CharacterData(parser); }
  static void Keep(TCIMXMLParser &parser, const boost::shared_ptr<ICIMClass> &cls) {
    Collect(parser, cls);
  }

private:
  /// A probe that holds text, as the value states do.
  class TTextProbe;

  std::string label;
};

class TProbe::TTextProbe : public TProbe {
public:
  TTextProbe(TCIMXMLParser &parser, TProbe &) : TProbe("text") { Text(parser).clear(); }
};

class TCIMXMLParserTest : public ::testing::Test {
protected:
  TCIMXMLParserTest() : ns(CreateCIMNamespace("root/test")), parser(ns) { gEvents.clear(); }

  /// Parses a document whose root goes to whatever state is on top. The
  /// buffer lives as long as the test, so that GetCurLine stays valid for
  /// direct handler calls afterwards.
  void Parse(const std::string &xml) {
    buffer.assign(xml.begin(), xml.end());
    buffer.push_back('\0');
    parser.Parse(buffer.data());
  }

  orvtest::TCapturingLogger logger;
  boost::shared_ptr<ICIMNamespace> ns;
  TCIMXMLParser parser;
  std::vector<char> buffer;
};

TEST_F(TCIMXMLParserTest, StartFailuresBecomeMarkers) {
  const struct {
    const char *child;
    TXmlParser::TAttributes before;
    TXmlParser::TAttributes after;
  } cases[] = {
      {"format",
       {{"name", "x"}},
       {{"name", "x"}, {"throwExInvalidFormat", "kORVStatusInvalidFormat"}}},
      {"badvalue", {}, {{"throwExInvalidValue", "kORVStatusInvalidProperty"}}},
      // Other statuses leave no trace for the tokenizer.
      {"failstart", {{"a", "1"}}, {{"a", "1"}}},
      {"zzz", {}, {}},
      // An entry the element already had is not replaced.
      {"format", {{"throwExInvalidFormat", "mine"}}, {{"throwExInvalidFormat", "mine"}}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.child);
    TCIMXMLParser fresh(ns);
    char document[] = "<cim/>";
    fresh.Parse(document);
    TProbe::Install(fresh);
    TXmlParser::TAttributes attributes = c.before;
    EXPECT_NO_THROW(fresh.StartElement(c.child, attributes));
    EXPECT_EQ(c.after, attributes);
  }
}

// Text arrives in pieces (runs and references) and is joined; the frame never
// empties the buffer, only a state holding text does when it is pushed.
TEST_F(TCIMXMLParserTest, CharacterDataIsJoinedAndKept) {
  TProbe::Install(parser);
  Parse("<root>a<text>x&lt;y&#65;&#0;z</text>\n b</root>");
  const std::string inText("x<yA\0z", 6);
  EXPECT_NE(gEvents.end(), std::find(gEvents.begin(), gEvents.end(), "text [" + inText + "]"));
  EXPECT_EQ(inText + "\n b", TProbe::Text(parser));
  parser.characters("", 0);
  parser.characters(nullptr, 0);
  parser.characters("c\0d", 3);
  EXPECT_EQ(inText + "\n b" + std::string("c\0d", 3), TProbe::Text(parser));
  EXPECT_TRUE(logger.entries.empty());
}

TEST_F(TCIMXMLParserTest, CopiesShareStatesAndResults) {
  TProbe &probe = TProbe::Install(parser);
  const auto cls = ns->CreateClass("CIM_Copied", boost::shared_ptr<ICIMClass>());
  TProbe::Keep(parser, cls);
  TProbe::Text(parser) = "text";

  TCIMXMLParser copy(parser);
  TXmlParser::TAttributes attributes;
  copy.StartElement("obj", attributes);
  copy.EndElement("obj");
  EXPECT_EQ(2, probe.phase); // the copy drove the same state object
  EXPECT_EQ(1U, copy.GetClassesCollected().size());
  EXPECT_EQ("text", TProbe::Text(copy));

  TCIMXMLParser assigned(ns);
  assigned = copy;
  EXPECT_EQ(cls, assigned.GetClassesCollected().at(0));
  EXPECT_TRUE(assigned.GetInstancesCollected().empty());
  EXPECT_TRUE(parser.GetInstancesCollected().empty());
}

} // namespace
