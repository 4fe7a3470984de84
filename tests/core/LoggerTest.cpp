#include "core_api/Logger.h"

#include "support/CapturingLogger.h"

#include <gtest/gtest.h>

#include <string>

using namespace NVRNORV20;

namespace {

TEST(LoggerTest, InstalledLoggerReceivesAndNullRestoresTheDefault) {
  ILogger *const defaultLogger = TRootObject::GetCoreLogger();
  ASSERT_NE(defaultLogger, nullptr);
  {
    orvtest::TCapturingLogger capture;
    EXPECT_EQ(TRootObject::GetCoreLogger(), &capture);
    TRootObject::GetCoreLogger()->Log(3, "first");
    TRootObject::GetCoreLogger()->Log(0, "second");
    ASSERT_EQ(capture.entries.size(), 2u);
    EXPECT_EQ(capture.entries[0], std::make_pair(3, std::string("first")));
    EXPECT_EQ(capture.entries[1], std::make_pair(0, std::string("second")));
  }
  EXPECT_EQ(TRootObject::GetCoreLogger(), defaultLogger);
}

TEST(LoggerTest, DefaultWritesLevelTextAndLineFeedToStandardError) {
  TRootObject::SetCoreLogger(nullptr);
  testing::internal::CaptureStderr();
  TRootObject::GetCoreLogger()->Log(3, "CIM-XML Parser line 7: broken");
  TRootObject::GetCoreLogger()->Log(0, "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "[3] CIM-XML Parser line 7: broken\n[0] \n");
}

} // namespace
