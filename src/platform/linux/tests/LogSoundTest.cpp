#include "platform/linux/LogSound.h"

#include "platform/fake/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(LogSound, writesALineInPlaceOfASound) {
  RecordingLog log;
  LogSound sound(log);
  sound.beep();
  sound.beep();
  EXPECT_THAT(log.lines(), testing::ElementsAre("Pelmora: beep.", "Pelmora: beep."));
}

}  // namespace pelmora::platform
