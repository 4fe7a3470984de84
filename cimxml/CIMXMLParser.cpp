#include "cimxml/CIMXMLParser.h"

#include "cimxml/states/ReferenceStates.h"
#include "cimxml/states/RootStates.h"
#include "core_api/CIMDateTime.h"
#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"
#include "xml/XmlBytes.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale>
#include <typeinfo>
#include <utility>

namespace NVRNORV20 {

namespace {

/// Level of every message written while a document is parsed.
const int kParseErrorLevel = 3;

void LogParseError(const std::string &text) {
  // The logger is fetched anew for every message: a caller may swap loggers
  // between parses.
  TRootObject::Log(kParseErrorLevel, text);
}

/// Attribute names arrive folded, so a plain byte comparison is enough.
bool NameIs(TXmlAttributeList::TIterator attribute, std::string_view name) {
  return attribute->name == name;
}

void StoreText(TXmlAttributeList::TIterator attribute, std::string *out) {
  if (out != nullptr)
    out->assign(attribute->value.data(), attribute->value.size());
}

/// One map entry as a list entry: views of the map's own strings.
TXmlAttribute EntryOf(const TXmlParser::TAttributes::iterator &attribute) {
  return TXmlAttribute{attribute->first, attribute->second};
}

/// The whitespace that a stream skips before a field, in the classic locale.
bool IsStreamSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace

// ---------------------------------------------------------------------------
// The parser

// The pointer is taken by value as the exported interface always had it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
TCIMXMLParser::TCIMXMLParser(boost::shared_ptr<ICIMNamespace> ns)
    : cimNamespace(ns), qn402Mode(false) {
  stateStack.push_back(boost::make_shared<TStateStart>());
}

TCIMXMLParser::TCIMXMLParser(const TCIMXMLParser &other) = default;

TCIMXMLParser &TCIMXMLParser::operator=(const TCIMXMLParser &other) {
  if (this == &other)
    return *this;
  TXmlParser::operator=(other);
  stateStack = other.stateStack;
  cimNamespace = other.cimNamespace;
  classesCollected = other.classesCollected;
  instancesCollected = other.instancesCollected;
  characterData = other.characterData;
  qn402Mode = other.qn402Mode;
  parseUnfinished = other.parseUnfinished;
  readOptions = other.readOptions;
  handler = other.handler;
  scratchNamespace = other.scratchNamespace;
  objectsDelivered = other.objectsDelivered;
  operationsDelivered = other.operationsDelivered;
  messagesDelivered = other.messagesDelivered;
  operationOpen = nullptr;
  roleOpen = other.roleOpen;
  keepPropagated = other.keepPropagated;
  return *this;
}

// A parse that ended early leaves the states of the elements it had open on
// the stack, or an emptied stack; the next document would start inside them
// and fail (status 3). A complete document ends with the initial state alone,
// which the next one starts from as it is.
void TCIMXMLParser::Parse(char *buffer) {
  if (parseUnfinished) {
    stateStack.clear();
    stateStack.push_back(boost::make_shared<TStateStart>());
    characterData.clear();
  }
  parseUnfinished = true;
  // Objects, operations and messages are numbered per document.
  objectsDelivered = 0;
  operationsDelivered = 0;
  messagesDelivered = 0;
  operationOpen = nullptr;
  roleOpen.clear();
  keepPropagated = false;
  // A class of the last document may have been replaced since.
  embeddedProperties.clear();
  declaredTypes.clear();
  foldFacet = nullptr; // names fold with the locale of this document's start
  openNameCount = 0;
  SetXmlCharacters(readOptions.grammar == ECIMXMLGrammar::kFull);
  TXmlParser::Parse(buffer);
  parseUnfinished = stateStack.size() != 1;
}

// Members go in reverse order: the text, the results, the namespace link and
// last the states, which may still point into one another.
TCIMXMLParser::~TCIMXMLParser() = default;

// Element names are compared in lower case; the global locale's ctype facet
// folds them, so a caller's locale decides what a letter is. As for
// attribute names, the locale is the one that stands when a document starts
// (or, outside a document, when the first name is folded): looking it up for
// every name cost a tenth of a load. The standard facet folds each byte
// alone, so its answers for the 256 bytes are kept in a table and names fold
// without a call per element.
const std::string &TCIMXMLParser::FoldElementName(const char *name, std::string &into) {
  const std::size_t length = name != nullptr ? std::strlen(name) : 0;
  // Names are mostly of a few lengths in turn: resizing only on a change
  // of length keeps the copy below a plain loop.
  if (into.size() != length)
    into.resize(length);
  if (length == 0)
    return into;
  if (foldFacet == nullptr) {
    foldLocale = std::locale();
    const auto &facet = std::use_facet<std::ctype<char>>(foldLocale);
    foldByTable = typeid(facet) == typeid(std::ctype<char>);
    foldAscii = foldByTable;
    if (foldByTable)
      for (int byte = 0; byte < 256; ++byte) {
        foldTable[byte] = facet.tolower(static_cast<char>(byte));
        foldAscii =
            foldAscii && foldTable[byte] == static_cast<char>(AsciiLower(static_cast<char>(byte)));
      }
    foldFacet = &facet;
  }
  if (!foldByTable) {
    into.assign(name, length);
    foldFacet->tolower(&into[0], &into[0] + length);
    return into;
  }
  char *out = &into[0];
  std::size_t i = 0;
  if (foldAscii)
    for (; i + sizeof(std::uint64_t) <= length; i += sizeof(std::uint64_t)) {
      std::uint64_t word;
      std::memcpy(&word, name + i, sizeof word);
      word = AsciiLowerWord(word);
      std::memcpy(out + i, &word, sizeof word);
    }
  for (; i < length; ++i)
    out[i] = foldTable[static_cast<unsigned char>(name[i])];
  return into;
}

// An end tag's name is the start tag's own pointer, so the name folded at
// the start is found again by that pointer. Entries above the one found
// belong to elements whose end was not reported; they go with it.
const std::string &TCIMXMLParser::FoldStartName(const char *name) {
  if (openNameCount == openNames.size())
    openNames.emplace_back();
  TOpenName &open = openNames[openNameCount++];
  open.source = name;
  return FoldElementName(name, open.folded);
}

const std::string &TCIMXMLParser::FoldEndName(const char *name) {
  for (std::size_t at = openNameCount; at > 0; --at)
    if (openNames[at - 1].source == name) {
      openNameCount = at - 1;
      return openNames[at - 1].folded;
    }
  return FoldElementName(name, foldedName);
}

void TCIMXMLParser::StartElement(const char *name, TAttributes &attributes) {
  mapAttributes.clear();
  for (const auto &attribute : attributes)
    mapAttributes.push_back(TXmlAttribute{attribute.first, attribute.second});
  const EStartVerdict verdict = TCIMXMLParser::StartElementList(
      name, TXmlAttributeList(mapAttributes.data(), mapAttributes.size()));
  // The tokenizer learns of the two rejections that change how it reads on
  // through these entries. insert() keeps an entry the element already had.
  if (verdict == EStartVerdict::kFormatRejected)
    attributes.insert(TAttributes::value_type(kMarkerInvalidFormat, "kORVStatusInvalidFormat"));
  else if (verdict == EStartVerdict::kValueRejected)
    attributes.insert(TAttributes::value_type(kMarkerInvalidValue, "kORVStatusInvalidProperty"));
}

bool TCIMXMLParser::ReadsAttributeLists() const {
  return typeid(*this) == typeid(TCIMXMLParser);
}

TXmlParser::EStartVerdict TCIMXMLParser::StartElementList(const char *name,
                                                          const TXmlAttributeList &attributes) {
  poppedStates.clear();
  const std::string &folded = FoldStartName(name);
  // A rejected element's end tag pops its parent, so a broken document can
  // empty the stack; a start tag then has no state to go to.
  if (stateStack.empty() || !stateStack.back())
    throw TORVException();
  const TXmlAttributeList &read =
      readOptions.grammar == ECIMXMLGrammar::kFull ? DecodeAttributes(attributes) : attributes;
  TParseState &top = *stateStack.back();
  const std::size_t depth = stateStack.size();
  try {
    top.ChildElement(*this, folded, read);
  } catch (TORVException &ex) {
    if (readOptions.grammar == ECIMXMLGrammar::kFull) {
      // The full grammar drops a rejected element with all it holds, so
      // that its content and end tag reach no other state. What the object
      // model refused has no line yet.
      if (ex.GetStatusCode() != kORVStatusInvalidDocument)
        LogParseError("CIM-XML Parser line " + std::to_string(GetCurLine()) + ":Element " +
                      std::string(name != nullptr ? name : "") + " dropped: " + ex.what());
      stateStack.resize(std::min(stateStack.size(), depth));
      stateStack.push_back(boost::make_shared<TStateDropped>());
      return EStartVerdict::kAccepted;
    }
    // The message is already logged where the exception was raised.
    switch (ex.GetStatusCode()) {
    case kORVStatusInvalidFormat:
      return EStartVerdict::kFormatRejected;
    case kORVStatusInvalidProperty:
      return EStartVerdict::kValueRejected;
    default:
      break;
    }
  }
  return EStartVerdict::kAccepted;
}

void TCIMXMLParser::EndElement(const char *name) {
  const std::string &folded = FoldEndName(name);
  if (stateStack.empty() || !stateStack.back())
    throw TORVException();
  // The state pops itself as its last action; Pop keeps it alive until the
  // call is over.
  TParseState &top = *stateStack.back();
  try {
    top.ElementEnd(*this, folded);
  } catch (TORVException &ex) {
    LogParseError(std::string("TCIMXMLParser: EndElement: Threw exception ") + ex.what() +
                  " on line " + std::to_string(GetCurLine()));
    if (!stateStack.empty())
      stateStack.pop_back();
  }
  poppedStates.clear();
}

void TCIMXMLParser::processingInstruction(const char *, const char *) {}

void TCIMXMLParser::characters(const char *data, unsigned int length) {
  if (length == 0)
    return;
  if (readOptions.grammar == ECIMXMLGrammar::kFull)
    AppendXmlText(characterData, data, length);
  else
    characterData.append(data, length);
}

void TCIMXMLParser::CharacterError(const char *message) {
  if (readOptions.grammar != ECIMXMLGrammar::kFull)
    FatalError(message);
  LogParseError("CIM-XML Parser line " + std::to_string(GetCurLine()) + ":" + message);
}

void TCIMXMLParser::AppendXmlText(std::string &to, const char *data, std::size_t length) {
  std::size_t run = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(data[i]);
    if (byte >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r')
      continue;
    to.append(data + run, i - run);
    run = i + 1;
    char code[8];
    std::snprintf(code, sizeof code, "%04X", static_cast<unsigned>(byte));
    CharacterError((std::string("Character U+") + code + " is not an XML character").c_str());
  }
  to.append(data + run, length - run);
}

// The tokenizer checked every reference of an attribute value; only their
// meaning is left to read. As XML 1.0 normalizes attribute values, a line
// end, line feed or tab written as itself is a space; written as a
// character reference it stays.
TXmlAttributeList TCIMXMLParser::DecodeAttributes(const TXmlAttributeList &attributes) {
  static const std::pair<const char *, char> kNamed[] = {
      {"lt;", '<'}, {"gt;", '>'}, {"amp;", '&'}, {"apos;", '\''}, {"quot;", '"'}};
  const auto isClean = [](const TXmlAttribute &attribute) {
    for (char c : attribute.value)
      if (c == '&' || static_cast<unsigned char>(c) < 0x20)
        return false;
    return true;
  };
  // Most tags have nothing to decode: their list is read as it is.
  if (std::all_of(attributes.begin(), attributes.end(), isClean))
    return attributes;
  decodedAttributes.assign(attributes.begin(), attributes.end());
  // Sized once, so that no string moves while the list points into it.
  if (decodedValues.size() < attributes.Size())
    decodedValues.resize(attributes.Size());
  for (std::size_t index = 0; index < decodedAttributes.size(); ++index) {
    TXmlAttribute &attribute = decodedAttributes[index];
    if (isClean(attribute))
      continue;
    const std::string_view raw = attribute.value;
    std::string &value = decodedValues[index];
    value.clear();
    std::string literal;
    for (std::size_t at = 0; at < raw.size();) {
      const std::size_t amp = raw.find('&', at);
      const std::size_t literalEnd = amp == std::string::npos ? raw.size() : amp;
      literal.assign(raw, at, literalEnd - at);
      for (std::size_t i = 0; i < literal.size(); ++i)
        if (literal[i] == '\r' && i + 1 < literal.size() && literal[i + 1] == '\n')
          literal.erase(i, 1);
      for (char &c : literal)
        if (c == '\t' || c == '\n' || c == '\r')
          c = ' ';
      AppendXmlText(value, literal.data(), literal.size());
      if (amp == std::string::npos)
        break;
      const std::size_t semicolon = raw.find(';', amp);
      if (semicolon == std::string::npos) {
        value.append(raw, amp, std::string::npos);
        break;
      }
      std::string reference(raw.substr(amp + 1, semicolon - amp));
      for (char &c : reference)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      at = semicolon + 1;
      if (reference[0] == '#') {
        const bool hex = reference.size() > 1 && reference[1] == 'x';
        const unsigned long code =
            std::strtoul(reference.c_str() + (hex ? 2 : 1), nullptr, hex ? 16 : 10);
        if (code > 0x10FFFF || !IsXmlChar(static_cast<std::uint32_t>(code))) {
          CharacterError(
              ("Character reference &" + reference + " is not an XML character").c_str());
          continue;
        }
        char bytes[4];
        value.append(bytes, EncodeUtf8(static_cast<std::uint32_t>(code), bytes));
        continue;
      }
      for (const auto &named : kNamed)
        if (reference == named.first)
          value += named.second;
    }
    attribute.value = value;
  }
  return TXmlAttributeList(decodedAttributes.data(), decodedAttributes.size());
}

void TCIMXMLParser::notationDecl(const char *, const char *, const char *) {}

void TCIMXMLParser::FatalError(const char *message) {
  LogParseError("CIM-XML Parser line " + std::to_string(GetCurLine()) + ":" +
                (message != nullptr ? message : ""));
  throw TORVException(TORVStatusCode(kORVStatusInvalidDocument));
}

void TCIMXMLParser::SetReadOptions(const TCIMXMLReadOptions &options) {
  readOptions = options;
}

std::vector<boost::shared_ptr<ICIMClass>> TCIMXMLParser::GetClassesCollected() const {
  return classesCollected;
}

std::vector<boost::shared_ptr<ICIMInstance>> TCIMXMLParser::GetInstancesCollected() const {
  return instancesCollected;
}

void TCIMXMLParser::SetQN402Mode() {
  qn402Mode = true;
}

TCIMType TCIMXMLParser::DeclaredPropertyType(const boost::shared_ptr<ICIMClass> &cls,
                                             const std::string &name) {
  TDeclaredTypes &known = declaredTypes[cls.get()];
  if (!known.cls)
    known.cls = cls;
  const std::size_t count = known.types.size();
  for (std::size_t tried = 0; tried < count; ++tried) {
    const std::size_t at = (known.next + tried) % count;
    if (known.types[at].first == name) {
      known.next = (at + 1) % count;
      return known.types[at].second;
    }
  }
  const boost::shared_ptr<ICIMPropertyDecl> declaration = cls->GetProperty(name);
  if (!declaration)
    throw TORVException(TORVStatusCode(kORVStatusNullObject));
  const TCIMType type = declaration->GetType();
  if (count < kKnownTypes)
    known.types.emplace_back(name, type);
  return type;
}

boost::shared_ptr<ICIMNamespace> TCIMXMLParser::LockNamespace() const {
  boost::shared_ptr<ICIMNamespace> ns = cimNamespace.lock();
  if (!ns)
    throw TORVException(TORVStatusCode(kORVStatusNamespaceGone));
  return ns;
}

// ---------------------------------------------------------------------------
// Attribute handlers and converters

bool TCIMXMLParser::HandleCIMName(TAttributeEntry attribute, std::string *name) {
  if (!NameIs(attribute, "name"))
    return false;
  StoreText(attribute, name);
  return true;
}

bool TCIMXMLParser::HandleCIMType(TAttributeEntry attribute, TCIMType *type) {
  if (!NameIs(attribute, "type"))
    return false;
  const TCIMType parsed{std::string(attribute->value)};
  if (type != nullptr)
    *type = parsed;
  return true;
}

bool TCIMXMLParser::HandleClassName(TAttributeEntry attribute, std::string *className) {
  if (!NameIs(attribute, "classname"))
    return false;
  StoreText(attribute, className);
  return true;
}

bool TCIMXMLParser::HandleClassOrigin(TAttributeEntry attribute, std::string *classOrigin) {
  if (!NameIs(attribute, "classorigin"))
    return false;
  StoreText(attribute, classOrigin);
  return true;
}

bool TCIMXMLParser::HandlePropagated(TAttributeEntry attribute, bool &propagated) {
  if (!NameIs(attribute, "propagated"))
    return false;
  propagated = ConvertBool(attribute->value);
  return true;
}

bool TCIMXMLParser::HandleQualifierFlavor(TAttributeEntry attribute,
                                          ICIMQualifierDecl::EFlavor *flavor) {
  std::uint32_t bit;
  if (NameIs(attribute, "overridable"))
    bit = ICIMQualifierDecl::kFlavorOverridable;
  else if (NameIs(attribute, "tosubclass"))
    bit = ICIMQualifierDecl::kFlavorToSubclass;
  else if (NameIs(attribute, "translatable"))
    bit = ICIMQualifierDecl::kFlavorTranslatable;
  else
    return false;
  if (flavor != nullptr) {
    const std::uint32_t bits = ConvertBool(attribute->value) ? (*flavor | bit) : (*flavor & ~bit);
    *flavor = static_cast<ICIMQualifierDecl::EFlavor>(bits);
  }
  return true;
}

bool TCIMXMLParser::HandleReferenceClass(TAttributeEntry attribute, std::string *referenceClass) {
  if (!NameIs(attribute, "referenceclass"))
    return false;
  StoreText(attribute, referenceClass);
  return true;
}

bool TCIMXMLParser::HandleSuperClass(TAttributeEntry attribute, std::string *superClass) {
  if (!NameIs(attribute, "superclass"))
    return false;
  StoreText(attribute, superClass);
  return true;
}

bool TCIMXMLParser::HandleArraySize(TAttributeEntry attribute, unsigned &arraySize) {
  if (!NameIs(attribute, "arraysize"))
    return false;
  arraySize = ConvertUnsignedInt(attribute->value);
  return true;
}

// The map entry's handlers read the entry through the list's.
bool TCIMXMLParser::HandleCIMName(TAttributes::iterator &attribute, std::string *name) {
  const TXmlAttribute entry = EntryOf(attribute);
  return HandleCIMName(&entry, name);
}
bool TCIMXMLParser::HandleCIMType(TAttributes::iterator &attribute, TCIMType *type) {
  const TXmlAttribute entry = EntryOf(attribute);
  return HandleCIMType(&entry, type);
}
bool TCIMXMLParser::HandleClassName(TAttributes::iterator &attribute, std::string *className) {
  const TXmlAttribute entry = EntryOf(attribute);
  return HandleClassName(&entry, className);
}
bool TCIMXMLParser::HandleClassOrigin(TAttributes::iterator &attribute, std::string *classOrigin) {
  const TXmlAttribute entry = EntryOf(attribute);
  return HandleClassOrigin(&entry, classOrigin);
}
bool TCIMXMLParser::HandlePropagated(TAttributes::iterator &attribute, bool &propagated) {
  const TXmlAttribute entry = EntryOf(attribute);
  return HandlePropagated(&entry, propagated);
}
bool TCIMXMLParser::HandleQualifierFlavor(TAttributes::iterator &attribute,
                                          ICIMQualifierDecl::EFlavor *flavor) {
  const TXmlAttribute entry = EntryOf(attribute);
  return HandleQualifierFlavor(&entry, flavor);
}
bool TCIMXMLParser::HandleReferenceClass(TAttributes::iterator &attribute,
                                         std::string *referenceClass) {
  const TXmlAttribute entry = EntryOf(attribute);
  return HandleReferenceClass(&entry, referenceClass);
}
bool TCIMXMLParser::HandleSuperClass(TAttributes::iterator &attribute, std::string *superClass) {
  const TXmlAttribute entry = EntryOf(attribute);
  return HandleSuperClass(&entry, superClass);
}
bool TCIMXMLParser::HandleArraySize(TAttributes::iterator &attribute, unsigned &arraySize) {
  const TXmlAttribute entry = EntryOf(attribute);
  return HandleArraySize(&entry, arraySize);
}

// Reads as a stream in alphabetic bool mode would (the words of the classic
// locale), without building a stream for every attribute: whitespace, then
// "true" decides; whatever follows the word is not looked at.
bool TCIMXMLParser::ConvertBool(std::string &text) {
  return ConvertBool(std::string_view(text));
}

bool TCIMXMLParser::ConvertBool(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && IsStreamSpace(text[at]))
    ++at;
  return text.compare(at, 4, "true") == 0;
}

// Reads as a stream reads an unsigned int in the classic locale: whitespace,
// an optional sign, decimal digits. A minus sign negates modulo 2^32 and a
// number too large for 32 bits gives the largest value, both as streams do;
// no digit at all gives 0.
unsigned TCIMXMLParser::ConvertUnsignedInt(std::string &text) {
  return ConvertUnsignedInt(std::string_view(text));
}

unsigned TCIMXMLParser::ConvertUnsignedInt(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && IsStreamSpace(text[at]))
    ++at;
  bool negative = false;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
    negative = text[at] == '-';
    ++at;
  }
  unsigned result = 0;
  bool anyDigit = false;
  bool overflow = false;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    anyDigit = true;
    const auto digit = static_cast<unsigned>(text[at] - '0');
    if (result > (UINT_MAX - digit) / 10)
      overflow = true;
    else
      result = result * 10 + digit;
  }
  if (!anyDigit)
    return 0;
  if (overflow)
    return UINT_MAX;
  return negative ? 0u - result : result;
}

TCIMValue TCIMXMLParser::ParseValue(TCIMType type, std::string &text) {
  TCIMValue result;
  // Only a reference's text needs the namespace; for the rest, asking
  // whether it is still there costs no change to its counts.
  boost::shared_ptr<ICIMNamespace> ns;
  if (type == kCIMTypeReference)
    ns = LockNamespace();
  else if (cimNamespace.expired())
    throw TORVException(TORVStatusCode(kORVStatusNamespaceGone));
  try {
    result = TCIMValue(TCIMType(type), text, ns);
  } catch (TORVException &ex) {
    // Some writers quote a char16 as MOF does ('a'); the character between
    // the quotes is what they mean.
    if (readOptions.grammar == ECIMXMLGrammar::kFull && type == kCIMTypeChar16 &&
        text.size() >= 3 && text.front() == '\'' && text.back() == '\'') {
      std::string unquoted = text.substr(1, text.size() - 2);
      if (unquoted.find('\'') == std::string::npos)
        return ParseValue(type, unquoted);
    }
    if (readOptions.grammar == ECIMXMLGrammar::kFull) {
      // The full grammar says what it could not read, datetimes included,
      // and leaves the value null of its type.
      // A long text is cut: the line has to say which value, not repeat it.
      constexpr std::size_t kShown = 64;
      const std::string shown = text.size() > kShown ? text.substr(0, kShown) + "..." : text;
      LogParseError("CIM-XML Parser line " + std::to_string(GetCurLine()) + ":Value '" + shown +
                    "' is not a valid " + type.GetName() + ": " + ex.what());
      return TCIMValue(type, 0);
    }
    // A bad datetime must not cost the whole property: it is read as the
    // epoch and said so. Other unreadable text leaves the value null.
    if (ex.GetStatusCode() == kORVStatusInvalidDateTime) {
      const TCIMDateTime epoch(1970, 1, 1, 0, 0, 0, 0, 0);
      LogParseError("Invalid datetime found on line " + std::to_string(GetCurLine()) +
                    ".  Defaulting the datetime to " + epoch.ToUIString() + ".");
      result = TCIMValue(epoch);
    }
  }
  return result;
}

// ---------------------------------------------------------------------------
// Parse states

TCIMXMLParser::TParseState::~TParseState() = default;

void TCIMXMLParser::TParseState::ChildElement(TCIMXMLParser &, const std::string &,
                                              const TAttributeList &) {}

void TCIMXMLParser::TParseState::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  Pop(parser);
}

void TCIMXMLParser::TParseState::ElementStart(TCIMXMLParser &, const TAttributeList &) {}

void TCIMXMLParser::TParseState::AcceptChild(TCIMXMLParser &parser, const std::string &name,
                                             const TAttributeList &attributes,
                                             const TChildRow *rows, std::size_t rowCount,
                                             std::int32_t lastPhase, EMiss miss) {
  if (phase < 0 || phase > lastPhase)
    parser.FatalError("Parser state corrupt");
  const TChildRow *found = nullptr;
  const std::uint8_t grammar = IsFull(parser) ? kFullGrammar : kClassicGrammar;
  for (std::size_t i = 0; i < rowCount && found == nullptr; ++i) {
    const TChildRow &row = rows[i];
    if ((row.grammars & grammar) != 0 && phase >= row.firstPhase && phase <= row.lastPhase &&
        name.size() == row.nameLength && SameBytes(name.data(), row.name, name.size()))
      found = &row;
  }
  if (found == nullptr) {
    if (miss == EMiss::kFallThrough)
      phase = lastPhase;
    UnexpectedChild(parser, name, attributes);
    return;
  }
  // The phase moves before the child starts, so a child whose own start tag
  // fails still counts as seen.
  if (found->phaseAfter != kKeepPhase)
    phase = found->phaseAfter;
  if (found->enter != nullptr) {
    TParseStatePtr child = found->enter(parser, *this);
    if (grammar == kFullGrammar)
      child->line = parser.GetCurLine();
    parser.stateStack.push_back(std::move(child));
  }
  parser.stateStack.back()->ElementStart(parser, attributes);
}

void TCIMXMLParser::TParseState::UnexpectedChild(TCIMXMLParser &parser, const std::string &name,
                                                 const TAttributeList &) {
  parser.FatalError(("Unexpected element " + name).c_str());
}

void TCIMXMLParser::TParseState::RequireComplete(TCIMXMLParser &parser,
                                                 std::int32_t lastPhase) const {
  if (phase != lastPhase)
    parser.FatalError("CIM element syntax error");
}

void TCIMXMLParser::TParseState::Log(const std::string &text) {
  LogParseError(text);
}

void TCIMXMLParser::TParseState::Push(TCIMXMLParser &parser, const TParseStatePtr &state,
                                      const TAttributeList &attributes) {
  assert(state && "a pushed state must exist");
  if (!state)
    return;
  parser.stateStack.push_back(state);
  state->ElementStart(parser, attributes);
}

// A popped state may still be running (it pops itself as its last action,
// or hands its child on after popping), so it is released only when the
// parser's event is over.
void TCIMXMLParser::TParseState::Pop(TCIMXMLParser &parser) {
  if (parser.stateStack.empty())
    return;
  parser.poppedStates.push_back(std::move(parser.stateStack.back()));
  parser.stateStack.pop_back();
}

boost::shared_ptr<ICIMNamespace> TCIMXMLParser::TParseState::Scratch(TCIMXMLParser &parser) {
  if (!parser.scratchNamespace)
    parser.scratchNamespace = CreateCIMNamespace(parser.LockNamespace()->GetName());
  return parser.scratchNamespace;
}

boost::shared_ptr<ICIMNamespace> TCIMXMLParser::TParseState::RenewScratch(TCIMXMLParser &parser) {
  parser.scratchNamespace.reset();
  return Scratch(parser);
}

boost::shared_ptr<ICIMClass> TCIMXMLParser::TParseState::FindClass(TCIMXMLParser &parser,
                                                                   const std::string &name) {
  if (name.empty())
    return boost::shared_ptr<ICIMClass>();
  // A registering parse finds the namespace's classes first; one that only
  // returns finds what it read itself first.
  boost::shared_ptr<ICIMNamespace> ns = parser.LockNamespace();
  const bool scratchFirst = !Registers(parser);
  if (scratchFirst && parser.scratchNamespace && parser.scratchNamespace->HasClass(name))
    return parser.scratchNamespace->GetClass(name);
  if (ns->HasClass(name))
    return ns->GetClass(name);
  if (!scratchFirst && parser.scratchNamespace && parser.scratchNamespace->HasClass(name))
    return parser.scratchNamespace->GetClass(name);
  return boost::shared_ptr<ICIMClass>();
}

void TCIMXMLParser::TParseState::Deliver(TCIMXMLParser &parser, TCIMXMLObject &object) {
  object.sequence = parser.objectsDelivered++;
  if (parser.operationOpen != nullptr) {
    object.operation = static_cast<std::ptrdiff_t>(parser.operationOpen->sequence);
    object.role = parser.roleOpen;
  }
  if (parser.handler != nullptr) {
    parser.handler->Object(object);
    return;
  }
  if (object.kind == TCIMXMLObject::EKind::kClass)
    parser.classesCollected.push_back(object.cimClass);
  else if (object.kind == TCIMXMLObject::EKind::kInstance)
    parser.instancesCollected.push_back(object.instance);
}

void TCIMXMLParser::TParseState::Deliver(TCIMXMLParser &parser, TCIMXMLOperation &operation) {
  ++parser.operationsDelivered;
  if (parser.handler != nullptr)
    parser.handler->Operation(operation);
}

void TCIMXMLParser::TParseState::Deliver(TCIMXMLParser &parser, TCIMXMLMessage &message) {
  ++parser.messagesDelivered;
  if (parser.handler != nullptr)
    parser.handler->Message(message);
}

void TCIMXMLParser::TParseState::DeliverClass(TCIMXMLParser &parser,
                                              const boost::shared_ptr<ICIMClass> &cls,
                                              const TCIMXMLPath *path, unsigned line) {
  ICIMClass &committed = Require(cls);
  committed.Commit();
  TCIMXMLObject object;
  object.kind = TCIMXMLObject::EKind::kClass;
  object.cimClass = cls;
  object.registered = committed.GetNamespace() == parser.cimNamespace.lock();
  object.hasPath = path != nullptr;
  if (path != nullptr)
    object.path = *path;
  object.line = line;
  Deliver(parser, object);
}

void TCIMXMLParser::TParseState::DeliverInstance(TCIMXMLParser &parser,
                                                 const boost::shared_ptr<ICIMInstance> &instance,
                                                 const TCIMXMLPath *path, unsigned line) {
  ICIMInstance &read = Require(instance);
  TCIMXMLObject object;
  boost::shared_ptr<ICIMClass> cls = read.GetClass();
  if (Registers(parser) && cls && cls->GetNamespace() == parser.cimNamespace.lock()) {
    try {
      read.Commit();
      object.registered = true;
    } catch (TORVException &error) {
      // Handed back all the same: a second copy of an instance is still
      // what the document says.
      Report(parser, "Instance of " + read.GetClassName() + " not registered: " + error.what());
    }
  }
  object.kind = TCIMXMLObject::EKind::kInstance;
  object.instance = instance;
  object.hasPath = path != nullptr;
  if (path != nullptr)
    object.path = *path;
  object.line = line;
  Deliver(parser, object);
}

void TCIMXMLParser::TParseState::DeliverPath(TCIMXMLParser &parser, const TCIMXMLPath &path,
                                             unsigned line) {
  TCIMXMLObject object;
  object.kind = path.kind == TCIMXMLPath::EKind::kInstance ? TCIMXMLObject::EKind::kInstancePath
                                                           : TCIMXMLObject::EKind::kClassPath;
  object.hasPath = true;
  object.path = path;
  object.line = line;
  Deliver(parser, object);
}

void TCIMXMLParser::TParseState::Report(TCIMXMLParser &parser, const std::string &message) {
  LogParseError("CIM-XML Parser line " + std::to_string(parser.GetCurLine()) + ":" + message);
}

namespace {

/// How deep the embedded objects now being read are nested, in this thread.
thread_local unsigned embeddingDepth = 0;

struct TEmbeddingLevel {
  TEmbeddingLevel() { ++embeddingDepth; }
  ~TEmbeddingLevel() { --embeddingDepth; }
  TEmbeddingLevel(const TEmbeddingLevel &) = delete;
  TEmbeddingLevel &operator=(const TEmbeddingLevel &) = delete;
};

} // namespace

void TCIMXMLParser::TParseState::ReadEmbedded(TCIMXMLParser &parser, TCIMValue &value,
                                              const std::string &what) {
  if (value.IsNull() || value.GetType().GetElementType() != kCIMTypeString)
    return;
  if (embeddingDepth >= kMaxEmbedding) {
    Report(parser, what + ": embedded objects nested more than " + std::to_string(kMaxEmbedding) +
                       " deep are kept as text");
    return;
  }
  const TEmbeddingLevel level;
  const auto readOne = [&](TCIMValue &text) {
    if (text.IsNull())
      return;
    // Whitespace around the element is layout (a CDATA section that starts
    // on its own line, say); a document may not start with it, a fragment may.
    const std::string &markup = text.GetString();
    const std::size_t start = markup.find_first_not_of(" \t\r\n");
    std::vector<char> buffer(markup.begin() + static_cast<std::ptrdiff_t>(start == std::string::npos
                                                                              ? markup.size()
                                                                              : start),
                             markup.end());
    buffer.push_back('\0');
    TCIMXMLParser inner(Namespace(parser));
    inner.SetReadOptions({ECIMXMLGrammar::kFull, ECIMXMLRegistration::kReturnOnly});
    TCIMXMLResult result;
    inner.SetHandler(&result);
    try {
      inner.Parse(buffer.data());
    } catch (TORVException &) {
      // Logged by the inner parse; what it handed over before counts.
    }
    const std::vector<TCIMXMLObject> &objects = result.GetObjects();
    if (objects.size() == 1 && objects.front().instance)
      text.SetEmbeddedObject(objects.front().instance);
    else if (objects.size() == 1 && objects.front().cimClass)
      text.SetEmbeddedObject(objects.front().cimClass);
    else
      Report(parser, what + " holds no embedded INSTANCE or CLASS: it stays text");
  };
  if (!value.IsArray()) {
    readOne(value);
    return;
  }
  std::vector<TCIMValue> elements = value.GetElements();
  for (TCIMValue &element : elements)
    readOne(element);
  value.Set(value.GetType(), value.GetCount(), std::move(elements));
}

bool TCIMXMLParser::TParseState::DeclaresEmbedded(ICIMQualifiedObject &declaration) {
  const TCIMValue object = declaration.GetQualifier("EmbeddedObject")->GetValue();
  if (!object.IsNull() && object.GetType() == kCIMTypeBoolean && object.GetBoolean())
    return true;
  return !declaration.GetQualifier("EmbeddedInstance")->GetValue().IsNull();
}

void TCIMXMLParser::TParseState::ThrowMissingObject() {
  throw TORVException(TORVStatusCode(kORVStatusNullObject));
}

} // namespace NVRNORV20
