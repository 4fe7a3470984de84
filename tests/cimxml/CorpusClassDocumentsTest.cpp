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
        document.rfind(kSchema, 0) == 0)
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
