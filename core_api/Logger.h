// The core logger and the process-wide root object that hands it out.
#ifndef ORV_CORE_API_LOGGER_H
#define ORV_CORE_API_LOGGER_H

#include "core_api/ORVExport.h"

#include <string>

namespace NVRNORV20 {

/// Receives every message of the core and the parser. Levels: 0 notes that
/// name a failed file, 3 errors found while parsing; others are free.
class ORVCORE_API ILogger {
public:
  virtual ~ILogger();
  virtual void Log(int level, const std::string &text) = 0;
};

/// The default logger: writes "[level] text" and a line feed to standard
/// error, one write per message.
class ORVCORE_API TStderrLogger : public ILogger {
public:
  void Log(int level, const std::string &text) override;
};

class ORVCORE_API TRootObject {
public:
  /// The process's logger; never null (the default logger when none is set).
  static ILogger *GetCoreLogger();
  /// Installs a logger that the caller keeps alive while it is installed;
  /// null restores the default logger. Not synchronised: set it before
  /// parsing starts.
  static void SetCoreLogger(ILogger *logger);
  /// Hands text to the process's logger with every control character
  /// written as \xHH (each byte of it, C1 characters too), so that text
  /// taken from a document can neither start a forged log line nor reach a
  /// terminal as an escape sequence. Printable text, backslashes included,
  /// passes byte for byte. Every message of the library goes through here.
  static void Log(int level, const std::string &text);
};

} // namespace NVRNORV20

#endif
