// Instance names, key bindings and reference values, read by the real states
// under a probe parent, against classes of a small schema; and the limits on
// reference values.
#include "cimxml/ProbeState.h"
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using ReferenceStatesTest = TParserFixture;

const std::string kKey = "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>";

const std::string kDisk = "<INSTANCENAME CLASSNAME=\"T_Disk\"><KEYBINDING NAME=\"Name\">"
                          "<KEYVALUE>d1</KEYVALUE></KEYBINDING></INSTANCENAME>";

std::string Local(const std::string &ns) {
  return "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"" + ns + "\"/></LOCALNAMESPACEPATH>";
}

std::string Binding(const std::string &name, const std::string &value) {
  return "<KEYBINDING NAME=\"" + name + "\">" + value + "</KEYBINDING>";
}

std::string Reference(const std::string &content) {
  return "<VALUE.REFERENCE>" + content + "</VALUE.REFERENCE>";
}

std::string Named(const std::string &cls, const std::string &content) {
  return "<INSTANCENAME CLASSNAME=\"" + cls + "\">" + content + "</INSTANCENAME>";
}

// Each document, with the path it leaves in the probe's value (for a
// VALUE.REFERENCE) or reference (for an INSTANCENAME).
TEST_F(ReferenceStatesTest, ReferencesAndInstanceNames) {
  // T_Pair's first property carries a false Key, so its first key is Id.
  Reset({Objects(
      {"<CLASS NAME=\"T_Disk\"><PROPERTY NAME=\"Name\" TYPE=\"string\">" + kKey +
           "</PROPERTY><PROPERTY NAME=\"Size\" TYPE=\"uint64\"/></CLASS>",
       "<CLASS NAME=\"T_Pair\"><PROPERTY NAME=\"Note\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
       "TYPE=\"boolean\"><VALUE>false</VALUE></QUALIFIER></PROPERTY><PROPERTY NAME=\"Id\" "
       "TYPE=\"uint16\">" +
           kKey + "</PROPERTY><PROPERTY NAME=\"Label\" TYPE=\"string\">" + kKey +
           "</PROPERTY></CLASS>",
       "<CLASS NAME=\"T_NoKeys\"/>", "<CLASS NAME=\"T_SubDisk\" SUPERCLASS=\"T_Disk\"/>",
       "<CLASS NAME=\"T_Link\"><PROPERTY.REFERENCE NAME=\"Disk\" REFERENCECLASS=\"T_Disk\">" +
           kKey + "</PROPERTY.REFERENCE><PROPERTY NAME=\"Weight\" TYPE=\"real64\">" + kKey +
           "</PROPERTY></CLASS>"})});
  const std::string remote = "<NAMESPACEPATH><HOST>h</HOST>" + Local("other") + "</NAMESPACEPATH>";
  const std::string invalid = Ended(kORVStatusInvalidDocument);
  const struct {
    std::string xml;
    const char *path;
    std::vector<std::string> log = {};
  } cases[] = {
      // Only the bare class and instance names take the document's namespace.
      {Reference("<CLASSPATH>" + remote + "<CLASSNAME NAME=\"T_Disk\"/></CLASSPATH>"), "T_Disk"},
      {Reference("<LOCALCLASSPATH>" + Local("o") + "<CLASSNAME NAME=\"T_Disk\"/></LOCALCLASSPATH>"),
       "T_Disk"},
      {Reference("<INSTANCEPATH>" + remote + kDisk + "</INSTANCEPATH>"), "T_Disk.Name=\"d1\""},
      {Reference(""), ""},
      // An instance name keeps its class over one given before it; a class
      // name after an instance path renames it, keys kept.
      {Reference("<CLASSNAME NAME=\"T_Pair\"/>" + kDisk), "root/test:T_Disk.Name=\"d1\""},
      {Reference("<LOCALINSTANCEPATH>" + Local("o") + kDisk +
                 "</LOCALINSTANCEPATH><CLASSNAME NAME=\"T_Pair\"/>"),
       "root/test:T_Pair.Name=\"d1\""},
      // The refused value's end tag ends the reference, still without a class.
      {Reference("<VALUE>x</VALUE><CLASSNAME NAME=\"T_Disk\"/>"),
       "",
       {Err("Unexpected element value")}},
      // Bindings in document order; the last key value of a binding counts.
      {Named("T_Pair", Binding("Label", "<KEYVALUE>x</KEYVALUE>") +
                           Binding("Id", "<KEYVALUE>a</KEYVALUE><KEYVALUE>7</KEYVALUE>")),
       "T_Pair.Label=\"x\",Id=7"},
      // One bare key value binds the first key property in class order.
      {Named("T_SubDisk", "<KEYVALUE VALUETYPE=\"numeric\"> d1\n</KEYVALUE>"),
       "T_SubDisk.Name=\" d1\n\""},
      // One reference replaces everything, the class name included.
      {Named("T_Pair", Reference(kDisk)), "root/test:T_Disk.Name=\"d1\""},
      // Keys are typed from the class, not the document, and keep the
      // document's spelling; text that the type cannot read is a null key; a
      // reference wins over text.
      {Named("t_pair", Binding("id", "<KEYVALUE VALUETYPE=\"string\" TYPE=\"string\">0x10"
                                     "</KEYVALUE>") +
                           Binding("Label", "<KEYVALUE VALUETYPE=\"numeric\">12</KEYVALUE>")),
       "t_pair.id=16,Label=\"12\""},
      {Named("T_Link", Binding("Weight", "<KEYVALUE>x</KEYVALUE>") +
                           Binding("Disk", "<KEYVALUE>x</KEYVALUE>" + Reference(kDisk))),
       "T_Link.Weight=,Disk=\"root/test:T_Disk.Name=\\\"d1\\\"\""},
      // No mixture: the refused child's end tag ends the instance name, which
      // still binds what it has.
      {Named("T_Pair", "<KEYVALUE>7</KEYVALUE>" + Binding("Label", "")),
       "T_Pair.Id=7",
       {Err("Unexpected element keybinding")}},
      {Named("T_Pair", Binding("Id", "<KEYVALUE>3</KEYVALUE><CLASSNAME/>")),
       "T_Pair.Id=3",
       {Err("Unexpected element classname")}},
      // The bare value names the class as the attribute writes it, a binding
      // of a non-key property as the class spells itself.
      {Named("t_nokeys", "<KEYVALUE>x</KEYVALUE>"),
       "t_nokeys",
       {Err("Class t_nokeys doesn't have any key properties"), invalid}},
      {Named("t_disk", Binding("Size", "<KEYVALUE>1</KEYVALUE>")),
       "t_disk",
       {Err("Class T_Disk doesn't have any key properties"), invalid}},
      // A property the class lacks, and a class the namespace lacks, fail in
      // the object model when the key is bound.
      {Named("T_Disk", Binding("Nope", "<KEYVALUE>1</KEYVALUE>")),
       "T_Disk",
       {Ended(kORVStatusNoSuchProperty)}},
      {Named("T_None", "<KEYVALUE>1</KEYVALUE>"), "T_None", {Ended(kORVStatusNullObject)}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.xml);
    logger.entries.clear();
    auto probe = TProbeState::Run(ns, c.xml);
    EXPECT_EQ(Log(), c.log);
    if (c.xml.rfind("<VALUE.REFERENCE>", 0) == 0) {
      EXPECT_EQ(probe->value.GetType(), kCIMTypeReference);
      EXPECT_EQ(probe->value.GetReference().ToString(), c.path);
    } else {
      EXPECT_EQ(probe->reference.ToString(), c.path);
    }
  }
}

/// R { [Key] R REF Ref; [Key] string S; }
const std::string kR = "<CLASS NAME=\"R\"><PROPERTY.REFERENCE NAME=\"Ref\" REFERENCECLASS=\"R\">" +
                       kKey + "</PROPERTY.REFERENCE><PROPERTY NAME=\"S\" TYPE=\"string\">" + kKey +
                       "</PROPERTY></CLASS>";

/// depth references of R, each the key Ref of the one around it; the
/// innermost has the key S.
std::string Nested(std::size_t depth, const std::string &text) {
  std::string open, close;
  for (std::size_t level = 1; level < depth; ++level) {
    open += "<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"R\"><KEYBINDING NAME=\"Ref\">";
    close += "</KEYBINDING></INSTANCENAME></VALUE.REFERENCE>";
  }
  return open + Reference(Named("R", Binding("S", "<KEYVALUE>" + text + "</KEYVALUE>"))) + close;
}

std::string Instance(const std::string &reference, const std::string &key) {
  return "<INSTANCE CLASSNAME=\"R\"><PROPERTY.REFERENCE NAME=\"Ref\">\n" + reference +
         "</PROPERTY.REFERENCE><PROPERTY NAME=\"S\" TYPE=\"string\"><VALUE>" + key +
         "</VALUE></PROPERTY></INSTANCE>";
}

/// How many references the value holds, one inside another.
std::size_t Levels(TCIMValue value) {
  std::size_t levels = 0;
  for (; value.GetType() == kCIMTypeReference && !value.IsNull(); ++levels)
    value = value.GetReference().GetKeyValue("Ref");
  return levels;
}

// Reference values nested deeper than the parser takes them, or too long as
// text: each is refused with its line, and the rest of the document is read.
TEST_F(ReferenceStatesTest, RefusedReferencesLeaveNullAndTheRestIsRead) {
  const std::string tooDeep = Err("Reference nested more than 16 deep", 2);
  const struct {
    std::size_t depth;
    std::string text;
    std::vector<std::string> log;
    std::size_t levels;
  } cases[] = {
      {16, "x", {}, 16},
      {17, "x", {tooDeep}, 16},
      {100000, "x", {tooDeep}, 16},
      // Backslashes double per level: the sixth reference from the top
      // would be longer than 1 MiB.
      {16,
       std::string(1000, '\\'),
       {Err("Reference longer than 1048576 bytes as text", 2), Ended(kORVStatusInvalidDocument, 2)},
       5},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.depth);
    Reset({Objects({kR})});
    const TResult result =
        Parse(Objects({Instance(Nested(c.depth, c.text), "a"), Instance(Nested(1, "y"), "b")}));
    EXPECT_EQ(Log(), c.log);
    ASSERT_EQ(result.instances.size(), 2u);
    EXPECT_EQ(Levels(result.instances[0]->GetPropertyValue("Ref")), c.levels);
    EXPECT_EQ(Levels(result.instances[1]->GetPropertyValue("Ref")), 1u);
  }
}

} // namespace
} // namespace orvtest
