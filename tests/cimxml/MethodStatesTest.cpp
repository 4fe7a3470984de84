// Methods and the four parameter kinds with their shared handlers.
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using MethodStatesTest = TParserFixture;

std::string Method(const std::string &children) {
  return Objects(
      {"<CLASS NAME=\"C\"><METHOD NAME=\"m\" TYPE=\"uint32\">" + children + "</METHOD></CLASS>"});
}

TEST_F(MethodStatesTest, MethodsAndParameters) {
  Check({
      // Qualifiers and parameters in any order. An array parameter has its
      // TYPE as written, without the array flag; both reference kinds are
      // written as references to any class. Each kind takes its own value
      // children.
      {Method(
           "<PARAMETER NAME=\"a\" TYPE=\"string\"><QUALIFIER NAME=\"In\" TYPE=\"boolean\">"
           "<VALUE>false</VALUE></QUALIFIER><VALUE>1</VALUE><VALUE.ARRAY/></PARAMETER>"
           "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>go</VALUE></QUALIFIER>"
           "<PARAMETER.ARRAY NAME=\"b\" TYPE=\"uint8\" ARRAYSIZE=\"2\"><QUALIFIER NAME=\"In\"/>"
           "<VALUE.ARRAY><VALUE>2</VALUE></VALUE.ARRAY><VALUE>1</VALUE></PARAMETER.ARRAY>"
           "<PARAMETER.REFERENCE NAME=\"c\" REFERENCECLASS=\"C\"/><PARAMETER.REFARRAY NAME=\"d\" "
           "REFERENCECLASS=\"Nope\" ARRAYSIZE=\"3\"/><QUALIFIER NAME=\"ValueMap\"/>"),
       "class C { [Description(\"go\"), ValueMap(NULL)] uint32 m([In(false)] string a, [In(NULL)] "
       "uint8 b, object REF c, object REF d); };"},
      // Kept as it is: a reference parameter takes its array default only as
      // "value.aray".
      {Method("<PARAMETER.REFERENCE NAME=\"p\"><VALUE.ARAY/></PARAMETER.REFERENCE>"
              "<PARAMETER.REFARRAY NAME=\"q\"><VALUE.ARAY/></PARAMETER.REFARRAY>"),
       "class C { uint32 m(object REF p, object REF q); };"},
      {Method("<PARAMETER.REFARRAY NAME=\"p\"><VALUE.ARRAY/></PARAMETER.REFARRAY>"),
       "class C { uint32 m(object REF p); };",
       {Err("Unexpected element value.array")}},
      {Method("<PARAMETER NAME=\"p\" TYPE=\"uint8\"><VALUE.ARAY/></PARAMETER>"),
       "class C { uint32 m(uint8 p); };",
       {Err("Unexpected element value.aray")}},
      {Method("<PROPERTY NAME=\"p\" TYPE=\"uint8\"/>"),
       "class C { uint32 m(); };",
       {Err("Unexpected element property")}},
  });
}

// The full grammar keeps what the classic one drops: array parameters are
// arrays with their size, and reference parameters name their class.
TEST_F(MethodStatesTest, FullGrammarKeepsParameterArraysAndReferenceClasses) {
  Check({{Method("<PARAMETER.ARRAY NAME=\"b\" TYPE=\"uint8\" ARRAYSIZE=\"2\"/>"
                 "<PARAMETER.ARRAY NAME=\"s\" TYPE=\"string\"/>"
                 "<PARAMETER.REFERENCE NAME=\"c\" REFERENCECLASS=\"C\"/>"
                 "<PARAMETER.REFARRAY NAME=\"d\" REFERENCECLASS=\"Nope\" ARRAYSIZE=\"3\"/>"
                 "<PARAMETER.REFARRAY NAME=\"e\"/><PARAMETER.REFERENCE NAME=\"f\"/>"),
          "class C { uint32 m(uint8 b[2], string s[], C REF c, Nope REF d[3], object REF e[], "
          "object REF f); };"}},
        {}, [this](const std::string &xml) { return Parse(xml, kFull); });
}

} // namespace
} // namespace orvtest
