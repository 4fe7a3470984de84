// The JSON writer: what the full grammar reads (objects, operations,
// messages), written as they arrive, and the object model's qualifier
// declarations, classes, instances and namespaces. docs/cimxml-tool.md
// describes the document's shape.
//
// Values are typed by the "type" beside them: booleans and integers are
// JSON booleans and integers (uint64 and sint64 in their full range, which a
// reader whose numbers are doubles cannot hold exactly), reals are numbers
// in their shortest CIM-XML text except NaN, INF and -INF, which JSON has no
// number for and which are written as those strings. Strings, char16 and
// datetimes are strings, a reference is an object path as an object, an
// embedded object the object itself; arrays are arrays and null is null.
// Text that is not UTF-8 has each such byte written as its Latin-1
// character, with a line to the core logger.
#ifndef ORV_WRITE_JSONWRITER_H
#define ORV_WRITE_JSONWRITER_H

#include "cimxml/CIMXMLDocument.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVExport.h"

#include <cstddef>
#include <exception>
#include <iosfwd>
#include <memory>
#include <string>

namespace NVRNORV20 {

/// Writes one JSON document to a stream: {"files": [FILE...]} and, when
/// Finish is given one, "namespace" after them. Each file's entry holds the
/// items the full grammar hands over, in the order they arrive, each written
/// when it arrives and on a line of its own: nothing is kept beyond the item
/// being written, so an enumeration of any size goes out in the memory of
/// its largest item. The stream's state is the caller's to check; the writer
/// never throws for it.
class ORVWRITE_API TJsonWriter : public ICIMXMLHandler {
public:
  explicit TJsonWriter(std::ostream &out);
  ~TJsonWriter() override;
  TJsonWriter(const TJsonWriter &) = delete;
  TJsonWriter &operator=(const TJsonWriter &) = delete;

  /// Opens the entry of a file read in the full grammar: its name, then its
  /// items. An entry still open is ended first.
  void BeginFile(const std::string &fileName);
  /// Each writes one item. One that arrives with no entry open opens an
  /// entry without a name. An exception out of the object model while an
  /// item is written leaves the item out and the document whole, and goes
  /// on to the caller (the parser logs it and reads on).
  void Object(const TCIMXMLObject &object) override;
  void Operation(const TCIMXMLOperation &operation) override;
  void Message(const TCIMXMLMessage &message) override;
  /// Ends the open entry with the counts of its items by kind and, for a
  /// file that failed, its failure (the status of a TORVException and the
  /// exception's text). Without an open entry it does nothing.
  void EndFile(const std::exception *failure = nullptr);

  /// The entry of a file read in the classic grammar, which went into a
  /// namespace: its name and the counts its loader returned, or its failure.
  void ClassicFile(const std::string &fileName, std::size_t classes, std::size_t instances,
                   const std::exception *failure = nullptr);

  /// Ends the document, with the namespace after the files when ns is not
  /// null, then a line end, and flushes. Later calls write nothing.
  void Finish(ICIMNamespace *ns = nullptr);

private:
  struct TImpl;
  std::unique_ptr<TImpl> impl;
};

/// One object, or a whole namespace (its qualifier declarations, classes in
/// definition order so that a superclass comes first, then instances, each
/// on a line of its own), as one JSON object of the shape the document uses.
/// An exception out of the object model leaves a single object unwritten and
/// goes on to the caller; in a namespace, it leaves that object out with a
/// line to the core logger, and the rest is written.
ORVWRITE_API void WriteJson(std::ostream &out, ICIMQualifierDecl &declaration);
ORVWRITE_API void WriteJson(std::ostream &out, ICIMClass &cls);
ORVWRITE_API void WriteJson(std::ostream &out, ICIMInstance &instance);
ORVWRITE_API void WriteJson(std::ostream &out, ICIMNamespace &ns);

} // namespace NVRNORV20

#endif
