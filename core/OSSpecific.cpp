#include "core_api/OSSpecific.h"

#include "core_api/ORVStatusCode.h"

#include <sys/stat.h>

#include <atomic>

namespace NVRNORV20 {

namespace {

std::atomic<bool> orvParserSwitch{false};

} // namespace

// By value in the exported interface, which callers are built against.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::uint64_t TOSSpecific::GetFileSize(std::string path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0)
    throw TORVException(kORVStatusFileAccess);
  return static_cast<std::uint64_t>(status.st_size);
}

void TOSSpecific::setORVParser(bool on) {
  orvParserSwitch.store(on, std::memory_order_relaxed);
}

bool TOSSpecific::getORVParser() {
  return orvParserSwitch.load(std::memory_order_relaxed);
}

} // namespace NVRNORV20
