#include "support/Fixtures.h"

#include <boost/weak_ptr.hpp>

namespace orvtest {
namespace {

using CIMNamespaceTest = TModelTest;
using TNames = std::vector<std::string>;

TEST_F(CIMNamespaceTest, LookUpsThrowTheStatusTheLoaderRelieson) {
  Class("CIM_Thing");
  const std::pair<std::function<void()>, EORVStatusCode> cases[] = {
      {[&] { ns->GetClass("CIM_Missing"); }, kORVStatusSchemaLookup},
      {[&] { Class("Sub", "Nowhere"); }, kORVStatusSchemaLookup},
      {[&] { ns->CreateClass("cim_thing", nullptr); }, kORVStatusAlreadyExists},
      {[&] { ns->CreateClass("", nullptr); }, kORVStatusInvalidArgument},
      {[&] { ns->GetQualifierDecl("Nonsense"); }, kORVStatusQualifierNotDeclared},
      {[&] { ns->CreateQualifierDecl("KEY", Uint32(1), 8, 2); }, kORVStatusSchemaLookup},
      {[&] { ns->DeleteQualifierDecl("Nonsense"); }, kORVStatusQualifierNotDeclared},
      {[&] { ns->DeleteClass("CIM_Missing"); }, kORVStatusSchemaLookup},
      {[&] { ns->GetInstances("CIM_Missing", false); }, kORVStatusSchemaLookup},
      {[&] { ns->GetSubclassNames("CIM_Missing", true); }, kORVStatusSchemaLookup},
      {[&] { ns->GetQualifierDecl("Key")->Commit(); }, kORVStatusAlreadyCommitted}};
  for (std::size_t i = 0; i < std::size(cases); ++i)
    EXPECT_EQ(StatusOf(cases[i].first), cases[i].second) << "case " << i;
  EXPECT_FALSE(ns->HasClass("Sub")) << "a failed CreateClass registers nothing";
  // A second declaration of a name leaves the first.
  EXPECT_EQ(ns->GetQualifierDecl("Key")->GetType(), kCIMTypeBoolean);
  const auto declarations = ns->GetQualifierDecls().size();
  ns->DeleteQualifierDecl("KEY");
  EXPECT_EQ(ns->GetQualifierDecls().size(), declarations - 1);
}

TEST_F(CIMNamespaceTest, ClassesAndSubclassesInDefinitionOrder) {
  // Root <- A <- A1, Root <- B <- B1, A <- A2 defined interleaved.
  const char *const defined[][2] = {{"Root", ""}, {"A", "Root"}, {"B", "Root"}, {"B1", "B"},
                                    {"A1", "A"},  {"A2", "A"},   {"Other", ""}};
  for (const auto &entry : defined)
    Class(entry[0], entry[1])->Commit();
  EXPECT_EQ(ns->GetSubclassNames("root", false), (TNames{"A", "B"}));
  EXPECT_EQ(ns->GetSubclassNames("Root", true), (TNames{"A", "B", "B1", "A1", "A2"}));
  EXPECT_EQ(ns->GetSubclassNames("", false), (TNames{"Root", "Other"}));

  EXPECT_EQ(StatusOf([&] { ns->DeleteClass("A"); }), kORVStatusClassHasInstances);
  for (const char *name : {"a1", "A2", "A"})
    ns->DeleteClass(name);
  EXPECT_EQ(ns->GetSubclassNames("Root", true), (TNames{"B", "B1"}));
  EXPECT_TRUE(Class("a", "Root")) << "the name is free again";
}

TEST_F(CIMNamespaceTest, DeepChainOutlivesItsNamespaceWhileHeldAndIsReleased) {
  // Releasing a long chain of superclasses (and of the property declarations
  // they override) must not recurse through it, also when the caller keeps
  // the last subclass, and an instance of it, after the namespace is gone.
  const int depth = 50000;
  for (int i = 0; i < depth; ++i) {
    auto cls = Class("Level" + std::to_string(i), i ? "Level" + std::to_string(i - 1) : "");
    Property(*cls, i == 0 ? "Id" : "ID", Uint32(0), i == 0);
    cls->Commit();
  }
  auto leaf = ns->GetClass("LEVEL" + std::to_string(depth - 1));
  EXPECT_TRUE(leaf->GetProperty("id")->IsKey());
  boost::weak_ptr<ICIMClass> root = ns->GetClass("Level0");
  auto instance = leaf->CreateInstance();
  ns.reset();
  // What the caller holds stays readable, but registers nothing any more.
  EXPECT_FALSE(leaf->GetNamespace());
  EXPECT_TRUE(leaf->GetInstances().empty());
  EXPECT_EQ(StatusOf([&] { instance->Commit(); }), kORVStatusNamespaceGone);
  EXPECT_EQ(instance->GetPropertyValue("id"), Uint32(0));
  instance.reset();
  leaf.reset();
  EXPECT_TRUE(root.expired());
}

} // namespace
} // namespace orvtest
