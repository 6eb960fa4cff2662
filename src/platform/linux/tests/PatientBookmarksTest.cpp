#include "platform/linux/PatientBookmarks.h"

#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/LinuxBookmarks.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SystemClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

namespace pelmora::platform {

namespace {

using testing::HasSubstr;

/// Bookmarks of a share, which answers from a moment on.
class ShareBookmarks : public LinuxBookmarks {
 public:
  explicit ShareBookmarks(std::shared_future<void> answered)
      : LinuxBookmarks(_clock, std::make_shared<CurrentMounts>()), _answered(std::move(answered)) {}

  [[nodiscard]] Result<plist::Bytes> make(const FilePath& folder) const override {
    _answered.wait();
    return LinuxBookmarks::make(folder);
  }
  [[nodiscard]] Result<FilePath> resolve(const plist::Bytes& bookmark) const override {
    _answered.wait();
    return LinuxBookmarks::resolve(bookmark);
  }

 private:
  SystemClock _clock;
  const std::shared_future<void> _answered;
};

class PatientBookmarksTest : public testing::Test {
 protected:
  [[nodiscard]] PatientFiles filesThatWait(std::chrono::milliseconds limit) {
    return {std::make_shared<PosixFiles>(), mounts, log, limit};
  }
  [[nodiscard]] std::shared_ptr<ShareBookmarks> bookmarks() const {
    return std::make_shared<ShareBookmarks>(answered);
  }

  TemporaryFolder temporary;
  FilePath nas = temporary.mkdir("nas");
  std::promise<void> answer;
  std::shared_future<void> answered = answer.get_future().share();
  RemoteMounts mounts{std::make_shared<CurrentMounts>([this] {
    return MountTable::parse("1 0 0:7 / " + nas.bytes() + " rw - nfs4 server:/ rw\n");
  })};
  RecordingLog log;
};

}  // namespace

TEST_F(PatientBookmarksTest, areThoseOfFolders) {
  answer.set_value();
  const PatientFiles files = filesThatWait(std::chrono::seconds(20));
  const PatientBookmarks patient(bookmarks(), files);
  const auto made = patient.make(nas);
  ASSERT_TRUE(made);
  EXPECT_EQ(*patient.resolve(*made), nas);
}

TEST_F(PatientBookmarksTest, cannotBeMadeOfWhatDoesNotAnswer) {
  const PatientFiles files = filesThatWait(std::chrono::milliseconds(1));
  const PatientBookmarks patient(bookmarks(), files);
  const auto made = patient.make(nas);
  ASSERT_FALSE(made);
  EXPECT_THAT(made.error().message, HasSubstr(nas.bytes() + ": it does not answer"));
  answer.set_value();
}

TEST_F(PatientBookmarksTest, cannotBeResolvedWhereNothingAnswers) {
  const SystemClock clock;
  const auto made = LinuxBookmarks(clock, std::make_shared<CurrentMounts>()).make(nas);
  ASSERT_TRUE(made);
  const PatientFiles files = filesThatWait(std::chrono::milliseconds(1));
  const PatientBookmarks patient(bookmarks(), files);
  const auto resolved = patient.resolve(*made);
  ASSERT_FALSE(resolved);
  EXPECT_THAT(resolved.error().message, HasSubstr("does not answer"));
  answer.set_value();
}

TEST_F(PatientBookmarksTest, refuseWhatIsNone) {
  const PatientFiles files = filesThatWait(std::chrono::milliseconds(1));
  EXPECT_FALSE(PatientBookmarks(bookmarks(), files).resolve({1, 2, 3}));
}

}  // namespace pelmora::platform
