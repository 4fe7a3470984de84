// The whole load of a large instance document: tokenizer, parser, instance,
// property, reference and key-binding states and the object model, next to
// the tokenizer alone on the same bytes. The document is generated: tens of
// thousands of instances of a generated schema, every fourth class an
// association whose instances refer to two others by instance name and key
// binding. Its classes are loaded into each namespace beforehand, untimed.
//
//   Tokenizer/N  the tokenizer with a handler that does nothing
//   Parse/N      the parser over the document in memory
//   Populate/N   the instance loader: read the file, parse, collect
//
// N is the number of instances. Counters: bytes_per_second (of the XML
// text); instances/s; vs_tokenizer, the load's throughput as a share of
// the tokenizer's on the same document; and for Populate, PeakRSS/doc, the
// growth of the peak resident size during one load (buffer included) as a
// multiple of the XML text's size.
#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/Logger.h"
#include "populate/NamespacePopulator.h"
#include "support/BenchSupport.h"
#include "support/CIMXMLGenerator.h"
#include "xml/XmlParser.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

using TNamespacePtr = boost::shared_ptr<NVRNORV20::ICIMNamespace>;

/// Classes of the generated schema that the instances spread over.
constexpr std::size_t kClassCount = 16;

struct TDocument {
  std::size_t instanceCount = 0;
  /// The file the loader reads: a copy in /tmp.
  std::string path;
  /// The XML text with its NUL, as the tokenizer wants it.
  std::vector<char> bytes;
  double tokenizerSeconds = 0;

  std::size_t Size() const { return bytes.size() - 1; }
};

orvbench::TQuietLogger logger;
std::string classDocumentPath;

TNamespacePtr SchemaNamespace() {
  TNamespacePtr ns = NVRNORV20::CreateCIMNamespace("root/cimv2");
  NVRNORV20::TNamespacePopulator::PopulateFromXMLFile(ns, classDocumentPath);
  return ns;
}

std::size_t ParseInto(const TNamespacePtr &ns, TDocument &document) {
  NVRNORV20::TCIMXMLParser parser(ns);
  parser.Parse(document.bytes.data());
  return parser.GetInstancesCollected().size();
}

/// The peak resident size that one load adds, in bytes, with the schema
/// already in the namespace; -1 where the system cannot reset its peak
/// mark.
double PeakGrowth(const TDocument &document) {
  TNamespacePtr ns = SchemaNamespace();
  return orvbench::PeakGrowth(
      [&] { NVRNORV20::TNamespacePopulator::PopulateFromRegXMLFile(ns, document.path); });
}

void Finish(benchmark::State &state, const TDocument &document, double loadSeconds) {
  const auto iterations = static_cast<double>(state.iterations());
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(document.Size()));
  state.counters["instances/s"] = benchmark::Counter(
      static_cast<double>(document.instanceCount) * iterations, benchmark::Counter::kIsRate);
  if (loadSeconds > 0)
    state.counters["vs_tokenizer"] = document.tokenizerSeconds / (loadSeconds / iterations);
}

void BM_Tokenizer(benchmark::State &state, TDocument *document) {
  for (auto _ : state) {
    orvbench::TNullTokenizer tokenizer;
    tokenizer.Parse(document->bytes.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(document->Size()));
}

// Each iteration gets a fresh namespace holding the schema; making it and
// destroying it (with its instances) are not timed. The tokenizer leaves
// the buffer as it was but for names folded to lower case, so one buffer
// serves every iteration.
void BM_Parse(benchmark::State &state, TDocument *document) {
  double seconds = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TNamespacePtr ns = SchemaNamespace();
    state.ResumeTiming();
    const double start = orvbench::ThreadSeconds();
    const std::size_t instances = ParseInto(ns, *document);
    seconds += orvbench::ThreadSeconds() - start;
    state.PauseTiming();
    if (instances != document->instanceCount) {
      state.SkipWithError("the document did not load whole");
      break;
    }
    ns.reset();
    state.ResumeTiming();
  }
  Finish(state, *document, seconds);
}

void BM_Populate(benchmark::State &state, TDocument *document) {
  const double peak = PeakGrowth(*document);
  double seconds = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TNamespacePtr ns = SchemaNamespace();
    state.ResumeTiming();
    const double start = orvbench::ThreadSeconds();
    const auto instances =
        NVRNORV20::TNamespacePopulator::PopulateFromRegXMLFile(ns, document->path);
    seconds += orvbench::ThreadSeconds() - start;
    state.PauseTiming();
    if (instances.size() != document->instanceCount) {
      state.SkipWithError("the document did not load whole");
      break;
    }
    ns.reset();
    state.ResumeTiming();
  }
  Finish(state, *document, seconds);
  if (peak >= 0)
    state.counters["PeakRSS/doc"] = peak / static_cast<double>(document->Size());
}

std::unique_ptr<TDocument> MakeDocument(std::size_t instanceCount) {
  auto document = std::make_unique<TDocument>();
  document->instanceCount = instanceCount;
  document->path = "/tmp/orv-instance-benchmark-" + std::to_string(instanceCount) + ".xml";
  const std::string text = orvbench::GenerateInstanceDocument(instanceCount, kClassCount);
  std::ofstream(document->path, std::ios::binary) << text;
  document->bytes.assign(text.begin(), text.end());
  document->bytes.push_back('\0');
  const std::size_t loaded = ParseInto(SchemaNamespace(), *document);
  if (loaded != instanceCount || !logger.firstError.empty())
    std::fprintf(stderr, "%zu instances: %zu loaded; %s\n", instanceCount, loaded,
                 logger.firstError.c_str());
  logger.firstError.clear();
  document->tokenizerSeconds = orvbench::BestTokenizerSeconds(document->bytes.data());
  return document;
}

} // namespace

int main(int argc, char **argv) {
  NVRNORV20::TRootObject::SetCoreLogger(&logger);
  classDocumentPath = "/tmp/orv-instance-benchmark-classes.xml";
  std::ofstream(classDocumentPath, std::ios::binary)
      << orvbench::GenerateClassDocument(kClassCount);
  std::vector<std::unique_ptr<TDocument>> documents;
  for (std::size_t count : {1000u, 50000u})
    documents.push_back(MakeDocument(count));
  for (const auto &document : documents) {
    const std::string suffix = "/" + std::to_string(document->instanceCount);
    benchmark::RegisterBenchmark(("Tokenizer" + suffix).c_str(), BM_Tokenizer, document.get())
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("Parse" + suffix).c_str(), BM_Parse, document.get())
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("Populate" + suffix).c_str(), BM_Populate, document.get())
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  NVRNORV20::TRootObject::SetCoreLogger(nullptr);
  for (const auto &document : documents)
    std::remove(document->path.c_str());
  std::remove(classDocumentPath.c_str());
  return 0;
}
