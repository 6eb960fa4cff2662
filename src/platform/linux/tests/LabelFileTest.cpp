#include "platform/linux/LabelFile.h"

#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"

#include <sys/stat.h>

#include <gmock/gmock.h>

namespace pelmora::platform {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LabelFileTest : public testing::Test {
 protected:
  std::vector<Label> labelsIn(std::string_view text) {
    return labelsInFile(temporary.write("labels", text), log);
  }

  TemporaryFolder temporary;
  RecordingLog log;
};

}  // namespace

TEST_F(LabelFileTest, holdsANameAndAColourALine) {
  EXPECT_THAT(
      labelsIn("# mine\n\nHoliday #3366cc\nTwo words\t#FF0000  \r\n\xC3\x89t\xC3\xA9 #000000"),
      ElementsAre(Label{"Holiday", {0x33 / 255.0, 0x66 / 255.0, 0xCC / 255.0, 1}},
                  Label{"Two words", {1, 0, 0, 1}}, Label{"\xC3\x89t\xC3\xA9", {0, 0, 0, 1}}));
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LabelFileTest, logsEachLineThatMakesNoSense) {
  EXPECT_THAT(labelsIn("Holiday\nGood #010203\nBad #12345\nBad #1234567\nBad 123456\nBad #12345g\n"
                       "Bad #-1-1-1\n \t#123456\nBad# 112233\n"),
              ElementsAre(Label{"Good", {1 / 255.0, 2 / 255.0, 3 / 255.0, 1}}));
  EXPECT_EQ(log.lines().size(), 8U);
  EXPECT_EQ(log.count("Pelmora: Error reading labels: " + (temporary.path() / "labels").bytes() +
                      ", line 1: not a name and a colour"),
            1U);
}

TEST_F(LabelFileTest, mayBeMissing) {
  EXPECT_THAT(labelsInFile(temporary.path() / "nothing", log), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LabelFileTest, isLoggedWhenItCannotBeRead) {
  EXPECT_THAT(labelsInFile(temporary.path(), log), IsEmpty());
  EXPECT_EQ(
      log.count("Pelmora: Error reading labels: " + temporary.path().bytes() + ": Is a directory"),
      1U);
  const FilePath pipe = temporary.path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_THAT(labelsInFile(pipe, log), IsEmpty());
  EXPECT_THAT(labelsIn(std::string(100'000, 'a')), IsEmpty());
  EXPECT_EQ(log.lines().size(), 3U);
}

}  // namespace pelmora::platform
