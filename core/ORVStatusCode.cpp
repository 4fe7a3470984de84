#include "core_api/ORVStatusCode.h"

#include <array>
#include <utility>

namespace NVRNORV20 {

namespace {

// One text per code. The strings are never destroyed, so what() pointers into
// them stay valid for the whole life of the process, also during shutdown.
const std::string &TextFor(EORVStatusCode code) {
  static const auto *const kTexts = new std::array<std::pair<EORVStatusCode, std::string>, 32>{{
      {kORVStatusOK, "Success"},
      {kORVStatusFailed, "Operation failed"},
      {kORVStatusNotSupported, "Operation not supported"},
      {kORVStatusParserStateMissing, "Parser state missing"},
      {kORVStatusOutOfMemory, "Out of memory"},
      {kORVStatusInvalidArgument, "Invalid argument"},
      {kORVStatusNotFound, "Object not found"},
      {kORVStatusAlreadyExists, "Object already exists"},
      {kORVStatusInvalidProperty, "Invalid property value"},
      {kORVStatusInvalidDocument, "Document is not valid CIM-XML"},
      {kORVStatusNullObject, "Operation on a missing object"},
      {kORVStatusFileAccess, "File access failed"},
      {kORVStatusNoSuchProperty, "No such property"},
      {kORVStatusTypeMismatch, "Type mismatch"},
      {kORVStatusInvalidValueText, "Invalid value text"},
      {kORVStatusQualifierNotDeclared, "Qualifier not declared"},
      {kORVStatusSchemaLookup, "Class not found or qualifier already declared"},
      {kORVStatusInvalidTypeName, "Invalid type name"},
      {kORVStatusNoSuchMethod, "No such method"},
      {kORVStatusNoSuchParameter, "No such parameter"},
      {kORVStatusValueOutOfRange, "Value out of range"},
      {kORVStatusInvalidDateTime, "Invalid datetime"},
      {kORVStatusNamespaceGone, "Namespace no longer exists"},
      {kORVStatusAlreadyCommitted, "Object already committed"},
      {kORVStatusNotCommitted, "Object not committed"},
      {kORVStatusInvalidReference, "Invalid reference"},
      {kORVStatusNoSuchInstance, "No such instance"},
      {kORVStatusNoSuchQualifier, "No such qualifier"},
      {kORVStatusClassHasInstances, "Class has instances"},
      {kORVStatusNotGzip, "Not a gzip file"},
      {kORVStatusGzipRead, "Gzip read failed"},
      {kORVStatusInvalidFormat, "Invalid value format"},
  }};
  static const auto *const kUnknown = new std::string("Unknown status code");
  for (const auto &entry : *kTexts)
    if (entry.first == code)
      return entry.second;
  return *kUnknown;
}

} // namespace

const std::string &TORVStatusCode::TranslateStatusCode() const {
  return TextFor(statusCode);
}

TORVException::~TORVException() = default;

const char *TORVException::what() const noexcept {
  return status.TranslateStatusCode().c_str();
}

} // namespace NVRNORV20
