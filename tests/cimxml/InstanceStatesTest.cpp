// Instances and the value objects that commit and collect classes and
// instances.
#include "core_api/OSSpecific.h"
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using InstanceStatesTest = TParserFixture;

const char kPlain[] =
    "<CLASS NAME=\"Plain\"><PROPERTY NAME=\"n\" TYPE=\"uint8\"/><PROPERTY NAME=\"s\" "
    "TYPE=\"string\"><VALUE>default</VALUE></PROPERTY></CLASS>";

TEST_F(InstanceStatesTest, InstancesAndValueObjects) {
  const std::string plain = "<INSTANCE CLASSNAME=\"Plain\"/>";
  const std::string syntax = Err("CIM element syntax error");
  Check(
      {
          // Without its class, each property and the value object fail at
          // their end, and the next object loads.
          {Objects({"<INSTANCE CLASSNAME=\"Nope\"><PROPERTY NAME=\"n\"/></INSTANCE>",
                    "<INSTANCE CLASSNAME=\"Plain\"><PROPERTY NAME=\"n\" TYPE=\"uint8\"><VALUE>1"
                    "</VALUE></PROPERTY></INSTANCE>"}),
           "instance of Plain { n = 1; };",
           {Ended(kORVStatusNullObject), Ended(kORVStatusNullObject)},
           "| Plain"},
          {Objects({"<INSTANCE CLASSNAME=\"Plain\"><PROPERTY NAME=\"n\" TYPE=\"uint8\"/>"
                    "<QUALIFIER NAME=\"Description\"/></INSTANCE>"}),
           "instance of Plain { n = NULL; };",
           {Err("Unexpected element qualifier")}},
          // Kept as it is: a qualifier before the properties enters no state,
          // so its end tag ends the instance, and a property after it reaches
          // the value object; the end tags left over then empty the stack.
          {Objects({"<INSTANCE CLASSNAME=\"Plain\"><QUALIFIER NAME=\"Description\"/><PROPERTY "
                    "NAME=\"n\" TYPE=\"uint8\"/></INSTANCE>"}),
           "instance of Plain { };",
           {Err("Unexpected element property"), "(aborted)"}},
          // Value objects need their children, in order.
          {InDeclGroup("<VALUE.OBJECT></VALUE.OBJECT>"),
           "",
           {syntax, Ended(kORVStatusInvalidDocument)}},
          {InDeclGroup("<VALUE.OBJECT><CLASS NAME=\"A\"/>" + plain + "</VALUE.OBJECT>"),
           "class A { };",
           {Err("Unexpected element instance")},
           "A |"},
          {"<CIM><DECLARATION><DECLGROUP.WITHPATH><VALUE.OBJECTWITHLOCALPATH>" + plain +
               "</VALUE.OBJECTWITHLOCALPATH></DECLGROUP.WITHPATH></DECLARATION></CIM>",
           "",
           {Err("Unexpected element instance"), syntax, Ended(kORVStatusInvalidDocument)}},
      },
      {Objects({kPlain})});
}

TEST_F(InstanceStatesTest, OnlyTheComputerSystemClassSwitchesTheParserMode) {
  TOSSpecific::setORVParser(false);
  Reset({Objects({kPlain, "<CLASS NAME=\"VRNSG_ComputerSystem\"/>"})});
  Parse(Objects(
      {"<INSTANCE CLASSNAME=\"Plain\"/>", "<INSTANCE CLASSNAME=\"vrnsg_computersystem\"/>"}));
  EXPECT_FALSE(TOSSpecific::getORVParser());
  Parse(Objects({"<INSTANCE CLASSNAME=\"VRNSG_ComputerSystem\"/>"}));
  EXPECT_TRUE(TOSSpecific::getORVParser());
  TOSSpecific::setORVParser(false);
}

} // namespace
} // namespace orvtest
