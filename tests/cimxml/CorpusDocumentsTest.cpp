// End to end over the corpus's instance and message documents, and what else
// of it is neither a class document nor the schema (the class documents are
// the second test's). Each is read into a namespace of its own that holds
// beforehand the DMTF qualifier declarations (unless it declares its own) and,
// from the DMTF schema's per-class documents, the classes that it names with
// their superclasses. A document that is not well-formed must end in an error
// without harm; a well-formed one may log only errors; and one of a shape that
// the parser loads (declarations, CreateClass and CreateInstance requests,
// GetClass, GetInstance and GetQualifier responses) whose classes are all at
// hand must load without a line, unless it is listed with its reason.
#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"

#include <cctype>
#include <iostream>
#include <map>
#include <set>

namespace orvtest {
namespace {

const std::map<std::string, std::vector<std::string>> kExceptions = {
    {"creates the same class twice",
     {"openpegasus/test/wetest/cimv2/CreateClass/CreateClass34010.xml"}},
    {"its parameter has no name, or no class",
     {"openpegasus/test/wetest/cimv2/CreateClass/CreateClass34009.xml",
      "openpegasus/test/wetest/cimv2/CreateClass/CreateClass34012.xml"}},
    {"its return value is empty, or holds a class named by CLASSNAME",
     {"pywbem-functiontest/getinstance/GetInstanceE9.rsp.xml",
      "pywbem-functiontest/getqualifier/GetQualifierF4.rsp.xml",
      "pywbem-functiontest/getinstance/GetInstanceE10.rsp.xml",
      "pywbem-functiontest/getqualifier/GetQualifierF3.rsp.xml"}},
    // A qualifier's value reaches the instance itself, which takes only
    // properties.
    {"an instance with a qualifier that has a value",
     {"openpegasus/src/Providers/ManagedSystem/IP/tests/f01_ci_IPPEp.xml",
      "openpegasus/src/Providers/sample/SNMPIndicationProvider/nsaSubXmlLocal.xml",
      "openpegasus/src/Providers/sample/SNMPIndicationProvider/nsaSubXmlRemote.xml"}}};

/// Every value that follows key up to the next quote, in lower case.
std::set<std::string> Values(const std::string &bytes, const std::string &key) {
  std::set<std::string> values;
  for (std::size_t at = bytes.find(key); at != std::string::npos; at = bytes.find(key, at + 1)) {
    const std::size_t start = at + key.size();
    std::string value = bytes.substr(start, bytes.find('"', start) - start);
    for (char &c : value)
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    values.insert(value);
  }
  return values;
}

class CorpusInstanceDocumentsTest : public TCorpusTest {
protected:
  /// Loads the schema's class after its superclasses unless ns has it;
  /// false when the schema lacks one of them.
  bool LoadSchemaClass(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &name) {
    if (!schema) {
      schema = CreateCIMNamespace("root/schema");
      TNamespacePopulator::PopulateFromXMLFile(schema, corpus + "/" + kQualifiers);
      TNamespacePopulator::PopulateFromXMLFile(schema,
                                               corpus + "/" + kSchema + "all_classes.xml.gz");
    }
    if (ns->HasClass(name))
      return true;
    if (!schema->HasClass(name))
      return false;
    const auto cls = schema->GetClass(name);
    if (!cls->GetSuperClassName().empty() && !LoadSchemaClass(ns, cls->GetSuperClassName()))
      return false;
    TNamespacePopulator::PopulateFromXMLFile(ns, corpus + "/dmtf-cim-2.42.0-xml/per-class-gz/" +
                                                     cls->GetName() + ".xml.gz");
    return true;
  }

  const std::string kQualifiers = "dmtf-cim-2.49.0-compiled/cim_qualifiers_2.49.0.xml";
  const std::string kSchema = "dmtf-cim-2.42.0-xml/cim_schema_2.42.0_";
  boost::shared_ptr<ICIMNamespace> schema;
};

TEST_F(CorpusInstanceDocumentsTest, EveryDocumentLoadsOrIsRefused) {
  std::map<std::string, std::string> exceptions;
  for (const auto &reason : kExceptions)
    for (const std::string &file : reason.second)
      exceptions[file] = reason.first;
  std::size_t documents = 0, loaded = 0;
  for (const auto &row : manifest) {
    const std::string &file = row[0], &root = row[9], &method = row[10];
    const bool instances = row[12] != "0" || row[14] != "0";
    // Compressed files copy plain ones; the schemas are class documents.
    if (file.compare(file.size() - 3, 3, ".gz") == 0 ||
        (file.rfind("dmtf-", 0) == 0 && !instances) ||
        (row[11] != "0" && !instances && root.find("MESSAGE") == std::string::npos))
      continue;
    SCOPED_TRACE(file);
    ++documents;
    const std::string bytes = ReadFile(corpus + "/" + file);
    TCapturingLogger logger;
    auto ns = CreateCIMNamespace("root/cimv2");
    if (bytes.find("<QUALIFIER.DECLARATION") == std::string::npos)
      TNamespacePopulator::PopulateFromXMLFile(ns, corpus + "/" + kQualifiers);
    const std::set<std::string> defined = Values(bytes, "<CLASS NAME=\"");
    bool resolved = true;
    for (const char *key : {" CLASSNAME=\"", " SUPERCLASS=\""})
      for (const std::string &name : Values(bytes, key))
        resolved = (defined.count(name) != 0 || LoadSchemaClass(ns, name)) && resolved;
    logger.entries.clear(); // the schema's own loads

    std::string buffer = bytes;
    TCIMXMLParser parser(ns);
    const EORVStatusCode status = StatusOf([&] { parser.Parse(&buffer[0]); });
    const std::vector<std::string> log = logger.Texts();
    if (row[8] != "yes") {
      EXPECT_TRUE(status != kORVStatusOK || !log.empty());
      continue;
    }
    for (const auto &entry : logger.entries)
      EXPECT_EQ(entry.first, 3) << entry.second;
    for (const auto &cls : parser.GetClassesCollected())
      EXPECT_TRUE(cls->IsCommitted());
    for (const auto &instance : parser.GetInstancesCollected())
      EXPECT_TRUE(instance->IsCommitted());
    const bool shape =
        root.rfind("CIM/DECLARATION", 0) == 0 ||
        (root == "CIM/MESSAGE/SIMPLEREQ" &&
         (method == "CreateClass" || method == "CreateInstance")) ||
        (root == "CIM/MESSAGE/SIMPLERSP" &&
         (method == "GetClass" || method == "GetInstance" || method == "GetQualifier"));
    if (!shape || !resolved)
      continue;
    if (exceptions.count(file) != 0) {
      EXPECT_FALSE(log.empty()) << exceptions.at(file);
      continue;
    }
    EXPECT_EQ(status, kORVStatusOK);
    EXPECT_EQ(log, std::vector<std::string>{});
    ++loaded;
  }
  EXPECT_GT(documents, 1000u);
  std::cout << documents << " documents, " << loaded << " of a loaded shape with their classes\n";
}

// End to end over the class documents of the shared corpus: each loads
// through the file loader with no error line, except the errors that a
// document really contains (listed with the reason), and yields as many
// classes as the manifest counts CLASS elements.
// The 2.42 schema's documents declare no qualifiers: the test above loads
// them after the qualifiers, for the classes that documents name.
using CorpusClassDocumentsTest = TCorpusTest;

TEST_F(CorpusClassDocumentsTest, SelfContainedDocumentsLoadOrShowTheirOwnErrors) {
  // The level-3 lines and the status that ended the load.
  const std::map<std::string, std::pair<std::vector<std::string>, EORVStatusCode>> known = {
      // Its qualifier declarations each stand in a VALUE.OBJECT, which holds
      // only a class or an instance. The first is refused, and each refused
      // element's end tag then closes one more open element's state (SCOPE
      // the value object, which ends without its object; VALUE the group;
      // and so on), until the start state itself is closed: the next start
      // tag finds no state, and the load ends before any class.
      {"openpegasus/src/Clients/loadxml/x.xml",
       {{Err("Unexpected element qualifier.declaration", 6), Err("Unexpected element scope", 7),
         Err("CIM element syntax error", 7), Ended(kORVStatusInvalidDocument, 7),
         Err("Unexpected element value", 7), Err("Unexpected element value.object", 12),
         Err("Unexpected element qualifier.declaration", 13), Err("Unexpected element scope", 14)},
        kORVStatusParserStateMissing}},
      // It begins with comments and only then the XML declaration. A prolog
      // is taken only from a document that begins with "<?", so the first
      // comment is read as the root element and its "!" refused as a name.
      {"openpegasus/src/Pegasus/Common/tests/XmlParser/x.xml",
       {{Err("Invalid element/attribute name")}, kORVStatusInvalidDocument}}};
  std::size_t loaded = 0;
  // Documents whose root is CIM holding declarations, or bare, with classes.
  for (const auto &row : manifest) {
    const std::string &document = row[0];
    if (row[11] == "0" || (row[9] != "CIM" && row[9].rfind("CIM/DECLARATION", 0) != 0) ||
        document.rfind("dmtf-cim-2.42.0-xml/", 0) == 0)
      continue;
    SCOPED_TRACE(document);
    TCapturingLogger logger;
    std::size_t classes = 0;
    const EORVStatusCode failure = StatusOf([&] {
      classes = TNamespacePopulator::PopulateFromXMLFile(CreateCIMNamespace("root/cimv2"),
                                                         corpus + "/" + document)
                    .size();
    });
    std::vector<std::string> errors;
    for (const auto &line : logger.entries)
      if (line.first == 3)
        errors.push_back(line.second);
    const auto entry = known.find(document);
    EXPECT_EQ(errors, entry == known.end() ? std::vector<std::string>{} : entry->second.first);
    EXPECT_EQ(failure, entry == known.end() ? kORVStatusOK : entry->second.second);
    EXPECT_EQ(classes, entry == known.end() ? std::stoul(row[11]) : 0u);
    ++loaded;
  }
  // The two 2.49 schema documents, the two test-MOF documents and the two
  // with known errors.
  EXPECT_EQ(loaded, 6u);
}

} // namespace
} // namespace orvtest
