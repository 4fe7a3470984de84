// A tokenizer handler for tests: records every handler call as a short
// event ("S:name{attr=value}", "T:text", "E:name", "P:target/data",
// "N:name/public/system", "F:message@line") and, like the CIM-XML parser,
// throws from FatalError unless told to return.
#ifndef ORV_TESTS_XML_RECORDINGHANDLER_H
#define ORV_TESTS_XML_RECORDINGHANDLER_H

#include "core_api/ORVStatusCode.h"
#include "xml/XmlParser.h"

#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace orvtest {

/// Control and high bytes are shown as \xNN, a line feed as \n.
inline std::string ShowBytes(const char *text, std::size_t length) {
  std::string shown;
  for (std::size_t i = 0; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte == '\n') {
      shown += "\\n";
    } else if (byte < 0x20 || byte >= 0x7F) {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02X", byte);
      shown += hex;
    } else {
      shown += static_cast<char>(byte);
    }
  }
  return shown;
}

class TRecordingHandler : public NVRNORV20::TXmlParser {
public:
  enum class EOnError { kThrow, kReturn };
  explicit TRecordingHandler(EOnError onErrorIn = EOnError::kThrow) : onError(onErrorIn) {}

  /// Entries the handler adds to the attribute map of every start tag of
  /// that name (how the CIM-XML parser marks a rejected element).
  std::map<std::string, TAttributes> additions;
  /// Entries it erases from them.
  std::map<std::string, std::vector<std::string>> removals;
  /// Called after every recorded event.
  std::function<void()> onEvent;

  std::vector<std::string> events;

  /// Copies the document (with its NUL), parses it, and returns the events
  /// joined by blanks. A thrown TORVException ends the parse as it does in
  /// the real parser.
  std::string Run(const std::string &document) {
    buffer.assign(document.begin(), document.end());
    buffer.push_back('\0');
    events.clear();
    try {
      Parse(buffer.data());
    } catch (const NVRNORV20::TORVException &) {
    }
    return Joined();
  }

  std::string Joined() const {
    std::string joined;
    for (const auto &event : events)
      joined += (joined.empty() ? "" : " ") + event;
    return joined;
  }

  /// The document as the parse left it (without the final NUL).
  std::string Buffer() const { return std::string(buffer.data(), buffer.size() - 1); }

  void StartElement(const char *name, TAttributes &attributes) override {
    std::string event = "S:" + std::string(name);
    if (!attributes.empty()) {
      event += "{";
      for (const auto &attribute : attributes)
        event += (event.back() == '{' ? "" : ",") + attribute.first + "=" + attribute.second;
      event += "}";
    }
    for (const auto &addition : additions[name])
      attributes.insert(addition);
    for (const auto &key : removals[name])
      attributes.erase(key);
    Record(event);
  }
  void EndElement(const char *name) override { Record("E:" + std::string(name)); }
  void processingInstruction(const char *target, const char *data) override {
    Record("P:" + std::string(target) + "/" + data);
  }
  void characters(const char *text, unsigned length) override {
    // The piece must be terminated where its length says.
    if (text[length] != '\0')
      Record("T:unterminated");
    Record("T:" + ShowBytes(text, length));
  }
  void notationDecl(const char *name, const char *publicId, const char *systemId) override {
    Record("N:" + std::string(name) + "/" + publicId + "/" + systemId);
  }
  void FatalError(const char *message) override {
    Record("F:" + std::string(message) + "@" + std::to_string(GetCurLine()));
    if (onError == EOnError::kThrow)
      throw NVRNORV20::TORVException(
          NVRNORV20::TORVStatusCode(NVRNORV20::kORVStatusInvalidDocument));
  }

  // The character primitives, for tests of their own.
  using TXmlParser::GetChar;
  using TXmlParser::PeekChar;
  using TXmlParser::UngetChar;

private:
  void Record(std::string event) {
    events.push_back(std::move(event));
    if (onEvent)
      onEvent();
  }

  EOnError onError;
  std::vector<char> buffer;
};

} // namespace orvtest

#endif
