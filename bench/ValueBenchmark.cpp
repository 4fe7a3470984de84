// Value construction from CIM-XML text: it runs once for every VALUE
// element of a document, so large schemas spend much of their load here.
#include "core_api/CIMValue.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

using namespace NVRNORV20;

namespace {

// Texts made before timing; the loop cycles through them so that no single
// text stays in the branch predictor.
std::vector<std::string> TextsFor(ECIMType type) {
  switch (type) {
  case kCIMTypeUint32:
    return {"0", "42", "65535", "4294967295", "1000000", " 17 ", "0xFF", "8"};
  case kCIMTypeSint64:
    return {"-1", "9223372036854775807", "-9223372036854775808", "123456789", "0", "-42",
            "+7", "1099511627776"};
  case kCIMTypeBoolean:
    return {"true", "false", "TRUE", "False", " true ", "false", "true", "FALSE"};
  case kCIMTypeString:
    return {"",
            "Name",
            "The Caption property is a short textual description (one-line "
            "string) of the object.",
            "CIM_ManagedElement",
            "A longer description that does not fit the small string buffer "
            "of the standard library and so needs its own allocation.",
            "x",
            "root/cimv2",
            "Deprecated"};
  case kCIMTypeReal64:
    return {"0", "1.5", "-2.5E-3", "3.141592653589793", "1e308", "6.02e23", "NaN", "100"};
  case kCIMTypeDateTime:
    return {"20230405060708.123456+060", "19700101000000.000000+000", "00000003040506.000000:000",
            "20161231235960.000000-330", "2023****060708.000000+000", "20230405060708.12****+000",
            "99999999235959.999999:000", "20000229120000.000000+000"};
  default:
    return {};
  }
}

void BM_ValueFromText(benchmark::State &state, ECIMType type) {
  const std::vector<std::string> texts = TextsFor(type);
  const TCIMType cimType(type);
  const boost::shared_ptr<ICIMNamespace> ns;
  std::size_t next = 0;
  for (auto _ : state) {
    TCIMValue value(cimType, texts[next], ns);
    benchmark::DoNotOptimize(value);
    next = (next + 1) % texts.size();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

BENCHMARK_CAPTURE(BM_ValueFromText, uint32, kCIMTypeUint32);
BENCHMARK_CAPTURE(BM_ValueFromText, sint64, kCIMTypeSint64);
BENCHMARK_CAPTURE(BM_ValueFromText, boolean, kCIMTypeBoolean);
BENCHMARK_CAPTURE(BM_ValueFromText, string, kCIMTypeString);
BENCHMARK_CAPTURE(BM_ValueFromText, real64, kCIMTypeReal64);
BENCHMARK_CAPTURE(BM_ValueFromText, datetime, kCIMTypeDateTime);

// A type name from a TYPE attribute, read as often as values are.
void BM_TypeFromName(benchmark::State &state) {
  const std::vector<std::string> names = {"string", "uint32", "boolean", "datetime",
                                          "real64", "sint64", "uint16",  "reference"};
  std::size_t next = 0;
  for (auto _ : state) {
    TCIMType type(names[next]);
    benchmark::DoNotOptimize(type);
    next = (next + 1) % names.size();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_TypeFromName);

} // namespace

BENCHMARK_MAIN();
