// The parser frame: name folding, the guards of the start and end handlers,
// the markers, character data, and the one content-model helper that every
// state uses. Probe states, defined here, stand in for the element states so
// that the frame is tested by itself.
#include "cimxml/CIMXMLParser.h"

#include "support/Fixtures.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <stdexcept>

using namespace NVRNORV20;

namespace {

using orvtest::Err;

/// What the probes saw, in order: "child NAME@PHASE", "start LABEL",
/// "end NAME", "text [TEXT]".
std::vector<std::string> gEvents;

/// A state for tests. Every probe accepts the same children; the child's name
/// says how its state behaves:
///   seq  phases 0..0, then 1     qual phases 0..1, then 1
///   obj  phases 0..2, then 2     root any phase, phase kept
///   none any phase, no state is made
///   text a state holding text: the buffer is emptied at its push
///   failstart, format, badvalue: ElementStart throws 9, 36, 8
///   failend, fatalend: ElementEnd throws 16, or calls FatalError
///   runtime: ChildElement throws an exception of another type
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
    if (name == "runtime")
      throw std::runtime_error("not a parser error");
    static constexpr TChildRow kRows[] = {
        Child<TProbe, TProbe>("seq", 0, 0, 1),
        Child<TProbe, TProbe>("qual", 0, 1, 1),
        Child<TProbe, TProbe>("obj", 0, 2, 2),
        Child<TProbe, TProbe>("root", 0, 2, kKeepPhase),
        Ignored("none", 0, 2, kKeepPhase),
        Child<TTextProbe, TProbe>("text", 0, 2, kKeepPhase),
        Child<TProbe, TProbe>("failstart", 0, 2, 1),
        Child<TProbe, TProbe>("format", 0, 2, kKeepPhase),
        Child<TProbe, TProbe>("badvalue", 0, 2, kKeepPhase),
        Child<TProbe, TProbe>("failend", 0, 2, kKeepPhase),
        Child<TProbe, TProbe>("fatalend", 0, 2, kKeepPhase),
    };
    AcceptChild(parser, name, attributes, kRows, 2, miss);
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
    if (label == "failend")
      throw TORVException(TORVStatusCode(kORVStatusSchemaLookup));
    if (label == "fatalend")
      parser.FatalError("end failed");
    Pop(parser);
  }

  /// Puts a probe on the parser's stack, as a parent state would.
  static TProbe &Install(TCIMXMLParser &parser, EMiss miss = EMiss::kFallThrough) {
    auto probe = boost::make_shared<TProbe>("installed");
    probe->miss = miss;
    TAttributes none;
    Push(parser, probe, none);
    return *probe;
  }
  static void Remove(TCIMXMLParser &parser) { Pop(parser); }
  static std::string &Text(TCIMXMLParser &parser) { return CharacterData(parser); }
  static bool InQN402Mode(const TCIMXMLParser &parser) { return QN402Mode(parser); }
  static void Keep(TCIMXMLParser &parser, const boost::shared_ptr<ICIMClass> &cls) {
    Collect(parser, cls);
  }

  using TParseState::EMiss;

private:
  /// A probe that holds text, as the value states do.
  class TTextProbe;

  std::string label;
  EMiss miss = EMiss::kFallThrough;
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

  /// A child's start tag, and its end tag when the child was entered (a
  /// rejected child's end tag would pop its parent).
  void Feed(const char *child) {
    TXmlParser::TAttributes attributes;
    parser.StartElement(child, attributes);
    if (gEvents.back() == std::string("start ") + child)
      parser.EndElement(child);
  }

  orvtest::TCapturingLogger logger;
  boost::shared_ptr<ICIMNamespace> ns;
  TCIMXMLParser parser;
  std::vector<char> buffer;
};

// Documents seen by the initial states alone. A rejected element is not
// entered, but its end tag still pops the state on top: a broken document can
// empty the stack, and the next tag then finds no state (status 3).
TEST_F(TCIMXMLParserTest, RootElementsAndEmptiedStack) {
  const struct {
    const char *xml;
    std::vector<std::string> log;
    EORVStatusCode status;
  } cases[] = {
      {"<CIM></CIM>", {}, kORVStatusOK},
      {"<CIMX></CIMX>", {Err("Unexpected element cimx")}, kORVStatusOK},
      {"<CIM>\n<Foo/>\n</CIM>", {Err("Unexpected element foo", 2)}, kORVStatusOK},
      // foo's end pops the root; bar reaches the start state, and its end
      // pops that: the root's end tag then finds an empty stack.
      {"<CIM><foo/><bar/></CIM>",
       {Err("Unexpected element foo"), Err("Unexpected element bar")},
       kORVStatusParserStateMissing},
      // Likewise for a start tag.
      {"<CIM><a/><b/><c/></CIM>",
       {Err("Unexpected element a"), Err("Unexpected element b")},
       kORVStatusParserStateMissing},
      {"<CIM>", {Err("Unexpected character where element expected")}, kORVStatusInvalidDocument},
      {"<CIM>\n\n<1/></CIM>",
       {Err("Invalid element/attribute name", 3)},
       kORVStatusInvalidDocument},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.xml);
    TCIMXMLParser fresh(ns);
    std::string bytes = c.xml;
    EXPECT_EQ(c.status, orvtest::StatusOf([&] { fresh.Parse(&bytes[0]); }));
    EXPECT_EQ(c.log, logger.Texts());
    for (const auto &entry : logger.entries)
      EXPECT_EQ(3, entry.first);
    logger.entries.clear();
  }
}

// The content model helper: rows are matched by exact name within their
// phases; a later kind moves the phase, an earlier kind afterwards is
// unexpected, and with fall-through a miss leaves the phase at its last value.
TEST_F(TCIMXMLParserTest, AcceptChildFollowsThePhases) {
  using EMiss = TProbe::EMiss;
  const struct {
    EMiss miss;
    std::vector<const char *> children;
    int finalPhase;
    std::vector<std::string> log;
  } cases[] = {
      {EMiss::kFallThrough, {"seq", "qual", "qual", "obj", "obj"}, 2, {}},
      {EMiss::kFallThrough, {"qual", "obj"}, 2, {}},
      {EMiss::kFallThrough, {"obj", "qual"}, 2, {Err("Unexpected element qual")}},
      {EMiss::kFallThrough, {"qual", "seq"}, 2, {Err("Unexpected element seq")}},
      {EMiss::kKeepPhase, {"qual", "seq"}, 1, {Err("Unexpected element seq")}},
      {EMiss::kFallThrough, {"seq", "seq"}, 2, {Err("Unexpected element seq")}},
      {EMiss::kFallThrough, {"zzz"}, 2, {Err("Unexpected element zzz")}},
      {EMiss::kKeepPhase, {"zzz"}, 0, {Err("Unexpected element zzz")}},
      // Names match whole: no prefix, no extension.
      {EMiss::kKeepPhase,
       {"se", "seqs", "obj.x"},
       0,
       {Err("Unexpected element se"), Err("Unexpected element seqs"),
        Err("Unexpected element obj.x")}},
      // Rows that keep the phase leave it where it was.
      {EMiss::kFallThrough, {"seq", "root", "none"}, 1, {}},
  };
  for (const auto &c : cases) {
    std::string trace;
    for (const char *child : c.children)
      trace += std::string(child) + " ";
    SCOPED_TRACE(trace);
    Parse("<cim/>"); // a valid line position for the messages
    TProbe &probe = TProbe::Install(parser, c.miss);
    for (const char *child : c.children)
      Feed(child);
    EXPECT_EQ(c.finalPhase, probe.phase);
    EXPECT_EQ(c.log, logger.Texts());
    TProbe::Remove(parser);
    logger.entries.clear();
  }
}

TEST_F(TCIMXMLParserTest, PhaseOutsideTheModelIsCorrupt) {
  Parse("<cim/>");
  for (std::int32_t bad : {-1, 3}) {
    TProbe::Install(parser).phase = bad;
    TXmlParser::TAttributes attributes;
    parser.StartElement("obj", attributes);
    TProbe::Remove(parser);
  }
  EXPECT_EQ(std::vector<std::string>(2, Err("Parser state corrupt")), logger.Texts());
}

// The child is on the stack when it sees its own attributes; a row without
// a state hands them to the parent; a child whose start fails stays
// pushed, its parent's phase moved, and its own end tag pops it.
TEST_F(TCIMXMLParserTest, ChildStartsOnTopOfItsParent) {
  Parse("<cim/>");
  TProbe &probe = TProbe::Install(parser);
  gEvents.clear();
  TXmlParser::TAttributes attributes;
  parser.StartElement("OBJ", attributes);
  parser.StartElement("None", attributes);
  parser.EndElement("Obj");
  parser.StartElement("failstart", attributes);
  EXPECT_EQ(1, probe.phase);
  parser.EndElement("failstart");
  parser.StartElement("qual", attributes);
  const std::vector<std::string> expected = {
      "child obj@0",       "start obj",       "child none@0",  "start obj",    "end obj",
      "child failstart@2", "start failstart", "end failstart", "child qual@1", "start qual"};
  EXPECT_EQ(expected, gEvents);
  EXPECT_EQ(std::vector<std::string>{Err("start failed")}, logger.Texts());
}

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

TEST_F(TCIMXMLParserTest, OtherExceptionsPassOut) {
  TProbe::Install(parser);
  TXmlParser::TAttributes attributes;
  EXPECT_THROW(parser.StartElement("runtime", attributes), std::runtime_error);
}

// An end handler's failure is logged with its line, the failing state is
// popped and the parse goes on in its parent; a FatalError there is logged
// twice.
TEST_F(TCIMXMLParserTest, EndFailuresAreContained) {
  TProbe::Install(parser);
  Parse("<root>\n<failend/>\n<fatalend/>\n<obj/></root>");
  const std::vector<std::string> expected = {orvtest::Ended(kORVStatusSchemaLookup, 2),
                                             Err("end failed", 3),
                                             orvtest::Ended(kORVStatusInvalidDocument, 3)};
  EXPECT_EQ(expected, logger.Texts());
  // obj still reached root, and root's end came last.
  ASSERT_GE(gEvents.size(), 3U);
  EXPECT_EQ("child obj@0", gEvents[gEvents.size() - 4]);
  EXPECT_EQ("end root", gEvents.back());
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
