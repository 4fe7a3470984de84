// End to end over the class documents of the shared corpus: each loads
// through the file loader with no error line, except the errors that a
// document really contains (listed with the reason), and yields as many
// classes as the manifest counts CLASS elements.
#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"

#include <map>

namespace orvtest {
namespace {

// The 2.42 documents declare no qualifiers; the instance-document test loads
// them after the qualifiers, for the classes that documents name.
const std::string kSchema = "dmtf-cim-2.42.0-xml/";

/// What loading one document left: the classes, the level-3 lines, and the
/// status that ended the load.
struct TLoad {
  std::vector<std::string> classes;
  std::vector<std::string> errors;
  EORVStatusCode failure = kORVStatusOK;
};

class CorpusClassDocumentsTest : public TCorpusTest {
protected:
  TLoad Load(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &document) const {
    TCapturingLogger logger;
    TLoad load;
    load.failure = StatusOf([&] {
      for (const auto &cls : TNamespacePopulator::PopulateFromXMLFile(ns, corpus + "/" + document))
        load.classes.push_back(cls->GetName());
    });
    for (const auto &entry : logger.entries)
      if (entry.first == 3)
        load.errors.push_back(entry.second);
    return load;
  }
};

TEST_F(CorpusClassDocumentsTest, SelfContainedDocumentsLoadOrShowTheirOwnErrors) {
  const std::map<std::string, TLoad> known = {
      // Its qualifier declarations each stand in a VALUE.OBJECT, which holds
      // only a class or an instance. The first is refused, and each refused
      // element's end tag then closes one more open element's state (SCOPE
      // the value object, which ends without its object; VALUE the group;
      // and so on), until the start state itself is closed: the next start
      // tag finds no state, and the load ends before any class.
      {"openpegasus/src/Clients/loadxml/x.xml",
       {{},
        {Err("Unexpected element qualifier.declaration", 6), Err("Unexpected element scope", 7),
         Err("CIM element syntax error", 7), Ended(kORVStatusInvalidDocument, 7),
         Err("Unexpected element value", 7), Err("Unexpected element value.object", 12),
         Err("Unexpected element qualifier.declaration", 13), Err("Unexpected element scope", 14)},
        kORVStatusParserStateMissing}},
      // It begins with comments and only then the XML declaration. A prolog
      // is taken only from a document that begins with "<?", so the first
      // comment is read as the root element and its "!" refused as a name.
      {"openpegasus/src/Pegasus/Common/tests/XmlParser/x.xml",
       {{}, {Err("Invalid element/attribute name")}, kORVStatusInvalidDocument}}};
  std::size_t loaded = 0;
  // Documents whose root is CIM holding declarations, or bare, with classes.
  for (const auto &row : manifest) {
    const std::string &document = row[0];
    if (row[11] == "0" || (row[9] != "CIM" && row[9].rfind("CIM/DECLARATION", 0) != 0) ||
        document.rfind(kSchema, 0) == 0)
      continue;
    SCOPED_TRACE(document);
    const TLoad load = Load(CreateCIMNamespace("root/cimv2"), document);
    auto entry = known.find(document);
    EXPECT_EQ(load.errors,
              entry == known.end() ? std::vector<std::string>{} : entry->second.errors);
    EXPECT_EQ(load.failure, entry == known.end() ? kORVStatusOK : entry->second.failure);
    EXPECT_EQ(load.classes.size(), entry == known.end() ? std::stoul(row[11]) : 0u);
    ++loaded;
  }
  // The two 2.49 schema documents, the two test-MOF documents and the two
  // with known errors.
  EXPECT_EQ(loaded, 6u);
}

} // namespace
} // namespace orvtest
