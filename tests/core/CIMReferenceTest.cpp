#include "core_api/CIMReference.h"

#include "support/Fixtures.h"

namespace orvtest {
namespace {

TEST(CIMReferenceTest, PathTextRoundTripsAndBadTextIsRefused) {
  for (const char *text :
       {"CIM_Disk", "root/cimv2:CIM_Disk",
        "root/cimv2:CIM_Disk.DeviceID=\"C:\",SystemName=\"host.example\"",
        "CIM_Disk.Quoted=\"say \\\"hi\\\" \\\\o/\"",
        "CIM_Disk.Count=42,Delta=-7,Ratio=0.25,Enabled=true", "CIM_Disk.Comma=\"a,b=c\"",
        "CIM_Disk.Unset=", "//srv.example:5989/root/cimv2:CIM_Disk.Id=1", "//srv/CIM_Disk"}) {
    SCOPED_TRACE(text);
    const TCIMReference path = Path(text);
    EXPECT_EQ(path.ToString(), text);
    EXPECT_EQ(Path(path.ToString()), path);
  }
  for (const char *text :
       {"", ":CIM_Disk", "root:", "CIM_Disk.", "CIM Disk", "CIM_Disk.Id", "CIM_Disk.=1",
        "CIM_Disk.Id=\"open", "CIM_Disk.Id=\"a\"b", "CIM_Disk.Id=1,", "CIM_Disk.Id=word",
        "CIM_Disk.Id=1 2", "CIM_Disk.Id=99999999999999999999999", "//srv", "///CIM_Disk"})
    EXPECT_EQ(StatusOf([&] { Path(text); }), kORVStatusInvalidValueText) << text;
}

// Quoted text is a string, a number without a point or an exponent a 64-bit
// integer, other numbers real64, the two words booleans. Key names are found
// in any case, and a key added again replaces the value in its place.
TEST(CIMReferenceTest, KeyValuesGetTheirTypesFromTheTextAndNamesIgnoreCase) {
  const TCIMReference path = Path(" CIM_Disk.S=\"1\",U=1,I=-1,R=1e3,B=FALSE,H=0x10 ");
  std::string keys;
  for (const auto &key : path.GetKeyBindings())
    keys += key.first + ":" + key.second.GetType().GetName() + "=" + key.second.ToString() + ",";
  EXPECT_EQ(keys, "S:string=1,U:uint64=1,I:sint64=-1,R:real64=1000,B:boolean=false,H:uint64=16,");
  EXPECT_EQ(path.GetKeyValue("i"), TCIMValue::MakeSigned(kCIMTypeSint64, -1));
  EXPECT_TRUE(path.GetKeyValue("Missing").IsNull());

  TCIMReference named = Path("CIM_Disk.Name=\"a\",Id=\"b\"");
  named.AddKeyValue("NAME", TCIMValue("c"));
  EXPECT_EQ(named.ToString(), "CIM_Disk.Name=\"c\",Id=\"b\"");
  EXPECT_EQ(named, Path("cim_disk.name=\"c\",ID=\"b\""));
  // Order and values count.
  EXPECT_NE(named, Path("CIM_Disk.Id=\"b\",Name=\"c\""));
  EXPECT_NE(named, Path("CIM_Disk.Name=\"c\",Id=\"B\""));
  EXPECT_EQ(Path("//SRV/CIM_Disk"), Path("//srv/CIM_Disk"));
  EXPECT_NE(Path("//srv/CIM_Disk"), Path("CIM_Disk"));
}

// A path holds its namespace weakly; a parsed one gets the given namespace
// only when it names no other.
TEST(CIMReferenceTest, NamespaceIsHeldWeaklyAndAttachedOnlyWhenItsNameMatches) {
  auto ns = CreateCIMNamespace("root/cimv2");
  TCIMReference path(ns, {{"Id", TCIMValue("1")}});
  path.SetClassName("CIM_Disk");
  EXPECT_EQ(path.ToString(), "root/cimv2:CIM_Disk.Id=\"1\"");
  EXPECT_EQ(Path("CIM_Disk", ns).GetNamespace(), ns);
  EXPECT_EQ(Path("ROOT/CIMV2:CIM_Disk", ns).GetNamespace(), ns);
  EXPECT_FALSE(Path("root/other:CIM_Disk", ns).GetNamespace());
  ns.reset();
  EXPECT_FALSE(path.GetNamespace());
  EXPECT_EQ(path.GetNamespaceName(), "root/cimv2");
  path.SetNamespace(nullptr);
  EXPECT_EQ(path.ToString(), "CIM_Disk.Id=\"1\"");
}

} // namespace
} // namespace orvtest
