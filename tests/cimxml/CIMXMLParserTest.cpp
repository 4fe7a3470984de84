// The parser's own interface: copies, as the exported interface has always
// made them, which drive the same parse states and take their own copy of
// what was collected; the attribute handlers, each taking exactly its own
// attribute; and the converters, which read text as the standard streams do.
#include "cimxml/CIMXMLParser.h"

#include "core_api/CIMDateTime.h"
#include "support/Fixtures.h"

#include <sstream>

namespace orvtest {
namespace {

using TAttributes = TXmlParser::TAttributes;

class CIMXMLParserTest : public ::testing::Test {
protected:
  // A document position, for the messages that name a line.
  CIMXMLParserTest() { parser.Parse(document); }

  TCapturingLogger logger;
  boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/test");
  TCIMXMLParser parser{ns};
  char document[7] = "<cim/>";
};

TEST_F(CIMXMLParserTest, TypePropagatedAndArraySize) {
  TAttributes attributes = {{"type", "uint8"}, {"paramtype", "string"}, {"bad", "x"}};
  TCIMType type(kCIMTypeBoolean);
  auto it = attributes.find("paramtype");
  EXPECT_FALSE(parser.HandleCIMType(it, &type));
  it = attributes.find("type");
  EXPECT_TRUE(parser.HandleCIMType(it, &type));
  EXPECT_EQ(kCIMTypeUint8, static_cast<ECIMType>(type));
  // A name that the object model does not know fails in its constructor.
  TAttributes bad = {{"type", "uint7"}};
  it = bad.begin();
  EXPECT_EQ(StatusOf([&] { parser.HandleCIMType(it, &type); }), kORVStatusInvalidTypeName);

  // Only the lower-case word, after leading blanks, is true.
  const std::pair<const char *, bool> propagated[] = {
      {"true", true},  {" \ttrue", true}, {"truest", true}, {"TRUE", false},
      {"True", false}, {"1", false},      {"", false},      {"tru", false}};
  for (const auto &c : propagated) {
    TAttributes one = {{"propagated", c.first}};
    it = one.begin();
    bool value = !c.second;
    EXPECT_TRUE(parser.HandlePropagated(it, value));
    EXPECT_EQ(c.second, value) << c.first;
  }
  unsigned size = 99;
  // The array size is the leading digits.
  for (const auto &c : std::vector<std::pair<const char *, unsigned>>{
           {"12abc", 12}, {"abc12", 0}, {"", 0}, {" 7", 7}}) {
    TAttributes one = {{"arraysize", c.first}};
    it = one.begin();
    EXPECT_TRUE(parser.HandleArraySize(it, size));
    EXPECT_EQ(c.second, size) << c.first;
  }
}

// The converters promise what a string stream in the classic locale reads;
// the stream itself is the reference here.
TEST_F(CIMXMLParserTest, ConvertersReadLikeAStream) {
  // clang-format off
  const std::vector<std::string> texts = {
      "", " ", "true", "false", "  true", "\t\n\v\f\rtrue", "truex", "true false", "t", "TRUE",
      "1", "0", "12", "12abc", "abc12", "+7", "-5", "-0", "+", "-", "- 5", "+-5", "007", "0x10",
      "12.5", "1,234", "4294967295", "4294967296", "99999999999999999999", "-4294967295",
      "-4294967296", " \t 42 ", "\2405"};
  // clang-format on
  for (const std::string &input : texts) {
    std::istringstream boolStream(input), numberStream(input);
    bool expectedBool = false;
    unsigned expectedNumber = 0;
    boolStream >> std::boolalpha >> expectedBool;
    numberStream >> expectedNumber;
    std::string copy = input;
    EXPECT_EQ(expectedBool, TCIMXMLParser::ConvertBool(copy)) << "[" << input << "]";
    EXPECT_EQ(expectedNumber, parser.ConvertUnsignedInt(copy)) << "[" << input << "]";
  }
}

TEST_F(CIMXMLParserTest, ParseValueReadsThroughTheObjectModel) {
  std::string text = " 42 ";
  EXPECT_EQ(42U, parser.ParseValue(TCIMType(kCIMTypeUint32), text).GetUnsigned());
  // An invalid datetime becomes the epoch, with a line at level 3.
  text = "2024-01-01";
  const TCIMDateTime epoch(1970, 1, 1, 0, 0, 0, 0, 0);
  EXPECT_EQ(epoch, parser.ParseValue(TCIMType(kCIMTypeDateTime), text).GetDateTime());
  const std::vector<std::pair<int, std::string>> expected = {
      {3, "Invalid datetime found on line 1.  Defaulting the datetime to 1970-01-01 00:00:00."}};
  EXPECT_EQ(expected, logger.entries);
  // The parser does not keep its namespace alive.
  // Only a reference's text takes the namespace, but every type finds it
  // gone.
  std::string path = "A.k=1";
  EXPECT_EQ(TCIMType(kCIMTypeReference),
            parser.ParseValue(TCIMType(kCIMTypeReference), path).GetType());
  ns.reset();
  for (const ECIMType gone : {kCIMTypeUint8, kCIMTypeReference})
    EXPECT_EQ(StatusOf([&] { parser.ParseValue(TCIMType(gone), path); }), kORVStatusNamespaceGone);
}

TEST_F(CIMXMLParserTest, CopiesShareStatesAndCopyResults) {
  TAttributes none, cls = {{"name", "A"}}, property = {{"name", "p"}, {"type", "uint8"}};
  for (const char *open : {"cim", "declaration", "declgroup", "value.object"})
    parser.StartElement(open, none);
  parser.StartElement("class", cls);

  TCIMXMLParser copy(parser);
  copy.StartElement("property", property);
  // An end name that is not its start tag's own pointer is folded afresh.
  const std::string end = "PROPERTY";
  copy.EndElement(end.c_str());
  // The copy moved the class's state past its qualifiers, for both.
  parser.StartElement("qualifier", none);
  EXPECT_EQ(std::vector<std::string>{Err("Unexpected element qualifier")}, logger.Texts());

  copy.EndElement("class");
  copy.EndElement("value.object");
  ASSERT_EQ(1U, copy.GetClassesCollected().size());
  EXPECT_EQ("class A { uint8 p; };", Squeezed(copy.GetClassesCollected()[0]->ToMOF()));
  EXPECT_TRUE(parser.GetClassesCollected().empty());

  TCIMXMLParser assigned(ns);
  assigned = copy;
  EXPECT_EQ(copy.GetClassesCollected(), assigned.GetClassesCollected());
}

// A subclass's start tags come through the map-based interface, the parser's
// own through attribute lists: both must read every document alike, the
// tokenizer's reading of rejected elements and the full grammar's decoding
// of attribute values included.
class AttributePathsTest : public TParserFixture {};

TEST_F(AttributePathsTest, MapsAndListsReadAlike) {
  const std::string rejected = InClassC("<PROPERTY NAME=\"p\" TYPE=\"uint8\"><FOO/></PROPERTY>"
                                        "<PROPERTY NAME=\"q\" TYPE=\"uint8\"/>");
  const std::string decoded =
      InClassC("<PROPERTY NAME=\"a&#x42;&amp;\" TYPE=\"string\" CLASSORIGIN=\"C\r\n\t\"/>"
               "<PROPERTY NAME=\"b\" TYPE=\"uint8\" type=\"uint16\"/>");
  // A property of an instance that meets another element ends there and is
  // rejected, so that the tokenizer reads on as the rejection says.
  const std::string cut = Objects({"<INSTANCE CLASSNAME=\"P\"><PROPERTY NAME=\"n\" "
                                   "TYPE=\"uint8\"><PROPERTY NAME=\"s\" TYPE=\"string\"><VALUE>x"
                                   "</VALUE></PROPERTY><VALUE>1</VALUE></PROPERTY></INSTANCE>"});
  const std::vector<std::pair<std::string, EMode>> documents = {
      {cut, kClassic},
      {rejected, kClassic},
      {rejected, kFull},
      {decoded, kClassic},
      {decoded, kFull},
      {ReadFile(std::string(ORV_EXAMPLES_DIR) + "/schema.xml"), kClassic},
      {ReadFile(std::string(ORV_EXAMPLES_DIR) + "/schema.xml"), kFull},
  };
  for (const auto &document : documents) {
    SCOPED_TRACE(document.first.substr(0, 120));
    std::pair<std::vector<std::string>, std::vector<std::string>> read[2];
    for (bool maps : {false, true}) {
      Reset({Objects({"<CLASS NAME=\"P\"><PROPERTY NAME=\"n\" TYPE=\"uint8\"/><PROPERTY "
                      "NAME=\"s\" TYPE=\"string\"/></CLASS>"})});
      throughMaps = maps;
      Parse(document.first, document.second);
      read[maps ? 1 : 0] = {Log(), Mof()};
    }
    EXPECT_EQ(read[0], read[1]);
    // The made-up documents are there for their errors.
    if (&document - documents.data() < 5) {
      EXPECT_FALSE(read[0].first.empty());
    }
  }
}

} // namespace
} // namespace orvtest
