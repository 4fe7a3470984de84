#include "write/CIMXMLWriter.h"

#include "core_api/CIMReference.h"
#include "core_api/Logger.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <ostream>
#include <set>
#include <string_view>
#include <utility>

namespace NVRNORV20 {

namespace {

/// As deep as the parser reads references inside references.
constexpr std::size_t kMaxReferenceDepth = 16;
/// A document reaches the stream in pieces of about this size.
constexpr std::size_t kFlushSize = std::size_t{1} << 20;

struct TFlavorAttribute {
  const char *name;
  std::uint32_t bit;
  /// What a reader that follows the document type assumes when it is
  /// missing.
  bool dtdDefault;
};

constexpr TFlavorAttribute kFlavorAttributes[] = {
    {"OVERRIDABLE", ICIMQualifierDecl::kFlavorOverridable, true},
    {"TOSUBCLASS", ICIMQualifierDecl::kFlavorToSubclass, true},
    {"TRANSLATABLE", ICIMQualifierDecl::kFlavorTranslatable, false},
};

struct TScopeAttribute {
  const char *name;
  std::uint32_t bit;
};

// In the document type's order.
constexpr TScopeAttribute kScopeAttributes[] = {
    {"CLASS", ICIMQualifierDecl::kScopeClass},
    {"ASSOCIATION", ICIMQualifierDecl::kScopeAssociation},
    {"REFERENCE", ICIMQualifierDecl::kScopeReference},
    {"PROPERTY", ICIMQualifierDecl::kScopeProperty},
    {"METHOD", ICIMQualifierDecl::kScopeMethod},
    {"PARAMETER", ICIMQualifierDecl::kScopeParameter},
    {"INDICATION", ICIMQualifierDecl::kScopeIndication},
};

/// A character of XML 1.0's Char production.
bool IsXmlChar(std::uint64_t c) {
  return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
         (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

/// Bytes that text and attribute values carry as they are.
bool IsPlain(unsigned char byte) {
  return byte >= 0x20 && byte < 0x80 && byte != '&' && byte != '<' && byte != '>' && byte != '"';
}

/// The UTF-8 character at text[i] (no overlong form, no surrogate): its
/// length and code point; 0 when the byte there begins none.
std::size_t DecodeUtf8(std::string_view text, std::size_t i, std::uint32_t &codePoint) {
  const auto lead = static_cast<unsigned char>(text[i]);
  std::size_t length = 0;
  std::uint32_t least = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    least = 0x80;
    codePoint = lead & 0x1Fu;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    least = 0x800;
    codePoint = lead & 0x0Fu;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    least = 0x10000;
    codePoint = lead & 0x07u;
  } else {
    codePoint = lead;
    return lead < 0x80 ? 1 : 0;
  }
  if (text.size() - i < length)
    return 0;
  for (std::size_t k = 1; k < length; ++k) {
    const auto next = static_cast<unsigned char>(text[i + k]);
    if ((next & 0xC0u) != 0x80u)
      return 0;
    codePoint = (codePoint << 6) | (next & 0x3Fu);
  }
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return codePoint < least || surrogate || codePoint > 0x10FFFF ? 0 : length;
}

std::string CodePointName(std::uint32_t codePoint) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string digits;
  for (int shift = codePoint > 0xFFFF ? 20 : 12; shift >= 0; shift -= 4)
    digits += kHex[(codePoint >> shift) & 0xFu];
  return "U+" + digits;
}

std::string TypeText(TCIMType type) {
  const std::string &name = type.GetName();
  return (name.empty() ? std::string("none") : name) + (type.IsArray() ? "[]" : "");
}

/// The element of a property of the type; null for one that has none.
const char *PropertyElement(TCIMType type) {
  const TCIMType element = type.GetElementType();
  if (element == kCIMTypeNone)
    return nullptr;
  if (element == kCIMTypeReference)
    return type.IsArray() ? nullptr : "PROPERTY.REFERENCE";
  return type.IsArray() ? "PROPERTY.ARRAY" : "PROPERTY";
}

const char *ParameterElement(TCIMType type) {
  const TCIMType element = type.GetElementType();
  if (element == kCIMTypeNone)
    return nullptr;
  if (element == kCIMTypeReference)
    return type.IsArray() ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE";
  return type.IsArray() ? "PARAMETER.ARRAY" : "PARAMETER";
}

/// KEYVALUE's VALUETYPE for a key of the type.
const char *KeyValueType(TCIMType type) {
  switch (static_cast<ECIMType>(type)) {
  case kCIMTypeBoolean:
    return "boolean";
  case kCIMTypeString:
  case kCIMTypeChar16:
  case kCIMTypeDateTime:
    return "string";
  default:
    return "numeric";
  }
}

/// "object" or "instance" for a string that the declaration marks as an
/// embedded object; null otherwise.
const char *DeclaredEmbedded(ICIMQualifiedObject &declaration) {
  if (declaration.HasQualifier("EmbeddedInstance") &&
      !declaration.GetQualifier("EmbeddedInstance")->GetValue().IsNull())
    return "instance";
  if (declaration.HasQualifier("EmbeddedObject") &&
      static_cast<bool>(declaration.GetQualifier("EmbeddedObject")->GetValue()))
    return "object";
  return nullptr;
}

/// The same for a value without declaration, by the object it holds.
const char *HeldEmbedded(const TCIMValue &value) {
  if (value.IsNull())
    return nullptr;
  if (value.IsArray()) {
    for (const TCIMValue &element : value.GetElements())
      if (const char *kind = HeldEmbedded(element))
        return kind;
    return nullptr;
  }
  if (value.GetEmbeddedInstance())
    return "instance";
  return value.GetEmbeddedClass() ? "object" : nullptr;
}

std::string Folded(std::string name) {
  for (char &c : name)
    if (c >= 'A' && c <= 'Z')
      c = static_cast<char>(c - 'A' + 'a');
  return name;
}

bool SameDeclaration(ICIMQualifierDecl &first, ICIMQualifierDecl &second) {
  return first.GetType() == second.GetType() && first.GetArraySize() == second.GetArraySize() &&
         first.GetScope() == second.GetScope() && first.GetFlavor() == second.GetFlavor() &&
         first.GetDefaultValue() == second.GetDefaultValue();
}

/// The classes without a second one of the same name, which a namespace
/// cannot hold: each such is left out with a line.
std::vector<boost::shared_ptr<ICIMClass>>
Once(const std::vector<boost::shared_ptr<ICIMClass>> &classes) {
  std::set<std::string> names;
  std::vector<boost::shared_ptr<ICIMClass>> once;
  for (const auto &cls : classes) {
    if (!cls)
      continue;
    if (names.insert(Folded(cls->GetName())).second)
      once.push_back(cls);
    else
      TRootObject::Log(3, "CIM-XML writer: class '" + cls->GetName() +
                              "' left out: another of that name came first");
  }
  return once;
}

/// The classes with each after its superclass where both are given,
/// otherwise in the order given. Each class names one superclass, so
/// following that chain from each class places all of it at once.
std::vector<boost::shared_ptr<ICIMClass>>
SuperclassOrder(const std::vector<boost::shared_ptr<ICIMClass>> &classes) {
  std::map<std::string, std::size_t> byName;
  for (std::size_t i = 0; i < classes.size(); ++i)
    byName.emplace(Folded(classes[i]->GetName()), i);
  enum class EState : std::uint8_t { kNew, kOpen, kPlaced };
  std::vector<EState> states(classes.size(), EState::kNew);
  std::vector<boost::shared_ptr<ICIMClass>> order;
  std::vector<std::size_t> chain;
  for (std::size_t first = 0; first < classes.size(); ++first) {
    chain.clear();
    for (std::size_t i = first; i < classes.size() && states[i] == EState::kNew;) {
      states[i] = EState::kOpen;
      chain.push_back(i);
      const auto found = byName.find(Folded(classes[i]->GetSuperClassName()));
      i = found == byName.end() ? classes.size() : found->second;
    }
    for (auto i = chain.rbegin(); i != chain.rend(); ++i) {
      states[*i] = EState::kPlaced;
      order.push_back(classes[*i]);
    }
  }
  return order;
}

/// Builds the text of elements in memory and hands it to the stream in
/// large pieces. An element is opened with Start and always ended with
/// End: one that got no child or text by then is written empty ("<X/>").
class TWriter {
public:
  explicit TWriter(std::ostream &target) : stream(target) {}

  void Flush() {
    stream.write(out.data(), static_cast<std::streamsize>(out.size()));
    out.clear();
  }

  void Document(const TCIMXMLDeclaration &declaration);
  void QualifierDecl(ICIMQualifierDecl &declaration);
  void Class(ICIMClass &cls);
  /// assignedOnly: only the properties given a value, for a document that
  /// holds the class, whose defaults give the rest.
  void Instance(ICIMInstance &instance, bool assignedOnly = false);
  void Value(const TCIMValue &value);

private:
  /// Names the object being written, for the log, while it is in scope.
  class TWhere {
  public:
    TWhere(TWriter &writer, const char *kind, const std::string &name) : owner(writer) {
      owner.where.emplace_back(kind, &name);
    }
    ~TWhere() { owner.where.pop_back(); }
    TWhere(const TWhere &) = delete;
    TWhere &operator=(const TWhere &) = delete;

  private:
    TWriter &owner;
  };

  void Start(const char *name);
  void Attribute(const char *name, std::string_view value);
  /// "true" or "false".
  void Flag(const char *name, bool value) { Attribute(name, value ? "true" : "false"); }
  /// The element's text, which ends it.
  void Content(const char *name, std::string_view text);
  void End(const char *name);
  void Text(std::string_view text, bool attribute);
  void CharacterReference(std::uint32_t codePoint);

  void Flavors(std::uint32_t flavor, const std::uint32_t *assumed);
  void Qualifiers(ICIMQualifiedObject &object);
  void Qualifier(ICIMQualifier &qualifier);
  void Property(ICIMPropertyDecl &property);
  /// TYPE, and ARRAYSIZE of a property whose value keeps its size.
  void TypeAndSize(TCIMType type, unsigned int arraySize);
  void Method(ICIMMethod &method);
  void Parameter(ICIMParameter &parameter);
  void InstanceProperty(ICIMProperty &property);
  bool Writable(const TCIMValue &scalar);
  void Scalar(const TCIMValue &scalar);
  void ValueReference(const TCIMReference &reference);
  void NamespacePath(const std::string &name);
  void InstanceName(const TCIMReference &reference);
  void KeyBinding(const std::string &name, const TCIMValue &value);

  /// "property 'P' of class 'C'": what is being written, innermost first.
  std::string Where() const;
  void Log(const std::string &text) const;

  std::ostream &stream;
  std::string out;
  std::size_t depth = 0;
  /// The last element started has neither child nor end yet.
  bool open = false;
  std::size_t referenceDepth = 0;
  std::vector<std::pair<const char *, const std::string *>> where;
};

void TWriter::Start(const char *name) {
  if (open) {
    out += ">\n";
    ++depth;
  }
  out.append(depth, ' ');
  out += '<';
  out += name;
  open = true;
}

void TWriter::Attribute(const char *name, std::string_view value) {
  out += ' ';
  out += name;
  out += "=\"";
  Text(value, true);
  out += '"';
}

void TWriter::Content(const char *name, std::string_view text) {
  out += '>';
  Text(text, false);
  out += "</";
  out += name;
  out += ">\n";
  open = false;
}

void TWriter::End(const char *name) {
  if (open) {
    out += "/>\n";
    open = false;
    return;
  }
  --depth;
  out.append(depth, ' ');
  out += "</";
  out += name;
  out += ">\n";
}

// The one place where text becomes XML. Line ends in text and white space
// in attribute values go as references, which the reader's normalization
// leaves alone; what XML cannot carry at all is left out with one line.
void TWriter::Text(std::string_view text, bool attribute) {
  std::uint32_t unwritable = 0;
  bool hasUnwritable = false;
  bool notUtf8 = false;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t run = i;
    while (i < text.size() && IsPlain(static_cast<unsigned char>(text[i])))
      ++i;
    out.append(text.data() + run, i - run);
    if (i == text.size())
      break;
    std::uint32_t codePoint = 0;
    std::size_t length = DecodeUtf8(text, i, codePoint);
    if (length == 0) {
      notUtf8 = true;
      CharacterReference(static_cast<unsigned char>(text[i]));
      length = 1;
    } else if (codePoint == '&') {
      out += "&amp;";
    } else if (codePoint == '<') {
      out += "&lt;";
    } else if (codePoint == '>') {
      out += "&gt;";
    } else if (codePoint == '"') {
      out += attribute ? "&quot;" : "\"";
    } else if (!IsXmlChar(codePoint)) {
      if (!hasUnwritable)
        unwritable = codePoint;
      hasUnwritable = true;
    } else if (codePoint == '\r' || (attribute && (codePoint == '\t' || codePoint == '\n'))) {
      CharacterReference(codePoint);
    } else {
      out.append(text.data() + i, length);
    }
    i += length;
  }
  if (hasUnwritable)
    Log(CodePointName(unwritable) + ", which XML 1.0 cannot carry, left out of the text of " +
        Where() + " (with any other such character there)");
  if (notUtf8)
    Log("bytes that are not UTF-8 in the text of " + Where() +
        ", each written as its Latin-1 character");
}

void TWriter::CharacterReference(std::uint32_t codePoint) {
  out += "&#";
  out += std::to_string(codePoint);
  out += ';';
}

std::string TWriter::Where() const {
  std::string text;
  for (auto place = where.rbegin(); place != where.rend(); ++place)
    text += (text.empty() ? "" : " of ") + std::string(place->first) + " '" + *place->second + "'";
  return text.empty() ? std::string("a value") : text;
}

void TWriter::Log(const std::string &text) const {
  TRootObject::Log(3, "CIM-XML writer: " + text);
}

// ---- documents --------------------------------------------------------------

void TWriter::Document(const TCIMXMLDeclaration &declaration) {
  out += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
  Start("CIM");
  Attribute("CIMVERSION", "2.0");
  Attribute("DTDVERSION", "2.4");
  Start("DECLARATION");
  Start("DECLGROUP");
  NamespacePath(declaration.namespaceName);
  const auto flushed = [this] {
    if (out.size() >= kFlushSize)
      Flush();
  };
  std::map<std::string, ICIMQualifierDecl *> declared;
  for (const auto &qualifierDecl : declaration.qualifierDecls) {
    if (!qualifierDecl)
      continue;
    const auto placed = declared.emplace(Folded(qualifierDecl->GetName()), qualifierDecl.get());
    if (placed.second)
      QualifierDecl(*qualifierDecl);
    else if (!SameDeclaration(*placed.first->second, *qualifierDecl))
      Log("qualifier declaration '" + qualifierDecl->GetName() +
          "' left out: another of that name came first");
    flushed();
  }
  std::set<std::string> written;
  for (const auto &cls : SuperclassOrder(Once(declaration.classes))) {
    written.insert(Folded(cls->GetName()));
    Start("VALUE.OBJECT");
    Class(*cls);
    End("VALUE.OBJECT");
    flushed();
  }
  // A reader without the class learns the keys from the name alone.
  std::vector<ICIMInstance *> named;
  for (const auto &instance : declaration.instances) {
    if (!instance)
      continue;
    if (written.count(Folded(instance->GetClassName())) == 0) {
      named.push_back(instance.get());
      continue;
    }
    // As MOF writes it: the reader gives what is left out its class's
    // default, so its model is the same, and repeats no default.
    Start("VALUE.OBJECT");
    Instance(*instance, true);
    End("VALUE.OBJECT");
    flushed();
  }
  End("DECLGROUP");
  if (!named.empty()) {
    Start("DECLGROUP.WITHNAME");
    NamespacePath(declaration.namespaceName);
    for (ICIMInstance *instance : named) {
      Start("VALUE.NAMEDOBJECT");
      InstanceName(instance->GetPath());
      Instance(*instance);
      End("VALUE.NAMEDOBJECT");
      flushed();
    }
    End("DECLGROUP.WITHNAME");
  }
  End("DECLARATION");
  End("CIM");
}

void TWriter::NamespacePath(const std::string &name) {
  if (name.empty())
    return;
  Start("LOCALNAMESPACEPATH");
  // The reader joins the parts with "/" again, empty ones included.
  for (std::size_t begin = 0;;) {
    const std::size_t slash = name.find('/', begin);
    Start("NAMESPACE");
    Attribute("NAME", std::string_view(name).substr(begin, slash - begin));
    End("NAMESPACE");
    if (slash == std::string::npos)
      break;
    begin = slash + 1;
  }
  End("LOCALNAMESPACEPATH");
}

// ---- declarations -----------------------------------------------------------

void TWriter::QualifierDecl(ICIMQualifierDecl &declaration) {
  const TWhere here(*this, "qualifier declaration", declaration.GetName());
  const TCIMType type = declaration.GetType();
  if (type.GetElementType() == kCIMTypeNone || type.GetElementType() == kCIMTypeReference) {
    Log(Where() + " left out: CIM-XML has no qualifier of type " + TypeText(type));
    return;
  }
  Start("QUALIFIER.DECLARATION");
  Attribute("NAME", declaration.GetName());
  Attribute("TYPE", type.GetName());
  Flag("ISARRAY", declaration.IsArray());
  if (declaration.IsArray() && declaration.GetArraySize() != 0)
    Attribute("ARRAYSIZE", std::to_string(declaration.GetArraySize()));
  Flavors(declaration.GetFlavor(), nullptr);
  Start("SCOPE");
  for (const TScopeAttribute &scope : kScopeAttributes)
    Flag(scope.name, (declaration.GetScope() & scope.bit) != 0);
  End("SCOPE");
  Value(declaration.GetDefaultValue());
  End("QUALIFIER.DECLARATION");
}

// A declaration states all its flavors. A qualifier states those that
// differ from the document type's defaults, which readers that follow the
// document type take, and from its declaration's, which DSP0004 readers
// take: both read it right.
void TWriter::Flavors(std::uint32_t flavor, const std::uint32_t *assumed) {
  for (const TFlavorAttribute &attribute : kFlavorAttributes) {
    const bool set = (flavor & attribute.bit) != 0;
    if (!assumed || set != attribute.dtdDefault || set != ((*assumed & attribute.bit) != 0))
      Flag(attribute.name, set);
  }
}

void TWriter::Qualifiers(ICIMQualifiedObject &object) {
  // A propagated qualifier comes back from the inherited element.
  for (const auto &qualifier : object.GetQualifiers())
    if (!qualifier->IsPropagated())
      Qualifier(*qualifier);
}

void TWriter::Qualifier(ICIMQualifier &qualifier) {
  const TWhere here(*this, "qualifier", qualifier.GetName());
  const TCIMType type = qualifier.GetType();
  if (type.GetElementType() == kCIMTypeNone || type.GetElementType() == kCIMTypeReference) {
    Log(Where() + " left out: CIM-XML has no qualifier of type " + TypeText(type));
    return;
  }
  Start("QUALIFIER");
  Attribute("NAME", qualifier.GetName());
  Attribute("TYPE", type.GetName());
  const boost::shared_ptr<ICIMQualifierDecl> declaration = qualifier.GetDeclaration();
  const std::uint32_t assumed =
      declaration ? declaration->GetFlavor() : std::uint32_t{ICIMQualifierDecl::kFlavorDefault};
  Flavors(qualifier.GetFlavor(), &assumed);
  Value(qualifier.GetValue());
  End("QUALIFIER");
}

void TWriter::Class(ICIMClass &cls) {
  const TWhere here(*this, "class", cls.GetName());
  Start("CLASS");
  Attribute("NAME", cls.GetName());
  if (!cls.GetSuperClassName().empty())
    Attribute("SUPERCLASS", cls.GetSuperClassName());
  Qualifiers(cls);
  for (const auto &property : cls.GetLocalProperties())
    Property(*property);
  for (const auto &method : cls.GetLocalMethods())
    Method(*method);
  End("CLASS");
}

void TWriter::Property(ICIMPropertyDecl &property) {
  const TWhere here(*this, "property", property.GetName());
  const TCIMType type = property.GetType();
  const char *element = PropertyElement(type);
  if (element == nullptr) {
    Log(Where() + " left out: CIM-XML has no property of type " + TypeText(type));
    return;
  }
  const TCIMValue value = property.GetValue();
  Start(element);
  Attribute("NAME", property.GetName());
  if (type == kCIMTypeReference) {
    const std::string referenceClass = property.GetReferenceClassName();
    if (!referenceClass.empty())
      Attribute("REFERENCECLASS", referenceClass);
  } else {
    TypeAndSize(type, property.GetArraySize());
  }
  if (!property.GetClassOrigin().empty())
    Attribute("CLASSORIGIN", property.GetClassOrigin());
  if (type.GetElementType() == kCIMTypeString)
    if (const char *embedded = DeclaredEmbedded(property))
      Attribute("EmbeddedObject", embedded);
  Qualifiers(property);
  Value(value);
  End(element);
}

void TWriter::TypeAndSize(TCIMType type, unsigned int arraySize) {
  Attribute("TYPE", type.GetName());
  if (type.IsArray() && arraySize != 0)
    Attribute("ARRAYSIZE", std::to_string(arraySize));
}

void TWriter::Method(ICIMMethod &method) {
  const TWhere here(*this, "method", method.GetName());
  const TCIMType type = method.GetReturnType();
  if (type.IsArray() || type == kCIMTypeReference) {
    Log(Where() + " left out: CIM-XML has no method that returns " + TypeText(type));
    return;
  }
  Start("METHOD");
  Attribute("NAME", method.GetName());
  if (type != kCIMTypeNone)
    Attribute("TYPE", type.GetName());
  if (!method.GetClassOrigin().empty())
    Attribute("CLASSORIGIN", method.GetClassOrigin());
  Qualifiers(method);
  for (const auto &parameter : method.GetParameters())
    Parameter(*parameter);
  End("METHOD");
}

void TWriter::Parameter(ICIMParameter &parameter) {
  const TWhere here(*this, "parameter", parameter.GetName());
  const TCIMType type = parameter.GetType();
  const char *element = ParameterElement(type);
  if (element == nullptr) {
    Log(Where() + " left out: CIM-XML has no parameter of type " + TypeText(type));
    return;
  }
  Start(element);
  Attribute("NAME", parameter.GetName());
  if (type.GetElementType() == kCIMTypeReference) {
    if (!parameter.GetReferenceClassName().empty())
      Attribute("REFERENCECLASS", parameter.GetReferenceClassName());
  } else {
    Attribute("TYPE", type.GetName());
  }
  if (type.IsArray() && parameter.GetArraySize() != 0)
    Attribute("ARRAYSIZE", std::to_string(parameter.GetArraySize()));
  Qualifiers(parameter);
  End(element);
}

// ---- instances --------------------------------------------------------------

void TWriter::Instance(ICIMInstance &instance, bool assignedOnly) {
  const TWhere here(*this, "instance of class", instance.GetClassName());
  Start("INSTANCE");
  Attribute("CLASSNAME", instance.GetClassName());
  TCIMOptions options;
  if (assignedOnly)
    options.emplace("ASSIGNED", TCIMValue(true));
  for (const auto &property : instance.GetProperties(options))
    InstanceProperty(*property);
  End("INSTANCE");
}

void TWriter::InstanceProperty(ICIMProperty &property) {
  const TWhere here(*this, "property", property.GetName());
  const TCIMValue value = property.GetValue();
  TCIMType type = property.GetDeclaredType();
  if (type == kCIMTypeNone)
    type = value.GetType();
  const char *element = PropertyElement(type);
  if (element == nullptr) {
    Log(Where() + " left out: CIM-XML has no property of type " + TypeText(type));
    return;
  }
  const boost::shared_ptr<ICIMPropertyDecl> declaration = property.GetPropertyDecl();
  Start(element);
  Attribute("NAME", property.GetName());
  if (type == kCIMTypeReference) {
    if (declaration && !declaration->GetReferenceClassName().empty())
      Attribute("REFERENCECLASS", declaration->GetReferenceClassName());
  } else {
    // Only a null value keeps the declared size.
    TypeAndSize(type, value.IsNull() ? value.GetCount() : 0);
  }
  if (type.GetElementType() == kCIMTypeString)
    if (const char *embedded = declaration ? DeclaredEmbedded(*declaration) : HeldEmbedded(value))
      Attribute("EmbeddedObject", embedded);
  Value(value);
  End(element);
}

// ---- values and paths -------------------------------------------------------

void TWriter::Value(const TCIMValue &value) {
  if (value.IsNull())
    return;
  const bool references = value.GetType().GetElementType() == kCIMTypeReference;
  if (!value.IsArray()) {
    if (references)
      ValueReference(value.GetReference());
    else if (Writable(value))
      Scalar(value);
    return;
  }
  const char *element = references ? "VALUE.REFARRAY" : "VALUE.ARRAY";
  Start(element);
  for (const TCIMValue &item : value.GetElements()) {
    if (item.IsNull() || !(references || Writable(item))) {
      Start("VALUE.NULL");
      End("VALUE.NULL");
    } else if (references) {
      ValueReference(item.GetReference());
    } else {
      Scalar(item);
    }
  }
  End(element);
}

/// A char16 is one character: one that XML cannot carry leaves nothing.
bool TWriter::Writable(const TCIMValue &scalar) {
  if (scalar.GetType() != kCIMTypeChar16 || IsXmlChar(scalar.GetUnsigned()))
    return true;
  Log("the char16 " + CodePointName(static_cast<std::uint32_t>(scalar.GetUnsigned())) + " of " +
      Where() + ", which XML 1.0 cannot carry, written as null");
  return false;
}

void TWriter::Scalar(const TCIMValue &scalar) {
  Start("VALUE");
  Content("VALUE", scalar.ToString());
}

// A path with keys is an instance's, one without a class's: the object
// model does not tell a keyless instance's path from a class path, and the
// two read back the same.
void TWriter::ValueReference(const TCIMReference &reference) {
  ++referenceDepth;
  Start("VALUE.REFERENCE");
  const bool instance = !reference.GetKeyBindings().empty();
  const std::string &ns = reference.GetNamespaceName();
  const std::string &host = reference.GetHost();
  if (ns.empty() && !host.empty())
    Log("the host '" + host + "' of a path in " + Where() +
        " left out: a path without namespace has no place for it");
  const char *path = ns.empty()     ? nullptr
                     : host.empty() ? (instance ? "LOCALINSTANCEPATH" : "LOCALCLASSPATH")
                                    : (instance ? "INSTANCEPATH" : "CLASSPATH");
  if (path != nullptr) {
    Start(path);
    if (!host.empty()) {
      Start("NAMESPACEPATH");
      Start("HOST");
      Content("HOST", host);
    }
    NamespacePath(ns);
    if (!host.empty())
      End("NAMESPACEPATH");
  }
  if (instance) {
    InstanceName(reference);
  } else {
    Start("CLASSNAME");
    Attribute("NAME", reference.GetClassName());
    End("CLASSNAME");
  }
  if (path != nullptr)
    End(path);
  End("VALUE.REFERENCE");
  --referenceDepth;
}

void TWriter::InstanceName(const TCIMReference &reference) {
  Start("INSTANCENAME");
  Attribute("CLASSNAME", reference.GetClassName());
  for (const auto &binding : reference.GetKeyBindings())
    KeyBinding(binding.first, binding.second);
  End("INSTANCENAME");
}

void TWriter::KeyBinding(const std::string &name, const TCIMValue &value) {
  const TWhere here(*this, "key", name);
  const TCIMType type = value.GetType();
  const char *unwritable = value.IsNull()    ? "it has no value"
                           : value.IsArray() ? "a key cannot be an array"
                           : type == kCIMTypeReference && referenceDepth >= kMaxReferenceDepth
                               ? "references nest more than 16 deep"
                               : nullptr;
  if (unwritable != nullptr) {
    Log(Where() + " left out: " + unwritable);
    return;
  }
  if (type != kCIMTypeReference && !Writable(value))
    return;
  Start("KEYBINDING");
  Attribute("NAME", name);
  if (type == kCIMTypeReference) {
    ValueReference(value.GetReference());
  } else {
    Start("KEYVALUE");
    Attribute("VALUETYPE", KeyValueType(type));
    Attribute("TYPE", type.GetName());
    Content("KEYVALUE", value.ToString());
  }
  End("KEYBINDING");
}

} // namespace

void TCIMXMLWriter::WriteQualifierDecl(std::ostream &out, ICIMQualifierDecl &declaration) {
  TWriter writer(out);
  writer.QualifierDecl(declaration);
  writer.Flush();
}

void TCIMXMLWriter::WriteClass(std::ostream &out, ICIMClass &cls) {
  TWriter writer(out);
  writer.Class(cls);
  writer.Flush();
}

void TCIMXMLWriter::WriteInstance(std::ostream &out, ICIMInstance &instance) {
  TWriter writer(out);
  writer.Instance(instance);
  writer.Flush();
}

void TCIMXMLWriter::WriteValue(std::ostream &out, const TCIMValue &value) {
  TWriter writer(out);
  writer.Value(value);
  writer.Flush();
}

void TCIMXMLWriter::WriteDocument(std::ostream &out, const TCIMXMLDeclaration &declaration) {
  TWriter writer(out);
  writer.Document(declaration);
  writer.Flush();
}

void TCIMXMLWriter::WriteDocument(std::ostream &out, ICIMNamespace &ns) {
  TCIMXMLDeclaration declaration;
  declaration.namespaceName = ns.GetName();
  declaration.qualifierDecls = ns.GetQualifierDecls();
  declaration.classes = ns.GetClasses();
  declaration.instances = ns.GetInstances("", false);
  WriteDocument(out, declaration);
}

} // namespace NVRNORV20
