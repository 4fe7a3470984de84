#include "core_api/Logger.h"

#include <atomic>
#include <cstdio>

namespace NVRNORV20 {

namespace {

// The logger installed by SetCoreLogger; null while the default one serves.
std::atomic<ILogger *> installedLogger{nullptr};

ILogger &DefaultLogger() {
  // Never destroyed: messages logged from other static destructors during
  // shutdown still find a live logger.
  static auto *const kDefault = new TStderrLogger;
  return *kDefault;
}

/// U+0080 to U+009F as UTF-8: the C1 controls, which some terminals obey.
bool IsC1Control(unsigned char lead, unsigned char next) {
  return lead == 0xC2 && next >= 0x80 && next <= 0x9F;
}

void AppendHexEscape(std::string &out, unsigned char byte) {
  static const char kHex[] = "0123456789ABCDEF";
  out += "\\x";
  out += kHex[byte >> 4];
  out += kHex[byte & 0xF];
}

std::string EscapeControls(const std::string &text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 || byte == 0x7F) {
      AppendHexEscape(out, byte);
    } else if (i + 1 < text.size() && IsC1Control(byte, static_cast<unsigned char>(text[i + 1]))) {
      AppendHexEscape(out, byte);
      AppendHexEscape(out, static_cast<unsigned char>(text[++i]));
    } else {
      out += text[i];
    }
  }
  return out;
}

} // namespace

ILogger::~ILogger() = default;

void TStderrLogger::Log(int level, const std::string &text) {
  // The whole line goes out in one write so that lines of several processes
  // sharing the stream do not interleave.
  std::string line;
  line.reserve(text.size() + 16);
  line += '[';
  line += std::to_string(level);
  line += "] ";
  line += text;
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
}

ILogger *TRootObject::GetCoreLogger() {
  ILogger *logger = installedLogger.load(std::memory_order_acquire);
  return logger != nullptr ? logger : &DefaultLogger();
}

void TRootObject::SetCoreLogger(ILogger *logger) {
  installedLogger.store(logger, std::memory_order_release);
}

void TRootObject::Log(int level, const std::string &text) {
  GetCoreLogger()->Log(level, EscapeControls(text));
}

} // namespace NVRNORV20
