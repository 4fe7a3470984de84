// Classes: creation at the start tag with the superclass looked up, the
// three-phase content model, and children of a class whose start failed.
#include "cimxml/states/ClassStates.h"
#include "cimxml/DeclarationFixture.h"
#include "cimxml/MockNamespace.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvtest {
namespace {

using NVRNORV20::ICIMClass;
using NVRNORV20::kORVStatusNullObject;
using NVRNORV20::TCIMXMLParser;
using ::testing::_;

class ClassStatesTest : public TDeclarationFixture {};

TEST_F(ClassStatesTest, ClassIsBuiltWithItsSuperclassQualifiersPropertiesAndMethods) {
  LoadClass("<CLASS NAME=\"Base\"><PROPERTY NAME=\"Id\" TYPE=\"string\"/></CLASS>");
  auto cls =
      LoadClass("<CLASS NAME=\"Derived\" SUPERCLASS=\"Base\">"
                "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>a class</VALUE></QUALIFIER>"
                "<PROPERTY NAME=\"Size\" TYPE=\"uint64\"/>"
                "<METHOD NAME=\"Reset\" TYPE=\"uint32\"/></CLASS>");
  ASSERT_TRUE(cls);
  EXPECT_EQ(cls->GetName(), "Derived");
  EXPECT_EQ(cls->GetSuperClassName(), "Base");
  EXPECT_EQ(cls->GetSuperClass(), ns->GetClass("Base"));
  EXPECT_EQ(cls->GetQualifier("Description")->GetValue().GetString(), "a class");
  EXPECT_TRUE(cls->HasProperty("Id"));
  EXPECT_EQ(cls->GetLocalProperties().size(), 1u);
  EXPECT_TRUE(cls->HasMethod("Reset"));
  EXPECT_TRUE(cls->IsCommitted());
}

TEST_F(ClassStatesTest, AttributeNamesAreFoldedAndUnknownOnesIgnored) {
  LoadClass("<CLASS NAME=\"Base\"/>");
  auto cls = LoadClass("<CLASS Name=\"Derived\" SuperClass=\"Base\" Colour=\"red\"/>");
  ASSERT_TRUE(cls);
  EXPECT_EQ(cls->GetName(), "Derived");
  EXPECT_EQ(cls->GetSuperClassName(), "Base");
}

TEST_F(ClassStatesTest, EmptyClassIsCreatedAndCollected) {
  auto cls = LoadClass("<CLASS NAME=\"Empty\"></CLASS>");
  ASSERT_TRUE(cls);
  EXPECT_EQ(ns->GetClass("Empty"), cls);
  EXPECT_TRUE(cls->GetLocalProperties().empty());
}

TEST_F(ClassStatesTest, PropertyKindsAlternateFreelyBeforeTheFirstMethod) {
  auto cls =
      LoadClass("<CLASS NAME=\"Mixed\"><PROPERTY NAME=\"a\" TYPE=\"uint8\"/>"
                "<PROPERTY.REFERENCE NAME=\"b\"/><PROPERTY.ARRAY NAME=\"c\" TYPE=\"string\"/>"
                "<PROPERTY NAME=\"d\" TYPE=\"boolean\"/><METHOD NAME=\"m\"/>"
                "<METHOD NAME=\"n\"/></CLASS>");
  ASSERT_TRUE(cls);
  std::vector<std::string> names;
  for (const auto &property : cls->GetLocalProperties())
    names.push_back(property->GetName());
  EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "c", "d"}));
  EXPECT_EQ(cls->GetLocalMethods().size(), 2u);
}

struct TContentCase {
  const char *why;
  const char *children;
  const char *error;
};

// Each rejected child is an empty element: its end tag then ends the class,
// whose value object commits it, so the class itself still loads.
TEST_F(ClassStatesTest, ChildrenOfAnEarlierKindAfterALaterOneAreUnexpected) {
  const TContentCase cases[] = {
      {"qualifier after a property",
       "<PROPERTY NAME=\"p\" TYPE=\"uint8\"/><QUALIFIER NAME=\"Description\" TYPE=\"string\"/>",
       "Unexpected element qualifier"},
      {"qualifier after a method", "<METHOD NAME=\"m\"/><QUALIFIER NAME=\"Description\"/>",
       "Unexpected element qualifier"},
      {"property array after a method",
       "<METHOD NAME=\"m\"/><PROPERTY.ARRAY NAME=\"a\" TYPE=\"uint8\"/>",
       "Unexpected element property.array"},
      {"property after a method", "<METHOD NAME=\"m\"/><PROPERTY NAME=\"p\" TYPE=\"uint8\"/>",
       "Unexpected element property"},
      {"instance in a class", "<INSTANCE CLASSNAME=\"C\"/>", "Unexpected element instance"},
      {"value in a class", "<VALUE/>", "Unexpected element value"},
      {"parameter outside a method", "<PARAMETER NAME=\"x\" TYPE=\"uint8\"/>",
       "Unexpected element parameter"},
  };
  int index = 0;
  for (const TContentCase &test : cases) {
    SCOPED_TRACE(test.why);
    const std::string name = "C" + std::to_string(index++);
    logger.entries.clear();
    TParseResult result =
        Parse(ObjectDocument({"<CLASS NAME=\"" + name + "\">" + test.children + "</CLASS>"}));
    EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, test.error)});
    ASSERT_EQ(result.classes.size(), 1u);
    EXPECT_EQ(result.classes[0]->GetName(), name);
  }
}

TEST_F(ClassStatesTest, PhasesBeyondMethodsAreCorrupt) {
  TCIMXMLParser parser(ns);
  struct {
    boost::shared_ptr<ICIMClass> cls;
    bool isClass = false;
  } owner;
  TCIMXMLParser::TStateClass state(parser, owner);
  TCIMXMLParser::TParseState::TAttributes attributes;
  state.phase = 3;
  EXPECT_THROW(state.ChildElement(parser, "method", attributes), NVRNORV20::TORVException);
  EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, "Parser state corrupt")});
}

// The root class's superclass look-up is made with the empty name.
TEST_F(ClassStatesTest, EveryClassLooksItsSuperclassUpEvenWithoutOne) {
  auto mock = boost::make_shared<::testing::NiceMock<TMockNamespace>>();
  ns = mock;
  {
    ::testing::InSequence order;
    EXPECT_CALL(*mock, GetClass("", _));
    EXPECT_CALL(*mock, CreateClass("Root", boost::shared_ptr<ICIMClass>(), _));
    EXPECT_CALL(*mock, GetClass("Root", _));
    EXPECT_CALL(*mock, CreateClass("Leaf", ::testing::Ne(nullptr), _));
  }
  TParseResult result = Parse(
      ObjectDocument({"<CLASS NAME=\"Root\"/>", "<CLASS NAME=\"Leaf\" SUPERCLASS=\"Root\"/>"}));
  EXPECT_EQ(result.classes.size(), 2u);
  EXPECT_TRUE(Log().empty());
}

TEST_F(ClassStatesTest, ClassWithoutNameIsPassedOnAndRefusedByTheNamespace) {
  TParseResult result =
      Parse(ObjectDocument({"<CLASS><PROPERTY NAME=\"p\" TYPE=\"uint8\"/></CLASS>"}));
  EXPECT_TRUE(result.classes.empty());
  EXPECT_FALSE(result.aborted);
  // The property and the value object find no class.
  EXPECT_EQ(Log(), std::vector<std::string>(2, EndElementError(kORVStatusNullObject)));
}

// When a start tag's object-model call fails, its state stays without its
// object; each child and end handler that would use it fails instead, with
// one logged line, and the rest of the document loads.
struct TEmptyObjectCase {
  const char *why;
  std::string document;
  std::size_t failedEnds;
  std::vector<std::string> loadedClasses;
};

TEST_F(ClassStatesTest, ChildrenOfObjectsThatCouldNotBeMadeFailOneByOne) {
  const TEmptyObjectCase cases[] = {
      {"unknown superclass",
       ObjectDocument(
           {"<CLASS NAME=\"Orphan\" SUPERCLASS=\"Nope\">"
            "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>d</VALUE></QUALIFIER>"
            "<PROPERTY NAME=\"p\" TYPE=\"uint8\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\">"
            "<VALUE>true</VALUE></QUALIFIER></PROPERTY>"
            "<PROPERTY.REFERENCE NAME=\"r\" REFERENCECLASS=\"Orphan\"/>"
            "<METHOD NAME=\"m\" TYPE=\"uint32\"><PARAMETER NAME=\"x\" TYPE=\"string\"/>"
            "<PARAMETER.REFERENCE NAME=\"y\"/></METHOD></CLASS>",
            "<CLASS NAME=\"Good\"/>"}),
       8,
       {"Good"}},
      {"class defined twice",
       ObjectDocument({"<CLASS NAME=\"Twice\"/>",
                       "<CLASS NAME=\"Twice\"><PROPERTY NAME=\"p\" TYPE=\"uint8\"/></CLASS>"}),
       2,
       {"Twice"}},
      {"property declared twice",
       ObjectDocument({"<CLASS NAME=\"Dup\"><PROPERTY NAME=\"p\" TYPE=\"uint8\"/>"
                       "<PROPERTY.ARRAY NAME=\"P\" TYPE=\"string\"><QUALIFIER NAME=\"Description\">"
                       "<VALUE>x</VALUE></QUALIFIER></PROPERTY.ARRAY></CLASS>"}),
       2,
       {"Dup"}},
      {"property of an unknown type",
       ObjectDocument({"<CLASS NAME=\"Typo\"><PROPERTY NAME=\"p\" TYPE=\"unit8\"/></CLASS>"}),
       1,
       {"Typo"}},
      {"method declared twice",
       ObjectDocument(
           {"<CLASS NAME=\"M\"><METHOD NAME=\"m\"/><METHOD NAME=\"m\">"
            "<QUALIFIER NAME=\"Description\"/><PARAMETER.ARRAY NAME=\"x\" TYPE=\"uint8\"/>"
            "</METHOD></CLASS>"}),
       3,
       {"M"}},
      {"parameter declared twice",
       ObjectDocument(
           {"<CLASS NAME=\"P\"><METHOD NAME=\"m\"><PARAMETER NAME=\"x\" TYPE=\"uint8\"/>"
            "<PARAMETER.REFARRAY NAME=\"x\"><QUALIFIER NAME=\"In\"/></PARAMETER.REFARRAY>"
            "</METHOD></CLASS>"}),
       2,
       {"P"}},
  };
  for (const TEmptyObjectCase &test : cases) {
    SCOPED_TRACE(test.why);
    ns = NVRNORV20::CreateCIMNamespace("root/test");
    Load(InDeclGroup(QualifierDeclarations()));
    TParseResult result = Parse(test.document);
    EXPECT_FALSE(result.aborted);
    EXPECT_EQ(Log(),
              std::vector<std::string>(test.failedEnds, EndElementError(kORVStatusNullObject)));
    std::vector<std::string> loaded;
    for (const auto &cls : result.classes)
      loaded.push_back(cls->GetName());
    EXPECT_EQ(loaded, test.loadedClasses);
    logger.entries.clear();
  }
}

} // namespace
} // namespace orvtest
