// The bundled example documents load cleanly, the instances after the
// schema, and hold what the README promises.
#include "cimxml/CIMXMLParser.h"
#include "core_api/ORVStatusCode.h"
#include "populate/NamespacePopulator.h"
#include "support/CapturingLogger.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace orvtest {
namespace {

using NVRNORV20::TNamespacePopulator;

TEST(ExampleDocumentsTest, SchemaThenInstancesLoadWithoutAMessage) {
  TCapturingLogger logger;
  auto ns = NVRNORV20::CreateCIMNamespace("root/example");
  const std::string directory = ORV_EXAMPLES_DIR;
  auto classes = TNamespacePopulator::PopulateFromXMLFile(ns, directory + "/schema.xml");
  auto instances = TNamespacePopulator::PopulateFromRegXMLFile(ns, directory + "/instances.xml");
  EXPECT_TRUE(logger.entries.empty()) << logger.entries.front().second;

  std::vector<std::string> names;
  for (const auto &cls : classes)
    names.push_back(cls->GetName());
  EXPECT_EQ(names, (std::vector<std::string>{"ORV_ManagedElement", "ORV_System", "ORV_Job",
                                             "ORV_LogicalDevice", "ORV_Disk", "ORV_SystemDevice"}));
  EXPECT_EQ(ns->GetQualifierDecls().size(), 10u);
  auto disk = ns->GetClass("ORV_Disk");
  EXPECT_EQ(disk->GetKeyProperties().size(), 2u);
  EXPECT_EQ(disk->GetMethod("Format")->GetParameters().size(), 3u);
  EXPECT_TRUE(ns->GetClass("ORV_SystemDevice")->IsAssociation());

  ASSERT_EQ(instances.size(), 5u);
  EXPECT_EQ(ns->GetInstances("ORV_Disk", false).size(), 2u);
  auto link = instances.back();
  EXPECT_EQ(link->GetPropertyValue("PartComponent").GetReference().GetClassName(), "ORV_Disk");
  EXPECT_EQ(instances[1]->GetPropertyValue("Partitions").GetElements().size(), 3u);
}

std::string ReadExample(const std::string &name) {
  std::ifstream stream(std::string(ORV_EXAMPLES_DIR) + "/" + name, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

/// Parses the first `length` bytes into ns; true when the parse ended by an
/// exception rather than at the end of the text.
bool ParsePrefix(const boost::shared_ptr<NVRNORV20::ICIMNamespace> &ns, const std::string &text,
                 std::size_t length) {
  std::vector<char> buffer(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length));
  buffer.push_back('\0');
  NVRNORV20::TCIMXMLParser parser(ns);
  try {
    parser.Parse(buffer.data());
  } catch (const NVRNORV20::TORVException &) {
    return true;
  }
  return false;
}

// A cut document leaves elements open, objects half made and states whose
// objects failed: every cut must end in a result or a TORVException, which
// the sanitizers of the test build watch.
TEST(ExampleDocumentsTest, EveryPrefixEndsInAResultOrAnException) {
  TCapturingLogger logger;
  const std::string schema = ReadExample("schema.xml");
  const std::string instances = ReadExample("instances.xml");
  ASSERT_FALSE(schema.empty());
  std::size_t ended = 0;
  for (std::size_t length = 0; length < schema.size(); ++length)
    ended += ParsePrefix(NVRNORV20::CreateCIMNamespace("root/cut"), schema, length) ? 1 : 0;
  // Instances go into one namespace that holds the schema, so later cuts
  // also meet instances that earlier ones committed.
  auto ns = NVRNORV20::CreateCIMNamespace("root/cut");
  ASSERT_FALSE(ParsePrefix(ns, schema, schema.size()));
  for (std::size_t length = 0; length < instances.size(); ++length)
    ended += ParsePrefix(ns, instances, length) ? 1 : 0;
  // Only a cut inside the trailing whitespace leaves a complete document.
  EXPECT_GT(ended, schema.size() + instances.size() - 8);
  logger.entries.clear();
}

} // namespace
} // namespace orvtest
