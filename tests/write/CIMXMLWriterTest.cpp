// The CIM-XML writer: each element form written as expected, and documents
// that read back in the full grammar into the same model and write the same
// bytes again.
#include "write/CIMXMLWriter.h"

#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"

#include <cmath>
#include <limits>
#include <map>

namespace orvtest {
namespace {

const TCIMXMLReadOptions kFullRegister{ECIMXMLGrammar::kFull, ECIMXMLRegistration::kRegister};

std::string TypeText(TCIMType type) {
  return type.GetName() + (type.IsArray() ? "[]" : "");
}

/// Type, nullness and contents: reals by their text, which is exact.
std::string Describe(const TCIMValue &value) {
  std::string text = TypeText(value.GetType());
  if (value.IsNull())
    return text + " null[" + std::to_string(value.GetCount()) + "]";
  if (!value.IsArray())
    return text + " '" + value.ToString() + "'";
  for (const TCIMValue &element : value.GetElements())
    text += " {" + Describe(element) + "}";
  return text;
}

std::string Qualifiers(ICIMQualifiedObject &object) {
  std::string text;
  for (const auto &q : object.GetQualifiers())
    text += "\n  [" + q->GetName() + " " + Describe(q->GetValue()) + " flavor " +
            std::to_string(q->GetFlavor()) + (q->IsPropagated() ? " propagated]" : "]");
  return text;
}

/// Every object of the namespace by its kind and name, with all it holds
/// (inherited members and propagated qualifiers too, which the reader
/// makes again), one line per part.
std::map<std::string, std::string> Model(ICIMNamespace &ns) {
  std::map<std::string, std::string> model;
  for (const auto &d : ns.GetQualifierDecls())
    model["qualifier " + d->GetName()] =
        TypeText(d->GetType()) + " size " + std::to_string(d->GetArraySize()) + " default " +
        Describe(d->GetDefaultValue()) + " scope " + std::to_string(d->GetScope()) + " flavor " +
        std::to_string(d->GetFlavor());
  for (const auto &cls : ns.GetClasses()) {
    std::string text = "super " + cls->GetSuperClassName() + Qualifiers(*cls);
    for (const auto &p : cls->GetProperties())
      text += "\n property " + p->GetName() + " " + Describe(p->GetValue()) + " ref " +
              p->GetReferenceClassName() + " origin " + p->GetClassOrigin() + Qualifiers(*p);
    for (const auto &m : cls->GetMethods()) {
      text += "\n method " + m->GetName() + " " + TypeText(m->GetReturnType()) + " origin " +
              m->GetClassOrigin() + Qualifiers(*m);
      for (const auto &p : m->GetParameters())
        text += "\n parameter " + p->GetName() + " " + TypeText(p->GetType()) + " ref " +
                p->GetReferenceClassName() + " size " + std::to_string(p->GetArraySize()) +
                Qualifiers(*p);
    }
    model["class " + cls->GetName()] = text;
  }
  for (const auto &instance : ns.GetInstances("", false)) {
    std::string text;
    for (const auto &p : instance->GetProperties())
      text += "\n " + p->GetName() + " " + Describe(p->GetValue());
    model["instance " + instance->GetPath().ToString()] = text;
  }
  return model;
}

/// The objects that differ between the models, each with its first
/// differing line; at most a few.
std::vector<std::string> Differences(const std::map<std::string, std::string> &before,
                                     const std::map<std::string, std::string> &after) {
  std::vector<std::string> differences;
  std::map<std::string, std::string> all = before;
  all.insert(after.begin(), after.end());
  for (const auto &entry : all) {
    const auto was = before.find(entry.first), is = after.find(entry.first);
    if (was == before.end() || is == after.end()) {
      differences.push_back(entry.first + (was == before.end() ? " added" : " lost"));
    } else if (was->second != is->second) {
      std::size_t at = 0;
      while (at < was->second.size() && was->second[at] == is->second[at])
        ++at;
      const std::size_t line = was->second.rfind('\n', at) + 1;
      differences.push_back(entry.first + ": '" + was->second.substr(line, 160) + "' became '" +
                            is->second.substr(line, 160) + "'");
    }
    if (differences.size() == 8)
      break;
  }
  return differences;
}

std::string Written(const std::function<void(std::ostream &)> &write) {
  std::ostringstream out;
  write(out);
  return out.str();
}

class CIMXMLWriterTest : public TParserFixture {
protected:
  /// Loads the files in the full grammar, writes, reads that into a fresh
  /// namespace: the same model, read without a line; written again, the
  /// same bytes.
  void RoundTrip(const std::vector<std::string> &files) {
    SCOPED_TRACE(files.back());
    auto loaded = CreateCIMNamespace("root/cimv2");
    TCIMXMLResult ignored;
    for (const std::string &file : files)
      TNamespacePopulator::Populate(loaded, file, kFullRegister, ignored);
    logger.entries.clear();
    const std::string first =
        Written([&](std::ostream &out) { TCIMXMLWriter::WriteDocument(out, *loaded); });
    auto reread = CreateCIMNamespace("root/cimv2");
    TNamespacePopulator::Populate(reread, scratch.Write("first.xml", first), kFullRegister,
                                  ignored);
    EXPECT_EQ(Log(), std::vector<std::string>{});
    EXPECT_EQ(Differences(Model(*loaded), Model(*reread)), std::vector<std::string>{});
    const std::string second =
        Written([&](std::ostream &out) { TCIMXMLWriter::WriteDocument(out, *reread); });
    EXPECT_TRUE(first == second) << "the second write differs from the first";
  }

  TTemporaryFolder scratch;
};

TEST_F(CIMXMLWriterTest, ExamplesReadBackIntoTheSameModel) {
  const std::string examples = std::string(ORV_EXAMPLES_DIR) + "/";
  RoundTrip({examples + "schema.xml"});
  RoundTrip({examples + "schema.xml", examples + "instances.xml"});
}

// The 2.49 schema as one document, and 2.42's flattened classes, whose
// inherited members the reader takes from their superclasses.
TEST_F(CIMXMLWriterTest, CorpusSchemasReadBackIntoTheSameModel) {
  const std::string corpus = std::string(ORV_CORPUS_DIR) + "/";
  const std::string qualifiers = corpus + "dmtf-cim-2.49.0-compiled/cim_qualifiers_2.49.0.xml";
  if (!std::filesystem::exists(qualifiers))
    GTEST_SKIP() << "The CIM-XML corpus is missing (no " << qualifiers << ")";
  RoundTrip({qualifiers, corpus + "dmtf-cim-2.49.0-compiled/cim_schema_2.49.0.xml"});
  RoundTrip({qualifiers, corpus + "dmtf-cim-2.42.0-xml/cim_schema_2.42.0_all_classes.xml.gz"});
}

} // namespace
} // namespace orvtest
