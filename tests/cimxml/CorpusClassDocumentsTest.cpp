// End to end over the class-definition documents of the shared corpus:
// each loads through the file loader with no error line, except the errors
// that a document really contains (listed below with the reason), and
// yields as many classes as it has CLASS elements (MANIFEST.tsv).
#include "core_api/ORVStatusCode.h"
#include "populate/NamespacePopulator.h"
#include "support/CapturingLogger.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace orvtest {
namespace {

using NVRNORV20::EORVStatusCode;
using NVRNORV20::ICIMNamespace;
using NVRNORV20::TNamespacePopulator;

const std::string kCorpus = ORV_CORPUS_DIR;
const char kQualifiers[] = "dmtf-cim-2.49.0-compiled/cim_qualifiers_2.49.0.xml";
const char kAllClasses[] = "dmtf-cim-2.42.0-xml/cim_schema_2.42.0_all_classes.xml.gz";
const char kPerClass[] = "dmtf-cim-2.42.0-xml/per-class-gz/";
const char kRaw[] = "dmtf-cim-2.42.0-xml/raw/";

bool Exists(const std::string &path) {
  return std::ifstream(path).good();
}

/// The class-definition documents: a CIM root holding declarations (or a
/// bare CIM root), with at least one CLASS. Path to CLASS count.
std::map<std::string, unsigned> ClassDocuments() {
  std::map<std::string, unsigned> documents;
  std::ifstream manifest(kCorpus + "/MANIFEST.tsv");
  std::string line;
  std::getline(manifest, line);
  std::map<std::string, std::size_t> column;
  {
    std::istringstream header(line);
    std::string name;
    for (std::size_t index = 0; std::getline(header, name, '\t'); ++index)
      column[name] = index;
  }
  while (std::getline(manifest, line)) {
    std::vector<std::string> fields;
    std::istringstream row(line);
    for (std::string field; std::getline(row, field, '\t');)
      fields.push_back(field);
    if (fields.size() <= column.at("n_CLASS"))
      continue;
    const std::string &root = fields[column.at("root_path")];
    const unsigned classes = static_cast<unsigned>(std::stoul(fields[column.at("n_CLASS")]));
    if (classes > 0 && (root == "CIM" || root.rfind("CIM/DECLARATION", 0) == 0))
      documents[fields[column.at("file")]] = classes;
  }
  return documents;
}

/// What loading one document left.
struct TLoad {
  std::vector<std::string> classNames;
  /// Level-3 lines, in order.
  std::vector<std::string> errors;
  EORVStatusCode failure = NVRNORV20::kORVStatusOK;
};

TLoad LoadClasses(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &document) {
  TCapturingLogger logger;
  TLoad load;
  try {
    for (const auto &cls : TNamespacePopulator::PopulateFromXMLFile(ns, kCorpus + "/" + document))
      load.classNames.push_back(cls->GetName());
  } catch (const NVRNORV20::TORVException &error) {
    load.failure = error.GetStatusCode();
  }
  for (const auto &entry : logger.entries)
    if (entry.first == 3)
      load.errors.push_back(entry.second);
  return load;
}

/// A namespace that holds the qualifier declarations of the 2.42 documents,
/// which declare none themselves.
boost::shared_ptr<ICIMNamespace> QualifiedNamespace() {
  auto ns = NVRNORV20::CreateCIMNamespace("root/cimv2");
  TLoad load = LoadClasses(ns, kQualifiers);
  EXPECT_TRUE(load.errors.empty()) << load.errors.front();
  EXPECT_EQ(ns->GetQualifierDecls().size(), 70u);
  return ns;
}

/// The errors that a document really contains, and how its load ends.
struct TKnownErrors {
  const char *document;
  std::vector<std::string> errors;
  EORVStatusCode failure;
};

const TKnownErrors kKnownErrors[] = {
    // Its qualifier declarations each stand in a VALUE.OBJECT, which holds
    // only a class or an instance. The first declaration is refused, and
    // each refused element's end tag then closes one more open element's
    // state (SCOPE the value object, which ends without its object; VALUE
    // the group; and so on), until the start state itself is closed: the
    // next start tag finds no state, and the load ends before any class.
    {"openpegasus/src/Clients/loadxml/x.xml",
     {"CIM-XML Parser line 6:Unexpected element qualifier.declaration",
      "CIM-XML Parser line 7:Unexpected element scope",
      "CIM-XML Parser line 7:CIM element syntax error",
      "TCIMXMLParser: EndElement: Threw exception Document is not valid CIM-XML on line 7",
      "CIM-XML Parser line 7:Unexpected element value",
      "CIM-XML Parser line 12:Unexpected element value.object",
      "CIM-XML Parser line 13:Unexpected element qualifier.declaration",
      "CIM-XML Parser line 14:Unexpected element scope"},
     NVRNORV20::kORVStatusParserStateMissing},
    // It begins with comments and only then the XML declaration. A prolog is
    // taken only from a document that begins with "<?", so the first comment
    // is read as the root element and its "!" refused as a name.
    {"openpegasus/src/Pegasus/Common/tests/XmlParser/x.xml",
     {"CIM-XML Parser line 1:Invalid element/attribute name"},
     NVRNORV20::kORVStatusInvalidDocument},
};

class CorpusClassDocumentsTest : public ::testing::Test {
protected:
  void SetUp() override {
    if (!Exists(kCorpus + "/MANIFEST.tsv"))
      GTEST_SKIP() << "The CIM-XML corpus is missing (looked in " << kCorpus << ")";
  }

  /// The 2.42 classes whole, loaded once: they give the order in which the
  /// per-class documents can load (superclasses and referenced classes
  /// first) and each class's superclass.
  static void SetUpTestSuite() {
    if (!Exists(kCorpus + "/MANIFEST.tsv"))
      return;
    schema = new boost::shared_ptr<ICIMNamespace>(QualifiedNamespace());
    schemaLoad = new TLoad(LoadClasses(*schema, kAllClasses));
  }
  static void TearDownTestSuite() {
    delete schemaLoad;
    delete schema;
    schemaLoad = nullptr;
    schema = nullptr;
  }

  static boost::shared_ptr<ICIMNamespace> *schema;
  static TLoad *schemaLoad;
};

boost::shared_ptr<ICIMNamespace> *CorpusClassDocumentsTest::schema = nullptr;
TLoad *CorpusClassDocumentsTest::schemaLoad = nullptr;

// Documents that declare their own qualifiers, each into a namespace of its
// own.
TEST_F(CorpusClassDocumentsTest, SelfContainedDocumentsLoadOrShowOnlyTheirOwnErrors) {
  const auto documents = ClassDocuments();
  std::map<std::string, const TKnownErrors *> known;
  for (const TKnownErrors &entry : kKnownErrors)
    known[entry.document] = &entry;
  unsigned loaded = 0;
  for (const auto &document : documents) {
    if (document.first.rfind("dmtf-cim-2.42.0-xml/", 0) == 0)
      continue;
    SCOPED_TRACE(document.first);
    TLoad load = LoadClasses(NVRNORV20::CreateCIMNamespace("root/cimv2"), document.first);
    auto entry = known.find(document.first);
    if (entry == known.end()) {
      EXPECT_TRUE(load.errors.empty()) << load.errors.front();
      EXPECT_EQ(load.failure, NVRNORV20::kORVStatusOK);
      EXPECT_EQ(load.classNames.size(), document.second);
    } else {
      EXPECT_EQ(load.errors, entry->second->errors);
      EXPECT_EQ(load.failure, entry->second->failure);
      EXPECT_TRUE(load.classNames.empty());
    }
    ++loaded;
  }
  // The two 2.49 schema documents, the two test-MOF documents and the two
  // documents with known errors.
  EXPECT_EQ(loaded, 6u);
}

TEST_F(CorpusClassDocumentsTest, AllClassesDocumentLoadsAfterTheQualifiers) {
  EXPECT_TRUE(schemaLoad->errors.empty()) << schemaLoad->errors.front();
  EXPECT_EQ(schemaLoad->failure, NVRNORV20::kORVStatusOK);
  EXPECT_EQ(schemaLoad->classNames.size(), ClassDocuments().at(kAllClasses));
}

// One namespace, the qualifiers first, then every per-class document in the
// all-classes order.
TEST_F(CorpusClassDocumentsTest, PerClassDocumentsLoadInDependencyOrder) {
  const auto documents = ClassDocuments();
  auto ns = QualifiedNamespace();
  unsigned loaded = 0;
  for (const std::string &name : schemaLoad->classNames) {
    const std::string document = kPerClass + name + ".xml.gz";
    SCOPED_TRACE(document);
    ASSERT_EQ(documents.count(document), 1u);
    TLoad load = LoadClasses(ns, document);
    EXPECT_TRUE(load.errors.empty()) << load.errors.front();
    EXPECT_EQ(load.classNames, std::vector<std::string>{name});
    EXPECT_EQ(load.classNames.size(), documents.at(document));
    ++loaded;
  }
  std::size_t perClass = 0;
  for (const auto &document : documents)
    perClass += document.first.rfind(kPerClass, 0) == 0 ? 1 : 0;
  EXPECT_EQ(loaded, perClass);
}

// Each raw document after the per-class documents of its superclasses; a
// referenced class that is missing is no error.
TEST_F(CorpusClassDocumentsTest, RawDocumentsLoadAfterTheirSuperclasses) {
  const auto documents = ClassDocuments();
  auto ns = QualifiedNamespace();
  unsigned loaded = 0;
  for (const std::string &name : schemaLoad->classNames) {
    const std::string document = kRaw + name + ".xml";
    if (documents.count(document) == 0)
      continue;
    SCOPED_TRACE(document);
    std::vector<std::string> ancestors;
    for (std::string super = (*schema)->GetClass(name)->GetSuperClassName(); !super.empty();
         super = (*schema)->GetClass(super)->GetSuperClassName())
      ancestors.insert(ancestors.begin(), super);
    for (const std::string &ancestor : ancestors) {
      if (!ns->HasClass(ancestor)) {
        EXPECT_TRUE(LoadClasses(ns, kPerClass + ancestor + ".xml.gz").errors.empty());
      }
    }
    TLoad load = LoadClasses(ns, document);
    EXPECT_TRUE(load.errors.empty()) << load.errors.front();
    EXPECT_EQ(load.classNames, std::vector<std::string>{name});
    ++loaded;
  }
  std::size_t raw = 0;
  for (const auto &document : documents)
    raw += document.first.rfind(kRaw, 0) == 0 ? 1 : 0;
  EXPECT_EQ(loaded, raw);
}

TEST_F(CorpusClassDocumentsTest, EveryClassDocumentIsCovered) {
  std::set<std::string> covered = {kAllClasses};
  for (const auto &document : ClassDocuments())
    if (document.first.rfind("dmtf-cim-2.42.0-xml/", 0) != 0)
      covered.insert(document.first);
  for (const std::string &name : schemaLoad->classNames) {
    covered.insert(kPerClass + name + ".xml.gz");
    covered.insert(kRaw + name + ".xml");
  }
  for (const auto &document : ClassDocuments())
    EXPECT_EQ(covered.count(document.first), 1u) << document.first;
}

} // namespace
} // namespace orvtest
