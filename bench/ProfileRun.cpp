// One pass of one reader over one document, for callgrind: everything
// outside MeasuredPass (reading the file into memory, preparing the
// namespace, releasing what was built) is left out of the count by
// scripts/profile.sh, so that its instructions per byte are those of the
// reader alone.
//
//   ProfileRun load DOC [PREREQ]       the class loader, from the file
//   ProfileRun instances DOC PREREQ    the instance loader, after PREREQ
//   ProfileRun tokenizer DOC           our tokenizer, handlers doing nothing
//   ProfileRun spans DOC               the same, attributes taken as spans
//   ProfileRun expat DOC               expat with empty handlers
//   ProfileRun pugixml DOC             pugixml's in-place parse
//
// Prints the document's size in bytes, which the script divides by.
#include "core_api/CIMInterfaces.h"
#include "core_api/Logger.h"
#include "populate/NamespacePopulator.h"
#include "support/BenchSupport.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#ifdef ORV_HAVE_EXPAT
#include <expat.h>
#endif
#ifdef ORV_HAVE_PUGIXML
#include <pugixml.hpp>
#endif

namespace {

using TNamespacePtr = boost::shared_ptr<NVRNORV20::ICIMNamespace>;

struct TRun {
  std::string method;
  std::string document;
  std::string prerequisite;
  /// The document's bytes with a NUL after them, for the in-memory readers.
  std::vector<char> bytes;
  TNamespacePtr ns;
};

#ifdef ORV_HAVE_EXPAT
void XMLCALL ExpatStart(void *, const XML_Char *, const XML_Char **) {}
void XMLCALL ExpatEnd(void *, const XML_Char *) {}
void XMLCALL ExpatText(void *, const XML_Char *, int) {}
#endif

/// What callgrind counts. False when the reader failed.
__attribute__((noinline)) bool MeasuredPass(TRun &run) {
  using NVRNORV20::TNamespacePopulator;
  const std::size_t size = run.bytes.size() - 1;
  if (run.method == "load")
    return !TNamespacePopulator::PopulateFromXMLFile(run.ns, run.document).empty();
  if (run.method == "instances")
    return !TNamespacePopulator::PopulateFromRegXMLFile(run.ns, run.document).empty();
  if (run.method == "tokenizer") {
    orvbench::TNullTokenizer tokenizer;
    tokenizer.Parse(run.bytes.data());
    return tokenizer.firstError.empty();
  }
  if (run.method == "spans") {
    orvbench::TNullSpanTokenizer tokenizer;
    tokenizer.Parse(run.bytes.data());
    return tokenizer.firstError.empty();
  }
#ifdef ORV_HAVE_EXPAT
  if (run.method == "expat") {
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(parser, ExpatStart, ExpatEnd);
    XML_SetCharacterDataHandler(parser, ExpatText);
    const bool parsed =
        XML_Parse(parser, run.bytes.data(), static_cast<int>(size), 1) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return parsed;
  }
#endif
#ifdef ORV_HAVE_PUGIXML
  if (run.method == "pugixml") {
    pugi::xml_document dom;
    return static_cast<bool>(dom.load_buffer_inplace(run.bytes.data(), size, pugi::parse_minimal));
  }
#endif
  std::fprintf(stderr, "ProfileRun: no method %s in this build\n", run.method.c_str());
  return false;
}

} // namespace

int main(int argc, char **argv) {
  if (argc < 3) {
    std::fprintf(stderr,
                 "usage: ProfileRun load|instances|tokenizer|spans|expat|pugixml DOC [PREREQ]\n");
    return 2;
  }
  TRun run;
  run.method = argv[1];
  run.document = argv[2];
  if (argc > 3)
    run.prerequisite = argv[3];
  std::ifstream in(run.document, std::ios::binary);
  run.bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  if (!in.is_open() || in.bad()) {
    std::fprintf(stderr, "ProfileRun: cannot read %s\n", run.document.c_str());
    return 1;
  }
  run.bytes.push_back('\0');
  orvbench::TQuietLogger logger;
  NVRNORV20::TRootObject::SetCoreLogger(&logger);
  run.ns = NVRNORV20::CreateCIMNamespace("root/cimv2");
  if (!run.prerequisite.empty())
    NVRNORV20::TNamespacePopulator::PopulateFromXMLFile(run.ns, run.prerequisite);
  if (!MeasuredPass(run)) {
    std::fprintf(stderr, "ProfileRun: %s failed on %s %s\n", run.method.c_str(),
                 run.document.c_str(), logger.firstError.c_str());
    return 1;
  }
  std::printf("%zu\n", run.bytes.size() - 1);
  return 0;
}
