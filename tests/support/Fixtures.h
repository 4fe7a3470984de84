// What the tests share: a logger that keeps every line, scratch files, gzip
// members, the corpus, and the fixtures of the object-model and parser tests.
#ifndef ORV_TESTS_SUPPORT_FIXTURES_H
#define ORV_TESTS_SUPPORT_FIXTURES_H

#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace orvtest {

using namespace NVRNORV20;

/// Installed as the core logger for its lifetime; keeps every line.
class TCapturingLogger : public ILogger {
public:
  TCapturingLogger() { TRootObject::SetCoreLogger(this); }
  ~TCapturingLogger() override { TRootObject::SetCoreLogger(nullptr); }
  void Log(int level, const std::string &text) override { entries.emplace_back(level, text); }
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const auto &entry : entries)
      texts.push_back(entry.second);
    return texts;
  }
  std::vector<std::pair<int, std::string>> entries;
};

inline std::string ReadFile(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/// One gzip member holding bytes; level 0 stores them uncompressed.
inline std::string Gzipped(const std::string &bytes, int level = Z_DEFAULT_COMPRESSION) {
  std::vector<Bytef> out(compressBound(static_cast<uLong>(bytes.size())) + 64);
  z_stream stream{};
  deflateInit2(&stream, level, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
  stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = out.data();
  stream.avail_out = static_cast<uInt>(out.size());
  deflate(&stream, Z_FINISH);
  deflateEnd(&stream);
  return std::string(reinterpret_cast<char *>(out.data()), stream.total_out);
}

/// A folder made for one test and removed with its content afterwards.
struct TTemporaryFolder {
  TTemporaryFolder() { std::filesystem::create_directories(path); }
  ~TTemporaryFolder() { std::filesystem::remove_all(path); }
  std::string PathOf(const std::string &name) const { return path + "/" + name; }
  std::string Write(const std::string &name, const std::string &bytes) const {
    std::ofstream(PathOf(name), std::ios::binary) << bytes;
    return PathOf(name);
  }
  const std::string path = ::testing::TempDir() + "orvtest" + std::to_string(getpid());
};

/// The status that the call throws; kORVStatusOK when it does not throw.
inline EORVStatusCode StatusOf(const std::function<void()> &call) {
  try {
    call();
  } catch (const TORVException &ex) {
    return ex.GetStatusCode();
  }
  return kORVStatusOK;
}

inline TCIMValue Uint32(std::uint64_t value) {
  return TCIMValue::MakeUnsigned(kCIMTypeUint32, value);
}

inline TCIMReference Path(const std::string &text, boost::shared_ptr<ICIMNamespace> ns = nullptr) {
  return TCIMReference::Parse(text.data(), text.size(), std::move(ns));
}

inline TCIMValue Array(ECIMType type, const std::vector<TCIMValue> &elements) {
  TCIMValue value;
  value.Set(TCIMType(type), static_cast<unsigned int>(elements.size()), elements);
  return value;
}

/// The shared corpus's manifest, one row of tab-separated fields per
/// document (0 file, 8 well-formed, 9 root path, 10 method, 11 CLASS count,
/// 12 INSTANCE count); empty when the corpus is missing.
inline std::vector<std::vector<std::string>> CorpusManifest() {
  std::vector<std::vector<std::string>> rows;
  std::ifstream manifest(std::string(ORV_CORPUS_DIR) + "/MANIFEST.tsv");
  std::string line;
  while (std::getline(manifest, line)) { // the header has no 13th field
    std::vector<std::string> fields;
    std::istringstream row(line);
    for (std::string field; std::getline(row, field, '\t');)
      fields.push_back(field);
    if (fields.size() > 12 && fields[0] != "file")
      rows.push_back(fields);
  }
  return rows;
}

/// Tests over the corpus skip themselves, saying why, when it is missing.
class TCorpusTest : public ::testing::Test {
protected:
  void SetUp() override {
    if (manifest.empty())
      GTEST_SKIP() << "The CIM-XML corpus is missing (no " << ORV_CORPUS_DIR << "/MANIFEST.tsv)";
  }
  const std::string corpus = ORV_CORPUS_DIR;
  const std::vector<std::vector<std::string>> manifest = CorpusManifest();
};

/// A namespace with qualifier declarations, and members declared the way
/// the loader declares them, for the object-model tests.
class TModelTest : public ::testing::Test {
protected:
  using D = ICIMQualifierDecl;

  TModelTest() {
    // ValueMap as CIM-XML declares an array qualifier without a default: it
    // looks scalar.
    const std::tuple<const char *, TCIMValue, std::uint32_t, std::uint32_t> declarations[] = {
        {"Key", TCIMValue(false), D::kScopeProperty | D::kScopeReference, D::kFlavorToSubclass},
        {"Association", TCIMValue(false), D::kScopeAssociation, D::kFlavorToSubclass},
        {"Abstract", TCIMValue(false), D::kScopeClass, D::kFlavorNone},
        {"Description", TCIMValue(TCIMType(kCIMTypeString), 0), D::kScopeAny, D::kFlavorDefault},
        {"ValueMap", TCIMValue(TCIMType(kCIMTypeString), 0), D::kScopeProperty, D::kFlavorDefault},
        {"MaxLen", TCIMValue(TCIMType(kCIMTypeUint32), 0), D::kScopeProperty, D::kFlavorDefault},
        {"In", TCIMValue(true), D::kScopeParameter, D::kFlavorToSubclass}};
    for (const auto &d : declarations)
      ns->CreateQualifierDecl(std::get<0>(d), std::get<1>(d), std::get<2>(d), std::get<3>(d))
          ->Commit();
  }

  void Qualify(ICIMQualifiedObject &object, const std::string &name, const TCIMValue &value,
               std::uint32_t flavor = D::kFlavorDefault) {
    object.AddQualifier(object.CreateQualifier(ns->GetQualifierDecl(name), value, flavor));
  }

  /// Untyped at first, the default (and with it the type) set at its end.
  boost::shared_ptr<ICIMPropertyDecl> Property(ICIMClass &cls, const std::string &name,
                                               const TCIMValue &value, bool key = false) {
    boost::shared_ptr<ICIMPropertyDecl> property = cls.AddProperty(name, TCIMValue());
    if (key)
      Qualify(*property, "Key", TCIMValue(true), D::kFlavorToSubclass);
    property->SetValue(value);
    property->Commit();
    return property;
  }

  boost::shared_ptr<ICIMClass> Class(const std::string &name, const std::string &superName = "") {
    return ns->CreateClass(name, ns->GetClass(superName));
  }

  template <class TList> static std::vector<std::string> Names(const TList &list) {
    std::vector<std::string> names;
    for (const auto &item : list)
      names.push_back(item->GetName());
    return names;
  }

  boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/test");
};

/// The log line of a syntax error on a line.
inline std::string Err(const std::string &message, unsigned line = 1) {
  return "CIM-XML Parser line " + std::to_string(line) + ":" + message;
}

/// The log line of an exception out of an end handler.
inline std::string Ended(EORVStatusCode status, unsigned line = 1) {
  return std::string("TCIMXMLParser: EndElement: Threw exception ") +
         TORVException(TORVStatusCode(status)).what() + " on line " + std::to_string(line);
}

inline std::string InDeclGroup(const std::string &body) {
  return "<CIM><DECLARATION><DECLGROUP>" + body + "</DECLGROUP></DECLARATION></CIM>";
}

/// Each object (a CLASS or an INSTANCE element) in a VALUE.OBJECT of one
/// declaration group.
inline std::string Objects(const std::vector<std::string> &objects) {
  std::string body;
  for (const std::string &object : objects)
    body += "<VALUE.OBJECT>" + object + "</VALUE.OBJECT>";
  return InDeclGroup(body);
}

/// A class C with the members (and qualifiers) given, in a declaration group.
inline std::string InClassC(const std::string &members) {
  return Objects({"<CLASS NAME=\"C\">" + members + "</CLASS>"});
}

/// The qualifiers that the test documents use.
inline std::string QualifierDeclarations() {
  return InDeclGroup(
      "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\">"
      "<SCOPE PROPERTY=\"true\" REFERENCE=\"true\"/><VALUE>false</VALUE></QUALIFIER.DECLARATION>"
      "<QUALIFIER.DECLARATION NAME=\"Description\" TYPE=\"string\" TRANSLATABLE=\"true\">"
      "<SCOPE CLASS=\"true\" PROPERTY=\"true\" METHOD=\"true\" PARAMETER=\"true\"/>"
      "</QUALIFIER.DECLARATION><QUALIFIER.DECLARATION NAME=\"ValueMap\" TYPE=\"string\" "
      "ISARRAY=\"true\"><SCOPE PROPERTY=\"true\" PARAMETER=\"true\"/></QUALIFIER.DECLARATION>"
      "<QUALIFIER.DECLARATION NAME=\"MaxValue\" TYPE=\"sint64\"><SCOPE PROPERTY=\"true\"/>"
      "</QUALIFIER.DECLARATION><QUALIFIER.DECLARATION NAME=\"In\" TYPE=\"boolean\">"
      "<SCOPE PARAMETER=\"true\"/><VALUE>true</VALUE></QUALIFIER.DECLARATION>");
}

/// A document and what reading it must leave: the MOF of what it added to
/// the namespace (each line's indentation and the blank lines between
/// objects squeezed to one blank), the log and, when given, what the parser
/// collected: class names, then "|", then the classes of instances.
struct TDocCase {
  std::string xml;
  std::string mof;
  std::vector<std::string> log = {};
  const char *collected = nullptr;
};

inline std::string Squeezed(const std::string &mof) {
  std::string text;
  bool lineStart = true;
  for (char c : mof) {
    if (c != '\n' && !(lineStart && c == ' ')) {
      text += lineStart && !text.empty() ? " " : "";
      text += c;
    }
    lineStart = c == '\n' || (lineStart && c == ' ');
  }
  return text;
}

/// A subclass that changes nothing: the tokenizer hands it attribute maps,
/// as it does every subclass, rather than lists.
class TMapReadingParser : public TCIMXMLParser {
public:
  using TCIMXMLParser::TCIMXMLParser;
};

/// Reads documents into a namespace of its own with a capturing logger
/// installed.
class TParserFixture : public ::testing::Test {
protected:
  struct TResult {
    std::vector<boost::shared_ptr<ICIMClass>> classes;
    std::vector<boost::shared_ptr<ICIMInstance>> instances;
    bool aborted = false; // an exception ended the parse
  };

  enum EMode { kClassic, kQN402, kFull, kFullReturnOnly };

  /// Parses a whole document, held in a buffer of its own, into ns: in the
  /// classic grammar, in its QN402 mode, or in the full grammar registering
  /// what it defines or only handing it to handler.
  TResult Parse(const std::string &xml, EMode mode = kClassic, ICIMXMLHandler *handler = nullptr) {
    std::vector<char> buffer(xml.begin(), xml.end());
    buffer.push_back('\0');
    std::unique_ptr<TCIMXMLParser> owned =
        throughMaps ? std::make_unique<TMapReadingParser>(ns) : std::make_unique<TCIMXMLParser>(ns);
    TCIMXMLParser &parser = *owned;
    if (mode == kQN402)
      parser.SetQN402Mode();
    if (mode == kFull || mode == kFullReturnOnly)
      parser.SetReadOptions({ECIMXMLGrammar::kFull, mode == kFull
                                                        ? ECIMXMLRegistration::kRegister
                                                        : ECIMXMLRegistration::kReturnOnly});
    parser.SetHandler(handler);
    TResult result;
    try {
      parser.Parse(buffer.data());
    } catch (const TORVException &) {
      result.aborted = true;
    }
    result.classes = parser.GetClassesCollected();
    result.instances = parser.GetInstancesCollected();
    return result;
  }

  /// Parse reads through a subclass, and so through attribute maps.
  bool throughMaps = false;

  /// A fresh namespace holding the test qualifiers and then each document,
  /// every one loaded without a log line.
  void Reset(const std::vector<std::string> &schema = {}) {
    logger.entries.clear();
    ns = CreateCIMNamespace("root/test");
    Parse(QualifierDeclarations());
    for (const std::string &document : schema)
      Parse(document);
    EXPECT_EQ(Log(), std::vector<std::string>{});
    logger.entries.clear();
  }

  /// The MOF of each qualifier declaration, class and instance of ns.
  std::vector<std::string> Mof() const {
    std::vector<std::string> mof;
    for (const auto &declaration : ns->GetQualifierDecls())
      mof.push_back(declaration->ToMOF());
    for (const auto &cls : ns->GetClasses())
      mof.push_back(cls->ToMOF());
    for (const auto &instance : ns->GetInstances("", false))
      mof.push_back(instance->ToMOF());
    return mof;
  }

  /// Runs each case on a fresh namespace made by Reset(schema), read by
  /// parse (Parse when not given). A parse that an exception ended adds
  /// "(aborted)" to the log.
  void Check(const std::vector<TDocCase> &cases, const std::vector<std::string> &schema = {},
             std::function<TResult(const std::string &)> parse = nullptr) {
    for (const TDocCase &c : cases) {
      SCOPED_TRACE(c.xml);
      Reset(schema);
      const std::vector<std::string> before = Mof();
      const TResult result = parse ? parse(c.xml) : Parse(c.xml);
      std::vector<std::string> log = Log();
      if (result.aborted)
        log.push_back("(aborted)");
      EXPECT_EQ(log, c.log);
      std::string collected;
      for (const auto &cls : result.classes)
        collected += cls->GetName() + " ";
      collected += "|";
      for (const auto &instance : result.instances)
        collected += " " + instance->GetClassName();
      if (c.collected != nullptr) {
        EXPECT_EQ(collected, c.collected);
      }
      std::vector<std::string> added = Mof();
      for (const std::string &old : before) {
        auto at = std::find(added.begin(), added.end(), old);
        if (at != added.end())
          added.erase(at);
      }
      std::string mof;
      for (const std::string &object : added)
        mof += (mof.empty() ? "" : " ") + Squeezed(object);
      EXPECT_EQ(mof, c.mof);
    }
  }

  std::vector<std::string> Log() const { return logger.Texts(); }

  TCapturingLogger logger;
  boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/test");
};

} // namespace orvtest

#endif
