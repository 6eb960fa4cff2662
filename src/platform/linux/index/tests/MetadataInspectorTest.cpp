#include "platform/linux/index/MetadataInspector.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/index/tests/ToldFiles.h"
#include "platform/linux/tests/ChildrenCount.h"
#include "platform/metadata/MetadataProtocol.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace pelmora::platform {

using metadata::FileMetadata;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr std::chrono::milliseconds kLong{20'000};
constexpr std::chrono::milliseconds kShort{50};

/// What was answered, as text: the rating, or the error.
std::string textOf(const MetadataInspector::Answer& answer) {
  if (!answer) return answer.error().message;
  const auto values = answer->values("kMDItemStarRating");
  return values.empty() ? "nothing" : std::to_string(*values[0].get<std::int64_t>());
}

struct Told {
  std::vector<std::string> answers;
  std::string problem;  // why the rest was not answered
};

Told inspectSome(MetadataInspector& inspector, const std::vector<FileDescriptor>& files) {
  Told told;
  const Status status = inspector.inspect(files, [&](std::size_t index, const auto& answer) {
    EXPECT_EQ(index, told.answers.size());
    told.answers.push_back(textOf(answer));
    return true;
  });
  if (!status) told.problem = status.error().message;
  return told;
}

std::vector<std::string> inspect(MetadataInspector& inspector,
                                 const std::vector<FileDescriptor>& files) {
  Told told = inspectSome(inspector, files);
  EXPECT_EQ(told.problem, "");
  EXPECT_EQ(told.answers.size(), files.size());
  return std::move(told.answers);
}

class MetadataInspectorTest : public testing::Test {
 protected:
  static MetadataInspector inspectorWith(std::chrono::milliseconds deadline = kLong) {
    return MetadataInspector({FilePath(PELMORA_FAKE_INSPECTOR), deadline});
  }
  /// One whose name tells how it begins.
  MetadataInspector inspectorAs(const char* name, std::chrono::milliseconds deadline = kLong) {
    return MetadataInspector({folder.link(name, PELMORA_FAKE_INSPECTOR), deadline});
  }

  TemporaryFolder folder;
};

constexpr const char* kCrash = "its inspector crashed (Segmentation fault)";

}  // namespace

TEST_F(MetadataInspectorTest, answersManyFilesInTheirOrder) {
  MetadataInspector inspector = inspectorWith();
  std::vector<FileDescriptor> files;
  std::vector<std::string> expected;
  for (std::size_t i = 0; i < 10 * metadata::kMaxAhead + 3; ++i) {
    expected.push_back(std::to_string(i));
    files.push_back(telling(expected.back()));
  }
  EXPECT_EQ(inspect(inspector, files), expected);
  EXPECT_EQ(inspect(inspector, files), expected);
  EXPECT_TRUE(inspect(inspector, {}).empty());
}

TEST_F(MetadataInspectorTest, startsNothingForNothing) {
  MetadataInspector inspector = inspectorWith();
  EXPECT_TRUE(inspect(inspector, {}).empty());
  EXPECT_FALSE(hasChildren());
}

TEST_F(MetadataInspectorTest, failsForFilesThatAreNotOpen) {
  MetadataInspector inspector = inspectorWith();
  std::vector<FileDescriptor> files;
  files.emplace_back();
  files.push_back(telling("1"));
  files.emplace_back();
  files.emplace_back();
  files.push_back(telling("2"));
  files.emplace_back();
  EXPECT_THAT(inspect(inspector, files), ElementsAre("it is not open", "1", "it is not open",
                                                     "it is not open", "2", "it is not open"));
}

TEST_F(MetadataInspectorTest, losesOneFileToACrashAndAsksAnotherForTheRest) {
  MetadataInspector inspector = inspectorWith();
  EXPECT_THAT(inspect(inspector, telling({"1", "die", "2", "3", "die", "die", "4"})),
              ElementsAre("1", kCrash, "2", "3", kCrash, kCrash, "4"));
}

TEST_F(MetadataInspectorTest, losesOneFileToAHang) {
  const char* const late = "reading it took longer than 0.5 s";
  MetadataInspector inspector = inspectorWith(std::chrono::milliseconds(500));
  EXPECT_THAT(inspect(inspector, telling({"1", "hang", "2"})), ElementsAre("1", late, "2"));
}

TEST_F(MetadataInspectorTest, losesOneFileToALie) {
  MetadataInspector inspector = inspectorWith();
  EXPECT_THAT(inspect(inspector, telling({"1", "nonsense", "2", "another serial", "3"})),
              ElementsAre("1", HasSubstr("wrong answer"), "2", HasSubstr("wrong answer"), "3"));
}

TEST_F(MetadataInspectorTest, asksAnotherForWhatWasAskedAheadOfOneThatLeaves) {
  MetadataInspector inspector = inspectorWith();
  EXPECT_THAT(inspect(inspector, telling({"1", "leave", "2", "3", "leave"})),
              ElementsAre("1", "0", "2", "3", "0"));
}

TEST_F(MetadataInspectorTest, isNotDrownedByAFlood) {
  MetadataInspector inspector = inspectorWith();
  EXPECT_THAT(inspect(inspector, telling({"1", "flood", "2", "3"})),
              ElementsAre("1", "0", HasSubstr("to another question"), "3"));
}

TEST_F(MetadataInspectorTest, survivesManyHostileFilesInARow) {
  MetadataInspector inspector = inspectorWith();
  EXPECT_THAT(inspect(inspector, telling({"die", "die", "die", "die", "die", "1"})),
              ElementsAre(kCrash, kCrash, kCrash, kCrash, kCrash, "1"));
}

TEST_F(MetadataInspectorTest, blamesNoFileWhenNoneBegins) {
  MetadataInspector inspector = inspectorAs("dies-at-once");
  Told told = inspectSome(inspector, telling({"1", "2", "3", "4"}));
  EXPECT_THAT(told.answers, IsEmpty());
  EXPECT_EQ(told.problem, kCrash);
  MetadataInspector slow = inspectorAs("hangs-at-once", kShort);
  told = inspectSome(slow, telling({"1", "2", "3"}));
  EXPECT_THAT(told.answers, IsEmpty());
  EXPECT_EQ(told.problem, "the start of its inspector took longer than 0.05 s");
}

TEST_F(MetadataInspectorTest, blamesNoFileForAProgramThatIsNotThere) {
  const FilePath program = folder.path() / "inspector";
  MetadataInspector inspector({program, kLong});
  const Told told = inspectSome(inspector, telling({"1", "2"}));
  EXPECT_THAT(told.answers, IsEmpty());
  EXPECT_THAT(told.problem, HasSubstr("cannot be started"));
  folder.link("inspector", PELMORA_FAKE_INSPECTOR);
  EXPECT_THAT(inspect(inspector, telling({"1", "2"})), ElementsAre("1", "2"));
}

TEST_F(MetadataInspectorTest, answersWhatItCanBeforeNoneIsToBeHadAnyMore) {
  const FilePath program = folder.link("inspector", PELMORA_FAKE_INSPECTOR);
  MetadataInspector inspector({program, kLong});
  EXPECT_THAT(inspect(inspector, telling({"1"})), ElementsAre("1"));
  std::filesystem::remove(program.bytes());
  const Told told = inspectSome(inspector, telling({"2", "die", "3", "4"}));
  EXPECT_THAT(told.answers, ElementsAre("2", kCrash));
  EXPECT_THAT(told.problem, HasSubstr("cannot be started"));
}

TEST_F(MetadataInspectorTest, doesNotSpinWithOneThatDiesAfterGreeting) {
  MetadataInspector inspector = inspectorAs("dies-after-greeting");
  const Told told = inspectSome(inspector, telling({"1", "2"}));
  // Dead before it could be asked, or while it was.
  EXPECT_THAT(told.answers, Each(kCrash));
  EXPECT_EQ(told.problem, told.answers.size() == 2 ? "" : kCrash);
}

TEST_F(MetadataInspectorTest, endsWhenNoMoreIsWantedAndAnswersWhatIsAskedThen) {
  MetadataInspector inspector = inspectorWith();
  int answers = 0;
  const auto files = telling({"1", "2", "hang", "3"});
  EXPECT_TRUE(inspector.inspect(files, [&](std::size_t, const auto&) { return ++answers < 2; }));
  EXPECT_EQ(answers, 2);
  EXPECT_THAT(inspect(inspector, telling({"4", "5"})), ElementsAre("4", "5"));
}

TEST_F(MetadataInspectorTest, leavesNothingBehind) {
  const std::size_t before = openDescriptors();
  {
    MetadataInspector inspector = inspectorWith();
    (void)inspect(inspector, telling({"1", "die", "leave", "nonsense", "2"}));
  }
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_FALSE(hasChildren());
}

}  // namespace pelmora::platform
