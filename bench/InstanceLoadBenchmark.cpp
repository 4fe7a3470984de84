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
#include "support/CIMXMLGenerator.h"
#include "xml/XmlParser.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
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

/// Keeps the first error, so that a document that does not load whole is
/// reported once rather than flooding the output.
class TQuietLogger : public NVRNORV20::ILogger {
public:
  void Log(int level, const std::string &text) override {
    if (level == 3 && firstError.empty())
      firstError = text;
  }
  std::string firstError;
};

TQuietLogger logger;
std::string classDocumentPath;

class TNullTokenizer : public NVRNORV20::TXmlParser {
public:
  void StartElement(const char *, TAttributes &) override {}
  void EndElement(const char *) override {}
  void processingInstruction(const char *, const char *) override {}
  void characters(const char *, unsigned) override {}
  void notationDecl(const char *, const char *, const char *) override {}
  void FatalError(const char *) override {}
};

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

double Seconds(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The best of three runs of the tokenizer alone.
double TimeTokenizer(TDocument &document) {
  double best = 1e30;
  for (int run = 0; run < 3; ++run) {
    const auto start = std::chrono::steady_clock::now();
    TNullTokenizer tokenizer;
    tokenizer.Parse(document.bytes.data());
    best = std::min(best, Seconds(start));
  }
  return best;
}

long StatusKilobytes(const char *field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  const std::string key = std::string(field) + ":";
  while (std::getline(status, line))
    if (line.compare(0, key.size(), key) == 0)
      return std::stol(line.substr(key.size()));
  return -1;
}

/// The peak resident size that one load adds, in bytes, with the schema
/// already in the namespace; -1 where the system cannot reset its peak
/// mark.
double PeakGrowth(const TDocument &document) {
  TNamespacePtr ns = SchemaNamespace();
  malloc_trim(0);
  {
    std::ofstream reset("/proc/self/clear_refs");
    reset << "5";
    if (!reset)
      return -1;
  }
  const long before = StatusKilobytes("VmRSS");
  NVRNORV20::TNamespacePopulator::PopulateFromRegXMLFile(ns, document.path);
  const long peak = StatusKilobytes("VmHWM");
  return before < 0 || peak < 0 ? -1 : static_cast<double>(peak - before) * 1024.0;
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
    TNullTokenizer tokenizer;
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
    const auto start = std::chrono::steady_clock::now();
    const std::size_t instances = ParseInto(ns, *document);
    seconds += Seconds(start);
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
    const auto start = std::chrono::steady_clock::now();
    const auto instances =
        NVRNORV20::TNamespacePopulator::PopulateFromRegXMLFile(ns, document->path);
    seconds += Seconds(start);
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
  document->tokenizerSeconds = TimeTokenizer(*document);
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
