#include "support/Fixtures.h"

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
  // A second declaration of a name leaves the first, committed.
  EXPECT_EQ(ns->GetQualifierDecl("Key")->GetType(), kCIMTypeBoolean);
  EXPECT_TRUE(ns->GetQualifierDecl("Key")->IsCommitted());
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

} // namespace
} // namespace orvtest
