// The cimxml tool as scripts see it: run as a process, with its exit status,
// standard output and standard error taken apart.
#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"
#include "write/CIMXMLWriter.h"

#include <rapidjson/document.h>
#include <sys/wait.h>

#include <cstdlib>

namespace orvtest {
namespace {

const char kDocument[] = "<?xml version=\"1.0\"?>\n<CIM CIMVERSION=\"2.0\"><foo/></CIM>\n";
const char kFoo[] = "[3] CIM-XML Parser line 2:Unexpected element foo\n";
const std::string kSchema = std::string(ORV_EXAMPLES_DIR) + "/schema.xml";

struct TRun {
  int status = -1;
  std::string out, err;
};

struct TCase {
  std::vector<std::string> arguments;
  int status;
  std::string out, err = "";
  bool beginnings = false; // the streams need only begin so
};

class CimxmlToolTest : public ::testing::Test {
protected:
  /// Runs the tool with the arguments through the shell, its output streams
  /// caught in files (standard output in output, when given, which is not
  /// read back).
  TRun Run(const std::vector<std::string> &arguments, const std::string &output = "") const {
    const std::string outPath = output.empty() ? scratch.PathOf("out") : output;
    std::string command = ORV_CIMXML_TOOL;
    for (const std::string &argument : arguments)
      command += " '" + argument + "'";
    const int status =
        std::system((command + " >'" + outPath + "' 2>'" + scratch.PathOf("err") + "'").c_str());
    TRun run;
    if (WIFEXITED(status))
      run = {WEXITSTATUS(status), output.empty() ? ReadFile(outPath) : std::string(),
             ReadFile(scratch.PathOf("err"))};
    return run;
  }

  /// Runs each case with the arguments of grammar before its own.
  void Check(const std::vector<TCase> &cases, const std::vector<std::string> &grammar) const {
    for (const TCase &c : cases) {
      SCOPED_TRACE(c.arguments.front());
      std::vector<std::string> arguments = grammar;
      arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
      const TRun run = Run(arguments);
      EXPECT_EQ(c.status, run.status);
      EXPECT_EQ(c.out, c.beginnings ? run.out.substr(0, c.out.size()) : run.out);
      EXPECT_EQ(c.err, c.beginnings ? run.err.substr(0, c.err.size()) : run.err);
    }
  }

  TTemporaryFolder scratch;
};

std::string Loaded(const std::string &path, int classes = 0) {
  return path + ": " + std::to_string(classes) + " classes, 0 instances\n";
}

std::string Failed(const std::string &path, int status, const std::string &text) {
  return path + ": failed: status " + std::to_string(status) + " (" + text + ")\n";
}

/// A usage error: its message, then the usage, on standard error alone.
TCase Usage(const std::vector<std::string> &arguments, const std::string &message) {
  return {arguments, 2, "", "cimxml: " + message + "\nUsage: cimxml", true};
}

std::string Read(const std::string &path, int declarations, int classes, int instances, int paths,
                 int operations) {
  return path + ": " + std::to_string(declarations) + " qualifier declarations, " +
         std::to_string(classes) + " classes, " + std::to_string(instances) + " instances, " +
         std::to_string(paths) + " paths, " + std::to_string(operations) + " operations\n";
}

// Output that cannot be written fails the run, however well the files loaded.
TEST_F(CimxmlToolTest, UnwritableOutputFails) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"--classic", "--quiet", "--mof", kSchema}, ""},
      {{"--classic", "--help"}, ""},
      {{"--quiet", "--json", kSchema}, ""},
      // With --xml the file's line still reaches standard error.
      {{"--quiet", "--xml", kSchema}, Read(kSchema, 10, 6, 0, 0, 0)},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.first.size());
    const TRun run = Run(c.first, "/dev/full");
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(c.second + "cimxml: cannot write standard output: No space left on device\n",
              run.err);
  }
}

TEST_F(CimxmlToolTest, ReportsEachFileAndGoesOn) {
  const std::string good = scratch.Write("good.xml", kDocument);
  const std::string empty = scratch.Write("empty.xml", "<CIM/>");
  const std::string missing = scratch.PathOf("missing.xml");
  const std::string note = "[0] Previous error was while parsing file '";
  Check(
      {
          {{good, empty}, 0, Loaded(good) + Loaded(empty), kFoo},
          {{"--quiet", good}, 0, Loaded(good), ""},
          {{missing, good},
           1,
           Loaded(good),
           note + missing + "'\n" + Failed(missing, 11, "File access failed") + kFoo},
          {{good, "--quiet", missing}, 1, Loaded(good), Failed(missing, 11, "File access failed")},
          // After "--" every argument is a file.
          {{"--quiet", "--", "--mof"}, 1, "", Failed("--mof", 11, "File access failed")},
          // The files' counts, then the namespace; a file that fails says so.
          {{"--json", "--quiet", good, missing},
           1,
           "{\"files\":[{\"file\":\"" + good +
               "\",\"counts\":{\"classes\":0,\"instances\":0}},{\"file\":\"" + missing +
               "\",\"failure\":{\"status\":11,\"text\":\"File access failed\"}}],"
               "\"namespace\":{\"name\":\"root/cimv2\",\"qualifierDeclarations\":[],"
               "\"classes\":[],\"instances\":[]}}\n",
           Failed(missing, 11, "File access failed")},
          Usage({"--mo", "x"}, "unknown option '--mo'"),
          Usage({"-x"}, "unknown option '-x'"),
          Usage({"-5"}, "unknown option '-5'"),
          {{"--help"}, 0, "Usage: cimxml [OPTIONS] [FILE...]\n", "", true},
          // Without a file, the bundled example.
          {{"--quiet"},
           0,
           Loaded(kSchema, 6),
           "cimxml: no FILE given; loading the bundled example " + kSchema + "\n"},
      },
      {"--classic"});
}

// The MOF and the CIM-XML are the namespace's after every file, as the
// library gives them, the CIM-XML alone on standard output; statistics give
// each file's size, time and rate, then any failure.
TEST_F(CimxmlToolTest, MofXmlAndStats) {
  TCapturingLogger quiet;
  const auto ns = CreateCIMNamespace("root/cimv2");
  TNamespacePopulator::PopulateFromXMLFile(ns, kSchema);
  std::ostringstream xml;
  TCIMXMLWriter::WriteDocument(xml, *ns);
  EXPECT_EQ(Loaded(kSchema, 6) + ns->ToMOF(), Run({"--classic", "--mof", "--quiet", kSchema}).out);
  const TRun written = Run({"--classic", "--xml", "--quiet", kSchema});
  EXPECT_EQ(xml.str(), written.out);
  EXPECT_EQ(Loaded(kSchema, 6), written.err);

  const std::string good = scratch.Write("good.xml", kDocument);
  const TRun run = Run({"--classic", "--stats", "--quiet", good, scratch.PathOf("missing.xml")});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(Loaded(good), run.out);
  // "FILE: B bytes, T ms, R MB/s", then the failure, which has no size.
  const std::string head = good + ": " + std::to_string(sizeof kDocument - 1) + " bytes, ";
  ASSERT_EQ(0U, run.err.find(head)) << run.err;
  EXPECT_NE(std::string::npos, run.err.find(" ms, ")) << run.err;
  EXPECT_EQ(Failed(scratch.PathOf("missing.xml"), 11, "File access failed"),
            run.err.substr(run.err.find('\n') + 1));
}

// The default grammar: a summary line per file, then as asked its objects'
// MOF and its operations; the --schema documents type what the files hold.
TEST_F(CimxmlToolTest, FullGrammar) {
  const std::string examples = std::string(ORV_EXAMPLES_DIR) + "/";
  const std::string message = examples + "message.xml", request = examples + "request.xml",
                    response = examples + "response.xml", indication = examples + "indication.xml";
  const std::string missing = scratch.PathOf("missing.xml");
  // A class that names another comes after it; flavors that differ from the
  // declaration's are written; an instance without values is a comment.
  const std::string ordered = scratch.Write(
      "ordered.xml",
      Objects({"<CLASS NAME=\"B\"><QUALIFIER NAME=\"Abstract\" TYPE=\"boolean\" "
               "OVERRIDABLE=\"false\"><VALUE>true</VALUE></QUALIFIER><PROPERTY.REFERENCE "
               "NAME=\"r\" REFERENCECLASS=\"A\"/></CLASS>",
               "<CLASS NAME=\"A\"/>", "<INSTANCE CLASSNAME=\"A\"/>"}));
  // A file's declarations hold for the files after it.
  const std::string declares = scratch.Write(
      "declares.xml", InDeclGroup("<QUALIFIER.DECLARATION NAME=\"Abstract\" TYPE=\"boolean\" "
                                  "OVERRIDABLE=\"false\"><SCOPE CLASS=\"true\"/>"
                                  "</QUALIFIER.DECLARATION>"));
  const std::string uses = scratch.Write(
      "uses.xml", Objects({"<CLASS NAME=\"A\"><QUALIFIER NAME=\"Abstract\" TYPE=\"boolean\" "
                           "OVERRIDABLE=\"true\"><VALUE>true</VALUE></QUALIFIER></CLASS>"}));
  const std::string disk =
      "//alpha.example.com/root/example:ORV_Disk.SystemName=\"alpha\",DeviceID=\"usb1\"\n";
  const std::string answers = "IMETHODRESPONSE EnumerateInstances () return 1 objects\n"
                              "IMETHODRESPONSE EnumerateInstanceNames () return 1 objects\n"
                              "IMETHODRESPONSE AssociatorNames () return 1 objects\n"
                              "METHODRESPONSE RequestStateChange "
                              "(Job=\"root/cimv2:ORV_Job.InstanceID=\\\"ORV:format:usb1\\\"\") "
                              "return 4096\n"
                              "IMETHODRESPONSE GetInstance () error 6 \"No disk usb2 in alpha\"\n";
  Check(
      {
          {{"--quiet", kSchema, message},
           0,
           Read(kSchema, 10, 6, 0, 0, 0) + Read(message, 0, 1, 2, 0, 3)},
          {{"--operations", request},
           0,
           Read(request, 0, 0, 0, 2, 2) +
               "IMETHODCALL AssociatorNames root/example (ObjectName=1 objects, AssocClass=1 "
               "objects) correlator Trace=12\nMETHODCALL RequestStateChange "
               "root/example:ORV_Disk.SystemName=\"alpha\",DeviceID=\"usb1\" (RequestedState=3)\n"},
          // Untyped, the job's properties come in document order and the
          // system's key has no name.
          {{"--mof", "--operations", response},
           0,
           Read(response, 0, 0, 1, 2, 5) +
               "instance of ORV_Job {\n    PercentComplete = 40;\n    InstanceID = "
               "\"ORV:format:usb1\";\n};\n\n// path: ORV_System\n\n// path: " +
               disk + answers,
           "[3] CIM-XML Parser line 28:The key of ORV_System is dropped: without the class "
           "loaded its name is not known\n"},
          // Typed by the schema: in the class's order, and the key named.
          {{"--schema", kSchema, "--mof", response},
           0,
           Read(response, 0, 0, 1, 2, 5) +
               "instance of ORV_Job {\n    InstanceID = \"ORV:format:usb1\";\n"
               "    PercentComplete = 40;\n};\n\n// path: ORV_System.Name=\"alpha\"\n\n// path: " +
               disk},
          {{"--mof", "--operations", indication},
           0,
           Read(indication, 0, 0, 1, 0, 1) +
               "instance of ORV_JobProgress {\n    JobID = \"ORV:format:usb1\";\n    "
               "PercentComplete = 80;\n};\nEXPMETHODCALL ExportIndication (NewIndication=1 "
               "objects) correlator Subscription=\"jobs\"\n"},
          {{"--mof", ordered},
           0,
           Read(ordered, 0, 2, 1, 0, 0) +
               "class A {\n};\n\n[Abstract : DisableOverride]\nclass B {\n    A REF r;\n};\n\n"
               "// instance of A: no values, which MOF cannot write\n"},
          {{"--mof", declares, uses},
           0,
           Read(declares, 1, 0, 0, 0, 0) +
               "Qualifier Abstract : boolean, Scope(class), Flavor(DisableOverride, "
               "ToSubclass);\n" +
               Read(uses, 0, 1, 0, 0, 0) + "[Abstract : EnableOverride]\nclass A {\n};\n"},
          // A schema or file that fails is reported, and the others are read.
          {{"--quiet", "--schema", missing, message + "z", indication},
           1,
           Read(indication, 0, 0, 1, 0, 1),
           Failed(missing, 11, "File access failed") +
               Failed(message + "z", 11, "File access failed")},
          // Each file's items as they are read, one a line; a file that fails
          // keeps those it gave and says why.
          {{"--json", "--quiet", missing, indication},
           1,
           "{\"files\":[{\"file\":\"" + missing +
               "\",\"items\":[],\"counts\":{\"qualifierDeclarations\":0,\"classes\":0,"
               "\"instances\":0,\"paths\":0,\"operations\":0},\"failure\":{\"status\":11,"
               "\"text\":\"File access failed\"}},{\"file\":\"" +
               indication + "\",\"items\":[\n{\"item\":\"instance\",",
           Failed(missing, 11, "File access failed"),
           true},
          Usage({"--json", "--mof", request}, "--mof excludes --json"),
          Usage({"--operations", "--json", request}, "--json excludes --operations"),
          Usage({"--schema"}, "--schema: 1 required FILE missing"),
          Usage({"--schema=", request}, "--schema: 1 required FILE missing"),
          Usage({"--instances", request}, "--instances requires --classic"),
          Usage({"--classic", "--operations"}, "--classic excludes --operations"),
          Usage({"--bogus", "--help"}, "unknown option '--bogus'"),
          // One document of what the files gave back; their lines go to
          // standard error.
          {{"--quiet", "--xml", indication},
           0,
           "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" "
           "DTDVERSION=\"2.4\">\n"
           " <DECLARATION>\n  <DECLGROUP>\n   <LOCALNAMESPACEPATH>\n    <NAMESPACE "
           "NAME=\"root\"/>\n"
           "    <NAMESPACE NAME=\"cimv2\"/>\n   </LOCALNAMESPACEPATH>\n  </DECLGROUP>\n"
           "  <DECLGROUP.WITHNAME>\n",
           Read(indication, 0, 0, 1, 0, 1),
           true},
          Usage({"--xml", "--mof", indication}, "--mof excludes --xml"),
          Usage({"--xml", "--json", indication}, "--json excludes --xml"),
      },
      {});
}

// The example of docs/cimxml-tool.md is what the tool writes (the page runs
// it from the source tree, so its file name is relative).
TEST_F(CimxmlToolTest, JsonExampleOfTheGuide) {
  const std::string page = ReadFile(std::string(ORV_EXAMPLES_DIR) + "/../docs/cimxml-tool.md");
  const std::size_t begin = page.find("```json\n");
  ASSERT_NE(std::string::npos, begin);
  const std::string shown = page.substr(begin + 8, page.find("```", begin + 8) - begin - 8);
  const std::string response = std::string(ORV_EXAMPLES_DIR) + "/response.xml";
  const TRun run = Run({"--json", "--schema", kSchema, response});
  rapidjson::Document expected, written;
  expected.Parse(shown.c_str());
  written.Parse(run.out.c_str());
  ASSERT_FALSE(expected.HasParseError() || written.HasParseError());
  expected["files"][0]["file"].SetString(response.c_str(), expected.GetAllocator());
  EXPECT_TRUE(expected == written) << run.out;
}

} // namespace
} // namespace orvtest
