// Files that go wrong under the loaders: a gzip document damaged inside its
// compressed stream, a folder where a file is expected, an empty file, and
// a file that the process may not read (made real also for root, whose
// reads chmod alone does not stop).
#include "populate/NamespacePopulator.h"

#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"
#include "support/CapturingLogger.h"
#include "support/ScratchFiles.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <locale>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define ORV_TEST_LEAK_CHECK 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORV_TEST_LEAK_CHECK 1
#endif
#endif
#ifdef ORV_TEST_LEAK_CHECK
#include <sanitizer/lsan_interface.h>
#endif

using namespace NVRNORV20;

namespace {

using orvtest::Gzipped;

enum class EEntry { kClasses, kInstances };

const char *EntryName(EEntry entry) {
  return entry == EEntry::kClasses ? "PopulateFromXMLFile" : "PopulateFromRegXMLFile";
}

const std::string kSyntaxPrefix = "CIM-XML Parser line ";
const std::string kEndElementPrefix = "TCIMXMLParser: EndElement: Threw exception ";

std::string Note(const std::string &path) {
  return "Previous error was while parsing file '" + path + "'";
}

/// The gzip header that Gzipped writes and the trailer (CRC, size).
const std::size_t kGzipHeaderSize = 10;
const std::size_t kGzipTrailerSize = 8;

class FileFaultsTest : public ::testing::Test {
protected:
  FileFaultsTest() : ns(CreateCIMNamespace("root/faults")) {}

  void SetUp() override { ASSERT_FALSE(folder.empty()) << "no temporary folder"; }

  std::string Write(const std::string &name, const std::string &bytes) const {
    return scratch.Write(name, bytes);
  }

  /// Loads through one entry point into ns; the status that it threw, or
  /// 0, and how many objects it returned.
  int Load(EEntry entry, const std::string &path, std::size_t *returned = nullptr) {
    std::size_t count = 0;
    try {
      if (entry == EEntry::kClasses)
        count = TNamespacePopulator::PopulateFromXMLFile(ns, path).size();
      else
        count = TNamespacePopulator::PopulateFromRegXMLFile(ns, path).size();
    } catch (const TORVException &ex) {
      return ex.GetStatusCode();
    }
    if (returned != nullptr)
      *returned = count;
    return 0;
  }

  static std::string Example(const char *name) {
    std::ifstream stream(std::string(ORV_EXAMPLES_DIR) + "/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }

  orvtest::TCapturingLogger logger;
  boost::shared_ptr<ICIMNamespace> ns;
  orvtest::TTemporaryFolder scratch{"orvfault"};
  /// Empty when the scratch folder could not be made.
  const std::string folder = scratch.Path();
};

// Damage inside a real gzip document. The places that zlib always notices
// (the header's method and flags, the data check, a stored block's length,
// a stored byte that then fails the data check) end in the documented
// status 30 with only the note. A flip inside compressed data may instead
// inflate into other bytes: then the loader parses those and may fail only
// as any broken document does.
TEST_F(FileFaultsTest, GzipDamagedInsideItsStream) {
  const std::string document = Example("schema.xml");
  ASSERT_FALSE(document.empty());
  enum class EPlace { kHeader, kStream, kTrailer };
  struct TCase {
    const char *name;
    int level;
    EPlace place;
    /// From the start of the place, plus percent of the place's length.
    std::size_t offset;
    unsigned percent;
    std::size_t count;
    unsigned char mask;
    /// Must end in status 30 with only the note logged.
    bool gzipError;
  };
  const TCase cases[] = {
      {"method.gz", Z_DEFAULT_COMPRESSION, EPlace::kHeader, 2, 0, 1, 0x01, true},
      {"flags.gz", Z_DEFAULT_COMPRESSION, EPlace::kHeader, 3, 0, 1, 0xE0, true},
      {"datacheck.gz", Z_DEFAULT_COMPRESSION, EPlace::kTrailer, 0, 0, 1, 0xFF, true},
      {"storedlength.gz", 0, EPlace::kStream, 1, 0, 1, 0x40, true},
      {"storedbyte.gz", 0, EPlace::kStream, 0, 50, 1, 0x20, true},
      {"storedzeros.gz", 0, EPlace::kStream, 0, 40, 64, 0xFF, true},
      {"flip10.gz", Z_DEFAULT_COMPRESSION, EPlace::kStream, 0, 10, 1, 0xFF, false},
      {"flip25.gz", Z_DEFAULT_COMPRESSION, EPlace::kStream, 0, 25, 1, 0x10, false},
      {"flip50.gz", Z_DEFAULT_COMPRESSION, EPlace::kStream, 0, 50, 1, 0xFF, false},
      {"flip75.gz", Z_DEFAULT_COMPRESSION, EPlace::kStream, 0, 75, 1, 0x01, false},
      {"flip90.gz", Z_DEFAULT_COMPRESSION, EPlace::kStream, 0, 90, 1, 0x80, false},
      {"run50.gz", Z_DEFAULT_COMPRESSION, EPlace::kStream, 0, 50, 32, 0x5A, false},
  };
  for (const TCase &c : cases) {
    SCOPED_TRACE(c.name);
    std::string bytes = Gzipped(document, c.level);
    const std::size_t streamLength = bytes.size() - kGzipHeaderSize - kGzipTrailerSize;
    std::size_t at = c.offset;
    if (c.place == EPlace::kStream)
      at += kGzipHeaderSize + streamLength * c.percent / 100;
    else if (c.place == EPlace::kTrailer)
      at += bytes.size() - kGzipTrailerSize;
    ASSERT_LE(at + c.count, bytes.size());
    if (c.place == EPlace::kStream) {
      ASSERT_LE(at + c.count, bytes.size() - kGzipTrailerSize);
    }
    for (std::size_t i = at; i < at + c.count; ++i)
      bytes[i] = static_cast<char>(bytes[i] ^ c.mask);
    const std::string path = Write(c.name, bytes);
    for (EEntry entry : {EEntry::kClasses, EEntry::kInstances}) {
      SCOPED_TRACE(EntryName(entry));
      ns = CreateCIMNamespace("root/faults");
      const int status = Load(entry, path);
      const std::vector<std::string> log = logger.Texts();
      if (c.gzipError || status == kORVStatusGzipRead) {
        EXPECT_EQ(kORVStatusGzipRead, status);
        EXPECT_EQ(std::vector<std::string>{Note(path)}, log);
        EXPECT_TRUE(ns->GetClasses().empty());
      } else {
        // What was inflated was parsed: only the parser's own lines, and
        // the note when the parse ended the load.
        EXPECT_TRUE(status == 0 || status == kORVStatusInvalidDocument ||
                    status == kORVStatusParserStateMissing)
            << status;
        std::size_t parserLines = log.size();
        if (status != 0) {
          ASSERT_FALSE(log.empty());
          EXPECT_EQ(Note(path), log.back());
          --parserLines;
        }
        for (std::size_t i = 0; i < parserLines; ++i) {
          EXPECT_EQ(3, logger.entries[i].first);
          EXPECT_TRUE(log[i].rfind(kSyntaxPrefix, 0) == 0 ||
                      log[i].rfind(kEndElementPrefix, 0) == 0 ||
                      log[i].rfind("TCIMXMLParser: Couldn't find qualifier ", 0) == 0)
              << log[i];
        }
      }
      logger.entries.clear();
    }
  }
}

// Only about as many bytes as the trailer claims are inflated (zlib works
// ahead by a buffer of some kilobytes only), so damage far past them, here
// at the end of a megabyte of blanks after the root element, and the data
// check that it breaks are never reached: the document up to its root's end
// tag loads.
TEST_F(FileFaultsTest, DamageFarPastTheClaimedSizeIsNeverRead) {
  const std::string schema = Example("schema.xml");
  const std::size_t rootEnd = schema.rfind('>') + 1;
  ASSERT_NE(0u, rootEnd);
  std::string bytes = Gzipped(schema.substr(0, rootEnd) + std::string(1 << 20, ' '), 0);
  const std::size_t trailer = bytes.size() - kGzipTrailerSize;
  // The last stored blank, then the size field.
  bytes[trailer - 1] = static_cast<char>(bytes[trailer - 1] ^ 0x55);
  for (std::size_t i = 0; i < 4; ++i)
    bytes[trailer + 4 + i] = static_cast<char>((rootEnd >> (8 * i)) & 0xFF);
  const std::string path = Write("pastsize.xml.gz", bytes);
  std::size_t classes = 0;
  EXPECT_EQ(0, Load(EEntry::kClasses, path, &classes));
  EXPECT_EQ(6u, classes);
  EXPECT_TRUE(logger.entries.empty());
  ns = CreateCIMNamespace("root/faults");
  std::size_t instances = 1;
  EXPECT_EQ(0, Load(EEntry::kInstances, path, &instances));
  EXPECT_EQ(0u, instances);
  EXPECT_EQ(6u, ns->GetClasses().size());
  EXPECT_TRUE(logger.entries.empty());

  // The same damage within the claimed size fails the data check.
  for (std::size_t i = 0; i < 4; ++i)
    bytes[trailer + 4 + i] = static_cast<char>(((rootEnd + (1 << 20)) >> (8 * i)) & 0xFF);
  Write("pastsize.xml.gz", bytes);
  EXPECT_EQ(kORVStatusGzipRead, Load(EEntry::kClasses, path));
  EXPECT_EQ(std::vector<std::string>{Note(path)}, logger.Texts());
}

// A folder opens for reading but yields no bytes; an empty file yields an
// empty document.
TEST_F(FileFaultsTest, FolderAndEmptyFile) {
  struct TCase {
    const char *name;
    bool folder;
    int status;
    std::vector<std::string> log;
  };
  const TCase cases[] = {
      {"folder.xml", true, kORVStatusFileAccess, {}},
      {"folder.xml.gz", true, kORVStatusFileAccess, {}},
      {"FOLDER.XML.GZ", true, kORVStatusFileAccess, {}},
      {"empty.xml",
       false,
       kORVStatusInvalidDocument,
       {"CIM-XML Parser line 1:Unexpected character before prolog"}},
  };
  for (const TCase &c : cases) {
    SCOPED_TRACE(c.name);
    std::string path = folder + "/" + c.name;
    if (c.folder)
      ASSERT_TRUE(std::filesystem::create_directory(path));
    else
      path = Write(c.name, "");
    for (EEntry entry : {EEntry::kClasses, EEntry::kInstances}) {
      SCOPED_TRACE(EntryName(entry));
      EXPECT_EQ(c.status, Load(entry, path));
      std::vector<std::string> expected = c.log;
      expected.push_back(Note(path));
      EXPECT_EQ(expected, logger.Texts());
      EXPECT_EQ(0, logger.entries.back().first);
      logger.entries.clear();
    }
  }
}

/// Takes the two capabilities that let root read any file out of this
/// process's sets, as any process can for itself. False when the kernel
/// refused.
bool DropReadOverride() {
  __user_cap_header_struct header{};
  header.version = _LINUX_CAPABILITY_VERSION_3;
  header.pid = 0;
  __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] = {};
  if (syscall(SYS_capget, &header, data) != 0)
    return false;
  const unsigned mask = (1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH);
  data[0].effective &= ~mask;
  data[0].permitted &= ~mask;
  data[0].inheritable &= ~mask;
  return syscall(SYS_capset, &header, data) == 0;
}

/// In the child: one line per load, "entry status locale [level] text...".
std::string ReportLoad(EEntry entry, const std::string &path,
                       const boost::shared_ptr<ICIMNamespace> &ns) {
  orvtest::TCapturingLogger logger;
  int status = 0;
  try {
    if (entry == EEntry::kClasses)
      TNamespacePopulator::PopulateFromXMLFile(ns, path);
    else
      TNamespacePopulator::PopulateFromRegXMLFile(ns, path);
  } catch (const TORVException &ex) {
    status = ex.GetStatusCode();
  }
  std::string line =
      std::string(EntryName(entry)) + " " + std::to_string(status) + " " + std::locale().name();
  for (const auto &logged : logger.entries)
    line += " [" + std::to_string(logged.first) + "] " + logged.second;
  // Each load starts from the classic locale, whatever the last one left.
  std::locale::global(std::locale::classic());
  return line + "\n";
}

// The file is there (its size can be had) but cannot be opened. Root reads
// files whatever their mode, so the loads run in a child that first gives
// up the capabilities that allow that; the child proves that it can no
// longer open the files before loading them. The class loader, on its gzip
// path, fails while the environment's locale is in force and leaves it so.
TEST_F(FileFaultsTest, UnreadableFile) {
  const char kDocument[] = "<?xml version=\"1.0\"?>\n<CIM><foo/></CIM>\n";
  const std::string plain = Write("locked.xml", kDocument);
  const std::string gzip = Write("locked.xml.gz", Gzipped(kDocument, Z_DEFAULT_COMPRESSION));
  for (const std::string &path : {plain, gzip})
    ASSERT_EQ(0, chmod(path.c_str(), 0));
  const char *environmentLocale = "C.UTF-8";

  int channel[2];
  ASSERT_EQ(0, pipe(channel));
  std::fflush(nullptr);
  const pid_t child = fork();
  ASSERT_NE(-1, child);
  if (child == 0) {
    close(channel[0]);
    std::string report;
    if (!DropReadOverride())
      report += "capset refused\n";
    for (const std::string &path : {plain, gzip}) {
      const int fd = open(path.c_str(), O_RDONLY);
      if (fd >= 0) {
        report += "still readable: " + path + "\n";
        close(fd);
      }
    }
    setenv("LC_ALL", environmentLocale, 1);
    auto childNamespace = CreateCIMNamespace("root/faults");
    for (const std::string &path : {plain, gzip})
      for (EEntry entry : {EEntry::kClasses, EEntry::kInstances})
        report += ReportLoad(entry, path, childNamespace);
    int leaks = 0;
#ifdef ORV_TEST_LEAK_CHECK
    leaks = __lsan_do_recoverable_leak_check();
#endif
    const ssize_t written = write(channel[1], report.data(), report.size());
    close(channel[1]);
    _exit(written == static_cast<ssize_t>(report.size()) && leaks == 0 ? 0 : 1);
  }
  close(channel[1]);
  std::string report;
  char chunk[4096];
  for (ssize_t n; (n = read(channel[0], chunk, sizeof chunk)) != 0;) {
    if (n < 0 && errno == EINTR)
      continue;
    if (n < 0)
      break;
    report.append(chunk, static_cast<std::size_t>(n));
  }
  close(channel[0]);
  int childStatus = 0;
  ASSERT_EQ(child, waitpid(child, &childStatus, 0));
  EXPECT_TRUE(WIFEXITED(childStatus) && WEXITSTATUS(childStatus) == 0) << childStatus;

  const std::string environment = std::locale(environmentLocale).name();
  const std::string expected = "PopulateFromXMLFile 11 C [0] " + Note(plain) + "\n" +
                               "PopulateFromRegXMLFile 11 C [0] " + Note(plain) + "\n" +
                               "PopulateFromXMLFile 11 " + environment + " [0] " + Note(gzip) +
                               "\n" + "PopulateFromRegXMLFile 11 C [0] " + Note(gzip) + "\n";
  EXPECT_EQ(expected, report);

  // The same files load for a process that may read them: only the right
  // to read was missing.
  if (geteuid() == 0) {
    for (const std::string &path : {plain, gzip}) {
      SCOPED_TRACE(path);
      EXPECT_EQ(0, Load(EEntry::kInstances, path));
      EXPECT_EQ(std::vector<std::string>{"CIM-XML Parser line 2:Unexpected element foo"},
                logger.Texts());
      logger.entries.clear();
    }
  }
}

} // namespace
