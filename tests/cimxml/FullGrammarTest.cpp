// The full grammar: every element of the CIM-XML document type read where it
// may stand, each message kind, objects with and without their classes, and
// what is reported instead of dropped. Each document is read without a
// schema (but the test qualifiers) into a result, summarised as one line per
// object and operation.
#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"

#include <map>

namespace orvtest {
namespace {

struct TFullCase {
  std::string xml;
  std::vector<std::string> summary;
  std::vector<std::string> log = {};
};

class FullGrammarTest : public TParserFixture {
protected:
  /// One line per object and operation, in the order they were handed over;
  /// "(aborted)" first when an exception ended the parse.
  std::vector<std::string> Read(const std::string &xml) {
    TCIMXMLResult result;
    std::vector<std::string> summary;
    if (Parse(xml, kFullReturnOnly, &result).aborted)
      summary.push_back("(aborted)");
    for (const TCIMXMLObject &object : result.GetObjects())
      summary.push_back(Describe(object));
    for (const TCIMXMLOperation &operation : result.GetOperations())
      summary.push_back(Describe(operation));
    for (const TCIMXMLMessage &message : result.GetMessages())
      summary.push_back("M" + std::to_string(static_cast<int>(message.kind)) + " " + message.id +
                        " ops " + std::to_string(message.operationCount));
    return summary;
  }

  static std::string Describe(const TCIMXMLObject &object) {
    static const char *const kKinds[] = {"Q", "C", "I", "CP", "IP"};
    std::string text = kKinds[static_cast<int>(object.kind)] + std::string(":");
    if (object.qualifierDecl)
      text += object.qualifierDecl->ToMOF();
    if (object.cimClass) {
      text += object.cimClass->GetName();
      for (const auto &qualifier : object.cimClass->GetQualifiers())
        text += "(" + qualifier->GetName() + "/" + std::to_string(qualifier->GetFlavor()) + ")";
    }
    if (object.instance)
      text += Squeezed(object.instance->ToMOF());
    if (object.hasPath)
      text += "@" + object.path.reference.ToString();
    if (object.operation >= 0)
      text += " [" + object.role + "]";
    return text;
  }

  static std::string Describe(const TCIMXMLOperation &operation) {
    std::string text =
        "O" + std::to_string(static_cast<int>(operation.kind)) + " " + operation.method;
    if (operation.hasTarget)
      text += " on " + operation.target.reference.ToString();
    for (const TCIMXMLCorrelator &correlator : operation.correlators)
      text += " #" + correlator.name + "=" + correlator.value.ToMOF();
    text += " (";
    for (const TCIMXMLArgument &argument : operation.parameters)
      text += argument.name + "=" + Argument(argument) + ";";
    text += ")";
    if (operation.hasReturnValue)
      text += " -> " + Argument(operation.returnValue);
    if (operation.hasError)
      text += " ! " + std::to_string(operation.errorCode) + " " + operation.errorDescription +
              " x" + std::to_string(operation.errorInstanceCount);
    return text;
  }

  static std::string Argument(const TCIMXMLArgument &argument) {
    if (argument.objectCount != 0)
      return std::to_string(argument.objectCount) + " objects";
    return argument.value.ToMOF();
  }

  /// Reads each case into a fresh namespace.
  void Expect(const std::vector<TFullCase> &cases) {
    for (const TFullCase &c : cases) {
      SCOPED_TRACE(c.xml);
      Reset();
      EXPECT_EQ(Read(c.xml), c.summary);
      EXPECT_EQ(Log(), c.log);
    }
  }
};

std::string Message(const std::string &body) {
  return "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.4\"><MESSAGE ID=\"7\" PROTOCOLVERSION=\"1.0\">" +
         body + "</MESSAGE></CIM>";
}

const std::string kLocal = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE "
                           "NAME=\"cimv2\"/></LOCALNAMESPACEPATH>";
const std::string kRemote = "<NAMESPACEPATH><HOST>srv</HOST>" + kLocal + "</NAMESPACEPATH>";
const std::string kName = "<INSTANCENAME CLASSNAME=\"X_Disk\"><KEYBINDING NAME=\"Id\"><KEYVALUE "
                          "VALUETYPE=\"numeric\">7</KEYVALUE></KEYBINDING></INSTANCENAME>";
const std::string kInstance = "<INSTANCE CLASSNAME=\"X_Disk\"><PROPERTY NAME=\"Id\" "
                              "TYPE=\"uint16\"><VALUE>7</VALUE></PROPERTY></INSTANCE>";
const std::string kInstanceMof = "instance of X_Disk { Id = 7; };";

TEST_F(FullGrammarTest, EveryElementReadsWhereTheDocumentTypeAllowsIt) {
  const std::vector<TFullCase> cases = {
      // Declarations: qualifier declarations, a class with every kind of
      // member, values, nulls and references.
      {InDeclGroup(kLocal +
                   "<QUALIFIER.DECLARATION NAME=\"Units\" TYPE=\"string\" ISARRAY=\"true\">"
                   "<SCOPE PROPERTY=\"true\" METHOD=\"false\"/></QUALIFIER.DECLARATION>"
                   "<QUALIFIER.DECLARATION NAME=\"Any\" TYPE=\"boolean\"><SCOPE ANY=\"true\" "
                   "CLASS=\"false\"/></QUALIFIER.DECLARATION>"
                   "<QUALIFIER.DECLARATION NAME=\"Sizes\" TYPE=\"uint8\" ISARRAY=\"true\" "
                   "ARRAYSIZE=\"3\"><SCOPE PROPERTY=\"true\"/><VALUE.ARRAY><VALUE>1</VALUE>"
                   "</VALUE.ARRAY></QUALIFIER.DECLARATION>"
                   "<VALUE.OBJECT><CLASS NAME=\"X_Disk\"><QUALIFIER NAME=\"Description\" "
                   "TYPE=\"string\"><VALUE>d</VALUE></QUALIFIER><PROPERTY NAME=\"Id\" "
                   "TYPE=\"uint16\"/><PROPERTY.ARRAY NAME=\"A\" TYPE=\"sint8\"><VALUE.ARRAY>"
                   "<VALUE>1</VALUE><VALUE.NULL/></VALUE.ARRAY></PROPERTY.ARRAY>"
                   "<PROPERTY.REFERENCE NAME=\"R\" REFERENCECLASS=\"X_Disk\"><VALUE.REFERENCE>"
                   "<CLASSNAME NAME=\"X_Disk\"/></VALUE.REFERENCE></PROPERTY.REFERENCE>"
                   "<METHOD NAME=\"M\" TYPE=\"uint32\"><PARAMETER NAME=\"P\" TYPE=\"string\"/>"
                   "<PARAMETER.REFERENCE NAME=\"Q\"/><PARAMETER.ARRAY NAME=\"S\" TYPE=\"uint8\"/>"
                   "<PARAMETER.REFARRAY NAME=\"T\"/></METHOD></CLASS></VALUE.OBJECT>"),
       {"Q:Qualifier Units : string[], Scope(property), Flavor(EnableOverride, ToSubclass);",
        "Q:Qualifier Any : boolean, Scope(any), Flavor(EnableOverride, ToSubclass);",
        "Q:Qualifier Sizes : uint8[3] = {1}, Scope(property), Flavor(EnableOverride, ToSubclass);",
        "C:X_Disk(Description/7)"}},
      // Named objects with remote paths, hosts and key bindings.
      {"<CIM><DECLARATION><DECLGROUP.WITHNAME>" + kRemote + "<VALUE.NAMEDOBJECT>" + kName +
           kInstance + "</VALUE.NAMEDOBJECT></DECLGROUP.WITHNAME></DECLARATION></CIM>",
       {"I:" + kInstanceMof + "@X_Disk.Id=7"}},
      {"<CIM><DECLARATION><DECLGROUP.WITHPATH><VALUE.OBJECTWITHPATH><INSTANCEPATH>" + kRemote +
           kName + "</INSTANCEPATH>" + kInstance +
           "</VALUE.OBJECTWITHPATH><VALUE.OBJECTWITHLOCALPATH><LOCALCLASSPATH>" + kLocal +
           "<CLASSNAME NAME=\"X_Disk\"/></LOCALCLASSPATH><CLASS NAME=\"X_Disk\"/>"
           "</VALUE.OBJECTWITHLOCALPATH><VALUE.OBJECTWITHPATH><CLASSPATH>" +
           kRemote +
           "<CLASSNAME NAME=\"X_Disk\"/></CLASSPATH><CLASS NAME=\"X_Disk\"/>"
           "</VALUE.OBJECTWITHPATH></DECLGROUP.WITHPATH></DECLARATION></CIM>",
       {"I:" + kInstanceMof + "@//srv/root/cimv2:X_Disk.Id=7", "C:X_Disk@root/cimv2:X_Disk",
        "C:X_Disk@//srv/root/cimv2:X_Disk"}},
      // Requests: correlators, intrinsic parameters of every value form.
      {Message("<SIMPLEREQ><CORRELATOR NAME=\"c\" TYPE=\"uint8\"><VALUE>3</VALUE></CORRELATOR>"
               "<IMETHODCALL NAME=\"EnumerateInstances\">" +
               kLocal +
               "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"X_Disk\"/></IPARAMVALUE>"
               "<IPARAMVALUE NAME=\"DeepInheritance\"><VALUE>true</VALUE></IPARAMVALUE>"
               "<IPARAMVALUE NAME=\"PropertyList\"><VALUE.ARRAY><VALUE>Id</VALUE>"
               "</VALUE.ARRAY></IPARAMVALUE><IPARAMVALUE NAME=\"LocalOnly\"/>"
               "</IMETHODCALL></SIMPLEREQ>"),
       {"CP:@X_Disk [ClassName]",
        "O0 EnumerateInstances on root/cimv2: #c=3 (ClassName=1 objects;DeepInheritance=true;"
        "PropertyList={\"Id\"};LocalOnly=NULL;)",
        "M0 7 ops 1"}},
      {Message("<MULTIREQ><SIMPLEREQ><METHODCALL NAME=\"Reset\"><LOCALINSTANCEPATH>" + kLocal +
               kName +
               "</LOCALINSTANCEPATH><PARAMVALUE NAME=\"Force\" PARAMTYPE=\"boolean\"><VALUE>"
               "false</VALUE></PARAMVALUE><PARAMVALUE NAME=\"Refs\"><VALUE.REFARRAY>"
               "<VALUE.REFERENCE>" +
               kName +
               "</VALUE.REFERENCE><VALUE.NULL/></VALUE.REFARRAY></PARAMVALUE></METHODCALL>"
               "</SIMPLEREQ><SIMPLEREQ><IMETHODCALL NAME=\"GetInstance\">" +
               kLocal + "<IPARAMVALUE NAME=\"InstanceName\">" + kName +
               "</IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MULTIREQ>"),
       {"IP:@X_Disk.Id=7 [InstanceName]",
        "O1 Reset on root/cimv2:X_Disk.Id=7 (Force=false;Refs={\"root/test:X_Disk.Id=7\", NULL};)",
        "O0 GetInstance on root/cimv2: (InstanceName=1 objects;)", "M1 7 ops 2"}},
      // Responses: return values of many objects, paths, errors.
      {Message("<MULTIRSP><SIMPLERSP><IMETHODRESPONSE NAME=\"EnumerateInstances\">"
               "<IRETURNVALUE><VALUE.NAMEDINSTANCE>" +
               kName + kInstance + "</VALUE.NAMEDINSTANCE><VALUE.NAMEDINSTANCE>" + kName +
               kInstance +
               "</VALUE.NAMEDINSTANCE></IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP><SIMPLERSP>"
               "<METHODRESPONSE NAME=\"Reset\"><RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>0"
               "</VALUE></RETURNVALUE><PARAMVALUE NAME=\"Job\"><VALUE.REFERENCE><INSTANCEPATH>" +
               kRemote + kName +
               "</INSTANCEPATH></VALUE.REFERENCE></PARAMVALUE></METHODRESPONSE></SIMPLERSP>"
               "<SIMPLERSP>"
               "<IMETHODRESPONSE NAME=\"GetInstance\"><ERROR CODE=\"6\" DESCRIPTION=\"gone\">" +
               kInstance + "</ERROR></IMETHODRESPONSE></SIMPLERSP></MULTIRSP>"),
       {"I:" + kInstanceMof + "@root/test:X_Disk.Id=7 []",
        "I:" + kInstanceMof + "@root/test:X_Disk.Id=7 []", "I:" + kInstanceMof + " [ERROR]",
        "O3 EnumerateInstances () -> 2 objects",
        "O4 Reset (Job=\"//srv/root/cimv2:X_Disk.Id=7\";) -> 0", "O3 GetInstance () ! 6 gone x1",
        "M3 7 ops 3"}},
      {Message("<SIMPLERSP><IMETHODRESPONSE NAME=\"ReferenceNames\"><IRETURNVALUE><OBJECTPATH>"
               "<INSTANCEPATH>" +
               kRemote + kName + "</INSTANCEPATH></OBJECTPATH><OBJECTPATH><CLASSPATH>" + kRemote +
               "<CLASSNAME NAME=\"X_Disk\"/></CLASSPATH></OBJECTPATH></IRETURNVALUE>"
               "</IMETHODRESPONSE></SIMPLERSP>"),
       {"IP:@//srv/root/cimv2:X_Disk.Id=7 []", "CP:@//srv/root/cimv2:X_Disk []",
        "O3 ReferenceNames () -> 2 objects", "M2 7 ops 1"}},
      {Message("<SIMPLERSP><IMETHODRESPONSE NAME=\"OpenEnumerateInstancesWithPath\">"
               "<IRETURNVALUE><VALUE.INSTANCEWITHPATH><INSTANCEPATH>" +
               kRemote + kName + "</INSTANCEPATH>" + kInstance +
               "</VALUE.INSTANCEWITHPATH></IRETURNVALUE><PARAMVALUE NAME=\"EndOfSequence\" "
               "PARAMTYPE=\"boolean\"><VALUE>TRUE</VALUE></PARAMVALUE></IMETHODRESPONSE>"
               "</SIMPLERSP>"),
       {"I:" + kInstanceMof + "@//srv/root/cimv2:X_Disk.Id=7 []",
        "O3 OpenEnumerateInstancesWithPath (EndOfSequence=true;) -> 1 objects", "M2 7 ops 1"}},
      // Exports: indications and their answers.
      {Message("<MULTIEXPREQ><SIMPLEEXPREQ><EXPMETHODCALL NAME=\"ExportIndication\">"
               "<EXPPARAMVALUE NAME=\"NewIndication\">" +
               kInstance +
               "</EXPPARAMVALUE></EXPMETHODCALL></SIMPLEEXPREQ><SIMPLEEXPREQ><CORRELATOR "
               "NAME=\"s\" TYPE=\"string\"><VALUE>x</VALUE></CORRELATOR><EXPMETHODCALL "
               "NAME=\"ExportIndication\"/></SIMPLEEXPREQ></MULTIEXPREQ>"),
       {"I:" + kInstanceMof + " [NewIndication]", "O2 ExportIndication (NewIndication=1 objects;)",
        "O2 ExportIndication #s=\"x\" ()", "M5 7 ops 2"}},
      {Message("<MULTIEXPRSP><SIMPLEEXPRSP><EXPMETHODRESPONSE NAME=\"ExportIndication\">"
               "<IRETURNVALUE/></EXPMETHODRESPONSE></SIMPLEEXPRSP><SIMPLEEXPRSP>"
               "<EXPMETHODRESPONSE NAME=\"ExportIndication\"><ERROR CODE=\"1\"/>"
               "</EXPMETHODRESPONSE></SIMPLEEXPRSP></MULTIEXPRSP>"),
       {"O5 ExportIndication () -> NULL", "O5 ExportIndication () ! 1  x0", "M7 7 ops 2"}},
      {Message("<SIMPLEEXPRSP><EXPMETHODRESPONSE NAME=\"ExportIndication\"/></SIMPLEEXPRSP>"),
       {"O5 ExportIndication ()", "M6 7 ops 1"}},
      // A named instance as the document's root (bare objects and names below).
      {"<VALUE.NAMEDINSTANCE>" + kName + kInstance + "</VALUE.NAMEDINSTANCE>",
       {"I:" + kInstanceMof + "@root/test:X_Disk.Id=7"}},
  };
  Expect(cases);
}

// What the full grammar cannot place or read is a line, and the rest of the
// document is read.
TEST_F(FullGrammarTest, WhatCannotBeReadIsReportedAndTheRestRead) {
  const auto response = [](const std::string &content) {
    return Message("<SIMPLERSP><IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE>" + content +
                   "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP>");
  };
  const std::vector<TFullCase> cases = {
      {response("<FOO><CLASS NAME=\"A\"/></FOO><CLASSNAME NAME=\"B\"/>"),
       {"CP:@B []", "O3 X () -> 1 objects", "M2 7 ops 1"},
       {Err("Unexpected element foo")}},
      {response("<CLASSNAME NAME=\"A\"/><INSTANCENAME CLASSNAME=\"B\"/>"),
       {"CP:@A []", "O3 X () -> 1 objects", "M2 7 ops 1"},
       {Err("Unexpected element instancename")}},
      {response("<VALUE>1</VALUE><VALUE>2</VALUE>"), {"O3 X () -> {\"1\", \"2\"}", "M2 7 ops 1"}},
      {Message("<SIMPLEREQ><METHODCALL NAME=\"M\"><LOCALCLASSPATH>" + kLocal +
               "<CLASSNAME NAME=\"X_Disk\"/></LOCALCLASSPATH><PARAMVALUE NAME=\"N\" "
               "PARAMTYPE=\"uint8\"><VALUE>300</VALUE></PARAMVALUE></METHODCALL></SIMPLEREQ>"),
       {"O1 M on root/cimv2:X_Disk (N=NULL;)", "M0 7 ops 1"},
       {Err("Value '300' is not a valid uint8: Value out of range")}},
      {"<INSTANCE CLASSNAME=\"X_Disk\"><QUALIFIER NAME=\"Q\" TYPE=\"string\"/><PROPERTY "
       "NAME=\"A\" TYPE=\"uint8\"><VALUE>1</VALUE></PROPERTY><PROPERTY NAME=\"A\" "
       "TYPE=\"string\"/></INSTANCE>",
       {"I:instance of X_Disk { A = 1; };"},
       {Err("Qualifier Q of an instance is not kept"), Ended(kORVStatusTypeMismatch)}},
      // XML 1.0's characters: references decoded to UTF-8, attributes too;
      // what XML does not allow is dropped with a line.
      {response("<VALUE>a&#1;b&#xE9;\x02"
                "c</VALUE>"),
       {"O3 X () -> \"ab\xC3\xA9"
        "c\"",
        "M2 7 ops 1"},
       {Err("Character reference to U+0001 is not an XML character"),
        Err("Character U+0002 is not an XML character")}},
      {response("<VALUE><![CDATA[<a>&x]]></VALUE>"), {"O3 X () -> \"<a>&x\"", "M2 7 ops 1"}},
      // Line ends become line feeds, in attributes spaces; references stay.
      {response("<VALUE>a\r\nb\rc&#13;<![CDATA[d\r\n]]></VALUE>"),
       {"O3 X () -> \"a\\nb\\nc\\rd\\n\"", "M2 7 ops 1"}},
      {Message("<SIMPLERSP><IMETHODRESPONSE NAME=\"X\"><ERROR CODE=\"1\" DESCRIPTION=\"a\r\nb\t"
               "c&#10;\"/></IMETHODRESPONSE></SIMPLERSP>"),
       {"O3 X () ! 1 a b c\n x0", "M2 7 ops 1"}},
      {"<CLASSNAME NAME=\"A&amp;B&#0;&#x41;\"/>",
       {"CP:@A&BA"},
       {Err("Character reference &#0; is not an XML character")}},
      // One value, one key value, one path: a second is refused, not taken.
      {"<INSTANCE CLASSNAME=\"X_Disk\"><PROPERTY NAME=\"A\" TYPE=\"uint8\"><VALUE>1</VALUE>"
       "<VALUE>2</VALUE></PROPERTY></INSTANCE>",
       {"I:instance of X_Disk { A = 1; };"},
       {Err("Unexpected element value")}},
      {"<INSTANCENAME CLASSNAME=\"X_Disk\"><KEYBINDING NAME=\"Id\"><KEYVALUE>1</KEYVALUE>"
       "<KEYVALUE>2</KEYVALUE></KEYBINDING></INSTANCENAME>",
       {"IP:@X_Disk.Id=\"1\""},
       {Err("Unexpected element keyvalue")}},
      // Flavors the element states override the declaration's; the others
      // are the declaration's (Description is translatable).
      {"<CLASS NAME=\"X_A\"><QUALIFIER NAME=\"Description\" TYPE=\"string\" "
       "TRANSLATABLE=\"false\" TOSUBCLASS=\"false\"/><QUALIFIER NAME=\"Abstract\" "
       "TYPE=\"boolean\" OVERRIDABLE=\"false\"><VALUE>true</VALUE></QUALIFIER></CLASS>",
       {"C:X_A(Description/1)(Abstract/2)"}},
      // A char16 quoted as MOF quotes it is its character.
      {"<INSTANCE CLASSNAME=\"X_C\"><PROPERTY NAME=\"c\" TYPE=\"char16\"><VALUE>'a'</VALUE>"
       "</PROPERTY><PROPERTY NAME=\"d\" TYPE=\"char16\"><VALUE>ab</VALUE></PROPERTY></INSTANCE>",
       {"I:instance of X_C { c = 'a'; d = NULL; };"},
       {Err("Value 'ab' is not a valid char16: Invalid value text")}},
      // A propagated qualifier is kept where no superclass can give it.
      {"<CLASS NAME=\"X_Sub\" SUPERCLASS=\"X_Base\"><QUALIFIER NAME=\"Description\" "
       "TYPE=\"string\" PROPAGATED=\"true\"><VALUE>d</VALUE></QUALIFIER></CLASS>",
       {"C:X_Sub(Description/7)"},
       {Err("Superclass X_Base of class X_Sub is not loaded: an empty class stands in for it")}},
  };
  Expect(cases);
}

// A string that the EmbeddedObject attribute, PARAMTYPE or the class's
// EmbeddedInstance qualifier marks is read as the object it holds, which MOF
// writes in its place; what holds none stays text, with a line.
TEST_F(FullGrammarTest, EmbeddedObjectsAreReadAsObjects) {
  const auto escaped = [](const std::string &xml) {
    std::string text;
    for (char c : xml)
      text += c == '<'   ? "&lt;"
              : c == '>' ? "&gt;"
              : c == '&' ? "&amp;"
              : c == '"' ? "&quot;"
                         : std::string(1, c);
    return text;
  };
  const auto holder = [&](const std::string &inner) {
    return "<INSTANCE CLASSNAME=\"X_Alert\"><PROPERTY NAME=\"P\" TYPE=\"string\" "
           "EmbeddedObject=\"instance\"><VALUE>" +
           escaped(inner) + "</VALUE></PROPERTY></INSTANCE>";
  };
  const std::vector<TFullCase> cases = {
      {holder(kInstance),
       {"I:instance of X_Alert { P = \"instance of X_Disk {\\n    Id = 7;\\n};\"; };"}},
      // Marked by the class alone.
      {InDeclGroup("<VALUE.OBJECT><CLASS NAME=\"X_Alert\"><PROPERTY NAME=\"P\" "
                   "TYPE=\"string\"><QUALIFIER NAME=\"EmbeddedInstance\" TYPE=\"string\">"
                   "<VALUE>X_Disk</VALUE></QUALIFIER></PROPERTY></CLASS></VALUE.OBJECT>"
                   "<VALUE.OBJECT><INSTANCE CLASSNAME=\"X_Alert\"><PROPERTY NAME=\"p\" "
                   "TYPE=\"string\"><VALUE>" +
                   escaped(kInstance) + "</VALUE></PROPERTY></INSTANCE></VALUE.OBJECT>"),
       {"C:X_Alert",
        "I:instance of X_Alert { P = \"instance of X_Disk {\\n    Id = 7;\\n};\"; };"}},
      // Layout around the embedded element, as a CDATA section brings it.
      {"<INSTANCE CLASSNAME=\"X_Alert\"><PROPERTY NAME=\"P\" TYPE=\"string\" "
       "EmbeddedObject=\"instance\"><VALUE><![CDATA[\n   " +
           std::string(kInstance) + "\n ]]></VALUE></PROPERTY></INSTANCE>",
       {"I:instance of X_Alert { P = \"instance of X_Disk {\\n    Id = 7;\\n};\"; };"}},
      {Message("<SIMPLERSP><METHODRESPONSE NAME=\"M\"><PARAMVALUE NAME=\"E\" "
               "PARAMTYPE=\"instance\"><VALUE.ARRAY><VALUE>" +
               escaped(kInstance) +
               "</VALUE><VALUE>x</VALUE></VALUE.ARRAY></PARAMVALUE></METHODRESPONSE></SIMPLERSP>"),
       {"O4 M (E={\"instance of X_Disk {\\n    Id = 7;\\n};\", \"x\"};)", "M2 7 ops 1"},
       {Err("Unexpected character before prolog"),
        Err("Parameter E holds no embedded INSTANCE or CLASS: it stays text")}},
  };
  Expect(cases);
  // Objects within objects are read 16 deep; deeper ones stay text.
  std::string nested = kInstance;
  for (unsigned depth = 0; depth <= 16; ++depth)
    nested = holder(nested);
  Reset();
  EXPECT_EQ(Read(nested).size(), 1U);
  EXPECT_EQ(Log(), std::vector<std::string>{Err(
                       "Property P: embedded objects nested more than 16 deep are kept as text")});
}

// Every message and instance document of the corpus, read without a
// schema: none may end the process, and every message kind that the corpus
// holds is read from at least one real document with all its operations.
using FullGrammarCorpusTest = TCorpusTest;

TEST_F(FullGrammarCorpusTest, EveryMessageKindReadsFromARealDocument) {
  TCapturingLogger logger;
  std::map<int, std::size_t> kindsHeld;
  std::map<int, std::size_t> kindsRead;
  for (const auto &row : manifest) {
    if (row[0].rfind("dmtf-", 0) == 0)
      continue;
    SCOPED_TRACE(row[0]);
    TCIMXMLResult result;
    const EORVStatusCode status = StatusOf([&] {
      TNamespacePopulator::Populate(CreateCIMNamespace("root/cimv2"), corpus + "/" + row[0],
                                    {ECIMXMLGrammar::kFull, ECIMXMLRegistration::kReturnOnly},
                                    result);
    });
    if (row[8] != "yes")
      continue;
    for (const TCIMXMLMessage &message : result.GetMessages()) {
      const int kind = static_cast<int>(message.kind);
      ++kindsHeld[kind];
      if (status == kORVStatusOK && message.operationCount != 0)
        ++kindsRead[kind];
    }
  }
  EXPECT_FALSE(kindsHeld.empty());
  for (const auto &held : kindsHeld)
    EXPECT_GT(kindsRead[held.first], 0u) << "message kind " << held.first;
}

} // namespace
} // namespace orvtest
