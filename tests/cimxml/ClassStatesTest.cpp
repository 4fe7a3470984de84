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
       "class Base { string Id; }; [Description(\"a class\")] class Derived : Base { uint64 Size; "
       "uint32 Reset(); };",
       {},
       "Base Derived |"},
      // An element a class does not take ends it: what follows is refused.
      {Objects({"<CLASS NAME=\"A\"><FOO/><PROPERTY NAME=\"P\" TYPE=\"string\"/></CLASS>"}),
       "class A { };",
       {Err("Unexpected element foo"), Err("Unexpected element property"), "(aborted)"}},
      {Objects({"<CLASS NAME=\"C\"><METHOD NAME=\"m\"/><PROPERTY NAME=\"p\"/></CLASS>"}),
       "class C { void m(); };",
       {Err("Unexpected element property")}},
      // When a start tag's object-model call fails (no name, an unknown
      // superclass, a class made twice, a property or method declared twice,
      // an unknown type), each child and end handler that would use the
      // object fails with one line, and the rest of the document loads.
      {Objects({"<CLASS><PROPERTY NAME=\"p\" TYPE=\"uint8\"/></CLASS>"}), "", failed(2), "|"},
      {Objects({"<CLASS NAME=\"Orphan\" SUPERCLASS=\"Nope\"><QUALIFIER NAME=\"Description\" "
                "TYPE=\"string\"><VALUE>d</VALUE></QUALIFIER><PROPERTY NAME=\"p\" TYPE=\"uint8\">"
                "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>"
                "</PROPERTY><PROPERTY.REFERENCE NAME=\"r\"/><METHOD NAME=\"m\" TYPE=\"uint32\">"
                "<PARAMETER NAME=\"x\" TYPE=\"string\"/><PARAMETER.REFERENCE NAME=\"y\"/></METHOD>"
                "</CLASS>",
                "<CLASS NAME=\"Twice\"/>",
                "<CLASS NAME=\"Twice\"><PROPERTY NAME=\"p\" TYPE=\"uint8\"/></CLASS>"}),
       "class Twice { };", failed(10), "Twice |"},
      {Objects({"<CLASS NAME=\"C\"><PROPERTY NAME=\"p\" TYPE=\"uint8\"/><PROPERTY.ARRAY "
                "NAME=\"P\" TYPE=\"string\"><QUALIFIER NAME=\"Description\"/></PROPERTY.ARRAY>"
                "<PROPERTY NAME=\"q\" TYPE=\"unit8\"/><METHOD NAME=\"m\"/><METHOD NAME=\"m\">"
                "<PARAMETER NAME=\"x\" TYPE=\"uint8\"/><PARAMETER.REFARRAY NAME=\"x\"/></METHOD>"
                "</CLASS>"}),
       "class C { uint8 p; void m(); };", failed(6)},
  });
}

// In the full grammar a member that a flattened class repeats from its
// superclass, marked propagated, is the inherited member: the class declares
// nothing of its own, and what the copy says otherwise is a line. A
// qualifier that is not overridable keeps its inherited value.
TEST_F(ClassStatesTest, FullGrammarTakesPropagatedMembersAsInherited) {
  const std::string base =
      "<CLASS NAME=\"Base\"><PROPERTY NAME=\"Id\" TYPE=\"uint8\"><QUALIFIER "
      "NAME=\"Description\" TYPE=\"string\"><VALUE>id</VALUE></QUALIFIER><QUALIFIER "
      "NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\"><VALUE>true</VALUE></QUALIFIER>"
      "<VALUE>1</VALUE></PROPERTY><METHOD NAME=\"Reset\" TYPE=\"uint32\"/></CLASS>";
  const std::string key = "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>";
  const auto sub = [](const std::string &members) {
    return "<CLASS NAME=\"Sub\" SUPERCLASS=\"Base\">" + members + "</CLASS>";
  };
  Check({{Objects({sub("<PROPERTY NAME=\"ID\" TYPE=\"uint8\" PROPAGATED=\"true\" "
                       "CLASSORIGIN=\"base\"><QUALIFIER NAME=\"Description\" "
                       "TYPE=\"string\"><VALUE>id</VALUE></QUALIFIER><VALUE>1</VALUE>"
                       "</PROPERTY><METHOD NAME=\"Reset\" TYPE=\"uint32\" "
                       "PROPAGATED=\"true\"/>")}),
          "class Sub : Base { };"},
         {Objects({sub("<PROPERTY NAME=\"Id\" TYPE=\"uint8\" PROPAGATED=\"true\" "
                       "CLASSORIGIN=\"Other\"><QUALIFIER NAME=\"Description\" "
                       "TYPE=\"string\"><VALUE>new</VALUE></QUALIFIER><VALUE>2</VALUE>"
                       "</PROPERTY><PROPERTY NAME=\"Size\" TYPE=\"uint8\" PROPAGATED=\"true\"/>"
                       "<METHOD NAME=\"Stop\" TYPE=\"uint32\" PROPAGATED=\"true\"/>")}),
          "class Sub : Base { uint8 Size; uint32 Stop(); };",
          {Err("Propagated property Id of class Sub has another default than the inherited "
               "one, which is kept"),
           Err("Propagated property Id of class Sub names class origin Other, but it comes from "
               "Base"),
           Err("Propagated property Id of class Sub: qualifier Description differs from the "
               "inherited one, which is kept"),
           Err("Propagated property Size of class Sub is not in the superclass: it is read as the "
               "class's own"),
           Err("Propagated method Stop of class Sub is not in the superclass: it is read as the "
               "class's own")}},
         // A qualifier that is not overridable may be restated, not changed.
         {Objects({sub("<PROPERTY NAME=\"Id\" TYPE=\"uint8\">" + key +
                       "false</VALUE></QUALIFIER></PROPERTY><PROPERTY NAME=\"Size\" "
                       "TYPE=\"uint8\">" +
                       key + "true</VALUE></QUALIFIER></PROPERTY>")}),
          "class Sub : Base { uint8 Id; [Key] uint8 Size; };",
          {Err("Qualifier Key is not overridable: the inherited value is kept")}}},
        {Objects({base})}, [this](const std::string &xml) { return Parse(xml, kFull); });
}

} // namespace
} // namespace orvtest
