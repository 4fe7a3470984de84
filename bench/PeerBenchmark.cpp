// One run that puts our tokenizer and our whole load next to what users
// would pick instead, on the same bytes:
//
//   Memchr/D      a memchr pass for '<' over the buffer: the ceiling
//   Expat/D       expat with empty handlers
//   LibXml2Sax/D  libxml2's SAX2 parser with empty handlers
//   Pugixml/D     pugixml's in-place parse (minimal options)
//   Tokenizer/D   our tokenizer with a handler that does nothing with the
//                 attribute map it is given
//   TokenizerSpans/D  the same, taking attributes as spans into the buffer
//   Load/D        the file loader into a prepared namespace: read (and
//                 inflate), tokenize, parse, build and register the objects
//
// Documents D: generated class documents of 1, 10 and 100 MB, of 10 MB in
// superclass chains 10 and 100 deep, and of 21.5 MB in chains 50 deep; the
// two large schemas of the shared corpus (the 2.42 one gzip compressed,
// loaded after the qualifier declarations it relies on), when they are
// there; a
// generated document of 50,000 instances, loaded after its classes; and a
// generated EnumerateInstances response of 100,000 named instances (about
// 100 MB), read in the full grammar without its classes, once into the
// result that keeps everything and once by a handler that keeps nothing.
//
// Rates are of the XML text, in processor time of the benchmark thread, so
// that what else runs on a shared machine matters less. After the usual
// output a table gives, per document, each rate with the ratios that the
// release targets are stated in, the load's objects per second, and the
// growth of the peak resident size during one load (buffer included) as a
// multiple of the text's size.
#include "cimxml/CIMXMLDocument.h"
#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/Logger.h"
#include "populate/NamespacePopulator.h"
#include "support/BenchSupport.h"
#include "support/CIMXMLGenerator.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#ifdef ORV_HAVE_EXPAT
#include <expat.h>
#endif
#ifdef ORV_HAVE_LIBXML2
#include <libxml/parser.h>
#endif
#ifdef ORV_HAVE_PUGIXML
#include <pugixml.hpp>
#endif

namespace {

using TNamespacePtr = boost::shared_ptr<NVRNORV20::ICIMNamespace>;

/// How a document is read.
enum class EReader {
  kClasses,   // the class loader
  kInstances, // the instance loader
  kFullKept,  // the full grammar into a TCIMXMLResult
  kFullCount, // the full grammar, by a handler that only counts
};

/// Counts instances and keeps nothing.
class TInstanceCounter : public NVRNORV20::ICIMXMLHandler {
public:
  void Object(const NVRNORV20::TCIMXMLObject &object) override {
    count += object.kind == NVRNORV20::TCIMXMLObject::EKind::kInstance;
  }
  std::size_t count = 0;
};

struct TDocument {
  std::string name;
  /// The file the loader reads; generated documents are written to /tmp.
  std::string path;
  /// Loaded into each namespace first, untimed (declarations, classes).
  std::string prerequisite;
  EReader reader = EReader::kClasses;
  bool generated = false;
  /// The XML text with its NUL, as the tokenizer wants it.
  std::vector<char> bytes;
  /// What one load gives, counted once up front.
  std::size_t objects = 0;
  double peakGrowth = -1;

  std::size_t Size() const { return bytes.size() - 1; }
};

orvbench::TQuietLogger logger;

TNamespacePtr PreparedNamespace(const TDocument &document) {
  TNamespacePtr ns = NVRNORV20::CreateCIMNamespace("root/cimv2");
  if (!document.prerequisite.empty())
    NVRNORV20::TNamespacePopulator::PopulateFromXMLFile(ns, document.prerequisite);
  return ns;
}

std::size_t LoadInto(const TNamespacePtr &ns, const TDocument &document) {
  using namespace NVRNORV20;
  const TCIMXMLReadOptions full{ECIMXMLGrammar::kFull, ECIMXMLRegistration::kReturnOnly};
  switch (document.reader) {
  case EReader::kClasses:
    break;
  case EReader::kInstances:
    return TNamespacePopulator::PopulateFromRegXMLFile(ns, document.path).size();
  case EReader::kFullKept: {
    TCIMXMLResult result;
    TNamespacePopulator::Populate(ns, document.path, full, result);
    return result.Count(TCIMXMLObject::EKind::kInstance);
  }
  case EReader::kFullCount: {
    TInstanceCounter counter;
    TNamespacePopulator::Populate(ns, document.path, full, counter);
    return counter.count;
  }
  }
  return TNamespacePopulator::PopulateFromXMLFile(ns, document.path).size();
}

void SetBytes(benchmark::State &state, const TDocument &document) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(document.Size()));
}

void BM_Memchr(benchmark::State &state, TDocument *document) {
  for (auto _ : state) {
    std::size_t tags = 0;
    const char *p = document->bytes.data();
    const char *end = p + document->Size();
    while ((p = static_cast<const char *>(
                std::memchr(p, '<', static_cast<std::size_t>(end - p)))) != nullptr) {
      ++tags;
      ++p;
    }
    benchmark::DoNotOptimize(tags);
  }
  SetBytes(state, *document);
}

#ifdef ORV_HAVE_EXPAT
void XMLCALL ExpatStart(void *, const XML_Char *, const XML_Char **) {}
void XMLCALL ExpatEnd(void *, const XML_Char *) {}
void XMLCALL ExpatText(void *, const XML_Char *, int) {}

void BM_Expat(benchmark::State &state, TDocument *document) {
  for (auto _ : state) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(parser, ExpatStart, ExpatEnd);
    XML_SetCharacterDataHandler(parser, ExpatText);
    const auto status =
        XML_Parse(parser, document->bytes.data(), static_cast<int>(document->Size()), 1);
    XML_ParserFree(parser);
    if (status != XML_STATUS_OK) {
      state.SkipWithError("expat failed");
      break;
    }
  }
  SetBytes(state, *document);
}
#endif

#ifdef ORV_HAVE_LIBXML2
void LibXml2Start(void *, const xmlChar *, const xmlChar *, const xmlChar *, int, const xmlChar **,
                  int, int, const xmlChar **) {}
void LibXml2End(void *, const xmlChar *, const xmlChar *, const xmlChar *) {}
void LibXml2Text(void *, const xmlChar *, int) {}

void BM_LibXml2Sax(benchmark::State &state, TDocument *document) {
  xmlSAXHandler handler;
  std::memset(&handler, 0, sizeof handler);
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = LibXml2Start;
  handler.endElementNs = LibXml2End;
  handler.characters = LibXml2Text;
  for (auto _ : state) {
    const int status = xmlSAXUserParseMemory(&handler, nullptr, document->bytes.data(),
                                             static_cast<int>(document->Size()));
    if (status != 0) {
      state.SkipWithError("libxml2 failed");
      break;
    }
  }
  SetBytes(state, *document);
}
#endif

#ifdef ORV_HAVE_PUGIXML
// pugixml builds a DOM in place and so spoils its buffer: it gets a fresh
// copy each time, and copying and freeing the DOM are not timed.
void BM_Pugixml(benchmark::State &state, TDocument *document) {
  std::vector<char> copy(document->bytes.size());
  for (auto _ : state) {
    state.PauseTiming();
    std::memcpy(copy.data(), document->bytes.data(), copy.size());
    pugi::xml_document dom;
    state.ResumeTiming();
    const auto result = dom.load_buffer_inplace(copy.data(), document->Size(), pugi::parse_minimal);
    if (!result) {
      state.SkipWithError(result.description());
      break;
    }
    benchmark::DoNotOptimize(dom.first_child());
    state.PauseTiming();
    dom.reset();
    state.ResumeTiming();
  }
  SetBytes(state, *document);
}
#endif

// The tokenizer leaves the buffer as it found it but for attribute names
// folded to lower case, so one buffer serves every iteration. TTokenizer
// takes the attribute map, or the spans that the CIM-XML parser takes.
template <class TTokenizer> void BM_Tokenizer(benchmark::State &state, TDocument *document) {
  for (auto _ : state) {
    TTokenizer tokenizer;
    tokenizer.Parse(document->bytes.data());
    if (!tokenizer.firstError.empty()) {
      state.SkipWithError(tokenizer.firstError.c_str());
      break;
    }
  }
  SetBytes(state, *document);
}

// Each iteration gets a fresh prepared namespace; preparing it and
// destroying it with everything loaded are not timed.
void BM_Load(benchmark::State &state, TDocument *document) {
  for (auto _ : state) {
    state.PauseTiming();
    TNamespacePtr ns = PreparedNamespace(*document);
    state.ResumeTiming();
    const std::size_t objects = LoadInto(ns, *document);
    state.PauseTiming();
    if (objects != document->objects) {
      state.SkipWithError("the document did not load whole");
      break;
    }
    ns.reset();
    state.ResumeTiming();
  }
  SetBytes(state, *document);
  state.counters[document->reader == EReader::kClasses ? "classes/s" : "instances/s"] =
      benchmark::Counter(static_cast<double>(document->objects) *
                             static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate);
  if (document->peakGrowth >= 0)
    state.counters["peak/doc"] = document->peakGrowth / static_cast<double>(document->Size());
}

std::vector<std::unique_ptr<TDocument>> MakeDocuments() {
  std::vector<std::unique_ptr<TDocument>> documents;
  const std::string corpus = ORV_CORPUS_DIR;

  // Generated classes: 1, 10 and 100 MB without inheritance, then 10 MB in
  // chains 10 and 100 deep, for rates that must not fall with size or
  // depth; and chains up to 50 deep over 21.5 MB, as in the side-by-side
  // harness of the peers.
  const struct {
    std::size_t megabytes;
    std::size_t depth;
    double exactMegabytes;
  } classDocuments[] = {{1, 1, 0},   {10, 1, 0},   {100, 1, 0},
                        {10, 10, 0}, {10, 100, 0}, {21, 50, 21.5}};
  for (const auto &entry : classDocuments) {
    auto generated = std::make_unique<TDocument>();
    generated->name = "classes_" + std::to_string(entry.megabytes) + "MB";
    if (entry.depth > 1)
      generated->name += "_deep" + std::to_string(entry.depth);
    generated->path = "/tmp/orv-peer-benchmark-" + generated->name + ".xml";
    generated->generated = true;
    const double megabytes =
        entry.exactMegabytes > 0 ? entry.exactMegabytes : static_cast<double>(entry.megabytes);
    const std::string text = orvbench::GenerateClassDocument(
        orvbench::ClassCountForSize(static_cast<std::size_t>(megabytes * 1e6)), entry.depth);
    std::ofstream(generated->path, std::ios::binary) << text;
    generated->bytes = orvbench::Terminated(text);
    documents.push_back(std::move(generated));
  }

  const struct {
    const char *name;
    std::string path;
    std::string prerequisite;
  } corpusDocuments[] = {
      {"cim_schema_2.49.0", corpus + "/dmtf-cim-2.49.0-compiled/cim_schema_2.49.0.xml", ""},
      {"cim_schema_2.42.0_all.gz",
       corpus + "/dmtf-cim-2.42.0-xml/cim_schema_2.42.0_all_classes.xml.gz",
       corpus + "/dmtf-cim-2.49.0-compiled/cim_qualifiers_2.49.0.xml"},
  };
  for (const auto &entry : corpusDocuments) {
    std::string text;
    if (!orvbench::ReadText(entry.path, text)) {
      std::fprintf(stderr, "corpus missing: %s skipped\n", entry.path.c_str());
      continue;
    }
    auto document = std::make_unique<TDocument>();
    document->name = entry.name;
    document->path = entry.path;
    document->prerequisite = entry.prerequisite;
    document->bytes = orvbench::Terminated(text);
    documents.push_back(std::move(document));
  }

  // The instances spread over the classes of a small generated schema.
  constexpr std::size_t kInstanceClasses = 16;
  constexpr std::size_t kInstances = 50000;
  auto instances = std::make_unique<TDocument>();
  instances->name = "generated_instances";
  instances->path = "/tmp/orv-peer-benchmark-instances.xml";
  instances->prerequisite = "/tmp/orv-peer-benchmark-instance-classes.xml";
  instances->reader = EReader::kInstances;
  instances->generated = true;
  std::ofstream(instances->prerequisite, std::ios::binary)
      << orvbench::GenerateClassDocument(kInstanceClasses);
  const std::string instanceText = orvbench::GenerateInstanceDocument(kInstances, kInstanceClasses);
  std::ofstream(instances->path, std::ios::binary) << instanceText;
  instances->bytes = orvbench::Terminated(instanceText);
  documents.push_back(std::move(instances));

  // A server's answer, read without its classes: kept whole, and counted.
  constexpr std::size_t kEnumerated = 100000;
  const std::string responseText =
      orvbench::GenerateEnumerationResponse(kEnumerated, kInstanceClasses);
  const std::string responsePath = "/tmp/orv-peer-benchmark-enumeration.xml";
  std::ofstream(responsePath, std::ios::binary) << responseText;
  for (EReader reader : {EReader::kFullKept, EReader::kFullCount}) {
    auto response = std::make_unique<TDocument>();
    response->name =
        reader == EReader::kFullKept ? "enumeration_full_kept" : "enumeration_full_counted";
    response->path = responsePath;
    response->reader = reader;
    response->generated = reader == EReader::kFullCount; // removed once
    response->bytes = orvbench::Terminated(responseText);
    documents.push_back(std::move(response));
  }

  for (const auto &document : documents) {
    document->objects = LoadInto(PreparedNamespace(*document), *document);
    if (!logger.firstError.empty())
      std::fprintf(stderr, "%s: %s\n", document->name.c_str(), logger.firstError.c_str());
    logger.firstError.clear();
    TNamespacePtr ns = PreparedNamespace(*document);
    document->peakGrowth = orvbench::PeakGrowth([&] { LoadInto(ns, *document); });
  }
  return documents;
}

/// Prints the usual console output, keeps every rate, and ends with the
/// side-by-side table.
class TPeerReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run> &runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run &run : runs) {
      if (run.error_occurred || run.run_type != Run::RT_Iteration)
        continue;
      const std::string name = run.benchmark_name();
      const std::size_t slash = name.find('/');
      if (slash == std::string::npos)
        continue;
      TRow &row = rows[name.substr(slash + 1)];
      const std::string peer = name.substr(0, slash);
      const auto bytes = run.counters.find("bytes_per_second");
      if (bytes != run.counters.end())
        row.rates[peer] = bytes->second.value / 1e6;
      for (const char *objects : {"classes/s", "instances/s"}) {
        const auto found = run.counters.find(objects);
        if (found != run.counters.end())
          row.objectsPerSecond = found->second.value;
      }
      const auto peak = run.counters.find("peak/doc");
      if (peak != run.counters.end())
        row.peak = peak->second.value;
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf("\nMB/s of XML text (processor time); ratios of ours to the peers\n");
    std::printf("%-26s %8s %8s %8s %8s %9s %8s %8s  %9s %9s %9s %9s %10s %9s\n", "document",
                "memchr", "expat", "libxml2", "pugixml", "tokenizer", "spans", "load", "tok/pugi",
                "span/pugi", "tok/expat", "load/expt", "objects/s", "peak/doc");
    for (const auto &entry : rows) {
      const TRow &row = entry.second;
      std::printf(
          "%-26s %8.0f %8.0f %8.0f %8.0f %9.0f %8.0f %8.1f  %9.2f %9.2f %9.2f %9.2f %10.0f %9.2f\n",
          entry.first.c_str(), row.Rate("Memchr"), row.Rate("Expat"), row.Rate("LibXml2Sax"),
          row.Rate("Pugixml"), row.Rate("Tokenizer"), row.Rate("TokenizerSpans"), row.Rate("Load"),
          row.Ratio("Tokenizer", "Pugixml"), row.Ratio("TokenizerSpans", "Pugixml"),
          row.Ratio("Tokenizer", "Expat"), row.Ratio("Load", "Expat"), row.objectsPerSecond,
          row.peak);
    }
    std::printf("targets: tok/pugi >= 1; load/expt >= 1.6 for class documents; peak/doc < 3\n");
  }

private:
  struct TRow {
    std::map<std::string, double> rates;
    double objectsPerSecond = 0;
    double peak = -1;

    double Rate(const std::string &peer) const {
      const auto found = rates.find(peer);
      return found == rates.end() ? 0 : found->second;
    }
    double Ratio(const std::string &ours, const std::string &peer) const {
      const double theirs = Rate(peer);
      return theirs > 0 ? Rate(ours) / theirs : 0;
    }
  };
  std::map<std::string, TRow> rows;
};

} // namespace

int main(int argc, char **argv) {
  NVRNORV20::TRootObject::SetCoreLogger(&logger);
  const std::vector<std::unique_ptr<TDocument>> documents = MakeDocuments();
  for (const auto &document : documents) {
    const std::string suffix = "/" + document->name;
    const auto add = [&](const char *peer, void (*run)(benchmark::State &, TDocument *)) {
      benchmark::RegisterBenchmark((peer + suffix).c_str(), run, document.get())
          ->Unit(benchmark::kMillisecond);
    };
    add("Memchr", BM_Memchr);
#ifdef ORV_HAVE_EXPAT
    add("Expat", BM_Expat);
#endif
#ifdef ORV_HAVE_LIBXML2
    add("LibXml2Sax", BM_LibXml2Sax);
#endif
#ifdef ORV_HAVE_PUGIXML
    add("Pugixml", BM_Pugixml);
#endif
    add("Tokenizer", BM_Tokenizer<orvbench::TNullTokenizer>);
    add("TokenizerSpans", BM_Tokenizer<orvbench::TNullSpanTokenizer>);
    add("Load", BM_Load);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  TPeerReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  NVRNORV20::TRootObject::SetCoreLogger(nullptr);
  for (const auto &document : documents)
    if (document->generated) {
      std::remove(document->path.c_str());
      if (!document->prerequisite.empty())
        std::remove(document->prerequisite.c_str());
    }
  return 0;
}
