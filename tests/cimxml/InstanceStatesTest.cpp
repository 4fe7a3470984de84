// Instances and the value objects that commit and collect classes and
// instances.
#include "cimxml/states/InstanceStates.h"
#include "cimxml/DeclarationFixture.h"
#include "core_api/OSSpecific.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orvtest {
namespace {

using NVRNORV20::kORVStatusNullObject;
using NVRNORV20::TCIMXMLParser;

const char kPlain[] =
    "<CLASS NAME=\"Plain\"><PROPERTY NAME=\"n\" TYPE=\"uint8\"/>"
    "<PROPERTY NAME=\"s\" TYPE=\"string\"><VALUE>default</VALUE></PROPERTY></CLASS>";

class InstanceStatesTest : public TDeclarationFixture {
protected:
  InstanceStatesTest() { LoadClass(kPlain); }
};

TEST_F(InstanceStatesTest, InstanceIsCreatedFilledCommittedAndCollected) {
  TParseResult result = Load(ObjectDocument(
      {"<INSTANCE CLASSNAME=\"Plain\"><PROPERTY NAME=\"n\" TYPE=\"uint8\"><VALUE>1</VALUE>"
       "</PROPERTY></INSTANCE>",
       "<INSTANCE CLASSNAME=\"Plain\"><PROPERTY NAME=\"s\" TYPE=\"string\"><VALUE>two</VALUE>"
       "</PROPERTY></INSTANCE>"}));
  ASSERT_EQ(result.instances.size(), 2u);
  EXPECT_EQ(result.instances[0]->GetPropertyValue("n").GetUnsigned(), 1u);
  EXPECT_EQ(result.instances[0]->GetPropertyValue("s").GetString(), "default");
  EXPECT_EQ(result.instances[1]->GetPropertyValue("s").GetString(), "two");
  EXPECT_TRUE(result.instances[1]->IsCommitted());
  EXPECT_EQ(ns->GetInstances("Plain", false), result.instances);
  EXPECT_TRUE(result.classes.empty());
}

struct TMissingClassCase {
  const char *why;
  const char *instance;
};

// Without its instance, each property and the value object fail at their
// end, and the next object loads.
TEST_F(InstanceStatesTest, InstanceOfAMissingClassFailsPropertyByProperty) {
  const TMissingClassCase cases[] = {
      {"no class name", "<INSTANCE><PROPERTY NAME=\"n\" TYPE=\"uint8\"/></INSTANCE>"},
      {"unknown class", "<INSTANCE CLASSNAME=\"Nope\"><PROPERTY NAME=\"n\" TYPE=\"uint8\"/>"
                        "</INSTANCE>"},
  };
  for (const TMissingClassCase &test : cases) {
    SCOPED_TRACE(test.why);
    logger.entries.clear();
    TParseResult result = Parse(ObjectDocument({test.instance, "<INSTANCE CLASSNAME=\"Plain\"/>"}));
    EXPECT_EQ(Log(), std::vector<std::string>(2, EndElementError(kORVStatusNullObject)));
    EXPECT_EQ(result.instances.size(), 1u);
  }
}

TEST_F(InstanceStatesTest, QualifierAfterTheFirstPropertyIsUnexpected) {
  TParseResult result = Parse(ObjectDocument(
      {"<INSTANCE CLASSNAME=\"Plain\"><PROPERTY NAME=\"n\" TYPE=\"uint8\"><VALUE>4</VALUE>"
       "</PROPERTY><QUALIFIER NAME=\"Description\"/></INSTANCE>"}));
  EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, "Unexpected element qualifier")});
  ASSERT_EQ(result.instances.size(), 1u);
  EXPECT_EQ(result.instances[0]->GetPropertyValue("n").GetUnsigned(), 4u);
}

// Kept as it is: a qualifier before the properties enters no state, so its
// end tag ends the instance, and a property after it reaches the value
// object.
TEST_F(InstanceStatesTest, QualifierBeforeThePropertiesEndsTheInstance) {
  TParseResult alone =
      Load(ObjectDocument({"<INSTANCE CLASSNAME=\"Plain\"><QUALIFIER NAME=\"Description\" "
                           "TYPE=\"string\"/></INSTANCE>"}));
  EXPECT_EQ(alone.instances.size(), 1u);

  TParseResult followed =
      Parse(ObjectDocument({"<INSTANCE CLASSNAME=\"Plain\"><QUALIFIER NAME=\"Description\"/>"
                            "<PROPERTY NAME=\"n\" TYPE=\"uint8\"/></INSTANCE>"}));
  EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, "Unexpected element property")});
  ASSERT_EQ(followed.instances.size(), 1u);
  EXPECT_TRUE(followed.instances[0]->GetPropertyValue("n").IsNull());
}

TEST_F(InstanceStatesTest, OnlyTheComputerSystemClassSwitchesTheParserMode) {
  NVRNORV20::TOSSpecific::setORVParser(false);
  LoadClass("<CLASS NAME=\"VRNSG_ComputerSystem\"/>");
  Load(ObjectDocument(
      {"<INSTANCE CLASSNAME=\"Plain\"/>", "<INSTANCE CLASSNAME=\"vrnsg_computersystem\"/>"}));
  EXPECT_FALSE(NVRNORV20::TOSSpecific::getORVParser());
  Load(ObjectDocument({"<INSTANCE CLASSNAME=\"VRNSG_ComputerSystem\"/>"}));
  EXPECT_TRUE(NVRNORV20::TOSSpecific::getORVParser());
  NVRNORV20::TOSSpecific::setORVParser(false);
}

struct TValueObjectCase {
  const char *why;
  std::string document;
  std::vector<std::string> log;
  std::size_t classes;
};

std::string InGroup(const char *group, const std::string &body) {
  return std::string("<CIM><DECLARATION><") + group + ">" + body + "</" + group +
         "></DECLARATION></CIM>";
}

TEST_F(InstanceStatesTest, ValueObjectsNeedTheirChildrenInOrder) {
  const std::string syntaxError[] = {ParserError(1, "CIM element syntax error"),
                                     EndElementError(NVRNORV20::kORVStatusInvalidDocument)};
  const TValueObjectCase cases[] = {
      {"value object without child",
       InDeclGroup("<VALUE.OBJECT></VALUE.OBJECT>"),
       {syntaxError[0], syntaxError[1]},
       0},
      {"value object with two children",
       InDeclGroup("<VALUE.OBJECT><CLASS NAME=\"A\"/><INSTANCE CLASSNAME=\"Plain\"/>"
                   "</VALUE.OBJECT>"),
       {ParserError(1, "Unexpected element instance")},
       1},
      {"named object with a class",
       InGroup("DECLGROUP.WITHNAME", "<VALUE.NAMEDOBJECT><CLASS NAME=\"A\"/></VALUE.NAMEDOBJECT>"),
       {},
       1},
      {"named object with an instance and no name",
       InGroup("DECLGROUP.WITHNAME",
               "<VALUE.NAMEDOBJECT><INSTANCE CLASSNAME=\"Plain\"/></VALUE.NAMEDOBJECT>"),
       {ParserError(1, "Unexpected element instance"), syntaxError[0], syntaxError[1]},
       0},
      {"object with path holding a bare class",
       InGroup("DECLGROUP.WITHPATH",
               "<VALUE.OBJECTWITHPATH><CLASS NAME=\"A\"/></VALUE.OBJECTWITHPATH>"),
       {ParserError(1, "Unexpected element class"), syntaxError[0], syntaxError[1]},
       0},
      {"object with local path holding a bare instance",
       InGroup("DECLGROUP.WITHPATH", "<VALUE.OBJECTWITHLOCALPATH><INSTANCE CLASSNAME=\"Plain\"/>"
                                     "</VALUE.OBJECTWITHLOCALPATH>"),
       {ParserError(1, "Unexpected element instance"), syntaxError[0], syntaxError[1]},
       0},
  };
  for (const TValueObjectCase &test : cases) {
    SCOPED_TRACE(test.why);
    ns = NVRNORV20::CreateCIMNamespace("root/test");
    LoadClass(kPlain);
    TParseResult result = Parse(test.document);
    EXPECT_EQ(Log(), test.log);
    EXPECT_EQ(result.classes.size(), test.classes);
    logger.entries.clear();
  }
}

struct TValueObjectState {
  const char *name;
  std::function<std::unique_ptr<TCIMXMLParser::TParseState>()> make;
  std::int32_t lastPhase;
};

// The end is checked on the states themselves for every kind, also those
// whose earlier children arrive with paths.
TEST_F(InstanceStatesTest, ValueObjectPhasesAreCheckedAtTheEndAndAtEachChild) {
  const TValueObjectState states[] = {
      {"value.object", [] { return std::make_unique<TCIMXMLParser::TStateValueObject>(); }, 1},
      {"value.namedinstance",
       [] { return std::make_unique<TCIMXMLParser::TStateValueNamedInstance>(); }, 2},
      {"value.namedobject",
       [] { return std::make_unique<TCIMXMLParser::TStateValueNamedObject>(); }, 2},
      {"value.objectwithpath",
       [] { return std::make_unique<TCIMXMLParser::TStateValueObjectWithPath>(); }, 3},
      {"value.objectwithlocalpath",
       [] { return std::make_unique<TCIMXMLParser::TStateValueObjectWithLocalPath>(); }, 3},
  };
  TCIMXMLParser parser(ns);
  TCIMXMLParser::TParseState::TAttributes attributes;
  for (const TValueObjectState &test : states) {
    SCOPED_TRACE(test.name);
    logger.entries.clear();
    auto ended = test.make();
    ended->phase = test.lastPhase - 1;
    EXPECT_THROW(ended->ElementEnd(parser, test.name), NVRNORV20::TORVException);
    auto corrupt = test.make();
    corrupt->phase = test.lastPhase + 1;
    EXPECT_THROW(corrupt->ChildElement(parser, "instance", attributes), NVRNORV20::TORVException);
    auto finished = test.make();
    finished->phase = test.lastPhase;
    EXPECT_THROW(finished->ChildElement(parser, "class", attributes), NVRNORV20::TORVException);
    EXPECT_EQ(Log(), (std::vector<std::string>{ParserError(1, "CIM element syntax error"),
                                               ParserError(1, "Parser state corrupt"),
                                               ParserError(1, "Unexpected element class")}));
  }
}

} // namespace
} // namespace orvtest
