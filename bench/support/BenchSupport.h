// What the benchmark programs share: reading documents, a tokenizer that
// does nothing, a logger that keeps the first error, and the peak memory
// that one load adds.
#ifndef ORV_BENCH_SUPPORT_BENCHSUPPORT_H
#define ORV_BENCH_SUPPORT_BENCHSUPPORT_H

#include "core_api/Logger.h"
#include "xml/XmlParser.h"

#include <functional>
#include <string>
#include <vector>

namespace orvbench {

/// Reads a whole file; a name containing ".gz" is inflated by gzip (the
/// benchmarks do not link zlib themselves). False when nothing was read.
bool ReadText(const std::string &path, std::string &text);

/// The text with its NUL, writable, as the tokenizer wants it.
std::vector<char> Terminated(const std::string &text);

/// The tokenizer with handlers that do nothing but keep the first error.
class TNullTokenizer : public NVRNORV20::TXmlParser {
public:
  void StartElement(const char *, TAttributes &) override {}
  void EndElement(const char *) override {}
  void processingInstruction(const char *, const char *) override {}
  void characters(const char *, unsigned) override {}
  void notationDecl(const char *, const char *, const char *) override {}
  void FatalError(const char *message) override {
    if (firstError.empty())
      firstError = message;
  }
  std::string firstError;
};

/// The same, taking each start tag's attributes as spans into the buffer,
/// as the CIM-XML parser does, instead of the attribute map.
class TNullSpanTokenizer : public TNullTokenizer {
protected:
  bool ReadsAttributeLists() const override { return true; }
  EStartVerdict StartElementList(const char *, const NVRNORV20::TXmlAttributeList &) override {
    return EStartVerdict::kAccepted;
  }
};

/// Keeps the first level-3 message, so that a document that does not load
/// whole is reported once rather than flooding the output.
class TQuietLogger : public NVRNORV20::ILogger {
public:
  void Log(int level, const std::string &text) override {
    if (level == 3 && firstError.empty())
      firstError = text;
  }
  std::string firstError;
};

/// The growth of the peak resident size, in bytes, while load runs; -1
/// where the system cannot reset its peak mark.
double PeakGrowth(const std::function<void()> &load);

} // namespace orvbench

#endif
