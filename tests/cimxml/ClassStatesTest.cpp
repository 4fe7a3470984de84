// Classes: made at the start tag with the superclass looked up, the
// three-phase content model (qualifiers, properties, methods), and the
// children of a class that could not be made.
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using ClassStatesTest = TParserFixture;

TEST_F(ClassStatesTest, ContentModel) {
  const auto failed = [](std::size_t count) {
    return std::vector<std::string>(count, Ended(kORVStatusNullObject));
  };
  Check({
      {Objects({"<CLASS NAME=\"Base\"><PROPERTY NAME=\"Id\" TYPE=\"string\"/></CLASS>",
                "<CLASS Name=\"Derived\" SuperClass=\"Base\" Colour=\"red\"><QUALIFIER "
                "NAME=\"Description\" TYPE=\"string\"><VALUE>a class</VALUE></QUALIFIER><PROPERTY "
                "NAME=\"Size\" TYPE=\"uint64\"/><METHOD NAME=\"Reset\" TYPE=\"uint32\"/></CLASS>"}),
       {},
       "class Base { string Id; }; [Description(\"a class\")] class Derived : Base { uint64 Size; "
       "uint32 Reset(); };",
       "Base Derived |"},
      // An element a class does not take ends it: what follows is refused.
      {Objects({"<CLASS NAME=\"A\"><FOO/><PROPERTY NAME=\"P\" TYPE=\"string\"/></CLASS>"}),
       {Err("Unexpected element foo"), Err("Unexpected element property"), "(aborted)"},
       "class A { };"},
      {Objects({"<CLASS NAME=\"C\"><METHOD NAME=\"m\"/><PROPERTY NAME=\"p\"/></CLASS>"}),
       {Err("Unexpected element property")},
       "class C { void m(); };"},
      // When a start tag's object-model call fails (no name, an unknown
      // superclass, a class made twice, a property or method declared twice,
      // an unknown type), each child and end handler that would use the
      // object fails with one line, and the rest of the document loads.
      {Objects({"<CLASS><PROPERTY NAME=\"p\" TYPE=\"uint8\"/></CLASS>"}), failed(2), "", "|"},
      {Objects({"<CLASS NAME=\"Orphan\" SUPERCLASS=\"Nope\"><QUALIFIER NAME=\"Description\" "
                "TYPE=\"string\"><VALUE>d</VALUE></QUALIFIER><PROPERTY NAME=\"p\" TYPE=\"uint8\">"
                "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>"
                "</PROPERTY><PROPERTY.REFERENCE NAME=\"r\"/><METHOD NAME=\"m\" TYPE=\"uint32\">"
                "<PARAMETER NAME=\"x\" TYPE=\"string\"/><PARAMETER.REFERENCE NAME=\"y\"/></METHOD>"
                "</CLASS>",
                "<CLASS NAME=\"Twice\"/>",
                "<CLASS NAME=\"Twice\"><PROPERTY NAME=\"p\" TYPE=\"uint8\"/></CLASS>"}),
       failed(10), "class Twice { };", "Twice |"},
      {Objects({"<CLASS NAME=\"C\"><PROPERTY NAME=\"p\" TYPE=\"uint8\"/><PROPERTY.ARRAY "
                "NAME=\"P\" TYPE=\"string\"><QUALIFIER NAME=\"Description\"/></PROPERTY.ARRAY>"
                "<PROPERTY NAME=\"q\" TYPE=\"unit8\"/><METHOD NAME=\"m\"/><METHOD NAME=\"m\">"
                "<PARAMETER NAME=\"x\" TYPE=\"uint8\"/><PARAMETER.REFARRAY NAME=\"x\"/></METHOD>"
                "</CLASS>"}),
       failed(6), "class C { uint8 p; void m(); };"},
  });
}

} // namespace
} // namespace orvtest
