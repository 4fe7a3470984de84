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

} // namespace NVRNORV20
