// The XML tokenizer, as recordings of handler events: "S:name{attr=value}",
// "T:text", "E:name", "P:target/data", "F:message@line". Like the CIM-XML
// parser, the recorder throws from FatalError, unless told to return.
#include "xml/XmlParser.h"
#include "xml/XmlBytes.h"

#include "core_api/ORVStatusCode.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <locale>
#include <map>
#include <string>
#include <vector>

namespace {

using NVRNORV20::TXmlParser;

/// Control and high bytes are shown as \xNN, a line feed as \n.
std::string Shown(const char *text, std::size_t length) {
  std::string shown;
  for (std::size_t i = 0; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    char hex[8];
    std::snprintf(hex, sizeof hex, "\\x%02X", byte);
    shown += byte == '\n' ? "\\n" : byte < 0x20 || byte >= 0x7F ? hex : std::string(1, text[i]);
  }
  return shown;
}

class TRecorder : public TXmlParser {
public:
  explicit TRecorder(bool throwing = true) : throws(throwing) {}

  /// Parses a copy of the document; the events joined by blanks.
  std::string Run(const std::string &document) {
    buffer.assign(document.begin(), document.end());
    buffer.push_back('\0');
    events.clear();
    try {
      Parse(buffer.data());
    } catch (const NVRNORV20::TORVException &) {
    }
    return events;
  }
  /// The document as the parse left it, without the NUL.
  std::string Buffer() const { return std::string(buffer.data(), buffer.size() - 1); }

  void StartElement(const char *name, TAttributes &attributes) override {
    std::string event = "S:" + std::string(name);
    for (const auto &attribute : attributes)
      event +=
          (attribute == *attributes.begin() ? "{" : ",") + attribute.first + "=" + attribute.second;
    Record(event + (attributes.empty() ? "" : "}"));
    for (const auto &addition : additions[name])
      attributes.insert(addition);
  }
  void EndElement(const char *name) override { Record("E:" + std::string(name)); }
  void processingInstruction(const char *target, const char *data) override {
    Record("P:" + std::string(target) + "/" + data);
  }
  void characters(const char *text, unsigned length) override {
    Record("T:" + Shown(text, length));
  }
  void notationDecl(const char *, const char *, const char *) override {}
  void FatalError(const char *message) override {
    Record("F:" + std::string(message) + "@" + std::to_string(GetCurLine()));
    if (throws)
      throw NVRNORV20::TORVException(
          NVRNORV20::TORVStatusCode(NVRNORV20::kORVStatusInvalidDocument));
  }

  /// Entries added to every start tag of that name (as the CIM-XML parser
  /// marks a rejected element).
  std::map<std::string, TAttributes> additions;
  using TXmlParser::GetChar;
  using TXmlParser::PeekChar;
  using TXmlParser::UngetChar;

private:
  void Record(const std::string &event) { events += (events.empty() ? "" : " ") + event; }

  bool throws;
  std::string events;
  std::vector<char> buffer;
};

/// A document, its events, and the entries added to the start tags of one
/// element name.
struct TCase {
  const char *document;
  const char *events;
  const char *element = "";
  TXmlParser::TAttributes added = {};
};

void ExpectEvents(const std::vector<TCase> &cases, bool throwing = true) {
  for (const TCase &row : cases) {
    TRecorder recorder(throwing);
    recorder.additions[row.element] = row.added;
    EXPECT_EQ(row.events, recorder.Run(row.document))
        << Shown(row.document, std::strlen(row.document));
  }
}

// Each distinct message, and where the parse stands when it is reported.
TEST(XmlParserTest, Errors) {
  ExpectEvents({
      // Prolog: a declaration, comments and a DOCTYPE before the root, whose
      // first ">" ends it; without a declaration the root must come first,
      // and the first instruction is taken for the declaration, unread.
      {"\xEF\xBB\xBF<?xml version='1.0'?>\n<!-- c -->\n<!DOCTYPE a SYSTEM 'a.dtd'>\n<a/>",
       "S:a E:a"},
      {"<?xml?><?target data?><a/>", "P:TBD/TBD S:a E:a"},
      {"<?pi?><a/>", "S:a E:a"},
      {"<!-- c --><a/>", "F:Invalid element/attribute name@1"},
      {"\n<?xml?><a/>", "F:Unexpected character before prolog@2"},
      {"<?xml?><!doctype a><a/>", "F:Unexpected character in doctypedecl@1"},
      {"<?xml?>\n<!DOCTYPE a [<!ELEMENT a ANY>]><a/>", "F:Unexpected character before element@2"},
      {"<?xml?><%x%><a/>", "F:Invalid XML '<%' characters encountered@1"},
      {"\xEF\xBB<a/>", "F:Unexpected character parsing UTF-8 BOM@1"},
      // After the root only an instruction is read, and "<%" refused.
      {"<a/>trailing<b/></c><!x", "S:a E:a"},
      {"<a/>\n<!-- c --> <?p?><%x%>",
       "S:a E:a P:TBD/TBD F:Invalid XML '<%' characters encountered@2"},
      // Names and attributes: attribute names are folded, values kept;
      // references are checked, never decoded.
      {"<_a:b-c.9 NaMe='V' z = \"x'y\"\n\tb=''/>", "S:_a:b-c.9{b=,name=V,z=x'y} E:_a:b-c.9"},
      {"<a b='&amp;&LT;&gt;&Quot;&apos;'/>", "S:a{b=&amp;&LT;&gt;&Quot;&apos;} E:a"},
      {"<9a/>", "F:Invalid element/attribute name@1"},
      {"<a\xC3\xA9/>", "F:Unexpected character before end of element@1"},
      {"<a b='&#65;'/>", "F:Unexpected character(&) in attribute value@1"},
      {"<a b='x<y'/>", "F:Unexpected character(<) in attribute value@1"},
      {"<a b/>", "F:Unexpected character between attribute name and value@1"},
      {"<a b=1/>", "F:Unexpected character after equals of attribute name@1"},
      {"<a B='1' b='2'/>", "F:Attribute appears twice@1"},
      {"<a b=\"open'", "F:Unexpected end of document in attribute value@1"},
      // Character data comes in pieces; a CDATA section ends its element
      // without a report.
      {"<a>a&lt;b&Amp;&#x41;&#65;&#xe9;&#8364;&#0;<!-- c -->x<?p?>\xC3\xA9\r\n</a>",
       "S:a T:a T:< T:b T:& T:A T:A T:\\xE9 T:\\xAC T:\\x00 T:x P:TBD/TBD T:\\xC3\\xA9\\x0D\\n "
       "E:a"},
      {"<r><a><![CDATA[x]]></a></r>", "S:r S:a"},
      {"<a>&foo;</a>", "S:a F:Unknown entity reference@1"},
      {"<a>&#x;</a>", "S:a F:Invalid hex character@1"},
      // End tags are compared over the start name's length only.
      {"<A></AB>", "S:A E:A"},
      {"<ab></a \n\t>", "S:ab F:Start and end element names don't match@1"},
      {"<a></a x>", "S:a F:Unexpected character before end of element@1"},
      {"<a>text", "S:a T:text F:Unexpected character where element expected@1"},
      // The line feed right after an open element's name is hidden, not yet
      // while its attributes are read.
      {"<r>\r\n<a\n>\n</a>\n</x>",
       "S:r T:\\x0D\\n S:a T:\\n E:a T:\\n F:Start and end element names don't match@5"},
      {"<a\nb='<'/>", "F:Unexpected character(<) in attribute value@2"},
  });
  // A handler that returns from FatalError drives the tokenizer on.
  ExpectEvents(
      {
          {"\xEF\xBB<a/>", "F:Unexpected character parsing UTF-8 BOM@1 "
                           "F:Unexpected character before prolog@1 "
                           "F:Unexpected character before element@1"},
          // The look-ahead over the terminator ends before the first byte.
          {"<", "F:Unexpected character before element@1"},
          // What was read is kept: the first value of a repeated name.
          {"<a NAME='1' Name='2'/>", "F:Attribute appears twice@1 S:a{name=1} E:a"},
          // A failed child ends one level: p returns without its end tag, r
          // reads on from where c stopped.
          {"<r><p><c></x></p><q/></r>", "S:r S:p S:c F:Start and end element names don't match@1 "
                                        "T:> F:Start and end element names don't match@1"},
      },
      false);
  // Many attributes in reverse order: a repeat at the end of 100,000 is
  // found; a tag of 20 reads back sorted, and again with new values from
  // the map kept of the first.
  std::string many = "<a";
  for (int i = 100000; i > 0; --i)
    many += " n" + std::to_string(i) + "=''";
  EXPECT_EQ("F:Attribute appears twice@1", TRecorder().Run(many + " n7=''/>"));
  TRecorder twice;
  for (const char *value : {"x", "y"}) {
    std::string tag = "<a", expected = "S:a";
    for (int i = 20; i > 0; --i) {
      tag += " n" + std::to_string(100 + i) + "='" + value + "'";
      expected.insert(3, std::string(i == 1 ? "{" : ",") + "n" + std::to_string(100 + i) + "=" +
                             value);
    }
    EXPECT_EQ(expected + "} E:a", twice.Run(tag + "/>"));
  }
  // The names stay folded in the buffer; the values do not.
  TRecorder recorder;
  recorder.Run("<A NaMe='VaLuE'/>");
  EXPECT_EQ("<A name='VaLuE'/>", recorder.Buffer());
}

// Maps of earlier tags are reused: every tag must still see exactly its own
// entries, whatever the tags before it held or the handler added; twelve
// sets in turn are more than are kept.
TEST(XmlParserTest, EachTagSeesOnlyItsOwnAttributes) {
  TRecorder recorder(false);
  recorder.additions["b"] = {{"added", "1"}};
  std::string many = "<r><b x='1'/><a/><a x='" + std::string(300, 'v') + "' y='2'/>",
              expected = "S:r S:b{x=1} E:b S:a E:a S:a{x=" + std::string(300, 'v') + ",y=2} E:a";
  for (char name = 'a'; name < 'm'; ++name) {
    many += std::string("<e ") + name + "='" + name + "' q='" + name + "'/>";
    expected += std::string(" S:e{") + name + "=" + name + ",q=" + name + "} E:e";
  }
  EXPECT_EQ(expected + " S:a{y=3} E:a E:r", recorder.Run(many + "<a y='3'/></r>"));
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

TEST(XmlParserTest, NamesFoldWithTheGlobalLocale) {
  const std::locale previous = std::locale::global(std::locale(std::locale(), new TDotlessCtype));
  const std::string events = TRecorder().Run("<a ID='1' Name='2'/>");
  std::locale::global(previous);
  // The map orders names byte-wise, so the folded byte 0xFD sorts last.
  EXPECT_EQ("S:a{name=2,\xFD"
            "d=1} E:a",
            events);
}

// Element names are folded eight bytes at a time: each byte of a word must
// fold as it does alone, whatever its neighbours, bytes above 0x7F included.
TEST(XmlParserTest, WordFoldingMatchesByteFolding) {
  for (int byte = 0; byte < 256; ++byte)
    for (const int neighbour :
         {0x00, int{'@'}, int{'A'}, int{'Z'}, int{'['}, int{'z'}, 0x7F, 0xC1, 0xFF})
      for (std::size_t position = 0; position < 8; ++position) {
        unsigned char bytes[8];
        std::memset(bytes, neighbour, sizeof bytes);
        bytes[position] = static_cast<unsigned char>(byte);
        std::uint64_t word;
        std::memcpy(&word, bytes, sizeof word);
        word = NVRNORV20::AsciiLowerWord(word);
        unsigned char folded[8];
        std::memcpy(folded, &word, sizeof folded);
        for (std::size_t i = 0; i < 8; ++i)
          ASSERT_EQ(folded[i], NVRNORV20::AsciiLower(static_cast<char>(bytes[i])))
              << "byte " << byte << " at " << position << " beside " << neighbour;
      }
}

// Nesting is bounded by memory, not by the stack.
TEST(XmlParserTest, DeepNesting) {
  std::string opening, closing;
  for (int i = 0; i < 1000000; ++i) {
    opening += "<a>";
    closing += "</a>";
  }
  const std::string events = TRecorder().Run(opening + closing);
  EXPECT_EQ(events.size(), 8000000u - 1) << events.substr(events.size() - 80);
}

TEST(XmlParserTest, Markers) {
  const TXmlParser::TAttributes format = {{"throwExInvalidFormat", "kORVStatusInvalidFormat"}};
  const TXmlParser::TAttributes value = {{"throwExInvalidValue", "kORVStatusInvalidProperty"}};
  ExpectEvents({
      // A format refusal ends the element's parent after the element.
      {"<R><RP><C/><Q/></RP><S/></R>", "S:R S:RP S:C E:C S:Q E:Q E:R", "C", format},
      {"<R><C>x</C><Q/></R>", "S:R S:C T:x E:C", "C", format},
      // A value refusal hides only the end of VALUE (or a start of it).
      {"<R><VALUE>x</VALUE><Q/></R>", "S:R S:VALUE T:x S:Q E:Q E:R", "VALUE", value},
      {"<VAL>x</VAL>", "S:VAL T:x", "VAL", value},
      {"<value>x</value>", "S:value T:x E:value", "value", value},
      {"<VALUE/>", "S:VALUE E:VALUE", "VALUE", value},
      // A marker counts only as the one entry the handler added.
      {"<R><C/><Q/></R>", "S:R S:C E:C S:Q E:Q E:R", "C", {*format.begin(), {"extra", "1"}}},
      {"<VALUE>x</VALUE>", "S:VALUE T:x E:VALUE", "VALUE", {*value.begin(), *format.begin()}},
  });
}

TEST(XmlParserTest, StepBackAfterTheTerminatorIsUnconditional) {
  TRecorder recorder;
  // Looking for more after the root met the terminator and stepped back.
  EXPECT_EQ("S:a E:a", recorder.Run("<a/>"));
  EXPECT_EQ('>', recorder.GetChar());
  EXPECT_EQ('\0', recorder.GetChar());
  EXPECT_EQ('\0', recorder.GetChar());
  recorder.UngetChar();
  EXPECT_EQ('>', recorder.PeekChar());
  // Before the first byte everything reads as NUL and no line is counted.
  for (int i = 0; i < 8; ++i)
    recorder.UngetChar();
  EXPECT_EQ('\0', recorder.PeekChar());
  EXPECT_EQ(1u, recorder.GetCurLine());
  TRecorder fresh;
  EXPECT_EQ('\0', fresh.GetChar());
  EXPECT_EQ(1u, fresh.GetCurLine());
}

} // namespace
