#include "support/Fixtures.h"

namespace orvtest {
namespace {

using CIMClassTest = TModelTest;

TEST_F(CIMClassTest, InheritedPropertiesComeFirstAndOverridesStayInPlace) {
  auto base = Class("Base");
  Property(*base, "Name", TCIMValue(TCIMType(kCIMTypeString), 0), true);
  Property(*base, "Status", TCIMValue(TCIMType(kCIMTypeString), 0));
  Property(*base, "Caption", TCIMValue("base"));
  auto derived = Class("Derived", "Base");
  Property(*derived, "STATUS", TCIMValue("derived"));
  Property(*derived, "Extra", Uint32(7));
  // The loader looks members up in classes not yet committed as well as in
  // committed ones: both must give the same answer.
  for (bool committed : {false, true}) {
    if (committed) {
      base->Commit();
      derived->Commit();
    }
    const auto properties = derived->GetProperties();
    ASSERT_EQ(Names(properties), (std::vector<std::string>{"Name", "STATUS", "Caption", "Extra"}));
    EXPECT_EQ(properties[0], base->GetProperty("Name")) << "inherited declaration is shared";
    EXPECT_EQ(properties[0]->GetClassOrigin() + properties[1]->GetClassOrigin(), "BaseDerived");
    EXPECT_EQ(properties[1]->GetOverriddenProperty(), base->GetProperty("status"));
    EXPECT_FALSE(properties[3]->GetOverriddenProperty());
    EXPECT_EQ(Names(derived->GetLocalProperties()), (std::vector<std::string>{"STATUS", "Extra"}));
    EXPECT_EQ(Names(derived->GetKeyProperties()), std::vector<std::string>{"Name"});
  }
}

// A flattened schema repeats the inherited key property down a chain of
// classes; the loader drops the qualifiers that the document marks
// propagated, so the key and the other inherited qualifiers come at Commit.
TEST_F(CIMClassTest, RedeclaredMembersInheritAtCommit) {
  auto base = Class("Base");
  auto baseName = Property(*base, "Name", TCIMValue(TCIMType(kCIMTypeString), 0), true);
  Qualify(*baseName, "MaxLen", Uint32(16), D::kFlavorOverridable); // restricted
  Qualify(*base, "Association", TCIMValue(true), D::kFlavorToSubclass);
  Qualify(*base, "Abstract", TCIMValue(true), D::kFlavorNone);
  auto start = base->AddMethod("Start", TCIMType(kCIMTypeUint32));
  Qualify(*start->AddParameter("Arg", TCIMType(kCIMTypeString)), "In", TCIMValue(true),
          D::kFlavorToSubclass);
  base->AddMethod("Stop", TCIMType(kCIMTypeUint32));
  base->Commit();
  std::string super = "Base";
  for (const char *name : {"B", "C", "D"}) {
    auto cls = Class(name, super);
    auto property = Property(*cls, "name", TCIMValue(TCIMType(kCIMTypeString), 0));
    Qualify(*property, "Description", TCIMValue("own text"));
    EXPECT_FALSE(property->IsKey());
    cls->Commit();
    super = name;
  }
  auto leaf = ns->GetClass("d");
  auto name = leaf->GetProperty("NAME");
  EXPECT_TRUE(name->IsKey() && name->GetQualifier("KEY")->IsPropagated());
  EXPECT_EQ(name->GetClassOrigin(), "D");
  EXPECT_FALSE(name->GetQualifier("Description")->IsPropagated());
  EXPECT_FALSE(name->HasQualifier("MaxLen")) << "a restricted qualifier stays with its class";
  EXPECT_TRUE(leaf->IsAssociation() && leaf->GetQualifier("association")->IsPropagated());
  EXPECT_FALSE(leaf->HasQualifier("Abstract"));
  EXPECT_EQ(leaf->GetDerivation(), (std::vector<std::string>{"D", "C", "B", "Base"}));
  EXPECT_TRUE(leaf->IsSubclassOf("base"));
  EXPECT_FALSE(ns->GetClass("B")->IsSubclassOf("C"));

  // An overriding method keeps its place and inherits its parameters'
  // qualifiers.
  auto derived = Class("Derived", "Base");
  auto override = derived->AddMethod("start", TCIMType(kCIMTypeUint32));
  auto arg = override->AddParameter("ARG", TCIMType(kCIMTypeString));
  derived->AddMethod("Reset", TCIMType(kCIMTypeNone));
  EXPECT_FALSE(arg->HasQualifier("In"));
  derived->Commit();
  EXPECT_EQ(Names(derived->GetMethods()), (std::vector<std::string>{"start", "Stop", "Reset"}));
  EXPECT_EQ(Names(derived->GetLocalMethods()), (std::vector<std::string>{"start", "Reset"}));
  EXPECT_EQ(derived->GetMethod("START")->GetClassOrigin(), "Derived");
  EXPECT_EQ(derived->GetMethod("stop"), base->GetMethod("Stop"));
  EXPECT_TRUE(arg->GetQualifier("IN")->IsPropagated());
  EXPECT_EQ(override->GetParameter("arg"), arg);
  override->Commit();
  arg->Commit();
  EXPECT_TRUE(override->IsCommitted() && arg->IsCommitted());
  EXPECT_EQ(override->GetReturnType(), kCIMTypeUint32);
  EXPECT_EQ(arg->GetType(), kCIMTypeString);
}

TEST_F(CIMClassTest, DefaultsQualifiersAndTheirTypes) {
  auto base = Class("Base");
  Property(*base, "Count", Uint32(3));
  auto derived = Class("Derived", "Base");
  // An untyped null (what a failed text conversion leaves) keeps the
  // declared or inherited type.
  EXPECT_EQ(Property(*derived, "Count", TCIMValue())->GetType(), kCIMTypeUint32);
  auto own = Property(*derived, "Size", TCIMValue::MakeUnsigned(kCIMTypeUint64, 1));
  own->SetValue(TCIMValue());
  EXPECT_EQ(own->GetType(), kCIMTypeUint64);
  EXPECT_EQ(own->GetName() + own->GetReferenceClassName(), "Size");
  EXPECT_TRUE(own->IsCommitted());
  // An absent qualifier is a null one of that name.
  auto absent = own->GetQualifier("Key");
  EXPECT_EQ(absent->GetName(), "Key");
  EXPECT_TRUE(absent->GetValue().IsNull());
  EXPECT_FALSE(absent->GetDeclaration() || own->IsKey());

  TCIMValue valueMap;
  valueMap.Set(TCIMType(kCIMTypeString), 2, {TCIMValue("0"), TCIMValue("1")});
  const struct {
    const char *qualifier;
    TCIMValue value;
    EORVStatusCode status;
    ECIMType storedType;
  } cases[] = {
      {"MaxLen", TCIMValue(), kORVStatusOK, kCIMTypeUint32},
      {"MaxLen", TCIMValue("8"), kORVStatusTypeMismatch, kCIMTypeNone},
      {"Key", TCIMValue::MakeSigned(kCIMTypeSint8, 1), kORVStatusTypeMismatch, kCIMTypeNone},
      // Declared without default in CIM-XML, an array qualifier
      // looks scalar.
      {"ValueMap", valueMap, kORVStatusOK, valueMap.GetType()}};
  for (const auto &test : cases) {
    boost::shared_ptr<ICIMQualifier> qualifier;
    EXPECT_EQ(StatusOf([&] {
                qualifier = base->CreateQualifier(ns->GetQualifierDecl(test.qualifier), test.value,
                                                  D::kFlavorDefault);
              }),
              test.status)
        << test.qualifier;
    if (qualifier) {
      EXPECT_EQ(qualifier->GetType(), test.storedType);
    }
  }
  EXPECT_EQ(StatusOf([&] { base->CreateQualifier(nullptr, TCIMValue(true), 3); }),
            kORVStatusNullObject);
  // What a declaration reads back.
  auto declaration = ns->GetQualifierDecl("description");
  EXPECT_EQ(declaration->ToMOF(),
            "Qualifier Description : string, Scope(any), Flavor(EnableOverride, ToSubclass);");
  EXPECT_EQ(declaration->GetScope() + declaration->GetFlavor() + declaration->GetArraySize(),
            D::kScopeAny + D::kFlavorDefault);
  EXPECT_TRUE(declaration->GetDefaultValue().IsNull() && !declaration->IsArray() &&
              declaration->IsCommitted() && declaration->GetType() == kCIMTypeString);
}

TEST_F(CIMClassTest, MembersAreFoundInAnyCaseAndEditsFailWhereTheyMust) {
  auto base = Class("Base");
  Property(*base, "Inherited", TCIMValue("x"));
  base->Commit();
  auto derived = Class("Derived", "Base");
  Property(*derived, "Own", TCIMValue("y"));
  auto method = derived->AddMethod("Run", TCIMType(kCIMTypeUint32));
  method->AddParameter("Arg", TCIMType(kCIMTypeString));
  EXPECT_EQ(ns->GetClass("dERIVED")->GetName(), "Derived");
  EXPECT_EQ(derived->GetMethod("run")->GetParameter("ARG")->GetName(), "Arg");
  const std::pair<std::function<void()>, EORVStatusCode> cases[] = {
      {[&] { derived->AddProperty("OWN", TCIMValue()); }, kORVStatusAlreadyExists},
      {[&] { derived->GetProperty("Missing"); }, kORVStatusNoSuchProperty},
      {[&] { derived->RemoveProperty("Inherited"); }, kORVStatusNoSuchProperty},
      {[&] { derived->GetMethod("Walk"); }, kORVStatusNoSuchMethod},
      {[&] { derived->AddMethod("run", TCIMType(kCIMTypeUint32)); }, kORVStatusAlreadyExists},
      {[&] { method->AddParameter("ARG", TCIMType(kCIMTypeString)); }, kORVStatusAlreadyExists},
      {[&] { method->GetParameter("Other"); }, kORVStatusNoSuchParameter},
      {[&] { base->AddProperty("Late", TCIMValue()); }, kORVStatusAlreadyCommitted},
      {[&] { base->RemoveProperty("Inherited"); }, kORVStatusAlreadyCommitted},
      {[&] { base->Commit(); }, kORVStatusAlreadyCommitted}};
  for (std::size_t i = 0; i < std::size(cases); ++i)
    EXPECT_EQ(StatusOf(cases[i].first), cases[i].second) << "case " << i;
  derived->RemoveProperty("own");
  EXPECT_FALSE(derived->HasProperty("Own"));
  EXPECT_TRUE(derived->HasProperty("inherited"));
}

} // namespace
} // namespace orvtest
