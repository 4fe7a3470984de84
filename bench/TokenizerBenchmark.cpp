// Throughput of the XML tokenizer alone, with a handler that does nothing,
// next to expat and libxml2's SAX parser (and pugixml where present) on the
// same bytes, and a memchr pass over the buffer as the memory-bandwidth
// ceiling. Documents: a generated class document of about 30 MB, and the
// large schema documents of the shared corpus when they are there.
#include "support/BenchSupport.h"
#include "support/CIMXMLGenerator.h"
#include "xml/XmlParser.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
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

// A document with its NUL, writable, as the tokenizer wants it.
struct TDocument {
  std::string name;
  std::vector<char> bytes; // ends in NUL

  std::size_t Size() const { return bytes.size() - 1; }
};

std::vector<TDocument> LoadDocuments() {
  std::vector<TDocument> documents;
  const std::size_t classCount = orvbench::ClassCountForSize(30u << 20);
  documents.push_back({"generated", orvbench::Terminated(orvbench::GenerateClassDocument(classCount))});

  const std::string corpus = ORV_CORPUS_DIR;
  std::string text;
  if (orvbench::ReadText(corpus + "/dmtf-cim-2.49.0-compiled/cim_schema_2.49.0.xml", text))
    documents.push_back({"cim_schema_2.49.0", orvbench::Terminated(text)});
  else
    std::fprintf(stderr, "corpus missing: cim_schema_2.49.0.xml skipped\n");
  if (orvbench::ReadText(corpus + "/dmtf-cim-2.42.0-xml/cim_schema_2.42.0_all_classes.xml.gz", text))
    documents.push_back({"cim_schema_2.42.0_all", orvbench::Terminated(text)});
  else
    std::fprintf(stderr, "corpus missing: cim_schema_2.42.0_all_classes.xml.gz skipped\n");
  return documents;
}

using orvbench::TNullTokenizer;

void Finish(benchmark::State &state, const TDocument &document) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(document.Size()));
}

// The tokenizer leaves the buffer as it found it but for attribute names
// folded to lower case, so one buffer serves every iteration.
void BM_Tokenizer(benchmark::State &state, TDocument *document) {
  for (auto _ : state) {
    TNullTokenizer tokenizer;
    tokenizer.Parse(document->bytes.data());
    if (!tokenizer.firstError.empty()) {
      state.SkipWithError(tokenizer.firstError.c_str());
      break;
    }
  }
  Finish(state, *document);
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
  Finish(state, *document);
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
  Finish(state, *document);
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
  Finish(state, *document);
}
#endif

#ifdef ORV_HAVE_PUGIXML
// pugixml builds a DOM in place and so spoils its buffer: it gets a fresh
// copy, made outside the timing, each time.
void BM_PugixmlInPlace(benchmark::State &state, TDocument *document) {
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
    state.PauseTiming(); // the DOM is freed outside the timing too
    dom.reset();
    state.ResumeTiming();
  }
  Finish(state, *document);
}
#endif

} // namespace

int main(int argc, char **argv) {
  static std::vector<TDocument> documents = LoadDocuments();
  for (TDocument &document : documents) {
    const std::string suffix = "/" + document.name;
    benchmark::RegisterBenchmark(("Tokenizer" + suffix).c_str(), BM_Tokenizer, &document)
        ->Unit(benchmark::kMillisecond);
#ifdef ORV_HAVE_EXPAT
    benchmark::RegisterBenchmark(("Expat" + suffix).c_str(), BM_Expat, &document)
        ->Unit(benchmark::kMillisecond);
#endif
#ifdef ORV_HAVE_LIBXML2
    benchmark::RegisterBenchmark(("LibXml2Sax" + suffix).c_str(), BM_LibXml2Sax, &document)
        ->Unit(benchmark::kMillisecond);
#endif
#ifdef ORV_HAVE_PUGIXML
    benchmark::RegisterBenchmark(("PugixmlInPlace" + suffix).c_str(), BM_PugixmlInPlace, &document)
        ->Unit(benchmark::kMillisecond);
#endif
    benchmark::RegisterBenchmark(("Memchr" + suffix).c_str(), BM_Memchr, &document)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
