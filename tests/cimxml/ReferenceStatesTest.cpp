// Instance names, key bindings and reference values, read by the real
// states under a probe parent, against classes loaded from a small schema.
#include "cimxml/ParserFixture.h"
#include "cimxml/ProbeState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvtest {
namespace {

using NVRNORV20::ECIMType;
using NVRNORV20::TCIMValue;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

const char kKey[] = "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>";

// T_Pair's first property carries a false KEY, so its first key is Id.
const std::string kSchema = InDeclGroup(
    "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\"><SCOPE PROPERTY=\"true\" "
    "REFERENCE=\"true\"/><VALUE>false</VALUE></QUALIFIER.DECLARATION>"
    "<VALUE.OBJECT><CLASS NAME=\"T_Disk\"><PROPERTY NAME=\"Name\" TYPE=\"string\">" +
    std::string(kKey) +
    "</PROPERTY><PROPERTY NAME=\"Size\" TYPE=\"uint64\"/></CLASS></VALUE.OBJECT>"
    "<VALUE.OBJECT><CLASS NAME=\"T_Pair\"><PROPERTY NAME=\"Note\" TYPE=\"string\"><QUALIFIER "
    "NAME=\"Key\" TYPE=\"boolean\"><VALUE>false</VALUE></QUALIFIER></PROPERTY>"
    "<PROPERTY NAME=\"Id\" TYPE=\"uint16\">" +
    kKey + "</PROPERTY><PROPERTY NAME=\"Label\" TYPE=\"string\">" + kKey +
    "</PROPERTY></CLASS></VALUE.OBJECT>"
    "<VALUE.OBJECT><CLASS NAME=\"T_NoKeys\"><PROPERTY NAME=\"Text\" "
    "TYPE=\"string\"/></CLASS></VALUE.OBJECT>"
    "<VALUE.OBJECT><CLASS NAME=\"T_SubDisk\" SUPERCLASS=\"T_Disk\"><PROPERTY NAME=\"Extra\" "
    "TYPE=\"sint8\"/></CLASS></VALUE.OBJECT>"
    "<VALUE.OBJECT><CLASS NAME=\"T_Link\"><PROPERTY.REFERENCE NAME=\"Disk\" "
    "REFERENCECLASS=\"T_Disk\">" +
    kKey + "</PROPERTY.REFERENCE><PROPERTY NAME=\"Weight\" TYPE=\"real64\">" + kKey +
    "</PROPERTY></CLASS></VALUE.OBJECT>");

const std::string kDiskName = "<INSTANCENAME CLASSNAME=\"T_Disk\"><KEYBINDING NAME=\"Name\">"
                              "<KEYVALUE>d1</KEYVALUE></KEYBINDING></INSTANCENAME>";

std::string Remote(const std::string &ns) {
  return "<NAMESPACEPATH><HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"" + ns +
         "\"/></LOCALNAMESPACEPATH></NAMESPACEPATH>";
}

std::string Local(const std::string &ns) {
  return "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"" + ns + "\"/></LOCALNAMESPACEPATH>";
}

class ReferenceStatesTest : public TParserFixture {
protected:
  void SetUp() override { ASSERT_FALSE(Load(kSchema).aborted); }
  boost::shared_ptr<TProbeState> Run(const std::string &xml) { return TProbeState::Run(ns, xml); }
};

TEST_F(ReferenceStatesTest, ReferenceOfEveryPathForm) {
  struct TCase {
    std::string children;
    /// Namespace, class and keys; only the bare class and instance names
    /// take the document's namespace.
    const char *path;
  };
  const TCase cases[] = {
      {"<CLASSPATH>" + Remote("other") + "<CLASSNAME NAME=\"T_Disk\"/></CLASSPATH>", "T_Disk"},
      {"<LOCALCLASSPATH>" + Local("other") + "<CLASSNAME NAME=\"T_Disk\"/></LOCALCLASSPATH>",
       "T_Disk"},
      {"<CLASSNAME NAME=\"T_Disk\"/>", "root/test:T_Disk"},
      {"<INSTANCEPATH>" + Remote("other") + kDiskName + "</INSTANCEPATH>", "T_Disk.Name=\"d1\""},
      {"<LOCALINSTANCEPATH>" + Local("other") + kDiskName + "</LOCALINSTANCEPATH>",
       "T_Disk.Name=\"d1\""},
      {kDiskName, "root/test:T_Disk.Name=\"d1\""},
      {"", ""},
      // An instance name keeps its class name over one given before it; a
      // class name given after an instance path renames it, keys kept.
      {"<CLASSNAME NAME=\"T_Pair\"/>" + kDiskName, "root/test:T_Disk.Name=\"d1\""},
      {"<LOCALINSTANCEPATH>" + Local("other") + kDiskName +
           "</LOCALINSTANCEPATH><CLASSNAME NAME=\"T_Pair\"/>",
       "root/test:T_Pair.Name=\"d1\""},
  };
  for (const TCase &testCase : cases) {
    SCOPED_TRACE(testCase.children);
    logger.entries.clear();
    auto probe = Run("<VALUE.REFERENCE>" + testCase.children + "</VALUE.REFERENCE>");
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_EQ(static_cast<ECIMType>(probe->value.GetType()), NVRNORV20::kCIMTypeReference);
    ASSERT_FALSE(probe->value.IsNull());
    EXPECT_EQ(probe->value.GetReference().ToString(), testCase.path);
  }
}

TEST_F(ReferenceStatesTest, NamespaceOfABareNameIsTheParsersOwn) {
  auto probe = Run("<VALUE.REFERENCE>" + kDiskName + "</VALUE.REFERENCE>");
  EXPECT_EQ(probe->value.GetReference().GetNamespace(), ns);
  probe = Run("<VALUE.REFERENCE><LOCALINSTANCEPATH>" + Local("root/test") + kDiskName +
              "</LOCALINSTANCEPATH></VALUE.REFERENCE>");
  EXPECT_FALSE(probe->value.GetReference().GetNamespace());
}

TEST_F(ReferenceStatesTest, InstanceNamesOfTheThreeKinds) {
  struct TCase {
    std::string xml;
    const char *path;
  };
  const TCase cases[] = {
      // Key bindings, in document order.
      {"<INSTANCENAME CLASSNAME=\"T_Pair\"><KEYBINDING NAME=\"Label\"><KEYVALUE>x</KEYVALUE>"
       "</KEYBINDING><KEYBINDING NAME=\"Id\"><KEYVALUE>7</KEYVALUE></KEYBINDING></INSTANCENAME>",
       "T_Pair.Label=\"x\",Id=7"},
      // One bare key value binds the first key property in class order.
      {"<INSTANCENAME CLASSNAME=\"T_Pair\"><KEYVALUE>7</KEYVALUE></INSTANCENAME>", "T_Pair.Id=7"},
      {"<INSTANCENAME CLASSNAME=\"T_SubDisk\"><KEYVALUE VALUETYPE=\"numeric\"> d1\n</KEYVALUE>"
       "</INSTANCENAME>",
       "T_SubDisk.Name=\" d1\n\""},
      // One reference replaces everything, the class name included.
      {"<INSTANCENAME CLASSNAME=\"T_Pair\"><VALUE.REFERENCE>" + kDiskName +
           "</VALUE.REFERENCE></INSTANCENAME>",
       "root/test:T_Disk.Name=\"d1\""},
      {"<INSTANCENAME CLASSNAME=\"T_Pair\"/>", "T_Pair"},
      {"<INSTANCENAME/>", ""},
      // The last key value of a binding counts; a reference wins over text.
      {"<INSTANCENAME CLASSNAME=\"T_Disk\"><KEYBINDING NAME=\"Name\"><KEYVALUE>a</KEYVALUE>"
       "<KEYVALUE>b</KEYVALUE></KEYBINDING></INSTANCENAME>",
       "T_Disk.Name=\"b\""},
      // Text that the key's type cannot read becomes a null key.
      {"<INSTANCENAME CLASSNAME=\"T_Pair\"><KEYBINDING NAME=\"Id\"><KEYVALUE>seven</KEYVALUE>"
       "</KEYBINDING></INSTANCENAME>",
       "T_Pair.Id="},
  };
  for (const TCase &testCase : cases) {
    SCOPED_TRACE(testCase.xml);
    logger.entries.clear();
    auto probe = Run(testCase.xml);
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_EQ(probe->reference.ToString(), testCase.path);
  }
}

TEST_F(ReferenceStatesTest, KeysAreTypedFromTheClassNotTheDocument) {
  auto probe = Run("<INSTANCENAME CLASSNAME=\"t_pair\"><KEYBINDING NAME=\"id\">"
                   "<KEYVALUE VALUETYPE=\"string\" TYPE=\"string\">0x10</KEYVALUE></KEYBINDING>"
                   "<KEYBINDING NAME=\"Label\"><KEYVALUE VALUETYPE=\"numeric\">12</KEYVALUE>"
                   "</KEYBINDING></INSTANCENAME>");
  EXPECT_THAT(Log(), IsEmpty());
  EXPECT_EQ(probe->reference.GetClassName(), "t_pair");
  EXPECT_EQ(probe->reference.GetKeyValue("Id"),
            TCIMValue::MakeUnsigned(NVRNORV20::kCIMTypeUint16, 16));
  EXPECT_EQ(probe->reference.GetKeyValue("Label"), TCIMValue(std::string("12")));

  probe = Run("<INSTANCENAME CLASSNAME=\"T_Link\"><KEYBINDING NAME=\"Weight\"><KEYVALUE>"
              "2.5</KEYVALUE></KEYBINDING><KEYBINDING NAME=\"Disk\"><KEYVALUE>ignored</KEYVALUE>"
              "<VALUE.REFERENCE>" +
              kDiskName + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>");
  EXPECT_THAT(Log(), IsEmpty());
  EXPECT_EQ(probe->reference.GetKeyValue("Weight"),
            TCIMValue::MakeReal(NVRNORV20::kCIMTypeReal64, 2.5));
  TCIMValue disk = probe->reference.GetKeyValue("Disk");
  ASSERT_EQ(static_cast<ECIMType>(disk.GetType()), NVRNORV20::kCIMTypeReference);
  EXPECT_EQ(disk.GetReference().ToString(), "root/test:T_Disk.Name=\"d1\"");
}

TEST_F(ReferenceStatesTest, ErrorsAndWhereTheParseGoesOn) {
  const std::string noKeys = "Class t_nokeys doesn't have any key properties";
  struct TCase {
    std::string xml;
    std::vector<std::string> log;
    const char *path;
  };
  const TCase cases[] = {
      // No mixture: the refused binding's end tag then ends the instance
      // name, which still binds its key value.
      {"<INSTANCENAME CLASSNAME=\"T_Pair\"><KEYVALUE>7</KEYVALUE><KEYBINDING NAME=\"Label\"/>"
       "</INSTANCENAME>",
       {ParserError(1, "Unexpected element keybinding")},
       "T_Pair.Id=7"},
      {"<INSTANCENAME CLASSNAME=\"T_Pair\"><KEYBINDING NAME=\"Id\"><KEYVALUE>1</KEYVALUE>"
       "</KEYBINDING><KEYVALUE>2</KEYVALUE></INSTANCENAME>",
       {ParserError(1, "Unexpected element keyvalue")},
       "T_Pair.Id=1"},
      // The bare value names the class as the attribute writes it ...
      {"<INSTANCENAME CLASSNAME=\"t_nokeys\"><KEYVALUE>x</KEYVALUE></INSTANCENAME>",
       {ParserError(1, noKeys), EndElementError(1, NVRNORV20::kORVStatusInvalidDocument)},
       "t_nokeys"},
      // ... a binding of a non-key property as the class spells itself.
      {"<INSTANCENAME CLASSNAME=\"t_disk\"><KEYBINDING NAME=\"Size\"><KEYVALUE>1</KEYVALUE>"
       "</KEYBINDING><KEYBINDING NAME=\"Name\"><KEYVALUE>d</KEYVALUE></KEYBINDING>"
       "</INSTANCENAME>",
       {ParserError(1, "Class T_Disk doesn't have any key properties"),
        EndElementError(1, NVRNORV20::kORVStatusInvalidDocument)},
       "t_disk.Name=\"d\""},
      // A property the class lacks, and a class the namespace lacks, fail
      // in the object model when the key is bound.
      {"<INSTANCENAME CLASSNAME=\"T_Disk\"><KEYBINDING NAME=\"Nope\"><KEYVALUE>1</KEYVALUE>"
       "</KEYBINDING></INSTANCENAME>",
       {EndElementError(1, NVRNORV20::kORVStatusNoSuchProperty)},
       "T_Disk"},
      {"<INSTANCENAME CLASSNAME=\"T_None\"><KEYBINDING NAME=\"Name\"><KEYVALUE>1</KEYVALUE>"
       "</KEYBINDING></INSTANCENAME>",
       {EndElementError(1, NVRNORV20::kORVStatusNullObject)},
       "T_None"},
      {"<INSTANCENAME CLASSNAME=\"T_None\"><KEYVALUE>1</KEYVALUE></INSTANCENAME>",
       {EndElementError(1, NVRNORV20::kORVStatusNullObject)},
       "T_None"},
      {"<INSTANCENAME><KEYBINDING NAME=\"Name\"><KEYVALUE>1</KEYVALUE></KEYBINDING>"
       "</INSTANCENAME>",
       {EndElementError(1, NVRNORV20::kORVStatusNullObject)},
       ""},
      // The refused child's end tag ends the binding, which binds what it
      // has; the binding's own end tag then ends the instance name.
      {"<INSTANCENAME CLASSNAME=\"T_Pair\"><KEYBINDING NAME=\"Id\"><KEYVALUE>3</KEYVALUE>"
       "<CLASSNAME/></KEYBINDING></INSTANCENAME>",
       {ParserError(1, "Unexpected element classname")},
       "T_Pair.Id=3"},
  };
  for (const TCase &testCase : cases) {
    SCOPED_TRACE(testCase.xml);
    logger.entries.clear();
    auto probe = Run(testCase.xml);
    EXPECT_THAT(Log(), ElementsAreArray(testCase.log));
    EXPECT_EQ(probe->reference.ToString(), testCase.path);
  }
}

TEST_F(ReferenceStatesTest, ValueReferenceRefusesOtherChildren) {
  auto probe = Run("<VALUE.REFERENCE><VALUE>x</VALUE><CLASSNAME NAME=\"T_Disk\"/>"
                   "</VALUE.REFERENCE>");
  // The refused value's end tag ends the reference, still without a class.
  EXPECT_THAT(Log(), ElementsAre(ParserError(1, "Unexpected element value")));
  EXPECT_EQ(probe->value.GetReference().ToString(), "");
  EXPECT_EQ(probe->className, "T_Disk");
}

TEST_F(ReferenceStatesTest, ReferencesAndPathsInADocument) {
  const std::string disk = "<INSTANCE CLASSNAME=\"T_Disk\"><PROPERTY NAME=\"Name\" "
                           "TYPE=\"string\"><VALUE>d1</VALUE></PROPERTY></INSTANCE>";
  const std::string link = "<INSTANCE CLASSNAME=\"T_Link\"><PROPERTY.REFERENCE NAME=\"Disk\">"
                           "<VALUE.REFERENCE>" +
                           kDiskName +
                           "</VALUE.REFERENCE></PROPERTY.REFERENCE><PROPERTY NAME=\"Weight\" "
                           "TYPE=\"real64\"><VALUE>1</VALUE></PROPERTY></INSTANCE>";
  TParseResult result = Parse(
      "<CIM><DECLARATION><DECLGROUP><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
      "</LOCALNAMESPACEPATH><VALUE.OBJECT>" +
      disk + "</VALUE.OBJECT></DECLGROUP><DECLGROUP.WITHNAME>" + Remote("root") +
      "<VALUE.NAMEDOBJECT><INSTANCENAME CLASSNAME=\"T_Link\"/>" + link +
      "</VALUE.NAMEDOBJECT><VALUE.NAMEDOBJECT><CLASS NAME=\"T_Ref\"><PROPERTY.REFERENCE "
      "NAME=\"Default\" REFERENCECLASS=\"T_Disk\"><VALUE.REFERENCE>" +
      kDiskName +
      "</VALUE.REFERENCE></PROPERTY.REFERENCE></CLASS></VALUE.NAMEDOBJECT>"
      "</DECLGROUP.WITHNAME><DECLGROUP.WITHPATH><VALUE.OBJECTWITHLOCALPATH><LOCALINSTANCEPATH>" +
      Local("root") +
      "<INSTANCENAME CLASSNAME=\"T_Pair\"><KEYVALUE>4</KEYVALUE></INSTANCENAME>"
      "</LOCALINSTANCEPATH><INSTANCE CLASSNAME=\"T_Pair\"><PROPERTY NAME=\"Id\" "
      "TYPE=\"uint16\"><VALUE>4</VALUE></PROPERTY></INSTANCE></VALUE.OBJECTWITHLOCALPATH>"
      "<VALUE.OBJECTWITHPATH><CLASSPATH>" +
      Remote("root") +
      "<CLASSNAME NAME=\"T_Path\"/></CLASSPATH><CLASS NAME=\"T_Path\"/></VALUE.OBJECTWITHPATH>"
      "</DECLGROUP.WITHPATH></DECLARATION></CIM>");
  EXPECT_THAT(Log(), IsEmpty());
  EXPECT_FALSE(result.aborted);
  ASSERT_EQ(result.instances.size(), 3u);
  EXPECT_EQ(result.instances[0]->GetPath().ToString(), "root/test:T_Disk.Name=\"d1\"");
  TCIMValue target = result.instances[1]->GetPropertyValue("Disk");
  EXPECT_EQ(target.GetReference().ToString(), "root/test:T_Disk.Name=\"d1\"");
  EXPECT_EQ(result.instances[2]->GetPath().ToString(), "root/test:T_Pair.Id=4,Label=");
  ASSERT_EQ(result.classes.size(), 2u);
  EXPECT_EQ(result.classes[0]->GetProperty("Default")->GetValue().GetReference().ToString(),
            "root/test:T_Disk.Name=\"d1\"");
  EXPECT_EQ(result.classes[1]->GetName(), "T_Path");
}

} // namespace
} // namespace orvtest
