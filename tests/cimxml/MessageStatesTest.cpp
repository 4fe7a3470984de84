// Operation messages: the accepted request and response shapes commit (and
// for responses collect) their objects; every other shape is reported, and
// the parse goes on after it.
#include "cimxml/ParserFixture.h"
#include "cimxml/ProbeState.h"
#include "populate/NamespacePopulator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvtest {
namespace {

using NVRNORV20::kORVStatusInvalidDocument;
using NVRNORV20::kORVStatusNullObject;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

const std::string kSchema = InDeclGroup(
    "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\"><SCOPE PROPERTY=\"true\"/>"
    "<VALUE>false</VALUE></QUALIFIER.DECLARATION>"
    "<VALUE.OBJECT><CLASS NAME=\"T_Disk\"><PROPERTY NAME=\"Name\" TYPE=\"string\">"
    "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER></PROPERTY>"
    "<PROPERTY NAME=\"Size\" TYPE=\"uint64\"/></CLASS></VALUE.OBJECT>");

std::string Class(const std::string &name) {
  return "<CLASS NAME=\"" + name + "\" SUPERCLASS=\"T_Disk\"><PROPERTY NAME=\"Extra\" " +
         "TYPE=\"string\"/></CLASS>";
}

std::string Instance(const std::string &name) {
  return "<INSTANCE CLASSNAME=\"T_Disk\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>" + name +
         "</VALUE></PROPERTY><PROPERTY NAME=\"Size\" TYPE=\"uint64\"><VALUE>5</VALUE></PROPERTY>"
         "</INSTANCE>";
}

const std::string kPath = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE "
                          "NAME=\"test\"/></LOCALNAMESPACEPATH>";

std::string Call(const std::string &method, const std::string &parameters) {
  return "<SIMPLEREQ><IMETHODCALL NAME=\"" + method + "\">" + kPath + parameters +
         "</IMETHODCALL></SIMPLEREQ>";
}

std::string Param(const std::string &name, const std::string &content) {
  return "<IPARAMVALUE NAME=\"" + name + "\">" + content + "</IPARAMVALUE>";
}

std::string Response(const std::string &content) {
  return "<SIMPLERSP><IMETHODRESPONSE NAME=\"GetClass\">" + content +
         "</IMETHODRESPONSE></SIMPLERSP>";
}

std::string Message(const std::string &content,
                    const std::string &attributes = "ID=\"7\" PROTOCOLVERSION=\"1.0\"") {
  return "<MESSAGE " + attributes + ">" + content + "</MESSAGE>";
}

const std::string kCreateClass = Call("CreateClass", Param("NewClass", Class("T_New")));
const std::string kCreateInstance = Call("CreateInstance", Param("NewInstance", Instance("d1")));

class MessageStatesTest : public TParserFixture {
protected:
  void SetUp() override { ASSERT_FALSE(Load(kSchema).aborted); }

  boost::shared_ptr<TProbeState> Run(const std::string &xml) { return TProbeState::Run(ns, xml); }

  /// Names of the classes the namespace holds beyond the schema's, each
  /// committed.
  std::vector<std::string> NewClasses() {
    std::vector<std::string> names;
    for (const auto &cls : ns->GetClasses()) {
      EXPECT_TRUE(cls->IsCommitted()) << cls->GetName();
      if (cls->GetName() != "T_Disk")
        names.push_back(cls->GetName());
    }
    return names;
  }

  std::size_t InstanceCount() { return ns->GetInstances("T_Disk", false).size(); }
};

struct TMessageCase {
  std::string xml;
  std::vector<std::string> log;
  /// Classes created in the namespace, and those of them collected.
  std::vector<std::string> created;
  std::vector<std::string> collected;
  std::size_t instances;
};

std::vector<std::string>
Names(const std::vector<boost::shared_ptr<NVRNORV20::ICIMClass>> &classes) {
  std::vector<std::string> names;
  for (const auto &cls : classes)
    names.push_back(cls->GetName());
  return names;
}

TEST_F(MessageStatesTest, AcceptedShapes) {
  const TMessageCase cases[] = {
      {Message(kCreateClass), {}, {"T_New"}, {}, 0},
      {Message(kCreateInstance), {}, {}, {}, 1},
      // The blank in "Create Instance" is accepted on purpose.
      {Message(Call("Create Instance", Param("NewInstance", Instance("d1")))), {}, {}, {}, 1},
      {Message(kCreateClass, "ID=\"1\""), {}, {"T_New"}, {}, 0},
      // The parameter's name need not match the object it holds.
      {Message(Call("CreateClass", Param("NewClass", Instance("d1")))), {}, {}, {}, 1},
      // Several parameters, each committing its object.
      {Message(Call("CreateInstance",
                    Param("NewInstance", Instance("a")) + Param("NewInstance", Instance("b")))),
       {},
       {},
       {},
       2},
      {Message("<MULTIREQ>" + kCreateClass + kCreateInstance + "</MULTIREQ>"),
       {},
       {"T_New"},
       {},
       1},
      {Message("<MULTIREQ>" + Call("CreateClass", Param("NewClass", Class("T_A"))) +
               Call("CreateClass", Param("NewClass", Class("T_B"))) +
               Call("CreateClass", Param("NewClass", Class("T_C"))) + "</MULTIREQ>"),
       {},
       {"T_A", "T_B", "T_C"},
       {},
       0},
      // Responses collect their classes, in document order.
      {Message(Response("<IRETURNVALUE>" + Class("T_A") + "</IRETURNVALUE>")),
       {},
       {"T_A"},
       {"T_A"},
       0},
      {Message(Response("<IRETURNVALUE>" + Class("T_A") +
                        "</IRETURNVALUE><ERROR CODE=\"6\" "
                        "DESCRIPTION=\"x\"/><IRETURNVALUE>" +
                        Class("T_B") + "</IRETURNVALUE>")),
       {},
       {"T_A", "T_B"},
       {"T_A", "T_B"},
       0},
      {Message(Response("<ERROR CODE=\"5\"></ERROR>")), {}, {}, {}, 0},
      // A message may hold several requests and responses.
      {Message(kCreateInstance + Response("<IRETURNVALUE>" + Class("T_A") + "</IRETURNVALUE>")),
       {},
       {"T_A"},
       {"T_A"},
       1},
  };
  for (const TMessageCase &testCase : cases) {
    SCOPED_TRACE(testCase.xml);
    logger.entries.clear();
    ns = NVRNORV20::CreateCIMNamespace("root/test");
    ASSERT_FALSE(Load(kSchema).aborted);
    auto probe = Run(testCase.xml);
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_EQ(NewClasses(), testCase.created);
    EXPECT_EQ(Names(probe->classes), testCase.collected);
    EXPECT_EQ(InstanceCount(), testCase.instances);
    EXPECT_THAT(probe->instances, IsEmpty());
  }
}

TEST_F(MessageStatesTest, QualifierDeclarationInAResponseIsDeclared) {
  auto probe = Run(
      Message(Response("<IRETURNVALUE><QUALIFIER.DECLARATION NAME=\"Descr\" TYPE=\"string\"><SCOPE "
                       "CLASS=\"true\"/></QUALIFIER.DECLARATION></IRETURNVALUE>")));
  EXPECT_THAT(Log(), IsEmpty());
  EXPECT_EQ(ns->GetQualifierDecl("Descr")->GetName(), "Descr");
  EXPECT_THAT(probe->classes, IsEmpty());
}

TEST_F(MessageStatesTest, RejectedShapesAndWhereTheParseGoesOn) {
  const std::string syntaxError = ParserError(1, "CIM element syntax error");
  const std::string endError = EndElementError(1, kORVStatusInvalidDocument);
  const TMessageCase cases[] = {
      // Reported, but the message is still read.
      {Message(kCreateClass, "PROTOCOLVERSION=\"1.1\""),
       {ParserError(1, "Unknown protocol version")},
       {"T_New"},
       {},
       0},
      {Message("<MULTIREQ>" + kCreateClass + "</MULTIREQ>"),
       {ParserError(1, "Invalid MULTIREQ"), endError},
       {"T_New"},
       {},
       0},
      {Message("<MULTIREQ></MULTIREQ>"), {ParserError(1, "Invalid MULTIREQ"), endError}, {}, {}, 0},
      // Method names are compared exactly; the call is still read.
      {Message(Call("createinstance", Param("NewInstance", Instance("d1")))),
       {ParserError(1, "Unexpected IMethodCall method createinstance")},
       {},
       {},
       1},
      {Message("<SIMPLEREQ><IMETHODCALL>" + kPath + "</IMETHODCALL></SIMPLEREQ>"),
       {ParserError(1, "Unexpected IMethodCall method ")},
       {},
       {},
       0},
      // The usual shape of a request that loads nothing: each level
      // reports, and the parameter ends without an object.
      {Message(Call("GetClass", Param("ClassName", "<CLASSNAME NAME=\"T_Disk\"/>"))),
       {ParserError(1, "Unexpected IMethodCall method GetClass"),
        ParserError(1, "Unexpected IParamValue parameter name"),
        ParserError(1, "Unexpected element classname"), syntaxError, endError},
       {},
       {},
       0},
      {Message(Call("CreateClass", Param("NewClass", ""))), {syntaxError, endError}, {}, {}, 0},
      // One object per parameter: the second's end tag ends the parameter,
      // which commits the first.
      {Message(Call("CreateClass", Param("NewClass", "<CLASS NAME=\"T_A\" SUPERCLASS=\"T_Disk\"/>"
                                                     "<CLASS NAME=\"T_B\"/>"))),
       {ParserError(1, "Unexpected element class")},
       {"T_A"},
       {},
       0},
      // The namespace path must come first, and once.
      {Message("<SIMPLEREQ><IMETHODCALL NAME=\"CreateClass\">" + Param("NewClass", "") +
               "</IMETHODCALL></SIMPLEREQ>"),
       {ParserError(1, "Unexpected element iparamvalue")},
       {},
       {},
       0},
      {Message("<SIMPLEREQ><IMETHODCALL NAME=\"CreateClass\">" + kPath +
               "<LOCALNAMESPACEPATH/></IMETHODCALL></SIMPLEREQ>"),
       {ParserError(1, "Unexpected element localnamespacepath")},
       {},
       {},
       0},
      // An instance of an unknown class is never made; its parameter finds
      // no object to commit.
      {Message(Call("CreateInstance", Param("NewInstance", "<INSTANCE CLASSNAME=\"T_None\"/>"))),
       {EndElementError(1, kORVStatusNullObject)},
       {},
       {},
       0},
      {Message("<SIMPLEREQ><METHODCALL NAME=\"Reboot\"/></SIMPLEREQ>"),
       {ParserError(1, "Unexpected element methodcall")},
       {},
       {},
       0},
      {Message("<SIMPLEEXPREQ/>"), {ParserError(1, "Unexpected element simpleexpreq")}, {}, {}, 0},
      {Message("<SIMPLERSP><METHODRESPONSE NAME=\"m\"/></SIMPLERSP>"),
       {ParserError(1, "Unexpected element methodresponse")},
       {},
       {},
       0},
      {Message(Response("<PARAMVALUE/>")),
       {ParserError(1, "Unexpected element paramvalue")},
       {},
       {},
       0},
      // An error holds no element.
      {Message(Response("<ERROR CODE=\"6\"><INSTANCE CLASSNAME=\"T_Disk\"/></ERROR>")),
       {ParserError(1, "Unexpected element instance")},
       {},
       {},
       0},
      {Message(Response("<IRETURNVALUE></IRETURNVALUE>")), {syntaxError, endError}, {}, {}, 0},
      // What an instance creation answers is refused, and the return value
      // then ends early without an object.
      {Message(Response("<IRETURNVALUE><INSTANCENAME CLASSNAME=\"T_Disk\"/></IRETURNVALUE>")),
       {ParserError(1, "Unexpected element instancename"), syntaxError, endError},
       {},
       {},
       0},
      {Message(Response("<IRETURNVALUE>" + Class("T_A") + Class("T_B") + "</IRETURNVALUE>")),
       {ParserError(1, "Unexpected element class"), ParserError(1, "Unexpected element property")},
       {"T_A"},
       {"T_A"},
       0},
  };
  for (const TMessageCase &testCase : cases) {
    SCOPED_TRACE(testCase.xml);
    logger.entries.clear();
    ns = NVRNORV20::CreateCIMNamespace("root/test");
    ASSERT_FALSE(Load(kSchema).aborted);
    auto probe = Run(testCase.xml);
    EXPECT_FALSE(probe->aborted);
    EXPECT_THAT(Log(), ElementsAreArray(testCase.log));
    EXPECT_EQ(NewClasses(), testCase.created);
    EXPECT_EQ(Names(probe->classes), testCase.collected);
    EXPECT_EQ(InstanceCount(), testCase.instances);
  }
}

TEST_F(MessageStatesTest, MessagesUnderTheRoot) {
  // A response's named instance is committed but collected nowhere.
  TParseResult result = Parse(InMessage(
      kCreateClass + Response("<IRETURNVALUE>" + Class("T_A") +
                              "</IRETURNVALUE><IRETURNVALUE><VALUE.NAMEDINSTANCE><INSTANCENAME "
                              "CLASSNAME=\"T_Disk\"><KEYVALUE>d2</KEYVALUE></INSTANCENAME>" +
                              Instance("d2") + "</VALUE.NAMEDINSTANCE></IRETURNVALUE>")));
  EXPECT_THAT(Log(), IsEmpty());
  EXPECT_EQ(NewClasses(), (std::vector<std::string>{"T_New", "T_A"}));
  EXPECT_EQ(Names(result.classes), std::vector<std::string>{"T_A"});
  EXPECT_THAT(result.instances, IsEmpty());
  EXPECT_EQ(InstanceCount(), 1u);

  // A message and declarations may stand side by side under the root.
  result = Parse("<CIM>" + Message(kCreateInstance) + "<DECLARATION><DECLGROUP><VALUE.OBJECT>" +
                 Instance("d3") + "</VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>");
  EXPECT_THAT(Log(), IsEmpty());
  EXPECT_EQ(result.instances.size(), 1u);
  EXPECT_EQ(InstanceCount(), 3u);
}

TEST(MessageExampleTest, LoadsAfterTheExampleSchema) {
  TCapturingLogger logger;
  auto ns = NVRNORV20::CreateCIMNamespace("root/example");
  const std::string directory = ORV_EXAMPLES_DIR;
  NVRNORV20::TNamespacePopulator::PopulateFromXMLFile(ns, directory + "/schema.xml");
  NVRNORV20::TNamespacePopulator::PopulateFromRegXMLFile(ns, directory + "/instances.xml");
  auto collected =
      NVRNORV20::TNamespacePopulator::PopulateFromRegXMLFile(ns, directory + "/message.xml");
  EXPECT_THAT(logger.Texts(), IsEmpty());
  EXPECT_THAT(collected, IsEmpty());

  auto partition = ns->GetClass("ORV_Partition");
  ASSERT_TRUE(partition->IsCommitted());
  EXPECT_EQ(partition->GetKeyProperties().size(), 2u);
  auto partitions = ns->GetInstances("ORV_Partition", false);
  ASSERT_EQ(partitions.size(), 1u);
  EXPECT_EQ(partitions[0]->GetPropertyValue("Disk").GetReference().ToString(),
            "root/example:ORV_Disk.SystemName=\"alpha\",DeviceID=\"disk0\"");
  auto links = ns->GetInstances("ORV_SystemDevice", false);
  ASSERT_EQ(links.size(), 2u);
  // The system's single key was given bare and typed from the class.
  EXPECT_EQ(links[1]->GetPropertyValue("GroupComponent").GetReference().ToString(),
            "root/example:ORV_System.Name=\"alpha\"");
}

} // namespace
} // namespace orvtest
