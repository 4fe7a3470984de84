// The core object model under the load of a large schema: class creation
// with the look-ups a loader makes, class and property look-ups by name in
// any letter case, and instance creation and commit of a keyed class.
// Items per second should stay flat from the small to the large argument.
#include "core_api/CIMInterfaces.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

using namespace NVRNORV20;

namespace {

constexpr int kChainDepth = 8;
constexpr int kOwnProperties = 10;

std::string ClassName(int index) {
  return "Bench_Class" + std::to_string(index);
}
std::string PropertyName(int level, int index) {
  return "Level" + std::to_string(level) + "Property" + std::to_string(index);
}

/// Flips the case of every other letter: "bEnCh_cLaSs12".
std::string MixCase(std::string name) {
  for (std::size_t i = 0; i < name.size(); i += 2) {
    char &c = name[i];
    if (c >= 'a' && c <= 'z')
      c = static_cast<char>(c - 'a' + 'A');
    else if (c >= 'A' && c <= 'Z')
      c = static_cast<char>(c - 'A' + 'a');
  }
  return name;
}

boost::shared_ptr<ICIMNamespace> NewNamespace() {
  auto ns = CreateCIMNamespace("root/bench");
  ns->CreateQualifierDecl("Key", TCIMValue(false), ICIMQualifierDecl::kScopeProperty,
                          ICIMQualifierDecl::kFlavorToSubclass)
      ->Commit();
  ns->CreateQualifierDecl("Description", TCIMValue(TCIMType(kCIMTypeString), 0),
                          ICIMQualifierDecl::kScopeAny, ICIMQualifierDecl::kFlavorDefault)
      ->Commit();
  ns->CreateQualifierDecl("MaxLen", TCIMValue(TCIMType(kCIMTypeUint32), 0),
                          ICIMQualifierDecl::kScopeProperty, ICIMQualifierDecl::kFlavorDefault)
      ->Commit();
  return ns;
}

void Qualify(ICIMQualifiedObject &object, ICIMNamespace &ns, const char *name,
             const TCIMValue &value, std::uint32_t flavor) {
  object.AddQualifier(object.CreateQualifier(ns.GetQualifierDecl(name), value, flavor));
}

/// Classes in chains of kChainDepth under one root, as a loader would make
/// them: superclass looked up by name, properties added untyped and given
/// their default at the end, qualifiers looked up by name. Each class
/// declares kOwnProperties new properties and, like a flattened schema,
/// repeats its superclass's key property. Returns the number of properties
/// declared.
std::int64_t BuildSchema(ICIMNamespace &ns, int classCount) {
  const TCIMValue description("A property of the benchmark schema, described at some length.");
  const TCIMValue maxLen = TCIMValue::MakeUnsigned(kCIMTypeUint32, 256);
  const TCIMValue stringNull(TCIMType(kCIMTypeString), 0);
  const TCIMValue uintDefault = TCIMValue::MakeUnsigned(kCIMTypeUint32, 7);
  std::int64_t declared = 0;
  for (int i = 0; i < classCount; ++i) {
    const int level = i % kChainDepth;
    const std::string super = i == 0 ? std::string() : level == 0 ? ClassName(0) : ClassName(i - 1);
    auto cls = ns.CreateClass(ClassName(i), ns.GetClass(super));
    Qualify(*cls, ns, "Description", description, ICIMQualifierDecl::kFlavorDefault);
    auto key = cls->AddProperty("InstanceID", TCIMValue());
    if (i == 0)
      Qualify(*key, ns, "Key", TCIMValue(true), ICIMQualifierDecl::kFlavorToSubclass);
    key->SetValue(stringNull);
    key->Commit();
    for (int p = 0; p < kOwnProperties; ++p) {
      auto property = cls->AddProperty(PropertyName(level, p), TCIMValue());
      Qualify(*property, ns, "Description", description, ICIMQualifierDecl::kFlavorDefault);
      if (p % 2 == 0) {
        Qualify(*property, ns, "MaxLen", maxLen, ICIMQualifierDecl::kFlavorDefault);
        property->SetValue(stringNull);
      } else {
        property->SetValue(uintDefault);
      }
      property->Commit();
    }
    cls->Commit();
    declared += kOwnProperties + 1;
  }
  return declared;
}

void BM_ClassCreation(benchmark::State &state) {
  const int classCount = static_cast<int>(state.range(0));
  std::int64_t properties = 0;
  for (auto _ : state) {
    auto ns = NewNamespace();
    properties += BuildSchema(*ns, classCount);
    benchmark::DoNotOptimize(ns.get());
    state.PauseTiming();
    ns.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * classCount);
  state.counters["properties/s"] =
      benchmark::Counter(static_cast<double>(properties), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ClassCreation)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

void BM_ClassLookup(benchmark::State &state) {
  const int classCount = static_cast<int>(state.range(0));
  auto ns = NewNamespace();
  BuildSchema(*ns, classCount);
  std::vector<std::string> classNames;
  std::vector<std::string> propertyNames;
  for (int i = 0; i < classCount; ++i) {
    classNames.push_back(MixCase(ClassName(i)));
    propertyNames.push_back(MixCase(PropertyName(0, i % kOwnProperties)));
  }
  for (auto _ : state) {
    for (int i = 0; i < classCount; ++i) {
      auto cls = ns->GetClass(classNames[static_cast<std::size_t>(i)]);
      // Every class inherits its chain root's properties.
      auto property = cls->GetProperty(propertyNames[static_cast<std::size_t>(i)]);
      benchmark::DoNotOptimize(property->GetQualifier("KEY").get());
    }
  }
  state.SetItemsProcessed(state.iterations() * classCount);
}
BENCHMARK(BM_ClassLookup)->Arg(2000)->Arg(20000);

/// The same 2000 look-ups, spread over namespaces of growing size: a rate
/// that stays flat shows that a look-up does not depend on how many classes
/// the namespace holds; BM_ClassLookup adds the cost of a working set that
/// outgrows the caches.
void BM_ClassLookupFixedSet(benchmark::State &state) {
  constexpr int kLookups = 2000;
  const int classCount = static_cast<int>(state.range(0));
  auto ns = NewNamespace();
  BuildSchema(*ns, classCount);
  std::vector<std::string> classNames;
  // Whole chains, evenly spread, so that every size looks up the same mix
  // of chain levels (deeper classes have more inherited properties).
  const int chainStride = kChainDepth * (classCount / kLookups);
  for (int i = 0; i < kLookups; ++i)
    classNames.push_back(MixCase(ClassName(i / kChainDepth * chainStride + i % kChainDepth)));
  const std::string propertyName = MixCase(PropertyName(0, 3));
  for (auto _ : state) {
    for (const std::string &name : classNames) {
      auto property = ns->GetClass(name)->GetProperty(propertyName);
      benchmark::DoNotOptimize(property->GetQualifier("KEY").get());
    }
  }
  state.SetItemsProcessed(state.iterations() * kLookups);
}
BENCHMARK(BM_ClassLookupFixedSet)->Arg(2000)->Arg(20000);

void BM_InstanceCommit(benchmark::State &state) {
  const int instanceCount = static_cast<int>(state.range(0));
  auto ns = NewNamespace();
  BuildSchema(*ns, kChainDepth);
  auto cls = ns->GetClass(ClassName(kChainDepth - 1)); // deepest of its chain
  std::vector<TCIMValue> ids;
  for (int i = 0; i < instanceCount; ++i)
    ids.emplace_back("instance-" + std::to_string(i));
  const TCIMValue count = TCIMValue::MakeUnsigned(kCIMTypeUint32, 3);
  for (auto _ : state) {
    for (const TCIMValue &id : ids) {
      auto instance = cls->CreateInstance();
      instance->SetPropertyValue("InstanceID", id);
      instance->SetPropertyValue("Level0Property1", count);
      instance->Commit();
    }
    state.PauseTiming();
    for (const TCIMValue &id : ids) {
      TCIMReference path;
      path.SetClassName(cls->GetName());
      path.AddKeyValue("InstanceID", id);
      ns->DeleteInstance(path);
    }
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * instanceCount);
}
BENCHMARK(BM_InstanceCommit)->Arg(20000)->Arg(200000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
