// Qualifier declarations: attributes, the scope-first rule, the consistency
// checks and declarations made twice.
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using QualifierDeclStatesTest = TParserFixture;

std::string Declaration(const std::string &attributes, const std::string &children) {
  return InDeclGroup("<QUALIFIER.DECLARATION NAME=\"Q\"" + attributes + ">" + children +
                     "</QUALIFIER.DECLARATION>");
}

TEST_F(QualifierDeclStatesTest, Declarations) {
  // An array inconsistency is raised at the end tag, so the frame logs it a
  // second time, and nothing is declared.
  const std::vector<std::string> incompatible = {Err("Incompatible attributes"),
                                                 Ended(kORVStatusInvalidDocument)};
  const std::string scope = "<SCOPE PROPERTY=\"true\"/>";
  const std::string flavor = ", Flavor(EnableOverride, ToSubclass);";
  Check({
      {Declaration(" TYPE=\"uint32\" OVERRIDABLE=\"false\" TRANSLATABLE=\"true\"",
                   "<SCOPE PROPERTY=\"true\" METHOD=\"true\"/><VALUE>5</VALUE>"),
       "Qualifier Q : uint32 = 5, Scope(property, method), Flavor(DisableOverride, ToSubclass, "
       "Translatable);"},
      // Typed by the attributes alone: no array flag for a default made so.
      // Scope attributes set their bits whatever their value; ANY and
      // INDICATION set none.
      {Declaration(" TYPE=\"string\" ISARRAY=\"true\" ARRAYSIZE=\"3\" COLOUR=\"blue\"",
                   "<SCOPE CLASS=\"false\" ASSOCIATION=\"x\" INDICATION=\"true\" REFERENCE=\"\" "
                   "PARAMETER=\"false\" ANY=\"true\"/>"),
       "Qualifier Q : string, Scope(class, association, reference, parameter)" + flavor},
      {Declaration(" TYPE=\"string\" ISARRAY=\"true\" ARRAYSIZE=\"2\"",
                   scope + "<VALUE.ARRAY><VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY>"),
       "Qualifier Q : string[] = {\"a\", \"b\"}, Scope(property)" + flavor},
      // The refused value's end tag ends the declaration, which is made.
      {Declaration(" TYPE=\"boolean\"", "<VALUE>true</VALUE>"),
       "Qualifier Q : boolean" + flavor,
       {Err("Expected SCOPE element")}},
      {Declaration(" TYPE=\"boolean\"", "<SCOPE CLASS=\"true\"/><SCOPE/>"),
       "Qualifier Q : boolean, Scope(class)" + flavor,
       {Err("Unexpected element scope")}},
      {Declaration(" TYPE=\"string\" ISARRAY=\"false\" ARRAYSIZE=\"2\"", scope), "", incompatible},
      {Declaration(" TYPE=\"string\" ISARRAY=\"true\"", scope + "<VALUE>a</VALUE>"), "",
       incompatible},
      {Declaration(" TYPE=\"string\"", scope + "<VALUE.ARRAY><VALUE>a</VALUE></VALUE.ARRAY>"), "",
       incompatible},
      // A second declaration of a name is skipped silently; the group goes on.
      {InDeclGroup("<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"uint8\"><SCOPE/>"
                   "</QUALIFIER.DECLARATION><VALUE.OBJECT><CLASS NAME=\"After\"/></VALUE.OBJECT>"),
       "class After { };"},
  });
}

} // namespace
} // namespace orvtest
