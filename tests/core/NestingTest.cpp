// References nested, classes chained and lists grown far beyond what any
// document holds: every operation must loop rather than recurse, cost what
// it is given rather than its square, and keep its meaning.
#include "support/Fixtures.h"

#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <limits>

namespace orvtest {
namespace {

constexpr int kDeep = 100000;

/// C.k=C.k=...C.k=innermost, depth references in all.
TCIMValue Nested(int depth, const TCIMValue &innermost, const char *className = "C",
                 const char *keyName = "k") {
  TCIMValue value = innermost;
  for (int level = 0; level < depth; ++level) {
    TCIMReference path;
    path.SetClassName(className);
    path.AddKeyValue(keyName, value);
    value = TCIMValue(path);
  }
  return value;
}

TEST(NestingTest, DeepValuesAreComparedWrittenAndReleasedInLoops) {
  const TCIMValue deep = Nested(kDeep, TCIMValue("x"));
  EXPECT_EQ(deep, Nested(kDeep, TCIMValue("x")));
  EXPECT_NE(deep, Nested(kDeep, TCIMValue("y")));
  EXPECT_EQ(deep.GetReference(), Nested(kDeep, TCIMValue("x")).GetReference());
  // Its text doubles per level: measured, never written.
  EXPECT_EQ(deep.GetReference().GetTextLength(), std::numeric_limits<std::size_t>::max());
  EXPECT_EQ(StatusOf([&] { deep.ToString(); }), kORVStatusOutOfMemory);
  EXPECT_EQ(StatusOf([&] { deep.ToMOF(); }), kORVStatusOutOfMemory);
  // Each level quotes the one inside it again, and the length is measured
  // without writing the text.
  const TCIMReference three = Nested(3, TCIMValue("a\"b\\c")).GetReference();
  EXPECT_EQ(three.ToString(), R"(C.k="C.k=\"C.k=\\\"a\\\\\\\"b\\\\\\\\c\\\"\"")");
  EXPECT_EQ(three.GetTextLength(), three.ToString().size());

  TCIMValue arrays = TCIMValue::MakeUnsigned(kCIMTypeUint8, 1);
  for (int level = 0; level < kDeep; ++level) {
    TCIMValue outer;
    outer.Set(TCIMType(kCIMTypeUint8), 0, {arrays});
    arrays = outer;
  }
  EXPECT_EQ(arrays.ToMOF(), std::string(kDeep, '{') + "1" + std::string(kDeep, '}'));
  EXPECT_EQ(arrays.ToString(), "1");
}

class NestingModelTest : public TModelTest {};

// An instance is a duplicate when its key values read the same in MOF: the
// registry compares them part by part, as long as the values are.
TEST_F(NestingModelTest, RegistryKeysCompareAsTheirMofReads) {
  auto link = Class("Link");
  Property(*link, "K", TCIMValue(), true); // untyped: takes any value
  link->Commit();
  auto datetime = TCIMValue(TCIMDateTime::Parse("20240101000000.000000+000", 25));
  // A string carrying an instance reads in MOF as the instance's MOF.
  const auto embedding = [&](const std::string &text) {
    auto inner = link->CreateInstance();
    inner->SetPropertyValue("K", TCIMValue(text));
    TCIMValue value(text);
    value.SetEmbeddedObject(inner);
    return value;
  };
  const auto mofOf = [](const TCIMValue &value) {
    return TCIMValue(value.GetEmbeddedInstance()->ToMOF());
  };
  const struct {
    TCIMValue first, second;
    bool duplicate;
  } cases[] = {
      {Nested(kDeep, TCIMValue("x")), Nested(kDeep, TCIMValue("x")), true},
      {Nested(kDeep, TCIMValue("x")), Nested(kDeep, TCIMValue("y")), false},
      {Nested(1, TCIMValue("x"), "C"), Nested(1, TCIMValue("x"), "c"), false},
      {Nested(1, TCIMValue("x"), "C", "k"), Nested(1, TCIMValue("x"), "C", "K"), false},
      {Nested(2, Uint32(1)), Nested(2, TCIMValue::MakeReal(kCIMTypeReal64, 1)), true},
      {Nested(1, TCIMValue("x")), Nested(1, TCIMValue::MakeUnsigned(kCIMTypeChar16, 'x')), true},
      {TCIMValue("20240101000000.000000+000"), datetime, true},
      {TCIMValue::MakeUnsigned(kCIMTypeUint8, 5), TCIMValue::MakeSigned(kCIMTypeSint64, 5), true},
      {TCIMValue("x"), TCIMValue::MakeUnsigned(kCIMTypeChar16, 'x'), false},
      // Texts that MOF escapes or writes as they are, ASCII or not.
      {TCIMValue("a\"b\\"), TCIMValue("a\"b\\"), true},
      {TCIMValue("caf\xC3\xA9"), TCIMValue("caf\xC3\xA9"), true},
      {TCIMValue("caf\xC3\xA9"), TCIMValue("cafe"), false},
      {embedding("x"), mofOf(embedding("x")), true},
      {embedding("caf\xC3\xA9"), mofOf(embedding("caf\xC3\xA9")), true},
      {embedding("x"), embedding("y"), false},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.first.GetType().GetName() + " " + c.second.GetType().GetName());
    auto first = link->CreateInstance();
    first->SetPropertyValue("K", c.first);
    first->Commit();
    auto second = link->CreateInstance();
    second->SetPropertyValue("K", c.second);
    EXPECT_EQ(StatusOf([&] { second->Commit(); }),
              c.duplicate ? kORVStatusAlreadyExists : kORVStatusOK);
    EXPECT_EQ(ns->GetInstance(first->GetPath()), first);
    for (const auto &instance : link->GetInstances())
      ns->DeleteInstance(instance->GetPath());
  }
}

TEST_F(NestingModelTest, LongChainsOfClassesAnswerInLoops) {
  auto root = Class("Root");
  Qualify(*root, "Association", TCIMValue(true));
  root->AddProperty("P", TCIMValue(Path("Target")));
  root->AddMethod("Run", TCIMType(kCIMTypeUint32));
  // Not committed: each class finds inherited members by asking upwards.
  boost::shared_ptr<ICIMClass> leaf = root;
  for (int level = 0; level < kDeep; ++level) {
    leaf = ns->CreateClass("C" + std::to_string(level), leaf);
    leaf->AddProperty("P", TCIMValue()); // untyped: shows the inherited type
  }
  EXPECT_TRUE(leaf->IsAssociation());
  EXPECT_TRUE(leaf->IsSubclassOf("root"));
  EXPECT_EQ(leaf->GetProperty("P")->GetType(), kCIMTypeReference);
  EXPECT_EQ(leaf->GetProperty("P")->GetReferenceClassName(), "Target");
  EXPECT_EQ(leaf->GetProperties().size(), 1u);
  EXPECT_TRUE(leaf->HasMethod("run"));
  EXPECT_EQ(leaf->GetMethods().size(), 1u);
}

// Each class shares its superclass's members instead of copying them, and
// releasing a chain (and the declarations each class overrides) loops rather
// than recurses, also when the caller keeps the last subclass, and an
// instance of it, after the namespace is gone: a committed chain 50,000
// deep, each class repeating the key without its KEY and adding a property
// and a method.
TEST_F(NestingModelTest, CommittedChainsShareTheirMembersAndAreReleasedInLoops) {
  constexpr int kChain = 50000;
  auto root = Class("Root");
  Property(*root, "Id", TCIMValue("r"), true);
  root->Commit();
  boost::shared_ptr<ICIMClass> leaf = root;
  for (int level = 0; level < kChain; ++level) {
    leaf = ns->CreateClass("C" + std::to_string(level), leaf);
    leaf->AddProperty("P" + std::to_string(level), Uint32(level));
    Property(*leaf, "ID", TCIMValue("C" + std::to_string(level)));
    leaf->AddMethod("M" + std::to_string(level), TCIMType(kCIMTypeUint32));
    leaf->Commit();
  }
  const auto properties = leaf->GetProperties();
  ASSERT_EQ(properties.size(), static_cast<std::size_t>(kChain + 1));
  EXPECT_EQ(properties[0]->GetValue(), TCIMValue("C49999")); // in the place it overrides
  EXPECT_TRUE(properties[0]->IsKey());
  EXPECT_EQ(properties[kChain]->GetName(), "P" + std::to_string(kChain - 1));
  EXPECT_EQ(leaf->GetMethods().size(), static_cast<std::size_t>(kChain));
  EXPECT_EQ(leaf->GetMethods()[7]->GetName(), "M7");
  EXPECT_EQ(root->GetProperties().size(), 1u);
  auto instance = leaf->CreateInstance();
  instance->SetPropertyValue("P9", Uint32(99));
  instance->SetPropertyValue("P3", Uint32(33));
  instance->Commit();
  EXPECT_EQ(instance->GetPropertyValue("p4"), Uint32(4));
  EXPECT_EQ(instance->GetPath().GetKeyValue("ID"), TCIMValue("C49999"));
  EXPECT_EQ(instance->ToMOF(), "instance of C49999 {\n    P3 = 33;\n    P9 = 99;\n};");
  // What the caller holds stays readable, but registers nothing any more.
  const boost::weak_ptr<ICIMClass> held = root;
  root.reset();
  instance = leaf->CreateInstance();
  ns.reset();
  EXPECT_FALSE(leaf->GetNamespace());
  EXPECT_TRUE(leaf->GetInstances().empty());
  EXPECT_EQ(StatusOf([&] { instance->Commit(); }), kORVStatusNamespaceGone);
  EXPECT_EQ(instance->GetPropertyValue("p4"), Uint32(4));
  instance.reset();
  leaf.reset();
  EXPECT_TRUE(held.expired());
}

TEST_F(NestingModelTest, LongListsOfKeysAndQualifiersKeepTheirOrder) {
  constexpr std::uint64_t kKeys = 100000;
  TCIMReference path;
  for (std::uint64_t i = 0; i < kKeys; ++i)
    path.AddKeyValue("K" + std::to_string(i), Uint32(i));
  path.AddKeyValue("k7", Uint32(70)); // replaced in place, in its first spelling
  ASSERT_EQ(path.GetKeyBindings().size(), kKeys);
  EXPECT_EQ(path.GetKeyBindings()[7].first, "K7");
  EXPECT_EQ(path.GetKeyValue("K7"), Uint32(70));
  EXPECT_EQ(TCIMReference(path).GetKeyValue("k99999"), Uint32(99999));
  EXPECT_TRUE(path.GetKeyValue("K100000").IsNull());

  constexpr int kQualifiers = 40000;
  auto base = Class("Base");
  auto property = base->AddProperty("P", TCIMValue("x"));
  for (int i = 0; i < kQualifiers; ++i) {
    const std::string name = "Q" + std::to_string(i);
    ns->CreateQualifierDecl(name, TCIMValue(false), D::kScopeProperty, D::kFlavorToSubclass);
    Qualify(*property, name, TCIMValue(true), D::kFlavorToSubclass);
  }
  Qualify(*property, "q5", TCIMValue(false), D::kFlavorToSubclass);
  base->Commit();
  auto derived = Class("Derived", "Base");
  derived->AddProperty("P", TCIMValue("y"));
  derived->Commit();
  const auto inherited = derived->GetProperty("P")->GetQualifiers();
  ASSERT_EQ(inherited.size(), static_cast<std::size_t>(kQualifiers));
  EXPECT_TRUE(inherited[kQualifiers - 1]->IsPropagated());
  EXPECT_EQ(inherited[kQualifiers - 1]->GetName(), "Q39999");
  EXPECT_EQ(inherited[5]->GetValue(), TCIMValue(false));
}

} // namespace
} // namespace orvtest
