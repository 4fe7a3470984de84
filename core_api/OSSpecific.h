// Services of the operating system that the core offers to its users.
#ifndef ORV_CORE_API_OSSPECIFIC_H
#define ORV_CORE_API_OSSPECIFIC_H

#include "core_api/ORVExport.h"

#include <cstdint>
#include <string>

namespace NVRNORV20 {

class ORVCORE_API TOSSpecific {
public:
  /// Size in bytes of the file at path. A path that cannot be examined
  /// throws TORVException with kORVStatusFileAccess.
  static std::uint64_t GetFileSize(std::string path);

  /// A process-wide switch of the core. The parser turns it on when a
  /// document holds an instance of the computer-system class of our own
  /// agents; it stays on until turned off. Reading and writing it are
  /// atomic.
  static void setORVParser(bool on);
  static bool getORVParser();
};

} // namespace NVRNORV20

#endif
