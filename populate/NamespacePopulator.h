// The library's entry points: load one CIM-XML document, plain or gzip, into
// a namespace and return what it defined.
#ifndef ORV_POPULATE_NAMESPACEPOPULATOR_H
#define ORV_POPULATE_NAMESPACEPOPULATOR_H

#include "cimxml/CIMXMLDocument.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVExport.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace NVRNORV20 {

/// Reads a whole document, a regular file or a pipe, into memory and runs
/// one CIM-XML parser over it. A name containing ".gz" is read as gzip (a
/// file's magic and trailer checked first, a pipe's magic as it comes); any
/// other as plain text. A pipe is read to its end; a FIFO without a writer
/// reads as empty at once. A document larger than
/// TCIMXMLParser::kMaxSpecificationDocumentSize is not refused: only its
/// first 104857600 bytes are read. Memory for gzip and pipes grows with the
/// bytes that arrive. No global state is touched: calls on different
/// threads into different namespaces are independent.
///
/// Every failure leaves as TORVException, after the core logger got
/// "Previous error was while parsing file '<name>'" at level 0: 10 for an
/// empty namespace pointer, before the file is looked at; 11 when the
/// file cannot be examined, opened or read, or is neither a regular file
/// nor a pipe (with a line of its own at level 3), 29 for a gzip name
/// without the gzip magic, 30 when decompression fails or yields nothing,
/// 4 when memory runs out, and the parser's own statuses (9 for a document
/// that is not CIM-XML). Elements that the parser rejects are logged and
/// skipped; they do not fail the call. What the parse added to the
/// namespace before a failure stays.
class ORVCIMXML_API TNamespacePopulator {
public:
  TNamespacePopulator() = default;
  TNamespacePopulator(const TNamespacePopulator &) = default;
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing to copy.
  TNamespacePopulator &operator=(const TNamespacePopulator &) { return *this; }
  TNamespacePopulator &operator=(TNamespacePopulator &&) noexcept { return *this; }

  /// The classes that the document defined, in document order. Also takes
  /// names containing ".GZ" as gzip.
  static std::vector<boost::shared_ptr<ICIMClass>>
  PopulateFromXMLFile(boost::shared_ptr<ICIMNamespace> ns, std::string fileName);
  /// The instances that the document defined, in document order. Only
  /// ".gz" marks a gzip name here.
  static std::vector<boost::shared_ptr<ICIMInstance>>
  PopulateFromRegXMLFile(boost::shared_ptr<ICIMNamespace> ns, std::string fileName);
  /// Reads the document as the two calls above read it (".gz" or ".GZ" in
  /// the name for gzip), in the grammar and with the registration that
  /// options choose, and hands what it reads to handler. The full grammar
  /// hands over each object, operation and message as it completes, so a
  /// handler that keeps nothing reads any size of document in the memory of
  /// the document and its largest object. The classic grammar hands over,
  /// once the document is read, its collected classes and then its
  /// instances, as registered objects. Failures are those of the calls
  /// above; what the handler got before one stays got.
  static void Populate(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &fileName,
                       const TCIMXMLReadOptions &options, ICIMXMLHandler &handler);
};

} // namespace NVRNORV20

#endif
