#include "platform/linux/index/EmbeddedTags.h"

#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/SteppedTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <string>

namespace pelmora::platform {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const FilePath kProgram(PELMORA_FAKE_INSPECTOR);
constexpr std::chrono::milliseconds kLong{20'000};

class EmbeddedTagsTest : public testing::Test {
 protected:
  std::vector<std::string> tagsOf(EmbeddedTags& tags, const char* text) {
    return tags.read(temporary.write("a.jpg", text));
  }

  TemporaryFolder temporary;
  SteppedClock clock;
  RecordingLog log;
};

}  // namespace

TEST_F(EmbeddedTagsTest, areThoseThatTheInspectorFinds) {
  EmbeddedTags tags(kProgram, clock, log, kLong);
  EXPECT_THAT(tagsOf(tags, "tag"), ElementsAre("Red", "Sea"));
  EXPECT_THAT(tagsOf(tags, "7"), IsEmpty());
  EXPECT_THAT(tags.read(temporary.path() / "nothing"), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(EmbeddedTagsTest, areNoneOfAFileThatTakesTooLongWhichOneLineSays) {
  EmbeddedTags tags(kProgram, clock, log, std::chrono::milliseconds(500));
  EXPECT_THAT(tagsOf(tags, "hang"), IsEmpty());
  EXPECT_THAT(log.lines(), ElementsAre("Pelmora: Cannot read the tags of '" +
                                       (temporary.path() / "a.jpg").bytes() +
                                       "': reading it took longer than 0.5 s"));
  EXPECT_THAT(tagsOf(tags, "tag"), ElementsAre("Red", "Sea"));
}

TEST_F(EmbeddedTagsTest, waitForOneStartOfAnInspectorAndNoMore) {
  const FilePath starts = temporary.path() / "starts";
  const FilePath program = temporary.write(
      "inspector", "#!/bin/sh\necho started >>'" + starts.bytes() + "'\nexec sleep 1000\n");
  ASSERT_EQ(chmod(program.c_str(), 0700), 0);
  EmbeddedTags tags(program, clock, log, std::chrono::milliseconds(1500));
  EXPECT_THAT(tagsOf(tags, "tag"), IsEmpty());
  EXPECT_THAT(log.lines(),
              ElementsAre(HasSubstr("the start of its inspector took longer than 1.5 s")));
  std::ifstream file(starts.bytes());
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "started\n");
}

TEST_F(EmbeddedTagsTest, areNoneForAWhileWithoutAnInspectorWhichOneLineSays) {
  EmbeddedTags tags(temporary.path() / "inspector", clock, log, kLong);
  EXPECT_THAT(tagsOf(tags, "tag"), IsEmpty());
  temporary.link("inspector", PELMORA_FAKE_INSPECTOR);
  EXPECT_THAT(tagsOf(tags, "tag"), IsEmpty());
  EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("cannot be started")));
  clock.advanceTo(PatientInspector::kShortestPause);
  EXPECT_THAT(tagsOf(tags, "tag"), ElementsAre("Red", "Sea"));
}

}  // namespace pelmora::platform
