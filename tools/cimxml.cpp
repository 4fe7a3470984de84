// cimxml: loads CIM-XML documents into one namespace and reports what each
// contributed; optionally prints the namespace as MOF.
//
// Standard output carries only results ("FILE: N classes, M instances" lines
// and the MOF), so scripts can read it; everything else goes to standard
// error.
#include "core_api/CIMInterfaces.h"
#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"
#include "core_api/OSSpecific.h"
#include "populate/NamespacePopulator.h"

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

using namespace NVRNORV20;

namespace {

const int kExitOK = 0;
const int kExitFailed = 1;
const int kExitUsage = 2;

const char kUsage[] = "Usage: cimxml [--instances] [--mof] [--quiet] [--stats] [FILE...]\n"
                      "\n"
                      "Loads each CIM-XML FILE, plain or gzip-compressed (a name containing\n"
                      "\".gz\"), in order into one namespace, and prints for each on standard\n"
                      "output:\n"
                      "  FILE: N classes, M instances\n"
                      "A file that fails prints instead, on standard error:\n"
                      "  FILE: failed: status S (TEXT)\n"
                      "and the next file is loaded.\n"
                      "\n"
                      "Options:\n"
                      "  --instances  read the files as instance documents (by default they are\n"
                      "               read as class documents)\n"
                      "  --mof        after loading, print the namespace as MOF on standard\n"
                      "               output: qualifier declarations, classes (superclasses\n"
                      "               first), instances\n"
                      "  --quiet      do not show the loader's messages, which otherwise go to\n"
                      "               standard error as \"[LEVEL] TEXT\" lines\n"
                      "  --stats      per file, print on standard error\n"
                      "                 FILE: B bytes, T ms, R MB/s\n"
                      "               (B the file's size as stored, T the time the load took,\n"
                      "               R = B / T in millions of bytes per second)\n"
                      "  --help       print this text\n"
                      "\n"
                      "Without FILE the bundled example schema is loaded.\n"
                      "\n"
                      "Exit status: 0 when every file loaded, 1 when any failed, 2 for a usage\n"
                      "error.\n";

/// Every message of the loader and the object model as one "[LEVEL] TEXT"
/// line on standard error, or nothing at all.
class TToolLogger : public ILogger {
public:
  explicit TToolLogger(bool silent) : quiet(silent) {}

  void Log(int level, const std::string &text) override {
    if (quiet)
      return;
    const std::string line = "[" + std::to_string(level) + "] " + text + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
  }

private:
  bool quiet;
};

struct TOptions {
  bool instances = false;
  bool mof = false;
  bool quiet = false;
  bool stats = false;
  bool help = false;
  std::vector<std::string> files;
};

/// False for an unknown option; "--" ends the options.
bool ParseArguments(int argc, char **argv, TOptions &options) {
  bool optionsEnded = false;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
      options.files.push_back(argument);
    } else if (argument == "--") {
      optionsEnded = true;
    } else if (argument == "--instances") {
      options.instances = true;
    } else if (argument == "--mof") {
      options.mof = true;
    } else if (argument == "--quiet") {
      options.quiet = true;
    } else if (argument == "--stats") {
      options.stats = true;
    } else if (argument == "--help" || argument == "-h") {
      options.help = true;
    } else {
      std::fprintf(stderr, "cimxml: unknown option '%s'\n", argument.c_str());
      return false;
    }
  }
  return true;
}

bool FileExists(const std::string &path) {
  std::FILE *file = std::fopen(path.c_str(), "rb");
  if (file == nullptr)
    return false;
  std::fclose(file);
  return true;
}

#ifdef ORV_SOURCE_EXAMPLES_DIR
/// The build tree's binary loads the examples of its source tree.
std::string BundledExamplesDir() {
  return ORV_SOURCE_EXAMPLES_DIR;
}
#else
/// The installed binary finds its examples where the install put them
/// relative to the binary itself, so that a tree installed under any prefix,
/// or moved, still finds them. Empty when the binary's own path cannot be
/// read.
std::string BundledExamplesDir() {
  std::error_code error;
  const std::filesystem::path binary = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error)
    return std::string();
  return (binary.parent_path() / ORV_EXAMPLES_FROM_BINARY).lexically_normal().string();
}
#endif

void PrintStats(const std::string &fileName, double seconds) {
  std::uint64_t bytes = 0;
  try {
    bytes = TOSSpecific::GetFileSize(fileName);
  } catch (const TORVException &) {
    return; // a missing file has nothing to measure
  }
  const double milliseconds = seconds * 1000.0;
  const double megabytesPerSecond =
      seconds > 0.0 ? static_cast<double>(bytes) / 1e6 / seconds : 0.0;
  std::fprintf(stderr, "%s: %llu bytes, %.3f ms, %.1f MB/s\n", fileName.c_str(),
               static_cast<unsigned long long>(bytes), milliseconds, megabytesPerSecond);
}

/// Loads one file into ns and reports it; false when it failed.
bool LoadFile(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &fileName,
              const TOptions &options) {
  std::size_t classes = 0;
  std::size_t instances = 0;
  bool loaded = false;
  const auto start = std::chrono::steady_clock::now();
  try {
    if (options.instances)
      instances = TNamespacePopulator::PopulateFromRegXMLFile(ns, fileName).size();
    else
      classes = TNamespacePopulator::PopulateFromXMLFile(ns, fileName).size();
    loaded = true;
  } catch (const TORVException &ex) {
    std::fprintf(stderr, "%s: failed: status %d (%s)\n", fileName.c_str(),
                 static_cast<int>(ex.GetStatusCode()), ex.what());
  } catch (const std::exception &ex) {
    // The library promises TORVException only; anything else is still one
    // file's failure, not the tool's.
    std::fprintf(stderr, "%s: failed: %s\n", fileName.c_str(), ex.what());
  }
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  if (loaded) {
    std::printf("%s: %zu classes, %zu instances\n", fileName.c_str(), classes, instances);
    std::fflush(stdout);
  }
  if (options.stats)
    PrintStats(fileName, elapsed.count());
  return loaded;
}

bool PrintMOF(const boost::shared_ptr<ICIMNamespace> &ns) {
  try {
    const std::string mof = ns->ToMOF();
    std::fwrite(mof.data(), 1, mof.size(), stdout);
    std::fflush(stdout);
    return true;
  } catch (const std::exception &ex) {
    std::fprintf(stderr, "cimxml: cannot print the namespace as MOF: %s\n", ex.what());
    return false;
  }
}

/// The exit status once standard output is flushed: a write that failed
/// (a full disk, a closed stream) fails the run, whatever loaded.
int Finish(int status) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
    return status;
  std::fprintf(stderr, "cimxml: cannot write standard output: %s\n", std::strerror(errno));
  return status == kExitUsage ? kExitUsage : kExitFailed;
}

} // namespace

int main(int argc, char **argv) {
  TOptions options;
  if (!ParseArguments(argc, argv, options)) {
    std::fputs(kUsage, stderr);
    return kExitUsage;
  }
  if (options.help) {
    std::fputs(kUsage, stdout);
    return Finish(kExitOK);
  }
  if (options.files.empty()) {
    const std::string examples = BundledExamplesDir();
    const std::string example = examples + "/schema.xml";
    if (examples.empty() || !FileExists(example)) {
      std::fprintf(stderr, "cimxml: no FILE given and the bundled example was not found in %s\n",
                   examples.empty() ? "(cannot read /proc/self/exe)" : examples.c_str());
      return kExitFailed;
    }
    std::fprintf(stderr, "cimxml: no FILE given; loading the bundled example %s\n",
                 example.c_str());
    options.files.push_back(example);
  }

  TToolLogger logger(options.quiet);
  TRootObject::SetCoreLogger(&logger);
  bool allLoaded = true;
  {
    const boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/cimv2");
    for (const std::string &fileName : options.files)
      allLoaded = LoadFile(ns, fileName, options) && allLoaded;
    if (options.mof)
      allLoaded = PrintMOF(ns) && allLoaded;
  }
  TRootObject::SetCoreLogger(nullptr);
  return Finish(allLoaded ? kExitOK : kExitFailed);
}
