#include "platform/linux/index/PatientInspector.h"

#include "platform/fake/RecordingLog.h"
#include "platform/SteppedTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace pelmora::platform {

namespace {

using metadata::FileMetadata;
using testing::ElementsAre;

class PatientInspectorTest : public testing::Test {
 protected:
  /// Asks for three files; gives back how many were answered.
  std::size_t inspect() {
    std::size_t answers = 0;
    const std::vector<FileDescriptor> files(3);
    inspector.inspect(files, [&](std::size_t, const auto&) { ++answers; });
    return answers;
  }
  void waitForIt() { clock.advanceTo(inspector.waitsUntil()); }
  double pause() { return inspector.waitsUntil() - clock.mediaTime(); }

  SteppedClock clock;
  RecordingLog log;
  std::size_t answered = 3;  // before the inspector is gone
  Result<FileMetadata> answer{FileMetadata()};
  int asked = 0;
  PatientInspector inspector{[this](std::span<const FileDescriptor> files,
                                    const PatientInspector::TakeNext& take) -> Status {
                               ++asked;
                               for (std::size_t i = 0; i < answered; ++i) {
                                 if (!take(i, answer)) return Done{};
                               }
                               if (answered < files.size()) return Error{"it is gone"};
                               return Done{};
                             },
                             clock, log, [this] { return isOver; }};
  bool isOver = false;
};

constexpr const char* kLine =
    "Pelmora: What is embedded in pictures cannot be read for now: it is gone";

}  // namespace

TEST_F(PatientInspectorTest, asksAgainAtOnceWhileAllIsWell) {
  EXPECT_EQ(inspect(), 3U);
  answer = Error{"it is damaged"};
  EXPECT_EQ(inspect(), 3U);
  EXPECT_FALSE(inspector.isWaiting());
  EXPECT_THAT(log.lines(), testing::IsEmpty());
}

TEST_F(PatientInspectorTest, wantsNoMoreWhenItIsOver) {
  isOver = true;
  EXPECT_EQ(inspect(), 1U);
  EXPECT_FALSE(inspector.isWaiting());
}

TEST_F(PatientInspectorTest, asksForNoneWhileItWaits) {
  answered = 0;
  EXPECT_EQ(inspect(), 0U);
  EXPECT_TRUE(inspector.isWaiting());
  EXPECT_EQ(inspect(), 0U);
  EXPECT_EQ(asked, 1);
  waitForIt();
  EXPECT_FALSE(inspector.isWaiting());
  EXPECT_EQ(inspect(), 0U);
  EXPECT_EQ(asked, 2);
}

TEST_F(PatientInspectorTest, waitsLongerEachTimeAndSaysSoOnce) {
  answered = 0;
  for (const double seconds : {60, 120, 240, 480, 960, 1920, 3600, 3600}) {
    (void)inspect();
    EXPECT_EQ(pause(), seconds);
    waitForIt();
  }
  EXPECT_THAT(log.lines(), ElementsAre(kLine));
}

TEST_F(PatientInspectorTest, beginsAnewWhenAFileWasRead) {
  answered = 0;
  (void)inspect();
  waitForIt();
  answered = 1;
  EXPECT_EQ(inspect(), 1U);
  EXPECT_EQ(pause(), 60);
  EXPECT_THAT(log.lines(), ElementsAre(kLine, kLine));
}

TEST_F(PatientInspectorTest, isNotReassuredByAFileThatFails) {
  answered = 0;
  (void)inspect();
  waitForIt();
  answered = 1;
  answer = Error{"it is not open"};
  (void)inspect();
  EXPECT_EQ(pause(), 120);
}

}  // namespace pelmora::platform
