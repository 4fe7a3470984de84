// End to end over the corpus's instance and message documents. Each one is
// read into a namespace of its own, which holds beforehand, from the DMTF
// schema's per-class documents, the classes that the document's objects
// name but do not define, with their superclasses, and the DMTF qualifier
// declarations when there are classes to read (unless the document declares
// qualifiers itself).
//
// What a document should give is worked out from its element tree alone,
// read with the bare tokenizer: a document of the shapes the parser loads
// (declarations; create-class and create-instance requests; responses
// returning one class, named instance or qualifier declaration per return
// value) must load without a log line, with its objects made, committed and,
// where they are collected, collected. Any other document must be refused
// for the first element that leaves those shapes, with that element's
// message as its first log line. A document whose objects need a class that
// no corpus document defines is listed, with the reason, in
// kUndefinedClasses. Documents that are not well-formed must end in errors
// without harm.
#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"
#include "populate/NamespacePopulator.h"
#include "support/CapturingLogger.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace NVRNORV20;

const std::string kCorpus = ORV_CORPUS_DIR;
const char kQualifiers[] = "dmtf-cim-2.49.0-compiled/cim_qualifiers_2.49.0.xml";
const char kPerClass[] = "dmtf-cim-2.42.0-xml/per-class-gz";

/// Classes that documents of an otherwise loadable shape need and that no
/// corpus document defines in a form that loads; names in lower case.
const std::map<std::string, std::string> kUndefinedClasses = {
    {"", "an instance without a class name (a deliberately bad request)"},
    {"cim_nonexistentclass", "a deliberately unknown superclass"},
    {"cmpisampleclass", "a test provider's class; its schema is not in the corpus"},
    {"cws_directory", "a sample provider's class; its schema is not in the corpus"},
    {"pg_bindsiptolanendpoint", "a provider class of its project's schema, not in the corpus"},
    {"pg_computersystem", "defined only in Common/tests/XmlParser/x.xml, which is not well-formed"},
    {"pg_dnsservice", "a provider class of its project's schema, not in the corpus"},
    {"pg_indicationfilter", "a provider class of its project's schema, not in the corpus"},
    {"pg_indicationhandlercimxml", "a provider class of its project's schema, not in the corpus"},
    {"pg_indicationhandlersnmpmapper",
     "a provider class of its project's schema, not in the corpus"},
    {"pg_indicationsubscription", "a provider class of its project's schema, not in the corpus"},
    {"pg_iproute", "a provider class of its project's schema, not in the corpus"},
    {"pg_nisserverservice", "a provider class of its project's schema, not in the corpus"},
    {"pg_ntpservice", "a provider class of its project's schema, not in the corpus"},
    {"pg_operatingsystem",
     "defined only in Common/tests/XmlParser/x.xml, which is not well-formed"},
    {"pg_provider", "a provider class of its project's schema, not in the corpus"},
    {"pg_providercapabilities", "a provider class of its project's schema, not in the corpus"},
    {"pg_providermodule", "a provider class of its project's schema, not in the corpus"},
    {"pg_testpropertytypes", "named only by an empty ModifyClass request, which loads nothing"},
    {"pywbem_alltypes", "a class of the function tests' mock schema, not in the corpus"},
    {"pywbem_object", "the function tests' root class; no document defines it"},
    {"pywbem_person", "defined only as a subclass of PyWBEM_Object, which no document defines"},
    {"sample_instance", "a test provider's class; its schema is not in the corpus"},
    {"sample_instanceproviderclass", "a sample provider's class; its schema is not in the corpus"},
    {"test_class", "a test class of its project, not in the corpus"},
    {"test_forsubclassing", "a test class of its project, not in the corpus"},
    {"test_person", "a test provider's class; its schema is not in the corpus"},
    {"testclass", "a test class of its project, not in the corpus"},
    {"testcmpi_fail_4", "a test provider's class; its schema is not in the corpus"},
};

/// Documents of a loadable shape that fail for a reason of their own.
const std::map<std::string, std::string> kDocumentExceptions = {
    {"openpegasus/test/wetest/cimv2/CreateClass/CreateClass34010.xml",
     "creates the same class twice; the second creation fails"},
    {"pywbem-functiontest/getinstance/GetInstanceE10.rsp.xml",
     "a class with CLASSNAME instead of NAME, which cannot be made (a deliberately wrong "
     "response)"},
    {"pywbem-functiontest/getqualifier/GetQualifierF3.rsp.xml",
     "a class with CLASSNAME instead of NAME, which cannot be made (a deliberately wrong "
     "response)"},
};

/// The messages that rejected content may leave; anything else in the log
/// of a well-formed document is a fault.
const char *const kRejectionMessages[] = {
    "Unexpected element ",
    "Unexpected IMethodCall method ",
    "Unexpected IParamValue parameter name",
    "CIM element syntax error",
    "Invalid MULTIREQ",
    "Unknown protocol version",
    "Parser state corrupt",
    "Unexpected at least 1 NAMESPACE element",
};
const char kEndElementPrefix[] = "TCIMXMLParser: EndElement: Threw exception ";

std::string Lower(std::string text) {
  for (char &c : text)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::string ReadFile(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

bool StartsWith(const std::string &text, const std::string &prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

/// The message of a parser log line, without "CIM-XML Parser line N:"; an
/// end-handler line stays as it is.
std::string MessageOf(const std::string &line) {
  const std::string prefix = "CIM-XML Parser line ";
  if (!StartsWith(line, prefix))
    return line;
  std::size_t colon = line.find(':', prefix.size());
  return colon == std::string::npos ? line : line.substr(colon + 1);
}

// ---------------------------------------------------------------------------
// The element tree, read with the bare tokenizer.

struct TElement {
  std::string name; // lower case
  std::map<std::string, std::string> attributes;
  std::vector<std::unique_ptr<TElement>> children;

  std::string Attribute(const std::string &key) const {
    auto found = attributes.find(key);
    return found == attributes.end() ? std::string() : found->second;
  }
  bool HasAttribute(const std::string &key) const { return attributes.count(key) != 0; }
};

class TTreeRecorder : public TXmlParser {
public:
  void StartElement(const char *name, TAttributes &attributes) override {
    auto element = std::make_unique<TElement>();
    element->name = Lower(name);
    element->attributes = attributes;
    TElement *raw = element.get();
    if (open.empty())
      root = std::move(element);
    else
      open.back()->children.push_back(std::move(element));
    open.push_back(raw);
  }
  void EndElement(const char *) override {
    if (!open.empty())
      open.pop_back();
  }
  void processingInstruction(const char *, const char *) override {}
  void characters(const char *, unsigned) override {}
  void notationDecl(const char *, const char *, const char *) override {}
  void FatalError(const char *message) override {
    error = message;
    throw TORVException(TORVStatusCode(kORVStatusInvalidDocument));
  }

  std::unique_ptr<TElement> root;
  std::vector<TElement *> open;
  std::string error;
};

// ---------------------------------------------------------------------------
// What a document should give.

struct TShape {
  /// The message for the first element outside the loaded shapes; empty
  /// when the whole document has a loaded shape.
  std::string rejection;
  std::size_t collectedClasses = 0;   // declarations and responses
  std::size_t collectedInstances = 0; // declarations
  std::size_t madeClasses = 0;        // also requests
  std::size_t madeInstances = 0;      // also requests and named instances
  /// Classes that the objects before the first rejection name (instance
  /// classes, superclasses, classes of instance names), and those they
  /// define.
  std::set<std::string> needed;
  std::set<std::string> defined;
  bool hasClasses = false;
  bool declaresQualifiers = false;
};

class TShapeReader {
public:
  TShape Read(const TElement &root) {
    shape.hasClasses = Contains(root, "class");
    shape.declaresQualifiers = Contains(root, "qualifier.declaration");
    if (root.name != "cim")
      Reject("Unexpected element " + root.name);
    for (const auto &child : root.children) {
      if (child->name == "declaration")
        Declaration(*child);
      else if (child->name == "message")
        Message(*child);
      else
        Reject("Unexpected element " + child->name);
    }
    return shape;
  }

private:
  static bool Contains(const TElement &element, const std::string &name) {
    if (element.name == name)
      return true;
    for (const auto &child : element.children)
      if (Contains(*child, name))
        return true;
    return false;
  }

  void Reject(const std::string &message) {
    if (shape.rejection.empty())
      shape.rejection = message;
  }

  /// Records what an element needs and defines, through all its content.
  void Needs(const TElement &element) {
    if (element.name == "class") {
      if (!element.Attribute("superclass").empty())
        shape.needed.insert(Lower(element.Attribute("superclass")));
      shape.defined.insert(Lower(element.Attribute("name")));
    }
    if ((element.name == "instance" || element.name == "instancename") &&
        element.HasAttribute("classname"))
      shape.needed.insert(Lower(element.Attribute("classname")));
    for (const auto &child : element.children)
      Needs(*child);
  }
  /// What an object needs, as long as nothing has been refused: what a
  /// refused element leaves behind is not loaded for.
  void NeedsFirst(const TElement &element) {
    if (shape.rejection.empty())
      Needs(element);
  }

  void Object(const TElement &element, bool collected) {
    NeedsFirst(element);
    bool isClass = element.name == "class";
    (isClass ? shape.madeClasses : shape.madeInstances) += 1;
    if (collected)
      (isClass ? shape.collectedClasses : shape.collectedInstances) += 1;
    if (!isClass)
      InstanceQualifiers(element);
  }

  // An instance makes no state for its qualifiers: the content of one
  // arrives at the instance itself, which takes only properties, and a
  // qualifier after a property is refused outright.
  void InstanceQualifiers(const TElement &instance) {
    bool propertySeen = false;
    for (const auto &child : instance.children) {
      if (child->name != "qualifier")
        propertySeen = true;
      else if (propertySeen)
        Reject("Unexpected element qualifier");
      else if (!child->children.empty())
        Reject("Unexpected element " + child->children.front()->name);
    }
  }

  // Declaration documents are the class states' business; here they carry
  // instances, so only their objects are counted.
  void Declaration(const TElement &declaration) {
    for (const auto &group : declaration.children)
      for (const auto &item : group->children)
        for (const auto &part : item->children) {
          if (part->name == "class" || part->name == "instance")
            Object(*part, true);
          else
            NeedsFirst(*part);
        }
  }

  void Message(const TElement &message) {
    if (message.HasAttribute("protocolversion") && message.Attribute("protocolversion") != "1.0")
      Reject("Unknown protocol version");
    for (const auto &child : message.children) {
      if (child->name == "simplereq") {
        SimpleRequest(*child);
      } else if (child->name == "multireq") {
        std::size_t requests = 0;
        for (const auto &request : child->children) {
          if (request->name != "simplereq") {
            Reject("Unexpected element " + request->name);
            continue;
          }
          ++requests;
          SimpleRequest(*request);
        }
        if (requests < 2)
          Reject("Invalid MULTIREQ");
      } else if (child->name == "simplersp") {
        SimpleResponse(*child);
      } else {
        Reject("Unexpected element " + child->name);
      }
    }
  }

  void SimpleRequest(const TElement &request) {
    for (const auto &call : request.children) {
      if (call->name != "imethodcall") {
        Reject("Unexpected element " + call->name);
        continue;
      }
      const std::string method = call->Attribute("name");
      if (method != "CreateClass" && method != "CreateInstance" && method != "Create Instance")
        Reject("Unexpected IMethodCall method " + method);
      for (std::size_t i = 0; i < call->children.size(); ++i) {
        const TElement &parameter = *call->children[i];
        if (parameter.name != (i == 0 ? "localnamespacepath" : "iparamvalue")) {
          Reject("Unexpected element " + parameter.name);
          continue;
        }
        if (i != 0)
          ParameterValue(parameter);
      }
    }
  }

  void ParameterValue(const TElement &parameter) {
    const std::string name = parameter.Attribute("name");
    if (name != "NewClass" && name != "NewInstance")
      Reject("Unexpected IParamValue parameter name");
    OneObject(parameter, {"class", "instance"}, false);
  }

  void SimpleResponse(const TElement &response) {
    for (const auto &method : response.children) {
      if (method->name != "imethodresponse") {
        Reject("Unexpected element " + method->name);
        continue;
      }
      for (const auto &value : method->children) {
        if (value->name == "error") {
          for (const auto &child : value->children)
            Reject("Unexpected element " + child->name);
        } else if (value->name == "ireturnvalue") {
          OneObject(*value, {"class", "value.namedinstance", "qualifier.declaration"}, true);
        } else {
          Reject("Unexpected element " + value->name);
        }
      }
    }
  }

  /// A parameter or return value: exactly one child of the accepted kinds.
  void OneObject(const TElement &holder, const std::set<std::string> &accepted, bool collected) {
    if (holder.children.empty()) {
      Reject("CIM element syntax error");
      return;
    }
    const TElement &object = *holder.children[0];
    if (accepted.count(object.name) == 0) {
      Reject("Unexpected element " + object.name);
      return;
    }
    if (object.name == "value.namedinstance") {
      NeedsFirst(object);
      ++shape.madeInstances;
      for (const auto &child : object.children)
        if (child->name == "instance")
          InstanceQualifiers(*child);
    } else if (object.name != "qualifier.declaration") {
      Object(object, collected);
    }
    if (holder.children.size() > 1)
      Reject("Unexpected element " + holder.children[1]->name);
  }

  TShape shape;
};

// ---------------------------------------------------------------------------
// The corpus.

struct TDocument {
  std::string file;
  bool wellFormed;
};

/// Instance and message documents, and what else of the corpus is neither a
/// class document nor the schema: fragments, negative inputs.
std::vector<TDocument> InstanceAndMessageDocuments() {
  std::vector<TDocument> documents;
  std::ifstream manifest(kCorpus + "/MANIFEST.tsv");
  std::string line;
  std::getline(manifest, line); // the header
  while (std::getline(manifest, line)) {
    std::vector<std::string> fields;
    std::stringstream row(line);
    for (std::string field; std::getline(row, field, '\t');)
      fields.push_back(field);
    if (fields.size() < 15)
      continue;
    const std::string &file = fields[0];
    const std::string &root = fields[9];
    const bool hasInstances = fields[12] != "0" || fields[14] != "0";
    // Compressed files are copies of documents listed plain as well; the
    // schemas are class documents.
    if (file.size() > 3 && file.compare(file.size() - 3, 3, ".gz") == 0)
      continue;
    if (StartsWith(file, "dmtf-") && !hasInstances)
      continue;
    // A class document: classes, and neither instances nor a message.
    if (fields[11] != "0" && !hasInstances && root.find("MESSAGE") == std::string::npos)
      continue;
    documents.push_back({file, fields[8] == "yes"});
  }
  return documents;
}

struct TTally {
  std::size_t loaded = 0, rejected = 0, undefined = 0, excepted = 0, malformed = 0;
  std::size_t classes = 0, instances = 0, logLines = 0;
};

/// The element tree of a document; empty when the tokenizer refused it.
std::unique_ptr<TElement> ReadTree(const std::string &bytes, std::string &error) {
  TTreeRecorder recorder;
  std::vector<char> copy(bytes.begin(), bytes.end());
  copy.push_back('\0');
  try {
    recorder.Parse(copy.data());
  } catch (const TORVException &) {
  }
  error = recorder.error;
  return error.empty() ? std::move(recorder.root) : nullptr;
}

std::string ReadGzip(const std::string &path) {
  std::string bytes;
  gzFile file = gzopen(path.c_str(), "rb");
  if (file == nullptr)
    return bytes;
  char chunk[65536];
  for (int read; (read = gzread(file, chunk, sizeof chunk)) > 0;)
    bytes.append(chunk, static_cast<std::size_t>(read));
  gzclose(file);
  return bytes;
}

class CorpusInstanceDocumentsTest : public ::testing::Test {
protected:
  void SetUp() override {
    if (!std::filesystem::exists(kCorpus + "/MANIFEST.tsv"))
      GTEST_SKIP() << "corpus missing: no " << kCorpus << "/MANIFEST.tsv";
    for (const auto &entry : std::filesystem::directory_iterator(kCorpus + "/" + kPerClass)) {
      const std::string name = entry.path().filename().string();
      const std::string suffix = ".xml.gz";
      if (name.size() > suffix.size() &&
          name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0)
        classFiles[Lower(name.substr(0, name.size() - suffix.size()))] = entry.path().string();
    }
    ASSERT_FALSE(classFiles.empty());
  }

  /// A namespace of the document's own, with what it needs from the DMTF
  /// schema.
  void Prepare(const TShape *shape) {
    ns = CreateCIMNamespace("root/cimv2");
    if (shape == nullptr)
      return;
    std::vector<std::string> schemaClasses;
    for (const std::string &name : shape->needed)
      if (shape->defined.count(name) == 0 && classFiles.count(name) != 0)
        schemaClasses.push_back(name);
    // Classes carry qualifiers; instances do not need their declarations.
    if (!shape->declaresQualifiers && (shape->hasClasses || !schemaClasses.empty()))
      TNamespacePopulator::PopulateFromXMLFile(ns, kCorpus + "/" + kQualifiers);
    for (const std::string &name : schemaClasses)
      LoadDmtfClass(name);
    EXPECT_TRUE(logger.entries.empty()) << logger.entries.front().second;
    logger.entries.clear();
  }

  /// A class of the schema's per-class documents, after its superclass.
  void LoadDmtfClass(const std::string &name) {
    auto file = classFiles.find(name);
    if (file == classFiles.end() || ns->HasClass(name))
      return;
    auto known = superClasses.find(name);
    if (known == superClasses.end()) {
      std::string error;
      std::unique_ptr<TElement> tree = ReadTree(ReadGzip(file->second), error);
      std::string superClass;
      for (const TElement *element = tree.get(); element != nullptr;) {
        if (element->name == "class") {
          superClass = Lower(element->Attribute("superclass"));
          break;
        }
        element = element->children.empty() ? nullptr : element->children.front().get();
      }
      known = superClasses.emplace(name, superClass).first;
    }
    if (!known->second.empty())
      LoadDmtfClass(known->second);
    TNamespacePopulator::PopulateFromXMLFile(ns, file->second);
  }

  /// Parses one document into ns; returns whether the parse ran to its end.
  bool Parse(const std::string &bytes, std::vector<boost::shared_ptr<ICIMClass>> &classes,
             std::vector<boost::shared_ptr<ICIMInstance>> &instances) {
    std::vector<char> buffer(bytes.begin(), bytes.end());
    buffer.push_back('\0');
    TCIMXMLParser parser(ns);
    bool completed = true;
    try {
      parser.Parse(buffer.data());
    } catch (const TORVException &) {
      completed = false;
    }
    classes = parser.GetClassesCollected();
    instances = parser.GetInstancesCollected();
    return completed;
  }

  orvtest::TCapturingLogger logger;
  boost::shared_ptr<ICIMNamespace> ns;
  std::map<std::string, std::string> classFiles;
  std::map<std::string, std::string> superClasses;
};

TEST_F(CorpusInstanceDocumentsTest, EveryDocumentLoadsOrIsRefusedForItsReason) {
  const std::vector<TDocument> documents = InstanceAndMessageDocuments();
  ASSERT_GT(documents.size(), 1000u);
  TTally tally;
  std::set<std::string> undefinedSeen;
  for (const TDocument &document : documents) {
    SCOPED_TRACE(document.file);
    const std::string bytes = ReadFile(kCorpus + "/" + document.file);
    std::string error;
    std::unique_ptr<TElement> tree;
    TShape shape;
    if (document.wellFormed) {
      tree = ReadTree(bytes, error);
      ASSERT_TRUE(tree) << error;
      shape = TShapeReader().Read(*tree);
    }
    Prepare(tree ? &shape : nullptr);
    const std::size_t classCount = ns->GetClasses().size();
    const std::size_t instanceCount = ns->GetInstances("", true).size();
    std::vector<boost::shared_ptr<ICIMClass>> classes;
    std::vector<boost::shared_ptr<ICIMInstance>> instances;
    const bool completed = Parse(bytes, classes, instances);
    const std::vector<std::string> log = logger.Texts();
    logger.entries.clear();
    tally.logLines += log.size();
    const std::size_t madeClasses = ns->GetClasses().size() - classCount;
    const std::size_t madeInstances = ns->GetInstances("", true).size() - instanceCount;

    if (!document.wellFormed) {
      // A negative input of its project: it ends in errors, without harm.
      ++tally.malformed;
      EXPECT_TRUE(!completed || !log.empty());
      continue;
    }

    // Content that rejected elements leave behind explains every line.
    for (const std::string &line : log) {
      const std::string message = MessageOf(line);
      bool known = StartsWith(message, kEndElementPrefix);
      for (const char *rejection : kRejectionMessages)
        known = known || StartsWith(message, rejection);
      EXPECT_TRUE(known) << line;
    }

    auto exception = kDocumentExceptions.find(document.file);
    if (exception != kDocumentExceptions.end()) {
      ++tally.excepted;
      EXPECT_FALSE(log.empty()) << exception->second;
      continue;
    }
    std::set<std::string> missing;
    for (const std::string &name : shape.needed)
      if (shape.defined.count(name) == 0 && !ns->HasClass(name))
        missing.insert(name);
    if (!missing.empty()) {
      ++tally.undefined;
      for (const std::string &name : missing) {
        EXPECT_EQ(kUndefinedClasses.count(name), 1u) << "needs class '" << name << "'";
        undefinedSeen.insert(name);
      }
      EXPECT_FALSE(log.empty());
      continue;
    }
    if (!shape.rejection.empty()) {
      ++tally.rejected;
      ASSERT_FALSE(log.empty()) << "not reported: " << shape.rejection;
      EXPECT_EQ(MessageOf(log.front()), shape.rejection);
      continue;
    }
    ++tally.loaded;
    EXPECT_TRUE(completed);
    EXPECT_TRUE(log.empty()) << log.front();
    EXPECT_EQ(classes.size(), shape.collectedClasses);
    EXPECT_EQ(instances.size(), shape.collectedInstances);
    EXPECT_EQ(madeClasses, shape.madeClasses);
    EXPECT_EQ(madeInstances, shape.madeInstances);
    for (const auto &cls : classes)
      EXPECT_TRUE(cls->IsCommitted());
    for (const auto &instance : instances)
      EXPECT_TRUE(instance->IsCommitted());
    tally.classes += madeClasses;
    tally.instances += madeInstances;
  }
  // The table holds no reason that no document needs.
  for (const auto &entry : kUndefinedClasses)
    EXPECT_EQ(undefinedSeen.count(entry.first), 1u) << "unused: '" << entry.first << "'";
  std::cout << "[          ] " << documents.size() << " documents: " << tally.loaded << " loaded ("
            << tally.classes << " classes, " << tally.instances << " instances), " << tally.rejected
            << " refused for their shape, " << tally.undefined << " needing undefined classes, "
            << tally.excepted << " listed as exceptions, " << tally.malformed
            << " not well-formed; " << tally.logLines << " log lines\n";
}

} // namespace
