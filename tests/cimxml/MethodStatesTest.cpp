// Methods and the four parameter kinds with their shared handlers.
#include "cimxml/states/MethodStates.h"
#include "cimxml/DeclarationFixture.h"
#include "cimxml/MockNamespace.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvtest {
namespace {

using NVRNORV20::ECIMType;
using NVRNORV20::ICIMMethod;
using NVRNORV20::TCIMXMLParser;
using ::testing::_;

class MethodStatesTest : public TDeclarationFixture {
protected:
  MethodStatesTest() { LoadClass("<CLASS NAME=\"Target\"/>"); }

  /// Loads a class holding the one method and returns that method.
  boost::shared_ptr<ICIMMethod> LoadMethod(const std::string &method) {
    auto cls = LoadClass("<CLASS NAME=\"C" + std::to_string(++made) + "\">" + method + "</CLASS>");
    return cls ? cls->GetLocalMethods().at(0) : boost::shared_ptr<ICIMMethod>();
  }

  int made = 0;
};

TEST_F(MethodStatesTest, MethodHasItsReturnTypeQualifiersAndParametersInOrder) {
  auto method = LoadMethod(
      "<METHOD NAME=\"Start\" TYPE=\"uint32\"><PARAMETER NAME=\"a\" TYPE=\"string\"/>"
      "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>go</VALUE></QUALIFIER>"
      "<PARAMETER.ARRAY NAME=\"b\" TYPE=\"uint8\" ARRAYSIZE=\"2\"/>"
      "<PARAMETER.REFERENCE NAME=\"c\" REFERENCECLASS=\"Target\"/>"
      "<PARAMETER.REFARRAY NAME=\"d\" REFERENCECLASS=\"Nope\" ARRAYSIZE=\"3\"/></METHOD>");
  ASSERT_TRUE(method);
  EXPECT_EQ(method->GetName(), "Start");
  EXPECT_EQ(static_cast<ECIMType>(method->GetReturnType()), NVRNORV20::kCIMTypeUint32);
  EXPECT_TRUE(method->IsCommitted());
  EXPECT_EQ(method->GetQualifier("Description")->GetValue().GetString(), "go");
  std::vector<std::string> names;
  std::vector<unsigned> types;
  for (const auto &parameter : method->GetParameters()) {
    names.push_back(parameter->GetName());
    types.push_back(parameter->GetType());
    EXPECT_TRUE(parameter->IsCommitted());
  }
  EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "c", "d"}));
  // An array parameter is added with its TYPE as written, without the array
  // flag; both reference kinds with the reference type.
  EXPECT_EQ(types,
            (std::vector<unsigned>{NVRNORV20::kCIMTypeString, NVRNORV20::kCIMTypeUint8,
                                   NVRNORV20::kCIMTypeReference, NVRNORV20::kCIMTypeReference}));
}

TEST_F(MethodStatesTest, MethodWithoutTypeAndParametersWithQualifiers) {
  auto method =
      LoadMethod("<METHOD NAME=\"m\"><PARAMETER NAME=\"x\" TYPE=\"sint32\">"
                 "<QUALIFIER NAME=\"In\" TYPE=\"boolean\"><VALUE>false</VALUE></QUALIFIER>"
                 "</PARAMETER><PARAMETER.REFERENCE NAME=\"y\">"
                 "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>ref</VALUE></QUALIFIER>"
                 "</PARAMETER.REFERENCE><PARAMETER.ARRAY NAME=\"z\" TYPE=\"string\">"
                 "<QUALIFIER NAME=\"In\"/></PARAMETER.ARRAY></METHOD>");
  ASSERT_TRUE(method);
  EXPECT_EQ(static_cast<ECIMType>(method->GetReturnType()), NVRNORV20::kCIMTypeNone);
  EXPECT_FALSE(method->GetParameter("x")->GetQualifier("In")->GetValue().GetBoolean());
  EXPECT_EQ(method->GetParameter("y")->GetQualifier("Description")->GetValue().GetString(), "ref");
  // Without a value the qualifier is an empty value, not the declared default.
  EXPECT_TRUE(method->GetParameter("z")->GetQualifier("In")->GetValue().IsNull());
}

TEST_F(MethodStatesTest, RefArrayParameterIsAReferenceParameter) {
  auto method = LoadMethod("<METHOD NAME=\"m\"><PARAMETER.REFERENCE NAME=\"a\" "
                           "REFERENCECLASS=\"Target\"/><PARAMETER.REFARRAY NAME=\"b\" "
                           "REFERENCECLASS=\"Target\" ARRAYSIZE=\"4\"/></METHOD>");
  ASSERT_TRUE(method);
  auto parameters = method->GetParameters();
  ASSERT_EQ(parameters.size(), 2u);
  EXPECT_EQ(static_cast<unsigned>(parameters[0]->GetType()),
            static_cast<unsigned>(parameters[1]->GetType()));
  EXPECT_EQ(parameters[0]->ToMOF(), "object REF a");
  EXPECT_EQ(parameters[1]->ToMOF(), "object REF b");
}

struct TValueChildCase {
  const char *parameter;
  const char *error;
};

TEST_F(MethodStatesTest, ValueChildrenByParameterKind) {
  const TValueChildCase cases[] = {
      {"<PARAMETER NAME=\"p\" TYPE=\"uint8\"><VALUE>1</VALUE><VALUE.ARRAY><VALUE>2</VALUE>"
       "</VALUE.ARRAY></PARAMETER>",
       nullptr},
      {"<PARAMETER.ARRAY NAME=\"p\" TYPE=\"uint8\"><VALUE.ARRAY><VALUE>2</VALUE></VALUE.ARRAY>"
       "<VALUE>1</VALUE></PARAMETER.ARRAY>",
       nullptr},
      // Spelt so on purpose: a reference parameter's array default.
      {"<PARAMETER.REFERENCE NAME=\"p\"><VALUE.ARAY/></PARAMETER.REFERENCE>", nullptr},
      {"<PARAMETER.REFARRAY NAME=\"p\"><QUALIFIER NAME=\"In\"/><VALUE.ARAY/></PARAMETER.REFARRAY>",
       nullptr},
      {"<PARAMETER.REFERENCE NAME=\"p\"><VALUE.ARRAY/></PARAMETER.REFERENCE>",
       "Unexpected element value.array"},
      {"<PARAMETER.REFARRAY NAME=\"p\"><VALUE.ARRAY/></PARAMETER.REFARRAY>",
       "Unexpected element value.array"},
      {"<PARAMETER.REFERENCE NAME=\"p\"><VALUE.REFERENCE/></PARAMETER.REFERENCE>",
       "Unexpected element value.reference"},
      {"<PARAMETER.REFERENCE NAME=\"p\"><VALUE/></PARAMETER.REFERENCE>",
       "Unexpected element value"},
      {"<PARAMETER NAME=\"p\" TYPE=\"uint8\"><VALUE.ARAY/></PARAMETER>",
       "Unexpected element value.aray"},
      {"<PARAMETER NAME=\"p\" TYPE=\"uint8\"><PARAMETER NAME=\"q\"/></PARAMETER>",
       "Unexpected element parameter"},
  };
  for (const TValueChildCase &test : cases) {
    SCOPED_TRACE(test.parameter);
    logger.entries.clear();
    TParseResult result =
        Parse(ObjectDocument({"<CLASS NAME=\"C" + std::to_string(++made) +
                              "\"><METHOD NAME=\"m\">" + test.parameter + "</METHOD></CLASS>"}));
    if (test.error == nullptr)
      EXPECT_TRUE(Log().empty()) << Log().front();
    else
      EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, test.error)});
    ASSERT_EQ(result.classes.size(), 1u);
    EXPECT_TRUE(result.classes[0]->GetMethod("m")->GetParameter("p")->IsCommitted());
  }
}

TEST_F(MethodStatesTest, MethodChildrenComeInAnyOrderAndNothingElse) {
  TParseResult result = Parse(ObjectDocument(
      {"<CLASS NAME=\"C\"><METHOD NAME=\"m\"><PARAMETER.REFARRAY NAME=\"a\"/>"
       "<QUALIFIER NAME=\"Description\"/><PARAMETER NAME=\"b\" TYPE=\"uint8\"/>"
       "<QUALIFIER NAME=\"ValueMap\"/><PROPERTY NAME=\"p\" TYPE=\"uint8\"/></METHOD></CLASS>"}));
  EXPECT_EQ(Log(), std::vector<std::string>{ParserError(1, "Unexpected element property")});
  ASSERT_EQ(result.classes.size(), 1u);
  auto method = result.classes[0]->GetMethod("m");
  EXPECT_EQ(method->GetParameters().size(), 2u);
  EXPECT_EQ(method->GetQualifiers().size(), 2u);
}

TEST_F(MethodStatesTest, PhasesBeyondTheContentModelsAreCorrupt) {
  TCIMXMLParser parser(ns);
  TCIMXMLParser::TParseState::TAttributes attributes;
  struct {
    boost::shared_ptr<NVRNORV20::ICIMClass> cls;
    boost::shared_ptr<ICIMMethod> method;
  } owner;
  TCIMXMLParser::TStateMethod method{parser, owner};
  method.phase = 5;
  EXPECT_THROW(method.ChildElement(parser, "qualifier", attributes), NVRNORV20::TORVException);
  TCIMXMLParser::TStateParameterReference reference{parser, owner};
  reference.phase = 2;
  EXPECT_THROW(reference.ChildElement(parser, "qualifier", attributes), NVRNORV20::TORVException);
  EXPECT_EQ(Log(), std::vector<std::string>(2, ParserError(1, "Parser state corrupt")));
}

// The reference class is looked up only for a reference default that the
// document does not give; an array parameter looks up the empty name.
TEST_F(MethodStatesTest, ReferenceEndLooksTheReferenceClassUp) {
  auto mock = boost::make_shared<::testing::NiceMock<TMockNamespace>>();
  ns = mock;
  ::testing::InSequence order;
  EXPECT_CALL(*mock, GetClass("", _));
  EXPECT_CALL(*mock, CreateClass("M", _, _));
  EXPECT_CALL(*mock, GetClass("Target", _));
  EXPECT_CALL(*mock, GetClass("Nope", _));
  EXPECT_CALL(*mock, GetClass("", _));
  TParseResult result = Parse(
      ObjectDocument({"<CLASS NAME=\"M\"><METHOD NAME=\"m\">"
                      "<PARAMETER.REFERENCE NAME=\"a\" REFERENCECLASS=\"Target\"/>"
                      "<PARAMETER.REFARRAY NAME=\"b\" REFERENCECLASS=\"Nope\"/>"
                      "<PARAMETER.REFERENCE NAME=\"c\" REFERENCECLASS=\"Other\"><VALUE.ARAY/>"
                      "</PARAMETER.REFERENCE>"
                      "<PARAMETER.ARRAY NAME=\"d\" TYPE=\"uint8\"/>"
                      "<PARAMETER.ARRAY NAME=\"e\" TYPE=\"uint8\"><VALUE.ARRAY/></PARAMETER.ARRAY>"
                      "<PARAMETER NAME=\"f\" TYPE=\"uint8\"/></METHOD></CLASS>"}));
  EXPECT_EQ(result.classes.size(), 1u);
  EXPECT_TRUE(Log().empty()) << Log().front();
}

} // namespace
} // namespace orvtest
