#include "xml/XmlParser.h"

#include "xml/XmlBytes.h"
#include "xml/XmlCaches.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

namespace NVRNORV20 {

namespace {

/// "#65;" or "#x41;" (letters folded already).
bool IsNumericReference(std::string_view reference) {
  const bool hex = reference.size() > 1 && reference[1] == 'x';
  const std::size_t first = hex ? 2 : 1;
  if (reference.size() < first + 2 || reference[0] != '#' || reference.back() != ';')
    return false;
  for (std::size_t i = first; i + 1 < reference.size(); ++i) {
    const char c = reference[i];
    if (!(c >= '0' && c <= '9') && !(hex && c >= 'a' && c <= 'f'))
      return false;
  }
  return true;
}

/// Hands a tag's map back to the kept maps however the tag ends.
struct TMapKeeper {
  TXmlAttributeMaps &maps;
  TXmlParser::TAttributes &attributes;
  TMapKeeper(const TMapKeeper &) = delete;
  TMapKeeper &operator=(const TMapKeeper &) = delete;
  ~TMapKeeper() { maps.Keep(attributes); }
};

// Byte classes, one table lookup per byte in the scanning loops.
enum : unsigned char {
  kBlank = 1,          // space, tab, CR, LF: the only whitespace we know
  kNameStart = 2,      // ASCII letter, "_", ":"
  kNameChar = 4,       // name start, digit, "-", "."
  kTextStop = 8,       // ends a run of character data: "<", "&", NUL
  kStopInDoubleQ = 16, // ends a scan inside "...": quote, "<", "&", NUL
  kStopInSingleQ = 32, // ends a scan inside '...': quote, "<", "&", NUL
};

constexpr std::array<unsigned char, 256> MakeByteClasses() {
  std::array<unsigned char, 256> classes{};
  for (int c = 'a'; c <= 'z'; ++c)
    classes[static_cast<std::size_t>(c)] = kNameStart | kNameChar;
  for (int c = 'A'; c <= 'Z'; ++c)
    classes[static_cast<std::size_t>(c)] = kNameStart | kNameChar;
  for (int c = '0'; c <= '9'; ++c)
    classes[static_cast<std::size_t>(c)] = kNameChar;
  classes['_'] = classes[':'] = kNameStart | kNameChar;
  classes['-'] = classes['.'] = kNameChar;
  classes[' '] = classes['\t'] = classes['\r'] = classes['\n'] = kBlank;
  classes['<'] = classes['&'] = classes[0] = kTextStop | kStopInDoubleQ | kStopInSingleQ;
  classes['"'] = kStopInDoubleQ;
  classes['\''] = kStopInSingleQ;
  return classes;
}

constexpr std::array<unsigned char, 256> kByteClasses = MakeByteClasses();

inline unsigned char ClassOf(char c) {
  return kByteClasses[static_cast<unsigned char>(c)];
}

// Advances p while its byte has none of the stop classes. Unrolled: text
// runs and attribute values are the bulk of a CIM-XML document.
inline char *SkipUntil(char *p, unsigned char stop) {
  for (;;) {
    if (ClassOf(p[0]) & stop)
      return p;
    if (ClassOf(p[1]) & stop)
      return p + 1;
    if (ClassOf(p[2]) & stop)
      return p + 2;
    if (ClassOf(p[3]) & stop)
      return p + 3;
    p += 4;
  }
}

// The end of a run of character data. Most runs are short (a value, the
// line break between two tags); the long ones (descriptions) are left to
// the C library's vectorised scan.
inline char *SkipText(char *p) {
  for (int i = 0; i < 4; ++i, p += 4) {
    if (ClassOf(p[0]) & kTextStop)
      return p;
    if (ClassOf(p[1]) & kTextStop)
      return p + 1;
    if (ClassOf(p[2]) & kTextStop)
      return p + 2;
    if (ClassOf(p[3]) & kTextStop)
      return p + 3;
  }
  return p + std::strcspn(p, "<&");
}

std::size_t CountLineFeeds(const char *from, const char *to) {
  std::size_t count = 0;
  while (from < to) {
    const void *hit = std::memchr(from, '\n', static_cast<std::size_t>(to - from));
    if (hit == nullptr)
      break;
    ++count;
    from = static_cast<const char *>(hit) + 1;
  }
  return count;
}

constexpr std::string_view kTerminators[] = {"?>", "-->", ">"};

// Puts a byte back when the scope ends, also when a handler throws.
class TByteRestorer {
public:
  TByteRestorer(char *where, char byte) : position(where), kept(byte) {}
  ~TByteRestorer() { *position = kept; }
  TByteRestorer(const TByteRestorer &) = delete;
  TByteRestorer &operator=(const TByteRestorer &) = delete;

private:
  char *position;
  char kept;
};

} // namespace

// Closes, innermost first, every element the running ParseElement opened:
// on a normal return there are none left, on an exception they are the
// whole open chain, and each hidden byte goes back in the order a recursive
// descent would have put it back.
class TXmlParser::TOpenElementsGuard {
public:
  explicit TOpenElementsGuard(TXmlParser &owner) : parser(owner), base(owner.openElements.size()) {}
  ~TOpenElementsGuard() {
    while (parser.openElements.size() > base)
      parser.CloseInnermostElement();
  }
  TOpenElementsGuard(const TOpenElementsGuard &) = delete;
  TOpenElementsGuard &operator=(const TOpenElementsGuard &) = delete;

  bool AtBase() const { return parser.openElements.size() == base; }

private:
  TXmlParser &parser;
  std::size_t base;
};

TXmlParser::TXmlParser()
    : documentStart(nullptr), cursor(nullptr), cursorUnderrun(1),
      caches(std::make_unique<TCaches>()) {}

TXmlParser::TXmlParser(const TXmlParser &other)
    : documentStart(other.documentStart), cursor(other.cursor),
      cursorUnderrun(other.cursorUnderrun), lineMark(other.lineMark),
      lineFeedsBeforeMark(other.lineFeedsBeforeMark), caches(std::make_unique<TCaches>()) {}

TXmlParser &TXmlParser::operator=(const TXmlParser &other) {
  if (this != &other) {
    documentStart = other.documentStart;
    cursor = other.cursor;
    cursorUnderrun = other.cursorUnderrun;
    lineMark = other.lineMark;
    lineFeedsBeforeMark = other.lineFeedsBeforeMark;
    for (auto &search : caches->failedSearches)
      search.Clear();
  }
  return *this;
}

TXmlParser::~TXmlParser() = default;

// ---------------------------------------------------------------------------
// Character primitives. The private inline forms are what the scanning code
// uses; the protected ones are the same for subclasses.

inline char TXmlParser::NextByte() {
  if (cursorUnderrun != 0)
    return '\0';
  const char c = *cursor;
  if (c != '\0')
    ++cursor;
  return c;
}

inline char TXmlParser::ByteAtCursor() const {
  return cursorUnderrun != 0 ? '\0' : *cursor;
}

// Stepping back is unconditional, so a look-ahead that met the terminator
// ends one byte before where it began; at the first byte the step is only
// counted and the position reads as a NUL.
inline void TXmlParser::StepBack() {
  if (cursorUnderrun != 0 || cursor == documentStart)
    ++cursorUnderrun;
  else
    --cursor;
}

inline bool TXmlParser::SkipBlanks() {
  if (cursorUnderrun != 0)
    return false;
  char *p = cursor;
  while (ClassOf(*p) & kBlank)
    ++p;
  const bool skipped = p != cursor;
  cursor = p;
  return skipped;
}

inline bool TXmlParser::ConsumeName() {
  if (!(ClassOf(NextByte()) & kNameStart)) {
    FatalError("Invalid element/attribute name");
    return false;
  }
  // Four bytes a round: a byte is read only after the one before it was a
  // name byte, so never past the terminator.
  char *p = cursor;
  for (;;) {
    if (!(ClassOf(p[0]) & kNameChar))
      break;
    if (!(ClassOf(p[1]) & kNameChar)) {
      p += 1;
      break;
    }
    if (!(ClassOf(p[2]) & kNameChar)) {
      p += 2;
      break;
    }
    if (!(ClassOf(p[3]) & kNameChar)) {
      p += 3;
      break;
    }
    p += 4;
  }
  cursor = p;
  return true;
}

char TXmlParser::GetChar() {
  return NextByte();
}
char TXmlParser::PeekChar() {
  return ByteAtCursor();
}
void TXmlParser::UngetChar() {
  StepBack();
}
bool TXmlParser::SkipWhitespace() {
  return SkipBlanks();
}
bool TXmlParser::ValidateName() {
  return ConsumeName();
}

// Every byte we hide or put back goes through here, so that the line count
// before the mark and the failed searches stay true to the buffer as it
// stands.
inline void TXmlParser::WriteByte(char *position, char value) {
  const char old = *position;
  if (position < lineMark)
    lineFeedsBeforeMark = lineFeedsBeforeMark + (value == '\n' ? 1u : 0u) - (old == '\n' ? 1u : 0u);
  if (value == '\0')
    for (auto &search : caches->failedSearches)
      search.NulWritten(position);
  *position = value;
}

// Moves past the first occurrence of the terminator after the cursor (in
// the buffer as it stands, up to its first NUL); false leaves the cursor.
bool TXmlParser::SkipPast(ETerminator terminator) {
  if (cursorUnderrun != 0)
    return false;
  const std::string_view text = kTerminators[terminator];
  TXmlFailedSearch &failed = caches->failedSearches[terminator];
  const char *start = failed.Resume(cursor, text.size());
  // strchr and a short compare rather than strstr: a checked build's strstr
  // measures the whole rest of the buffer at every call, which made a
  // document with many comments quadratic under the sanitizers.
  const char *hit = std::strchr(start, text[0]);
  while (hit != nullptr && !SameBytes(hit, text.data(), text.size()))
    hit = std::strchr(hit + 1, text[0]);
  if (hit == nullptr) {
    failed.Fail(cursor, start + std::strlen(start));
    return false;
  }
  cursor += (hit - cursor) + static_cast<std::ptrdiff_t>(text.size());
  return true;
}

unsigned TXmlParser::GetCurLine() {
  if (documentStart == nullptr)
    return 1;
  char *target = cursorUnderrun != 0 ? documentStart : cursor;
  if (target >= lineMark)
    lineFeedsBeforeMark += static_cast<unsigned>(CountLineFeeds(lineMark, target));
  else
    lineFeedsBeforeMark -= static_cast<unsigned>(CountLineFeeds(target, lineMark));
  lineMark = target;
  return 1 + lineFeedsBeforeMark;
}

// ---------------------------------------------------------------------------
// Document structure.

void TXmlParser::Parse(char *buffer) {
  documentStart = cursor = buffer;
  cursorUnderrun = 0;
  lineMark = buffer;
  lineFeedsBeforeMark = 0;
  for (auto &search : caches->failedSearches)
    search.Clear();
  caches->names.TakeGlobalLocale();
  caches->attributeLists = ReadsAttributeLists();

  ParseBOM();
  ParseProlog();
  ParseElement();
  // Whatever is left after the root element and not taken as a comment,
  // instruction or whitespace is ignored without a report.
  while (ParseMisc()) {
  }
}

// A broken mark is reported and reading goes on after the byte that broke
// it.
bool TXmlParser::ParseBOM() {
  if (ByteAtCursor() != '\xEF')
    return true;
  NextByte();
  if (NextByte() != '\xBB' || NextByte() != '\xBF')
    FatalError("Unexpected character parsing UTF-8 BOM");
  return true;
}

// Without an XML declaration the root element must come first: no comment,
// instruction or DOCTYPE is looked for then.
bool TXmlParser::ParseProlog() {
  if (NextByte() != '<') {
    FatalError("Unexpected character before prolog");
    return false;
  }
  if (NextByte() != '?') {
    StepBack();
    StepBack();
    return false;
  }
  StepBack();
  StepBack();
  SkipPast(kPIEnd); // the declaration itself is not examined
  while (ParseMisc()) {
  }
  if (NextByte() != '<') {
    StepBack();
    return true;
  }
  if (NextByte() == '!') {
    StepBack();
    StepBack();
    ParseDocTypeDecl();
    while (ParseMisc()) {
    }
    return true;
  }
  StepBack();
  StepBack();
  return true;
}

// The first ">" ends the declaration, also inside an internal subset.
bool TXmlParser::ParseDocTypeDecl() {
  static const char kKeyword[] = "<!DOCTYPE";
  for (const char *k = kKeyword; *k != '\0'; ++k) {
    if (NextByte() != *k) {
      FatalError("Unexpected character in doctypedecl");
      return false;
    }
  }
  if (!SkipPast(kTagEnd))
    return false;
  SkipBlanks();
  return true;
}

bool TXmlParser::ParseMisc() {
  if (NextByte() != '<') {
    StepBack();
    return SkipBlanks() && ByteAtCursor() != '\0';
  }
  switch (NextByte()) {
  case '!': {
    const char third = NextByte();
    StepBack();
    StepBack();
    StepBack();
    // "<!" without "-" is left on the cursor: the prolog takes it for a
    // DOCTYPE.
    return third == '-' && SkipComment();
  }
  case '?':
    StepBack();
    StepBack();
    return ParseProcessingInstruction();
  case '%':
    StepBack();
    StepBack();
    return ParseJSSP();
  default:
    StepBack();
    StepBack();
    return false;
  }
}

// A mismatch steps back four bytes however many were taken. "--" inside the
// comment is not examined.
bool TXmlParser::SkipComment() {
  static const char kOpener[] = "<!--";
  for (const char *k = kOpener; *k != '\0'; ++k) {
    if (NextByte() != *k) {
      for (int i = 0; i < 4; ++i)
        StepBack();
      return false;
    }
  }
  return SkipPast(kCommentEnd);
}

// Target and data are never extracted: the handler always gets "TBD".
bool TXmlParser::ParseProcessingInstruction() {
  if (!SkipPast(kPIEnd))
    return false;
  processingInstruction("TBD", "TBD");
  return true;
}

bool TXmlParser::ParseJSSP() {
  FatalError("Invalid XML '<%' characters encountered");
  return false;
}

// ---------------------------------------------------------------------------
// Elements.

void TXmlParser::CloseInnermostElement() {
  const TOpenElement &element = openElements.back();
  WriteByte(element.name + element.nameLength, element.hiddenByte);
  openElements.pop_back();
}

// <name attr="..."> or <name attr="..."/> at the cursor. kOpened leaves the
// element open on the stack; kEmpty gives the element's result; kFailed is a
// start tag that could not be read (reported already).
TXmlParser::EStartTag TXmlParser::ReadStartTag(bool &emptyResult) {
  if (NextByte() != '<') {
    FatalError("Unexpected character before element");
    return EStartTag::kFailed;
  }
  char *name = cursor;
  if (!ConsumeName())
    return EStartTag::kFailed;
  const std::size_t nameLength = static_cast<std::size_t>(cursor - name);
  // A handler that reads lists gets spans into the buffer; only the map
  // path reads through the overridable GetAttributeNValue.
  if (caches->attributeLists) {
    ReadAttributes();
    return EndStartTag(name, nameLength, nullptr, emptyResult);
  }
  TAttributes attributes = GetAttributeNValue();
  // However the tag ends, its map serves a later tag with the same names.
  const TMapKeeper keeper{caches->attributeMaps, attributes};
  return EndStartTag(name, nameLength, &attributes, emptyResult);
}

TXmlParser::EStartTag TXmlParser::EndStartTag(char *name, std::size_t nameLength,
                                              TAttributes *attributes, bool &emptyResult) {
  bool empty = false;
  const char closer = NextByte();
  if (closer == '/') {
    if (NextByte() != '>') {
      FatalError("Unexpected character before end of element");
      return EStartTag::kFailed;
    }
    empty = true;
  } else if (closer != '>') {
    FatalError("Unexpected character before end of element");
    return EStartTag::kFailed;
  }

  // The name is terminated from here until the element is done.
  openElements.push_back({name, nameLength, name[nameLength], true, false});
  WriteByte(name + nameLength, '\0');

  const EStartVerdict verdict = attributes != nullptr
                                    ? StartElementWithMap(name, *attributes)
                                    : StartElementList(name, caches->attributeMaps.List());
  if (verdict == EStartVerdict::kFormatRejected)
    openElements.back().result = false;
  else if (verdict == EStartVerdict::kValueRejected)
    openElements.back().valueRejected = true;

  if (!empty)
    return EStartTag::kOpened;
  EndElement(name); // a rejected value makes no difference here
  emptyResult = openElements.back().result;
  CloseInnermostElement();
  return EStartTag::kEmpty;
}

// The content of the innermost open element, from the cursor. kChild stops
// with the cursor on a child's "<"; kDone gives what the element's
// ParseElement returns (the caller then closes it).
TXmlParser::EContent TXmlParser::ReadContent(bool &doneResult) {
  for (;;) {
    ParseCharData();
    if (NextByte() != '<') {
      // Only the end of the buffer gets here after character data.
      FatalError("Unexpected character where element expected");
      doneResult = false;
      return EContent::kDone;
    }
    const char second = NextByte();
    if (second == '/') {
      // </name>: the start name is compared over its own length only, so an
      // end tag that merely begins with it is accepted.
      const TOpenElement &element = openElements.back();
      const char *endName = cursor;
      doneResult = false;
      if (!ConsumeName())
        return EContent::kDone;
      // An end name shorter than the start name differs from it at the
      // byte after it, which is no name byte.
      if (static_cast<std::size_t>(cursor - endName) < element.nameLength ||
          !SameBytes(element.name, endName, element.nameLength)) {
        FatalError("Start and end element names don't match");
        return EContent::kDone;
      }
      SkipBlanks();
      if (NextByte() != '>') {
        FatalError("Unexpected character before end of element");
        return EContent::kDone;
      }
      doneResult = element.result;
      // A rejected VALUE (or any name that is a start of "VALUE") is closed
      // without telling the handler.
      if (element.valueRejected && element.nameLength <= 5 &&
          std::memcmp(element.name, "VALUE", element.nameLength) == 0)
        return EContent::kDone;
      EndElement(element.name);
      return EContent::kDone;
    }
    StepBack();
    StepBack();
    bool goOn = true;
    switch (second) {
    case '?':
      goOn = ParseProcessingInstruction();
      break;
    case '!': {
      // A CDATA section, or any "<!" that is not a whole comment, ends the
      // element without a report; with XML characters on, a CDATA section
      // is text.
      bool ended = true;
      if (caches->xmlCharacters && ParseCDataSection(ended))
        break;
      goOn = ended && SkipComment();
      break;
    }
    case '%':
      goOn = ParseJSSP();
      break;
    default:
      return EContent::kChild;
    }
    if (!goOn) {
      doneResult = false;
      return EContent::kDone;
    }
  }
}

// The element tree is walked with an explicit stack of open elements, so
// that nesting depth is bounded by memory. It behaves as a recursive descent
// would: a child that fails makes its parent return the parent's own result
// at once, without reading the parent's end tag, and the level above goes on
// reading from wherever the cursor stands.
bool TXmlParser::ParseElement() {
  TOpenElementsGuard guard(*this);
  bool readStartTag = true;
  for (;;) {
    bool result = false; // what the element just finished returns
    if (readStartTag) {
      const EStartTag startTag = ReadStartTag(result);
      if (startTag == EStartTag::kOpened) {
        readStartTag = false;
        continue;
      }
    } else {
      if (ReadContent(result) == EContent::kChild) {
        readStartTag = true;
        continue;
      }
      CloseInnermostElement();
    }
    // Hand the result to the enclosing level.
    while (!guard.AtBase() && !result) {
      result = openElements.back().result;
      CloseInnermostElement();
    }
    if (guard.AtBase())
      return result;
    readStartTag = false; // the parent's content goes on
  }
}

// Attributes must be separated from the name and from each other by
// whitespace; where they are not, the list simply ends and the start tag
// then fails. Every exit returns the attributes read so far; the one that
// failed is not among them.
void TXmlParser::ReadAttributes() {
  TXmlAttributeMaps &maps = caches->attributeMaps;
  maps.Clear();
  bool separated = SkipBlanks();
  for (;;) {
    if (!separated)
      return;
    const char next = ByteAtCursor();
    if (next == '%' || next == '/' || next == '>')
      return;
    char *name = cursor;
    if (!ConsumeName())
      return;
    char *nameEnd = cursor;
    SkipBlanks();
    if (NextByte() != '=') {
      FatalError("Unexpected character between attribute name and value");
      return;
    }
    SkipBlanks();
    const char quote = NextByte();
    if (quote != '"' && quote != '\'') {
      FatalError("Unexpected character after equals of attribute name");
      return;
    }
    char *value = cursor;
    if (!ScanAttributeValue(quote))
      return;
    char *valueEnd = cursor - 1;

    // Names are folded in the buffer itself, for good; values stay raw.
    caches->names.Fold(name, nameEnd);
    if (!maps.Add(std::string_view(name, static_cast<std::size_t>(nameEnd - name)),
                  std::string_view(value, static_cast<std::size_t>(valueEnd - value)))) {
      // The first value stays. Both runs are terminated while we report.
      const char keptNameEnd = *nameEnd;
      WriteByte(nameEnd, '\0');
      TByteRestorer restoreQuote(valueEnd, *valueEnd);
      *valueEnd = '\0';
      struct TNameEndRestorer {
        TXmlParser &parser;
        char *position;
        char kept;
        ~TNameEndRestorer() { parser.WriteByte(position, kept); }
      } restoreNameEnd{*this, nameEnd, keptNameEnd};
      FatalError("Attribute appears twice");
    }
    separated = SkipBlanks();
  }
}

TXmlParser::TAttributes TXmlParser::GetAttributeNValue() {
  ReadAttributes();
  return caches->attributeMaps.Build();
}

bool TXmlParser::ReadsAttributeLists() const {
  return false;
}

TXmlParser::EStartVerdict TXmlParser::StartElementList(const char *name,
                                                       const TXmlAttributeList &) {
  // The list is the one just gathered, so the map is built from it.
  TAttributes attributes = caches->attributeMaps.Build();
  const TMapKeeper keeper{caches->attributeMaps, attributes};
  return StartElementWithMap(name, attributes);
}

TXmlParser::EStartVerdict TXmlParser::StartElementWithMap(const char *name,
                                                          TAttributes &attributes) {
  const std::size_t sizeBefore = attributes.size();
  StartElement(name, attributes);
  // A marker counts only when it is the one entry the handler added.
  EStartVerdict verdict = EStartVerdict::kAccepted;
  if (attributes.size() == sizeBefore + 1) {
    auto marker = attributes.find(kMarkerInvalidFormat);
    if (marker != attributes.end()) {
      attributes.erase(marker);
      verdict = EStartVerdict::kFormatRejected;
    } else if ((marker = attributes.find(kMarkerInvalidValue)) != attributes.end()) {
      attributes.erase(marker);
      verdict = EStartVerdict::kValueRejected;
    }
  }
  return verdict;
}

// Scans a value from the cursor to the closing quote and leaves the cursor
// after it. References are checked, never decoded.
bool TXmlParser::ScanAttributeValue(char quote) {
  const unsigned char stop = quote == '"' ? kStopInDoubleQ : kStopInSingleQ;
  for (;;) {
    cursor = SkipUntil(cursor, stop);
    const char c = *cursor;
    if (c == '\0') {
      FatalError("Unexpected end of document in attribute value");
      return false;
    }
    ++cursor;
    if (c == quote)
      return true;
    if (c == '<') {
      FatalError("Unexpected character(<) in attribute value");
      return false;
    }
    if (!CheckAttributeReference())
      return false;
  }
}

// Only the five named references may follow "&" in a value, in any letter
// case; numeric ones are refused unless XML characters are on (up to eight
// digits, what any code point needs). The look-ahead stops at the terminator
// after taking it once: taking it again and again would step back over
// bytes never read, onto a "/>" read before, and the same start tag would
// then be read forever when FatalError returns.
bool TXmlParser::CheckAttributeReference() {
  char taken[10];
  std::size_t count = 0;
  do
    taken[count++] = static_cast<char>(AsciiLower(NextByte()));
  while (count < sizeof taken && taken[count - 1] != ';' && taken[count - 1] != '\0');
  const std::string_view reference(taken, count);
  if (reference == "lt;" || reference == "gt;" || reference == "amp;" || reference == "apos;" ||
      reference == "quot;")
    return true;
  if (caches->xmlCharacters && IsNumericReference(reference))
    return true;
  for (std::size_t i = 0; i < count; ++i)
    StepBack();
  FatalError("Unexpected character(&) in attribute value");
  return false;
}

bool TXmlParser::ParseCDataSection(bool &ended) {
  static constexpr char kOpen[] = "<![CDATA[";
  static constexpr std::size_t kOpenLength = sizeof kOpen - 1;
  if (cursorUnderrun != 0 || std::strncmp(cursor, kOpen, kOpenLength) != 0)
    return false;
  char *content = cursor + kOpenLength;
  char *close = std::strstr(content, "]]>");
  if (close == nullptr) {
    cursor += std::strlen(cursor);
    FatalError("Unterminated CDATA section");
    ended = false;
    return false;
  }
  cursor = close + 3;
  EmitText(content, close);
  return true;
}

void TXmlParser::EmitText(char *run, char *end) {
  static const char kLineFeed[] = "\n";
  while (run != end) {
    char *lineEnd =
        caches->xmlCharacters
            ? static_cast<char *>(std::memchr(run, '\r', static_cast<std::size_t>(end - run)))
            : nullptr;
    char *stop = lineEnd != nullptr ? lineEnd : end;
    if (stop != run) {
      TByteRestorer restore(stop, *stop);
      *stop = '\0';
      characters(run, static_cast<unsigned>(stop - run));
    }
    if (lineEnd == nullptr)
      return;
    characters(kLineFeed, 1);
    run = lineEnd + 1;
    if (run != end && *run == '\n')
      ++run;
  }
}

// Text arrives in pieces: each run between markup and references, and each
// reference as one byte of its own. Whitespace is never stripped. References
// are matched in any letter case; only ASCII bytes can match them, so ASCII
// folding is enough (attribute names are folded with the locale instead).
bool TXmlParser::ParseCharData() {
  bool reported = false;
  for (;;) {
    if (cursorUnderrun != 0)
      return reported;
    char *run = cursor;
    char *end = SkipText(run);
    if (end != run) {
      cursor = end;
      EmitText(run, end);
      reported = true;
    }
    if (*cursor != '&')
      return reported;
    ++cursor;
    reported = true;
    const int first = AsciiLower(NextByte());
    if (first == '#')
      ReadNumericReference();
    else
      ReadNamedReference(first);
  }
}

void TXmlParser::CharacterError(const char *message) {
  FatalError(message);
}

void TXmlParser::SetXmlCharacters(bool strict) {
  caches->xmlCharacters = strict;
}

namespace {

std::string HexCode(std::uint32_t code) {
  char text[16];
  std::snprintf(text, sizeof text, "%04X", static_cast<unsigned>(code));
  return text;
}

} // namespace

// &#65; or &#x41;: one byte, the number modulo 256, never a UTF-8 sequence;
// with XML characters on, the code point in UTF-8. A bad byte is reported
// and counted as a digit, and reading goes on; the end of the buffer stops
// it.
void TXmlParser::ReadNumericReference() {
  unsigned base = 10;
  if (AsciiLower(ByteAtCursor()) == 'x') {
    NextByte();
    base = 16;
  }
  unsigned char value = 0;
  // Past U+10FFFF it stays there: no character, whatever digits follow.
  std::uint32_t code = 0;
  bool anyDigit = false;
  for (;;) {
    const char raw = NextByte();
    const int c = AsciiLower(raw);
    int digit = -1;
    if (c >= '0' && c <= '9')
      digit = c - '0';
    else if (base == 16 && c >= 'a' && c <= 'f')
      digit = c - 'a' + 10;
    if (digit >= 0) {
      value = static_cast<unsigned char>(value * base + static_cast<unsigned>(digit));
      code = std::min<std::uint32_t>(code * base + static_cast<unsigned>(digit), 0x110000);
      anyDigit = true;
      continue;
    }
    if (c == ';' && anyDigit && caches->xmlCharacters) {
      if (IsXmlChar(code)) {
        char text[4];
        const unsigned length = EncodeUtf8(code, text);
        // Every piece ends in a NUL, as the runs of the buffer do.
        char piece[5] = {};
        std::memcpy(piece, text, length);
        characters(piece, length);
      } else {
        CharacterError(
            ("Character reference to U+" + HexCode(code) + " is not an XML character").c_str());
      }
      return;
    }
    if (c == ';' && anyDigit) {
      const char text[2] = {static_cast<char>(value), '\0'};
      characters(text, 1);
      return;
    }
    FatalError(c == ';' ? "Invalid hex character" : "Unknown entity reference");
    anyDigit = true;
    if (raw == '\0')
      return;
  }
}

// &amp; &apos; &gt; &lt; &quot;, in any letter case. The first byte that
// fits none of them is reported and dropped with the bytes before it.
void TXmlParser::ReadNamedReference(int first) {
  const char *rest = nullptr; // what must follow, up to and with the ";"
  const char *text = nullptr;
  switch (first) {
  case 'a':
    switch (AsciiLower(NextByte())) {
    case 'm':
      rest = "p;";
      text = "&";
      break;
    case 'p':
      rest = "os;";
      text = "'";
      break;
    }
    break;
  case 'g':
    rest = "t;";
    text = ">";
    break;
  case 'l':
    rest = "t;";
    text = "<";
    break;
  case 'q':
    rest = "uot;";
    text = "\"";
    break;
  }
  if (rest != nullptr) {
    while (*rest != '\0' && AsciiLower(NextByte()) == *rest)
      ++rest;
    if (*rest == '\0') {
      characters(text, 1);
      return;
    }
  }
  FatalError("Unknown entity reference");
}

} // namespace NVRNORV20
