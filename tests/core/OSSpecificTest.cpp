#include "core_api/OSSpecific.h"

#include "core_api/ORVStatusCode.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

using namespace NVRNORV20;

namespace {

TEST(OSSpecificTest, FileSizeOfAFileAndOfAMissingOne) {
  const std::string path = testing::TempDir() + "orv_os_specific_size.bin";
  std::FILE *file = std::fopen(path.c_str(), "wb");
  ASSERT_NE(file, nullptr);
  const std::string bytes(12345, '\0');
  ASSERT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
  std::fclose(file);
  EXPECT_EQ(TOSSpecific::GetFileSize(path), 12345u);
  std::remove(path.c_str());
  try {
    TOSSpecific::GetFileSize(path);
    ADD_FAILURE() << "a removed file has a size";
  } catch (const TORVException &ex) {
    EXPECT_EQ(ex.GetStatusCode(), kORVStatusFileAccess);
  }
}

TEST(OSSpecificTest, ParserSwitchReadsBackWhatWasSet) {
  const bool before = TOSSpecific::getORVParser();
  TOSSpecific::setORVParser(true);
  EXPECT_TRUE(TOSSpecific::getORVParser());
  TOSSpecific::setORVParser(false);
  EXPECT_FALSE(TOSSpecific::getORVParser());
  TOSSpecific::setORVParser(before);
}

} // namespace
