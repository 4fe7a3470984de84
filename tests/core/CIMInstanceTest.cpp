#include "core_api/CIMReference.h"

#include "support/Fixtures.h"

namespace orvtest {
namespace {

class CIMInstanceTest : public TModelTest {
protected:
  /// Base { [Key] string Name; uint32 Count = 5 } and
  /// Device : Base { [Key] uint32 Slot; uint8 Data[4] }.
  CIMInstanceTest() {
    Property(*base, "Name", TCIMValue(TCIMType(kCIMTypeString), 0), true);
    Property(*base, "Count", Uint32(5));
    base->Commit();
    device = Class("Device", "Base");
    Property(*device, "Slot", TCIMValue(TCIMType(kCIMTypeUint32), 0), true);
    Property(*device, "Data", TCIMValue(TCIMType(kCIMTypeUint8).GetArrayType(), 4));
    device->Commit();
  }

  static boost::shared_ptr<ICIMInstance> Named(ICIMClass &cls, const std::string &name) {
    auto instance = cls.CreateInstance();
    instance->SetPropertyValue("name", TCIMValue(name));
    return instance;
  }

  boost::shared_ptr<ICIMInstance> Device(const std::string &name, std::uint64_t slot) {
    auto instance = Named(*device, name);
    instance->SetPropertyValue("SLOT", Uint32(slot));
    return instance;
  }

  boost::shared_ptr<ICIMClass> base = Class("Base"), device;
};

TEST_F(CIMInstanceTest, PropertiesStartAtTheirDefaultsAndAreChecked) {
  auto instance = device->CreateInstance();
  EXPECT_EQ(Names(instance->GetProperties()),
            (std::vector<std::string>{"Name", "Count", "Slot", "Data"}));
  EXPECT_EQ(instance->GetPropertyValue("count"), Uint32(5));
  EXPECT_TRUE(instance->GetPropertyValue("Name").IsNull());
  EXPECT_TRUE(device->GetInstances().empty()) << "only Commit registers";
  const auto set = [&](const char *name, const TCIMValue &value) {
    return StatusOf([&] { instance->SetPropertyValue(name, value); });
  };
  EXPECT_EQ(set("Count", Uint32(9)), kORVStatusOK);
  EXPECT_EQ(set("Missing", Uint32(9)), kORVStatusNoSuchProperty);
  EXPECT_EQ(set("Count", TCIMValue("9")), kORVStatusTypeMismatch);
  EXPECT_EQ(set("Count", TCIMValue::MakeUnsigned(kCIMTypeUint64, 9)), kORVStatusTypeMismatch);
  EXPECT_EQ(set("Data", TCIMValue::MakeUnsigned(kCIMTypeUint8, 1)), kORVStatusTypeMismatch);
  EXPECT_EQ(instance->GetPropertyValue("Count"), Uint32(9));
  // The untyped null that a failed conversion leaves becomes a typed null.
  instance->SetPropertyValue("Count", TCIMValue());
  EXPECT_EQ(instance->GetPropertyValue("Count"), TCIMValue(TCIMType(kCIMTypeUint32), 0));
  // Those given a value, a null one too, in the class's order.
  EXPECT_EQ(Names(instance->GetProperties({{"ASSIGNED", TCIMValue(true)}})),
            (std::vector<std::string>{"Count"}));
  EXPECT_EQ(instance->GetPropertyDecl("data")->GetDeclaredType(),
            TCIMType(kCIMTypeUint8).GetArrayType());
  EXPECT_TRUE(instance->GetPropertyDecl("slot")->IsKey());
  EXPECT_EQ(StatusOf([&] { instance->GetPropertyDecl("Missing"); }), kORVStatusNoSuchProperty);
  EXPECT_EQ(StatusOf([&] { instance->GetPropertyValue("Missing"); }), kORVStatusNoSuchProperty);
}

// Commit registers an instance under its path, refusing a second one there,
// and lists it in the order of the commits, also among subclasses.
TEST_F(CIMInstanceTest, CommitRegistersInOrderByPathAndRefusesDuplicates) {
  auto first = Device("disk", 1), plain = Named(*base, "b1"), second = Device("disk", 2);
  for (const auto &instance : {plain, first, second})
    instance->Commit();
  using TList = std::vector<boost::shared_ptr<ICIMInstance>>;
  EXPECT_EQ(ns->GetInstances("base", false), TList{plain});
  EXPECT_EQ(ns->GetInstances("Base", true), (TList{plain, first, second}));
  EXPECT_EQ(ns->GetInstances("", false), (TList{plain, first, second}));
  EXPECT_EQ(device->GetInstances(), (TList{first, second}));
  EXPECT_EQ(StatusOf([&] { Device("disk", 1)->Commit(); }), kORVStatusAlreadyExists);
  EXPECT_EQ(StatusOf([&] { first->Commit(); }), kORVStatusAlreadyCommitted);
  EXPECT_EQ(StatusOf([&] { first->SetPropertyValue("Slot", Uint32(3)); }),
            kORVStatusAlreadyCommitted);
  first->SetPropertyValue("Count", Uint32(1)); // not a key

  // The keys in the order of their declarations; looked up by key names in
  // any case and order, and by a key value given as text.
  const TCIMReference path = first->GetPath();
  EXPECT_EQ(path.ToString(), "root/test:Device.Name=\"disk\",Slot=1");
  EXPECT_EQ(ns->GetInstance(path), first);
  EXPECT_EQ(ns->GetInstance(Path("DEVICE.slot=\"1\",NAME=\"disk\"")), first);
  // Another key value, key text that is no number, the superclass, an
  // unknown class.
  for (const char *other : {"Device.Name=\"disk\",Slot=7", "Device.Name=\"disk\",Slot=\"x\"",
                            "Base.Name=\"disk\"", "Nowhere"})
    EXPECT_EQ(StatusOf([&] { ns->GetInstance(Path(other)); }), kORVStatusNoSuchInstance) << other;

  ns->DeleteInstance(path);
  EXPECT_EQ(StatusOf([&] { ns->GetInstance(path); }), kORVStatusNoSuchInstance);
  EXPECT_EQ(device->GetInstances(), TList{second});
  Device("disk", 1)->Commit(); // the path is free again
}

// Thousands of paths, a third of them deleted from the last one back: every
// other instance is still found by its path, and each freed path takes an
// instance again.
TEST_F(CIMInstanceTest, PathsStayFoundAcrossGrowthAndDeletions) {
  constexpr int kCount = 3000;
  const auto pathOf = [](int slot) {
    return Path("Device.Name=\"d\",Slot=" + std::to_string(slot));
  };
  for (int slot = 0; slot < kCount; ++slot)
    Device("d", static_cast<std::uint64_t>(slot))->Commit();
  for (int slot = kCount - 1; slot >= 0; --slot)
    if (slot % 3 == 1)
      ns->DeleteInstance(pathOf(slot));
  for (int slot = 0; slot < kCount; ++slot) {
    const bool deleted = slot % 3 == 1;
    ASSERT_EQ(StatusOf([&] { ns->GetInstance(pathOf(slot)); }),
              deleted ? kORVStatusNoSuchInstance : kORVStatusOK)
        << slot;
    ASSERT_EQ(StatusOf([&] { Device("d", static_cast<std::uint64_t>(slot))->Commit(); }),
              deleted ? kORVStatusOK : kORVStatusAlreadyExists)
        << slot;
  }
}

// A subclass that repeats the inherited key property without its KEY keys
// its instances by the key it inherits. Instances of a class without keys
// share their path; the class cannot be deleted while it has them.
TEST_F(CIMInstanceTest, PathsComeFromInheritedKeysOrAreSharedWithoutKeys) {
  auto flat = Class("Flat", "Base");
  Property(*flat, "Name", TCIMValue(TCIMType(kCIMTypeString), 0));
  auto early = Named(*flat, "x"); // made before the class is complete
  flat->Commit();
  early->Commit();
  EXPECT_EQ(StatusOf([&] { Named(*flat, "x")->Commit(); }), kORVStatusAlreadyExists);
  EXPECT_EQ(ns->GetInstance(Path("Flat.Name=\"x\"")), early);

  auto keyless = Class("Setting");
  Property(*keyless, "Value", Uint32(0));
  keyless->Commit();
  EXPECT_EQ(StatusOf([&] { ns->GetInstance(Path("Setting")); }), kORVStatusNoSuchInstance);
  auto first = keyless->CreateInstance(), second = keyless->CreateInstance();
  for (const auto &instance : {first, second})
    instance->Commit();
  EXPECT_EQ(second->GetPath(), first->GetPath());
  EXPECT_EQ(ns->GetInstance(Path("Setting")), first);
  EXPECT_EQ(keyless->GetInstances().size(), 2u);
  EXPECT_EQ(StatusOf([&] { ns->DeleteClass("Setting"); }), kORVStatusClassHasInstances);
}

// Instances of classes that the namespace does not define.
class CIMStandaloneInstanceTest : public TModelTest {
protected:
  boost::shared_ptr<ICIMInstance> instance = CreateStandaloneInstance("ORV_Remote", ns);
};

// Each property is declared by its first value; an untyped null declares
// no type, so the next value does. Names match in any case.
TEST_F(CIMStandaloneInstanceTest, FirstValueDeclaresTheType) {
  const TCIMType none(kCIMTypeNone), uint32(kCIMTypeUint32), string(kCIMTypeString);
  const struct {
    const char *name;
    TCIMValue value;
    EORVStatusCode status;
    TCIMType declared;
    TCIMValue after;
  } steps[] = {
      {"Count", Uint32(5), kORVStatusOK, uint32, Uint32(5)},
      {"COUNT", TCIMValue("5"), kORVStatusTypeMismatch, uint32, Uint32(5)},
      {"count", TCIMValue::MakeUnsigned(kCIMTypeUint64, 5), kORVStatusTypeMismatch, uint32,
       Uint32(5)},
      {"count", TCIMValue(), kORVStatusOK, uint32, TCIMValue(uint32, 0)},
      {"Later", TCIMValue(), kORVStatusOK, none, TCIMValue()},
      {"LATER", TCIMValue("x"), kORVStatusOK, string, TCIMValue("x")},
      {"later", Uint32(1), kORVStatusTypeMismatch, string, TCIMValue("x")},
  };
  for (const auto &step : steps) {
    SCOPED_TRACE(step.name);
    EXPECT_EQ(StatusOf([&] { instance->SetPropertyValue(step.name, step.value); }), step.status);
    EXPECT_EQ(instance->GetPropertyValue(step.name), step.after);
    EXPECT_EQ(instance->GetPropertyDecl(step.name)->GetDeclaredType(), step.declared);
  }
  EXPECT_EQ(Names(instance->GetProperties()), (std::vector<std::string>{"Count", "Later"}));
  EXPECT_EQ(StatusOf([&] { instance->SetPropertyValue("", Uint32(1)); }),
            kORVStatusInvalidArgument);
  EXPECT_EQ(StatusOf([] { CreateStandaloneInstance("", nullptr); }), kORVStatusInvalidArgument);
}

// The KEY option marks (or clears) keys, which make the path; without the
// option a mark stays. No class, so no commit and no declarations.
TEST_F(CIMStandaloneInstanceTest, KeysMakeThePathButNothingCommits) {
  const TCIMOptions key{{"KEY", TCIMValue(true)}}, notKey{{"KEY", TCIMValue(false)}};
  instance->SetPropertyValue("Slot", Uint32(2), key);
  instance->SetPropertyValue("Name", TCIMValue("disk"));
  instance->SetPropertyValue("Id", TCIMValue("d1"), key);
  instance->SetPropertyValue("Note", TCIMValue());
  instance->SetPropertyValue("NAME", TCIMValue("disk"), key);
  instance->SetPropertyValue("ID", TCIMValue("d1"), notKey);
  instance->SetPropertyValue("SLOT", Uint32(3));
  EXPECT_EQ(instance->GetPath().ToString(), "root/test:ORV_Remote.Slot=3,Name=\"disk\"");
  std::vector<bool> keys;
  for (const auto &property : instance->GetProperties())
    keys.push_back(property->IsKey());
  EXPECT_EQ(keys, (std::vector<bool>{true, true, false, false}));
  EXPECT_EQ(instance->GetPropertyDecl("note")->GetPropertyDecl(), nullptr);
  EXPECT_EQ(instance->ToMOF(), "instance of ORV_Remote {\n    Slot = 3;\n    Name = \"disk\";\n"
                               "    Id = \"d1\";\n    Note = NULL;\n};");

  EXPECT_EQ(instance->GetClass(), nullptr);
  EXPECT_EQ(StatusOf([&] { instance->Commit(); }), kORVStatusNotSupported);
  EXPECT_FALSE(instance->IsCommitted());
  EXPECT_TRUE(ns->GetInstances("", false).empty());
  EXPECT_FALSE(instance->HasProperty("Missing"));
  EXPECT_EQ(StatusOf([&] { instance->GetPropertyValue("Missing"); }), kORVStatusNoSuchProperty);
  EXPECT_EQ(StatusOf([&] { instance->GetPropertyDecl("Missing"); }), kORVStatusNoSuchProperty);
  EXPECT_EQ(instance->GetNamespace(), ns);
  ns.reset(); // held weakly
  EXPECT_EQ(instance->GetNamespace(), nullptr);
}

// Past the names that a scan finds, an index finds them in any case; a
// scan of them all would make this test run for minutes.
TEST_F(CIMStandaloneInstanceTest, ManyPropertiesAreFoundByName) {
  constexpr std::uint64_t kProperties = 100000;
  for (std::uint64_t i = 0; i < kProperties; ++i)
    instance->SetPropertyValue("P" + std::to_string(i), Uint32(i));
  for (std::uint64_t i = 0; i < kProperties; i += 997)
    instance->SetPropertyValue("p" + std::to_string(i), Uint32(i + 1));
  ASSERT_EQ(instance->GetProperties().size(), kProperties);
  for (std::uint64_t i = 0; i < 40; ++i)
    EXPECT_EQ(instance->GetPropertyValue("P" + std::to_string(i * 997)), Uint32(i * 997 + 1)) << i;
  EXPECT_EQ(instance->GetPropertyValue("P99999"), Uint32(99999));
  EXPECT_FALSE(instance->HasProperty("P100000"));
}

} // namespace
} // namespace orvtest
