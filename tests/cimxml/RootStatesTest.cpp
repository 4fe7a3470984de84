// The root element, DECLARATION and the declaration groups. A refused child
// is an empty element here: its end tag closes the group early, as for every
// refused element, so one line is the whole story.
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using RootStatesTest = TParserFixture;

TEST_F(RootStatesTest, DeclarationsAndGroups) {
  const std::string a = "<VALUE.OBJECT><CLASS NAME=\"A\"/></VALUE.OBJECT>";
  Check({
      // Declarations and groups repeat and mix, in document order; the
      // root's name is taken in any case, its attributes unread.
      {"<Cim CIMVERSION=\"9\"><DECLARATION><DeclGroup><QUALIFIER.DECLARATION NAME=\"Q\" "
       "TYPE=\"boolean\"><SCOPE CLASS=\"true\"/></QUALIFIER.DECLARATION>" +
           a +
           "</DeclGroup><DECLGROUP.WITHNAME><VALUE.NAMEDOBJECT><CLASS NAME=\"C\"/>"
           "</VALUE.NAMEDOBJECT></DECLGROUP.WITHNAME><DECLGROUP.WITHPATH/></DECLARATION>"
           "<DECLARATION><DECLGROUP/></DECLARATION></Cim>",
       "Qualifier Q : boolean, Scope(class), Flavor(EnableOverride, ToSubclass); class A { }; "
       "class C { };",
       {},
       "A C |"},
      {"<DECLARATION/>", "", {Err("Unexpected element declaration")}},
      {InDeclGroup(a + "<QUALIFIER.DECLARATION NAME=\"Q\"/>"),
       "class A { };",
       {Err("Unexpected element qualifier.declaration")}},
      {InDeclGroup("<VALUE.NAMEDOBJECT/>"), "", {Err("Unexpected element value.namedobject")}},
  });
}

} // namespace
} // namespace orvtest
