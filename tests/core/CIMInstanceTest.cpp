#include "support/Fixtures.h"

namespace orvtest {
namespace {

class CIMInstanceTest : public TModelTest {
protected:
  /// Base { [Key] string Name; uint32 Count = 5 } and
  /// Device : Base { [Key] uint32 Slot; uint8 Data[4]; string Label = "none" }.
  CIMInstanceTest() {
    base = Class("Base");
    Property(*base, "Name", TCIMValue(TCIMType(kCIMTypeString), 0), true);
    Property(*base, "Count", Uint32(5));
    base->Commit();
    device = Class("Device", "Base");
    Property(*device, "Slot", TCIMValue(TCIMType(kCIMTypeUint32), 0), true);
    Property(*device, "Data", TCIMValue(TCIMType(kCIMTypeUint8).GetArrayType(), 4));
    Property(*device, "Label", TCIMValue("none"));
    device->Commit();
  }

  boost::shared_ptr<ICIMInstance> Device(const std::string &name, std::uint64_t slot) {
    auto instance = device->CreateInstance();
    instance->SetPropertyValue("name", TCIMValue(name));
    instance->SetPropertyValue("SLOT", Uint32(slot));
    return instance;
  }

  static TCIMReference Path(const std::string &className,
                            const std::vector<std::pair<std::string, TCIMValue>> &keys) {
    TCIMReference path;
    path.SetClassName(className);
    for (const auto &key : keys)
      path.AddKeyValue(key.first, key.second);
    return path;
  }

  boost::shared_ptr<ICIMClass> base;
  boost::shared_ptr<ICIMClass> device;
};

TEST_F(CIMInstanceTest, PropertiesStartAtTheirDefaultsAndAreChecked) {
  auto instance = device->CreateInstance();
  EXPECT_EQ(Names(instance->GetProperties()),
            (std::vector<std::string>{"Name", "Count", "Slot", "Data", "Label"}));
  EXPECT_EQ(instance->GetPropertyValue("count"), Uint32(5));
  EXPECT_TRUE(instance->GetPropertyValue("Name").IsNull());
  EXPECT_FALSE(instance->IsCommitted());
  EXPECT_TRUE(device->GetInstances().empty()) << "only Commit registers";
  const struct {
    const char *property;
    TCIMValue value;
    EORVStatusCode status;
  } cases[] = {{"Count", Uint32(9), kORVStatusOK},
               {"Missing", Uint32(9), kORVStatusNoSuchProperty},
               {"Count", TCIMValue("9"), kORVStatusTypeMismatch},
               {"Count", TCIMValue::MakeUnsigned(kCIMTypeUint64, 9), kORVStatusTypeMismatch},
               {"Data", TCIMValue::MakeUnsigned(kCIMTypeUint8, 1), kORVStatusTypeMismatch},
               {"Label", TCIMValue(), kORVStatusOK}};
  for (const auto &test : cases)
    EXPECT_EQ(StatusOf([&] { instance->SetPropertyValue(test.property, test.value); }), test.status)
        << test.property;
  EXPECT_EQ(instance->GetPropertyValue("Count"), Uint32(9));
  // The untyped null that a failed conversion leaves becomes a typed null.
  const TCIMValue label = instance->GetPropertyValue("Label");
  EXPECT_TRUE(label.IsNull());
  EXPECT_EQ(label.GetType(), kCIMTypeString);
  EXPECT_EQ(instance->GetPropertyDecl("data")->GetDeclaredType(),
            TCIMType(kCIMTypeUint8).GetArrayType());
  EXPECT_TRUE(instance->GetPropertyDecl("slot")->IsKey());
  EXPECT_EQ(StatusOf([&] { instance->GetPropertyDecl("Missing"); }), kORVStatusNoSuchProperty);
  EXPECT_EQ(StatusOf([&] { instance->GetPropertyValue("Missing"); }), kORVStatusNoSuchProperty);
}

TEST_F(CIMInstanceTest, CommitRegistersByPathAndRefusesDuplicates) {
  auto first = Device("disk", 1);
  first->Commit();
  Device("disk", 2)->Commit();
  EXPECT_EQ(StatusOf([&] { Device("disk", 1)->Commit(); }), kORVStatusAlreadyExists);
  EXPECT_EQ(StatusOf([&] { first->Commit(); }), kORVStatusAlreadyCommitted);
  EXPECT_EQ(StatusOf([&] { first->SetPropertyValue("Slot", Uint32(3)); }),
            kORVStatusAlreadyCommitted);
  first->SetPropertyValue("Label", TCIMValue("changed")); // not a key

  const TCIMReference path = first->GetPath();
  ASSERT_EQ(path.GetKeyBindings().size(), 2u);
  EXPECT_EQ(path.GetKeyBindings()[0].first, "Name");
  EXPECT_EQ(path.GetKeyBindings()[1].first, "Slot");
  EXPECT_EQ(path.GetClassName(), "Device");
  EXPECT_EQ(ns->GetInstance(path), first);

  // Key names in any case and order; a key value given as text.
  EXPECT_EQ(
      ns->GetInstance(Path("DEVICE", {{"slot", TCIMValue("1")}, {"NAME", TCIMValue("disk")}})),
      first);
  // Another key value, key text that is no number, the superclass, an
  // unknown class.
  for (const TCIMReference &other :
       {Path("Device", {{"Name", TCIMValue("disk")}, {"Slot", Uint32(7)}}),
        Path("Device", {{"Name", TCIMValue("disk")}, {"Slot", TCIMValue("x")}}),
        Path("Base", {{"Name", TCIMValue("disk")}}), Path("Nowhere", {})})
    EXPECT_EQ(StatusOf([&] { ns->GetInstance(other); }), kORVStatusNoSuchInstance);

  ns->DeleteInstance(path);
  EXPECT_EQ(StatusOf([&] { ns->GetInstance(path); }), kORVStatusNoSuchInstance);
  EXPECT_EQ(device->GetInstances().size(), 1u);
  Device("disk", 1)->Commit(); // the path is free again
}

TEST_F(CIMInstanceTest, InstancesListedInCommitOrderAcrossSubclasses) {
  auto b1 = base->CreateInstance();
  b1->SetPropertyValue("Name", TCIMValue("b1"));
  auto d1 = Device("d1", 1);
  auto b2 = base->CreateInstance();
  b2->SetPropertyValue("Name", TCIMValue("b2"));
  d1->Commit();
  b1->Commit();
  b2->Commit();
  using TList = std::vector<boost::shared_ptr<ICIMInstance>>;
  EXPECT_EQ(ns->GetInstances("base", false), (TList{b1, b2}));
  EXPECT_EQ(ns->GetInstances("Base", true), (TList{d1, b1, b2}));
  EXPECT_EQ(ns->GetInstances("", false), (TList{d1, b1, b2}));
  EXPECT_EQ(device->GetInstances(), TList{d1});
}

TEST_F(CIMInstanceTest, FlattenedSubclassInstancesAreKeyedByPropagatedKeys) {
  // A subclass that repeats the inherited key property without its KEY.
  auto flat = Class("Flat", "Base");
  Property(*flat, "Name", TCIMValue(TCIMType(kCIMTypeString), 0));
  auto early = flat->CreateInstance(); // made before the class is complete
  early->SetPropertyValue("Name", TCIMValue("x"));
  flat->Commit();
  early->Commit();
  auto again = flat->CreateInstance();
  again->SetPropertyValue("Name", TCIMValue("x"));
  EXPECT_EQ(StatusOf([&] { again->Commit(); }), kORVStatusAlreadyExists);
  EXPECT_EQ(ns->GetInstance(Path("Flat", {{"Name", TCIMValue("x")}})), early);
}

// Instances of a class without keys share their path; the class cannot be
// deleted while it has them.
TEST_F(CIMInstanceTest, KeylessInstancesShareTheirPath) {
  auto keyless = Class("Setting");
  Property(*keyless, "Value", Uint32(0));
  keyless->Commit();
  auto first = keyless->CreateInstance();
  first->Commit();
  keyless->CreateInstance()->Commit();
  EXPECT_EQ(keyless->GetInstances().size(), 2u);
  EXPECT_TRUE(first->GetPath().GetKeyBindings().empty());
  EXPECT_EQ(ns->GetInstance(first->GetPath()), first);
  EXPECT_EQ(StatusOf([&] { ns->DeleteClass("Setting"); }), kORVStatusClassHasInstances);
}

} // namespace
} // namespace orvtest
