// The JSON writer, read back with RapidJSON's own parser: values of every
// type, the shape of objects and operations, a corpus response, and an
// enumeration that streams through. (The tool's test pins a whole response.)
#include "write/JsonWriter.h"

#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"

#include <rapidjson/document.h>
#include <rapidjson/pointer.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <sstream>

namespace orvtest {
namespace {

/// The whole text as one JSON document, which must be valid UTF-8.
rapidjson::Document ParseJson(const std::string &text) {
  rapidjson::Document document;
  document.Parse<rapidjson::kParseValidateEncodingFlag | rapidjson::kParseFullPrecisionFlag>(
      text.data(), text.size());
  EXPECT_FALSE(document.HasParseError()) << document.GetErrorOffset() << ": " << text;
  return document;
}

/// The value at the pointer as compact JSON, "(none)" where there is none.
std::string At(const rapidjson::Value &root, const char *pointer) {
  const rapidjson::Value *value = rapidjson::Pointer(pointer).Get(root);
  if (value == nullptr)
    return "(none)";
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  value->Accept(writer);
  return std::string(buffer.GetString(), buffer.GetSize());
}

/// JSON written with ' for ", to keep the tables legible.
std::string Q(std::string json) {
  std::replace(json.begin(), json.end(), '\'', '"');
  return json;
}

void CheckShape(const rapidjson::Value &root,
                const std::vector<std::pair<const char *, std::string>> &cases) {
  for (const auto &c : cases) {
    SCOPED_TRACE(c.first);
    EXPECT_EQ(Q(c.second), At(root, c.first));
  }
}

/// What a reader of the documented shape makes of a scalar or array (not a
/// reference) of the type.
TCIMValue FromJson(TCIMType type, const rapidjson::Value &json) {
  if (json.IsNull())
    return TCIMValue(type, 0);
  if (type.IsArray()) {
    std::vector<TCIMValue> elements;
    for (const rapidjson::Value &element : json.GetArray())
      elements.push_back(FromJson(type.GetElementType(), element));
    return Array(type.GetElementType(), elements);
  }
  if (json.IsString())
    return TCIMValue(type, std::string(json.GetString(), json.GetStringLength()), nullptr);
  if (json.IsBool())
    return TCIMValue(json.GetBool());
  if (type == kCIMTypeReal32 || type == kCIMTypeReal64)
    return TCIMValue::MakeReal(type, json.GetDouble());
  const bool signedType = type == kCIMTypeSint8 || type == kCIMTypeSint16 ||
                          type == kCIMTypeSint32 || type == kCIMTypeSint64;
  return signedType ? TCIMValue::MakeSigned(type, json.GetInt64())
                    : TCIMValue::MakeUnsigned(type, json.GetUint64());
}

// Each value as an instance's property: its JSON, the type beside it, and
// (but for a path or an object) what a reader makes of the two.
TEST(JsonWriterTest, EveryTypeOfValue) {
  const TCIMReference inner = Path("In.On=true");
  TCIMReference path = Path("//h/root/x:C.Id=7");
  path.AddKeyValue("Ref", TCIMValue(inner));
  const auto embedded = CreateStandaloneInstance("E", nullptr);
  embedded->SetPropertyValue("P", TCIMValue::MakeSigned(kCIMTypeSint16, -2));
  TCIMValue holder("<INSTANCE CLASSNAME=\"E\">...</INSTANCE>");
  holder.SetEmbeddedObject(embedded);
  const double inf = std::numeric_limits<double>::infinity();
  const std::string in = "{'className':'In','keys':[{'name':'On','type':'boolean','value':true}]}";
  struct TCase {
    TCIMValue value;
    std::string json;
    bool notUtf8 = false;
  };
  const TCase cases[] = {
      {TCIMValue(true), "true"},
      {TCIMValue::MakeUnsigned(kCIMTypeUint8, 255), "255"},
      {TCIMValue::MakeUnsigned(kCIMTypeUint64, std::numeric_limits<std::uint64_t>::max()),
       "18446744073709551615"},
      {TCIMValue::MakeSigned(kCIMTypeSint64, std::numeric_limits<std::int64_t>::min()),
       "-9223372036854775808"},
      // The shortest text: a real32 is not widened to its double's digits.
      {TCIMValue::MakeReal(kCIMTypeReal32, 0.1), "0.1"},
      {TCIMValue::MakeReal(kCIMTypeReal64, 1e300), "1e300"},
      {TCIMValue::MakeReal(kCIMTypeReal64, std::nan("")), "'NaN'"},
      {TCIMValue::MakeReal(kCIMTypeReal32, -inf), "'-INF'"},
      {TCIMValue(""), "''"},
      {TCIMValue("q\"b\\s/\x01\x1f\n\t\x7f"), "'q\\'b\\\\s/\\u0001\\u001F\\n\\t\x7f'"},
      {TCIMValue(std::string("a\0b", 3)), "'a\\u0000b'"},
      {TCIMValue("\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80"), "'\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80'"},
      // A stray byte, a surrogate, an overlong slash, a character cut off
      // at the end: each byte its Latin-1 character.
      {TCIMValue("a\xff\xed\xa0\x80\xc0\xaf\xe2\x82"),
       "'a\xc3\xbf\xc3\xad\xc2\xa0\xc2\x80\xc3\x80\xc2\xaf\xc3\xa2\xc2\x82'", true},
      {TCIMValue::MakeUnsigned(kCIMTypeChar16, 0xE9), "'\xc3\xa9'"},
      {TCIMValue(TCIMDateTime::Parse("20240301081500.000000+060")), "'20240301081500.000000+060'"},
      {TCIMValue(path),
       "{'host':'h','namespace':'root/x','className':'C','keys':[{'name':'Id','type':'uint64',"
       "'value':7},{'name':'Ref','type':'reference','value':" +
           in + "}]}"},
      {TCIMValue(TCIMType(kCIMTypeString), 0), "null"},
      {Array(kCIMTypeUint32, {Uint32(1), TCIMValue(TCIMType(kCIMTypeUint32), 0), Uint32(3)}),
       "[1,null,3]"},
      {Array(kCIMTypeReference, {TCIMValue(inner)}), "[" + in + "]"},
      {holder,
       "{'instance':{'className':'E','properties':[{'name':'P','type':'sint16','value':-2}]}}"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.json);
    TCapturingLogger logger;
    const auto instance = CreateStandaloneInstance("C", nullptr);
    instance->SetPropertyValue("V", c.value);
    std::ostringstream out;
    WriteJson(out, *instance);
    const std::vector<std::string> log = logger.Texts();
    const rapidjson::Document document = ParseJson(out.str());
    EXPECT_EQ(Q(c.json), At(document, "/properties/0/value"));
    const TCIMType type = c.value.GetType();
    EXPECT_EQ("\"" + type.GetName() + (type.IsArray() ? "[]" : "") + "\"",
              At(document, "/properties/0/type"));
    EXPECT_EQ(c.notUtf8 ? std::vector<std::string>{"JSON: bytes that are not UTF-8 in a string, "
                                                   "each written as its Latin-1 character"}
                        : std::vector<std::string>{},
              log);
    const rapidjson::Value *value = rapidjson::Pointer("/properties/0/value").Get(document);
    if (log.empty() && value != nullptr && !value->IsObject() &&
        type.GetElementType() != kCIMTypeReference) {
      EXPECT_EQ(c.value, FromJson(type, *value));
    }
  }
}

// A class with all it inherits, read in the full grammar; a qualifier
// declaration; a namespace with its classes superclass first.
using JsonWriterClassTest = TParserFixture;

TEST_F(JsonWriterClassTest, ClassesAndDeclarations) {
  const std::string classes = Objects(
      {"<CLASS NAME=\"A\"><QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>base</VALUE>"
       "</QUALIFIER><PROPERTY NAME=\"Id\" TYPE=\"string\"/></CLASS>",
       "<CLASS NAME=\"B\" SUPERCLASS=\"A\"><PROPERTY.ARRAY NAME=\"Codes\" TYPE=\"uint8\" "
       "ARRAYSIZE=\"4\"/><PROPERTY.REFERENCE NAME=\"Peer\" REFERENCECLASS=\"A\"/><METHOD "
       "NAME=\"Go\" TYPE=\"uint32\"><PARAMETER.ARRAY NAME=\"Items\" TYPE=\"string\" "
       "ARRAYSIZE=\"2\"><QUALIFIER NAME=\"In\" TYPE=\"boolean\"><VALUE>false</VALUE></QUALIFIER>"
       "</PARAMETER.ARRAY><PARAMETER.REFERENCE NAME=\"Target\" REFERENCECLASS=\"A\"/></METHOD>"
       "</CLASS>"});
  for (const std::string &xml : {QualifierDeclarations(), classes})
    ASSERT_FALSE(Parse(xml, kFull).aborted);
  ASSERT_EQ(std::vector<std::string>{}, Log());
  std::ostringstream cls, declaration, all;
  WriteJson(cls, *ns->GetClass("B"));
  WriteJson(declaration, *ns->GetQualifierDecl("Key"));
  WriteJson(all, *ns);
  const std::string flavor = "'flavor':{'overridable':true,'toSubclass':true,'translatable':";
  CheckShape(
      ParseJson(cls.str()),
      {
          {"/superClass", "'A'"},
          {"/qualifiers", "[{'name':'Description','type':'string','value':'base'," + flavor +
                              "true},'propagated':true}]"},
          {"/properties/0",
           "{'name':'Id','type':'string','classOrigin':'A','value':null,'qualifiers':[]}"},
          {"/properties/1", "{'name':'Codes','type':'uint8[]','arraySize':4,'classOrigin':"
                            "'B','value':null,'qualifiers':[]}"},
          {"/properties/2/referenceClass", "'A'"},
          {"/methods", "[{'name':'Go','returnType':'uint32','classOrigin':'B','qualifiers':[],"
                       "'parameters':[{'name':'Items','type':'string[]','arraySize':2,'qualifiers':"
                       "[{'name':'In','type':'boolean','value':false," +
                           flavor +
                           "false}}]},{'name':'Target','type':'reference','referenceClass':'A',"
                           "'qualifiers':[]}]}]"},
      });
  CheckShape(ParseJson(declaration.str()),
             {{"", "{'name':'Key','type':'boolean','value':false,'scope':['property','reference'],"
                   "'flavor':{'overridable':false,'toSubclass':true,'translatable':false}}"}});
  CheckShape(ParseJson(all.str()), {{"/qualifierDeclarations/4/name", "'In'"},
                                    {"/classes/1/superClass", "'A'"},
                                    {"/instances", "[]"}});
}

/// The writer, noting how much had reached the stream when the last
/// object arrived.
class TWatchedWriter : public TJsonWriter {
public:
  explicit TWatchedWriter(std::ostringstream &stream) : TJsonWriter(stream), out(stream) {}
  void Object(const TCIMXMLObject &object) override {
    ++objectsRead;
    writtenBefore = static_cast<std::size_t>(out.tellp());
    TJsonWriter::Object(object);
  }
  std::ostringstream &out;
  std::size_t objectsRead = 0, writtenBefore = 0;
};

// An enumeration goes out as it is read: most of the document is on the
// stream before its last instance arrives, and every instance is written.
TEST(JsonWriterTest, EnumerationStreamsThrough) {
  const std::size_t count = 10000;
  std::string xml = "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.4\"><MESSAGE ID=\"1\" "
                    "PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE "
                    "NAME=\"EnumerateInstances\"><IRETURNVALUE>";
  for (std::size_t i = 0; i < count; ++i)
    xml += "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"E\"><KEYBINDING NAME=\"Id\"><KEYVALUE>" +
           std::to_string(i) +
           "</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"E\"><PROPERTY NAME=\"Id\" "
           "TYPE=\"string\"><VALUE>" +
           std::to_string(i) + "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>";
  xml += "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
  TTemporaryFolder scratch;
  const std::string file = scratch.Write("enumeration.xml", xml);
  std::ostringstream out;
  TWatchedWriter writer(out);
  writer.BeginFile(file);
  TNamespacePopulator::Populate(CreateCIMNamespace("root/cimv2"), file,
                                {ECIMXMLGrammar::kFull, ECIMXMLRegistration::kReturnOnly}, writer);
  writer.EndFile();
  writer.Finish();
  const rapidjson::Document document = ParseJson(out.str());
  std::size_t written = 0;
  for (const rapidjson::Value &item : document["files"][0]["items"].GetArray())
    written += item["item"] == "instance" ? 1 : 0;
  EXPECT_EQ(count, writer.objectsRead);
  EXPECT_EQ(count, written);
  EXPECT_EQ(std::to_string(count), At(document, "/files/0/counts/instances"));
  EXPECT_EQ("\"9999\"", At(document, "/files/0/items/9999/instance/properties/0/value"));
  EXPECT_GT(writer.writtenBefore, out.str().size() * 9 / 10);
}

} // namespace
} // namespace orvtest
