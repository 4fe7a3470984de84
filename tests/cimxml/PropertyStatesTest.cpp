// Properties: the declaration variants in classes (defaults by kind) and the
// value variants in instances (type check, QN402 mode, hand-over).
#include "cimxml/DeclarationFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvtest {
namespace {

using NVRNORV20::ECIMType;
using NVRNORV20::ICIMInstance;
using NVRNORV20::TCIMValue;

class PropertyDeclStatesTest : public TDeclarationFixture {
protected:
  PropertyDeclStatesTest() { LoadClass("<CLASS NAME=\"Target\"/>"); }
};

struct TDefaultCase {
  const char *why;
  const char *element;
  unsigned type;
  bool null;
  unsigned count;
  const char *text;
  const char *referenceClass;
};

TEST_F(PropertyDeclStatesTest, DefaultValueComesFromTheValueChildOrTheElementKind) {
  const TDefaultCase cases[] = {
      {"scalar without value", "<PROPERTY NAME=\"p\" TYPE=\"uint32\"/>", NVRNORV20::kCIMTypeUint32,
       true, 0, "", ""},
      {"scalar with value", "<PROPERTY NAME=\"p\" TYPE=\"uint32\"><VALUE>42</VALUE></PROPERTY>",
       NVRNORV20::kCIMTypeUint32, false, 1, "42", ""},
      {"the last of two values wins, qualifiers between",
       "<PROPERTY NAME=\"p\" TYPE=\"string\"><VALUE>first</VALUE>"
       "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>d</VALUE></QUALIFIER>"
       "<VALUE>second</VALUE></PROPERTY>",
       NVRNORV20::kCIMTypeString, false, 1, "second", ""},
      {"array with size", "<PROPERTY.ARRAY NAME=\"p\" TYPE=\"uint8\" ARRAYSIZE=\"4\"/>",
       NVRNORV20::kCIMTypeUint8 | NVRNORV20::kCIMTypeArrayFlag, true, 4, "", ""},
      {"array without size", "<PROPERTY.ARRAY NAME=\"p\" TYPE=\"uint8\"/>",
       NVRNORV20::kCIMTypeUint8 | NVRNORV20::kCIMTypeArrayFlag, true, 0, "", ""},
      {"array with values",
       "<PROPERTY.ARRAY NAME=\"p\" TYPE=\"string\" ARRAYSIZE=\"2\"><VALUE.ARRAY>"
       "<VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>",
       NVRNORV20::kCIMTypeString | NVRNORV20::kCIMTypeArrayFlag, false, 2, "a, b", ""},
      {"array with an empty value array",
       "<PROPERTY.ARRAY NAME=\"p\" TYPE=\"sint16\"><VALUE.ARRAY/></PROPERTY.ARRAY>",
       NVRNORV20::kCIMTypeSint16 | NVRNORV20::kCIMTypeArrayFlag, false, 0, "", ""},
      {"reference to a known class", "<PROPERTY.REFERENCE NAME=\"p\" REFERENCECLASS=\"Target\"/>",
       NVRNORV20::kCIMTypeReference, true, 0, "", "Target"},
      {"reference to an unknown class", "<PROPERTY.REFERENCE NAME=\"p\" REFERENCECLASS=\"Nope\"/>",
       NVRNORV20::kCIMTypeReference, true, 0, "", ""},
      {"reference without class", "<PROPERTY.REFERENCE NAME=\"p\"/>", NVRNORV20::kCIMTypeReference,
       true, 0, "", ""},
  };
  int index = 0;
  for (const TDefaultCase &test : cases) {
    SCOPED_TRACE(test.why);
    auto cls =
        LoadClass("<CLASS NAME=\"C" + std::to_string(index++) + "\">" + test.element + "</CLASS>");
    ASSERT_TRUE(cls);
    auto property = cls->GetProperty("p");
    EXPECT_TRUE(property->IsCommitted());
    EXPECT_EQ(static_cast<unsigned>(property->GetType()), test.type);
    TCIMValue value = property->GetValue();
    EXPECT_EQ(value.IsNull(), test.null);
    EXPECT_EQ(value.GetCount(), test.count);
    EXPECT_EQ(value.ToString(), test.text);
    EXPECT_EQ(property->GetReferenceClassName(), test.referenceClass);
  }
}

TEST_F(PropertyDeclStatesTest, QualifiersAttachToTheDeclaration) {
  auto cls =
      LoadClass("<CLASS NAME=\"C\"><PROPERTY NAME=\"Id\" TYPE=\"string\">"
                "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>"
                "</PROPERTY><PROPERTY.REFERENCE NAME=\"r\" REFERENCECLASS=\"Target\">"
                "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>"
                "</PROPERTY.REFERENCE><PROPERTY NAME=\"Untyped\" TYPE=\"string\">"
                "<QUALIFIER NAME=\"Key\"><VALUE>true</VALUE></QUALIFIER></PROPERTY></CLASS>");
  ASSERT_TRUE(cls);
  EXPECT_TRUE(cls->GetProperty("Id")->IsKey());
  EXPECT_TRUE(cls->GetProperty("r")->IsKey());
  // Without TYPE the value child is read untyped, which gives no value.
  EXPECT_FALSE(cls->GetProperty("Untyped")->IsKey());
  EXPECT_TRUE(cls->GetProperty("Untyped")->HasQualifier("Key"));
  EXPECT_EQ(cls->GetKeyProperties().size(), 2u);
}

TEST_F(PropertyDeclStatesTest, ClassOriginAndPropagatedDoNotChangeTheDeclaration) {
  auto plain = LoadClass("<CLASS NAME=\"Plain\"><PROPERTY NAME=\"p\" TYPE=\"uint16\">"
                         "<VALUE>3</VALUE></PROPERTY></CLASS>");
  auto marked = LoadClass("<CLASS NAME=\"Marked\"><PROPERTY NAME=\"p\" TYPE=\"uint16\" "
                          "CLASSORIGIN=\"Elsewhere\" PROPAGATED=\"true\"><VALUE>3</VALUE>"
                          "</PROPERTY></CLASS>");
  ASSERT_TRUE(plain && marked);
  EXPECT_EQ(plain->GetProperty("p")->ToMOF(), marked->GetProperty("p")->ToMOF());
  EXPECT_EQ(marked->GetProperty("p")->GetClassOrigin(), "Marked");
}

struct TChildCase {
  const char *element;
  const char *error;
};

// The rejected child's end tag ends the property, which still gets its
// default; the class loads.
TEST_F(PropertyDeclStatesTest, EachKindTakesOnlyItsOwnValueChild) {
  const TChildCase cases[] = {
      {"<PROPERTY NAME=\"p\" TYPE=\"uint8\"><VALUE.ARRAY/></PROPERTY>",
       "Unexpected element value.array"},
      {"<PROPERTY.ARRAY NAME=\"p\" TYPE=\"uint8\"><VALUE/></PROPERTY.ARRAY>",
       "Unexpected element value"},
      {"<PROPERTY.REFERENCE NAME=\"p\"><VALUE/></PROPERTY.REFERENCE>", "Unexpected element value"},
      {"<PROPERTY NAME=\"p\" TYPE=\"uint8\"><METHOD NAME=\"m\"/></PROPERTY>",
       "Unexpected element method"},
  };
  int index = 0;
  for (const TChildCase &test : cases) {
    SCOPED_TRACE(test.element);
    logger.entries.clear();
    const std::string name = "C" + std::to_string(index++);
    TParseResult result =
        Parse(ObjectDocument({"<CLASS NAME=\"" + name + "\">" + test.element + "</CLASS>"}));
    EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, test.error)});
    ASSERT_EQ(result.classes.size(), 1u);
    EXPECT_TRUE(result.classes[0]->GetProperty("p")->IsCommitted());
  }
}

// Instance properties of a class with a key, a scalar with a default, an
// array and a reference.
const char kThing[] =
    "<CLASS NAME=\"Thing\"><PROPERTY NAME=\"Id\" TYPE=\"string\">"
    "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER></PROPERTY>"
    "<PROPERTY NAME=\"Count\" TYPE=\"uint8\"><VALUE>7</VALUE></PROPERTY>"
    "<PROPERTY NAME=\"Other\" TYPE=\"uint8\"><VALUE>5</VALUE></PROPERTY>"
    "<PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"string\"/>"
    "<PROPERTY.REFERENCE NAME=\"Peer\" REFERENCECLASS=\"Thing\"/></CLASS>";

class PropertyStatesTest : public TDeclarationFixture {
protected:
  PropertyStatesTest() { LoadClass(kThing); }

  /// Parses one instance of Thing with the given properties after its key.
  boost::shared_ptr<ICIMInstance> ParseThing(const std::string &properties,
                                             bool qn402Mode = false) {
    TParseResult result = Parse(ObjectDocument({"<INSTANCE CLASSNAME=\"Thing\">"
                                                "<PROPERTY NAME=\"Id\" TYPE=\"string\">"
                                                "<VALUE>thing" +
                                                std::to_string(++made) + "</VALUE></PROPERTY>" +
                                                properties + "</INSTANCE>"}),
                                qn402Mode);
    EXPECT_FALSE(result.aborted);
    EXPECT_EQ(result.instances.size(), 1u);
    return result.instances.empty() ? boost::shared_ptr<ICIMInstance>() : result.instances.front();
  }

  int made = 0;
};

TEST_F(PropertyStatesTest, EachKindSetsItsValue) {
  auto thing = ParseThing("<PROPERTY NAME=\"Count\" TYPE=\"uint8\"><VALUE>9</VALUE></PROPERTY>"
                          "<PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"string\"><VALUE.ARRAY>"
                          "<VALUE>x</VALUE><VALUE>y</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
                          "<PROPERTY.REFERENCE NAME=\"Peer\" REFERENCECLASS=\"Thing\"/>");
  ASSERT_TRUE(thing);
  EXPECT_TRUE(Log().empty()) << Log().front();
  EXPECT_EQ(thing->GetPropertyValue("Id").GetString(), "thing1");
  EXPECT_EQ(thing->GetPropertyValue("Count").GetUnsigned(), 9u);
  TCIMValue tags = thing->GetPropertyValue("Tags");
  EXPECT_EQ(static_cast<unsigned>(tags.GetType()),
            NVRNORV20::kCIMTypeString | NVRNORV20::kCIMTypeArrayFlag);
  EXPECT_EQ(tags.ToString(), "x, y");
  TCIMValue peer = thing->GetPropertyValue("Peer");
  EXPECT_TRUE(peer.IsNull());
  EXPECT_EQ(static_cast<ECIMType>(peer.GetType()), NVRNORV20::kCIMTypeReference);
}

TEST_F(PropertyStatesTest, PropertyWithoutValueBecomesNullOfTheDeclaredType) {
  auto thing = ParseThing("<PROPERTY NAME=\"Count\" TYPE=\"uint8\"/>"
                          "<PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"string\"/>");
  ASSERT_TRUE(thing);
  EXPECT_TRUE(Log().empty());
  TCIMValue count = thing->GetPropertyValue("Count");
  EXPECT_TRUE(count.IsNull());
  EXPECT_EQ(static_cast<ECIMType>(count.GetType()), NVRNORV20::kCIMTypeUint8);
  EXPECT_TRUE(thing->GetPropertyValue("Tags").IsNull());
}

struct TTypeCase {
  const char *why;
  const char *property;
  const char *name;
};

// The value child is read as the declared type, so the mismatch is only
// reported; in QN402 mode it is not even that.
TEST_F(PropertyStatesTest, TypeOtherThanTheDeclaredOneIsReportedUnlessInQN402Mode) {
  const TTypeCase cases[] = {
      {"scalar", "<PROPERTY NAME=\"Count\" TYPE=\"string\"><VALUE>9</VALUE></PROPERTY>", "Count"},
      {"scalar without type", "<PROPERTY NAME=\"Count\"><VALUE>9</VALUE></PROPERTY>", "Count"},
      {"array of another element type",
       "<PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"uint8\"><VALUE.ARRAY><VALUE>9</VALUE></VALUE.ARRAY>"
       "</PROPERTY.ARRAY>",
       "Tags"},
      {"scalar element for an array", "<PROPERTY NAME=\"Tags\" TYPE=\"string\"/>", "Tags"},
      {"array element for a scalar", "<PROPERTY.ARRAY NAME=\"Count\" TYPE=\"uint8\"/>", "Count"},
      {"reference element for a scalar", "<PROPERTY.REFERENCE NAME=\"Count\"/>", "Count"},
  };
  for (const TTypeCase &test : cases) {
    SCOPED_TRACE(test.why);
    for (bool qn402Mode : {false, true}) {
      logger.entries.clear();
      ParseThing(test.property, qn402Mode);
      if (qn402Mode)
        EXPECT_TRUE(Log().empty());
      else
        EXPECT_EQ(Log().at(0), ParserError(1, "Property type != property declaration type"));
    }
  }
}

TEST_F(PropertyStatesTest, ValueThatDoesNotReadAsTheDeclaredTypeIsLeftUnsetInQN402Mode) {
  const std::string outOfRange =
      "<PROPERTY NAME=\"Count\" TYPE=\"uint8\"><VALUE>300</VALUE></PROPERTY>";
  auto strict = ParseThing(outOfRange);
  ASSERT_TRUE(strict);
  EXPECT_TRUE(strict->GetPropertyValue("Count").IsNull());
  auto lenient = ParseThing(outOfRange, true);
  ASSERT_TRUE(lenient);
  EXPECT_EQ(lenient->GetPropertyValue("Count").GetUnsigned(), 7u);
  EXPECT_TRUE(Log().empty());
}

// A property whose end tag is missing ends at its next element, which the
// instance then takes as its own child.
TEST_F(PropertyStatesTest, UnclosedPropertyHandsItsNextElementToTheInstance) {
  auto thing = ParseThing("<PROPERTY NAME=\"Count\" TYPE=\"uint8\"><VALUE>3</VALUE>"
                          "<PROPERTY NAME=\"Other\" TYPE=\"uint8\"><VALUE>4</VALUE></PROPERTY>");
  ASSERT_TRUE(thing);
  EXPECT_TRUE(Log().empty()) << Log().front();
  EXPECT_EQ(thing->GetPropertyValue("Count").GetUnsigned(), 3u);
  EXPECT_EQ(thing->GetPropertyValue("Other").GetUnsigned(), 4u);
}

// Kept as it is: an instance property's qualifier is read as the property's
// own start tag, so its NAME renames the property, and its end tag ends the
// property.
TEST_F(PropertyStatesTest, QualifierOfAnInstancePropertyIsReadAsThePropertysStartTag) {
  auto thing = ParseThing("<PROPERTY NAME=\"Count\" TYPE=\"uint8\">"
                          "<QUALIFIER NAME=\"Other\" TYPE=\"uint8\"/></PROPERTY>");
  ASSERT_TRUE(thing);
  EXPECT_TRUE(Log().empty()) << Log().front();
  EXPECT_EQ(thing->GetPropertyValue("Count").GetUnsigned(), 7u);
  EXPECT_TRUE(thing->GetPropertyValue("Other").IsNull());
}

TEST_F(PropertyStatesTest, UnknownPropertyFailsAtItsEnd) {
  auto thing = ParseThing("<PROPERTY NAME=\"Nope\" TYPE=\"uint8\"/>");
  ASSERT_TRUE(thing);
  EXPECT_EQ(Log(), std::vector<std::string>{EndElementError(NVRNORV20::kORVStatusNoSuchProperty)});
}

} // namespace
} // namespace orvtest
