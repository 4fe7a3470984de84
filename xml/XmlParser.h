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
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace NVRNORV20 {

/// One attribute of a start tag as it stands in the buffer: the name folded
/// to lower case, the value as written (references checked, not decoded).
struct TXmlAttribute {
  std::string_view name;
  std::string_view value;
};

/// A start tag's attributes in the attribute map's order: byte-wise by
/// name, names unique. A view over storage that someone else owns.
class TXmlAttributeList {
public:
  using TIterator = const TXmlAttribute *;

  TXmlAttributeList() = default;
  TXmlAttributeList(const TXmlAttribute *first, std::size_t count)
      : items(first), itemCount(count) {}

  TIterator begin() const { return items; }
  TIterator end() const { return items + itemCount; }
  std::size_t Size() const { return itemCount; }
  bool Empty() const { return itemCount == 0; }
  /// The attribute of that (lower-case) name, or end(). Tags have a few
  /// attributes, so a scan beats a search.
  TIterator Find(std::string_view name) const {
    TIterator at = begin();
    while (at != end() && at->name != name)
      ++at;
    return at;
  }

private:
  const TXmlAttribute *items = nullptr;
  std::size_t itemCount = 0;
};

class ORVCIMXML_API TXmlParser {
public:
  /// Attribute names (lower-cased) to raw values, ordered byte-wise.
  using TAttributes = std::map<std::string, std::string>;
  /// The marker keys a StartElement handler may add (see there).
  static constexpr char kMarkerInvalidFormat[] = "throwExInvalidFormat";
  static constexpr char kMarkerInvalidValue[] = "throwExInvalidValue";

  TXmlParser();
  /// Copies are shallow: the tokenizer never owns the buffer.
  TXmlParser(const TXmlParser &other);
  TXmlParser &operator=(const TXmlParser &other);
  virtual ~TXmlParser();

  /// A start tag. The name points into the buffer, in the case in which it
  /// is written, terminated for as long as the element is open. The handler
  /// may add the marker key kMarkerInvalidFormat (the element is rejected:
  /// its parent ends after it) or kMarkerInvalidValue (a VALUE element's end
  /// tag is not reported).
  virtual void StartElement(const char *name, TAttributes &attributes) = 0;
  /// An end tag; the same pointer as the start tag's name.
  virtual void EndElement(const char *name) = 0;
  /// Target and data are always the placeholder "TBD".
  virtual void processingInstruction(const char *target, const char *data) = 0;
  /// A piece of character data; valid only during the call. Text arrives in
  /// pieces: each run between markup and references, and each reference.
  virtual void characters(const char *text, unsigned length) = 0;
  virtual void notationDecl(const char *name, const char *publicId, const char *systemId) = 0;
  /// A syntax error. The tokenizer carries on along its return paths when
  /// this returns; handlers are expected to throw.
  virtual void FatalError(const char *message) = 0;
  /// A "<%" block: the default reports "Invalid XML '<%' characters
  /// encountered" and returns false.
  virtual bool ParseJSSP();
  /// Character data at the cursor, up to markup or the end of the buffer;
  /// true if anything was reported. Each run and each reference goes to
  /// `characters` on its own; a numeric reference gives one byte (its number
  /// modulo 256). A bad reference is reported and reading goes on after it.
  virtual bool ParseCharData();
  /// The attribute list after an element name: names folded to lower case
  /// in the buffer, values as written (references checked, not decoded). An
  /// error, also a value still open at the end of the buffer, is reported
  /// and ends the list; the attributes read before it are returned.
  virtual TAttributes GetAttributeNValue();

  /// What a handler made of a start tag, for the tokenizer's further
  /// reading (the two markers of the map path).
  enum class EStartVerdict { kAccepted, kFormatRejected, kValueRejected };

  /// A character that XML 1.0 does not allow, met while numeric references
  /// are read as XML 1.0 reads them. The default reports it as a syntax
  /// error (FatalError).
  virtual void CharacterError(const char *message);

  /// Tokenizes the buffer, which must stay alive and writable during the
  /// call; it may be called again with another buffer. Returns normally or
  /// by an exception of the handler; nothing after the root element is
  /// examined.
  void Parse(char *buffer);
  /// 1 plus the line feeds before the cursor, as the buffer stands now (a
  /// byte hidden by a temporary terminator is not counted).
  unsigned GetCurLine();

protected:
  /// Whether start tags go to StartElementList instead of through
  /// GetAttributeNValue to StartElement: asked once as each document
  /// starts. The default is false.
  virtual bool ReadsAttributeLists() const;
  /// A start tag, for a handler that reads attribute lists: the list is a
  /// view into the buffer, valid during the call. The default builds the
  /// attribute map, hands it to StartElement and reads its markers.
  virtual EStartVerdict StartElementList(const char *name, const TXmlAttributeList &attributes);

  /// With strict set, a numeric reference gives the UTF-8 bytes of its code
  /// point, and one that XML 1.0 does not allow as a character (NUL, the
  /// controls but tab, line feed and carriage return, surrogates, U+FFFE,
  /// U+FFFF, past U+10FFFF) goes to CharacterError and gives nothing.
  /// Without it (the default), a reference gives one byte, its number
  /// modulo 256.
  void SetXmlCharacters(bool strict);

  /// The byte at the cursor; advances unless it is the terminator.
  char GetChar();
  char PeekChar();
  /// Moves back one byte unconditionally, also after a GetChar that
  /// returned the terminator without moving. A position before the first
  /// byte reads as NUL.
  void UngetChar();
  bool SkipWhitespace();
  /// Consumes a name; "Invalid element/attribute name" if it does not start
  /// with a letter, "_" or ":".
  bool ValidateName();

private:
  bool ParseBOM();
  bool ParseProlog();
  bool ParseDocTypeDecl();
  bool ParseMisc();
  bool SkipComment();
  /// "<![CDATA[...]]>" at the cursor, with XML characters on: its bytes go
  /// to characters as they are. False when it is not one (the cursor then
  /// stays) or it never ends (reported).
  bool ParseCDataSection(bool &ended);
  /// Hands [run, end) to characters. With XML characters on, each line end
  /// (CR LF, or CR alone) is handed as one LF, as XML 1.0 reads them.
  void EmitText(char *run, char *end);
  bool ParseProcessingInstruction();
  bool ParseElement();

  /// An element whose start tag has been read and whose end tag has not:
  /// the byte after its name is hidden by a NUL until the element is done.
  struct TOpenElement {
    char *name;
    std::size_t nameLength;
    char hiddenByte;
    bool result;        // false once the handler rejected its format
    bool valueRejected; // the handler rejected its value
  };
  class TOpenElementsGuard;
  /// Lets the tests read the cursor, to check line numbers against a count
  /// of their own.
  friend class TXmlParserTestPeer;

  enum class EStartTag { kFailed, kEmpty, kOpened };
  EStartTag ReadStartTag(bool &emptyResult);
  /// The rest of a start tag whose attributes were read: its end, and the
  /// handler's part (with the map, or else with the gathered list).
  EStartTag EndStartTag(char *name, std::size_t nameLength, TAttributes *attributes,
                        bool &emptyResult);
  enum class EContent { kChild, kDone };
  EContent ReadContent(bool &doneResult);
  void CloseInnermostElement();

  /// The attribute list after an element name into the caches' gathered
  /// attributes, unsorted; errors are reported as GetAttributeNValue says.
  void ReadAttributes();
  /// The verdict of StartElement's markers on a map.
  EStartVerdict StartElementWithMap(const char *name, TAttributes &attributes);
  bool ScanAttributeValue(char quote);
  bool CheckAttributeReference();
  void ReadNumericReference();
  void ReadNamedReference(int first);

  char NextByte();
  char ByteAtCursor() const;
  void StepBack();
  bool SkipBlanks();
  bool ConsumeName();
  /// Searches (from the cursor) for one of the few terminators we skip to.
  enum ETerminator { kPIEnd, kCommentEnd, kTagEnd, kTerminatorCount };
  bool SkipPast(ETerminator terminator);
  void WriteByte(char *position, char value);

  char *documentStart;
  /// Never before documentStart: a position before the first byte is kept
  /// as cursorUnderrun (how many bytes before it) and reads as NUL.
  char *cursor;
  std::size_t cursorUnderrun = 0;
  /// Line feeds in [documentStart, lineMark) as the buffer stands; moved to
  /// the cursor by GetCurLine and kept exact across every byte we hide or
  /// put back before the mark.
  char *lineMark = nullptr;
  unsigned lineFeedsBeforeMark = 0;
  /// The open elements of the running ParseElement, innermost last: element
  /// depth is bounded by memory rather than by the machine stack.
  std::vector<TOpenElement> openElements;
  /// What the tokenizer keeps from earlier work (attribute name folding,
  /// the maps of recent tags, failed terminator searches), defined with the
  /// tokenizer's internals. A copy starts with caches of its own.
  struct TCaches;
  std::unique_ptr<TCaches> caches;
};

} // namespace NVRNORV20

#endif
