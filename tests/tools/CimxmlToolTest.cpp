// The cimxml tool as scripts see it: run as a process, with its exit status,
// standard output and standard error taken apart.
#include "core_api/CIMInterfaces.h"
#include "populate/NamespacePopulator.h"
#include "support/CapturingLogger.h"
#include "support/ScratchFiles.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

const char kDocument[] = "<?xml version=\"1.0\"?>\n<CIM CIMVERSION=\"2.0\"><foo/></CIM>\n";
const char kFooLine[] = "[3] CIM-XML Parser line 2:Unexpected element foo\n";

struct TRun {
  int status = -1;
  std::string out;
  std::string err;
};

std::string ReadAll(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

class TCimxmlToolTest : public ::testing::Test {
protected:
  std::string Write(const std::string &name, const std::string &bytes) const {
    return scratch.Write(name, bytes);
  }
  std::string WriteGzip(const std::string &name, const std::string &bytes) const {
    return scratch.WriteGzip(name, bytes);
  }

  /// Runs the tool with the arguments, its output streams caught in files
  /// (standard output in output, when given).
  TRun Run(const std::vector<std::string> &arguments, const std::string &output = "") const {
    const std::string outPath = output.empty() ? folder + "/stdout" : output;
    const std::string errPath = folder + "/stderr";
    std::vector<char *> argv;
    std::string tool = ORV_CIMXML_TOOL;
    argv.push_back(&tool[0]);
    std::vector<std::string> copies = arguments;
    for (std::string &argument : copies)
      argv.push_back(&argument[0]);
    argv.push_back(nullptr);

    TRun run;
    const pid_t child = fork();
    if (child == 0) {
      const int out = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      const int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      if (out < 0 || err < 0 || dup2(out, 1) < 0 || dup2(err, 2) < 0)
        _exit(126);
      execv(argv[0], argv.data());
      _exit(127);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
      return run;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    if (output.empty())
      run.out = ReadAll(outPath);
    run.err = ReadAll(errPath);
    return run;
  }

  orvtest::TTemporaryFolder scratch{"orvtool"};
  /// Empty when the scratch folder could not be made.
  const std::string folder = scratch.Path();
};

/// True when text is prefix, then one or more decimal digits, then suffix.
bool HasNumberBetween(const std::string &text, const std::string &prefix,
                      const std::string &suffix) {
  if (text.size() <= prefix.size() + suffix.size() || text.compare(0, prefix.size(), prefix) != 0 ||
      text.compare(text.size() - suffix.size(), suffix.size(), suffix) != 0)
    return false;
  const std::string middle =
      text.substr(prefix.size(), text.size() - prefix.size() - suffix.size());
  return middle.find_first_not_of("0123456789") == std::string::npos;
}

std::string Loaded(const std::string &path, int classes, int instances) {
  return path + ": " + std::to_string(classes) + " classes, " + std::to_string(instances) +
         " instances\n";
}

std::string Failed(const std::string &path, int status, const std::string &text) {
  return path + ": failed: status " + std::to_string(status) + " (" + text + ")\n";
}

std::string Note(const std::string &path) {
  return "[0] Previous error was while parsing file '" + path + "'\n";
}

TEST_F(TCimxmlToolTest, ReportsEachFileAndGoesOn) {
  ASSERT_FALSE(folder.empty());
  const std::string good = Write("good.xml", kDocument);
  const std::string empty = Write("empty.xml", "<CIM/>");
  const std::string missing = folder + "/missing.xml";
  const std::string broken = Write("broken.xml", "<CIM>");
  const std::string gzip = WriteGzip("good.xml.GZ", kDocument);
  const std::string brokenLine =
      "[3] CIM-XML Parser line 1:Unexpected character where element expected\n";
  struct TCase {
    std::vector<std::string> arguments;
    int status;
    std::string out;
    std::string err;
  };
  const TCase cases[] = {
      {{good}, 0, Loaded(good, 0, 0), kFooLine},
      {{"--quiet", good}, 0, Loaded(good, 0, 0), ""},
      {{good, empty}, 0, Loaded(good, 0, 0) + Loaded(empty, 0, 0), kFooLine},
      {{missing, good},
       1,
       Loaded(good, 0, 0),
       Note(missing) + Failed(missing, 11, "File access failed") + kFooLine},
      {{good, "--quiet", missing},
       1,
       Loaded(good, 0, 0),
       Failed(missing, 11, "File access failed")},
      {{broken},
       1,
       "",
       brokenLine + Note(broken) + Failed(broken, 9, "Document is not valid CIM-XML")},
      // Only the class loader reads ".GZ" as gzip.
      {{gzip}, 0, Loaded(gzip, 0, 0), kFooLine},
      {{"--instances", "--quiet", gzip}, 1, "", Failed(gzip, 9, "Document is not valid CIM-XML")},
      // After "--" every argument is a file.
      {{"--quiet", "--", "--mof"}, 1, "", Failed("--mof", 11, "File access failed")},
  };
  for (const TCase &c : cases) {
    std::string trace;
    for (const std::string &argument : c.arguments)
      trace += argument + " ";
    SCOPED_TRACE(trace);
    const TRun run = Run(c.arguments);
    EXPECT_EQ(c.status, run.status);
    EXPECT_EQ(c.out, run.out);
    EXPECT_EQ(c.err, run.err);
  }
}

TEST_F(TCimxmlToolTest, UsageErrorsAndHelp) {
  for (const char *bad : {"--bogus", "-x", "--mo"}) {
    SCOPED_TRACE(bad);
    const TRun run = Run({bad, "file.xml"});
    EXPECT_EQ(2, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(0U, run.err.find(std::string("cimxml: unknown option '") + bad + "'\nUsage: cimxml"))
        << run.err;
  }
  const TRun help = Run({"--help"});
  EXPECT_EQ(0, help.status);
  EXPECT_EQ(0U,
            help.out.find("Usage: cimxml [--instances] [--mof] [--quiet] [--stats] [FILE...]\n"));
  EXPECT_EQ("", help.err);
}

// Output that cannot be written fails the run, however well the files loaded.
TEST_F(TCimxmlToolTest, UnwritableOutputFails) {
  const std::string example = std::string(ORV_EXAMPLES_DIR) + "/schema.xml";
  for (const auto &arguments : {std::vector<std::string>{"--quiet", "--mof", example},
                                std::vector<std::string>{"--help"}}) {
    SCOPED_TRACE(arguments.front());
    const TRun run = Run(arguments, "/dev/full");
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("cimxml: cannot write standard output: No space left on device\n", run.err);
  }
}

TEST_F(TCimxmlToolTest, LoadsTheBundledExampleWithoutFile) {
  const TRun run = Run({"--quiet"});
  EXPECT_EQ(0, run.status) << run.err;
  const std::string example = std::string(ORV_EXAMPLES_DIR) + "/schema.xml";
  EXPECT_TRUE(HasNumberBetween(run.out, example + ": ", " classes, 0 instances\n")) << run.out;
  EXPECT_EQ("cimxml: no FILE given; loading the bundled example " + example + "\n", run.err);
}

// The MOF is the namespace's after every file, as the library itself gives it.
TEST_F(TCimxmlToolTest, MofFollowsTheReport) {
  const std::string example = std::string(ORV_EXAMPLES_DIR) + "/schema.xml";
  std::string expected;
  {
    orvtest::TCapturingLogger quiet;
    auto ns = NVRNORV20::CreateCIMNamespace("root/cimv2");
    const auto classes = NVRNORV20::TNamespacePopulator::PopulateFromXMLFile(ns, example);
    expected = Loaded(example, static_cast<int>(classes.size()), 0) + ns->ToMOF();
  }
  const TRun run = Run({"--mof", "--quiet", example});
  EXPECT_EQ(0, run.status) << run.err;
  EXPECT_EQ(expected, run.out);
}

TEST_F(TCimxmlToolTest, StatsGiveSizeTimeAndRate) {
  ASSERT_FALSE(folder.empty());
  const std::string good = Write("good.xml", kDocument);
  const std::string missing = folder + "/missing.xml";
  const TRun run = Run({"--stats", "--quiet", good, missing});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(Loaded(good, 0, 0), run.out);
  // "FILE: B bytes, T ms, R MB/s", then the failure, which has no size.
  std::istringstream lines(run.err);
  std::string first;
  std::string second;
  std::getline(lines, first);
  std::getline(lines, second);
  const std::string head = good + ": " + std::to_string(sizeof kDocument - 1) + " bytes, ";
  ASSERT_EQ(0U, first.find(head)) << run.err;
  double milliseconds = -1;
  double rate = -1;
  char rest[16] = "";
  EXPECT_EQ(3, std::sscanf(first.c_str() + head.size(), "%lf ms, %lf MB/%15s", &milliseconds, &rate,
                           rest))
      << first;
  EXPECT_GE(milliseconds, 0.0);
  EXPECT_GE(rate, 0.0);
  EXPECT_STREQ("s", rest);
  EXPECT_EQ(Failed(missing, 11, "File access failed"), second + "\n");
  EXPECT_FALSE(lines.good() && lines.peek() != EOF);
}

} // namespace
