// Namespace, host, class and instance paths, read by the real states under a
// probe parent that keeps what they write.
#include "cimxml/ProbeState.h"
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using PathStatesTest = TParserFixture;

std::string Local(const std::string &namespaces) {
  return "<LOCALNAMESPACEPATH>" + namespaces + "</LOCALNAMESPACEPATH>";
}

// What the probe holds afterwards: "host|namespace|class|reference".
TEST_F(PathStatesTest, PathsFillTheirTargets) {
  Reset({Objects({"<CLASS NAME=\"T\"/>"})});
  const std::string local = Local("<NAMESPACE NAME=\"n\"/>");
  const std::string remote = "<NAMESPACEPATH><HOST>h</HOST>" + local + "</NAMESPACEPATH>";
  const struct {
    std::string xml;
    const char *fields;
    std::vector<std::string> log = {};
  } cases[] = {
      // Components join without a separator; one without a name repeats the
      // one before it; letter case and other attributes do not matter.
      {Local("<NAMESPACE NAME=\"a\"/><NAMESPACE/><namespace Name=\"B\" x=\"1\"/>"), "|aaB||"},
      {Local(""),
       "|||",
       {Err("Unexpected at least 1 NAMESPACE element"), Ended(kORVStatusInvalidDocument)}},
      // The host loses trailing whitespace only, never its first character.
      {"<NAMESPACEPATH>text<HOST> my host\t\r\n</HOST>" + local + "</NAMESPACEPATH>",
       " my host|n||"},
      {"<NAMESPACEPATH><HOST>\n \n</HOST>" + local + "</NAMESPACEPATH>", "\n|n||"},
      {"<CLASSPATH>" + remote + "<CLASSNAME NAME=\"C1\"/></CLASSPATH>", "h|n|C1|"},
      {"<LOCALCLASSPATH>" + local + "<CLASSNAME NAME=\"C2\"/></LOCALCLASSPATH>", "|n|C2|"},
      {"<INSTANCEPATH>" + remote + "<INSTANCENAME CLASSNAME=\"T\"/></INSTANCEPATH>", "h|n||T"},
      // A third child of a namespace path is a corrupt state; of the other
      // paths an unexpected element.
      {"<NAMESPACEPATH><HOST>h</HOST>" + local + "<HOST/></NAMESPACEPATH>",
       "h|n||",
       {Err("Parser state corrupt")}},
      {"<LOCALINSTANCEPATH>" + local + "<CLASSNAME/></LOCALINSTANCEPATH>",
       "|n||",
       {Err("Unexpected element classname")}},
      {"<CLASSNAME NAME=\"C\"><NAMESPACE/></CLASSNAME>",
       "||C|",
       {Err("Unexpected element namespace")}},
      // Neither a host nor a namespace looks at children: the child's end tag
      // ends them, so the host keeps the text before the child, and the
      // local path, after its namespace path closed, goes to the probe.
      {"<NAMESPACEPATH><HOST>h1<X/>h2</HOST>" + local + "</NAMESPACEPATH>", "h1|n||"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.xml);
    logger.entries.clear();
    auto probe = TProbeState::Run(ns, c.xml);
    EXPECT_EQ(Log(), c.log);
    EXPECT_EQ(probe->host + "|" + probe->namespacePath + "|" + probe->className + "|" +
                  probe->reference.GetClassName(),
              c.fields);
  }
}

} // namespace
} // namespace orvtest
