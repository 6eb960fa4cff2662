#include "platform/fake/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace pelmora::platform {

TEST(RecordingLog, keepsEveryLineUntilItIsCleared) {
  RecordingLog log;
  log.write("one");
  log.write("two one");
  log.write("one");
  EXPECT_THAT(log.lines(), testing::ElementsAre("one", "two one", "one"));
  EXPECT_EQ(log.count("one"), 2U);
  EXPECT_EQ(log.countContaining("one"), 3U);
  EXPECT_EQ(log.count("tw"), 0U);
  log.clear();
  EXPECT_TRUE(log.lines().empty());
}

TEST(RecordingLog, takesLinesFromSeveralThreads) {
  RecordingLog log;
  std::thread other([&log] {
    for (int i = 0; i < 100; ++i) log.write("other");
  });
  for (int i = 0; i < 100; ++i) log.write("own");
  other.join();
  EXPECT_EQ(log.count("other"), 100U);
  EXPECT_EQ(log.count("own"), 100U);
}

}  // namespace pelmora::platform
