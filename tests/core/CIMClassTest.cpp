#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace NVRNORV20;

namespace orvtest {
namespace {

class CIMClassTest : public TModelTest {
protected:
  /// Base { [Key] Name; Status; Caption = "base" } and
  /// Derived : Base { Status (redeclared); Extra }, neither committed.
  void BuildHierarchy() {
    base = Class("Base");
    KeyProperty(*base, "Name", TCIMValue(TCIMType(kCIMTypeString), 0));
    Property(*base, "Status", TCIMValue(TCIMType(kCIMTypeString), 0));
    Property(*base, "Caption", TCIMValue("base"));
    derived = Class("Derived", "Base");
    Property(*derived, "STATUS", TCIMValue("derived"));
    Property(*derived, "Extra", Uint32(7));
  }

  boost::shared_ptr<ICIMClass> base;
  boost::shared_ptr<ICIMClass> derived;
};

TEST_F(CIMClassTest, InheritedPropertiesComeFirstAndOverridesStayInPlace) {
  BuildHierarchy();
  // The loader looks up members of classes not yet committed as well as of
  // committed ones: both must give the same answer.
  for (bool committed : {false, true}) {
    SCOPED_TRACE(committed ? "after Commit" : "before Commit");
    if (committed) {
      base->Commit();
      derived->Commit();
    }
    const auto properties = derived->GetProperties();
    ASSERT_EQ(Names(properties), (std::vector<std::string>{"Name", "STATUS", "Caption", "Extra"}));
    EXPECT_EQ(properties[0], base->GetProperty("Name")) << "inherited declaration is shared";
    EXPECT_EQ(properties[0]->GetClassOrigin(), "Base");
    EXPECT_EQ(properties[1]->GetClassOrigin(), "Derived");
    EXPECT_EQ(properties[1]->GetOverriddenProperty(), base->GetProperty("status"));
    EXPECT_EQ(properties[2], base->GetProperty("Caption"));
    EXPECT_FALSE(properties[3]->GetOverriddenProperty());
    EXPECT_EQ(derived->GetProperty("status")->GetValue().GetString(), "derived");
    EXPECT_EQ(base->GetProperty("status")->GetValue().IsNull(), true);
    EXPECT_EQ(Names(derived->GetLocalProperties()), (std::vector<std::string>{"STATUS", "Extra"}));
    EXPECT_EQ(Names(derived->GetKeyProperties()), std::vector<std::string>{"Name"});
  }
}

TEST_F(CIMClassTest, RedeclaredKeyPropertyGetsItsKeyAtCommit) {
  // A flattened schema repeats the inherited key property; the loader drops
  // the qualifiers that the document marks propagated.
  base = Class("Base");
  auto baseName = KeyProperty(*base, "Name", TCIMValue(TCIMType(kCIMTypeString), 0));
  Qualify(*baseName, "Description", TCIMValue("base text"));
  Qualify(*baseName, "MaxLen", Uint32(16), ICIMQualifierDecl::kFlavorOverridable); // restricted
  Qualify(*base, "Association", TCIMValue(true), ICIMQualifierDecl::kFlavorToSubclass);
  Qualify(*base, "Abstract", TCIMValue(true), ICIMQualifierDecl::kFlavorNone);
  base->Commit();

  derived = Class("Derived", "Base");
  auto name = Property(*derived, "Name", TCIMValue(TCIMType(kCIMTypeString), 0));
  Qualify(*name, "Description", TCIMValue("own text"));
  EXPECT_FALSE(name->IsKey());
  derived->Commit();

  EXPECT_TRUE(name->IsKey());
  EXPECT_TRUE(name->GetQualifier("KEY")->IsPropagated());
  EXPECT_EQ(name->GetQualifier("description")->GetValue().GetString(), "own text");
  EXPECT_FALSE(name->GetQualifier("Description")->IsPropagated());
  EXPECT_FALSE(name->HasQualifier("MaxLen")) << "a restricted qualifier stays with its class";
  ASSERT_EQ(name->GetQualifiers().size(), 2u);
  EXPECT_EQ(derived->GetKeyProperties(), std::vector<boost::shared_ptr<ICIMPropertyDecl>>{name});

  EXPECT_TRUE(derived->IsAssociation());
  EXPECT_TRUE(derived->GetQualifier("association")->IsPropagated());
  EXPECT_FALSE(derived->HasQualifier("Abstract"));
}

TEST_F(CIMClassTest, KeyPropagatesDownAChainOfRedeclarations) {
  base = Class("A");
  KeyProperty(*base, "Id", Uint32(0));
  base->Commit();
  std::string super = "A";
  for (const char *name : {"B", "C", "D"}) {
    auto cls = Class(name, super);
    Property(*cls, "id", TCIMValue(TCIMType(kCIMTypeUint32), 0));
    cls->Commit();
    super = name;
  }
  auto leaf = ns->GetClass("d");
  EXPECT_TRUE(leaf->GetProperty("ID")->IsKey());
  EXPECT_EQ(leaf->GetProperty("ID")->GetClassOrigin(), "D");
  EXPECT_EQ(leaf->GetDerivation(), (std::vector<std::string>{"D", "C", "B", "A"}));
  EXPECT_TRUE(leaf->IsSubclassOf("a"));
  EXPECT_FALSE(ns->GetClass("B")->IsSubclassOf("C"));
}

TEST_F(CIMClassTest, OverridingMethodKeepsPlaceAndInheritsParameterQualifiers) {
  base = Class("Base");
  auto start = base->AddMethod("Start", TCIMType(kCIMTypeUint32));
  Qualify(*start->AddParameter("Arg", TCIMType(kCIMTypeString)), "In", TCIMValue(true),
          ICIMQualifierDecl::kFlavorToSubclass);
  base->AddMethod("Stop", TCIMType(kCIMTypeUint32));
  base->Commit();

  derived = Class("Derived", "Base");
  auto override = derived->AddMethod("start", TCIMType(kCIMTypeUint32));
  auto arg = override->AddParameter("ARG", TCIMType(kCIMTypeString));
  derived->AddMethod("Reset", TCIMType(kCIMTypeNone));
  EXPECT_FALSE(arg->HasQualifier("In"));
  derived->Commit();

  std::vector<std::string> names;
  for (const auto &method : derived->GetMethods())
    names.push_back(method->GetName());
  EXPECT_EQ(names, (std::vector<std::string>{"start", "Stop", "Reset"}));
  EXPECT_EQ(derived->GetMethod("START")->GetClassOrigin(), "Derived");
  EXPECT_EQ(derived->GetMethod("stop"), base->GetMethod("Stop"));
  EXPECT_TRUE(arg->GetQualifier("IN")->IsPropagated());
  EXPECT_TRUE(static_cast<bool>(arg->GetQualifier("in")->GetValue()));
  EXPECT_EQ(override->GetParameter("arg"), arg);
}

TEST_F(CIMClassTest, UntypedNullDefaultKeepsDeclaredOrInheritedType) {
  base = Class("Base");
  Property(*base, "Count", Uint32(3));
  derived = Class("Derived", "Base");
  // What a failed text conversion leaves for the default.
  auto count = Property(*derived, "Count", TCIMValue());
  auto own = Property(*derived, "Size", TCIMValue::MakeUnsigned(kCIMTypeUint64, 1));
  own->SetValue(TCIMValue());
  EXPECT_EQ(count->GetType(), kCIMTypeUint32);
  EXPECT_EQ(own->GetType(), kCIMTypeUint64);
  EXPECT_TRUE(own->GetValue().IsNull());
}

TEST_F(CIMClassTest, AbsentQualifierIsANullQualifierOfThatName) {
  base = Class("Base");
  auto property = Property(*base, "Name", TCIMValue("x"));
  auto absent = property->GetQualifier("Key");
  ASSERT_TRUE(absent);
  EXPECT_EQ(absent->GetName(), "Key");
  EXPECT_TRUE(absent->GetValue().IsNull());
  EXPECT_FALSE(absent->GetDeclaration());
  EXPECT_FALSE(property->HasQualifier("Key"));
  EXPECT_FALSE(property->IsKey());
}

TEST_F(CIMClassTest, QualifierValuesAreFittedToTheirDeclaration) {
  base = Class("Base");
  struct TCase {
    const char *qualifier;
    TCIMValue value;
    EORVStatusCode status;
    ECIMType storedType;
  } cases[] = {
      {"MaxLen", TCIMValue(), kORVStatusOK, kCIMTypeUint32},
      {"MaxLen", Uint32(8), kORVStatusOK, kCIMTypeUint32},
      {"MaxLen", TCIMValue("8"), kORVStatusTypeMismatch, kCIMTypeNone},
      {"Key", TCIMValue::MakeSigned(kCIMTypeSint8, 1), kORVStatusTypeMismatch, kCIMTypeNone},
      // Declared without default in CIM-XML, an array qualifier looks scalar.
      {"ValueMap", StringArray({"0", "1"}), kORVStatusOK,
       static_cast<ECIMType>(kCIMTypeString | kCIMTypeArrayFlag)},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(test.qualifier);
    boost::shared_ptr<ICIMQualifier> qualifier;
    EXPECT_EQ(StatusOf([&] {
                qualifier = base->CreateQualifier(ns->GetQualifierDecl(test.qualifier), test.value,
                                                  ICIMQualifierDecl::kFlavorDefault);
              }),
              test.status);
    if (test.status == kORVStatusOK && qualifier) {
      EXPECT_EQ(qualifier->GetType(), test.storedType);
      EXPECT_EQ(qualifier->GetValue().IsNull(), test.value.IsNull());
    }
  }
  EXPECT_EQ(StatusOf([&] {
              base->CreateQualifier(boost::shared_ptr<ICIMQualifierDecl>(), TCIMValue(true), 3);
            }),
            kORVStatusNullObject);
}

TEST_F(CIMClassTest, MembersAreFoundInAnyLetterCaseAndKeepTheirSpelling) {
  base = Class("CIM_Thing");
  auto property = Property(*base, "ElementName", TCIMValue("x"));
  Qualify(*property, "Description", TCIMValue("text"));
  auto method = base->AddMethod("RequestStateChange", TCIMType(kCIMTypeUint32));
  method->AddParameter("RequestedState", TCIMType(kCIMTypeUint16));
  base->Commit();
  for (const char *spelling : {"cim_thing", "CIM_THING", "cIm_ThInG"}) {
    SCOPED_TRACE(spelling);
    auto found = ns->GetClass(spelling);
    EXPECT_EQ(found, base);
    EXPECT_EQ(found->GetName(), "CIM_Thing");
  }
  EXPECT_EQ(base->GetProperty("elementname")->GetName(), "ElementName");
  EXPECT_EQ(property->GetQualifier("DESCRIPTION")->GetName(), "Description");
  EXPECT_EQ(base->GetMethod("requeststatechange")->GetParameter("REQUESTEDSTATE")->GetName(),
            "RequestedState");
  EXPECT_EQ(ns->GetQualifierDecl("maxlen")->GetName(), "MaxLen");
}

TEST_F(CIMClassTest, MemberEditsFailWhereTheyMust) {
  base = Class("Base");
  Property(*base, "Inherited", TCIMValue("x"));
  base->Commit();
  derived = Class("Derived", "Base");
  Property(*derived, "Own", TCIMValue("y"));
  auto method = derived->AddMethod("Run", TCIMType(kCIMTypeUint32));
  method->AddParameter("Arg", TCIMType(kCIMTypeString));
  struct TCase {
    const char *what;
    std::function<void()> call;
    EORVStatusCode status;
  } cases[] = {
      {"own property twice", [&] { derived->AddProperty("OWN", TCIMValue()); },
       kORVStatusAlreadyExists},
      {"unknown property", [&] { derived->GetProperty("Missing"); }, kORVStatusNoSuchProperty},
      {"remove inherited", [&] { derived->RemoveProperty("Inherited"); }, kORVStatusNoSuchProperty},
      {"unknown method", [&] { derived->GetMethod("Walk"); }, kORVStatusNoSuchMethod},
      {"method twice", [&] { derived->AddMethod("run", TCIMType(kCIMTypeUint32)); },
       kORVStatusAlreadyExists},
      {"parameter twice", [&] { method->AddParameter("ARG", TCIMType(kCIMTypeString)); },
       kORVStatusAlreadyExists},
      {"unknown parameter", [&] { method->GetParameter("Other"); }, kORVStatusNoSuchParameter},
      {"property after Commit", [&] { base->AddProperty("Late", TCIMValue()); },
       kORVStatusAlreadyCommitted},
      {"remove after Commit", [&] { base->RemoveProperty("Inherited"); },
       kORVStatusAlreadyCommitted},
      {"second Commit", [&] { base->Commit(); }, kORVStatusAlreadyCommitted},
  };
  for (const auto &test : cases) {
    SCOPED_TRACE(test.what);
    EXPECT_EQ(StatusOf(test.call), test.status);
  }
  derived->RemoveProperty("own");
  EXPECT_FALSE(derived->HasProperty("Own"));
  EXPECT_TRUE(derived->HasProperty("inherited"));
}

} // namespace
} // namespace orvtest
