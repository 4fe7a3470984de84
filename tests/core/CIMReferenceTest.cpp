#include "core_api/CIMReference.h"

#include "support/Fixtures.h"

namespace orvtest {
namespace {

TCIMReference ParseText(const std::string &text, boost::shared_ptr<ICIMNamespace> ns = nullptr) {
  return TCIMReference::Parse(text.data(), text.size(), std::move(ns));
}

TEST(CIMReferenceTest, PathTextRoundTrips) {
  const char *const kPaths[] = {
      "CIM_Disk",
      "root/cimv2:CIM_Disk",
      "root/cimv2:CIM_Disk.DeviceID=\"C:\",SystemName=\"host.example\"",
      "CIM_Disk.Quoted=\"say \\\"hi\\\" \\\\o/\"",
      "CIM_Disk.Count=42,Delta=-7,Ratio=0.25,Enabled=true",
      "CIM_Disk.Comma=\"a,b=c\"",
      "CIM_Disk.Unset=",
  };
  for (const char *text : kPaths) {
    SCOPED_TRACE(text);
    const TCIMReference path = ParseText(text);
    EXPECT_EQ(path.ToString(), text);
    EXPECT_EQ(ParseText(path.ToString()), path);
  }
}

TEST(CIMReferenceTest, BadPathsThrowInvalidValueText) {
  for (const char *text :
       {"", ":CIM_Disk", "root:", "CIM_Disk.", "CIM Disk", "CIM_Disk.Id", "CIM_Disk.=1",
        "CIM_Disk.Id=\"open", "CIM_Disk.Id=\"a\"b", "CIM_Disk.Id=1,", "CIM_Disk.Id=word",
        "CIM_Disk.Id=1 2", "CIM_Disk.Id=99999999999999999999999"})
    EXPECT_EQ(StatusOf([&] { ParseText(text); }), kORVStatusInvalidValueText) << text;
}

TEST(CIMReferenceTest, KeyValuesGetTheirTypesFromTheText) {
  const TCIMReference path = ParseText(" CIM_Disk.S=\"12\",U=12,I=-12,R=1e3,B=FALSE,H=0x10 ");
  const std::pair<const char *, TCIMValue> kKeys[] = {
      {"s", TCIMValue("12")},
      {"U", TCIMValue::MakeUnsigned(kCIMTypeUint64, 12)},
      {"i", TCIMValue::MakeSigned(kCIMTypeSint64, -12)},
      {"R", TCIMValue::MakeReal(kCIMTypeReal64, 1000)},
      {"b", TCIMValue(false)},
      {"h", TCIMValue::MakeUnsigned(kCIMTypeUint64, 16)}};
  ASSERT_EQ(path.GetKeyBindings().size(), std::size(kKeys));
  for (const auto &row : kKeys)
    EXPECT_EQ(path.GetKeyValue(row.first), row.second) << row.first;
  EXPECT_TRUE(path.GetKeyValue("Missing").IsNull());
}

TEST(CIMReferenceTest, KeyNamesIgnoreLetterCase) {
  TCIMReference path;
  path.SetClassName("CIM_Disk");
  path.AddKeyValue("Name", TCIMValue("a"));
  path.AddKeyValue("Id", TCIMValue("b"));
  path.AddKeyValue("NAME", TCIMValue("c"));
  // Replaced in place: the binding order stays.
  ASSERT_EQ(path.GetKeyBindings().size(), 2u);
  EXPECT_EQ(path.GetKeyBindings()[0].first, "Name");
  EXPECT_EQ(path.ToString(), "CIM_Disk.Name=\"c\",Id=\"b\"");

  TCIMReference same;
  same.SetClassName("cim_disk");
  same.AddKeyValue("name", TCIMValue("c"));
  same.AddKeyValue("ID", TCIMValue("b"));
  EXPECT_EQ(path, same);

  // Order and values count.
  EXPECT_NE(path, ParseText("CIM_Disk.Id=\"b\",Name=\"c\""));
  TCIMReference otherValue = same;
  otherValue.AddKeyValue("id", TCIMValue("B"));
  EXPECT_NE(path, otherValue);
}

TEST(CIMReferenceTest, NamespaceIsHeldWeaklyAndItsNameKept) {
  auto ns = CreateCIMNamespace("root/cimv2");
  TCIMReference path(ns, {{"Id", TCIMValue("1")}});
  path.SetClassName("CIM_Disk");
  EXPECT_EQ(path.GetNamespace(), ns);
  EXPECT_EQ(path.ToString(), "root/cimv2:CIM_Disk.Id=\"1\"");
  ns.reset();
  EXPECT_FALSE(path.GetNamespace());
  EXPECT_EQ(path.GetNamespaceName(), "root/cimv2");
  path.SetNamespace(nullptr);
  EXPECT_EQ(path.ToString(), "CIM_Disk.Id=\"1\"");
}

TEST(CIMReferenceTest, ParseAttachesOnlyAMatchingNamespace) {
  auto ns = CreateCIMNamespace("root/cimv2");
  EXPECT_EQ(ParseText("CIM_Disk", ns).GetNamespace(), ns);
  EXPECT_EQ(ParseText("ROOT/CIMV2:CIM_Disk", ns).GetNamespace(), ns);
  const TCIMReference elsewhere = ParseText("root/other:CIM_Disk", ns);
  EXPECT_FALSE(elsewhere.GetNamespace());
  EXPECT_EQ(elsewhere.GetNamespaceName(), "root/other");
}

} // namespace
} // namespace orvtest
