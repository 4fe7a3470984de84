// Properties: the declarations in classes (defaults by kind) and the values
// in instances (type check, QN402 mode, hand-over).
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using PropertyStatesTest = TParserFixture;

TEST_F(PropertyStatesTest, DeclarationsTakeTheirDefaultFromTheValueOrTheKind) {
  Check({
      // The last value wins, qualifiers may stand between; the origin and
      // propagation attributes change nothing.
      {InClassC("<PROPERTY NAME=\"p\" TYPE=\"string\" CLASSORIGIN=\"X\" PROPAGATED=\"true\">"
                "<VALUE>1</VALUE><QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE>"
                "</QUALIFIER><VALUE>2</VALUE></PROPERTY><PROPERTY.ARRAY NAME=\"a\" TYPE=\"uint8\" "
                "ARRAYSIZE=\"4\"/><PROPERTY.ARRAY NAME=\"b\" TYPE=\"sint16\"><VALUE.ARRAY><VALUE>1"
                "</VALUE></VALUE.ARRAY></PROPERTY.ARRAY><PROPERTY.REFERENCE NAME=\"r\" "
                "REFERENCECLASS=\"C\"/><PROPERTY.REFERENCE NAME=\"s\" REFERENCECLASS=\"Nope\"/>"),
       "class C { [Key] string p = \"2\"; uint8 a[4]; sint16 b[] = {1}; C REF r; object REF s; };"},
      // Without TYPE the qualifier's value is read untyped: no value.
      {InClassC("<PROPERTY NAME=\"p\" TYPE=\"string\"><QUALIFIER NAME=\"Key\"><VALUE>true"
                "</VALUE></QUALIFIER></PROPERTY>"),
       "class C { [Key(NULL)] string p; };"},
      // Each kind takes only its own value child; the refused child's end tag
      // ends the property, which still gets its default.
      {InClassC("<PROPERTY.ARRAY NAME=\"p\" TYPE=\"uint8\"><VALUE/></PROPERTY.ARRAY>"),
       "class C { uint8 p[]; };",
       {Err("Unexpected element value")}},
      // Kept as it is: a default that does not read as its type leaves the
      // property without one, and an array element a null, with no line.
      {InClassC("<PROPERTY NAME=\"p\" TYPE=\"uint8\"><VALUE>300</VALUE></PROPERTY><PROPERTY.ARRAY"
                " NAME=\"a\" TYPE=\"uint8\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE>x</VALUE>"
                "</VALUE.ARRAY></PROPERTY.ARRAY>"),
       "class C { void p; uint8 a[] = {1, NULL}; };"},
  });
}

// Thing has a key, scalars with defaults, an array and a reference.
const char kThing[] =
    "<CLASS NAME=\"Thing\"><PROPERTY NAME=\"Id\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
    "TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER></PROPERTY><PROPERTY NAME=\"Count\" "
    "TYPE=\"uint8\"><VALUE>7</VALUE></PROPERTY><PROPERTY NAME=\"Other\" TYPE=\"uint8\"><VALUE>5"
    "</VALUE></PROPERTY><PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"string\"/><PROPERTY.REFERENCE "
    "NAME=\"Peer\" REFERENCECLASS=\"Thing\"/></CLASS>";

std::string Thing(const std::string &properties) {
  return Objects({"<INSTANCE CLASSNAME=\"Thing\"><PROPERTY NAME=\"Id\" TYPE=\"string\"><VALUE>t"
                  "</VALUE></PROPERTY>" +
                  properties + "</INSTANCE>"});
}

TEST_F(PropertyStatesTest, InstanceValues) {
  const std::string typeError = Err("Property type != property declaration type");
  Check(
      {
          // Without a value, or with one that does not read as the type: null.
          {Thing("<PROPERTY NAME=\"Count\" TYPE=\"uint8\"/><PROPERTY NAME=\"Other\" "
                 "TYPE=\"uint8\"><VALUE>300</VALUE></PROPERTY><PROPERTY.ARRAY NAME=\"Tags\" "
                 "TYPE=\"string\"><VALUE.ARRAY><VALUE>x</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
                 "<PROPERTY.REFERENCE NAME=\"Peer\"/>"),
           "instance of Thing { Id = \"t\"; Count = NULL; Other = NULL; Tags = {\"x\"}; Peer = "
           "NULL; };",
           {},
           "| Thing"},
          // Another type is reported, but the value is read as the declared
          // one; a value of another kind is not set.
          {Thing("<PROPERTY NAME=\"Count\" TYPE=\"string\"><VALUE>9</VALUE></PROPERTY>"),
           "instance of Thing { Id = \"t\"; Count = 9; };",
           {typeError}},
          {Thing("<PROPERTY.ARRAY NAME=\"Count\" TYPE=\"uint8\"/>"),
           "instance of Thing { Id = \"t\"; };",
           {typeError, Ended(kORVStatusTypeMismatch)}},
          // Kept as it is: an instance property's qualifier is read as the
          // property's own start tag, so its NAME renames the property, and
          // its end tag ends the property.
          {Thing("<PROPERTY NAME=\"Count\" TYPE=\"uint8\"><QUALIFIER NAME=\"Other\" "
                 "TYPE=\"uint8\"/></PROPERTY>"),
           "instance of Thing { Id = \"t\"; Other = NULL; };"},
          {Thing("<PROPERTY NAME=\"Nope\" TYPE=\"uint8\"/>"),
           "instance of Thing { Id = \"t\"; };",
           {Ended(kORVStatusNoSuchProperty)}},
      },
      {Objects({kThing})});
}

// QN402 mode skips the type check, and sets only a value of the declared
// type: otherwise the default stays.
TEST_F(PropertyStatesTest, QN402ModeNeitherChecksNorReplaces) {
  Check({{Thing("<PROPERTY NAME=\"Count\" TYPE=\"string\"><VALUE>9</VALUE></PROPERTY>"),
          "instance of Thing { Id = \"t\"; Count = 9; };"},
         {Thing("<PROPERTY.REFERENCE NAME=\"Count\"/>"), "instance of Thing { Id = \"t\"; };"},
         {Thing("<PROPERTY NAME=\"Count\" TYPE=\"uint8\"><VALUE>300</VALUE></PROPERTY>"),
          "instance of Thing { Id = \"t\"; };"}},
        {Objects({kThing})}, [this](const std::string &xml) { return Parse(xml, kQN402); });
}

} // namespace
} // namespace orvtest
