// Operations whose cost must grow with what they are given, not faster:
// registering, comparing and releasing instances whose reference keys nest
// deep, reading a document that nests references deeper than the parser
// takes, building paths with many keys and elements with many qualifiers,
// tokenizing a tag with many attributes, and committing a long chain of
// classes. Items per second should stay flat from the small to
// the large argument.
#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/Logger.h"
#include "xml/XmlParser.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

using namespace NVRNORV20;

namespace {

/// C.Ref=C.Ref=...C.Name="x", depth references in all.
TCIMValue Nested(std::int64_t depth) {
  TCIMValue value("x");
  for (std::int64_t level = 0; level < depth; ++level) {
    TCIMReference path;
    path.SetClassName("C");
    path.AddKeyValue(level == 0 ? "Name" : "Ref", value);
    value = TCIMValue(path);
  }
  return value;
}

/// A namespace with the Key qualifier and the class C { [Key] C REF Ref; }.
boost::shared_ptr<ICIMNamespace> KeyedNamespace(boost::shared_ptr<ICIMClass> &cls) {
  auto ns = CreateCIMNamespace("root/bench");
  auto key = ns->CreateQualifierDecl("Key", TCIMValue(false), ICIMQualifierDecl::kScopeAny,
                                     ICIMQualifierDecl::kFlavorToSubclass);
  cls = ns->CreateClass("C", nullptr);
  auto ref = cls->AddProperty("Ref", TCIMValue(TCIMType(kCIMTypeReference), 0));
  ref->AddQualifier(ref->CreateQualifier(key, TCIMValue(true), 0));
  cls->Commit();
  return ns;
}

void BM_NestedKeyCommit(benchmark::State &state) {
  boost::shared_ptr<ICIMClass> cls;
  auto ns = KeyedNamespace(cls);
  const TCIMValue key = Nested(state.range(0));
  for (auto _ : state) {
    auto instance = cls->CreateInstance();
    instance->SetPropertyValue("Ref", key);
    instance->Commit();
    ns->DeleteInstance(instance->GetPath());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_NestedKeyCommit)->Arg(16)->Arg(1024)->Arg(65536);

void BM_NestedCompareAndRelease(benchmark::State &state) {
  const TCIMValue kept = Nested(state.range(0));
  for (auto _ : state) {
    const TCIMValue built = Nested(state.range(0));
    benchmark::DoNotOptimize(built == kept);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_NestedCompareAndRelease)->Arg(16)->Arg(1024)->Arg(65536);

/// A document with one instance whose reference key nests depth deep; past
/// the parser's bound the rest is read and dropped.
std::string NestedDocument(std::int64_t depth) {
  std::string open, close;
  for (std::int64_t level = 1; level < depth; ++level) {
    open += "<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"C\"><KEYBINDING NAME=\"Ref\">";
    close += "</KEYBINDING></INSTANCENAME></VALUE.REFERENCE>";
  }
  return "<CIM><DECLARATION><DECLGROUP><VALUE.OBJECT><INSTANCE CLASSNAME=\"C\">"
         "<PROPERTY.REFERENCE NAME=\"Ref\">" +
         open + "<VALUE.REFERENCE><CLASSNAME NAME=\"C\"/></VALUE.REFERENCE>" + close +
         "</PROPERTY.REFERENCE></INSTANCE></VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>";
}

/// The refusal of the deep document is its point, not worth a line each
/// time.
class TSilentLogger : public ILogger {
public:
  void Log(int, const std::string &) override {}
};

void BM_ParseNestedDocument(benchmark::State &state) {
  const std::string document = NestedDocument(state.range(0));
  TSilentLogger silent;
  TRootObject::SetCoreLogger(&silent);
  for (auto _ : state) {
    state.PauseTiming();
    boost::shared_ptr<ICIMClass> cls;
    auto ns = KeyedNamespace(cls);
    std::vector<char> buffer(document.begin(), document.end());
    buffer.push_back('\0');
    TCIMXMLParser parser(ns);
    state.ResumeTiming();
    parser.Parse(buffer.data());
    benchmark::DoNotOptimize(parser.GetInstancesCollected().size());
  }
  TRootObject::SetCoreLogger(nullptr);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.size()));
}
BENCHMARK(BM_ParseNestedDocument)->Arg(16)->Arg(1024)->Arg(65536);

void BM_PathWithManyKeys(benchmark::State &state) {
  std::vector<std::string> names;
  for (std::int64_t i = 0; i < state.range(0); ++i)
    names.push_back("Key" + std::to_string(i));
  const TCIMValue value = TCIMValue::MakeUnsigned(kCIMTypeUint32, 1);
  for (auto _ : state) {
    TCIMReference path;
    for (const std::string &name : names)
      path.AddKeyValue(name, value);
    benchmark::DoNotOptimize(path.GetKeyValue(names.front()));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PathWithManyKeys)->Arg(16)->Arg(1000)->Arg(100000);

void BM_PropertyWithManyQualifiers(benchmark::State &state) {
  auto ns = CreateCIMNamespace("root/bench");
  std::vector<boost::shared_ptr<ICIMQualifierDecl>> declarations;
  for (std::int64_t i = 0; i < state.range(0); ++i)
    declarations.push_back(ns->CreateQualifierDecl("Q" + std::to_string(i), TCIMValue(false),
                                                   ICIMQualifierDecl::kScopeAny,
                                                   ICIMQualifierDecl::kFlavorToSubclass));
  int round = 0;
  for (auto _ : state) {
    // Qualified, then inherited by a subclass that overrides the property.
    const std::string suffix = std::to_string(round++);
    auto base = ns->CreateClass("Base" + suffix, nullptr);
    auto property = base->AddProperty("P", TCIMValue("x"));
    for (const auto &declaration : declarations)
      property->AddQualifier(property->CreateQualifier(declaration, TCIMValue(true),
                                                       ICIMQualifierDecl::kFlavorToSubclass));
    base->Commit();
    auto derived = ns->CreateClass("Derived" + suffix, base);
    derived->AddProperty("P", TCIMValue("y"));
    derived->Commit();
    benchmark::DoNotOptimize(derived->GetProperty("P")->GetQualifiers().size());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PropertyWithManyQualifiers)->Arg(16)->Arg(1000)->Arg(40000);

void BM_ClassChain(benchmark::State &state) {
  // Each class of the chain adds one property to all it inherits.
  for (auto _ : state) {
    auto ns = CreateCIMNamespace("root/bench");
    boost::shared_ptr<ICIMClass> leaf;
    for (std::int64_t level = 0; level < state.range(0); ++level) {
      leaf = ns->CreateClass("C" + std::to_string(level), leaf);
      leaf->AddProperty("P" + std::to_string(level), TCIMValue("x"));
      leaf->Commit();
    }
    benchmark::DoNotOptimize(leaf->HasProperty("P0"));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ClassChain)->Arg(16)->Arg(1000)->Arg(10000);

/// Counts the attributes of each start tag and nothing else.
class TAttributeCounter : public TXmlParser {
public:
  void StartElement(const char *, TAttributes &attributes) override { seen += attributes.size(); }
  void EndElement(const char *) override {}
  void processingInstruction(const char *, const char *) override {}
  void characters(const char *, unsigned) override {}
  void notationDecl(const char *, const char *, const char *) override {}
  void FatalError(const char *) override {}
  std::size_t seen = 0;
};

void BM_TagWithManyAttributes(benchmark::State &state) {
  // In reverse order, the worst order for a sort by insertion.
  std::string document = "<a";
  for (std::int64_t i = state.range(0); i > 0; --i)
    document += " n" + std::to_string(i) + "=''";
  document += "/>";
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<char> buffer(document.begin(), document.end());
    buffer.push_back('\0');
    TAttributeCounter counter;
    state.ResumeTiming();
    counter.Parse(buffer.data());
    benchmark::DoNotOptimize(counter.seen);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_TagWithManyAttributes)->Arg(16)->Arg(1000)->Arg(100000);

} // namespace

BENCHMARK_MAIN();
