#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <string>

using namespace NVRNORV20;

namespace orvtest {
namespace {

class MofTest : public TModelTest {};

TEST_F(MofTest, QualifierDeclarations) {
  using D = ICIMQualifierDecl;
  struct TCase {
    const char *name;
    TCIMValue value;
    std::uint32_t scope;
    std::uint32_t flavor;
    const char *mof;
  } cases[] = {
      {"Weak", TCIMValue(false), D::kScopeReference, D::kFlavorToSubclass,
       "Qualifier Weak : boolean = false, Scope(reference), Flavor(DisableOverride, ToSubclass);"},
      {"Units", TCIMValue(TCIMType(kCIMTypeString), 0), D::kScopeAny,
       D::kFlavorDefault | D::kFlavorTranslatable,
       "Qualifier Units : string, Scope(any), Flavor(EnableOverride, ToSubclass, Translatable);"},
      {"Bits", TCIMValue(TCIMType(kCIMTypeString).GetArrayType(), 0),
       D::kScopeProperty | D::kScopeMethod | D::kScopeParameter, D::kFlavorDefault,
       "Qualifier Bits : string[], Scope(property, method, parameter), "
       "Flavor(EnableOverride, ToSubclass);"},
      {"Fixed", TCIMValue(TCIMType(kCIMTypeSint64).GetArrayType(), 4), D::kScopeClass,
       D::kFlavorNone,
       "Qualifier Fixed : sint64[4], Scope(class), Flavor(DisableOverride, Restricted);"},
      {"Version", TCIMValue("2.6.0"), 0, D::kFlavorOverridable,
       "Qualifier Version : string = \"2.6.0\", Flavor(EnableOverride, Restricted);"},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(test.name);
    EXPECT_EQ(ns->CreateQualifierDecl(test.name, test.value, test.scope, test.flavor)->ToMOF(),
              test.mof);
  }
}

TEST_F(MofTest, Qualifiers) {
  auto cls = Class("Any");
  struct TCase {
    const char *name;
    TCIMValue value;
    const char *mof;
  } cases[] = {
      {"Key", TCIMValue(true), "Key"},
      {"Key", TCIMValue(false), "Key(false)"},
      {"MaxLen", Uint32(64), "MaxLen(64)"},
      {"Description", TCIMValue(), "Description(NULL)"},
      {"ValueMap", StringArray({"0", "1"}), "ValueMap {\"0\", \"1\"}"},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(test.mof);
    EXPECT_EQ(cls->CreateQualifier(ns->GetQualifierDecl(test.name), test.value,
                                   ICIMQualifierDecl::kFlavorDefault)
                  ->ToMOF(),
              test.mof);
  }
}

TEST_F(MofTest, NamespaceOfASmallHierarchy) {
  auto space = CreateCIMNamespace("root/mof");
  space->CreateQualifierDecl("Key", TCIMValue(false),
                             ICIMQualifierDecl::kScopeProperty | ICIMQualifierDecl::kScopeReference,
                             ICIMQualifierDecl::kFlavorToSubclass);
  space->CreateQualifierDecl("Description", TCIMValue(TCIMType(kCIMTypeString), 0),
                             ICIMQualifierDecl::kScopeAny, ICIMQualifierDecl::kFlavorDefault);
  space->CreateQualifierDecl("ValueMap", TCIMValue(TCIMType(kCIMTypeString).GetArrayType(), 0),
                             ICIMQualifierDecl::kScopeProperty, ICIMQualifierDecl::kFlavorDefault);
  space->CreateQualifierDecl("In", TCIMValue(true), ICIMQualifierDecl::kScopeParameter,
                             ICIMQualifierDecl::kFlavorToSubclass);

  auto thing = space->CreateClass("CIM_Thing", nullptr);
  Qualify(*thing, *space, "Description", TCIMValue("A \"thing\""));
  auto name = thing->AddProperty("Name", TCIMValue());
  Qualify(*name, *space, "Key", TCIMValue(true), ICIMQualifierDecl::kFlavorToSubclass);
  name->SetValue(TCIMValue(TCIMType(kCIMTypeString), 0));
  auto state = Property(*thing, "State", TCIMValue::MakeUnsigned(kCIMTypeUint16, 1));
  Qualify(*state, *space, "ValueMap", StringArray({"0", "1"}));
  Property(*thing, "Data", TCIMValue(TCIMType(kCIMTypeUint8).GetArrayType(), 4));
  Property(*thing, "Tags", TCIMValue(TCIMType(kCIMTypeString).GetArrayType(), 0));
  TCIMValue peer(TCIMType(kCIMTypeReference), 0);
  peer.SetReferencedClass(thing);
  Property(*thing, "Peer", peer);
  auto start = thing->AddMethod("Start", TCIMType(kCIMTypeUint32));
  Qualify(*start, *space, "Description", TCIMValue("Starts it"));
  Qualify(*start->AddParameter("Arg", TCIMType(kCIMTypeString)), *space, "In", TCIMValue(true),
          ICIMQualifierDecl::kFlavorToSubclass);
  start->AddParameter("Codes", TCIMType(kCIMTypeUint8).GetArrayType());
  thing->Commit();

  auto special = space->CreateClass("CIM_Special", thing);
  Property(*special, "state", TCIMValue::MakeUnsigned(kCIMTypeUint16, 0));
  Property(*special, "Extra", TCIMValue("x"));
  auto restart = special->AddMethod("Start", TCIMType(kCIMTypeUint32));
  Qualify(*restart->AddParameter("Arg", TCIMType(kCIMTypeString)), *space, "In", TCIMValue(false),
          ICIMQualifierDecl::kFlavorToSubclass);
  special->Commit();
  ASSERT_TRUE(special->GetProperty("State")->HasQualifier("ValueMap")) << "propagated, not shown";

  auto instance = special->CreateInstance();
  instance->SetPropertyValue("Name", TCIMValue("one"));
  instance->SetPropertyValue("Tags", StringArray({"a", "b"}));
  instance->Commit();

  EXPECT_EQ(special->ToMOF(), "class CIM_Special : CIM_Thing {\n"
                              "    uint16 state = 0;\n"
                              "    string Extra = \"x\";\n"
                              "    uint32 Start([In(false)] string Arg);\n"
                              "};");
  EXPECT_EQ(
      space->ToMOF(),
      "Qualifier Key : boolean = false, Scope(property, reference), "
      "Flavor(DisableOverride, ToSubclass);\n"
      "\n"
      "Qualifier Description : string, Scope(any), Flavor(EnableOverride, ToSubclass);\n"
      "\n"
      "Qualifier ValueMap : string[], Scope(property), Flavor(EnableOverride, ToSubclass);\n"
      "\n"
      "Qualifier In : boolean = true, Scope(parameter), Flavor(DisableOverride, ToSubclass);\n"
      "\n"
      "[Description(\"A \\\"thing\\\"\")]\n"
      "class CIM_Thing {\n"
      "    [Key] string Name;\n"
      "    [ValueMap {\"0\", \"1\"}] uint16 State = 1;\n"
      "    uint8 Data[4];\n"
      "    string Tags[];\n"
      "    CIM_Thing REF Peer;\n"
      "    [Description(\"Starts it\")] uint32 Start([In] string Arg, uint8 Codes[]);\n"
      "};\n"
      "\n"
      "class CIM_Special : CIM_Thing {\n"
      "    uint16 state = 0;\n"
      "    string Extra = \"x\";\n"
      "    uint32 Start([In(false)] string Arg);\n"
      "};\n"
      "\n"
      "instance of CIM_Special {\n"
      "    Name = \"one\";\n"
      "    state = 0;\n"
      "    Tags = {\"a\", \"b\"};\n"
      "    Extra = \"x\";\n"
      "};\n");
}

} // namespace
} // namespace orvtest
