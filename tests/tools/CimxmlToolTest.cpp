// The cimxml tool as scripts see it: run as a process, with its exit status,
// standard output and standard error taken apart.
#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"

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

  TTemporaryFolder scratch;
};

std::string Loaded(const std::string &path, int classes = 0) {
  return path + ": " + std::to_string(classes) + " classes, 0 instances\n";
}

std::string Failed(const std::string &path, int status, const std::string &text) {
  return path + ": failed: status " + std::to_string(status) + " (" + text + ")\n";
}

// Output that cannot be written fails the run, however well the files loaded.
TEST_F(CimxmlToolTest, UnwritableOutputFails) {
  const std::string example = std::string(ORV_EXAMPLES_DIR) + "/schema.xml";
  for (const auto &arguments : {std::vector<std::string>{"--quiet", "--mof", example},
                                std::vector<std::string>{"--help"}}) {
    SCOPED_TRACE(arguments.front());
    const TRun run = Run(arguments, "/dev/full");
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("cimxml: cannot write standard output: No space left on device\n", run.err);
  }
}

TEST_F(CimxmlToolTest, ReportsEachFileAndGoesOn) {
  const std::string good = scratch.Write("good.xml", kDocument);
  const std::string empty = scratch.Write("empty.xml", "<CIM/>");
  const std::string missing = scratch.PathOf("missing.xml");
  const std::string broken = scratch.Write("broken.xml", "<CIM>");
  const std::string note = "[0] Previous error was while parsing file '";
  const struct {
    std::vector<std::string> arguments;
    int status;
    std::string out, err;
    bool beginnings = false; // the streams need only begin so
  } cases[] = {
      {{good, empty}, 0, Loaded(good) + Loaded(empty), kFoo},
      {{"--quiet", good}, 0, Loaded(good), ""},
      {{missing, good},
       1,
       Loaded(good),
       note + missing + "'\n" + Failed(missing, 11, "File access failed") + kFoo},
      {{good, "--quiet", missing}, 1, Loaded(good), Failed(missing, 11, "File access failed")},
      {{broken},
       1,
       "",
       "[3] CIM-XML Parser line 1:Unexpected character where element expected\n" + note + broken +
           "'\n" + Failed(broken, 9, "Document is not valid CIM-XML")},
      // After "--" every argument is a file.
      {{"--quiet", "--", "--mof"}, 1, "", Failed("--mof", 11, "File access failed")},
      {{"--mo", "x"}, 2, "", "cimxml: unknown option '--mo'\nUsage: cimxml", true},
      {{"-x"}, 2, "", "cimxml: unknown option '-x'\nUsage: cimxml", true},
      {{"--help"},
       0,
       "Usage: cimxml [--instances] [--mof] [--quiet] [--stats] [FILE...]\n",
       "",
       true},
      // Without a file, the bundled example.
      {{"--quiet"},
       0,
       Loaded(kSchema, 6),
       "cimxml: no FILE given; loading the bundled example " + kSchema + "\n"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.arguments.front());
    const TRun run = Run(c.arguments);
    EXPECT_EQ(c.status, run.status);
    EXPECT_EQ(c.out, c.beginnings ? run.out.substr(0, c.out.size()) : run.out);
    EXPECT_EQ(c.err, c.beginnings ? run.err.substr(0, c.err.size()) : run.err);
  }
}

// The MOF is the namespace's after every file, as the library gives it;
// statistics give each file's size, time and rate, then any failure.
TEST_F(CimxmlToolTest, MofAndStats) {
  std::string expected;
  {
    TCapturingLogger quiet;
    auto ns = CreateCIMNamespace("root/cimv2");
    TNamespacePopulator::PopulateFromXMLFile(ns, kSchema);
    expected = Loaded(kSchema, 6) + ns->ToMOF();
  }
  EXPECT_EQ(expected, Run({"--mof", "--quiet", kSchema}).out);

  const std::string good = scratch.Write("good.xml", kDocument);
  const TRun run = Run({"--stats", "--quiet", good, scratch.PathOf("missing.xml")});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(Loaded(good), run.out);
  // "FILE: B bytes, T ms, R MB/s", then the failure, which has no size.
  const std::string head = good + ": " + std::to_string(sizeof kDocument - 1) + " bytes, ";
  ASSERT_EQ(0U, run.err.find(head)) << run.err;
  EXPECT_NE(std::string::npos, run.err.find(" ms, ")) << run.err;
  EXPECT_EQ(Failed(scratch.PathOf("missing.xml"), 11, "File access failed"),
            run.err.substr(run.err.find('\n') + 1));
}

} // namespace
} // namespace orvtest
