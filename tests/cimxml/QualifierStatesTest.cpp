// Qualifiers (declared type, flavors, propagated ones, undeclared ones) and
// the value states that carry their values.
#include "cimxml/DeclarationFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvtest {
namespace {

using NVRNORV20::ECIMType;
using NVRNORV20::ICIMClass;
using NVRNORV20::TCIMValue;

class QualifierStatesTest : public TDeclarationFixture {
protected:
  /// Loads a class that carries the qualifier elements, returns the class.
  boost::shared_ptr<ICIMClass> Qualified(const std::string &qualifiers) {
    return LoadClass("<CLASS NAME=\"C" + std::to_string(++made) + "\">" + qualifiers + "</CLASS>");
  }

  int made = 0;
};

struct TFlavorCase {
  const char *attributes;
  std::uint32_t flavor;
};

TEST_F(QualifierStatesTest, FlavorAttributesSetAndClearTheirBitsOnTheDefault) {
  const TFlavorCase cases[] = {
      {"", 3},
      {" TOSUBCLASS=\"false\"", 1},
      {" TRANSLATABLE=\"true\"", 7},
      {" OVERRIDABLE=\"false\"", 2},
      {" OVERRIDABLE=\"true\" TOSUBCLASS=\"true\" TRANSLATABLE=\"false\"", 3},
      {" OVERRIDABLE=\"false\" TOSUBCLASS=\"false\" TRANSLATABLE=\"true\"", 4},
      // Only the lower-case words are booleans; anything else is false.
      {" OVERRIDABLE=\"TRUE\"", 2},
  };
  for (const TFlavorCase &test : cases) {
    SCOPED_TRACE(test.attributes);
    auto cls = Qualified(std::string("<QUALIFIER NAME=\"Description\" TYPE=\"string\"") +
                         test.attributes + "><VALUE>d</VALUE></QUALIFIER>");
    ASSERT_TRUE(cls);
    EXPECT_EQ(cls->GetQualifier("Description")->GetFlavor(), test.flavor);
  }
}

TEST_F(QualifierStatesTest, ValueIsReadAsTheTypeAttributeAndAttached) {
  auto cls =
      Qualified("<QUALIFIER NAME=\"Description\" TYPE=\"string\">"
                "<VALUE>fish &amp; chips</VALUE></QUALIFIER>"
                "<QUALIFIER NAME=\"MaxValue\" TYPE=\"sint64\"><VALUE>-12</VALUE></QUALIFIER>");
  ASSERT_TRUE(cls);
  EXPECT_EQ(cls->GetQualifier("Description")->GetValue().GetString(), "fish & chips");
  EXPECT_EQ(cls->GetQualifier("MaxValue")->GetValue().GetSigned(), -12);
  EXPECT_EQ(cls->GetQualifiers().size(), 2u);
}

TEST_F(QualifierStatesTest, WithoutValueTheQualifierIsAnEmptyValueOfTheDeclaredType) {
  auto cls = Qualified("<QUALIFIER NAME=\"MaxValue\" TYPE=\"string\"/>");
  ASSERT_TRUE(cls);
  TCIMValue value = cls->GetQualifier("MaxValue")->GetValue();
  EXPECT_TRUE(value.IsNull());
  EXPECT_EQ(static_cast<ECIMType>(value.GetType()), NVRNORV20::kCIMTypeSint64);
}

TEST_F(QualifierStatesTest, PropagatedQualifiersAreReadButNotAttached) {
  auto cls = Qualified("<QUALIFIER NAME=\"Description\" TYPE=\"string\" PROPAGATED=\"true\">"
                       "<VALUE>inherited</VALUE></QUALIFIER>"
                       "<QUALIFIER NAME=\"MaxValue\" TYPE=\"sint64\" PROPAGATED=\"false\">"
                       "<VALUE>1</VALUE></QUALIFIER>");
  ASSERT_TRUE(cls);
  EXPECT_FALSE(cls->HasQualifier("Description"));
  EXPECT_TRUE(cls->HasQualifier("MaxValue"));
}

TEST_F(QualifierStatesTest, UndeclaredQualifierIsLoggedAndDropped) {
  TParseResult result = Parse(ObjectDocument(
      {"<CLASS NAME=\"C\"><QUALIFIER NAME=\"Colour\" TYPE=\"string\"><VALUE>red</VALUE>"
       "</QUALIFIER><QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>d</VALUE>"
       "</QUALIFIER></CLASS>"}));
  EXPECT_EQ(Log(),
            (std::vector<std::string>{"TCIMXMLParser: Couldn't find qualifier Colour",
                                      EndElementError(NVRNORV20::kORVStatusQualifierNotDeclared)}));
  EXPECT_EQ(logger.entries.at(0).first, 3);
  ASSERT_EQ(result.classes.size(), 1u);
  EXPECT_FALSE(result.classes[0]->HasQualifier("Colour"));
  EXPECT_TRUE(result.classes[0]->HasQualifier("Description"));
}

TEST_F(QualifierStatesTest, ArrayValuesAndTheLastValueChildWins) {
  auto cls = Qualified("<QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY>"
                       "<VALUE>0</VALUE><VALUE>1</VALUE><VALUE>..</VALUE></VALUE.ARRAY></QUALIFIER>"
                       "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE.ARRAY>"
                       "<VALUE>x</VALUE></VALUE.ARRAY><VALUE>last</VALUE></QUALIFIER>");
  ASSERT_TRUE(cls);
  TCIMValue map = cls->GetQualifier("ValueMap")->GetValue();
  EXPECT_TRUE(map.IsArray());
  EXPECT_EQ(map.ToString(), "0, 1, ..");
  EXPECT_EQ(cls->GetQualifier("Description")->GetValue().GetString(), "last");
}

TEST_F(QualifierStatesTest, EmptyValueArrayIsAnArrayWithoutElements) {
  auto cls = Qualified("<QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY/></QUALIFIER>");
  ASSERT_TRUE(cls);
  TCIMValue map = cls->GetQualifier("ValueMap")->GetValue();
  EXPECT_TRUE(map.IsArray());
  EXPECT_FALSE(map.IsNull());
  EXPECT_TRUE(map.GetElements().empty());
}

// Text between elements stays in the parser's buffer until a value state
// empties it.
TEST_F(QualifierStatesTest, TextBeforeTheValueIsNotPartOfIt) {
  auto cls = Qualified("<QUALIFIER NAME=\"Description\" TYPE=\"string\">\n  stray text\n"
                       "  <VALUE>  kept  </VALUE>\n</QUALIFIER>\n"
                       "<QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY>\n"
                       "<VALUE>a</VALUE>\n<VALUE>b</VALUE>\n</VALUE.ARRAY></QUALIFIER>");
  ASSERT_TRUE(cls);
  EXPECT_EQ(cls->GetQualifier("Description")->GetValue().GetString(), "  kept  ");
  EXPECT_EQ(cls->GetQualifier("ValueMap")->GetValue().ToString(), "a, b");
}

// A value element enters no child: the child's end tag ends the value with
// the text read so far, and the value's own end tag then ends its parent.
TEST_F(QualifierStatesTest, ElementInsideAValueEndsTheValue) {
  auto cls = Qualified("<QUALIFIER NAME=\"Description\" TYPE=\"string\">"
                       "<VALUE>before<B/>after</VALUE></QUALIFIER>");
  ASSERT_TRUE(cls);
  EXPECT_EQ(cls->GetQualifier("Description")->GetValue().GetString(), "before");
}

struct TChildCase {
  const char *qualifier;
  const char *error;
};

TEST_F(QualifierStatesTest, QualifiersAndValueArraysTakeOnlyValues) {
  const TChildCase cases[] = {
      {"<QUALIFIER NAME=\"Description\" TYPE=\"string\"><PROPERTY/></QUALIFIER>",
       "Unexpected element property"},
      {"<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE.REFERENCE/></QUALIFIER>",
       "Unexpected element value.reference"},
      {"<QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY><VALUE.ARRAY/></VALUE.ARRAY>"
       "</QUALIFIER>",
       "Unexpected element value.array"},
  };
  for (const TChildCase &test : cases) {
    SCOPED_TRACE(test.qualifier);
    logger.entries.clear();
    TParseResult result = Parse(ObjectDocument(
        {"<CLASS NAME=\"C" + std::to_string(++made) + "\">" + test.qualifier + "</CLASS>"}));
    EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, test.error)});
    EXPECT_EQ(result.classes.size(), 1u);
  }
}

} // namespace
} // namespace orvtest
