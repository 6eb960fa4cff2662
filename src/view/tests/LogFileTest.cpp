#include "view/LogFile.h"

#include "platform/fake/FakeUserFolders.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/SteppedTime.h"
#include "view/DateText.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace pelmora::view {

namespace {

constexpr const char* kColumns = "----folder----\t----name----\t----frequency----\n";

class LogFileTest : public testing::Test {
 protected:
  LogFileTest() { folders.cachesFolders = {temporary.path()}; }

  LogFile open(std::uint64_t screenIndex) { return {clock, folders, screenIndex, "Pelmora"}; }
  [[nodiscard]] std::string textOf(const char* name) const {
    std::ifstream file((temporary.path() / "Pelmora" / name).bytes());
    return {std::istreambuf_iterator<char>(file), {}};
  }

  platform::TemporaryFolder temporary;
  platform::FakeUserFolders folders;
  platform::SteppedClock clock{ReferenceTime{817'725'600}};
};

}  // namespace

TEST_F(LogFileTest, isOneFileOfAScreenForAllRuns) {
  const std::string start = dateAndTimeText(clock.now(), formatLocale());
  for (int run = 0; run < 2; ++run) {
    LogFile log = open(2);
    log.writeHeader();
    log.close();
  }
  const std::string once =
      kColumns + ("start " + start) + "\t - \tend " + timeText(clock.now(), formatLocale()) + "\n";
  EXPECT_EQ(textOf("ImageFrequencyLogScreen2.txt"), once + once);
}

TEST_F(LogFileTest, writesNoSpanUnlessItIsAsked) {
  open(2).close();
  EXPECT_EQ(textOf("ImageFrequencyLogScreen2.txt"), kColumns);
}

TEST_F(LogFileTest, hasANameOfItsOwnForThePreview) {
  open(0).close();
  EXPECT_EQ(textOf("ImageFrequencyLogSystemPref.txt"), kColumns);
}

TEST_F(LogFileTest, beginsWhenItIsOpened) {
  LogFile log = open(1);
  EXPECT_EQ(log.startDate(), clock.now());
  log.setStartDate({1});
  log.writeHeader();
  EXPECT_NE(textOf("ImageFrequencyLogScreen1.txt")
                .find("start " + dateAndTimeText({1}, formatLocale()) + "\t"),
            std::string::npos);
}

TEST_F(LogFileTest, writesTextAsItIs) {
  LogFile log = open(1);
  writeToFileHandle("", log.handle());
  EXPECT_EQ(textOf("ImageFrequencyLogScreen1.txt"), kColumns);
  writeToFileHandle("\xC3\xA9\t1\n", log.handle());
  EXPECT_EQ(textOf("ImageFrequencyLogScreen1.txt"), std::string(kColumns) + "\xC3\xA9\t1\n");
}

TEST_F(LogFileTest, writesNothingThatCannotBeOpened) {
  folders.cachesFolders = {temporary.path() / "missing"};
  LogFile log = open(1);
  EXPECT_FALSE(log.handle().isOpen());
  log.writeHeader();
  log.close();
  folders.cachesFolders.clear();
  EXPECT_FALSE(open(1).handle().isOpen());
}

TEST_F(LogFileTest, writesNothingOnceItIsClosed) {
  LogFile log = open(1);
  log.close();
  log.writeHeader();
  EXPECT_EQ(textOf("ImageFrequencyLogScreen1.txt"), kColumns);
}

}  // namespace pelmora::view
