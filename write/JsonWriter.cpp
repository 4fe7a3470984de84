#include "write/JsonWriter.h"

#include "core_api/CIMReference.h"
#include "core_api/CIMValue.h"
#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"

#include <rapidjson/encodings.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace NVRNORV20 {

namespace {

using rapidjson::SizeType;

/// Values inside references, arrays and embedded objects are written by
/// recursion. Documents nest them at most 16 deep each, so this depth is
/// reached only by objects a program built (an instance embedded in its own
/// property, say); below it a value is written as its text.
constexpr unsigned kMaxNesting = 64;

/// RapidJSON's output stream onto a std::ostream, a block at a time, so that
/// the stream sees few large writes.
class TBlockStream {
public:
  using Ch = char;
  explicit TBlockStream(std::ostream &stream) : out(stream), block(kBlockSize) {}
  void Put(char c) {
    if (used == block.size())
      Flush();
    block[used++] = c;
  }
  void Flush() {
    out.write(block.data(), static_cast<std::streamsize>(used));
    used = 0;
  }
  /// Bytes in one copy, where Put would take them one at a time.
  void Write(const char *bytes, std::size_t length) {
    while (length != 0) {
      if (used == block.size())
        Flush();
      const std::size_t part = std::min(length, block.size() - used);
      std::memcpy(block.data() + used, bytes, part);
      used += part;
      bytes += part;
      length -= part;
    }
  }

private:
  static constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
  std::ostream &out;
  std::vector<char> block;
  std::size_t used = 0;
};

/// The writer of one item, which knows how deeply the value it is at lies.
class TJson : public rapidjson::Writer<rapidjson::StringBuffer> {
public:
  explicit TJson(rapidjson::StringBuffer &buffer) : Writer(buffer) {}
  unsigned nesting = 0;
};

/// A string's bytes as RapidJSON's UTF-8 decoder reads them: past the end it
/// reads NUL, so that a character cut off by the end fails there.
struct TBoundedBytes {
  using Ch = char;
  const char *next;
  const char *end;
  Ch Peek() const { return next < end ? *next : '\0'; }
  Ch Take() { return next < end ? *next++ : '\0'; }
};

/// Appends what the decoder copies.
struct TAppendBytes {
  std::string &text;
  void Put(char c) { text += c; }
};

/// The text with each byte that begins no UTF-8 character (RapidJSON's
/// decoder decides, refusing overlong forms and surrogates) replaced by its
/// Latin-1 character in UTF-8; false when there was none.
bool ReplaceNonUtf8(const std::string &text, std::string &replaced) {
  bool found = false;
  TBoundedBytes bytes{text.data(), text.data() + text.size()};
  TAppendBytes sink{replaced};
  while (bytes.next < bytes.end) {
    const char *start = bytes.next;
    const std::size_t kept = replaced.size();
    if (rapidjson::UTF8<>::Validate(bytes, sink))
      continue;
    replaced.resize(kept);
    rapidjson::UTF8<>::Encode(sink, static_cast<unsigned char>(*start));
    bytes.next = start + 1;
    found = true;
  }
  return found;
}

/// Every text of the document becomes a JSON string here. RapidJSON's
/// Writer escapes quotes, backslashes and control characters; JSON text is
/// UTF-8, so a byte that begins no UTF-8 character is written as its
/// Latin-1 character, the usual origin of such bytes, as the MOF writer
/// does.
template <class TWriter> void Text(TWriter &json, const std::string &text) {
  const std::string *written = &text;
  std::string replaced;
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < 0x80)
      continue;
    if (ReplaceNonUtf8(text, replaced)) {
      TRootObject::Log(3, "JSON: bytes that are not UTF-8 in a string, each written as its "
                          "Latin-1 character");
      written = &replaced;
    }
    break;
  }
  // A writer counts a string's length in 32 bits; no document holds a
  // longer one, since the loader reads at most 100 MiB.
  if (written->size() > std::numeric_limits<SizeType>::max()) {
    TRootObject::Log(3, "JSON: a string of " + std::to_string(written->size()) +
                            " bytes is longer than JSON strings are written; written as null");
    json.Null();
    return;
  }
  json.String(written->data(), static_cast<SizeType>(written->size()));
}

/// Members by kind. A name is a literal, whose length is known; Optional
/// leaves out an empty text, Flag writes only a true one.
template <class TWriter, std::size_t N> void Key(TWriter &json, const char (&name)[N]) {
  json.Key(name, static_cast<SizeType>(N - 1));
}
template <class TWriter, std::size_t N>
void Member(TWriter &json, const char (&name)[N], const std::string &text) {
  Key(json, name);
  Text(json, text);
}
template <std::size_t N>
void Optional(TJson &json, const char (&name)[N], const std::string &text) {
  if (!text.empty())
    Member(json, name, text);
}
template <class TWriter, std::size_t N>
void Count(TWriter &json, const char (&name)[N], std::uint64_t count) {
  Key(json, name);
  json.Uint64(count);
}
template <std::size_t N> void Flag(TJson &json, const char (&name)[N], bool set) {
  if (!set)
    return;
  Key(json, name);
  json.Bool(true);
}

/// "uint8", "uint8[]" for an array type, null for no type.
template <std::size_t N> void Type(TJson &json, const char (&name)[N], TCIMType type) {
  Key(json, name);
  if (type.GetElementType() == kCIMTypeNone)
    json.Null();
  else
    Text(json, type.GetName() + (type.IsArray() ? "[]" : ""));
}

void Value(TJson &json, const TCIMValue &value);
void Instance(TJson &json, ICIMInstance &instance);
void Class(TJson &json, ICIMClass &cls);

/// {"name", "type", "value"}: a key binding, a correlator.
void TypedValue(TJson &json, const std::string &name, const TCIMValue &value) {
  json.StartObject();
  Member(json, "name", name);
  Type(json, "type", value.GetType());
  Key(json, "value");
  Value(json, value);
  json.EndObject();
}

/// A path: host and namespace when it names them, the class name when it
/// has one, and with keys its key bindings in order, each typed.
void Path(TJson &json, const TCIMReference &path, bool keys) {
  json.StartObject();
  Optional(json, "host", path.GetHost());
  Optional(json, "namespace", path.GetNamespaceName());
  Optional(json, "className", path.GetClassName());
  if (keys) {
    Key(json, "keys");
    json.StartArray();
    for (const TCIMReference::TKeyBinding &key : path.GetKeyBindings())
      TypedValue(json, key.first, key.second);
    json.EndArray();
  }
  json.EndObject();
}

/// A real in its CIM-XML text, the shortest that reads back as the same
/// real32 or real64 and a JSON number too; NaN and the infinities, which
/// JSON has no number for, as the strings CIM-XML spells them with.
void Real(TJson &json, const TCIMValue &value) {
  const std::string text = value.ToString();
  if (std::isfinite(value.GetReal()))
    json.RawValue(text.data(), text.size(), rapidjson::kNumberType);
  else
    Text(json, text);
}

/// A string, or the object it embeds: {"instance": ...} or {"class": ...}.
void String(TJson &json, const TCIMValue &value) {
  const boost::shared_ptr<ICIMInstance> instance = value.GetEmbeddedInstance();
  const boost::shared_ptr<ICIMClass> cls = value.GetEmbeddedClass();
  if (!instance && !cls) {
    Text(json, value.GetString());
    return;
  }
  json.StartObject();
  instance ? Key(json, "instance") : Key(json, "class");
  instance ? Instance(json, *instance) : Class(json, *cls);
  json.EndObject();
}

void Scalar(TJson &json, const TCIMValue &value) {
  switch (value.GetType()) {
  case kCIMTypeBoolean:
    json.Bool(value.GetBoolean());
    break;
  case kCIMTypeUint8:
  case kCIMTypeUint16:
  case kCIMTypeUint32:
  case kCIMTypeUint64:
    json.Uint64(value.GetUnsigned());
    break;
  case kCIMTypeSint8:
  case kCIMTypeSint16:
  case kCIMTypeSint32:
  case kCIMTypeSint64:
    json.Int64(value.GetSigned());
    break;
  case kCIMTypeReal32:
  case kCIMTypeReal64:
    Real(json, value);
    break;
  case kCIMTypeString:
    String(json, value);
    break;
  case kCIMTypeReference:
    Path(json, value.GetReference(), true);
    break;
  default:
    // char16 and datetime, as their CIM-XML text.
    Text(json, value.ToString());
    break;
  }
}

/// A value too deep to write as JSON, as its CIM-XML text; a reference's
/// text doubles its backslashes per level, so a deep one may be too long
/// for a string, and is then written as null.
void Nested(TJson &json, const TCIMValue &value) {
  const std::string deep =
      "JSON: a value nested more than " + std::to_string(kMaxNesting) + " deep";
  std::string text;
  try {
    text = value.ToString();
  } catch (const TORVException &ex) {
    TRootObject::Log(3, deep + " is too long as text (" + ex.what() + "); written as null");
    json.Null();
    return;
  }
  TRootObject::Log(3, deep + " is written as its text");
  Text(json, text);
}

/// Any value: null, a scalar, or an array of them (null elements as null).
void Value(TJson &json, const TCIMValue &value) {
  if (value.IsNull()) {
    json.Null();
    return;
  }
  const bool nests = value.IsArray() || value.GetType() == kCIMTypeReference ||
                     (value.GetType() == kCIMTypeString &&
                      (value.GetEmbeddedInstance() || value.GetEmbeddedClass()));
  if (!nests) {
    Scalar(json, value);
    return;
  }
  if (json.nesting == kMaxNesting) {
    Nested(json, value);
    return;
  }
  ++json.nesting;
  if (value.IsArray()) {
    json.StartArray();
    for (const TCIMValue &element : value.GetElements())
      Value(json, element);
    json.EndArray();
  } else {
    Scalar(json, value);
  }
  --json.nesting;
}

struct TBitName {
  std::uint32_t bit;
  const char *name;
};

/// {"overridable", "toSubclass", "translatable"}, each a boolean.
void Flavor(TJson &json, std::uint32_t flavor) {
  static const TBitName kFlavors[] = {{ICIMQualifierDecl::kFlavorOverridable, "overridable"},
                                      {ICIMQualifierDecl::kFlavorToSubclass, "toSubclass"},
                                      {ICIMQualifierDecl::kFlavorTranslatable, "translatable"}};
  Key(json, "flavor");
  json.StartObject();
  for (const TBitName &name : kFlavors) {
    json.Key(name.name);
    json.Bool((flavor & name.bit) != 0);
  }
  json.EndObject();
}

void Qualifiers(TJson &json, ICIMQualifiedObject &object) {
  Key(json, "qualifiers");
  json.StartArray();
  for (const boost::shared_ptr<ICIMQualifier> &qualifier : object.GetQualifiers()) {
    json.StartObject();
    Member(json, "name", qualifier->GetName());
    Type(json, "type", qualifier->GetType());
    Key(json, "value");
    Value(json, qualifier->GetValue());
    Flavor(json, qualifier->GetFlavor());
    Flag(json, "propagated", qualifier->IsPropagated());
    json.EndObject();
  }
  json.EndArray();
}

void QualifierDecl(TJson &json, ICIMQualifierDecl &declaration) {
  static const TBitName kScopes[] = {{ICIMQualifierDecl::kScopeClass, "class"},
                                     {ICIMQualifierDecl::kScopeAssociation, "association"},
                                     {ICIMQualifierDecl::kScopeIndication, "indication"},
                                     {ICIMQualifierDecl::kScopeProperty, "property"},
                                     {ICIMQualifierDecl::kScopeReference, "reference"},
                                     {ICIMQualifierDecl::kScopeMethod, "method"},
                                     {ICIMQualifierDecl::kScopeParameter, "parameter"}};
  json.StartObject();
  Member(json, "name", declaration.GetName());
  Type(json, "type", declaration.GetType());
  if (declaration.GetArraySize() != 0)
    Count(json, "arraySize", declaration.GetArraySize());
  Key(json, "value");
  Value(json, declaration.GetDefaultValue());
  Key(json, "scope");
  json.StartArray();
  for (const TBitName &scope : kScopes)
    if ((declaration.GetScope() & scope.bit) != 0)
      json.String(scope.name);
  json.EndArray();
  Flavor(json, declaration.GetFlavor());
  json.EndObject();
}

/// The array size a declaration fixes, which a null default carries; the
/// class of a reference.
void ArrayAndReference(TJson &json, TCIMType type, unsigned int arraySize,
                       const std::string &referenceClass) {
  if (type.IsArray() && arraySize != 0)
    Count(json, "arraySize", arraySize);
  if (type.GetElementType() == kCIMTypeReference)
    Optional(json, "referenceClass", referenceClass);
}

void Property(TJson &json, ICIMPropertyDecl &property) {
  const TCIMType type = property.GetType();
  const TCIMValue value = property.GetValue();
  json.StartObject();
  Member(json, "name", property.GetName());
  Type(json, "type", type);
  ArrayAndReference(json, type, property.GetArraySize(),
                    type.GetElementType() == kCIMTypeReference ? property.GetReferenceClassName()
                                                               : std::string());
  Member(json, "classOrigin", property.GetClassOrigin());
  Key(json, "value");
  Value(json, value);
  Qualifiers(json, property);
  json.EndObject();
}

void Parameter(TJson &json, ICIMParameter &parameter) {
  json.StartObject();
  Member(json, "name", parameter.GetName());
  Type(json, "type", parameter.GetType());
  ArrayAndReference(json, parameter.GetType(), parameter.GetArraySize(),
                    parameter.GetReferenceClassName());
  Qualifiers(json, parameter);
  json.EndObject();
}

void Method(TJson &json, ICIMMethod &method) {
  json.StartObject();
  Member(json, "name", method.GetName());
  Type(json, "returnType", method.GetReturnType());
  Member(json, "classOrigin", method.GetClassOrigin());
  Qualifiers(json, method);
  Key(json, "parameters");
  json.StartArray();
  for (const boost::shared_ptr<ICIMParameter> &parameter : method.GetParameters())
    Parameter(json, *parameter);
  json.EndArray();
  json.EndObject();
}

/// A class with every property and method it has, inherited ones first,
/// each with the class that declared it.
void Class(TJson &json, ICIMClass &cls) {
  json.StartObject();
  Member(json, "name", cls.GetName());
  if (cls.GetSuperClassName().empty()) {
    Key(json, "superClass");
    json.Null();
  } else {
    Member(json, "superClass", cls.GetSuperClassName());
  }
  Qualifiers(json, cls);
  Key(json, "properties");
  json.StartArray();
  for (const boost::shared_ptr<ICIMPropertyDecl> &property : cls.GetProperties())
    Property(json, *property);
  json.EndArray();
  Key(json, "methods");
  json.StartArray();
  for (const boost::shared_ptr<ICIMMethod> &method : cls.GetMethods())
    Method(json, *method);
  json.EndArray();
  json.EndObject();
}

void Instance(TJson &json, ICIMInstance &instance) {
  json.StartObject();
  Member(json, "className", instance.GetClassName());
  Key(json, "properties");
  json.StartArray();
  for (const boost::shared_ptr<ICIMProperty> &property : instance.GetProperties()) {
    json.StartObject();
    Member(json, "name", property->GetName());
    Type(json, "type", property->GetDeclaredType());
    Flag(json, "key", property->IsKey());
    Key(json, "value");
    Value(json, property->GetValue());
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
}

/// A path as the document wrote it: a namespace path has no class name, a
/// class path no keys.
void DocumentPath(TJson &json, const TCIMXMLPath &path) {
  Path(json, path.reference, path.kind == TCIMXMLPath::EKind::kInstance);
}

/// What every item begins with: its kind, its number among its kind and
/// the line of its start tag.
void ItemHead(TJson &json, const char *item, std::uint64_t sequence, unsigned line) {
  json.StartObject();
  Key(json, "item");
  json.String(item);
  Count(json, "sequence", sequence);
  Count(json, "line", line);
}

void ObjectItem(TJson &json, const TCIMXMLObject &object) {
  using EKind = TCIMXMLObject::EKind;
  static const char *const kItemNames[] = {"qualifierDeclaration", "class", "instance", "classPath",
                                           "instancePath"};
  const char *item = kItemNames[static_cast<int>(object.kind)];
  ItemHead(json, item, object.sequence, object.line);
  if (object.operation >= 0) {
    Count(json, "operation", static_cast<std::uint64_t>(object.operation));
    Member(json, "role", object.role);
  }
  if (object.hasPath) {
    Key(json, "path");
    DocumentPath(json, object.path);
  }
  if (object.kind == EKind::kQualifierDecl || object.kind == EKind::kClass ||
      object.kind == EKind::kInstance) {
    json.Key(item);
    if (object.kind == EKind::kQualifierDecl && object.qualifierDecl)
      QualifierDecl(json, *object.qualifierDecl);
    else if (object.kind == EKind::kClass && object.cimClass)
      Class(json, *object.cimClass);
    else if (object.kind == EKind::kInstance && object.instance)
      Instance(json, *object.instance);
    else
      json.Null();
  }
  json.EndObject();
}

/// A parameter or return value: its value, or where objects stood in its
/// place, which items they are.
void Argument(TJson &json, const TCIMXMLArgument &argument) {
  json.StartObject();
  Optional(json, "name", argument.name);
  Type(json, "type", argument.type);
  Key(json, "value");
  Value(json, argument.value);
  Optional(json, "embeddedObject", argument.embeddedObject);
  if (argument.objectCount != 0) {
    Count(json, "firstObject", argument.firstObject);
    Count(json, "objectCount", argument.objectCount);
  }
  json.EndObject();
}

void OperationError(TJson &json, const TCIMXMLOperation &operation) {
  Key(json, "error");
  json.StartObject();
  Count(json, "code", operation.errorCode);
  Optional(json, "description", operation.errorDescription);
  if (operation.errorInstanceCount != 0) {
    Count(json, "firstInstance", operation.firstErrorInstance);
    Count(json, "instanceCount", operation.errorInstanceCount);
  }
  json.EndObject();
}

void OperationItem(TJson &json, const TCIMXMLOperation &operation) {
  // The elements' names, as DSP0201 spells them.
  static const char *const kKinds[] = {"IMETHODCALL",     "METHODCALL",     "EXPMETHODCALL",
                                       "IMETHODRESPONSE", "METHODRESPONSE", "EXPMETHODRESPONSE"};
  ItemHead(json, "operation", operation.sequence, operation.line);
  Count(json, "message", operation.message);
  Key(json, "kind");
  json.String(kKinds[static_cast<int>(operation.kind)]);
  Member(json, "method", operation.method);
  if (operation.hasTarget) {
    Key(json, "target");
    DocumentPath(json, operation.target);
  }
  Key(json, "parameters");
  json.StartArray();
  for (const TCIMXMLArgument &parameter : operation.parameters)
    Argument(json, parameter);
  json.EndArray();
  if (operation.hasReturnValue) {
    Key(json, "returnValue");
    Argument(json, operation.returnValue);
  }
  if (operation.hasError)
    OperationError(json, operation);
  Key(json, "correlators");
  json.StartArray();
  for (const TCIMXMLCorrelator &correlator : operation.correlators)
    TypedValue(json, correlator.name, correlator.value);
  json.EndArray();
  json.EndObject();
}

void MessageItem(TJson &json, const TCIMXMLMessage &message) {
  static const char *const kKinds[] = {"SIMPLEREQ",    "MULTIREQ",     "SIMPLERSP",
                                       "MULTIRSP",     "SIMPLEEXPREQ", "MULTIEXPREQ",
                                       "SIMPLEEXPRSP", "MULTIEXPRSP"};
  ItemHead(json, "message", message.sequence, message.line);
  Member(json, "id", message.id);
  Member(json, "protocolVersion", message.protocolVersion);
  Key(json, "kind");
  json.String(kKinds[static_cast<int>(message.kind)]);
  Count(json, "firstOperation", message.firstOperation);
  Count(json, "operationCount", message.operationCount);
  json.EndObject();
}

/// A document on a stream. Each item (an object, an operation, a message)
/// is written whole into a buffer of its own first and copied into the
/// document once complete: an exception out of the object model half-way
/// through one costs that item and never the document's structure. With
/// itemLines, each item starts a line, so that line tools can take a large
/// document apart.
class TJsonDocument {
public:
  using TDocumentWriter = rapidjson::Writer<TBlockStream>;

  TJsonDocument(std::ostream &out, bool itemLines)
      : stream(out), document(stream), item(itemBuffer), lines(itemLines) {}

  TDocumentWriter &Writer() { return document; }

  template <class TWrite> void Item(const TWrite &write) {
    itemBuffer.Clear();
    if (lines)
      itemBuffer.Put('\n');
    item.Reset(itemBuffer);
    item.nesting = 0;
    write(item);
    // An empty raw value places the item in the document (the comma before
    // it, the count of values); its bytes then go to the stream in one copy.
    // Complete, a root has been flushed already: flush it again with them.
    document.RawValue(itemBuffer.GetString(), 0, rapidjson::kObjectType);
    stream.Write(itemBuffer.GetString(), itemBuffer.GetSize());
    if (document.IsComplete())
      stream.Flush();
  }

  /// The namespace's qualifier declarations, classes (superclasses first)
  /// and instances, each an item. One that the object model fails to give
  /// is left out with a line saying so, and the rest are written.
  void Namespace(ICIMNamespace &ns) {
    document.StartObject();
    Member(document, "name", ns.GetName());
    Key(document, "qualifierDeclarations");
    Items(ns.GetQualifierDecls(), "qualifier declaration", QualifierDecl);
    Key(document, "classes");
    Items(ns.GetClasses(), "class", Class);
    Key(document, "instances");
    Items(ns.GetInstances("", false), "instance", Instance);
    document.EndObject();
  }

  template <class TObject>
  void Items(const std::vector<boost::shared_ptr<TObject>> &objects, const char *kind,
             void (*write)(TJson &, TObject &)) {
    document.StartArray();
    for (std::size_t i = 0; i < objects.size(); ++i) {
      try {
        Item([&](TJson &json) { write(json, *objects[i]); });
      } catch (const TORVException &ex) {
        TRootObject::Log(3, std::string("JSON: ") + kind + " " + std::to_string(i + 1) +
                                " of the namespace left out: " + ex.what());
      }
    }
    document.EndArray();
  }

  /// Writes out what the block holds; the writer flushes by itself only
  /// once the document's root is complete.
  void Flush() { stream.Flush(); }
  void Put(char c) { stream.Put(c); }

private:
  TBlockStream stream;
  TDocumentWriter document;
  rapidjson::StringBuffer itemBuffer;
  TJson item;
  bool lines;
};

} // namespace

// ---- TJsonWriter -----------------------------------------------------------

struct TJsonWriter::TImpl {
  explicit TImpl(std::ostream &out) : document(out, true) {}

  /// Opens the document's root and its "files" on the first call.
  TJsonDocument::TDocumentWriter &Files() {
    TJsonDocument::TDocumentWriter &writer = document.Writer();
    if (!started) {
      writer.StartObject();
      Key(writer, "files");
      writer.StartArray();
      started = true;
    }
    return writer;
  }

  void OpenEntry(const std::string *fileName) {
    TJsonDocument::TDocumentWriter &writer = Files();
    writer.StartObject();
    if (fileName != nullptr)
      Member(writer, "file", *fileName);
    Key(writer, "items");
    writer.StartArray();
    entryOpen = true;
    std::fill(std::begin(counts), std::end(counts), 0);
  }

  /// An item for the open entry, opening one without a name if need be.
  template <class TWrite> bool Item(const TWrite &write) {
    if (finished)
      return false;
    if (!entryOpen)
      OpenEntry(nullptr);
    document.Item(write);
    return true;
  }

  static void Failure(TJsonDocument::TDocumentWriter &writer, const std::exception &failure) {
    Key(writer, "failure");
    writer.StartObject();
    if (const auto *status = dynamic_cast<const TORVException *>(&failure)) {
      Key(writer, "status");
      writer.Int(static_cast<int>(status->GetStatusCode()));
    }
    Member(writer, "text", failure.what());
    writer.EndObject();
  }

  /// The open entry's items by kind: qualifier declarations, classes and
  /// instances as their object kinds number them, paths of both kinds (the
  /// kinds after those), operations.
  static constexpr std::size_t kPaths = 3;
  static constexpr std::size_t kOperations = 4;
  std::uint64_t counts[5] = {};

  TJsonDocument document;
  bool started = false;
  bool entryOpen = false;
  bool finished = false;
};

TJsonWriter::TJsonWriter(std::ostream &out) : impl(std::make_unique<TImpl>(out)) {}

TJsonWriter::~TJsonWriter() = default;

void TJsonWriter::BeginFile(const std::string &fileName) {
  if (impl->finished)
    return;
  EndFile();
  impl->OpenEntry(&fileName);
}

void TJsonWriter::Object(const TCIMXMLObject &object) {
  if (impl->Item([&](TJson &json) { ObjectItem(json, object); }))
    ++impl->counts[std::min(static_cast<std::size_t>(object.kind), TImpl::kPaths)];
}

void TJsonWriter::Operation(const TCIMXMLOperation &operation) {
  if (impl->Item([&](TJson &json) { OperationItem(json, operation); }))
    ++impl->counts[TImpl::kOperations];
}

void TJsonWriter::Message(const TCIMXMLMessage &message) {
  impl->Item([&](TJson &json) { MessageItem(json, message); });
}

void TJsonWriter::EndFile(const std::exception *failure) {
  if (!impl->entryOpen || impl->finished)
    return;
  TJsonDocument::TDocumentWriter &writer = impl->document.Writer();
  writer.EndArray();
  const std::uint64_t *counts = impl->counts;
  Key(writer, "counts");
  writer.StartObject();
  Count(writer, "qualifierDeclarations", counts[0]);
  Count(writer, "classes", counts[1]);
  Count(writer, "instances", counts[2]);
  Count(writer, "paths", counts[TImpl::kPaths]);
  Count(writer, "operations", counts[TImpl::kOperations]);
  writer.EndObject();
  if (failure != nullptr)
    TImpl::Failure(writer, *failure);
  writer.EndObject();
  impl->entryOpen = false;
}

void TJsonWriter::ClassicFile(const std::string &fileName, std::size_t classes,
                              std::size_t instances, const std::exception *failure) {
  if (impl->finished)
    return;
  EndFile();
  TJsonDocument::TDocumentWriter &writer = impl->Files();
  writer.StartObject();
  Member(writer, "file", fileName);
  if (failure != nullptr) {
    TImpl::Failure(writer, *failure);
  } else {
    Key(writer, "counts");
    writer.StartObject();
    Count(writer, "classes", classes);
    Count(writer, "instances", instances);
    writer.EndObject();
  }
  writer.EndObject();
}

void TJsonWriter::Finish(ICIMNamespace *ns) {
  if (impl->finished)
    return;
  EndFile();
  TJsonDocument::TDocumentWriter &writer = impl->Files();
  writer.EndArray();
  if (ns != nullptr) {
    Key(writer, "namespace");
    impl->document.Namespace(*ns);
  }
  writer.EndObject();
  impl->document.Put('\n');
  impl->document.Flush();
  impl->finished = true;
}

// ---- single objects --------------------------------------------------------

namespace {

template <class TWrite> void WriteItem(std::ostream &out, const TWrite &write) {
  TJsonDocument document(out, false);
  document.Item(write);
}

} // namespace

void WriteJson(std::ostream &out, ICIMQualifierDecl &declaration) {
  WriteItem(out, [&](TJson &json) { QualifierDecl(json, declaration); });
}

void WriteJson(std::ostream &out, ICIMClass &cls) {
  WriteItem(out, [&](TJson &json) { Class(json, cls); });
}

void WriteJson(std::ostream &out, ICIMInstance &instance) {
  WriteItem(out, [&](TJson &json) { Instance(json, instance); });
}

void WriteJson(std::ostream &out, ICIMNamespace &ns) {
  TJsonDocument document(out, true);
  document.Namespace(ns);
}

} // namespace NVRNORV20
