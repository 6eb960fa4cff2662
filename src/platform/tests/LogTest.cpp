#include "platform/fake/RecordingLog.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(Log, formatsAsPrintfDoes) {
  RecordingLog log;
  log.print("Pelmora: %s has %d files", "/p", 3);
  EXPECT_EQ(log.count("Pelmora: /p has 3 files"), 1U);
}

TEST(Log, writesLinesOfAnyLength) {
  RecordingLog log;
  const std::string path(100'000, 'x');
  log.print("%s", path.c_str());
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_EQ(log.lines().front(), path);
}

}  // namespace pelmora::platform
