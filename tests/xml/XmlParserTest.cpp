// Tests of the XML tokenizer, as recordings of handler events.
#include "xml/XmlParser.h"

#include "xml/RecordingHandler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>
#include <locale>
#include <random>
#include <string>
#include <vector>

namespace NVRNORV20 {
// Reads the tokenizer's cursor, for checks against a brute-force count.
class TXmlParserTestPeer {
public:
  /// Negative while the cursor stands before the first byte.
  static std::ptrdiff_t CursorOffset(const TXmlParser &parser) {
    return (parser.cursor - parser.documentStart) -
           static_cast<std::ptrdiff_t>(parser.cursorUnderrun);
  }
  static const char *DocumentStart(const TXmlParser &parser) { return parser.documentStart; }
};
} // namespace NVRNORV20

namespace {

using NVRNORV20::TXmlParserTestPeer;
using orvtest::TRecordingHandler;
using EOnError = TRecordingHandler::EOnError;

struct TCase {
  const char *document;
  const char *events;
};

// Runs each row with a handler that throws from FatalError, as the CIM-XML
// parser does, unless told otherwise.
void ExpectEvents(const std::vector<TCase> &cases, EOnError onError = EOnError::kThrow) {
  for (const TCase &row : cases) {
    SCOPED_TRACE(orvtest::ShowBytes(row.document, std::strlen(row.document)));
    TRecordingHandler handler(onError);
    EXPECT_EQ(row.events, handler.Run(row.document));
  }
}

// --- Prolog --------------------------------------------------------------

TEST(XmlParserProlog, Forms) {
  ExpectEvents({
      {"<a/>", "S:a E:a"},
      {"\xEF\xBB\xBF<a/>", "S:a E:a"},
      {"<?xml version='1.0' encoding='utf-8'?>\n<!-- c -->\n"
       "<!DOCTYPE a SYSTEM 'a.dtd'>\n<!-- d -->\n<a/>",
       "S:a E:a"},
      {"<?xml?><?target data?><a/>", "P:TBD/TBD S:a E:a"},
      // Without a declaration the root element must come first.
      {"<!-- c --><a/>", "F:Invalid element/attribute name@1"},
      // The first instruction is taken for the declaration, unread.
      {"<?pi?><a/>", "S:a E:a"},
      // The offending byte is consumed, line feed and all.
      {"\n<?xml?><a/>", "F:Unexpected character before prolog@2"},
      {" <a/>", "F:Unexpected character before prolog@1"},
      {"", "F:Unexpected character before prolog@1"},
      {"<?xml?><!doctype a><a/>", "F:Unexpected character in doctypedecl@1"},
      // The first ">" ends a DOCTYPE, also inside its internal subset.
      {"<?xml?><!DOCTYPE a [<!ELEMENT a ANY>]><a/>", "F:Unexpected character before element@1"},
      // An unterminated declaration leaves the cursor on its "<".
      {"<?xml", "F:Invalid element/attribute name@1"},
      {"<?xml?><%x%><a/>", "F:Invalid XML '<%' characters encountered@1"},
      {"<?xml?>\n\n<!DOCTYPE a>\n\nx", "F:Unexpected character before element@5"},
      {"\xEF\xBB<a/>", "F:Unexpected character parsing UTF-8 BOM@1"},
  });
}

TEST(XmlParserProlog, TextAfterTheRootIsIgnored) {
  ExpectEvents({
      {"<a/>trailing<b/></c>", "S:a E:a"},
      {"<a/><b/>", "S:a E:a"},
      {"<a/>\n<!-- c --> <?p?>\r\n", "S:a E:a P:TBD/TBD"},
      {"<a/><!x", "S:a E:a"},
      {"<a/><%x%>", "S:a E:a F:Invalid XML '<%' characters encountered@1"},
  });
}

TEST(XmlParserProlog, GoesOnAfterReturningErrors) {
  ExpectEvents(
      {
          // The byte that broke the mark is consumed.
          {"\xEF\xBB<a/>", "F:Unexpected character parsing UTF-8 BOM@1 "
                           "F:Unexpected character before prolog@1 "
                           "F:Unexpected character before element@1"},
          {"x<a/>", "F:Unexpected character before prolog@1 S:a E:a"},
          {"", "F:Unexpected character before prolog@1 "
               "F:Unexpected character before element@1"},
          // The look-ahead over the terminator ends before the first byte,
          // which reads as NUL.
          {"<", "F:Unexpected character before element@1"},
      },
      EOnError::kReturn);
}

// --- Names and attributes ------------------------------------------------

TEST(XmlParserNames, Forms) {
  ExpectEvents({
      {"<_a:b-c.9/>", "S:_a:b-c.9 E:_a:b-c.9"},
      {"<-a/>", "F:Invalid element/attribute name@1"},
      {"<.a/>", "F:Invalid element/attribute name@1"},
      {"<9a/>", "F:Invalid element/attribute name@1"},
      // A byte of 0x80 or above ends a name.
      {"<a\xC3\xA9/>", "F:Unexpected character before end of element@1"},
      {"<a 1b='x'/>", "F:Invalid element/attribute name@1"},
      // Element names keep their case, attribute names are folded.
      {"<Elem NaMe='VaLuE'/>", "S:Elem{name=VaLuE} E:Elem"},
  });
}

TEST(XmlParserAttributes, Forms) {
  ExpectEvents({
      {"<a b=\"x'y\" c='p\"q'/>", "S:a{b=x'y,c=p\"q} E:a"},
      {"<a b = '1'\n\tc='2' ></a>", "S:a{b=1,c=2} E:a"},
      {"<a z='1' b='2'/>", "S:a{b=2,z=1} E:a"},
      {"<a b=''/>", "S:a{b=} E:a"},
      // References are checked, never decoded.
      {"<a b='&amp;&LT;&gt;&Quot;&apos;'/>", "S:a{b=&amp;&LT;&gt;&Quot;&apos;} E:a"},
      {"<a b='&#65;'/>", "F:Unexpected character(&) in attribute value@1"},
      {"<a b='&amp'/>", "F:Unexpected character(&) in attribute value@1"},
      {"<a b='&nbsp;'/>", "F:Unexpected character(&) in attribute value@1"},
      {"<a b='x<y'/>", "F:Unexpected character(<) in attribute value@1"},
      {"<a b='1'c='2'/>", "F:Unexpected character before end of element@1"},
      {"<a b/>", "F:Unexpected character between attribute name and value@1"},
      {"<a b=1/>", "F:Unexpected character after equals of attribute name@1"},
      {"<a B='1' b='2'/>", "F:Attribute appears twice@1"},
      {"<a b='open", "F:Unexpected end of document in attribute value@1"},
      {"<a b=\"open'", "F:Unexpected end of document in attribute value@1"},
      {"<a %/>", "F:Unexpected character before end of element@1"},
  });
}

// Maps of earlier tags are reused: every tag must still see exactly its own
// names and values, whatever the tags before it held or the handler did
// with their maps.
TEST(XmlParserAttributes, EachTagSeesOnlyItsOwnEntries) {
  TRecordingHandler handler(TRecordingHandler::EOnError::kReturn);
  handler.additions["b"] = {{"added", "1"}};
  handler.removals["c"] = {"x"};
  const std::string longValue(300, 'v');
  const std::string document = "<r>"
                               "<a x='1' y='2'/><a y='3' x='4'/><a x='5' z='6'/>"
                               "<b x='7' y='8'/><a x='9' y='10'/>"
                               "<c x='11' y='12'/><a x='13' y='14'/>"
                               "<a x='" +
                               longValue +
                               "' y='15'/><a x='16' y='17'/>"
                               "<a x='18' X='19' y='20'/><a x='21' y='22'/>"
                               "<a/><a y='23'/></r>";
  const std::string expected = "S:r S:a{x=1,y=2} E:a S:a{x=4,y=3} E:a S:a{x=5,z=6} E:a "
                               "S:b{x=7,y=8} E:b S:a{x=9,y=10} E:a "
                               "S:c{x=11,y=12} E:c S:a{x=13,y=14} E:a "
                               "S:a{x=" +
                               longValue +
                               ",y=15} E:a S:a{x=16,y=17} E:a "
                               "F:Attribute appears twice@1 S:a{x=18,y=20} E:a "
                               "S:a{x=21,y=22} E:a S:a E:a S:a{y=23} E:a E:r";
  EXPECT_EQ(expected, handler.Run(document));
  // Twelve distinct sets in turn, more than are kept, and back again.
  std::string many = "<r>";
  std::string manyExpected = "S:r";
  for (int round = 0; round < 2; ++round)
    for (char name = 'a'; name < 'm'; ++name) {
      const std::string value = std::to_string(round) + name;
      many += std::string("<e ") + name + "='" + value + "' q='" + value + "'/>";
      manyExpected += std::string(" S:e{") + name + "=" + value + ",q=" + value + "} E:e";
    }
  EXPECT_EQ(manyExpected + " E:r", handler.Run(many + "</r>"));
}

// A locale whose folding is not ASCII's (as in a Turkish locale, where the
// capital I folds to a dotless i) makes names go through the locale's own
// facet instead of the inline fast path.
class TDotlessCtype : public std::ctype<char> {
protected:
  char do_tolower(char c) const override {
    return c == 'I' ? '\xFD' : std::ctype<char>::do_tolower(c);
  }
  const char *do_tolower(char *low, const char *high) const override {
    for (; low != high; ++low)
      *low = do_tolower(*low);
    return high;
  }
};

TEST(XmlParserAttributes, NamesFoldWithTheGlobalLocale) {
  const std::locale previous = std::locale::global(std::locale(std::locale(), new TDotlessCtype));
  TRecordingHandler handler(EOnError::kThrow);
  const std::string events = handler.Run("<a ID='1' Name='2'/>");
  std::locale::global(previous);
  // The map orders names byte-wise, so the folded byte 0xFD sorts last.
  EXPECT_EQ("S:a{name=2,\xFD"
            "d=1} E:a",
            events);
}

TEST(XmlParserAttributes, FailuresKeepWhatWasRead) {
  ExpectEvents(
      {
          // The first value stays.
          {"<a NAME='1' Name='2'/>", "F:Attribute appears twice@1 S:a{name=1} E:a"},
          {"<a b='1' c='<' d='2'/>", "F:Unexpected character(<) in attribute value@1 "
                                     "F:Unexpected character before end of element@1"},
          {"<a b='1' c='x", "F:Unexpected end of document in attribute value@1 "
                            "F:Unexpected character before end of element@1"},
          // A reference cut off by the end of the buffer steps back onto the
          // "&" only, not onto the "/>" before it.
          {"<r><a/><a f='&a", "S:r S:a E:a "
                              "F:Unexpected character(&) in attribute value@1 "
                              "F:Unexpected character before end of element@1"},
      },
      EOnError::kReturn);
  // The names stay folded in the buffer; the values do not.
  TRecordingHandler handler;
  handler.Run("<A NaMe='VaLuE'/>");
  EXPECT_EQ("<A name='VaLuE'/>", handler.Buffer());
}

// --- Character data ------------------------------------------------------

TEST(XmlParserCharacterData, Pieces) {
  ExpectEvents({
      {"<a>a&lt;b</a>", "S:a T:a T:< T:b E:a"},
      {"<a>&LT;&Amp;&apos;&GT;&quot;</a>", "S:a T:< T:& T:' T:> T:\" E:a"},
      {"<a>&#x41;&#65;&#X41;&#xe9;&#233;&#8364;&#0;&#256;</a>",
       "S:a T:A T:A T:A T:\\xE9 T:\\xE9 T:\\xAC T:\\x00 T:\\x00 E:a"},
      {"<a> <b/>\n</a>", "S:a T:  S:b E:b T:\\n E:a"},
      {"<a><!-- c -->x<?p?>y</a>", "S:a T:x P:TBD/TBD T:y E:a"},
      {"<a>\xC3\xA9\r\n</a>", "S:a T:\\xC3\\xA9\\x0D\\n E:a"},
      {"<a>&foo;</a>", "S:a F:Unknown entity reference@1"},
      {"<a>&#;</a>", "S:a F:Invalid hex character@1"},
      {"<a>&#x;</a>", "S:a F:Invalid hex character@1"},
      {"<a>&#12a;</a>", "S:a F:Unknown entity reference@1"},
      {"<a>&#xg;</a>", "S:a F:Unknown entity reference@1"},
      // A CDATA section ends its element without a report.
      {"<a><![CDATA[x]]></a>", "S:a"},
      {"<r><a><![CDATA[x]]></a></r>", "S:r S:a"},
      {"<a><%x%></a>", "S:a F:Invalid XML '<%' characters encountered@1"},
  });
}

TEST(XmlParserCharacterData, GoesOnAfterReturningErrors) {
  ExpectEvents(
      {
          // The bytes already read are dropped with the one that broke it.
          {"<a>&foo;x</a>", "S:a F:Unknown entity reference@1 T:oo;x E:a"},
          {"<a>&ampx</a>", "S:a F:Unknown entity reference@1 E:a"},
          // A bad byte counts as a digit.
          {"<a>&#1x;</a>", "S:a F:Unknown entity reference@1 T:\\x01 E:a"},
          {"<a>&#;;</a>", "S:a F:Invalid hex character@1 T:\\x00 E:a"},
          // A reference cut off by the end of the buffer stops there.
          {"<a>&#", "S:a F:Unknown entity reference@1 "
                    "F:Unexpected character where element expected@1"},
          {"<a>&#x4", "S:a F:Unknown entity reference@1 "
                      "F:Unexpected character where element expected@1"},
          {"<a>&", "S:a F:Unknown entity reference@1 "
                   "F:Unexpected character where element expected@1"},
      },
      EOnError::kReturn);
}

// --- End tags and nesting ------------------------------------------------

TEST(XmlParserEndTags, Rules) {
  ExpectEvents({
      // Compared over the start name's length only.
      {"<A></AB>", "S:A E:A"},
      {"<A></a>", "S:A F:Start and end element names don't match@1"},
      {"<ab></a>", "S:ab F:Start and end element names don't match@1"},
      {"<a></a \n\t>", "S:a E:a"},
      {"<a></a x>", "S:a F:Unexpected character before end of element@1"},
      {"<a></1a>", "S:a F:Invalid element/attribute name@1"},
      {"<a>", "S:a F:Unexpected character where element expected@1"},
      {"<a>text", "S:a T:text F:Unexpected character where element expected@1"},
      {"<a><b>", "S:a S:b F:Unexpected character where element expected@1"},
      {"<a/x>", "F:Unexpected character before end of element@1"},
      {"<a b='1'", "F:Unexpected character before end of element@1"},
  });
}

TEST(XmlParserEndTags, AFailedChildEndsOneLevel) {
  ExpectEvents(
      {
          // c fails; p returns at once without its end tag; r reads on from
          // where c stopped.
          {"<r><p><c></x></p><q/></r>",
           "S:r S:p S:c F:Start and end element names don't match@1 T:> "
           "F:Start and end element names don't match@1"},
          // "<!x" steps back four bytes, onto the ">" before it, at each
          // level that meets it.
          {"<a><a><a><a><!x</a></a></a></a>", "S:a S:a S:a S:a T:>"},
          // Unterminated comments: the cursor stays after "<!--".
          {"<a><a><a><a><!--x<!--y", "S:a S:a S:a S:a T:x"},
          // Unterminated instructions: the cursor stays on "<?".
          {"<a><a><a><?x", "S:a S:a S:a"},
      },
      EOnError::kReturn);
}

TEST(XmlParserEndTags, DeepNestingIsBoundedByMemory) {
  constexpr std::size_t kDepth = 1000000;
  struct TCounter : NVRNORV20::TXmlParser {
    std::size_t starts = 0, ends = 0, texts = 0, errors = 0;
    void StartElement(const char *, TAttributes &) override { ++starts; }
    void EndElement(const char *) override { ++ends; }
    void processingInstruction(const char *, const char *) override {}
    void characters(const char *, unsigned) override { ++texts; }
    void notationDecl(const char *, const char *, const char *) override {}
    void FatalError(const char *) override { ++errors; }
  };
  std::string opening, closing;
  for (std::size_t i = 0; i < kDepth; ++i) {
    opening += "<a>";
    closing += "</a>";
  }
  std::string whole = opening + closing;
  TCounter counter;
  counter.Parse(whole.data());
  EXPECT_EQ(kDepth, counter.starts);
  EXPECT_EQ(kDepth, counter.ends);
  EXPECT_EQ(0u, counter.errors);
  EXPECT_EQ(opening + closing, whole) << "a hidden byte was not put back";

  // Every second level fails on "<!x", each time one byte before it.
  std::string failing = opening + "<!x" + closing;
  TCounter second;
  second.Parse(failing.data());
  EXPECT_EQ(kDepth, second.starts);
  EXPECT_EQ(0u, second.ends);
  EXPECT_EQ(kDepth / 2 - 1, second.texts);
  EXPECT_EQ(0u, second.errors);
  EXPECT_EQ(opening + "<!x" + closing, failing);
}

// --- Markers -------------------------------------------------------------

TEST(XmlParserMarkers, Effects) {
  struct TMarkerCase {
    const char *document;
    const char *element;
    TRecordingHandler::TAttributes added;
    const char *events;
  };
  const TRecordingHandler::TAttributes format = {
      {"throwExInvalidFormat", "kORVStatusInvalidFormat"}};
  const TRecordingHandler::TAttributes value = {
      {"throwExInvalidValue", "kORVStatusInvalidProperty"}};
  const std::vector<TMarkerCase> cases = {
      // A format rejection ends the element's parent after the element.
      {"<R><RP><C/><Q/></RP><S/></R>", "C", format, "S:R S:RP S:C E:C S:Q E:Q E:R"},
      {"<R><C>x</C><Q/></R>", "C", format, "S:R S:C T:x E:C"},
      {"<C/>", "C", format, "S:C E:C"},
      // A value rejection hides only the end of VALUE (or a start of it).
      {"<VALUE>x</VALUE>", "VALUE", value, "S:VALUE T:x"},
      {"<R><VALUE>x</VALUE><Q/></R>", "VALUE", value, "S:R S:VALUE T:x S:Q E:Q E:R"},
      {"<VAL>x</VAL>", "VAL", value, "S:VAL T:x"},
      {"<VALUES>x</VALUES>", "VALUES", value, "S:VALUES T:x E:VALUES"},
      {"<value>x</value>", "value", value, "S:value T:x E:value"},
      {"<VALUE/>", "VALUE", value, "S:VALUE E:VALUE"},
      // A marker counts only as the one entry the handler added.
      {"<R><C/><Q/></R>",
       "C",
       {{"throwExInvalidFormat", "kORVStatusInvalidFormat"}, {"extra", "1"}},
       "S:R S:C E:C S:Q E:Q E:R"},
      {"<VALUE>x</VALUE>",
       "VALUE",
       {{"throwExInvalidValue", "kORVStatusInvalidProperty"},
        {"throwExInvalidFormat", "kORVStatusInvalidFormat"}},
       "S:VALUE T:x E:VALUE"},
  };
  for (const TMarkerCase &row : cases) {
    SCOPED_TRACE(row.document);
    TRecordingHandler handler;
    handler.additions[row.element] = row.added;
    EXPECT_EQ(row.events, handler.Run(row.document));
  }

  // Erasing an attribute while adding the marker leaves the size as it was.
  TRecordingHandler handler;
  handler.additions["C"] = format;
  handler.removals["C"] = {"b"};
  EXPECT_EQ("S:R S:C{b=1} E:C S:Q E:Q E:R", handler.Run("<R><C b='1'/><Q/></R>"));
}

// --- Line numbers --------------------------------------------------------

TEST(XmlParserLines, AtErrors) {
  ExpectEvents({
      {"<a>\n\n</b>", "S:a T:\\n\\n F:Start and end element names don't match@3"},
      {"<a>\r\n</b>", "S:a T:\\x0D\\n F:Start and end element names don't match@2"},
      {"<a>\r</b>", "S:a T:\\x0D F:Start and end element names don't match@1"},
      // The line feed right after an open element's name is hidden.
      {"<a\n>\n</b>", "S:a T:\\n F:Start and end element names don't match@2"},
      {"<r>\n<a\n>\n</a>\n</x>",
       "S:r T:\\n S:a T:\\n E:a T:\\n F:Start and end element names don't match@5"},
      // Not yet while its attributes are read.
      {"<a\nb='<'/>", "F:Unexpected character(<) in attribute value@2"},
      // Nor the one after a repeated attribute's name while it is reported.
      {"<a b='1'\nb\n='2'/>", "F:Attribute appears twice@2"},
      {"<?xml?>\n<!-- \n -->\n<a>\n&bad;</a>", "S:a T:\\n F:Unknown entity reference@5"},
  });
}

// Line feeds before the cursor in the buffer as it stands, counted the slow
// way.
unsigned BruteForceLine(const NVRNORV20::TXmlParser &parser) {
  const std::ptrdiff_t offset = TXmlParserTestPeer::CursorOffset(parser);
  const char *start = TXmlParserTestPeer::DocumentStart(parser);
  unsigned line = 1;
  for (std::ptrdiff_t i = 0; i < offset; ++i)
    line += start[i] == '\n' ? 1u : 0u;
  return line;
}

std::string RandomDocument(std::mt19937 &random) {
  static const char *const kPieces[] = {
      "<a",     "<b",   ">",  "</a>", "</b>",  "/>",     "\n",   "\n",  " ",    "x",
      "=",      "'",    "\"", "&lt;", "&#",    ";",      "<!--", "-->", "<?",   "?>",
      " c='1'", "\r\n", "&",  "<a>",  "<b\n>", "</a\n>", "<%",   "<!x", "\xEF", "<?xml?>"};
  std::uniform_int_distribution<std::size_t> piece(0, std::size(kPieces) - 1);
  std::uniform_int_distribution<int> length(0, 24);
  std::string document;
  for (int i = length(random); i > 0; --i)
    document += kPieces[piece(random)];
  return document;
}

TEST(XmlParserLines, MatchABruteForceCountAtEveryEvent) {
  std::mt19937 random(20240613);
  for (int round = 0; round < 20000; ++round) {
    const std::string document = RandomDocument(random);
    SCOPED_TRACE(orvtest::ShowBytes(document.data(), document.size()));
    TRecordingHandler handler(EOnError::kReturn);
    unsigned mismatches = 0;
    handler.onEvent = [&] {
      if (handler.GetCurLine() != BruteForceLine(handler))
        ++mismatches;
    };
    handler.Run(document);
    ASSERT_EQ(0u, mismatches) << handler.Joined();
    ASSERT_EQ(handler.GetCurLine(), BruteForceLine(handler));
  }
}

TEST(XmlParserLines, ManyErrorsAreCountedIncrementally) {
  constexpr unsigned kErrors = 100000;
  std::string document = "<a>";
  for (unsigned i = 0; i < kErrors; ++i)
    document += "\n&x;";
  document += "</a>";
  TRecordingHandler handler(EOnError::kReturn);
  handler.Run(document);
  std::vector<std::string> errors;
  std::copy_if(handler.events.begin(), handler.events.end(), std::back_inserter(errors),
               [](const std::string &e) { return e[0] == 'F'; });
  ASSERT_EQ(kErrors, errors.size());
  for (unsigned i = 0; i < kErrors; i += 9999)
    EXPECT_EQ("F:Unknown entity reference@" + std::to_string(i + 2), errors[i]);
}

// --- Robustness ----------------------------------------------------------

// Only folded attribute names may differ from the document afterwards, in
// whatever way the parse ended.
void ExpectBufferRestored(const std::string &document, const std::string &after) {
  ASSERT_EQ(document.size(), after.size());
  for (std::size_t i = 0; i < document.size(); ++i) {
    if (document[i] != after[i]) {
      ASSERT_EQ(std::tolower(static_cast<unsigned char>(document[i])),
                static_cast<unsigned char>(after[i]))
          << "at byte " << i;
    }
  }
}

const char kSample[] = "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                       "<!-- generated -->\n"
                       "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
                       "<DECLARATION><DECLGROUP>\n"
                       "<VALUE.OBJECT><CLASS NAME=\"CIM_A\" SUPERCLASS='CIM_B'>\n"
                       "<QUALIFIER NAME=\"Description\" TYPE=\"string\" TOSUBCLASS=\"false\">"
                       "<VALUE>a &amp; b &lt;&#x41;&#66;&gt;</VALUE></QUALIFIER>\n"
                       "<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\"><VALUE.ARRAY>"
                       "<VALUE>1</VALUE><VALUE>2</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>\n"
                       "<?pi x?><PROPERTY.REFERENCE NAME=\"R\" REFERENCECLASS=\"CIM_C\"/>\n"
                       "</CLASS></VALUE.OBJECT>\n"
                       "</DECLGROUP></DECLARATION>\n"
                       "</CIM>\n";

TEST(XmlParserRobustness, SampleDocument) {
  TRecordingHandler handler;
  handler.Run(kSample);
  ASSERT_GE(handler.events.size(), 2u);
  EXPECT_EQ("S:CIM{cimversion=2.0,dtdversion=2.0}", handler.events.front());
  EXPECT_EQ("E:CIM", handler.events.back());
  EXPECT_EQ(0, std::count_if(handler.events.begin(), handler.events.end(),
                             [](const std::string &e) { return e[0] == 'F'; }));
  const std::string joined = handler.Joined();
  EXPECT_NE(std::string::npos, joined.find("S:VALUE T:a  T:& T: b  T:< T:A T:B T:> E:VALUE"));
  EXPECT_NE(std::string::npos, joined.find("P:TBD/TBD S:PROPERTY.REFERENCE"));
}

TEST(XmlParserRobustness, EveryPrefixEndsAndRestoresTheBuffer) {
  const std::string sample = kSample;
  for (EOnError onError : {EOnError::kThrow, EOnError::kReturn}) {
    for (std::size_t length = 0; length <= sample.size(); ++length) {
      SCOPED_TRACE(length);
      const std::string prefix = sample.substr(0, length);
      TRecordingHandler handler(onError);
      handler.Run(prefix);
      ExpectBufferRestored(prefix, handler.Buffer());
      const bool complete = !handler.events.empty() && handler.events.back() == "E:CIM";
      const bool failed = std::any_of(handler.events.begin(), handler.events.end(),
                                      [](const std::string &e) { return e[0] == 'F'; });
      // Only the trailing newline may be missing for a clean parse.
      EXPECT_EQ(length + 1 >= sample.size(), complete && !failed);
    }
  }
}

TEST(XmlParserRobustness, RandomDocumentsRestoreTheBuffer) {
  std::mt19937 random(7);
  for (int round = 0; round < 5000; ++round) {
    const std::string document = RandomDocument(random);
    SCOPED_TRACE(orvtest::ShowBytes(document.data(), document.size()));
    for (EOnError onError : {EOnError::kThrow, EOnError::kReturn}) {
      TRecordingHandler handler(onError);
      handler.Run(document);
      ExpectBufferRestored(document, handler.Buffer());
    }
  }
}

// Unterminated comments at every second level would rescan the rest of the
// document each time if failed searches were not remembered.
TEST(XmlParserRobustness, UnterminatedCommentsAtManyLevels) {
  constexpr std::size_t kDepth = 200000;
  std::string document;
  for (std::size_t i = 0; i < kDepth; ++i)
    document += "<a>";
  for (std::size_t i = 0; i < kDepth / 2; ++i)
    document += "<!--x";
  TRecordingHandler handler(EOnError::kReturn);
  handler.Run(document);
  ASSERT_EQ(kDepth + kDepth / 2 - 1, handler.events.size());
  EXPECT_EQ("T:x", handler.events.back());
}

// --- Character primitives ------------------------------------------------

TEST(XmlParserPrimitives, StepBackAfterTheTerminatorIsUnconditional) {
  TRecordingHandler handler;
  // Looking for more after the root met the terminator and stepped back.
  EXPECT_EQ("S:a E:a", handler.Run("<a/>"));
  EXPECT_EQ('>', handler.PeekChar());
  EXPECT_EQ('>', handler.GetChar());
  EXPECT_EQ('\0', handler.GetChar());
  EXPECT_EQ('\0', handler.GetChar());
  handler.UngetChar();
  EXPECT_EQ('>', handler.PeekChar());

  // Before the first byte everything reads as NUL and no line is counted.
  EXPECT_EQ("S:a E:a", handler.Run("<a/>"));
  for (int i = 0; i < 8; ++i)
    handler.UngetChar();
  EXPECT_EQ('\0', handler.PeekChar());
  EXPECT_EQ('\0', handler.GetChar());
  EXPECT_EQ(1u, handler.GetCurLine());

  TRecordingHandler fresh;
  EXPECT_EQ('\0', fresh.GetChar());
  EXPECT_EQ(1u, fresh.GetCurLine());
}

} // namespace
