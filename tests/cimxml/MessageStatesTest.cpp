// Operation messages: the accepted request and response shapes commit (and
// responses collect) their objects; every other shape is reported, and the
// parse goes on after it. Messages are read under a probe parent, which
// absorbs the end tags that refused elements leave.
#include "cimxml/ProbeState.h"
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using MessageStatesTest = TParserFixture;

const std::string kSchema =
    Objects({"<CLASS NAME=\"T_Disk\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER "
             "NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER></PROPERTY><PROPERTY "
             "NAME=\"Size\" TYPE=\"uint64\"/></CLASS>"});

std::string Class(const std::string &name) {
  return "<CLASS NAME=\"" + name + "\" SUPERCLASS=\"T_Disk\"/>";
}

std::string Instance(const std::string &name) {
  return "<INSTANCE CLASSNAME=\"T_Disk\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>" + name +
         "</VALUE></PROPERTY></INSTANCE>";
}

const std::string kPath = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/></LOCALNAMESPACEPATH>";

std::string Call(const std::string &method, const std::string &parameters) {
  return "<SIMPLEREQ><IMETHODCALL NAME=\"" + method + "\">" + kPath + parameters +
         "</IMETHODCALL></SIMPLEREQ>";
}

std::string Param(const std::string &name, const std::string &content) {
  return "<IPARAMVALUE NAME=\"" + name + "\">" + content + "</IPARAMVALUE>";
}

std::string Return(const std::string &content) {
  return "<SIMPLERSP><IMETHODRESPONSE NAME=\"GetClass\">" + content +
         "</IMETHODRESPONSE></SIMPLERSP>";
}

std::string Message(const std::string &content,
                    const std::string &attributes = "ID=\"7\" PROTOCOLVERSION=\"1.0\"") {
  return "<MESSAGE " + attributes + ">" + content + "</MESSAGE>";
}

TEST_F(MessageStatesTest, Shapes) {
  const std::string createClass = Call("CreateClass", Param("NewClass", Class("T_New")));
  const std::string createInstance = Call("CreateInstance", Param("NewInstance", Instance("d1")));
  const std::string newClass = "class T_New : T_Disk { };";
  const std::string d1 = "instance of T_Disk { Name = \"d1\"; };";
  const std::string classA = "<IRETURNVALUE>" + Class("T_A") + "</IRETURNVALUE>";
  const std::string syntax = Err("CIM element syntax error");
  const std::string ended = Ended(kORVStatusInvalidDocument);
  Check(
      {
          {Message(createClass + createInstance), newClass + " " + d1, {}, "|"},
          // The blank in "Create Instance" is accepted on purpose; the
          // parameter's name need not match its object.
          {Message(Call("Create Instance",
                        Param("NewClass", Instance("a")) + Param("NewInstance", Instance("b")))),
           "instance of T_Disk { Name = \"a\"; }; instance of T_Disk { Name = \"b\"; };"},
          {Message("<MULTIREQ>" + createClass + createInstance + "</MULTIREQ>", "ID=\"1\""),
           newClass + " " + d1},
          // Responses collect their classes, in document order; an error
          // between them holds no element; a named instance is committed
          // but collected nowhere.
          {Message(Return(classA +
                          "<ERROR CODE=\"6\" DESCRIPTION=\"x\"/><IRETURNVALUE>"
                          "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"T_Disk\">"
                          "<KEYVALUE>d1</KEYVALUE></INSTANCENAME>" +
                          Instance("d1") + "</VALUE.NAMEDINSTANCE></IRETURNVALUE><IRETURNVALUE>" +
                          Class("T_B") + "</IRETURNVALUE>")),
           "class T_A : T_Disk { }; class T_B : T_Disk { }; " + d1,
           {},
           "T_A T_B |"},
          {Message(Return("<IRETURNVALUE><QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"string\"><SCOPE "
                          "CLASS=\"true\"/></QUALIFIER.DECLARATION></IRETURNVALUE>")),
           "Qualifier Q : string, Scope(class), Flavor(EnableOverride, ToSubclass);",
           {},
           "|"},
          // Reported, and still read.
          {Message(createClass, "PROTOCOLVERSION=\"1.1\""),
           newClass,
           {Err("Unknown protocol version")}},
          {Message("<MULTIREQ>" + createClass + "</MULTIREQ>"),
           newClass,
           {Err("Invalid MULTIREQ"), ended}},
          // Method names are compared exactly; the call is still read.
          {Message(Call("createinstance", Param("NewInstance", Instance("d1")))),
           d1,
           {Err("Unexpected IMethodCall method createinstance")}},
          // The usual request that loads nothing: each level reports, and
          // the parameter ends without an object.
          {Message(Call("GetClass", Param("ClassName", "<CLASSNAME NAME=\"T_Disk\"/>"))),
           "",
           {Err("Unexpected IMethodCall method GetClass"),
            Err("Unexpected IParamValue parameter name"), Err("Unexpected element classname"),
            syntax, ended}},
          // One object per parameter: the second's end tag ends the
          // parameter, which commits the first.
          {Message(Call("CreateClass", Param("NewClass", Class("T_A") + "<CLASS NAME=\"T_B\"/>"))),
           "class T_A : T_Disk { };",
           {Err("Unexpected element class")}},
          // The namespace path must come first.
          {Message("<SIMPLEREQ><IMETHODCALL NAME=\"CreateClass\">" + Param("NewClass", "") +
                   "</IMETHODCALL></SIMPLEREQ>"),
           "",
           {Err("Unexpected element iparamvalue")}},
          // What an instance creation answers is refused, and the return value
          // then ends early without an object.
          {Message(Return("<IRETURNVALUE><INSTANCENAME CLASSNAME=\"T_Disk\"/></IRETURNVALUE>")),
           "",
           {Err("Unexpected element instancename"), syntax, ended}},
      },
      {kSchema}, [this](const std::string &xml) {
        auto probe = TProbeState::Run(ns, xml);
        return TResult{probe->classes, probe->instances, probe->aborted};
      });
}

} // namespace
} // namespace orvtest
