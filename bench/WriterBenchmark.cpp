// The JSON writer on a server's enumeration (GenerateEnumerationResponse),
// read in the full grammar without its classes: once with a handler that
// only counts, which is the parse alone, and once with the JSON writer as
// the handler, writing onto a stream that discards. Bytes are the input's.
#include "cimxml/CIMXMLDocument.h"
#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "support/CIMXMLGenerator.h"
#include "write/JsonWriter.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

namespace {

using namespace NVRNORV20;

class TObjectCounter : public ICIMXMLHandler {
public:
  void Object(const TCIMXMLObject &) override { ++objects; }
  std::size_t objects = 0;
};

/// Counts what it is given and keeps none of it.
class TDiscardingBuffer : public std::streambuf {
public:
  std::size_t bytes = 0;

protected:
  std::streamsize xsputn(const char *, std::streamsize count) override {
    bytes += static_cast<std::size_t>(count);
    return count;
  }
  int_type overflow(int_type c) override {
    ++bytes;
    return traits_type::not_eof(c);
  }
};

/// Runs run over a fresh parser and a copy of the enumeration of
/// state.range(0) instances; only run is timed.
template <class TRun> void ReadEnumeration(benchmark::State &state, TRun run) {
  const std::string text =
      orvbench::GenerateEnumerationResponse(static_cast<std::size_t>(state.range(0)), 16);
  // The parser holds its namespace weakly.
  const boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/cimv2");
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<char> buffer(text.begin(), text.end());
    buffer.push_back('\0');
    TCIMXMLParser parser(ns);
    parser.SetReadOptions({ECIMXMLGrammar::kFull, ECIMXMLRegistration::kReturnOnly});
    state.ResumeTiming();
    run(parser, buffer);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void BM_EnumerationCounted(benchmark::State &state) {
  ReadEnumeration(state, [](TCIMXMLParser &parser, std::vector<char> &buffer) {
    TObjectCounter counter;
    parser.SetHandler(&counter);
    parser.Parse(buffer.data());
    benchmark::DoNotOptimize(counter.objects);
  });
}
BENCHMARK(BM_EnumerationCounted)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_EnumerationAsJson(benchmark::State &state) {
  ReadEnumeration(state, [](TCIMXMLParser &parser, std::vector<char> &buffer) {
    TDiscardingBuffer discarded;
    std::ostream out(&discarded);
    TJsonWriter writer(out);
    parser.SetHandler(&writer);
    writer.BeginFile("enumeration.xml");
    parser.Parse(buffer.data());
    writer.EndFile();
    writer.Finish();
    benchmark::DoNotOptimize(discarded.bytes);
  });
}
BENCHMARK(BM_EnumerationAsJson)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
