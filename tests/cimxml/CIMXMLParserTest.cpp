// Copies of a parser, as the exported interface has always made them: they
// drive the same parse states, and take their own copy of what was
// collected.
#include "cimxml/CIMXMLParser.h"

#include "support/Fixtures.h"

namespace orvtest {
namespace {

TEST(TCIMXMLParserTest, CopiesShareStatesAndCopyResults) {
  TCapturingLogger logger;
  const auto ns = CreateCIMNamespace("root/test"); // the parser holds it weakly
  TCIMXMLParser parser(ns);
  char line[] = "<cim/>"; // a position for the messages
  parser.Parse(line);
  TXmlParser::TAttributes none, cls = {{"name", "A"}},
                                property = {{"name", "p"}, {"type", "uint8"}};
  for (const char *open : {"cim", "declaration", "declgroup", "value.object"})
    parser.StartElement(open, none);
  parser.StartElement("class", cls);

  TCIMXMLParser copy(parser);
  copy.StartElement("property", property);
  copy.EndElement("property");
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

} // namespace
} // namespace orvtest
