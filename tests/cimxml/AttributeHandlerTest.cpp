// Attribute handlers and the converters: each handler takes exactly its own
// attribute; the converters read text as the standard streams do.
#include "cimxml/CIMXMLParser.h"

#include "core_api/CIMDateTime.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"
#include "support/CapturingLogger.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

using namespace NVRNORV20;

namespace {

using TAttributes = TXmlParser::TAttributes;

class TAttributeHandlerTest : public ::testing::Test {
protected:
  TAttributeHandlerTest() : ns(CreateCIMNamespace("root/test")), parser(ns) {
    // Gives the parser a document position, for the messages that name a
    // line.
    parser.Parse(document);
  }

  orvtest::TCapturingLogger logger;
  boost::shared_ptr<ICIMNamespace> ns;
  TCIMXMLParser parser;
  char document[7] = "<cim/>";
};

using TStringHandler = bool (TCIMXMLParser::*)(TAttributes::iterator &, std::string *);

// Each string handler takes only its own name, whole, and stores the value
// as written; every other entry leaves the output alone.
TEST_F(TAttributeHandlerTest, StringHandlersTakeOnlyTheirName) {
  struct THandler {
    const char *name;
    TStringHandler handler;
  };
  const THandler handlers[] = {
      {"name", &TCIMXMLParser::HandleCIMName},
      {"classname", &TCIMXMLParser::HandleClassName},
      {"classorigin", &TCIMXMLParser::HandleClassOrigin},
      {"referenceclass", &TCIMXMLParser::HandleReferenceClass},
      {"superclass", &TCIMXMLParser::HandleSuperClass},
  };
  const std::vector<std::string> others = {"names", "nam",      "NAME",         "type",
                                           "class", "classnam", "superclasses", ""};
  for (const THandler &h : handlers) {
    SCOPED_TRACE(h.name);
    TAttributes attributes = {{h.name, " Value &amp; more "}};
    for (const std::string &other : others)
      attributes.insert({other, "other"});
    for (auto it = attributes.begin(); it != attributes.end(); ++it) {
      std::string out = "untouched";
      const bool taken = (parser.*h.handler)(it, &out);
      EXPECT_EQ(it->first == h.name, taken) << it->first;
      EXPECT_EQ(taken ? " Value &amp; more " : "untouched", out) << it->first;
    }
    // The entry's own value as output stays what it is.
    auto own = attributes.find(h.name);
    EXPECT_TRUE((parser.*h.handler)(own, &own->second));
    EXPECT_EQ(" Value &amp; more ", own->second);
  }
}

TEST_F(TAttributeHandlerTest, TypeHandlerReadsTypeNames) {
  TAttributes attributes = {{"type", "uint8"}, {"paramtype", "string"}, {"bad", "x"}};
  TCIMType type(kCIMTypeBoolean);
  auto it = attributes.find("paramtype");
  EXPECT_FALSE(parser.HandleCIMType(it, &type));
  EXPECT_EQ(kCIMTypeBoolean, static_cast<ECIMType>(type));
  it = attributes.find("type");
  EXPECT_TRUE(parser.HandleCIMType(it, &type));
  EXPECT_EQ(kCIMTypeUint8, static_cast<ECIMType>(type));

  // A name the object model does not know fails in its constructor, and
  // that failure passes through.
  TAttributes bad = {{"type", "uint7"}};
  it = bad.begin();
  try {
    parser.HandleCIMType(it, &type);
    ADD_FAILURE() << "no exception";
  } catch (const TORVException &ex) {
    EXPECT_EQ(kORVStatusInvalidTypeName, ex.GetStatusCode());
  }
  EXPECT_EQ(kCIMTypeUint8, static_cast<ECIMType>(type));
}

TEST_F(TAttributeHandlerTest, PropagatedTakesOnlyTheLowerCaseWord) {
  struct TCase {
    const char *value;
    bool expected;
  };
  const TCase cases[] = {{"true", true},   {" \ttrue", true}, {"truest", true}, {"TRUE", false},
                         {"True", false},  {"yes", false},    {"1", false},     {"", false},
                         {"false", false}, {"tru", false}};
  for (const TCase &c : cases) {
    SCOPED_TRACE(c.value);
    TAttributes attributes = {{"propagated", c.value}};
    auto it = attributes.begin();
    bool propagated = !c.expected;
    EXPECT_TRUE(parser.HandlePropagated(it, propagated));
    EXPECT_EQ(c.expected, propagated);
  }
  TAttributes other = {{"propagate", "true"}};
  auto it = other.begin();
  bool untouched = false;
  EXPECT_FALSE(parser.HandlePropagated(it, untouched));
  EXPECT_FALSE(untouched);
}

TEST_F(TAttributeHandlerTest, FlavorHandlerSetsOrClearsOneBit) {
  struct TCase {
    const char *name;
    const char *value;
    std::uint32_t before;
    bool taken;
    std::uint32_t after;
  };
  const TCase cases[] = {
      {"tosubclass", "false", 7, true, 5},    {"tosubclass", "true", 0, true, 2},
      {"overridable", "true", 6, true, 7},    {"overridable", "FALSE", 3, true, 2},
      {"translatable", "true", 3, true, 7},   {"translatable", "no", 7, true, 3},
      {"translatable", " true ", 0, true, 4}, {"flavor", "true", 3, false, 3},
      {"tosubclasses", "false", 3, false, 3},
  };
  for (const TCase &c : cases) {
    SCOPED_TRACE(std::string(c.name) + "=" + c.value);
    TAttributes attributes = {{c.name, c.value}};
    auto it = attributes.begin();
    auto flavor = static_cast<ICIMQualifierDecl::EFlavor>(c.before);
    EXPECT_EQ(c.taken, parser.HandleQualifierFlavor(it, &flavor));
    EXPECT_EQ(c.after, static_cast<std::uint32_t>(flavor));
  }
}

TEST_F(TAttributeHandlerTest, ArraySizeReadsLeadingDigits) {
  struct TCase {
    const char *value;
    unsigned expected;
  };
  const TCase cases[] = {{"12", 12}, {"12abc", 12}, {"abc12", 0}, {"", 0}, {" 7", 7}};
  for (const TCase &c : cases) {
    SCOPED_TRACE(c.value);
    TAttributes attributes = {{"arraysize", c.value}};
    auto it = attributes.begin();
    unsigned size = 99;
    EXPECT_TRUE(parser.HandleArraySize(it, size));
    EXPECT_EQ(c.expected, size);
  }
  TAttributes other = {{"array", "5"}};
  auto it = other.begin();
  unsigned size = 99;
  EXPECT_FALSE(parser.HandleArraySize(it, size));
  EXPECT_EQ(99U, size);
}

// The converters promise what a string stream in the classic locale reads;
// the stream itself is the reference here.
// clang-format off
const char *const kConverterTexts[] = {
    "", " ", "true", "false", "  true", "\t\n\v\f\rtrue", "truex", "true false", "tru",
    "t", "TRUE", "True", "yes", "1", "0", "12", "12abc", "abc12", "+7", "-5", "-0",
    "+", "-", "- 5", "+-5", "007", "0x10", "12.5", "1,234", "4294967295", "4294967296",
    "99999999999999999999", "-4294967295", "-4294967296", " \t 42 ", "\xa0" "5",
};
// clang-format on

TEST(TConverterTest, ConvertBoolReadsLikeAStream) {
  for (const char *text : kConverterTexts) {
    std::string input(text);
    SCOPED_TRACE("[" + input + "]");
    std::istringstream stream(input);
    bool expected = false;
    stream >> std::boolalpha >> expected;
    EXPECT_EQ(expected, TCIMXMLParser::ConvertBool(input));
  }
}

TEST_F(TAttributeHandlerTest, ConvertUnsignedIntReadsLikeAStream) {
  for (const char *text : kConverterTexts) {
    std::string input(text);
    SCOPED_TRACE("[" + input + "]");
    std::istringstream stream(input);
    unsigned expected = 0;
    stream >> expected;
    EXPECT_EQ(expected, parser.ConvertUnsignedInt(input));
  }
}

TEST_F(TAttributeHandlerTest, ParseValueReadsThroughTheObjectModel) {
  std::string text = " 42 ";
  const TCIMValue value = parser.ParseValue(TCIMType(kCIMTypeUint32), text);
  EXPECT_FALSE(value.IsNull());
  EXPECT_EQ(42U, value.GetUnsigned());

  // Rejected text other than a datetime gives the null value, silently.
  struct TCase {
    ECIMType type;
    const char *text;
  };
  const TCase rejected[] = {{kCIMTypeUint8, "300"},
                            {kCIMTypeUint8, "abc"},
                            {kCIMTypeBoolean, "maybe"},
                            {kCIMTypeNone, "x"}};
  for (const TCase &c : rejected) {
    SCOPED_TRACE(c.text);
    std::string input = c.text;
    EXPECT_TRUE(parser.ParseValue(TCIMType(c.type), input).IsNull());
  }
  EXPECT_TRUE(logger.entries.empty());
}

TEST_F(TAttributeHandlerTest, InvalidDatetimeBecomesTheEpoch) {
  std::string text = "2024-01-01";
  const TCIMValue value = parser.ParseValue(TCIMType(kCIMTypeDateTime), text);
  const TCIMDateTime epoch(1970, 1, 1, 0, 0, 0, 0, 0);
  ASSERT_FALSE(value.IsNull());
  EXPECT_EQ(epoch, value.GetDateTime());
  ASSERT_EQ(1U, logger.entries.size());
  EXPECT_EQ(3, logger.entries[0].first);
  EXPECT_EQ("Invalid datetime found on line 1.  Defaulting the datetime to " + epoch.ToUIString() +
                ".",
            logger.entries[0].second);
}

TEST(TParseValueTest, NeedsTheNamespace) {
  auto ns = CreateCIMNamespace("root/gone");
  TCIMXMLParser parser(ns);
  ns.reset();
  std::string text = "1";
  try {
    parser.ParseValue(TCIMType(kCIMTypeUint8), text);
    ADD_FAILURE() << "no exception";
  } catch (const TORVException &ex) {
    EXPECT_EQ(kORVStatusNamespaceGone, ex.GetStatusCode());
  }
}

} // namespace
