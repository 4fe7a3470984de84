// Status codes and the one exception type that every failure of the core
// object model and of the CIM-XML parser leaves as.
#ifndef ORV_CORE_API_ORVSTATUSCODE_H
#define ORV_CORE_API_ORVSTATUSCODE_H

#include "core_api/ORVExport.h"

#include <cstdint>
#include <exception>
#include <string>

namespace NVRNORV20 {

/// Every status a TORVException can carry. The values are part of the
/// interface: scripts and logs show them as numbers, so they never change.
enum EORVStatusCode : std::int32_t {
  kORVStatusOK = 0,
  kORVStatusFailed = 1,
  kORVStatusNotSupported = 2,
  /// The parser found no parse state where one must be; also the status of a
  /// default-constructed TORVException.
  kORVStatusParserStateMissing = 3,
  kORVStatusOutOfMemory = 4,
  kORVStatusInvalidArgument = 5,
  kORVStatusNotFound = 6,
  kORVStatusAlreadyExists = 7,
  kORVStatusInvalidProperty = 8,
  /// The document is not valid CIM-XML (every syntax or content error).
  kORVStatusInvalidDocument = 9,
  kORVStatusNullObject = 10,
  kORVStatusFileAccess = 11,
  kORVStatusNoSuchProperty = 12,
  kORVStatusTypeMismatch = 13,
  kORVStatusInvalidValueText = 14,
  kORVStatusQualifierNotDeclared = 15,
  /// A class look-up found no class of that name, or a qualifier declaration
  /// of that name already exists. Loaders tolerate it.
  kORVStatusSchemaLookup = 16,
  kORVStatusInvalidTypeName = 17,
  kORVStatusNoSuchMethod = 18,
  kORVStatusNoSuchParameter = 19,
  kORVStatusValueOutOfRange = 20,
  kORVStatusInvalidDateTime = 21,
  kORVStatusNamespaceGone = 22,
  kORVStatusAlreadyCommitted = 23,
  kORVStatusNotCommitted = 24,
  kORVStatusInvalidReference = 25,
  kORVStatusNoSuchInstance = 26,
  kORVStatusNoSuchQualifier = 27,
  kORVStatusClassHasInstances = 28,
  kORVStatusNotGzip = 29,
  kORVStatusGzipRead = 30,
  kORVStatusInvalidFormat = 36,
};

/// A status code as a value. Assignment returns a copy, not a reference: the
/// exported interface has always been so and callers may rely on it.
class ORVCORE_API TORVStatusCode {
public:
  TORVStatusCode(EORVStatusCode code) : statusCode(code) {}
  TORVStatusCode(const TORVStatusCode &other) = default;
  // NOLINTNEXTLINE(misc-unconventional-assign-operator)
  TORVStatusCode operator=(const TORVStatusCode &other) {
    statusCode = other.statusCode;
    return *this;
  }
  // NOLINTNEXTLINE(misc-unconventional-assign-operator)
  TORVStatusCode operator=(EORVStatusCode code) {
    statusCode = code;
    return *this;
  }

  EORVStatusCode GetStatusCode() { return statusCode; }

  /// The code's text; an unknown code gives "Unknown status code". The string
  /// lives as long as the process.
  const std::string &TranslateStatusCode() const;

private:
  EORVStatusCode statusCode;
};

/// The one exception type of the system. It carries only a status code; the
/// detail of a failure is written to the core logger where it happens.
class ORVCORE_API TORVException : public std::exception {
public:
  TORVException() : status(kORVStatusParserStateMissing) {}
  TORVException(const TORVStatusCode &code) : status(code) {}
  TORVException(const TORVException &other) = default;
  ~TORVException() override;

  const char *what() const noexcept override;

  EORVStatusCode GetStatusCode() const { return TORVStatusCode(status).GetStatusCode(); }
  const TORVStatusCode &GetStatus() const { return status; }

private:
  TORVStatusCode status;
};

} // namespace NVRNORV20

#endif
