#include "platform/linux/PatientFiles.h"

#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/PosixFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace pelmora::platform {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::chrono::milliseconds kShort{1};

/// The files of a share, which answers from a moment on.
class ShareFiles : public PosixFiles {
 public:
  explicit ShareFiles(FilePath share) : _share(std::move(share)) {}

  [[nodiscard]] Result<std::shared_ptr<const Listing>> list(const FilePath& folder,
                                                            FinalLink link) const override {
    waitFor(folder);
    return PosixFiles::list(folder, link);
  }
  [[nodiscard]] std::optional<FileFacts> facts(const FilePath& path,
                                               FinalLink link) const override {
    waitFor(path);
    return PosixFiles::facts(path, link);
  }
  void answer() { _promise.set_value(); }

 private:
  void waitFor(const FilePath& path) const {
    if (isAtOrBelow(path, _share)) _answered.wait();
  }

  const FilePath _share;
  std::promise<void> _promise;
  std::shared_future<void> _answered = _promise.get_future().share();
};

class PatientFilesTest : public testing::Test {
 protected:
  ~PatientFilesTest() override { share->answer(); }

  [[nodiscard]] MountTable mountTable() const {
    return MountTable::parse(
        "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n" +
        (isMounted ? "2 1 0:7 / " + nas.bytes() + " rw - nfs4 server:/ rw\n" : std::string()));
  }

  TemporaryFolder temporary;
  FilePath here = temporary.mkdir("here");
  FilePath nas = temporary.mkdir("nas");
  FilePath year = temporary.mkdir("nas/2024");
  bool isMounted = true;
  std::shared_ptr<ShareFiles> share = std::make_shared<ShareFiles>(nas);
  RemoteMounts mounts{std::make_shared<CurrentMounts>([this] { return mountTable(); })};
  RecordingLog log;
  PatientFiles files{share, mounts, log, kShort};
};

}  // namespace

TEST_F(PatientFilesTest, readTheirOwnMachineAsEver) {
  temporary.write("here/a.jpg");
  const auto listing = files.list(here, FinalLink::refuse);
  ASSERT_TRUE(listing);
  EXPECT_EQ((*listing)->names->size(), 1U);
  EXPECT_EQ(files.facts(here, FinalLink::refuse)->kind, EntryKind::folder);
  EXPECT_EQ(files.isPackage(here), false);
  EXPECT_TRUE(files.hasPackageSuffix("a.app"));
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(PatientFilesTest, takeAShareThatDoesNotAnswerForUnreadable) {
  const auto listing = files.list(nas, FinalLink::refuse);
  ASSERT_FALSE(listing);
  EXPECT_THAT(listing.error().message, HasSubstr("does not answer"));
  EXPECT_EQ(files.facts(year, FinalLink::follow), std::nullopt);
  EXPECT_EQ(files.resolveAlias(year), std::nullopt);
  EXPECT_EQ(files.isPackage(year), std::nullopt);
  // One line, though nothing of it could be read.
  EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("'" + nas.bytes() + "' does not answer")));
}

TEST_F(PatientFilesTest, areWaitedForNoLongerWhenTheProgramEnds) {
  files.giveUp();
  EXPECT_FALSE(files.list(nas, FinalLink::refuse));
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(PatientFilesTest, areAskedDirectlyWhereThereIsNoShare) {
  isMounted = false;
  const auto thread = files.wait(here, [] { return std::this_thread::get_id(); });
  EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST_F(PatientFilesTest, followLinksToASharePatiently) {
  const FilePath link = temporary.link("here/link", nas);
  const auto thread = files.wait(link, [] { return std::this_thread::get_id(); });
  EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(PatientFilesTest, askAShareOnceForAllLinksToIt) {
  const auto ask = [this](const FilePath& link) {
    return files.wait(link,
                      [share = share, nas = nas] { return share->facts(nas, FinalLink::follow); });
  };
  const FilePath one = temporary.link("here/one", nas);
  EXPECT_FALSE(files.isStalled(one));
  EXPECT_EQ(ask(one), std::nullopt);
  EXPECT_TRUE(files.isStalled(one));
  EXPECT_EQ(ask(temporary.link("here/two", year)), std::nullopt);
  EXPECT_FALSE(files.isStalled(here));
  EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("'" + nas.bytes() + "' does not answer")));
}

}  // namespace pelmora::platform
