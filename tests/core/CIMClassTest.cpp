#include "support/Fixtures.h"

#include <cmath>

namespace orvtest {
namespace {

using CIMClassTest = TModelTest;
using TNames = std::vector<std::string>;

// A subclass's members follow its superclass's, an override in the place of
// what it overrides. A flattened schema repeats inherited members, without
// the qualifiers marked propagated: those, the key among them, come at Commit.
TEST_F(CIMClassTest, InheritedMembersComeFirstAndRedeclaredOnesInheritAtCommit) {
  auto base = Class("Base");
  auto baseName = Property(*base, "Name", TCIMValue(TCIMType(kCIMTypeString), 0), true);
  Qualify(*baseName, "MaxLen", Uint32(16), D::kFlavorOverridable); // restricted
  Property(*base, "Status", TCIMValue(TCIMType(kCIMTypeString), 0));
  Property(*base, "Caption", TCIMValue("base"));
  Qualify(*base, "Association", TCIMValue(true), D::kFlavorToSubclass);
  Qualify(*base, "Abstract", TCIMValue(true), D::kFlavorNone);
  auto start = base->AddMethod("Start", TCIMType(kCIMTypeUint32));
  Qualify(*start->AddParameter("Arg", TCIMType(kCIMTypeString)), "In", TCIMValue(true),
          D::kFlavorToSubclass);
  base->AddMethod("Stop", TCIMType(kCIMTypeUint32));
  auto derived = Class("Derived", "Base");
  Property(*derived, "STATUS", TCIMValue("derived"));
  Property(*derived, "Extra", Uint32(7));
  auto override = derived->AddMethod("start", TCIMType(kCIMTypeUint32));
  auto arg = override->AddParameter("ARG", TCIMType(kCIMTypeString));
  derived->AddMethod("Reset", TCIMType(kCIMTypeNone));
  // The loader looks members up in classes not yet committed as well as in
  // committed ones: both must give the same answer.
  for (bool committed : {false, true}) {
    if (committed) {
      base->Commit();
      derived->Commit();
    }
    const auto properties = derived->GetProperties();
    ASSERT_EQ(Names(properties), (TNames{"Name", "STATUS", "Caption", "Extra"}));
    EXPECT_EQ(properties[0], baseName) << "inherited declaration is shared";
    EXPECT_EQ(properties[0]->GetClassOrigin() + properties[1]->GetClassOrigin(), "BaseDerived");
    EXPECT_EQ(properties[1]->GetOverriddenProperty(), base->GetProperty("status"));
    EXPECT_FALSE(properties[3]->GetOverriddenProperty());
    EXPECT_EQ(Names(derived->GetLocalProperties()), (TNames{"STATUS", "Extra"}));
    EXPECT_EQ(Names(derived->GetKeyProperties()), TNames{"Name"});
    EXPECT_EQ(arg->HasQualifier("In"), committed);
  }
  EXPECT_EQ(Names(derived->GetMethods()), (TNames{"start", "Stop", "Reset"}));
  EXPECT_EQ(Names(derived->GetLocalMethods()), (TNames{"start", "Reset"}));
  EXPECT_EQ(derived->GetMethod("START")->GetClassOrigin(), "Derived");
  EXPECT_EQ(derived->GetMethod("stop"), base->GetMethod("Stop"));
  EXPECT_TRUE(arg->GetQualifier("IN")->IsPropagated());
  EXPECT_EQ(override->GetParameter("arg"), arg);
  override->Commit();
  arg->Commit();
  EXPECT_TRUE(override->IsCommitted() && arg->IsCommitted());
  EXPECT_EQ(override->GetReturnType(), kCIMTypeUint32);
  EXPECT_EQ(arg->GetType(), kCIMTypeString);

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
  EXPECT_TRUE(name->IsKey() && name->GetQualifier("KEY")->IsPropagated() &&
              !name->GetQualifier("Description")->IsPropagated());
  EXPECT_FALSE(name->HasQualifier("MaxLen")) << "a restricted qualifier stays with its class";
  EXPECT_TRUE(leaf->IsAssociation() && leaf->GetQualifier("association")->IsPropagated());
  EXPECT_FALSE(leaf->HasQualifier("Abstract"));
  EXPECT_EQ(leaf->GetDerivation(), (TNames{"D", "C", "B", "Base"}));
  EXPECT_TRUE(leaf->IsSubclassOf("base") && !ns->GetClass("B")->IsSubclassOf("C"));
}

TEST_F(CIMClassTest, MembersAreFoundInAnyCaseTypedAndEditedOnlyWhereTheyMay) {
  auto base = Class("Base");
  Property(*base, "Count", Uint32(3));
  Property(*base, "Inherited", TCIMValue("x"));
  base->Commit();
  auto derived = Class("Derived", "Base");
  // An untyped null (what a failed text conversion leaves) keeps the
  // declared or inherited type.
  EXPECT_EQ(Property(*derived, "count", TCIMValue())->GetType(), kCIMTypeUint32);
  auto own = Property(*derived, "Size", TCIMValue::MakeUnsigned(kCIMTypeUint64, 1));
  own->SetValue(TCIMValue());
  EXPECT_EQ(own->GetType(), kCIMTypeUint64);
  EXPECT_EQ(own->GetName() + own->GetReferenceClassName(), "Size");
  EXPECT_TRUE(own->IsCommitted());
  // An absent qualifier is a null one of that name.
  auto absent = own->GetQualifier("Key");
  EXPECT_TRUE(absent->GetName() == "Key" && absent->GetValue().IsNull() &&
              !absent->GetDeclaration() && !own->IsKey());

  auto method = derived->AddMethod("Run", TCIMType(kCIMTypeUint32));
  method->AddParameter("Arg", TCIMType(kCIMTypeString));
  // A reference parameter names its class, which need not be loaded.
  auto job = method->AddParameter("Jobs", TCIMType(kCIMTypeReference).GetArrayType());
  job->SetReferenceClassName("CIM_Job");
  job->SetArraySize(2);
  job->Commit();
  EXPECT_EQ(job->ToMOF() + job->GetReferenceClassName(), "CIM_Job REF Jobs[2]CIM_Job");
  EXPECT_EQ(job->GetArraySize(), 2U);
  // So does a reference property whose class is not loaded.
  auto owner = derived->AddProperty("Owner", TCIMValue(TCIMType(kCIMTypeReference), 0));
  owner->SetReferenceClassName("CIM_Owner");
  owner->Commit();
  EXPECT_EQ(owner->ToMOF(), "CIM_Owner REF Owner;");
  const auto qualifier = [&](const char *name, const TCIMValue &value) {
    return base->CreateQualifier(ns->GetQualifierDecl(name), value, D::kFlavorDefault);
  };
  const std::pair<std::function<void()>, EORVStatusCode> cases[] = {
      {[&] { derived->AddProperty("SIZE", TCIMValue()); }, kORVStatusAlreadyExists},
      {[&] { derived->GetProperty("Missing"); }, kORVStatusNoSuchProperty},
      {[&] { derived->RemoveProperty("Inherited"); }, kORVStatusNoSuchProperty},
      {[&] { derived->GetMethod("Walk"); }, kORVStatusNoSuchMethod},
      {[&] { derived->AddMethod("run", TCIMType(kCIMTypeUint32)); }, kORVStatusAlreadyExists},
      {[&] { method->AddParameter("ARG", TCIMType(kCIMTypeString)); }, kORVStatusAlreadyExists},
      {[&] { method->GetParameter("Other"); }, kORVStatusNoSuchParameter},
      {[&] { job->SetReferenceClassName("CIM_Other"); }, kORVStatusAlreadyCommitted},
      {[&] { job->SetArraySize(3); }, kORVStatusAlreadyCommitted},
      {[&] { owner->SetReferenceClassName("CIM_Other"); }, kORVStatusAlreadyCommitted},
      {[&] { base->AddProperty("Late", TCIMValue()); }, kORVStatusAlreadyCommitted},
      {[&] { base->RemoveProperty("Inherited"); }, kORVStatusAlreadyCommitted},
      {[&] { base->Commit(); }, kORVStatusAlreadyCommitted},
      {[&] { base->CreateQualifier(nullptr, TCIMValue(), D::kFlavorNone); }, kORVStatusNullObject},
      {[&] { qualifier("MaxLen", TCIMValue("8")); }, kORVStatusTypeMismatch},
      {[&] { qualifier("Key", TCIMValue::MakeSigned(kCIMTypeSint8, 1)); }, kORVStatusTypeMismatch}};
  for (std::size_t i = 0; i < std::size(cases); ++i)
    EXPECT_EQ(StatusOf(cases[i].first), cases[i].second) << "case " << i;
  derived->RemoveProperty("size");
  EXPECT_TRUE(!derived->HasProperty("Size") && derived->HasProperty("inherited"));

  // A null qualifier takes the declared type. Declared without default in
  // CIM-XML, an array qualifier looks scalar, and takes an array.
  EXPECT_EQ(qualifier("MaxLen", TCIMValue())->GetType(), kCIMTypeUint32);
  const TCIMValue valueMap = Array(kCIMTypeString, {TCIMValue("0"), TCIMValue("1")});
  EXPECT_EQ(qualifier("ValueMap", valueMap)->GetType(), valueMap.GetType());
}

// With "FLAVORS", MOF writes each qualifier's flavors where they differ from
// its declaration's; what no MOF flavor says is a line.
TEST_F(CIMClassTest, MofWritesFlavorsThatDifferFromTheDeclarationsWhenAsked) {
  TCapturingLogger logger;
  ns->CreateQualifierDecl("Caption", TCIMValue(TCIMType(kCIMTypeString), 0), D::kScopeAny,
                          D::kFlavorDefault | D::kFlavorTranslatable)
      ->Commit();
  auto cls = Class("C");
  Qualify(*cls, "Abstract", TCIMValue(true), D::kFlavorOverridable | D::kFlavorToSubclass);
  Qualify(*cls, "Description", TCIMValue("d"), D::kFlavorTranslatable);
  Qualify(*cls, "Caption", TCIMValue("c"));
  Property(*cls, "Id", Uint32(1), true);
  cls->Commit();
  EXPECT_EQ(cls->ToMOF({{"FLAVORS", TCIMValue(true)}}),
            "[Abstract : EnableOverride ToSubclass, Description(\"d\") : DisableOverride "
            "Restricted Translatable, Caption(\"c\")]\nclass C {\n    [Key] uint32 Id = 1;\n};");
  EXPECT_EQ(logger.Texts(), std::vector<std::string>{"MOF: qualifier Caption is not "
                                                     "translatable, though its declaration is: "
                                                     "MOF has no flavor that says so"});
  EXPECT_EQ(
      cls->ToMOF(),
      "[Abstract, Description(\"d\"), Caption(\"c\")]\nclass C {\n    [Key] uint32 Id = 1;\n};");
}

// What MOF cannot spell never reaches it as it is: a name that is not a CIM
// identifier leaves its element out with a line saying so (a class takes
// its subclasses along, a method its signature), stray bytes become
// escapes and reals without a MOF form NULL.
TEST_F(CIMClassTest, MofLeavesOutWhatItCannotSpell) {
  TCapturingLogger logger;
  const std::string forged = "A {};\ninstance of Evil { X = 1; };\nclass B";
  ns->CreateClass("Sub", ns->CreateClass(forged, nullptr))->Commit();
  ns->CreateQualifierDecl("Q\n[0]", TCIMValue(false), D::kScopeAny, D::kFlavorDefault);
  auto cls = Class("C_\xC3\xA9");
  Qualify(*cls, "Q\n[0]", TCIMValue(true));
  Qualify(*cls, "Abstract", TCIMValue(true));
  cls->AddProperty("p q; uint8 r", TCIMValue("x"));
  TCIMReference target;
  target.SetClassName("X;Y");
  cls->AddProperty("R", TCIMValue(target));
  cls->AddMethod("M", TCIMType(kCIMTypeUint8))->AddParameter("a b", TCIMType(kCIMTypeUint8));
  cls->AddProperty("S", TCIMValue("a\xFF\xED\xA0\x80\xC3\xA9\x9B"));
  cls->AddProperty("F", TCIMValue::MakeReal(kCIMTypeReal64, std::nan("")));
  cls->AddProperty("G", TCIMValue::MakeReal(kCIMTypeReal32, -HUGE_VAL));
  cls->Commit();
  auto instance = cls->CreateInstance();
  instance->SetPropertyValue("p Q; uint8 r", TCIMValue("y"));
  instance->SetPropertyValue("F", TCIMValue::MakeReal(kCIMTypeReal64, 2.5));
  instance->Commit();
  const std::string mof = ns->ToMOF();
  const std::string left = "' is not a valid CIM name", logged = "A {};\\x0Ainstance of Evil { "
                                                                 "X = 1; };\\x0Aclass B";
  EXPECT_EQ(mof.substr(mof.find("[Abstract]")),
            "[Abstract]\nclass C_\xC3\xA9 {\n    string S = "
            "\"a\\x00FF\\x00ED\\x00A0\\x0080\xC3\xA9\\x009B\";\n    real64 F = NULL;\n"
            "    real32 G = NULL;\n};\n\ninstance of C_\xC3\xA9 {\n    F = 2.5;\n};\n");
  EXPECT_EQ(logger.Texts(),
            std::vector<std::string>(
                {"MOF: qualifier declaration 'Q\\x0A[0]' left out: 'Q\\x0A[0]" + left,
                 "MOF: class '" + logged + "' left out: '" + logged + left,
                 "MOF: class 'Sub' left out: '" + logged + left,
                 "MOF: qualifier 'Q\\x0A[0]' left out: 'Q\\x0A[0]" + left,
                 "MOF: property 'p q; uint8 r' left out: 'p q; uint8 r" + left,
                 "MOF: property 'R' left out: 'X;Y" + left,
                 "MOF: bytes that are not UTF-8 in a string, each written as the escape of its "
                 "Latin-1 character",
                 "MOF: the real NaN has no MOF form; written as NULL",
                 "MOF: the real -INF has no MOF form; written as NULL",
                 "MOF: method 'M' left out: 'a b" + left,
                 "MOF: value of property 'p q; uint8 r' left out: 'p q; uint8 r" + left}));
}

} // namespace
} // namespace orvtest
