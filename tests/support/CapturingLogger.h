// A logger for tests: installs itself as the core logger for its lifetime
// and keeps every message.
#ifndef ORV_TESTS_SUPPORT_CAPTURINGLOGGER_H
#define ORV_TESTS_SUPPORT_CAPTURINGLOGGER_H

#include "core_api/Logger.h"

#include <string>
#include <utility>
#include <vector>

namespace orvtest {

class TCapturingLogger : public NVRNORV20::ILogger {
public:
  TCapturingLogger() { NVRNORV20::TRootObject::SetCoreLogger(this); }
  ~TCapturingLogger() override { NVRNORV20::TRootObject::SetCoreLogger(nullptr); }
  TCapturingLogger(const TCapturingLogger &) = delete;
  TCapturingLogger &operator=(const TCapturingLogger &) = delete;

  void Log(int level, const std::string &text) override { entries.emplace_back(level, text); }

  /// The texts alone, in order.
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const auto &entry : entries)
      texts.push_back(entry.second);
    return texts;
  }

  std::vector<std::pair<int, std::string>> entries;
};

} // namespace orvtest

#endif
