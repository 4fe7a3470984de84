// Fuzz target for the XML tokenizer alone. Each input is parsed three times,
// from an exactly sized copy ending in its NUL (so that AddressSanitizer sees
// any read past it): once by a handler that throws from FatalError, as the
// CIM-XML parser does, once by one that returns, which drives the tokenizer
// on along its error paths, and once so with XML 1.0's numeric references
// and attribute lists. Either way the parse must end, a list must be in
// order, and the buffer must come back as it was, but for attribute names
// folded to lower case.
#include "core_api/ORVStatusCode.h"
#include "xml/XmlParser.h"

#include "xml/XmlBytes.h"

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

using NVRNORV20::TXmlAttributeList;
using NVRNORV20::TXmlParser;

class TFuzzHandler : public TXmlParser {
public:
  TFuzzHandler(bool throwOnErrorIn, bool xmlCharacters)
      : throwOnError(throwOnErrorIn), lists(xmlCharacters) {
    SetXmlCharacters(xmlCharacters);
  }

  bool ReadsAttributeLists() const override { return lists; }
  EStartVerdict StartElementList(const char *name, const TXmlAttributeList &attributes) override {
    for (auto at = attributes.begin(); at != attributes.end(); ++at)
      if (at != attributes.begin() && !NVRNORV20::BytesBefore(at[-1].name, at->name))
        std::abort(); // out of order, or a name twice
    // Tags of an odd number of attributes take the map path from here.
    if (attributes.Size() % 2 != 0)
      return TXmlParser::StartElementList(name, attributes);
    sink += std::strlen(name) + attributes.Size();
    if (attributes.Find("format") != attributes.end())
      return EStartVerdict::kFormatRejected;
    if (attributes.Find("value") != attributes.end())
      return EStartVerdict::kValueRejected;
    return EStartVerdict::kAccepted;
  }

  void StartElement(const char *name, TAttributes &attributes) override {
    sink += std::strlen(name);
    for (const auto &attribute : attributes)
      sink += attribute.first.size() + attribute.second.size();
    // Reject elements as the CIM-XML parser's states may, through the two
    // marker entries.
    if (attributes.count("format") != 0)
      attributes[kMarkerInvalidFormat] = "kORVStatusInvalidFormat";
    else if (attributes.count("value") != 0)
      attributes[kMarkerInvalidValue] = "kORVStatusInvalidProperty";
  }
  void EndElement(const char *name) override { sink += std::strlen(name); }
  void processingInstruction(const char *, const char *) override {}
  void characters(const char *text, unsigned length) override {
    if (text[length] != '\0') // every piece is terminated where it ends
      std::abort();
    sink += length;
  }
  void notationDecl(const char *, const char *, const char *) override {}
  void FatalError(const char *) override {
    sink += GetCurLine();
    if (throwOnError)
      throw NVRNORV20::TORVException(
          NVRNORV20::TORVStatusCode(NVRNORV20::kORVStatusInvalidDocument));
  }

  std::size_t sink = 0;

private:
  bool throwOnError;
  bool lists;
};

void ParseOnce(const std::uint8_t *data, std::size_t size, bool throwOnError, bool xmlCharacters) {
  std::unique_ptr<char[]> buffer(new char[size + 1]);
  if (size != 0)
    std::memcpy(buffer.get(), data, size);
  buffer[size] = '\0';
  TFuzzHandler handler(throwOnError, xmlCharacters);
  try {
    handler.Parse(buffer.get());
  } catch (const NVRNORV20::TORVException &) {
  }
  for (std::size_t i = 0; i < size; ++i) {
    const auto before = static_cast<unsigned char>(data[i]);
    const auto after = static_cast<unsigned char>(buffer[i]);
    if (before != after && std::tolower(before) != after)
      std::abort(); // a hidden byte was not put back
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  ParseOnce(data, size, true, false);
  ParseOnce(data, size, false, false);
  ParseOnce(data, size, false, true);
  return 0;
}
