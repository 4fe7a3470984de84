// The JSON writer, read back with RapidJSON's own parser: values of every
// type, the shape of objects, operations and messages, a corpus response,
// and an enumeration that streams through.
#include "write/JsonWriter.h"

#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"

#include <rapidjson/document.h>
#include <rapidjson/pointer.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

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
  EXPECT_FALSE(document.HasParseError())
      << "error " << document.GetParseError() << " at " << document.GetErrorOffset();
  return document;
}

/// A value as compact JSON text; "(none)" where the pointer finds nothing.
std::string At(const rapidjson::Value &root, const char *pointer) {
  const rapidjson::Value *value = rapidjson::Pointer(pointer).Get(root);
  if (value == nullptr)
    return "(none)";
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  value->Accept(writer);
  return std::string(buffer.GetString(), buffer.GetSize());
}

/// What a reader of the documented shape makes of a value of the type.
TCIMValue FromJson(TCIMType type, const rapidjson::Value &json) {
  if (json.IsNull())
    return TCIMValue(type, 0);
  if (type.IsArray()) {
    std::vector<TCIMValue> elements;
    for (const rapidjson::Value &element : json.GetArray())
      elements.push_back(FromJson(type.GetElementType(), element));
    TCIMValue array;
    array.Set(type, 0, elements);
    return array;
  }
  const std::string text = json.IsString() ? json.GetString() : "";
  switch (type) {
  case kCIMTypeBoolean:
    return TCIMValue(json.GetBool());
  case kCIMTypeUint8:
  case kCIMTypeUint16:
  case kCIMTypeUint32:
  case kCIMTypeUint64:
    return TCIMValue::MakeUnsigned(type, json.GetUint64());
  case kCIMTypeSint8:
  case kCIMTypeSint16:
  case kCIMTypeSint32:
  case kCIMTypeSint64:
    return TCIMValue::MakeSigned(type, json.GetInt64());
  case kCIMTypeReal32:
  case kCIMTypeReal64:
    return json.IsString() ? TCIMValue(type, text, nullptr)
                           : TCIMValue::MakeReal(type, json.GetDouble());
  case kCIMTypeReference: {
    TCIMReference path;
    path.SetNamespaceName(json.HasMember("namespace") ? json["namespace"].GetString() : "");
    path.SetHost(json.HasMember("host") ? json["host"].GetString() : "");
    path.SetClassName(json["className"].GetString());
    for (const rapidjson::Value &key : json["keys"].GetArray())
      path.AddKeyValue(key["name"].GetString(),
                       FromJson(TCIMType(std::string(key["type"].GetString())), key["value"]));
    return TCIMValue(path);
  }
  default:
    return TCIMValue(type, std::string(json.GetString(), json.GetStringLength()), nullptr);
  }
}

TCIMValue Array(ECIMType type, const std::vector<TCIMValue> &elements) {
  TCIMValue array;
  array.Set(TCIMType(type), 0, elements);
  return array;
}

struct TValueCase {
  TCIMValue value;
  std::string json;
  bool roundTrip = true;
  std::vector<std::string> log = {};
};

// Each value as an instance's property: its JSON, the type beside it, and
// what a reader makes of the two.
TEST(JsonWriterTest, EveryTypeOfValue) {
  TCIMReference inner;
  inner.SetClassName("In");
  inner.AddKeyValue("On", TCIMValue(true));
  TCIMReference path;
  path.SetHost("h");
  path.SetNamespaceName("root/x");
  path.SetClassName("C");
  path.AddKeyValue("Name", TCIMValue("a\"b"));
  path.AddKeyValue("Id", TCIMValue::MakeUnsigned(kCIMTypeUint64, 7));
  path.AddKeyValue("Ref", TCIMValue(inner));
  const auto embedded = CreateStandaloneInstance("E", nullptr);
  embedded->SetPropertyValue("P", TCIMValue::MakeSigned(kCIMTypeSint16, -2));
  TCIMValue holder("<INSTANCE CLASSNAME=\"E\">...</INSTANCE>");
  holder.SetEmbeddedObject(embedded);
  const double inf = std::numeric_limits<double>::infinity();
  const std::string nonUtf8 = "JSON: bytes that are not UTF-8 in a string, each written as its "
                              "Latin-1 character";
  const std::vector<TValueCase> cases = {
      {TCIMValue(true), "true"},
      {TCIMValue::MakeUnsigned(kCIMTypeUint8, 255), "255"},
      {TCIMValue::MakeUnsigned(kCIMTypeUint64, std::numeric_limits<std::uint64_t>::max()),
       "18446744073709551615"},
      {TCIMValue::MakeSigned(kCIMTypeSint64, std::numeric_limits<std::int64_t>::min()),
       "-9223372036854775808"},
      {TCIMValue::MakeSigned(kCIMTypeSint64, std::numeric_limits<std::int64_t>::max()),
       "9223372036854775807"},
      {TCIMValue::MakeSigned(kCIMTypeSint8, -128), "-128"},
      // Shortest texts: a real32 is not widened to its double's digits.
      {TCIMValue::MakeReal(kCIMTypeReal32, 0.1), "0.1"},
      {TCIMValue::MakeReal(kCIMTypeReal64, 1e300), "1e300"},
      {TCIMValue::MakeReal(kCIMTypeReal64, -0.5), "-0.5"},
      {TCIMValue::MakeReal(kCIMTypeReal64, std::nan("")), "\"NaN\""},
      {TCIMValue::MakeReal(kCIMTypeReal32, -inf), "\"-INF\""},
      {TCIMValue::MakeReal(kCIMTypeReal64, inf), "\"INF\""},
      {TCIMValue(""), "\"\""},
      {TCIMValue("q\"b\\s/\x01\x1f\n\t\x7f"), "\"q\\\"b\\\\s/\\u0001\\u001F\\n\\t\x7f\""},
      {TCIMValue(std::string("a\0b", 3)), "\"a\\u0000b\""},
      {TCIMValue("\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80"),
       "\"\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\""},
      // A stray byte, a surrogate, an overlong slash, a character cut off
      // at the end: each byte its Latin-1 character.
      {TCIMValue("a\xff\xed\xa0\x80\xc0\xaf\xe2\x82"),
       "\"a\xc3\xbf\xc3\xad\xc2\xa0\xc2\x80\xc3\x80\xc2\xaf\xc3\xa2\xc2\x82\"",
       false,
       {nonUtf8}},
      {TCIMValue::MakeUnsigned(kCIMTypeChar16, 0xE9), "\"\xc3\xa9\""},
      {TCIMValue(TCIMDateTime::Parse("20240301081500.000000+060")),
       "\"20240301081500.000000+060\""},
      {TCIMValue(TCIMDateTime::Parse("00000003040506.******:000")),
       "\"00000003040506.******:000\""},
      {TCIMValue(path), "{\"host\":\"h\",\"namespace\":\"root/x\",\"className\":\"C\",\"keys\":["
                        "{\"name\":\"Name\",\"type\":\"string\",\"value\":\"a\\\"b\"},"
                        "{\"name\":\"Id\",\"type\":\"uint64\",\"value\":7},"
                        "{\"name\":\"Ref\",\"type\":\"reference\",\"value\":"
                        "{\"className\":\"In\",\"keys\":[{\"name\":\"On\",\"type\":\"boolean\","
                        "\"value\":true}]}}]}"},
      {TCIMValue(TCIMType(kCIMTypeString), 0), "null"},
      {Array(kCIMTypeUint32, {Uint32(1), TCIMValue(TCIMType(kCIMTypeUint32), 0), Uint32(3)}),
       "[1,null,3]"},
      {Array(kCIMTypeString, {TCIMValue(""), TCIMValue(TCIMType(kCIMTypeString), 0)}),
       "[\"\",null]"},
      {Array(kCIMTypeReference, {TCIMValue(inner)}),
       "[{\"className\":\"In\",\"keys\":[{\"name\":\"On\",\"type\":\"boolean\",\"value\":true}]}]"},
      {holder,
       "{\"instance\":{\"className\":\"E\",\"properties\":[{\"name\":\"P\",\"type\":\"sint16\","
       "\"value\":-2}]}}",
       false},
  };
  for (const TValueCase &c : cases) {
    SCOPED_TRACE(c.json);
    TCapturingLogger logger;
    const auto instance = CreateStandaloneInstance("C", nullptr);
    instance->SetPropertyValue("V", c.value);
    std::ostringstream out;
    WriteJson(out, *instance);
    const rapidjson::Document document = ParseJson(out.str());
    EXPECT_EQ(c.json, At(document, "/properties/0/value"));
    const TCIMType type = c.value.GetType();
    EXPECT_EQ("\"" + type.GetName() + (type.IsArray() ? "[]" : "") + "\"",
              At(document, "/properties/0/type"));
    EXPECT_EQ(c.log, logger.Texts());
    if (c.roundTrip && !document.HasParseError()) {
      EXPECT_EQ(c.value, FromJson(type, document["properties"][0]["value"]));
    }
  }
}

/// Reads each file with the writer as handler, as the tool does; a file that
/// fails ends its entry with the failure.
std::string WriteFiles(const boost::shared_ptr<ICIMNamespace> &ns,
                       const std::vector<std::string> &files) {
  std::ostringstream out;
  TJsonWriter writer(out);
  for (const std::string &file : files) {
    writer.BeginFile(file);
    try {
      TNamespacePopulator::Populate(
          ns, file, {ECIMXMLGrammar::kFull, ECIMXMLRegistration::kReturnOnly}, writer);
      writer.EndFile();
    } catch (const TORVException &ex) {
      writer.EndFile(&ex);
    }
  }
  writer.Finish();
  return out.str();
}

struct TShapeCase {
  const char *pointer;
  std::string json;
};

void CheckShape(const rapidjson::Value &root, const std::vector<TShapeCase> &cases) {
  for (const TShapeCase &c : cases) {
    SCOPED_TRACE(c.pointer);
    EXPECT_EQ(c.json, At(root, c.pointer));
  }
}

// Objects with their paths and places, operations, messages and a failed
// file, as the examples give them typed by the example schema.
TEST(JsonWriterTest, ItemsOfMessages) {
  TCapturingLogger logger;
  const std::string examples = std::string(ORV_EXAMPLES_DIR) + "/";
  const auto ns = CreateCIMNamespace("root/cimv2");
  TNamespacePopulator::PopulateFromXMLFile(ns, examples + "schema.xml");
  TTemporaryFolder scratch;
  const std::string missing = scratch.PathOf("missing.xml");
  const std::string text = WriteFiles(ns, {examples + "response.xml", examples + "request.xml",
                                           examples + "indication.xml", missing});
  ASSERT_EQ('\n', text.back());
  const rapidjson::Document document = ParseJson(text);
  const std::string job =
      "{\"namespace\":\"root/cimv2\",\"className\":\"ORV_Job\",\"keys\":[{\"name\":"
      "\"InstanceID\",\"type\":\"string\",\"value\":\"ORV:format:usb1\"}]}";
  CheckShape(
      document,
      {
          {"/files/0/file", "\"" + examples + "response.xml\""},
          {"/files/0/items/0/item", "\"instance\""},
          {"/files/0/items/0/operation", "0"},
          {"/files/0/items/0/role", "\"\""},
          {"/files/0/items/0/path", job},
          // In the class's order, inherited properties first.
          {"/files/0/items/0/instance/className", "\"ORV_Job\""},
          {"/files/0/items/0/instance/properties/0",
           "{\"name\":\"Caption\",\"type\":\"string\",\"value\":null}"},
          {"/files/0/items/0/instance/properties/2",
           "{\"name\":\"InstanceID\",\"type\":\"string\",\"key\":true,\"value\":"
           "\"ORV:format:usb1\"}"},
          {"/files/0/items/0/instance/properties/3/value", "40"},
          {"/files/0/items/1",
           "{\"item\":\"operation\",\"sequence\":0,\"line\":11,\"message\":0,\"kind\":"
           "\"IMETHODRESPONSE\",\"method\":\"EnumerateInstances\",\"parameters\":[],"
           "\"returnValue\":{\"type\":null,\"value\":null,\"firstObject\":0,\"objectCount\":1},"
           "\"correlators\":[]}"},
          {"/files/0/items/2/path",
           "{\"className\":\"ORV_System\",\"keys\":[{\"name\":\"Name\",\"type\":\"string\","
           "\"value\":\"alpha\"}]}"},
          {"/files/0/items/4",
           "{\"item\":\"instancePath\",\"sequence\":2,\"line\":35,\"operation\":2,\"role\":\"\","
           "\"path\":{\"host\":\"alpha.example.com\",\"namespace\":\"root/example\","
           "\"className\":\"ORV_Disk\",\"keys\":[{\"name\":\"SystemName\",\"type\":\"string\","
           "\"value\":\"alpha\"},{\"name\":\"DeviceID\",\"type\":\"string\",\"value\":\"usb1\"}]}"
           "}"},
          {"/files/0/items/6/parameters",
           "[{\"name\":\"Job\",\"type\":\"reference\",\"value\":" + job + "}]"},
          {"/files/0/items/6/returnValue", "{\"type\":\"uint32\",\"value\":4096}"},
          {"/files/0/items/7/error", "{\"code\":6,\"description\":\"No disk usb2 in alpha\"}"},
          {"/files/0/items/8",
           "{\"item\":\"message\",\"sequence\":0,\"line\":8,\"id\":\"1002\",\"protocolVersion\":"
           "\"1.0\",\"kind\":\"MULTIRSP\",\"firstOperation\":0,\"operationCount\":5}"},
          {"/files/0/items/9", "(none)"},
          {"/files/0/counts",
           "{\"qualifierDeclarations\":0,\"classes\":0,\"instances\":1,\"paths\":2,"
           "\"operations\":5}"},
          // Targets: an intrinsic call's namespace, an extrinsic call's path;
          // a parameter that held a path, and a correlator.
          {"/files/1/items/2/target", "{\"namespace\":\"root/example\"}"},
          {"/files/1/items/2/parameters/0",
           "{\"name\":\"ObjectName\",\"type\":null,\"value\":null,\"firstObject\":0,"
           "\"objectCount\":1}"},
          {"/files/1/items/2/correlators",
           "[{\"name\":\"Trace\",\"type\":\"uint32\",\"value\":12}]"},
          {"/files/1/items/3/target/className", "\"ORV_Disk\""},
          {"/files/1/items/3/parameters/0", "{\"name\":\"RequestedState\",\"type\":\"uint16\","
                                            "\"value\":3}"},
          {"/files/2/items/1/kind", "\"EXPMETHODCALL\""},
          {"/files/2/items/0/role", "\"NewIndication\""},
          {"/files/2/items/2/kind", "\"SIMPLEEXPREQ\""},
          {"/files/3",
           "{\"file\":\"" + missing +
               "\",\"items\":[],\"counts\":{\"qualifierDeclarations\":0,\"classes\":0,"
               "\"instances\":0,\"paths\":0,\"operations\":0},\"failure\":{\"status\":11,"
               "\"text\":\"File access failed\"}}"},
          {"/files/4", "(none)"},
      });
}

// A class with all it inherits, a qualifier declaration, and the namespace
// with its classes superclass first.
TEST(JsonWriterTest, ClassesAndDeclarations) {
  TCapturingLogger logger;
  const auto ns = CreateCIMNamespace("root/test");
  const std::string classes = Objects(
      {"<CLASS NAME=\"A\"><QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>base</VALUE>"
       "</QUALIFIER><PROPERTY NAME=\"Id\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
       "TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER></PROPERTY></CLASS>",
       "<CLASS NAME=\"B\" SUPERCLASS=\"A\"><PROPERTY.ARRAY NAME=\"Codes\" TYPE=\"uint8\" "
       "ARRAYSIZE=\"4\"/><PROPERTY.REFERENCE NAME=\"Peer\" REFERENCECLASS=\"A\"/><PROPERTY "
       "NAME=\"Count\" TYPE=\"sint64\"><VALUE>-5</VALUE></PROPERTY><METHOD NAME=\"Go\" "
       "TYPE=\"uint32\"><PARAMETER.ARRAY NAME=\"Items\" TYPE=\"string\" ARRAYSIZE=\"2\">"
       "<QUALIFIER NAME=\"In\" TYPE=\"boolean\"><VALUE>false</VALUE></QUALIFIER>"
       "</PARAMETER.ARRAY><PARAMETER.REFERENCE NAME=\"Target\" REFERENCECLASS=\"A\"/></METHOD>"
       "</CLASS>"});
  for (const std::string &xml : {QualifierDeclarations(), classes}) {
    std::vector<char> buffer(xml.begin(), xml.end());
    buffer.push_back('\0');
    TCIMXMLParser parser(ns);
    parser.SetReadOptions({ECIMXMLGrammar::kFull, ECIMXMLRegistration::kRegister});
    parser.Parse(buffer.data());
  }
  ASSERT_EQ(std::vector<std::string>{}, logger.Texts());
  const std::string flavors = "{\"overridable\":true,\"toSubclass\":true,\"translatable\":";
  std::ostringstream cls, declaration, all;
  WriteJson(cls, *ns->GetClass("B"));
  WriteJson(declaration, *ns->GetQualifierDecl("Key"));
  WriteJson(all, *ns);
  CheckShape(
      ParseJson(cls.str()),
      {
          {"/name", "\"B\""},
          {"/superClass", "\"A\""},
          {"/qualifiers",
           "[{\"name\":\"Description\",\"type\":\"string\",\"value\":\"base\",\"flavor\":" +
               flavors + "true},\"propagated\":true}]"},
          {"/properties/0/name", "\"Id\""},
          {"/properties/0/classOrigin", "\"A\""},
          {"/properties/0/qualifiers/0/flavor",
           "{\"overridable\":false,\"toSubclass\":true,\"translatable\":false}"},
          {"/properties/1",
           "{\"name\":\"Codes\",\"type\":\"uint8[]\",\"arraySize\":4,\"classOrigin\":\"B\","
           "\"value\":null,\"qualifiers\":[]}"},
          {"/properties/2", "{\"name\":\"Peer\",\"type\":\"reference\",\"referenceClass\":\"A\","
                            "\"classOrigin\":\"B\",\"value\":null,\"qualifiers\":[]}"},
          {"/properties/3/value", "-5"},
          {"/methods",
           "[{\"name\":\"Go\",\"returnType\":\"uint32\",\"classOrigin\":\"B\",\"qualifiers\":"
           "[],\"parameters\":[{\"name\":\"Items\",\"type\":\"string[]\",\"arraySize\":2,"
           "\"qualifiers\":[{\"name\":\"In\",\"type\":\"boolean\",\"value\":false,\"flavor\":" +
               flavors +
               "false}}]},{\"name\":\"Target\",\"type\":\"reference\",\"referenceClass\":"
               "\"A\",\"qualifiers\":[]}]}]"},
      });
  CheckShape(ParseJson(declaration.str()),
             {{"", "{\"name\":\"Key\",\"type\":\"boolean\",\"value\":false,\"scope\":[\"property\","
                   "\"reference\"],\"flavor\":{\"overridable\":false,\"toSubclass\":true,"
                   "\"translatable\":false}}"}});
  CheckShape(ParseJson(all.str()), {{"/name", "\"root/test\""},
                                    {"/qualifierDeclarations/4/name", "\"In\""},
                                    {"/classes/0/name", "\"A\""},
                                    {"/classes/1/name", "\"B\""},
                                    {"/classes/2", "(none)"},
                                    {"/instances", "[]"}});
}

// A value nested deeper than the writer recurses is written as its text,
// or as null where that text would be too long.
TEST(JsonWriterTest, DeepNestingBecomesText) {
  TCIMValue arrays = Array(kCIMTypeUint32, {Uint32(1), Uint32(2)});
  for (int level = 0; level < 70; ++level)
    arrays = Array(kCIMTypeUint32, {arrays});
  TCIMValue references = TCIMValue(TCIMReference());
  for (int level = 0; level < 200; ++level) {
    TCIMReference path;
    path.SetClassName("R");
    path.AddKeyValue("Ref", references);
    references = TCIMValue(path);
  }
  const std::string deep = "JSON: a value nested more than 64 deep ";
  const struct {
    TCIMValue value;
    std::string deepest;
    std::string log;
  } cases[] = {
      {arrays, "\"1, 2\"", deep + "is written as its text"},
      {references, "null", deep + "is too long as text (Out of memory); written as null"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.deepest);
    TCapturingLogger logger;
    const auto instance = CreateStandaloneInstance("C", nullptr);
    instance->SetPropertyValue("V", c.value);
    std::ostringstream out;
    WriteJson(out, *instance);
    const rapidjson::Document document = ParseJson(out.str());
    const rapidjson::Value *deepest = &document["properties"][0]["value"];
    int levels = 0;
    for (; deepest->IsArray() || deepest->IsObject(); ++levels)
      deepest = deepest->IsArray() ? &(*deepest)[0] : &(*deepest)["keys"][0]["value"];
    EXPECT_EQ(64, levels);
    EXPECT_EQ(c.deepest, At(*deepest, ""));
    EXPECT_EQ(std::vector<std::string>{c.log}, logger.Texts());
  }
}

/// Forwards to the writer, noting how much of the document had reached the
/// stream when each object arrived.
class TStreamWatch : public ICIMXMLHandler {
public:
  TStreamWatch(TJsonWriter &writer, std::ostringstream &stream) : json(writer), out(stream) {}
  void Object(const TCIMXMLObject &object) override {
    ++objectsRead;
    writtenAtLastObject = static_cast<std::size_t>(out.tellp());
    json.Object(object);
  }
  void Operation(const TCIMXMLOperation &operation) override { json.Operation(operation); }
  void Message(const TCIMXMLMessage &message) override { json.Message(message); }

  TJsonWriter &json;
  std::ostringstream &out;
  std::size_t objectsRead = 0;
  std::size_t writtenAtLastObject = 0;
};

// An enumeration goes out as it is read: most of the document is on the
// stream before its last instance arrives, and every instance is written.
TEST(JsonWriterTest, EnumerationStreamsThrough) {
  const std::size_t count = 10000;
  std::string xml = "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.4\"><MESSAGE ID=\"1\" "
                    "PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE "
                    "NAME=\"EnumerateInstances\"><IRETURNVALUE>";
  for (std::size_t i = 0; i < count; ++i) {
    const std::string id = std::to_string(i);
    xml += "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"E\"><KEYBINDING NAME=\"Id\"><KEYVALUE>" +
           id +
           "</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"E\"><PROPERTY "
           "NAME=\"Id\" TYPE=\"string\"><VALUE>" +
           id + "</VALUE></PROPERTY><PROPERTY NAME=\"Size\" TYPE=\"uint64\"><VALUE>" + id +
           "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>";
  }
  xml += "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
  TTemporaryFolder scratch;
  const std::string file = scratch.Write("enumeration.xml", xml);
  TCapturingLogger logger;
  std::ostringstream out;
  TJsonWriter writer(out);
  TStreamWatch watch(writer, out);
  writer.BeginFile(file);
  TNamespacePopulator::Populate(CreateCIMNamespace("root/cimv2"), file,
                                {ECIMXMLGrammar::kFull, ECIMXMLRegistration::kReturnOnly}, watch);
  writer.EndFile();
  writer.Finish();
  const rapidjson::Document document = ParseJson(out.str());
  const rapidjson::Value &items = document["files"][0]["items"];
  std::size_t written = 0;
  for (const rapidjson::Value &item : items.GetArray())
    written += item["item"] == "instance" ? 1 : 0;
  EXPECT_EQ(count, watch.objectsRead);
  EXPECT_EQ(count, written);
  EXPECT_EQ(std::to_string(count), At(document, "/files/0/counts/instances"));
  EXPECT_EQ("\"9999\"", At(items, "/9999/instance/properties/0/value"));
  EXPECT_GT(watch.writtenAtLastObject, out.str().size() * 9 / 10);
}

// Every object of real responses is in the document, at its place, with
// the values a reader reads back.
using JsonWriterCorpusTest = TCorpusTest;

TEST_F(JsonWriterCorpusTest, EveryObjectOfAResponseIsWritten) {
  TCapturingLogger logger;
  for (const char *name :
       {"pywbem-functiontest/enumerateinstances/EnumerateInstances1.rsp.xml",
        "pywbem-functiontest/embeddedobjectclasses/EmbeddedObjectClassCDATA3.rsp.xml",
        "openwbem/test/acceptance/testfiles/MultiReqResp.xml"}) {
    SCOPED_TRACE(name);
    const std::string file = corpus + "/" + name;
    const auto ns = CreateCIMNamespace("root/cimv2");
    TCIMXMLResult result;
    TNamespacePopulator::Populate(
        ns, file, {ECIMXMLGrammar::kFull, ECIMXMLRegistration::kReturnOnly}, result);
    const rapidjson::Document document = ParseJson(WriteFiles(ns, {file}));
    const rapidjson::Value &items = document["files"][0]["items"];
    ASSERT_EQ(result.GetObjects().size() + result.GetOperations().size() +
                  result.GetMessages().size(),
              items.Size());
    rapidjson::SizeType index = 0;
    for (const TCIMXMLObject &object : result.GetObjects()) {
      while (items[index]["item"] == "operation" || items[index]["item"] == "message")
        ++index;
      const rapidjson::Value &item = items[index++];
      EXPECT_EQ(object.sequence, item["sequence"].GetUint64());
      if (object.kind == TCIMXMLObject::EKind::kInstance) {
        const rapidjson::Value &properties = item["instance"]["properties"];
        EXPECT_EQ(object.instance->GetClassName(), item["instance"]["className"].GetString());
        ASSERT_EQ(object.instance->GetProperties().size(), properties.Size());
        for (const rapidjson::Value &property : properties.GetArray()) {
          const TCIMValue value = object.instance->GetPropertyValue(property["name"].GetString());
          if (!value.GetEmbeddedInstance() && !value.GetEmbeddedClass()) {
            EXPECT_EQ(value, FromJson(value.GetType(), property["value"]));
          }
        }
      } else if (object.kind == TCIMXMLObject::EKind::kClass) {
        EXPECT_EQ(object.cimClass->GetName(), item["class"]["name"].GetString());
        EXPECT_EQ(object.cimClass->GetProperties().size(), item["class"]["properties"].Size());
        EXPECT_EQ(object.cimClass->GetMethods().size(), item["class"]["methods"].Size());
      }
    }
  }
}

} // namespace
} // namespace orvtest
