#include "support/BenchSupport.h"

#include <malloc.h>

#include <cstdio>
#include <fstream>

namespace orvbench {

namespace {

long StatusKilobytes(const char *field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  const std::string key = std::string(field) + ":";
  while (std::getline(status, line))
    if (line.compare(0, key.size(), key) == 0)
      return std::stol(line.substr(key.size()));
  return -1;
}

} // namespace

bool ReadText(const std::string &path, std::string &text) {
  if (!std::ifstream(path, std::ios::binary))
    return false;
  const bool gzip = path.find(".gz") != std::string::npos;
  FILE *stream = gzip ? popen(("gzip -dc '" + path + "' 2>/dev/null").c_str(), "r")
                      : std::fopen(path.c_str(), "rb");
  if (stream == nullptr)
    return false;
  text.clear();
  char chunk[1 << 16];
  for (std::size_t got; (got = std::fread(chunk, 1, sizeof chunk, stream)) > 0;)
    text.append(chunk, got);
  const bool closed = gzip ? pclose(stream) == 0 : std::fclose(stream) == 0;
  return closed && !text.empty();
}

std::vector<char> Terminated(const std::string &text) {
  std::vector<char> bytes(text.begin(), text.end());
  bytes.push_back('\0');
  return bytes;
}

double PeakGrowth(const std::function<void()> &load) {
  malloc_trim(0);
  {
    std::ofstream reset("/proc/self/clear_refs");
    reset << "5";
    if (!reset)
      return -1;
  }
  const long before = StatusKilobytes("VmRSS");
  load();
  const long peak = StatusKilobytes("VmHWM");
  return before < 0 || peak < 0 ? -1 : static_cast<double>(peak - before) * 1024.0;
}

} // namespace orvbench
