// The root element, "declaration" and the three declaration groups.
#include "cimxml/states/RootStates.h"
#include "cimxml/DeclarationFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvtest {
namespace {

using NVRNORV20::TCIMXMLParser;

const char kClassA[] = "<VALUE.OBJECT><CLASS NAME=\"A\"/></VALUE.OBJECT>";
const char kClassB[] = "<VALUE.OBJECT><CLASS NAME=\"B\"/></VALUE.OBJECT>";
const char kDeclaration[] =
    "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"boolean\"><SCOPE CLASS=\"true\"/>"
    "</QUALIFIER.DECLARATION>";

class RootStatesTest : public TParserFixture {};

TEST_F(RootStatesTest, RootNameIsFoldedAndOnlyCimIsAccepted) {
  for (const char *root : {"CIM", "Cim", "cim"}) {
    SCOPED_TRACE(root);
    std::string tag(root);
    Parse("<" + tag + "><DECLARATION><DECLGROUP>" + kClassA + "</DECLGROUP></DECLARATION></" + tag +
          ">");
    EXPECT_TRUE(ns->HasClass("A"));
    EXPECT_TRUE(Log().empty());
    ns = NVRNORV20::CreateCIMNamespace("root/test");
  }
  Parse("<DECLARATION/>");
  EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, "Unexpected element declaration")});
}

TEST_F(RootStatesTest, AttributesOfTheRootAreNotRead) {
  Load("<CIM CIMVERSION=\"9.9\" DTDVERSION=\"bogus\" OTHER=\"x\"><DECLARATION><DECLGROUP>" +
       std::string(kClassA) + "</DECLGROUP></DECLARATION></CIM>");
  EXPECT_TRUE(ns->HasClass("A"));
}

TEST_F(RootStatesTest, DeclarationsAndGroupsRepeatAndMixInDocumentOrder) {
  TParseResult result =
      Load(std::string("<CIM><DECLARATION><DeclGroup>") + kDeclaration + kClassA +
           "</DeclGroup><DECLGROUP.WITHNAME><VALUE.NAMEDOBJECT><CLASS NAME=\"C\"/>"
           "</VALUE.NAMEDOBJECT></DECLGROUP.WITHNAME><DECLGROUP/></DECLARATION>"
           "<DECLARATION><DECLGROUP>" +
           kClassB + "</DECLGROUP></DECLARATION></CIM>");
  ASSERT_EQ(result.classes.size(), 3u);
  EXPECT_EQ(result.classes[0]->GetName(), "A");
  EXPECT_EQ(result.classes[1]->GetName(), "C");
  EXPECT_EQ(result.classes[2]->GetName(), "B");
  EXPECT_EQ(ns->GetQualifierDecls().size(), 1u);
}

// A rejected child is an empty element here, so that the one error line is
// the whole story; its end tag then closes the group early, as the frame
// does for every rejected element.
struct TGroupCase {
  const char *why;
  std::string document;
  std::string error;
};

TEST_F(RootStatesTest, GroupContentModels) {
  const TGroupCase cases[] = {
      {"qualifier declaration after a value object",
       InDeclGroup(std::string(kClassA) + "<QUALIFIER.DECLARATION NAME=\"Q\"/>"),
       "Unexpected element qualifier.declaration"},
      {"named object in an unnamed group", InDeclGroup("<VALUE.NAMEDOBJECT/>"),
       "Unexpected element value.namedobject"},
      {"object with path in an unnamed group", InDeclGroup("<VALUE.OBJECTWITHPATH/>"),
       "Unexpected element value.objectwithpath"},
      {"plain value object in a named group",
       "<CIM><DECLARATION><DECLGROUP.WITHNAME><VALUE.OBJECT/></DECLGROUP.WITHNAME>"
       "</DECLARATION></CIM>",
       "Unexpected element value.object"},
      {"qualifier declaration after a named object",
       "<CIM><DECLARATION><DECLGROUP.WITHNAME><VALUE.NAMEDOBJECT><CLASS NAME=\"A\"/>"
       "</VALUE.NAMEDOBJECT><QUALIFIER.DECLARATION/></DECLGROUP.WITHNAME></DECLARATION></CIM>",
       "Unexpected element qualifier.declaration"},
      {"qualifier declaration in a group with paths",
       "<CIM><DECLARATION><DECLGROUP.WITHPATH><QUALIFIER.DECLARATION/></DECLGROUP.WITHPATH>"
       "</DECLARATION></CIM>",
       "Unexpected element qualifier.declaration"},
      {"plain value object in a group with paths",
       "<CIM><DECLARATION><DECLGROUP.WITHPATH><VALUE.OBJECT/></DECLGROUP.WITHPATH>"
       "</DECLARATION></CIM>",
       "Unexpected element value.object"},
      {"class directly in a group", InDeclGroup("<CLASS NAME=\"A\"/>"), "Unexpected element class"},
      {"group directly in the root", "<CIM><DECLGROUP/></CIM>", "Unexpected element declgroup"},
      {"unknown element in declaration", "<CIM><DECLARATION><DECLGROUPS/></DECLARATION></CIM>",
       "Unexpected element declgroups"},
  };
  for (const TGroupCase &test : cases) {
    SCOPED_TRACE(test.why);
    ns = NVRNORV20::CreateCIMNamespace("root/test");
    logger.entries.clear();
    Parse(test.document);
    EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, test.error)});
  }
}

TEST_F(RootStatesTest, EmptyGroupsAreAccepted) {
  TParseResult result = Load("<CIM><DECLARATION><DECLGROUP/><DECLGROUP.WITHNAME/>"
                             "<DECLGROUP.WITHPATH/></DECLARATION></CIM>");
  EXPECT_TRUE(result.classes.empty());
}

// The rest of a group's content model is seen on the states themselves: a
// rejected child's end tag pops the group, so a document cannot show what
// the group would have accepted next.
class GroupPhaseTest : public RootStatesTest {
protected:
  GroupPhaseTest() : parser(ns) {}

  /// Offers a child to the group; true when it was accepted.
  bool Offer(TCIMXMLParser::TParseState &group, const std::string &child) {
    TCIMXMLParser::TParseState::TAttributes attributes;
    try {
      group.ChildElement(parser, child, attributes);
      return true;
    } catch (const NVRNORV20::TORVException &) {
      return false;
    }
  }

  TCIMXMLParser parser;
};

TEST_F(GroupPhaseTest, AChildThatNoPhaseTakesMovesTheGroupToItsLastPhase) {
  TCIMXMLParser::TStateDeclGroup group;
  EXPECT_FALSE(Offer(group, "instance"));
  EXPECT_EQ(group.phase, 2);
  EXPECT_FALSE(Offer(group, "qualifier.declaration"));
  EXPECT_EQ(Log(),
            (std::vector<std::string>{ParserError(1, "Unexpected element instance"),
                                      ParserError(1, "Unexpected element qualifier.declaration")}));
}

TEST_F(GroupPhaseTest, QualifierDeclarationsKeepTheGroupInPhaseOne) {
  TCIMXMLParser::TStateDeclGroupWithName group;
  ASSERT_TRUE(Offer(group, "qualifier.declaration"));
  ASSERT_TRUE(Offer(group, "qualifier.declaration"));
  EXPECT_EQ(group.phase, 1);
  ASSERT_TRUE(Offer(group, "value.namedobject"));
  EXPECT_EQ(group.phase, 2);
  EXPECT_TRUE(Log().empty());
}

TEST_F(GroupPhaseTest, PhasesBeyondTheContentModelAreCorrupt) {
  TCIMXMLParser::TStateDeclGroup group;
  group.phase = 3;
  EXPECT_FALSE(Offer(group, "value.object"));
  TCIMXMLParser::TStateDeclGroupWithName named;
  named.phase = -1;
  EXPECT_FALSE(Offer(named, "value.namedobject"));
  EXPECT_EQ(Log(), (std::vector<std::string>{ParserError(1, "Parser state corrupt"),
                                             ParserError(1, "Parser state corrupt")}));
}

} // namespace
} // namespace orvtest
