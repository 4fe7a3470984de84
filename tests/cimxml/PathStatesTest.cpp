// Namespace, host, class and instance paths, read by the real states under
// a probe parent that keeps what they write.
#include "cimxml/ParserFixture.h"
#include "cimxml/ProbeState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvtest {
namespace {

using NVRNORV20::kORVStatusInvalidDocument;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class PathStatesTest : public TParserFixture {
protected:
  boost::shared_ptr<TProbeState> Run(const std::string &xml) { return TProbeState::Run(ns, xml); }
};

std::string Local(const std::string &namespaces) {
  return "<LOCALNAMESPACEPATH>" + namespaces + "</LOCALNAMESPACEPATH>";
}

TEST_F(PathStatesTest, LocalNamespacePathJoinsComponentsWithoutSeparator) {
  struct TCase {
    const char *xml;
    const char *path;
  };
  const TCase cases[] = {
      {"<NAMESPACE NAME=\"interop\"/>", "interop"},
      {"<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/>", "rootcimv2"},
      {"<NAMESPACE NAME=\"a\"/><NAMESPACE NAME=\"b\"/><NAMESPACE NAME=\"c\"/>", "abc"},
      // A component without a name repeats the one before it.
      {"<NAMESPACE NAME=\"a\"/><NAMESPACE/><NAMESPACE NAME=\"b\"/>", "aab"},
      {"<NAMESPACE/><NAMESPACE NAME=\"x\"/>", "x"},
      {"<NAMESPACE NAME=\"\"/><NAMESPACE NAME=\"x\"/>", "x"},
      // Letter case and attributes other than NAME do not matter.
      {"<namespace Name=\"Root\" other=\"1\"/>", "Root"},
  };
  for (const TCase &testCase : cases) {
    SCOPED_TRACE(testCase.xml);
    logger.entries.clear();
    auto probe = Run(Local(testCase.xml));
    EXPECT_EQ(probe->namespacePath, testCase.path);
    EXPECT_THAT(Log(), IsEmpty());
  }
}

TEST_F(PathStatesTest, LocalNamespacePathAppendsToItsTarget) {
  // Two paths into the same target: the state never clears it.
  auto probe =
      Run("<X>" + Local("<NAMESPACE NAME=\"a\"/>") + Local("<NAMESPACE NAME=\"b\"/>") + "</X>");
  EXPECT_THAT(Log(), ElementsAre(ParserError(1, "Unexpected element x")));
  EXPECT_EQ(probe->namespacePath, "ab");
}

TEST_F(PathStatesTest, LocalNamespacePathWithoutNamespaceIsReportedAtItsEnd) {
  auto probe = Run(Local(""));
  EXPECT_THAT(Log(), ElementsAre(ParserError(1, "Unexpected at least 1 NAMESPACE element"),
                                 EndElementError(1, kORVStatusInvalidDocument)));
  EXPECT_EQ(probe->namespacePath, "");
}

TEST_F(PathStatesTest, HostTextLosesTrailingWhitespaceOnly) {
  struct TCase {
    const char *text;
    const char *host;
  };
  const TCase cases[] = {
      {" myhost \r\n", " myhost"},
      {"myhost\t\t", "myhost"},
      {"my host", "my host"},
      // The first character stays, whitespace or not.
      {" ", " "},
      {"\n \n", "\n"},
      {"", ""},
      {"h&#32;", "h"},
  };
  for (const TCase &testCase : cases) {
    SCOPED_TRACE(testCase.text);
    logger.entries.clear();
    auto probe = Run(std::string("<NAMESPACEPATH>text before<HOST>") + testCase.text + "</HOST>" +
                     Local("<NAMESPACE NAME=\"root\"/>") + "</NAMESPACEPATH>");
    EXPECT_EQ(probe->host, testCase.host);
    EXPECT_EQ(probe->namespacePath, "root");
    EXPECT_THAT(Log(), IsEmpty());
  }
}

TEST_F(PathStatesTest, ClassAndInstancePathsFillTheirTargets) {
  ASSERT_FALSE(Load(InDeclGroup("<VALUE.OBJECT><CLASS NAME=\"T_Plain\"/></VALUE.OBJECT>")).aborted);
  const std::string namespacePath =
      "<NAMESPACEPATH><HOST>server</HOST>" + Local("<NAMESPACE NAME=\"ns\"/>") + "</NAMESPACEPATH>";
  const std::string instanceName = "<INSTANCENAME CLASSNAME=\"T_Plain\"/>";
  struct TCase {
    std::string xml;
    const char *host;
    const char *path;
    const char *className;
    const char *referenceClass;
  };
  const TCase cases[] = {
      {"<CLASSPATH>" + namespacePath + "<CLASSNAME NAME=\"C1\"/></CLASSPATH>", "server", "ns", "C1",
       ""},
      {"<LOCALCLASSPATH>" + Local("<NAMESPACE NAME=\"l\"/>") +
           "<CLASSNAME NAME=\"C2\"/></LOCALCLASSPATH>",
       "", "l", "C2", ""},
      {"<CLASSNAME NAME=\"C3\" OTHER=\"x\"/>", "", "", "C3", ""},
      {"<CLASSNAME/>", "", "", "", ""},
      {"<INSTANCEPATH>" + namespacePath + instanceName + "</INSTANCEPATH>", "server", "ns", "",
       "T_Plain"},
      {"<LOCALINSTANCEPATH>" + Local("<NAMESPACE NAME=\"l\"/>") + instanceName +
           "</LOCALINSTANCEPATH>",
       "", "l", "", "T_Plain"},
  };
  for (const TCase &testCase : cases) {
    SCOPED_TRACE(testCase.xml);
    logger.entries.clear();
    auto probe = Run(testCase.xml);
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_EQ(probe->host, testCase.host);
    EXPECT_EQ(probe->namespacePath, testCase.path);
    EXPECT_EQ(probe->className, testCase.className);
    EXPECT_EQ(probe->reference.GetClassName(), testCase.referenceClass);
    EXPECT_TRUE(probe->reference.GetKeyBindings().empty());
  }
}

TEST_F(PathStatesTest, ChildrenOutOfOrderAreReported) {
  const std::string local = Local("<NAMESPACE NAME=\"n\"/>");
  const std::string remote = "<NAMESPACEPATH><HOST>h</HOST>" + local + "</NAMESPACEPATH>";
  struct TCase {
    std::string xml;
    std::vector<std::string> log;
  };
  const TCase cases[] = {
      // The host is missing; the local path is then refused.
      {"<NAMESPACEPATH>" + local + "</NAMESPACEPATH>",
       {ParserError(1, "Unexpected element localnamespacepath"),
        ParserError(1, "Unexpected element namespace")}},
      // A third child of a namespace path is a corrupt state; of the class
      // and instance paths an unexpected element.
      {"<NAMESPACEPATH><HOST>h</HOST>" + local + "<HOST/></NAMESPACEPATH>",
       {ParserError(1, "Parser state corrupt")}},
      {"<CLASSPATH>" + remote + "<CLASSNAME NAME=\"C\"/><CLASSNAME/></CLASSPATH>",
       {ParserError(1, "Unexpected element classname")}},
      {"<LOCALCLASSPATH>" + local + "<CLASSNAME NAME=\"C\"/><CLASSNAME/></LOCALCLASSPATH>",
       {ParserError(1, "Unexpected element classname")}},
      {"<CLASSPATH><CLASSNAME NAME=\"C\"/></CLASSPATH>",
       {ParserError(1, "Unexpected element classname")}},
      {"<LOCALCLASSPATH>" + remote + "</LOCALCLASSPATH>",
       {ParserError(1, "Unexpected element namespacepath"),
        ParserError(1, "Unexpected element host")}},
      {"<INSTANCEPATH>" + remote + "<INSTANCENAME/><KEYBINDING/></INSTANCEPATH>",
       {ParserError(1, "Unexpected element keybinding")}},
      {"<LOCALINSTANCEPATH>" + local + "<CLASSNAME/></LOCALINSTANCEPATH>",
       {ParserError(1, "Unexpected element classname")}},
      {"<CLASSNAME NAME=\"C\"><NAMESPACE/></CLASSNAME>",
       {ParserError(1, "Unexpected element namespace")}},
      {Local("<NAMESPACE NAME=\"a\"/><HOST/>"), {ParserError(1, "Unexpected element host")}},
  };
  for (const TCase &testCase : cases) {
    SCOPED_TRACE(testCase.xml);
    logger.entries.clear();
    Run(testCase.xml);
    EXPECT_THAT(Log(), ElementsAreArray(testCase.log));
  }
}

TEST_F(PathStatesTest, ParseGoesOnAfterARefusedChild) {
  // The refused "x" has no state: its end tag ends the local path at once,
  // which keeps "a"; "b" then arrives at the probe and is refused there.
  auto probe = Run(Local("<NAMESPACE NAME=\"a\"/><X/><NAMESPACE NAME=\"b\"/>"));
  EXPECT_THAT(Log(), ElementsAre(ParserError(1, "Unexpected element x"),
                                 ParserError(1, "Unexpected element namespace")));
  EXPECT_EQ(probe->namespacePath, "a");
}

TEST_F(PathStatesTest, ChildOfNamespaceOrHostEndsItEarly) {
  // Neither state looks at children: the child's end tag runs their end
  // handler, so the enclosing element's end tag closes the parent instead.
  // Here the host keeps the text before the child, and the local path,
  // arriving after the namespace path has been closed, goes to the probe.
  auto probe = Run("<NAMESPACEPATH><HOST>h1<X/>h2</HOST>" + Local("<NAMESPACE NAME=\"n\"/>") +
                   "</NAMESPACEPATH>");
  EXPECT_EQ(probe->host, "h1");
  EXPECT_EQ(probe->namespacePath, "n");
  EXPECT_THAT(Log(), IsEmpty());

  probe = Run(Local("<NAMESPACE NAME=\"a\"><X/></NAMESPACE>"));
  EXPECT_EQ(probe->namespacePath, "a");
  EXPECT_THAT(Log(), IsEmpty());
}

} // namespace
} // namespace orvtest
