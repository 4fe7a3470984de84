// Qualifier declarations: attributes, the scope-first rule, the
// consistency checks and declarations made twice.
#include "cimxml/states/QualifierDeclStates.h"
#include "cimxml/DeclarationFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvtest {
namespace {

using NVRNORV20::ECIMType;
using NVRNORV20::TCIMValue;
using NVRNORV20::TCIMXMLParser;

class QualifierDeclStatesTest : public TParserFixture {
protected:
  /// Parses one declaration named Q in its own group.
  TParseResult Declare(const std::string &attributes, const std::string &children) {
    return Parse(InDeclGroup("<QUALIFIER.DECLARATION NAME=\"Q\"" + attributes + ">" + children +
                             "</QUALIFIER.DECLARATION>"));
  }

  boost::shared_ptr<NVRNORV20::ICIMQualifierDecl> Declared() { return ns->GetQualifierDecl("Q"); }
};

TEST_F(QualifierDeclStatesTest, DeclarationHasItsTypeDefaultScopeAndFlavor) {
  Declare(" TYPE=\"uint32\" OVERRIDABLE=\"false\" TRANSLATABLE=\"true\"",
          "<SCOPE PROPERTY=\"true\" METHOD=\"true\"/><VALUE>5</VALUE>");
  EXPECT_TRUE(Log().empty());
  auto declaration = Declared();
  EXPECT_EQ(declaration->GetName(), "Q");
  EXPECT_EQ(static_cast<ECIMType>(declaration->GetType()), NVRNORV20::kCIMTypeUint32);
  EXPECT_EQ(declaration->GetDefaultValue().GetUnsigned(), 5u);
  EXPECT_EQ(declaration->GetScope(), 0x28u);
  EXPECT_EQ(declaration->GetFlavor(), 6u);
  EXPECT_TRUE(declaration->IsCommitted());
}

TEST_F(QualifierDeclStatesTest, DeclarationWithoutChildrenIsTypedByItsAttributes) {
  Declare(" TYPE=\"string\" ISARRAY=\"true\" ARRAYSIZE=\"3\" COLOUR=\"blue\"", "");
  EXPECT_TRUE(Log().empty());
  auto declaration = Declared();
  EXPECT_EQ(declaration->GetScope(), 0u);
  EXPECT_EQ(declaration->GetFlavor(), 3u);
  TCIMValue value = declaration->GetDefaultValue();
  EXPECT_TRUE(value.IsNull());
  // The array flag is not added to a default made from the attributes.
  EXPECT_EQ(static_cast<ECIMType>(value.GetType()), NVRNORV20::kCIMTypeString);
  EXPECT_FALSE(declaration->IsArray());
}

struct TScopeCase {
  const char *attributes;
  std::uint32_t scope;
};

TEST_F(QualifierDeclStatesTest, ScopeAttributesSetTheirBitsWhateverTheirValue) {
  const TScopeCase cases[] = {
      {"", 0},
      {" CLASS=\"true\" PROPERTY=\"false\"", 0x09},
      {" ASSOCIATION=\"x\" REFERENCE=\"\"", 0x12},
      {" ANY=\"true\" INDICATION=\"true\" OTHER=\"true\"", 0},
      {" CLASS=\"false\" ASSOCIATION=\"false\" INDICATION=\"false\" PROPERTY=\"false\" "
       "REFERENCE=\"false\" METHOD=\"false\" PARAMETER=\"false\" ANY=\"false\"",
       0x7B},
  };
  for (const TScopeCase &test : cases) {
    SCOPED_TRACE(test.attributes);
    ns = NVRNORV20::CreateCIMNamespace("root/test");
    Declare(" TYPE=\"boolean\"", std::string("<SCOPE") + test.attributes + "/>");
    EXPECT_EQ(Declared()->GetScope(), test.scope);
  }
  EXPECT_TRUE(Log().empty());
}

TEST_F(QualifierDeclStatesTest, ScopeMustComeFirstAndOnlyOnce) {
  Declare(" TYPE=\"boolean\"", "<VALUE>true</VALUE>");
  Declare(" TYPE=\"boolean\"", "<SCOPE CLASS=\"true\"/><SCOPE/>");
  EXPECT_EQ(Log(), (std::vector<std::string>{ParserError(1, "Expected SCOPE element"),
                                             ParserError(1, "Unexpected element scope")}));
}

struct TConsistencyCase {
  const char *why;
  const char *attributes;
  const char *children;
  bool compatible;
};

TEST_F(QualifierDeclStatesTest, ArrayAttributesMustAgreeWithEachOtherAndTheValue) {
  const TConsistencyCase cases[] = {
      {"isarray false with a size", " ISARRAY=\"false\" ARRAYSIZE=\"2\"", "", false},
      {"isarray true with a scalar value", " ISARRAY=\"true\"", "<VALUE>a</VALUE>", false},
      {"isarray false with an array value", " ISARRAY=\"false\"",
       "<VALUE.ARRAY><VALUE>a</VALUE></VALUE.ARRAY>", false},
      {"array value without size", "", "<VALUE.ARRAY><VALUE>a</VALUE></VALUE.ARRAY>", false},
      {"array value without size, isarray true", " ISARRAY=\"true\"",
       "<VALUE.ARRAY><VALUE>a</VALUE></VALUE.ARRAY>", false},
      {"scalar value with a size", " ARRAYSIZE=\"2\"", "<VALUE>a</VALUE>", false},
      {"isarray true with size and array value", " ISARRAY=\"true\" ARRAYSIZE=\"2\"",
       "<VALUE.ARRAY><VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY>", true},
      {"isarray true without value", " ISARRAY=\"true\"", "", true},
      {"isarray false with a scalar value", " ISARRAY=\"false\"", "<VALUE>a</VALUE>", true},
      {"size without isarray or value", " ARRAYSIZE=\"2\"", "", true},
  };
  for (const TConsistencyCase &test : cases) {
    SCOPED_TRACE(test.why);
    ns = NVRNORV20::CreateCIMNamespace("root/test");
    logger.entries.clear();
    Declare(std::string(" TYPE=\"string\"") + test.attributes,
            std::string("<SCOPE PROPERTY=\"true\"/>") + test.children);
    if (test.compatible) {
      EXPECT_TRUE(Log().empty());
      EXPECT_TRUE(ns->GetQualifierDecls().size() == 1);
    } else {
      // Raised at the end tag, so the frame logs it a second time.
      EXPECT_EQ(Log(),
                (std::vector<std::string>{ParserError(1, "Incompatible attributes"),
                                          EndElementError(NVRNORV20::kORVStatusInvalidDocument)}));
      EXPECT_TRUE(ns->GetQualifierDecls().empty());
    }
  }
}

TEST_F(QualifierDeclStatesTest, ArrayDefaultKeepsItsElements) {
  Declare(" TYPE=\"string\" ISARRAY=\"true\" ARRAYSIZE=\"2\"",
          "<SCOPE PROPERTY=\"true\"/><VALUE.ARRAY><VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY>");
  TCIMValue value = Declared()->GetDefaultValue();
  EXPECT_TRUE(value.IsArray());
  EXPECT_EQ(value.ToString(), "a, b");
  EXPECT_TRUE(Declared()->IsArray());
}

TEST_F(QualifierDeclStatesTest, SecondDeclarationOfANameIsSkippedSilently) {
  Declare(" TYPE=\"boolean\"", "<SCOPE CLASS=\"true\"/><VALUE>true</VALUE>");
  Declare(" TYPE=\"string\"", "<SCOPE PROPERTY=\"true\"/>");
  EXPECT_TRUE(Log().empty());
  EXPECT_EQ(static_cast<ECIMType>(Declared()->GetType()), NVRNORV20::kCIMTypeBoolean);
  // The state still left the stack: the group goes on after it.
  Parse(
      InDeclGroup("<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"uint8\"><SCOPE/>"
                  "</QUALIFIER.DECLARATION><VALUE.OBJECT><CLASS NAME=\"After\"/></VALUE.OBJECT>"));
  EXPECT_TRUE(ns->HasClass("After"));
  EXPECT_TRUE(Log().empty());
}

TEST_F(QualifierDeclStatesTest, PhaseBeyondTheValuesIsCorrupt) {
  TCIMXMLParser parser(ns);
  TCIMXMLParser::TStateQualifierDeclaration state;
  TCIMXMLParser::TParseState::TAttributes attributes;
  state.phase = 2;
  EXPECT_THROW(state.ChildElement(parser, "value", attributes), NVRNORV20::TORVException);
  EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, "Parser state corrupt")});
}

} // namespace
} // namespace orvtest
