#include "core_api/CIMValue.h"

#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <string>
#include <vector>

using namespace NVRNORV20;

namespace {

// The status the text constructor throws, or kORVStatusOK when it reads the
// text; on success value receives the result.
EORVStatusCode Convert(ECIMType type, const std::string &text, TCIMValue &value) {
  try {
    value = TCIMValue(TCIMType(type), text, nullptr);
    return kORVStatusOK;
  } catch (const TORVException &ex) {
    return ex.GetStatusCode();
  }
}

struct TTextCase {
  ECIMType type;
  const char *text;
  EORVStatusCode status;
  /// ToString of the value read (for kORVStatusOK rows).
  const char *canonical;
};

const TTextCase kTextCases[] = {
    // boolean: the two words in any case, surrounding whitespace ignored.
    {kCIMTypeBoolean, "true", kORVStatusOK, "true"},
    {kCIMTypeBoolean, "FaLsE", kORVStatusOK, "false"},
    {kCIMTypeBoolean, " \tTRUE\r\n", kORVStatusOK, "true"},
    {kCIMTypeBoolean, "yes", kORVStatusInvalidValueText, ""},
    {kCIMTypeBoolean, "1", kORVStatusInvalidValueText, ""},
    {kCIMTypeBoolean, "truex", kORVStatusInvalidValueText, ""},
    {kCIMTypeBoolean, "", kORVStatusInvalidValueText, ""},

    // Unsigned limits; "-0" is zero, other negatives are out of range.
    {kCIMTypeUint8, "255", kORVStatusOK, "255"},
    {kCIMTypeUint8, "256", kORVStatusValueOutOfRange, ""},
    {kCIMTypeUint8, "-0", kORVStatusOK, "0"},
    {kCIMTypeUint8, "-1", kORVStatusValueOutOfRange, ""},
    {kCIMTypeUint8, "+7", kORVStatusOK, "7"},
    {kCIMTypeUint8, " 7\n", kORVStatusOK, "7"},
    {kCIMTypeUint8, "0xFF", kORVStatusOK, "255"},
    {kCIMTypeUint8, "0X1f", kORVStatusOK, "31"},
    {kCIMTypeUint8, "0x100", kORVStatusValueOutOfRange, ""},
    {kCIMTypeUint16, "65535", kORVStatusOK, "65535"},
    {kCIMTypeUint16, "65536", kORVStatusValueOutOfRange, ""},
    {kCIMTypeUint32, "4294967295", kORVStatusOK, "4294967295"},
    {kCIMTypeUint32, "4294967296", kORVStatusValueOutOfRange, ""},
    {kCIMTypeUint64, "18446744073709551615", kORVStatusOK, "18446744073709551615"},
    {kCIMTypeUint64, "0xFFFFFFFFFFFFFFFF", kORVStatusOK, "18446744073709551615"},
    {kCIMTypeUint64, "18446744073709551616", kORVStatusValueOutOfRange, ""},
    {kCIMTypeUint64, "0x10000000000000000", kORVStatusValueOutOfRange, ""},

    // Signed limits, also in hexadecimal with a sign.
    {kCIMTypeSint8, "-128", kORVStatusOK, "-128"},
    {kCIMTypeSint8, "-129", kORVStatusValueOutOfRange, ""},
    {kCIMTypeSint8, "127", kORVStatusOK, "127"},
    {kCIMTypeSint8, "128", kORVStatusValueOutOfRange, ""},
    {kCIMTypeSint8, "-0x80", kORVStatusOK, "-128"},
    {kCIMTypeSint8, "0x80", kORVStatusValueOutOfRange, ""},
    {kCIMTypeSint16, "-32768", kORVStatusOK, "-32768"},
    {kCIMTypeSint16, "32768", kORVStatusValueOutOfRange, ""},
    {kCIMTypeSint32, "-2147483648", kORVStatusOK, "-2147483648"},
    {kCIMTypeSint32, "-2147483649", kORVStatusValueOutOfRange, ""},
    {kCIMTypeSint64, "-9223372036854775808", kORVStatusOK, "-9223372036854775808"},
    {kCIMTypeSint64, "-9223372036854775809", kORVStatusValueOutOfRange, ""},
    {kCIMTypeSint64, "9223372036854775807", kORVStatusOK, "9223372036854775807"},
    {kCIMTypeSint64, "9223372036854775808", kORVStatusValueOutOfRange, ""},
    {kCIMTypeSint64, "123456789012345678901234567890", kORVStatusValueOutOfRange, ""},

    // Integer texts that are not numbers.
    {kCIMTypeSint32, "", kORVStatusInvalidValueText, ""},
    {kCIMTypeSint32, "   ", kORVStatusInvalidValueText, ""},
    {kCIMTypeSint32, "-", kORVStatusInvalidValueText, ""},
    {kCIMTypeSint32, "--1", kORVStatusInvalidValueText, ""},
    {kCIMTypeSint32, "+-1", kORVStatusInvalidValueText, ""},
    {kCIMTypeSint32, "1 2", kORVStatusInvalidValueText, ""},
    {kCIMTypeSint32, "12abc", kORVStatusInvalidValueText, ""},
    {kCIMTypeSint32, "1.5", kORVStatusInvalidValueText, ""},
    {kCIMTypeSint32, "0x", kORVStatusInvalidValueText, ""},
    {kCIMTypeSint32, "0xG1", kORVStatusInvalidValueText, ""},
    {kCIMTypeUint32, "- 1", kORVStatusInvalidValueText, ""},

    // Reals: shortest text that reads back as the same value of the type.
    {kCIMTypeReal32, "1.5", kORVStatusOK, "1.5"},
    {kCIMTypeReal32, "0.1", kORVStatusOK, "0.1"},
    {kCIMTypeReal32, "+2.5e2", kORVStatusOK, "250"},
    {kCIMTypeReal32, "3.4028235e38", kORVStatusOK, "3.4028235e+38"},
    {kCIMTypeReal32, "3.5e38", kORVStatusValueOutOfRange, ""},
    {kCIMTypeReal32, "INF", kORVStatusOK, "INF"},
    {kCIMTypeReal32, "-inf", kORVStatusOK, "-INF"},
    {kCIMTypeReal64, "NaN", kORVStatusOK, "NaN"},
    {kCIMTypeReal64, "0.1", kORVStatusOK, "0.1"},
    {kCIMTypeReal64, " -2.5E-3 ", kORVStatusOK, "-0.0025"},
    {kCIMTypeReal64, ".5", kORVStatusOK, "0.5"},
    {kCIMTypeReal64, "1e308", kORVStatusOK, "1e+308"},
    {kCIMTypeReal64, "1e309", kORVStatusValueOutOfRange, ""},
    {kCIMTypeReal64, "42", kORVStatusOK, "42"},
    {kCIMTypeReal64, "1,5", kORVStatusInvalidValueText, ""},
    {kCIMTypeReal64, "1e", kORVStatusInvalidValueText, ""},
    {kCIMTypeReal64, "+-1", kORVStatusInvalidValueText, ""},
    {kCIMTypeReal64, "0x1p3", kORVStatusInvalidValueText, ""},
    {kCIMTypeReal64, "", kORVStatusInvalidValueText, ""},

    // char16: one byte or one UTF-8 character of the basic plane; no
    // trimming, so a blank is a character.
    {kCIMTypeChar16, "a", kORVStatusOK, "a"},
    {kCIMTypeChar16, " ", kORVStatusOK, " "},
    {kCIMTypeChar16, "\xC3\xA9", kORVStatusOK, "\xC3\xA9"},
    {kCIMTypeChar16, "\xE2\x82\xAC", kORVStatusOK, "\xE2\x82\xAC"},
    {kCIMTypeChar16, "\xE9", kORVStatusOK, "\xC3\xA9"},
    {kCIMTypeChar16, "", kORVStatusInvalidValueText, ""},
    {kCIMTypeChar16, "ab", kORVStatusInvalidValueText, ""},
    {kCIMTypeChar16, " a", kORVStatusInvalidValueText, ""},
    {kCIMTypeChar16, "\xC0\xAF", kORVStatusInvalidValueText, ""},
    {kCIMTypeChar16, "\xED\xA0\x80", kORVStatusInvalidValueText, ""},
    {kCIMTypeChar16, "\xF0\x9F\x98\x80", kORVStatusInvalidValueText, ""},

    // Strings are verbatim.
    {kCIMTypeString, "  two  spaces  ", kORVStatusOK, "  two  spaces  "},
    {kCIMTypeString, "", kORVStatusOK, ""},

    {kCIMTypeDateTime, " 20230405060708.123456+060 ", kORVStatusOK, "20230405060708.123456+060"},
    {kCIMTypeDateTime, "2023-04-05", kORVStatusInvalidDateTime, ""},
    {kCIMTypeDateTime, "", kORVStatusInvalidDateTime, ""},

    {kCIMTypeReference, "root/cimv2:CIM_Disk.Id=\"a\"", kORVStatusOK,
     "root/cimv2:CIM_Disk.Id=\"a\""},
    {kCIMTypeReference, "CIM_Disk.", kORVStatusInvalidValueText, ""},

    // Only scalar types have a text form.
    {static_cast<ECIMType>(kCIMTypeUint8 | kCIMTypeArrayFlag), "1", kORVStatusInvalidArgument, ""},
    {kCIMTypeNone, "1", kORVStatusInvalidArgument, ""},
};

TEST(CIMValueTest, TextOfEveryType) {
  for (const auto &row : kTextCases) {
    SCOPED_TRACE(TCIMType(row.type).GetName() + " \"" + row.text + "\"");
    TCIMValue value;
    EXPECT_EQ(Convert(row.type, row.text, value), row.status);
    if (row.status != kORVStatusOK)
      continue;
    EXPECT_EQ(value.GetType(), row.type);
    EXPECT_FALSE(value.IsNull());
    EXPECT_EQ(value.ToString(), row.canonical);
    // The canonical text reads back as the same value.
    TCIMValue again;
    ASSERT_EQ(Convert(row.type, value.ToString(), again), kORVStatusOK);
    EXPECT_EQ(again, value);
  }
}

TEST(CIMValueTest, NumbersKeepTheirExactValue) {
  TCIMValue value;
  ASSERT_EQ(Convert(kCIMTypeSint64, "-9223372036854775808", value), kORVStatusOK);
  EXPECT_EQ(value.GetSigned(), INT64_MIN);
  ASSERT_EQ(Convert(kCIMTypeUint64, "0xfedcba9876543210", value), kORVStatusOK);
  EXPECT_EQ(value.GetUnsigned(), 0xfedcba9876543210ULL);
  ASSERT_EQ(Convert(kCIMTypeChar16, "\xE2\x82\xAC", value), kORVStatusOK);
  EXPECT_EQ(value.GetUnsigned(), 0x20ACu);
  // real32 is rounded to single precision when read.
  ASSERT_EQ(Convert(kCIMTypeReal32, "0.1", value), kORVStatusOK);
  EXPECT_EQ(value.GetReal(), static_cast<double>(0.1f));
  ASSERT_EQ(Convert(kCIMTypeReal64, "-0", value), kORVStatusOK);
  EXPECT_TRUE(std::signbit(value.GetReal()));
}

TEST(CIMValueTest, TypeNames) {
  const struct {
    const char *name;
    ECIMType code;
  } kNames[] = {
      {"boolean", kCIMTypeBoolean},     {"STRING", kCIMTypeString},
      {"Char16", kCIMTypeChar16},       {"uint8", kCIMTypeUint8},
      {"sint8", kCIMTypeSint8},         {"uint16", kCIMTypeUint16},
      {"sint16", kCIMTypeSint16},       {"uint32", kCIMTypeUint32},
      {"sint32", kCIMTypeSint32},       {"uint64", kCIMTypeUint64},
      {"SInt64", kCIMTypeSint64},       {"real32", kCIMTypeReal32},
      {"real64", kCIMTypeReal64},       {"DateTime", kCIMTypeDateTime},
      {"reference", kCIMTypeReference},
  };
  for (const auto &row : kNames) {
    SCOPED_TRACE(row.name);
    const TCIMType type(std::string(row.name));
    EXPECT_EQ(static_cast<ECIMType>(type), row.code);
    // The name a type gives back is the lower-case one, also for arrays.
    std::string lower = row.name;
    for (char &c : lower)
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_EQ(type.GetArrayType().GetName(), lower);
  }
  for (const char *bad : {"", "int8", "uint", "string ", "uint8[]", "object"}) {
    SCOPED_TRACE(bad);
    try {
      TCIMType type{std::string(bad)};
      ADD_FAILURE() << "accepted as " << static_cast<int>(type);
    } catch (const TORVException &ex) {
      EXPECT_EQ(ex.GetStatusCode(), kORVStatusInvalidTypeName);
    }
  }
}

TCIMValue Array(ECIMType type, const std::vector<TCIMValue> &elements) {
  TCIMValue value;
  value.Set(TCIMType(type), static_cast<unsigned int>(elements.size()), elements);
  return value;
}

TEST(CIMValueTest, MOFAndCIMXMLText) {
  TCIMReference path;
  path.SetClassName("CIM_Disk");
  path.AddKeyValue("Id", TCIMValue("a\"b"));
  const struct {
    const char *what;
    TCIMValue value;
    const char *mof;
    const char *text; // nullptr: not checked
  } kCases[] = {
      {"untyped null", TCIMValue(), "NULL", ""},
      {"typed null", TCIMValue(TCIMType(kCIMTypeString), 0), "NULL", ""},
      {"boolean", TCIMValue(true), "true", "true"},
      {"sint8", TCIMValue::MakeSigned(kCIMTypeSint8, -5), "-5", "-5"},
      {"real64 integral", TCIMValue::MakeReal(kCIMTypeReal64, 1), "1.0", "1"},
      {"real64 exponent", TCIMValue::MakeReal(kCIMTypeReal64, 1e20), "1.0e+20", "1e+20"},
      {"real32", TCIMValue::MakeReal(kCIMTypeReal32, 0.1), "0.1", "0.1"},
      {"string escapes", TCIMValue("q\"b\\n\nt\tr\rf\fb\b"), "\"q\\\"b\\\\n\\nt\\tr\\rf\\fb\\b\"",
       "q\"b\\n\nt\tr\rf\fb\b"},
      {"control characters", TCIMValue(std::string("\x01\x7F\0", 3)), "\"\\x0001\\x007F\\x0000\"",
       nullptr},
      {"non-ASCII passes", TCIMValue("\xC3\xA9"), "\"\xC3\xA9\"", "\xC3\xA9"},
      {"char16 quote", TCIMValue(TCIMType(kCIMTypeChar16), "'", nullptr), "'\\''", "'"},
      {"char16 double quote", TCIMValue(TCIMType(kCIMTypeChar16), "\"", nullptr), "'\"'", "\""},
      {"datetime", TCIMValue(TCIMDateTime(2023, 4, 5, 6, 7, 8, 9, -60)),
       "\"20230405060708.000009-060\"", "20230405060708.000009-060"},
      {"reference", TCIMValue(path), "\"CIM_Disk.Id=\\\"a\\\\\\\"b\\\"\"",
       "CIM_Disk.Id=\"a\\\"b\""},
      {"array",
       Array(kCIMTypeUint8, {TCIMValue::MakeUnsigned(kCIMTypeUint8, 1),
                             TCIMValue::MakeUnsigned(kCIMTypeUint8, 2)}),
       "{1, 2}", "1, 2"},
      {"array with null", Array(kCIMTypeString, {TCIMValue("a"), TCIMValue()}), "{\"a\", NULL}",
       "a, "},
      {"empty array", Array(kCIMTypeString, {}), "{}", ""},
      {"null array",
       TCIMValue(TCIMType(static_cast<ECIMType>(kCIMTypeString | kCIMTypeArrayFlag)), 4), "NULL",
       ""},
  };
  for (const auto &row : kCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(row.value.ToMOF(), row.mof);
    if (row.text != nullptr) {
      EXPECT_EQ(row.value.ToString(), row.text);
    }
  }
}

TEST(CIMValueTest, EqualityLooksAtTypeNullnessAndContent) {
  const TCIMValue u8 = TCIMValue::MakeUnsigned(kCIMTypeUint8, 7);
  EXPECT_EQ(u8, TCIMValue::MakeUnsigned(kCIMTypeUint8, 7));
  EXPECT_NE(u8, TCIMValue::MakeUnsigned(kCIMTypeUint16, 7));
  EXPECT_NE(u8, TCIMValue::MakeUnsigned(kCIMTypeUint8, 8));
  EXPECT_NE(u8, TCIMValue(TCIMType(kCIMTypeUint8), 0));
  // Nulls of one type are equal whatever count they were declared with.
  const TCIMType stringArray(static_cast<ECIMType>(kCIMTypeString | kCIMTypeArrayFlag));
  EXPECT_EQ(TCIMValue(stringArray, 3), TCIMValue(stringArray, 5));
  EXPECT_NE(TCIMValue(stringArray, 3), TCIMValue());
  // A NaN equals its copy.
  const TCIMValue nan = TCIMValue::MakeReal(kCIMTypeReal64, std::nan(""));
  const TCIMValue nanCopy = nan;
  EXPECT_EQ(nan, nanCopy);
  EXPECT_NE(Array(kCIMTypeString, {TCIMValue("a")}),
            Array(kCIMTypeString, {TCIMValue("a"), TCIMValue("b")}));
}

TEST(CIMValueTest, CopiesOfAnArrayAreIndependent) {
  const TCIMValue original = Array(kCIMTypeSint32, {TCIMValue::MakeSigned(kCIMTypeSint32, 1),
                                                    TCIMValue::MakeSigned(kCIMTypeSint32, 2)});
  TCIMValue copy = original;
  EXPECT_EQ(copy, original);
  EXPECT_EQ(copy.GetCount(), 2u);

  copy.Set(TCIMType(kCIMTypeSint32), 1, {TCIMValue::MakeSigned(kCIMTypeSint32, 9)});
  EXPECT_NE(copy, original);
  EXPECT_EQ(copy.ToString(), "9");
  ASSERT_EQ(original.GetCount(), 2u);
  EXPECT_EQ(original.GetElements()[1].GetSigned(), 2);

  // Moving leaves the moved-to value whole.
  TCIMValue moved = std::move(copy);
  EXPECT_EQ(moved.ToString(), "9");
  EXPECT_TRUE(moved.IsArray());
}

TEST(CIMValueTest, NullArraysKeepTheirDeclaredCount) {
  const TCIMValue null(TCIMType(static_cast<ECIMType>(kCIMTypeUint8 | kCIMTypeArrayFlag)), 4);
  EXPECT_TRUE(null.IsNull());
  EXPECT_TRUE(null.IsArray());
  EXPECT_EQ(null.GetCount(), 4u);
  // Set adds the array flag to a scalar element type.
  TCIMValue filled = null;
  filled.Set(TCIMType(kCIMTypeUint8), 4, {TCIMValue::MakeUnsigned(kCIMTypeUint8, 1)});
  EXPECT_EQ(filled.GetType(), null.GetType());
  EXPECT_EQ(filled.GetCount(), 1u);
  EXPECT_FALSE(filled.IsNull());
}

TEST(CIMValueTest, AccessorsRefuseOtherTypesAndNull) {
  const auto statusOf = [](auto &&call) {
    try {
      call();
    } catch (const TORVException &ex) {
      return ex.GetStatusCode();
    }
    return kORVStatusOK;
  };
  const TCIMValue text("x");
  const TCIMValue nullBoolean(TCIMType(kCIMTypeBoolean), 0);
  EXPECT_EQ(statusOf([&] { (void)text.GetBoolean(); }), kORVStatusTypeMismatch);
  EXPECT_EQ(statusOf([&] { (void)text.GetElements(); }), kORVStatusTypeMismatch);
  EXPECT_EQ(statusOf([&] { (void)nullBoolean.GetBoolean(); }), kORVStatusNullObject);
  EXPECT_FALSE(static_cast<bool>(nullBoolean));
  EXPECT_FALSE(static_cast<bool>(TCIMValue("true")));
  EXPECT_TRUE(static_cast<bool>(TCIMValue(true)));
  EXPECT_TRUE(static_cast<TCIMReference>(text).GetClassName().empty());

  EXPECT_EQ(statusOf([] { TCIMValue::MakeUnsigned(kCIMTypeUint8, 256); }),
            kORVStatusValueOutOfRange);
  EXPECT_EQ(statusOf([] { TCIMValue::MakeUnsigned(kCIMTypeChar16, 0x10000); }),
            kORVStatusValueOutOfRange);
  EXPECT_EQ(statusOf([] { TCIMValue::MakeUnsigned(kCIMTypeSint8, 1); }), kORVStatusTypeMismatch);
  EXPECT_EQ(statusOf([] { TCIMValue::MakeSigned(kCIMTypeSint16, -32769); }),
            kORVStatusValueOutOfRange);
  EXPECT_EQ(statusOf([] { TCIMValue::MakeReal(kCIMTypeReal32, 1e39); }), kORVStatusValueOutOfRange);
  EXPECT_EQ(statusOf([] {
              TCIMValue value;
              value.Set(TCIMType(kCIMTypeNone), 0, {});
            }),
            kORVStatusInvalidArgument);
}

// Copies share what a reference or array holds; a change to one copy must
// not show in the other, and assignment must work between values whose
// contents are kept in different ways (text, datetime, number, shared part).
TEST(CIMValueTest, CopiesStayIndependentAcrossKinds) {
  auto ns = CreateCIMNamespace("root/test");
  auto cls = ns->CreateClass("CIM_Target", nullptr);
  TCIMReference path;
  path.SetClassName("CIM_Target");
  const TCIMValue original(path);
  TCIMValue copy = original;
  copy.SetReferencedClass(cls);
  EXPECT_EQ(copy.GetReferencedClass(), cls);
  EXPECT_FALSE(original.GetReferencedClass());

  const std::vector<TCIMValue> kinds = {
      TCIMValue("a string long enough to live outside the short buffer"),
      TCIMValue(TCIMDateTime(2024, 2, 29, 12, 30, 0, 5, 60)),
      TCIMValue::MakeUnsigned(kCIMTypeUint64, 42),
      original,
      Array(kCIMTypeString, {TCIMValue("x")}),
      TCIMValue(),
  };
  for (const TCIMValue &from : kinds) {
    for (const TCIMValue &to : kinds) {
      SCOPED_TRACE(from.ToMOF() + " over " + to.ToMOF());
      TCIMValue target = to;
      target = from;
      EXPECT_EQ(target, from);
      TCIMValue moved = to;
      TCIMValue source = from;
      moved = std::move(source);
      EXPECT_EQ(moved, from);
    }
  }
}

TEST(CIMValueTest, ReferencedClassIsHeldWeakly) {
  auto ns = CreateCIMNamespace("root/test");
  TCIMValue value(TCIMType(kCIMTypeReference), 0);
  {
    auto cls = ns->CreateClass("CIM_Target", nullptr);
    value.SetReferencedClass(cls);
    EXPECT_EQ(value.GetReferencedClass(), cls);
    // Setting the path keeps the class: it belongs to the declaration.
    TCIMReference path;
    path.SetClassName("CIM_Target");
    value.Set(path);
    EXPECT_EQ(value.GetReferencedClass(), cls);
  }
  // The namespace still owns the class.
  EXPECT_TRUE(value.GetReferencedClass());
  ns.reset();
  EXPECT_FALSE(value.GetReferencedClass());

  // An empty pointer is no class, for any value; a class on a value that is
  // not a reference is refused.
  TCIMValue number = TCIMValue::MakeUnsigned(kCIMTypeUint8, 1);
  number.SetReferencedClass(nullptr);
  EXPECT_FALSE(number.GetReferencedClass());
  auto other = CreateCIMNamespace("root/other");
  try {
    number.SetReferencedClass(other->CreateClass("CIM_X", nullptr));
    ADD_FAILURE() << "a uint8 took a referenced class";
  } catch (const TORVException &ex) {
    EXPECT_EQ(ex.GetStatusCode(), kORVStatusTypeMismatch);
  }
}

TEST(CIMValueTest, ReferenceTextTakesTheNamespace) {
  auto ns = CreateCIMNamespace("root/cimv2");
  const TCIMValue value(TCIMType(kCIMTypeReference), "CIM_Disk.Id=7", ns);
  const TCIMReference path = value.GetReference();
  EXPECT_EQ(path.GetNamespace(), ns);
  EXPECT_EQ(path.GetNamespaceName(), "root/cimv2");
  EXPECT_EQ(path.GetKeyValue("id"), TCIMValue::MakeUnsigned(kCIMTypeUint64, 7));
  EXPECT_EQ(value.ToString(), "root/cimv2:CIM_Disk.Id=7");
}

} // namespace
