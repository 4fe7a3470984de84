// The loaders against real files in a temporary folder: plain and gzip, the
// asymmetric ".GZ" test, the gzip checks, the size cap, and the note that
// names a failed file.
#include "populate/NamespacePopulator.h"

#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"
#include "support/CapturingLogger.h"
#include "support/ScratchFiles.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <locale>
#include <string>
#include <unistd.h>
#include <vector>

using namespace NVRNORV20;

namespace {

using orvtest::Gzipped;

/// Parses as far as the root and rejects foo there: the log line proves the
/// bytes reached the parser.
const char kDocument[] = "<?xml version=\"1.0\"?>\n<CIM CIMVERSION=\"2.0\"><foo/></CIM>\n";
const char kFooLine[] = "CIM-XML Parser line 2:Unexpected element foo";

enum class EEntry { kClasses, kInstances };

class TNamespacePopulatorTest : public ::testing::Test {
protected:
  TNamespacePopulatorTest() : ns(CreateCIMNamespace("root/test")) {}

  std::string PathOf(const std::string &name) const { return scratch.PathOf(name); }
  std::string WritePlain(const std::string &name, const std::string &bytes) const {
    return scratch.Write(name, bytes);
  }
  std::string WriteGzip(const std::string &name, const std::string &bytes) const {
    return scratch.WriteGzip(name, bytes);
  }

  /// Loads through one entry point; the status that it threw, or 0.
  int Load(EEntry entry, const std::string &path) {
    try {
      if (entry == EEntry::kClasses)
        TNamespacePopulator::PopulateFromXMLFile(ns, path);
      else
        TNamespacePopulator::PopulateFromRegXMLFile(ns, path);
    } catch (const TORVException &ex) {
      return ex.GetStatusCode();
    }
    return 0;
  }

  static std::string Note(const std::string &path) {
    return "Previous error was while parsing file '" + path + "'";
  }

  orvtest::TCapturingLogger logger;
  boost::shared_ptr<ICIMNamespace> ns;
  orvtest::TTemporaryFolder scratch{"orvpop"};
  /// Empty when the scratch folder could not be made.
  const std::string folder = scratch.Path();
};

/// A gzip file cut before its trailer, whose stored payload ends in the
/// size that the file's last four bytes then claim.
std::string Truncated(const std::string &bytes, const char (&claim)[5]) {
  const std::string whole = Gzipped(bytes + std::string(claim, 4), 0);
  return whole.substr(0, whole.size() - 8);
}

// Which names are read as gzip by which entry point, and what each file
// kind then yields.
TEST_F(TNamespacePopulatorTest, GzipIsChosenByName) {
  ASSERT_FALSE(folder.empty());
  const std::string prologError = "CIM-XML Parser line 1:Unexpected character before prolog";
  struct TCase {
    const char *name;
    bool gzipped;
    EEntry entry;
    int status;
    const char *firstLine;
  };
  const TCase cases[] = {
      {"plain.xml", false, EEntry::kClasses, 0, kFooLine},
      {"plain.xml", false, EEntry::kInstances, 0, kFooLine},
      {"doc.xml.gz", true, EEntry::kClasses, 0, kFooLine},
      {"doc.xml.gz", true, EEntry::kInstances, 0, kFooLine},
      {"x.gz.xml", true, EEntry::kClasses, 0, kFooLine},
      {"x.gz.xml", true, EEntry::kInstances, 0, kFooLine},
      // Only the class loader takes the upper-case suffix: the instance
      // loader reads the compressed bytes as text.
      {"DOC.XML.GZ", true, EEntry::kClasses, 0, kFooLine},
      {"DOC.XML.GZ", true, EEntry::kInstances, kORVStatusInvalidDocument, prologError.c_str()},
      // Mixed case is gzip to neither.
      {"doc.Gz", true, EEntry::kClasses, kORVStatusInvalidDocument, prologError.c_str()},
      {"doc.gZ", true, EEntry::kInstances, kORVStatusInvalidDocument, prologError.c_str()},
      // A gzip name on plain text fails the magic.
      {"text.gz", false, EEntry::kClasses, kORVStatusNotGzip, nullptr},
      {"text.GZ", false, EEntry::kClasses, kORVStatusNotGzip, nullptr},
      {"text.GZ", false, EEntry::kInstances, 0, kFooLine},
  };
  for (const TCase &c : cases) {
    SCOPED_TRACE(std::string(c.name) + (c.entry == EEntry::kClasses ? " classes" : " instances"));
    const std::string path =
        c.gzipped ? WriteGzip(c.name, kDocument) : WritePlain(c.name, kDocument);
    EXPECT_EQ(c.status, Load(c.entry, path));
    std::vector<std::string> expected;
    if (c.firstLine != nullptr)
      expected.push_back(c.firstLine);
    if (c.status != 0)
      expected.push_back(Note(path));
    EXPECT_EQ(expected, logger.Texts());
    if (c.status != 0) {
      EXPECT_EQ(0, logger.entries.back().first);
    }
    logger.entries.clear();
  }
}

// The trailer's size decides how much is read. A file that ends early
// reads short and the rest of the buffer is zeroed; a size beyond the limit
// is cut to 100 MiB.
TEST_F(TNamespacePopulatorTest, DamagedGzipFiles) {
  ASSERT_FALSE(folder.empty());
  const std::string cut = "<?xml version=\"1.0\"?>\n<CIM>";
  struct TCase {
    const char *name;
    std::string bytes;
    int status;
    std::vector<std::string> log;
  };
  const TCase cases[] = {
      {"empty.gz", Gzipped(""), kORVStatusGzipRead, {}},
      {"short.gz", std::string("\x1f", 1), kORVStatusFileAccess, {}},
      {"three.gz", std::string("\x1f\x8b\x08", 3), kORVStatusFileAccess, {}},
      {"nodeflate.gz", std::string("\x1f\x8b") + std::string(40, 'x'), kORVStatusGzipRead, {}},
      // Two members: the trailer is the second's, which is shorter, so only
      // the first bytes of the document are read.
      {"claimsless.gz",
       Gzipped(cut + "<foo/></CIM>") + Gzipped(std::string(cut.size(), 'x')),
       kORVStatusInvalidDocument,
       {"CIM-XML Parser line 2:Unexpected character where element expected"}},
      {"claimsmore.gz", Truncated(kDocument, "\xe8\x03\x00\x00"), 0, {kFooLine}},
      {"claimshuge.gz", Truncated(kDocument, "\xff\xff\xff\xff"), 0, {kFooLine}},
  };
  for (const TCase &c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = WritePlain(c.name, c.bytes);
    for (EEntry entry : {EEntry::kClasses, EEntry::kInstances}) {
      EXPECT_EQ(c.status, Load(entry, path));
      std::vector<std::string> expected = c.log;
      if (c.status != 0)
        expected.push_back(Note(path));
      EXPECT_EQ(expected, logger.Texts());
      logger.entries.clear();
    }
  }
}

TEST_F(TNamespacePopulatorTest, MissingFileNamesItself) {
  for (const char *name : {"missing.xml", "missing.gz"}) {
    SCOPED_TRACE(name);
    const std::string path = PathOf(name);
    EXPECT_EQ(kORVStatusFileAccess, Load(EEntry::kClasses, path));
    ASSERT_EQ(1U, logger.entries.size());
    EXPECT_EQ(0, logger.entries[0].first);
    EXPECT_EQ(Note(path), logger.entries[0].second);
    logger.entries.clear();
  }
}

// Without a namespace both calls fail before the file is read, with one line.
TEST_F(TNamespacePopulatorTest, EmptyNamespaceFailsAtOnce) {
  const std::string path = WritePlain("doc.xml", kDocument);
  ns.reset();
  for (EEntry entry : {EEntry::kClasses, EEntry::kInstances}) {
    EXPECT_EQ(kORVStatusNullObject, Load(entry, path));
    const std::vector<std::pair<int, std::string>> noteOnly{{0, Note(path)}};
    EXPECT_EQ(noteOnly, logger.entries);
    logger.entries.clear();
  }
}

// Line ends are passed through; lines are counted by line feeds.
TEST_F(TNamespacePopulatorTest, CarriageReturnsAreKept) {
  const std::string path = WritePlain("crlf.xml", "<CIM>\r\n\r\n<foo/>\r\n</CIM>\r\n");
  EXPECT_EQ(0, Load(EEntry::kClasses, path));
  EXPECT_EQ(std::vector<std::string>{"CIM-XML Parser line 3:Unexpected element foo"},
            logger.Texts());
}

TEST_F(TNamespacePopulatorTest, ReturnsOnlyThisDocumentsObjects) {
  const std::string path = WritePlain("empty.xml", "<CIM></CIM>");
  EXPECT_TRUE(TNamespacePopulator::PopulateFromXMLFile(ns, path).empty());
  EXPECT_TRUE(TNamespacePopulator::PopulateFromRegXMLFile(ns, path).empty());
  EXPECT_TRUE(logger.entries.empty());
}

// The environment's locale is made global only while the gzip stream is
// opened; one that cannot be made is no reason to fail.
TEST_F(TNamespacePopulatorTest, GzipLoadLeavesTheGlobalLocale) {
  const std::string path = WriteGzip("locale.xml.gz", kDocument);
  const char *saved = std::getenv("LC_ALL");
  const std::string savedValue = saved != nullptr ? saved : "";
  const std::string before = std::locale().name();
  for (const char *environment : {"C.UTF-8", "xx_NO.SUCH-LOCALE"}) {
    SCOPED_TRACE(environment);
    setenv("LC_ALL", environment, 1);
    EXPECT_EQ(0, Load(EEntry::kClasses, path));
    EXPECT_EQ(before, std::locale().name());
    EXPECT_EQ(std::vector<std::string>{kFooLine}, logger.Texts());
    logger.entries.clear();
  }
  if (saved != nullptr)
    setenv("LC_ALL", savedValue.c_str(), 1);
  else
    unsetenv("LC_ALL");
}

// A plain document larger than the limit is read only to 100 MiB. The file
// is sparse beyond its first 100 MiB of prolog whitespace, and the root
// element stands just past the cut: read whole it loads, cut it fails.
TEST_F(TNamespacePopulatorTest, OversizedDocumentIsCut) {
  ASSERT_FALSE(folder.empty());
  const std::uint32_t cut = 104857600;
  const std::string path = PathOf("big.xml");
  {
    std::ofstream file(path, std::ios::binary);
    const std::string declaration = "<?xml version=\"1.0\"?>";
    file << declaration;
    const std::string blanks(1 << 20, ' ');
    std::size_t written = declaration.size();
    while (written < cut) {
      const std::size_t n = std::min<std::size_t>(blanks.size(), cut - written);
      file.write(blanks.data(), static_cast<std::streamsize>(n));
      written += n;
    }
    file << "<CIM><foo/></CIM>";
  }
  EXPECT_EQ(0, Load(EEntry::kClasses, path));
  EXPECT_EQ(std::vector<std::string>{"CIM-XML Parser line 1:Unexpected element foo"},
            logger.Texts());
  logger.entries.clear();

  ASSERT_EQ(0, truncate(path.c_str(), TCIMXMLParser::kMaxSpecificationDocumentSize + 1));
  EXPECT_EQ(kORVStatusInvalidDocument, Load(EEntry::kInstances, path));
  const std::vector<std::string> expected = {
      "CIM-XML Parser line 1:Unexpected character before element", Note(path)};
  EXPECT_EQ(expected, logger.Texts());
}

} // namespace
