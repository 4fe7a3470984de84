// Qualifiers and the value states that carry their values.
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using QualifierStatesTest = TParserFixture;

TEST_F(QualifierStatesTest, Qualifiers) {
  Check({
      // Read as the TYPE attribute; without a value, a null of the declared
      // type; propagated ones are read but not attached; the last value wins;
      // text between elements is not part of a value.
      {InClassC("<QUALIFIER NAME=\"Description\" TYPE=\"string\">\n stray <VALUE.ARRAY><VALUE>x"
                "</VALUE></VALUE.ARRAY><VALUE> fish &amp; chips </VALUE></QUALIFIER><QUALIFIER "
                "NAME=\"MaxValue\" TYPE=\"sint64\" PROPAGATED=\"false\"><VALUE>-12</VALUE>"
                "</QUALIFIER><QUALIFIER NAME=\"Key\" TYPE=\"string\"/><QUALIFIER NAME=\"In\" "
                "TYPE=\"boolean\" PROPAGATED=\"true\"><VALUE>false</VALUE></QUALIFIER>"
                "<QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY>\n<VALUE>0</VALUE>\n"
                "<VALUE>..</VALUE></VALUE.ARRAY></QUALIFIER>"),
       "[Description(\" fish & chips \"), MaxValue(-12), Key(NULL), ValueMap {\"0\", \"..\"}] "
       "class C { };"},
      // A value enters no child: the child's end tag ends the value with the
      // text read so far, and the value's own end tag then ends its parent.
      {InClassC("<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>before<B/>after</VALUE>"
                "</QUALIFIER>"),
       "[Description(\"before\")] class C { };"},
      {InClassC("<QUALIFIER NAME=\"Colour\" TYPE=\"string\"><VALUE>red</VALUE></QUALIFIER>"
                "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>d</VALUE></QUALIFIER>"),
       "[Description(\"d\")] class C { };",
       {"TCIMXMLParser: Couldn't find qualifier Colour", Ended(kORVStatusQualifierNotDeclared)}},
      // Control characters of a document reach the log escaped, C1 ones in
      // UTF-8 too; printable text and backslashes stay as they are.
      {InClassC("<QUALIFIER NAME=\"Co\nl\x1b[2J\xc2\x9b\xc2\xa0\\x\" TYPE=\"string\"/>"),
       "class C { };",
       {"TCIMXMLParser: Couldn't find qualifier Co\\x0Al\\x1B[2J\\xC2\\x9B\xc2\xa0\\x",
        Ended(kORVStatusQualifierNotDeclared, 2)}},
      // The refused child's end tag ends the qualifier, which is attached.
      {InClassC("<QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY><VALUE.ARRAY/>"
                "</VALUE.ARRAY></QUALIFIER>"),
       "[ValueMap {}] class C { };",
       {Err("Unexpected element value.array")}},
  });
}

// The flavor attributes set and clear their bits on the default; only the
// lower-case words are booleans.
TEST_F(QualifierStatesTest, FlavorAttributes) {
  const std::pair<const char *, std::uint32_t> cases[] = {
      {"", 3},
      {" TOSUBCLASS=\"false\"", 1},
      {" OVERRIDABLE=\"false\" TOSUBCLASS=\"false\" TRANSLATABLE=\"true\"", 4},
      {" OVERRIDABLE=\"TRUE\"", 2}};
  const std::string description = "<QUALIFIER NAME=\"Description\" TYPE=\"string\"";
  for (const auto &c : cases) {
    Reset();
    const TResult result = Parse(InClassC(description + c.first + "/>"));
    ASSERT_EQ(result.classes.size(), 1u);
    EXPECT_EQ(result.classes[0]->GetQualifier("Description")->GetFlavor(), c.second) << c.first;
  }
}

} // namespace
} // namespace orvtest
