// The loaders against real files in a scratch folder: plain and gzip, the
// asymmetric ".GZ" test, damaged and unreadable files, the size cap, and the
// note that names a failed file.
#include "populate/NamespacePopulator.h"

#include "support/Fixtures.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cstdlib>
#include <cstring>
#include <locale>

namespace orvtest {
namespace {

/// Parsed as far as the root, where foo is refused: the line proves that the
/// bytes reached the parser.
const char kDocument[] = "<?xml version=\"1.0\"?>\n<CIM CIMVERSION=\"2.0\"><foo/></CIM>\n";
const std::string kFoo = Err("Unexpected element foo", 2);
const std::string kProlog = Err("Unexpected character before prolog");

class NamespacePopulatorTest : public ::testing::Test {
protected:
  void SetUp() override { ASSERT_FALSE(scratch.path.empty()); }

  /// Loads through one entry point into a fresh namespace; the status it
  /// threw, the log (the note that names the file last, at level 0).
  EORVStatusCode Load(bool classes, const std::string &path) {
    logger.entries.clear();
    ns = CreateCIMNamespace("root/test");
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

  TCapturingLogger logger;
  TTemporaryFolder scratch;
  boost::shared_ptr<ICIMNamespace> ns;
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
  const struct {
    const char *name;
    std::string bytes;
    bool classes;
    EORVStatusCode status;
    std::vector<std::string> log;
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
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(std::string(c.name) + (c.classes ? " as classes" : " as instances"));
    EXPECT_EQ(c.status, Load(c.classes, scratch.Write(c.name, c.bytes)));
    EXPECT_EQ(c.log, logger.Texts());
  }
  // A missing file, and a folder, which opens but yields no bytes.
  for (const std::string name : {"missing.xml", "folder.xml", "folder.xml.gz"}) {
    if (name != "missing.xml")
      std::filesystem::create_directory(scratch.PathOf(name));
    for (bool classes : {true, false})
      EXPECT_EQ(kORVStatusFileAccess, Load(classes, scratch.PathOf(name))) << name;
    EXPECT_EQ(std::vector<std::string>{}, logger.Texts());
  }
}

// The environment's locale is made global only while a gzip file is opened
// by the class loader; one that cannot be made is no reason to fail. A file
// that is there but cannot be opened (a socket) leaves it in force.
TEST_F(NamespacePopulatorTest, GzipLoadAndTheGlobalLocale) {
  const std::string path = scratch.Write("locale.xml.gz", Gzipped(kDocument));
  const std::string socketPath = scratch.PathOf("socket.xml.gz");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(0, bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address));
  const char *saved = std::getenv("LC_ALL");
  const std::string savedValue = saved != nullptr ? saved : "";
  const std::string before = std::locale().name();
  for (const char *environment : {"C.UTF-8", "xx_NO.SUCH-LOCALE"}) {
    setenv("LC_ALL", environment, 1);
    EXPECT_EQ(kORVStatusOK, Load(true, path));
    EXPECT_EQ(before, std::locale().name()) << environment;
  }
  setenv("LC_ALL", "C.UTF-8", 1);
  EXPECT_EQ(kORVStatusFileAccess, Load(false, socketPath));
  EXPECT_EQ(before, std::locale().name());
  EXPECT_EQ(kORVStatusFileAccess, Load(true, socketPath));
  EXPECT_EQ(std::locale("C.UTF-8").name(), std::locale().name());
  std::locale::global(std::locale::classic());
  close(listener);
  saved != nullptr ? setenv("LC_ALL", savedValue.c_str(), 1) : unsetenv("LC_ALL");
}

// A plain document larger than the limit is read only to 100 MiB. The file
// is sparse beyond its first 100 MiB of prolog blanks, and the root element
// stands just past the cut: read whole it loads, cut it fails.
// Without a namespace both calls fail before the file is read, with one line.
TEST_F(NamespacePopulatorTest, EmptyNamespaceFailsAtOnce) {
  const std::string path = scratch.Write("doc.xml", "<CIM/>");
  for (bool classes : {true, false}) {
    logger.entries.clear();
    const EORVStatusCode status = StatusOf([&] {
      if (classes)
        TNamespacePopulator::PopulateFromXMLFile(nullptr, path);
      else
        TNamespacePopulator::PopulateFromRegXMLFile(nullptr, path);
    });
    EXPECT_EQ(kORVStatusNullObject, status);
    const std::vector<std::pair<int, std::string>> noteOnly{
        {0, "Previous error was while parsing file '" + path + "'"}};
    EXPECT_EQ(noteOnly, logger.entries);
  }
}

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
  EXPECT_EQ(kORVStatusInvalidDocument, Load(false, path));
  EXPECT_EQ(std::vector<std::string>{Err("Unexpected character before element")}, logger.Texts());
}

// A parser used again after a parse that ended early (thrown, stack emptied,
// stopped at a CDATA section) starts from its initial state; what it
// collected before stays collected.
TEST_F(NamespacePopulatorTest, ReusedParserStartsClean) {
  const std::string classA = Objects({"<CLASS NAME=\"A\"/>"});
  const struct {
    std::string first;
    EORVStatusCode status;
    std::vector<std::string> collected;
  } cases[] = {
      {"<CIM><foo/><bar/></CIM>", kORVStatusParserStateMissing, {"B"}},
      {classA.substr(0, classA.size() - 20), kORVStatusInvalidDocument, {"A", "B"}},
      {"<CIMX></CIMX>", kORVStatusOK, {"B"}},
      {"<CIM><DECLARATION><![CDATA[x]]></DECLARATION></CIM>", kORVStatusOK, {"B"}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.first);
    ns = CreateCIMNamespace("root/test");
    TCIMXMLParser parser(ns);
    std::string first = c.first;
    std::string second = Objects({"<CLASS NAME=\"B\"/>"});
    EXPECT_EQ(c.status, StatusOf([&] { parser.Parse(&first[0]); }));
    logger.entries.clear();
    EXPECT_EQ(kORVStatusOK, StatusOf([&] { parser.Parse(&second[0]); }));
    EXPECT_EQ(std::vector<std::string>{}, logger.Texts());
    std::vector<std::string> names;
    for (const auto &cls : parser.GetClassesCollected())
      names.push_back(cls->GetName());
    EXPECT_EQ(c.collected, names);
  }
}

} // namespace
} // namespace orvtest
