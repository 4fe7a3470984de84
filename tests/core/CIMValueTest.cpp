#include "core_api/CIMValue.h"

#include "support/Fixtures.h"

#include <cmath>
#include <map>

namespace orvtest {
namespace {

TCIMValue Read(TCIMType type, const std::string &text) {
  return TCIMValue(type, text, nullptr);
}

// Texts of each type, named in any letter case, each followed by the
// canonical text of the value it reads as, which must read back as the same
// value, or by the status that refuses it: "!text", "!range" or "!date".
TEST(CIMValueTest, TypeNamesAndTheTextOfEveryType) {
  const std::map<std::string, EORVStatusCode> refusals = {{"!text", kORVStatusInvalidValueText},
                                                          {"!range", kORVStatusValueOutOfRange},
                                                          {"!date", kORVStatusInvalidDateTime}};
  const std::pair<const char *, std::vector<std::string>> kTexts[] = {
      // Booleans: the two words in any case, surrounding whitespace ignored.
      {"Boolean", {"FaLsE", "false", " \tTRUE\r\n", "true", "1", "!text"}},
      // Integer limits, decimal and hexadecimal; "-0" is zero.
      {"UINT8",
       {"255", "255", "256", "!range", "-0", "0", "-1", "!range", "+7", "7", " 7\n", "7", "0X1f",
        "31", "0x100", "!range"}},
      {"uint16", {"65535", "65535", "65536", "!range"}},
      {"Uint32", {"4294967295", "4294967295", "4294967296", "!range", "- 1", "!text"}},
      {"uint64",
       {"0xFFFFFFFFFFFFFFFF", "18446744073709551615", "18446744073709551616", "!range",
        "0x10000000000000000", "!range"}},
      {"SINT8",
       {"127", "127", "-129", "!range", "128", "!range", "-0x80", "-128", "0x80", "!range"}},
      {"sint16", {"-32768", "-32768", "32768", "!range"}},
      {"Sint32",
       {"-2147483648", "-2147483648", "-2147483649", "!range", "   ", "!text", "-", "!text", "+-1",
        "!text", "12abc", "!text", "0x", "!text", "0xG1", "!text"}},
      {"SInt64",
       {"-9223372036854775808", "-9223372036854775808", "9223372036854775808", "!range",
        "123456789012345678901234567890", "!range"}},
      // Reals: the shortest text that reads back as the same value.
      {"Real32",
       {"0.1", "0.1", "+2.5e2", "250", "3.4028235e38", "3.4028235e+38", "3.5e38", "!range", "inf",
        "INF", "-inf", "-INF"}},
      {"REAL64",
       {"NaN", "NaN", " -2.5E-3 ", "-0.0025", ".5", "0.5", "1e309", "!range", "1e", "!text", "+-1",
        "!text", "0x1p3", "!text", "", "!text"}},
      // char16: one byte or one UTF-8 character of the basic plane.
      {"char16",
       {" ", " ", "\xE2\x82\xAC", "\xE2\x82\xAC", "\xE9", "\xC3\xA9", "", "!text", " a", "!text",
        "\xC0\xAF", "!text", "\xED\xA0\x80", "!text", "\xF0\x9F\x98\x80", "!text"}},
      {"STRING", {"  two  spaces  ", "  two  spaces  "}},
      {"DateTime",
       {" 20230405060708.123456+060 ", "20230405060708.123456+060", "2023-04-05", "!date"}},
      {"reference",
       {"root/cimv2:CIM_Disk.Id=\"a\"", "root/cimv2:CIM_Disk.Id=\"a\"", "CIM_Disk.", "!text"}}};
  for (const auto &row : kTexts) {
    const TCIMType type{std::string(row.first)};
    for (std::size_t i = 0; i < row.second.size(); i += 2) {
      SCOPED_TRACE(std::string(row.first) + " \"" + row.second[i] + "\"");
      const std::string &expected = row.second[i + 1];
      TCIMValue value;
      const EORVStatusCode status = StatusOf([&] { value = Read(type, row.second[i]); });
      EXPECT_EQ(status, refusals.count(expected) ? refusals.at(expected) : kORVStatusOK);
      if (status == kORVStatusOK) {
        EXPECT_EQ(value.GetType(), type);
        EXPECT_EQ(value.ToString(), expected);
        EXPECT_EQ(Read(type, value.ToString()), value);
      }
    }
  }
  // Only scalar types have a text form.
  for (ECIMType type : {static_cast<ECIMType>(kCIMTypeUint8 | kCIMTypeArrayFlag), kCIMTypeNone})
    EXPECT_EQ(StatusOf([&] { Read(type, "1"); }), kORVStatusInvalidArgument) << type;
  EXPECT_EQ(Read(kCIMTypeSint8, "-5").GetSigned(), -5);
  EXPECT_EQ(Read(kCIMTypeString, " x").GetString(), " x");
  EXPECT_EQ(Read(kCIMTypeChar16, "\xE2\x82\xAC").GetUnsigned(), 0x20ACu);
  EXPECT_EQ(Read(kCIMTypeReal32, "0.1").GetReal(), static_cast<double>(0.1f)) << "rounded to float";
  EXPECT_TRUE(std::signbit(Read(kCIMTypeReal64, "-0").GetReal()));
  // The name a type gives back is the lower-case one, also for arrays.
  EXPECT_EQ(TCIMType(std::string("SInt64")).GetArrayType().GetName(), "sint64");
  for (const char *bad : {"", "int8", "string ", "uint8[]", "object"})
    EXPECT_EQ(StatusOf([&] { TCIMType{std::string(bad)}; }), kORVStatusInvalidTypeName) << bad;
}

// The MOF and the CIM-XML text of values of each kind.
TEST(CIMValueTest, MOFAndText) {
  std::string mof, text;
  for (const TCIMValue &value :
       {TCIMValue(), TCIMValue::MakeReal(kCIMTypeReal64, 1),
        TCIMValue::MakeReal(kCIMTypeReal64, 1e20), TCIMValue::MakeReal(kCIMTypeReal32, 0.1),
        TCIMValue("q\"b\\n\nt\tr\rf\fb\b"), TCIMValue(std::string("\x01\x7F\0", 3)),
        TCIMValue("\xC3\xA9"), Read(kCIMTypeChar16, "'"), Read(kCIMTypeChar16, "\""),
        TCIMValue(TCIMDateTime(2023, 4, 5, 6, 7, 8, 9, -60)),
        Read(kCIMTypeReference, "CIM_Disk.Id=\"a\\\"b\""),
        Array(kCIMTypeUint32, {Uint32(1), Uint32(2)}),
        Array(kCIMTypeString, {TCIMValue("a"), TCIMValue()}), Array(kCIMTypeString, {}),
        TCIMValue(TCIMType(static_cast<ECIMType>(kCIMTypeString | kCIMTypeArrayFlag)), 4)}) {
    mof += value.ToMOF() + " | ";
    text += value.ToString() + " | ";
  }
  EXPECT_EQ(mof, "NULL | 1.0 | 1.0e+20 | 0.1 | \"q\\\"b\\\\n\\nt\\tr\\rf\\fb\\b\" | "
                 "\"\\x0001\\x007F\\x0000\" | \"\xC3\xA9\" | '\\'' | '\"' | "
                 "\"20230405060708.000009-060\" | \"CIM_Disk.Id=\\\"a\\\\\\\"b\\\"\" | {1, 2} | "
                 "{\"a\", NULL} | {} | NULL | ");
  EXPECT_EQ(text, " | 1 | 1e+20 | 0.1 | q\"b\\n\nt\tr\rf\fb\b | " + std::string("\x01\x7F\0", 3) +
                      " | \xC3\xA9 | ' | \" | 20230405060708.000009-060 | CIM_Disk.Id=\"a\\\"b\" | "
                      "1, 2 | a,  |  |  | ");
}

TEST(CIMValueTest, EqualityNullsAndAccessors) {
  const TCIMValue u8 = TCIMValue::MakeUnsigned(kCIMTypeUint8, 7);
  EXPECT_NE(u8, TCIMValue::MakeUnsigned(kCIMTypeUint16, 7));
  EXPECT_NE(u8, TCIMValue(TCIMType(kCIMTypeUint8), 0));
  EXPECT_NE(TCIMValue::MakeSigned(kCIMTypeSint8, 1), TCIMValue::MakeSigned(kCIMTypeSint8, 2));
  // Nulls of one type are equal whatever count they were declared with.
  const TCIMType u8Array(static_cast<ECIMType>(kCIMTypeUint8 | kCIMTypeArrayFlag));
  EXPECT_EQ(TCIMValue(u8Array, 3), TCIMValue(u8Array, 5));
  EXPECT_NE(Array(kCIMTypeString, {TCIMValue("a")}),
            Array(kCIMTypeString, {TCIMValue("a"), TCIMValue("b")}));
  // A null array keeps its declared count; Set adds the array flag.
  EXPECT_EQ(TCIMValue(u8Array, 4).GetCount(), 4u);
  const TCIMValue filled = Array(kCIMTypeUint8, {u8});
  EXPECT_EQ(filled.GetType(), u8Array);
  EXPECT_EQ(filled.GetCount() + u8.GetCount() + TCIMValue().GetCount(), 2u);

  const TCIMValue text("x");
  const TCIMValue nullBoolean(TCIMType(kCIMTypeBoolean), 0);
  EXPECT_FALSE(static_cast<bool>(nullBoolean) || static_cast<bool>(TCIMValue("true")));
  EXPECT_TRUE(static_cast<TCIMReference>(text).GetClassName().empty());
  const std::pair<std::function<void()>, EORVStatusCode> refused[] = {
      {[&] { (void)text.GetBoolean(); }, kORVStatusTypeMismatch},
      {[&] { (void)text.GetElements(); }, kORVStatusTypeMismatch},
      {[&] { (void)nullBoolean.GetBoolean(); }, kORVStatusNullObject},
      {[] { TCIMValue::MakeUnsigned(kCIMTypeUint8, 256); }, kORVStatusValueOutOfRange},
      {[] { TCIMValue::MakeUnsigned(kCIMTypeChar16, 0x10000); }, kORVStatusValueOutOfRange},
      {[] { TCIMValue::MakeUnsigned(kCIMTypeSint8, 1); }, kORVStatusTypeMismatch},
      {[] { TCIMValue::MakeSigned(kCIMTypeSint16, -32769); }, kORVStatusValueOutOfRange},
      {[] { TCIMValue::MakeReal(kCIMTypeReal32, 1e39); }, kORVStatusValueOutOfRange},
      {[] { TCIMValue().Set(TCIMType(kCIMTypeNone), 0, {}); }, kORVStatusInvalidArgument}};
  for (std::size_t i = 0; i < std::size(refused); ++i)
    EXPECT_EQ(StatusOf(refused[i].first), refused[i].second) << i;
}

// A copy shares what a reference or array holds until one of them changes;
// assignment works between any two ways of keeping contents; a reference
// holds its class weakly.
TEST(CIMValueTest, CopiesStayIndependentAndReferencedClassesAreHeldWeakly) {
  auto ns = CreateCIMNamespace("root/test");
  const TCIMValue original{TCIMReference()};
  TCIMValue copy = original;
  copy.SetReferencedClass(ns->CreateClass("CIM_Target", nullptr));
  EXPECT_FALSE(original.GetReferencedClass());
  // Setting the path keeps the class: it belongs to the declaration.
  copy.Set(TCIMReference());
  EXPECT_EQ(copy.GetReferencedClass(), ns->GetClass("CIM_Target"));
  copy.SetReferencedClass(ns->CreateClass("CIM_Other", nullptr));
  EXPECT_EQ(StatusOf([&] { Uint32(1).SetReferencedClass(ns->GetClass("CIM_Other")); }),
            kORVStatusTypeMismatch);
  // An embedded object goes with a string, is held strongly, and shows in
  // MOF in the string's place; copies share it until one is changed.
  TCIMValue embedding("<CLASS NAME=\"CIM_Target\"/>");
  embedding.SetEmbeddedObject(ns->GetClass("CIM_Target"));
  const TCIMValue shared = embedding;
  embedding.SetEmbeddedObject(boost::shared_ptr<ICIMInstance>());
  EXPECT_EQ(shared.ToMOF() + embedding.ToMOF(),
            "\"class CIM_Target {\\n};\"\"<CLASS NAME=\\\"CIM_Target\\\"/>\"");
  EXPECT_FALSE(embedding.GetEmbeddedClass() || embedding.GetEmbeddedInstance());
  EXPECT_EQ(StatusOf([&] { Uint32(1).SetEmbeddedObject(ns->GetClass("CIM_Target")); }),
            kORVStatusTypeMismatch);
  ns.reset();
  EXPECT_FALSE(copy.GetReferencedClass());
  EXPECT_EQ(shared.GetEmbeddedClass()->GetName(), "CIM_Target");

  const TCIMValue array = Array(kCIMTypeSint32, {TCIMValue::MakeSigned(kCIMTypeSint32, 1)});
  TCIMValue changed = array;
  changed.Set(TCIMType(kCIMTypeSint32), 1, {TCIMValue::MakeSigned(kCIMTypeSint32, 9)});
  EXPECT_EQ(array.ToString(), "1");
  const std::vector<TCIMValue> kinds({TCIMValue("a string too long for the short buffer"),
                                      TCIMValue(TCIMDateTime(2024, 2, 29, 12, 30, 0, 5, 60)),
                                      TCIMValue::MakeUnsigned(kCIMTypeUint64, 42), original, array,
                                      TCIMValue()});
  for (const TCIMValue &from : kinds) {
    for (const TCIMValue &to : kinds) {
      TCIMValue target = to, moved = to, source = from;
      EXPECT_EQ(target = from, from);
      EXPECT_EQ(moved = std::move(source), from);
    }
  }
}

} // namespace
} // namespace orvtest
