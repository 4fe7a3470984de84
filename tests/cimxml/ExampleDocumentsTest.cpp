// The bundled example documents load cleanly, the instances after the
// schema, and hold what the guide promises.
#include "populate/NamespacePopulator.h"
#include "support/CapturingLogger.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace orvtest
