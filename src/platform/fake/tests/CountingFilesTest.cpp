#include "platform/fake/CountingFiles.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/PosixFiles.h"

#include <gmock/gmock.h>

namespace pelmora::platform {

namespace {

using Call = CountingFiles::Call;

class CountingFilesTest : public testing::Test {
 protected:
  TemporaryFolder temporary;
  PosixFiles real;
  CountingFiles files{real};
};

}  // namespace

TEST_F(CountingFilesTest, passesCallsOn) {
  const FilePath folder = temporary.mkdir("Photos.app");
  (void)temporary.write("Photos.app/a");
  const FilePath link = temporary.link("link", "Photos.app");
  EXPECT_EQ((*files.list(folder, FinalLink::refuse))->names->size(), 1U);
  EXPECT_FALSE(files.list(link, FinalLink::refuse).ok());
  EXPECT_EQ(files.facts(folder, FinalLink::refuse)->kind, EntryKind::folder);
  EXPECT_EQ(files.resolveAlias(link), folder);
  EXPECT_EQ(files.isPackage(folder), true);
  EXPECT_TRUE(files.hasPackageSuffix("Photos.app"));
}

TEST_F(CountingFilesTest, countsCallsByPath) {
  const FilePath a = temporary.mkdir("a");
  const FilePath b = temporary.mkdir("b");
  (void)files.list(a, FinalLink::follow);
  (void)files.list(b, FinalLink::follow);
  (void)files.list(a, FinalLink::refuse);
  (void)files.facts(b, FinalLink::follow);
  EXPECT_EQ(files.count(Call::list, a), 2U);
  EXPECT_EQ(files.count(Call::list), 3U);
  EXPECT_EQ(files.count(Call::facts, a), 0U);
  EXPECT_EQ(files.count(Call::isPackage), 0U);
  EXPECT_THAT(files.paths(Call::list), testing::ElementsAre(a, b, a));
  files.clearCounts();
  EXPECT_EQ(files.count(Call::list), 0U);
}

TEST_F(CountingFilesTest, failsForThePathsItIsToldTo) {
  const FilePath a = temporary.mkdir("a");
  for (const Call call : {Call::list, Call::facts, Call::resolveAlias, Call::isPackage}) {
    files.fail(call, a);
  }
  EXPECT_FALSE(files.list(a, FinalLink::follow).ok());
  EXPECT_FALSE(files.facts(a, FinalLink::follow).has_value());
  EXPECT_FALSE(files.resolveAlias(a).has_value());
  EXPECT_FALSE(files.isPackage(a).has_value());
  EXPECT_TRUE(files.list(temporary.path(), FinalLink::follow).ok());
  EXPECT_EQ(files.count(Call::list, a), 1U);

  files.succeedAgain();
  EXPECT_TRUE(files.list(a, FinalLink::follow).ok());
}

}  // namespace pelmora::platform
