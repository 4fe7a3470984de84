// The loaders against real files in a scratch folder: plain and gzip, the
// asymmetric ".GZ" test, damaged and unreadable files, pipes, the size cap,
// the note that names a failed file, and loads in several threads.
#include "populate/NamespacePopulator.h"

#include "support/Fixtures.h"

#include <malloc.h>
#include <sys/stat.h>

#include <atomic>
#include <cstdlib>
#include <locale>
#include <thread>

// Defined by the sanitizers' runtimes, whose allocators glibc does not see.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace orvtest {
namespace {

/// Parsed as far as the root, where foo is refused: the line proves that the
/// bytes reached the parser.
const char kDocument[] = "<?xml version=\"1.0\"?>\n<CIM CIMVERSION=\"2.0\"><foo/></CIM>\n";
const std::string kFoo = Err("Unexpected element foo", 2);
const std::string kProlog = Err("Unexpected character before prolog");

std::size_t HeapInUse() {
  if (__sanitizer_get_current_allocated_bytes != nullptr)
    return __sanitizer_get_current_allocated_bytes();
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

/// Also keeps the most the heap held as a line was logged: during a parse,
/// with the document buffer.
class THeapLogger : public TCapturingLogger {
public:
  void Log(int level, const std::string &text) override {
    heapAtLog = std::max(heapAtLog, HeapInUse());
    TCapturingLogger::Log(level, text);
  }
  std::size_t heapAtLog = 0;
};

class NamespacePopulatorTest : public ::testing::Test {
protected:
  void TearDown() override {
    for (std::FILE *pipe : pipes)
      pclose(pipe); // a cat that the loader left writing fails
  }

  /// A pipe from cat, as a shell's "<(cat source)" hands it over.
  std::string Piped(const std::string &source) {
    pipes.push_back(popen(("cat '" + source + "'").c_str(), "r"));
    return "/proc/self/fd/" + std::to_string(fileno(pipes.back()));
  }

  /// Loads through one entry point into a fresh namespace (or none); the
  /// status it threw, the log (the note that names the file last, at level 0).
  EORVStatusCode Load(bool classes, const std::string &path, bool namespaced = true) {
    logger.entries.clear();
    ns = namespaced ? CreateCIMNamespace("root/test") : nullptr;
    const EORVStatusCode status = StatusOf([&] {
      if (classes)
        TNamespacePopulator::PopulateFromXMLFile(ns, path);
      else
        TNamespacePopulator::PopulateFromRegXMLFile(ns, path);
    });
    if (status != kORVStatusOK) {
      EXPECT_EQ(logger.entries.back(),
                std::make_pair(0, "Previous error was while parsing file '" + path + "'"));
      logger.entries.pop_back();
    }
    return status;
  }

  THeapLogger logger;
  TTemporaryFolder scratch;
  boost::shared_ptr<ICIMNamespace> ns;
  std::vector<std::FILE *> pipes;
};

/// A gzip member cut before its trailer, whose stored payload ends in the
/// size that the file's last four bytes then claim.
std::string Truncated(const std::string &bytes, const char (&claim)[5]) {
  const std::string whole = Gzipped(bytes + std::string(claim, 4), 0);
  return whole.substr(0, whole.size() - 8);
}

TEST_F(NamespacePopulatorTest, FilesAndWhatTheyYield) {
  const std::string gzip = Gzipped(kDocument);
  const std::string cut = "<?xml version=\"1.0\"?>\n<CIM>";
  const std::string schema = ReadFile(std::string(ORV_EXAMPLES_DIR) + "/schema.xml");
  std::string dataCheck = Gzipped(schema);
  dataCheck[dataCheck.size() - 8] = static_cast<char>(dataCheck[dataCheck.size() - 8] ^ 0xFF);
  std::string storedByte = Gzipped(schema, 0);
  storedByte[storedByte.size() / 2] = static_cast<char>(storedByte[storedByte.size() / 2] ^ 0x20);
  std::string method = gzip;
  method[2] = 9;
  enum EMade { kFile, kPipe, kFifo, kNothing };
  const struct {
    const char *name;
    std::string bytes;
    bool classes;
    EORVStatusCode status;
    std::vector<std::string> log;
    EMade made = kFile;
  } cases[] = {
      {"plain.xml", kDocument, false, kORVStatusOK, {kFoo}},
      {"doc.xml.gz", gzip, true, kORVStatusOK, {kFoo}},
      {"x.gz.xml", gzip, false, kORVStatusOK, {kFoo}},
      // Only the class loader takes the upper-case suffix: the instance
      // loader reads the compressed bytes as text. Mixed case is gzip to
      // neither; a gzip name on plain text fails the magic.
      {"DOC.XML.GZ", gzip, true, kORVStatusOK, {kFoo}},
      {"DOC.XML.GZ", gzip, false, kORVStatusInvalidDocument, {kProlog}},
      {"doc.Gz", gzip, true, kORVStatusInvalidDocument, {kProlog}},
      {"text.gz", kDocument, true, kORVStatusNotGzip, {}},
      {"text.GZ", kDocument, false, kORVStatusOK, {kFoo}},
      {"empty.xml", "", false, kORVStatusInvalidDocument, {kProlog}},
      {"empty.gz", Gzipped(""), true, kORVStatusGzipRead, {}},
      {"short.gz", "\x1f", true, kORVStatusFileAccess, {}},
      {"three.gz", "\x1f\x8b\x08", false, kORVStatusFileAccess, {}},
      {"nodeflate.gz", "\x1f\x8b" + std::string(40, 'x'), false, kORVStatusGzipRead, {}},
      // Damage that zlib always notices: the header's method, the data
      // check, a stored byte that then fails the data check.
      {"method.gz", method, true, kORVStatusGzipRead, {}},
      {"datacheck.gz", dataCheck, false, kORVStatusGzipRead, {}},
      {"storedbyte.gz", storedByte, true, kORVStatusGzipRead, {}},
      // The trailer's size decides how much is read. Of two members the
      // trailer is the second's, shorter, so only the document's beginning
      // is read; a file that ends early reads short, the rest zeroed; a size
      // beyond the limit is cut to it.
      {"claimsless.gz",
       Gzipped(cut + "<foo/></CIM>") + Gzipped(std::string(cut.size(), 'x')),
       true,
       kORVStatusInvalidDocument,
       {Err("Unexpected character where element expected", 2)}},
      {"claimsmore.gz", Truncated(kDocument, "\xe8\x03\x00\x00"), false, kORVStatusOK, {kFoo}},
      {"claimshuge.gz", Truncated(kDocument, "\xff\xff\xff\xff"), true, kORVStatusOK, {kFoo}},
      {"claims496m.gz", Truncated(kDocument, "\x00\x00\x00\x1f"), false, kORVStatusOK, {kFoo}},
      // A pipe is read to its end; with a gzip name it has no trailer to
      // check. A FIFO with no writer reads as empty at once.
      {"pipe.xml", kDocument, false, kORVStatusOK, {kFoo}, kPipe},
      {"pipe.xml.gz", gzip, true, kORVStatusOK, {kFoo}, kPipe},
      {"fifo.xml", "", false, kORVStatusInvalidDocument, {kProlog}, kFifo},
      {"missing.xml", "", true, kORVStatusFileAccess, {}, kNothing},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(std::string(c.name) + (c.classes ? " as classes" : " as instances"));
    const std::string path = scratch.PathOf(c.name);
    if (c.made == kFile)
      scratch.Write(c.name, c.bytes);
    else if (c.made == kPipe)
      std::filesystem::create_symlink(Piped(scratch.Write(c.name + std::string("~"), c.bytes)),
                                      path);
    else if (c.made == kFifo)
      mkfifo(path.c_str(), 0600); // a failure shows in the status
    logger.heapAtLog = 0;
    const std::size_t before = HeapInUse();
    EXPECT_EQ(c.status, Load(c.classes, path));
    EXPECT_EQ(c.log, logger.Texts());
    // However much a trailer claims, the buffer holds what was inflated.
    EXPECT_LT(logger.heapAtLog, before + (1U << 20));
  }
  // What is neither a regular file nor a pipe is refused before it is opened.
  std::filesystem::create_directory(scratch.PathOf("folder.xml.gz"));
  for (const auto &[path, kind] :
       {std::pair<std::string, const char *>(scratch.PathOf("folder.xml.gz"), "a directory"),
        {"/dev/null", "a character device"}}) {
    EXPECT_EQ(kORVStatusFileAccess, Load(true, path));
    EXPECT_EQ(std::vector<std::string>{"TNamespacePopulator: '" + path + "' is " + kind +
                                       "; only regular files and pipes are read"},
              logger.Texts());
  }
}

// No load touches the global locale, whatever the environment names, also
// when a gzip file cannot be read.
TEST_F(NamespacePopulatorTest, GzipLoadAndTheGlobalLocale) {
  const std::string path = scratch.Write("locale.xml.gz", Gzipped(kDocument));
  const char *saved = std::getenv("LC_ALL");
  const std::string savedValue = saved != nullptr ? saved : "";
  const std::string before = std::locale().name();
  setenv("LC_ALL", "C.UTF-8", 1);
  for (bool classes : {true, false}) {
    EXPECT_EQ(kORVStatusOK, Load(classes, path));
    EXPECT_EQ(kORVStatusFileAccess, Load(classes, scratch.PathOf("missing.xml.gz")));
    EXPECT_EQ(before, std::locale().name());
  }
  saved != nullptr ? setenv("LC_ALL", savedValue.c_str(), 1) : unsetenv("LC_ALL");
}

// Without a namespace both calls fail before the file is read, with one line.
TEST_F(NamespacePopulatorTest, EmptyNamespaceFailsAtOnce) {
  const std::string path = scratch.Write("doc.xml", "<CIM/>");
  for (bool classes : {true, false}) {
    EXPECT_EQ(kORVStatusNullObject, Load(classes, path, false));
    EXPECT_EQ(logger.Texts(), std::vector<std::string>{});
  }
}

// A plain document larger than the limit is read only to 100 MiB. The file
// is sparse beyond its first 100 MiB of prolog blanks, and the root element
// stands just past the cut: read whole it loads, cut it fails. A pipe, which
// has no size, is cut the same once it runs past the limit.
TEST_F(NamespacePopulatorTest, OversizedDocumentIsCut) {
  const std::size_t cut = 104857600;
  const std::string path = scratch.PathOf("big.xml");
  {
    std::ofstream file(path, std::ios::binary);
    file << "<?xml version=\"1.0\"?>";
    const std::string blanks(1 << 20, ' ');
    for (std::size_t written = 21; written < cut; written += blanks.size())
      file.write(blanks.data(),
                 static_cast<std::streamsize>(std::min(blanks.size(), cut - written)));
    file << "<CIM><foo/></CIM>";
  }
  EXPECT_EQ(kORVStatusOK, Load(true, path));
  EXPECT_EQ(std::vector<std::string>{Err("Unexpected element foo")}, logger.Texts());
  ASSERT_EQ(0, truncate(path.c_str(), TCIMXMLParser::kMaxSpecificationDocumentSize + 1));
  for (const std::string &source : {path, Piped(path)}) {
    EXPECT_EQ(kORVStatusInvalidDocument, Load(false, source));
    EXPECT_EQ(std::vector<std::string>{Err("Unexpected character before element")}, logger.Texts());
  }
}

// Loads of plain and gzip files in several threads, each into a namespace of
// its own; scripts/tsan-check.sh runs this under ThreadSanitizer.
TEST_F(NamespacePopulatorTest, ThreadsLoadIntoTheirOwnNamespaces) {
  const std::string examples = ORV_EXAMPLES_DIR;
  const std::string schemas[] = {
      examples + "/schema.xml", scratch.Write("s.gz", Gzipped(ReadFile(examples + "/schema.xml")))};
  std::atomic<std::size_t> loaded{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&, i] {
      const auto own = CreateCIMNamespace("root/cimv2");
      StatusOf([&] {
        loaded +=
            TNamespacePopulator::PopulateFromXMLFile(own, schemas[i % 2]).size() +
            TNamespacePopulator::PopulateFromRegXMLFile(own, examples + "/instances.xml").size();
      });
    });
  for (std::thread &thread : threads)
    thread.join();
  EXPECT_EQ(4 * (6 + 5), loaded.load()); // classes and instances of each thread
  EXPECT_EQ(std::vector<std::string>{}, logger.Texts());
}

// A parser used again after a parse that ended early (thrown, stack emptied,
// stopped at a CDATA section) starts afresh; what it collected stays.
TEST_F(NamespacePopulatorTest, ReusedParserStartsClean) {
  const std::string classA = Objects({"<CLASS NAME=\"A\"/>"});
  const std::string classACut = classA.substr(0, classA.size() - 20);
  for (std::string first : {std::string("<CIM><foo/><bar/></CIM>"), classACut,
                            std::string("<CIMX></CIMX>"), std::string("<CIM><![CDATA[x]]>")}) {
    SCOPED_TRACE(first);
    const std::size_t collected = first == classACut ? 2 : 1; // A stays collected
    TCIMXMLParser parser(ns = CreateCIMNamespace("root/test"));
    std::string second = Objects({"<CLASS NAME=\"B\"/>"});
    StatusOf([&] { parser.Parse(&first[0]); }); // 3, 9, 0 and 0
    EXPECT_EQ(kORVStatusOK, StatusOf([&] { parser.Parse(&second[0]); }));
    ASSERT_EQ(collected, parser.GetClassesCollected().size());
    EXPECT_EQ("B", parser.GetClassesCollected().back()->GetName());
  }
}

} // namespace
} // namespace orvtest
