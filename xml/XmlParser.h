// The system's own event-driven XML tokenizer. It works in place over one
// writable, NUL-terminated buffer and reports what it finds to the handler
// operations of its subclass. It knows a deliberately small subset of XML: an
// optional UTF-8 byte-order mark, a prolog (XML declaration, comments,
// processing instructions, one DOCTYPE, all skipped), one root element, and
// trailing comments, processing instructions and whitespace. No DOM, no
// validation, no character-set decoding.
#ifndef ORV_XML_XMLPARSER_H
#define ORV_XML_XMLPARSER_H

#include "core_api/ORVExport.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace NVRNORV20 {

class ORVCIMXML_API TXmlParser {
public:
  /// Attribute names (lower-cased) to raw values, ordered byte-wise.
  using TAttributes = std::map<std::string, std::string>;

  TXmlParser();
  /// Copies are shallow: the tokenizer never owns the buffer.
  TXmlParser(const TXmlParser &other);
  TXmlParser &operator=(const TXmlParser &other);
  virtual ~TXmlParser();

  /// A start tag. The name points into the buffer, in the case in which it
  /// is written, terminated for as long as the element is open. The handler
  /// may add the marker keys "throwExInvalidFormat" (the element is rejected:
  /// its parent ends after it) or "throwExInvalidValue" (a VALUE element's
  /// end tag is not reported).
  virtual void StartElement(const char *name, TAttributes &attributes) = 0;
  /// An end tag; the same pointer as the start tag's name.
  virtual void EndElement(const char *name) = 0;
  /// Target and data are always the placeholder "TBD".
  virtual void processingInstruction(const char *target, const char *data) = 0;
  /// A piece of character data; valid only during the call. Text arrives in
  /// pieces: each run between markup and references, and each reference.
  virtual void characters(const char *text, unsigned length) = 0;
  virtual void notationDecl(const char *name, const char *publicId,
                            const char *systemId) = 0;
  /// A syntax error. The tokenizer carries on along its return paths when
  /// this returns; handlers are expected to throw.
  virtual void FatalError(const char *message) = 0;
  /// A "<%" block: the default reports "Invalid XML '<%' characters
  /// encountered" and returns false.
  virtual bool ParseJSSP();
  /// Character data at the cursor; true if anything was reported.
  virtual bool ParseCharData();
  /// The attribute list after an element name.
  virtual TAttributes GetAttributeNValue();

  /// Tokenizes the buffer, which must stay alive and writable during the
  /// call; it may be called again with another buffer. Returns normally or
  /// by an exception of the handler; nothing after the root element is
  /// examined.
  void Parse(char *buffer);
  /// 1 plus the line feeds before the cursor, as the buffer stands now (a
  /// byte hidden by a temporary terminator is not counted).
  unsigned GetCurLine();

protected:
  /// The byte at the cursor; advances unless it is the terminator.
  char GetChar();
  char PeekChar();
  /// Moves back one byte unconditionally, also after a GetChar that
  /// returned the terminator without moving.
  void UngetChar();
  bool SkipWhitespace();
  /// Consumes a name; "Invalid element/attribute name" if it does not start
  /// with a letter, "_" or ":".
  bool ValidateName();

private:
  bool ParseBOM();
  bool ParseProlog();
  bool ParseXMLDecl();
  bool ParseDocTypeDecl();
  bool ParseMisc();
  bool SkipComment();
  bool ParseProcessingInstruction();
  bool ParseNotationDecl();
  bool ParseElement();

  char *documentStart;
  char *cursor;
};

} // namespace NVRNORV20

#endif
