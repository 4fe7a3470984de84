// The whole load of a class document: tokenizer, parser, states and object
// model, next to the tokenizer alone on the same bytes. Documents: a
// generated class document of about 30 MB, and the two largest schema
// documents of the shared corpus when they are there (the 2.42 one gzip
// compressed, after the qualifier declarations it relies on).
//
//   Tokenizer/D  the tokenizer with a handler that does nothing
//   Parse/D      the parser over the document in memory, into a new namespace
//   Populate/D   the file loader: read (and inflate), parse, collect
//
// Counters: bytes_per_second (of the XML text); classes/s; vs_tokenizer, the
// load's throughput as a share of the tokenizer's on the same document, both
// in processor time (target: at least 0.5); and
// for Populate, PeakRSS/doc, the growth of the peak resident size during one
// load (buffer included) as a multiple of the XML text's size (target:
// under 4).
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
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using NVRNORV20::ICIMNamespace;
using TNamespacePtr = boost::shared_ptr<ICIMNamespace>;

struct TDocument {
  std::string name;
  /// The file the loader reads; for the generated document a copy in /tmp.
  std::string path;
  /// A namespace for it must first load these (qualifier declarations).
  std::string prerequisite;
  /// The XML text with its NUL, as the tokenizer wants it.
  std::vector<char> bytes;
  std::size_t classes = 0;
  double tokenizerSeconds = 0;

  std::size_t Size() const { return bytes.size() - 1; }
};

orvbench::TQuietLogger logger;

TNamespacePtr PreparedNamespace(const TDocument &document) {
  TNamespacePtr ns = NVRNORV20::CreateCIMNamespace("root/cimv2");
  if (!document.prerequisite.empty())
    NVRNORV20::TNamespacePopulator::PopulateFromXMLFile(ns, document.prerequisite);
  return ns;
}

std::size_t ParseInto(const TNamespacePtr &ns, TDocument &document) {
  NVRNORV20::TCIMXMLParser parser(ns);
  parser.Parse(document.bytes.data());
  return parser.GetClassesCollected().size();
}

/// The peak resident size that one load adds, with the namespace prepared.
double PeakGrowth(const TDocument &document) {
  TNamespacePtr ns = PreparedNamespace(document);
  return orvbench::PeakGrowth(
      [&] { NVRNORV20::TNamespacePopulator::PopulateFromXMLFile(ns, document.path); });
}

void Finish(benchmark::State &state, const TDocument &document, double loadSeconds) {
  const auto iterations = static_cast<double>(state.iterations());
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(document.Size()));
  state.counters["classes/s"] = benchmark::Counter(
      static_cast<double>(document.classes) * iterations, benchmark::Counter::kIsRate);
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

// Each iteration gets a fresh namespace; making it (with its qualifier
// declarations) and destroying it are not timed. The tokenizer leaves the
// buffer as it was but for names folded to lower case, so one buffer
// serves every iteration.
void BM_Parse(benchmark::State &state, TDocument *document) {
  double seconds = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TNamespacePtr ns = PreparedNamespace(*document);
    state.ResumeTiming();
    const double start = orvbench::ThreadSeconds();
    const std::size_t classes = ParseInto(ns, *document);
    seconds += orvbench::ThreadSeconds() - start;
    state.PauseTiming();
    if (classes != document->classes) {
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
    TNamespacePtr ns = PreparedNamespace(*document);
    state.ResumeTiming();
    const double start = orvbench::ThreadSeconds();
    const auto classes = NVRNORV20::TNamespacePopulator::PopulateFromXMLFile(ns, document->path);
    seconds += orvbench::ThreadSeconds() - start;
    state.PauseTiming();
    if (classes.size() != document->classes) {
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

std::vector<TDocument> LoadDocuments() {
  std::vector<TDocument> documents;
  const std::string corpus = ORV_CORPUS_DIR;
  const std::string qualifiers = corpus + "/dmtf-cim-2.49.0-compiled/cim_qualifiers_2.49.0.xml";

  TDocument generated;
  generated.name = "generated";
  generated.path = "/tmp/orv-load-benchmark-generated.xml";
  const std::string text = orvbench::GenerateClassDocument(orvbench::ClassCountForSize(30u << 20));
  std::ofstream(generated.path, std::ios::binary) << text;
  generated.bytes.assign(text.begin(), text.end());
  documents.push_back(generated);

  const struct {
    const char *name;
    std::string path;
    std::string prerequisite;
  } corpusDocuments[] = {
      {"cim_schema_2.49.0", corpus + "/dmtf-cim-2.49.0-compiled/cim_schema_2.49.0.xml", ""},
      {"cim_schema_2.42.0_all.gz",
       corpus + "/dmtf-cim-2.42.0-xml/cim_schema_2.42.0_all_classes.xml.gz", qualifiers},
  };
  for (const auto &entry : corpusDocuments) {
    TDocument document;
    std::string corpusText;
    if (!orvbench::ReadText(entry.path, corpusText)) {
      std::fprintf(stderr, "corpus missing: %s skipped\n", entry.path.c_str());
      continue;
    }
    document.name = entry.name;
    document.path = entry.path;
    document.prerequisite = entry.prerequisite;
    document.bytes.assign(corpusText.begin(), corpusText.end());
    documents.push_back(document);
  }

  for (TDocument &document : documents) {
    document.bytes.push_back('\0');
    document.classes = ParseInto(PreparedNamespace(document), document);
    document.tokenizerSeconds = orvbench::BestTokenizerSeconds(document.bytes.data());
    if (!logger.firstError.empty())
      std::fprintf(stderr, "%s: %s\n", document.name.c_str(), logger.firstError.c_str());
    logger.firstError.clear();
  }
  return documents;
}

} // namespace

int main(int argc, char **argv) {
  NVRNORV20::TRootObject::SetCoreLogger(&logger);
  static std::vector<TDocument> documents = LoadDocuments();
  for (TDocument &document : documents) {
    const std::string suffix = "/" + document.name;
    benchmark::RegisterBenchmark(("Tokenizer" + suffix).c_str(), BM_Tokenizer, &document)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("Parse" + suffix).c_str(), BM_Parse, &document)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("Populate" + suffix).c_str(), BM_Populate, &document)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  NVRNORV20::TRootObject::SetCoreLogger(nullptr);
  std::remove("/tmp/orv-load-benchmark-generated.xml");
  return 0;
}
