#include "platform/linux/FilePreferencesStore.h"

#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

namespace pelmora::platform {

namespace {

class FilePreferences : public testing::Test {
 protected:
  [[nodiscard]] FilePreferencesStore makeStore() { return {file, log}; }
  [[nodiscard]] std::string bytesIn(const FilePath& path) const {
    const Result<FileContents> contents = FileContents::read(path, 1 << 20);
    if (!contents) return contents.error().message;
    return {contents->bytes().begin(), contents->bytes().end()};
  }
  [[nodiscard]] static mode_t modeOf(const FilePath& path) {
    struct stat facts {};
    return ::stat(path.c_str(), &facts) == 0 ? facts.st_mode & 07777 : 0;
  }
  /// What a process that starts now reads.
  [[nodiscard]] std::optional<plist::Value> storedOnDisk(std::string_view key) {
    return makeStore().objectForKey(key);
  }

  TemporaryFolder folder;
  RecordingLog log;
  FilePath file = folder.path() / "config/Pelmora/Preferences.plist";
};

/// An environment variable with another value for a while.
class ChangedVariable {
 public:
  ChangedVariable(const char* name, const char* value) : _name(name) {
    if (const char* before = std::getenv(name)) _before = before;
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
  }
  ~ChangedVariable() { _before ? ::setenv(_name, _before->c_str(), 1) : ::unsetenv(_name); }
  ChangedVariable(const ChangedVariable&) = delete;
  ChangedVariable& operator=(const ChangedVariable&) = delete;

 private:
  const char* _name;
  std::optional<std::string> _before;
};

}  // namespace

TEST_F(FilePreferences, readsAMissingFileAsNeverWritten) {
  FilePreferencesStore store = makeStore();
  store.registerDefaults({{"NumImages", 5}});
  EXPECT_EQ(store.objectForKey("NumImages"), plist::Value(5));
  EXPECT_EQ(store.objectForKey("Delay"), std::nullopt);
  EXPECT_TRUE(store.storedValues().empty());
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(FilePreferences, showsAChangeAtOnceAndWritesItWhenAskedTo) {
  FilePreferencesStore store = makeStore();
  store.setObject("Delay", 2.5);
  EXPECT_EQ(store.objectForKey("Delay"), plist::Value(2.5));
  EXPECT_EQ(storedOnDisk("Delay"), std::nullopt);
  ASSERT_TRUE(store.synchronize());
  EXPECT_EQ(storedOnDisk("Delay"), plist::Value(2.5));
}

TEST_F(FilePreferences, keepsTheTypeOfEveryValue) {
  const plist::Dictionary values = {{"truth", true},
                                    {"integer", 1},
                                    {"real", 1.0},
                                    {"list", plist::Array{"one"}},
                                    {"data", plist::Bytes{1, 2}}};
  FilePreferencesStore store = makeStore();
  for (const auto& [key, value] : values) store.setObject(key, value);
  ASSERT_TRUE(store.synchronize());
  EXPECT_EQ(makeStore().storedValues(), values);
}

TEST_F(FilePreferences, isForItsOwnerAlone) {
  FilePreferencesStore store = makeStore();
  store.setObject("Delay", 2.5);
  ASSERT_TRUE(store.synchronize());
  EXPECT_EQ(modeOf(file), 0600U);
  EXPECT_EQ(modeOf(file.parent()), 0700U);
  EXPECT_EQ(modeOf(file.parent().parent()), 0700U);
}

TEST_F(FilePreferences, writesTheBinaryFormWithoutDefaults) {
  FilePreferencesStore store = makeStore();
  store.registerDefaults({{"NumImages", 5}});
  store.setObject("Delay", 2.5);
  ASSERT_TRUE(store.synchronize());
  EXPECT_TRUE(bytesIn(file).starts_with("bplist00"));
  EXPECT_EQ(makeStore().storedValues(), (plist::Dictionary{{"Delay", 2.5}}));
}

TEST_F(FilePreferences, makesNothingWhenNothingChanged) {
  EXPECT_TRUE(makeStore().synchronize());
  EXPECT_FALSE(std::filesystem::exists(file.parent().bytes()));
}

TEST_F(FilePreferences, removesAKeyDownToItsDefault) {
  FilePreferencesStore store = makeStore();
  store.registerDefaults({{"Delay", 4.0}});
  store.setObject("Delay", 2.5);
  ASSERT_TRUE(store.synchronize());
  store.removeObject("Delay");
  EXPECT_EQ(store.objectForKey("Delay"), plist::Value(4.0));
  ASSERT_TRUE(store.synchronize());
  EXPECT_EQ(storedOnDisk("Delay"), std::nullopt);
}

TEST_F(FilePreferences, leavesWhatOthersWroteToOtherKeys) {
  FilePreferencesStore mine = makeStore();
  FilePreferencesStore theirs = makeStore();
  mine.setObject("NumImages", 7);
  theirs.setObject("Delay", 2.5);
  theirs.setObject("NumImages", 8);
  ASSERT_TRUE(theirs.synchronize());
  ASSERT_TRUE(mine.synchronize());
  EXPECT_EQ(makeStore().storedValues(), (plist::Dictionary{{"Delay", 2.5}, {"NumImages", 7}}));
}

TEST_F(FilePreferences, seesWhatOthersWriteAtTheNextRead) {
  FilePreferencesStore mine = makeStore();
  EXPECT_EQ(mine.objectForKey("Delay"), std::nullopt);
  FilePreferencesStore theirs = makeStore();
  theirs.setObject("Delay", 2.5);
  ASSERT_TRUE(theirs.synchronize());
  EXPECT_EQ(mine.objectForKey("Delay"), plist::Value(2.5));
  std::filesystem::remove(file.bytes());
  EXPECT_EQ(mine.objectForKey("Delay"), std::nullopt);
}

TEST_F(FilePreferences, readsTheXmlForm) {
  folder.write("config/Pelmora/Preferences.plist",
               "<plist version=\"1.0\"><dict><key>Delay</key><real>2.5</real></dict></plist>");
  EXPECT_EQ(storedOnDisk("Delay"), plist::Value(2.5));
}

TEST_F(FilePreferences, keepsADamagedFileBesideAndUsesTheDefaults) {
  folder.write("config/Pelmora/Preferences.plist", "bplist00 rubbish");
  FilePreferencesStore store = makeStore();
  store.registerDefaults({{"Delay", 4.0}});
  EXPECT_EQ(store.objectForKey("Delay"), plist::Value(4.0));
  EXPECT_EQ(store.objectForKey("NumImages"), std::nullopt);
  ASSERT_EQ(log.lines().size(), 1U);
  const FilePath kept(file.bytes() + ".damaged");
  EXPECT_EQ(log.lines().front(),
            "Pelmora: The preferences are damaged and not used (the property list is cut short); "
            "kept as " +
                kept.bytes());
  EXPECT_EQ(bytesIn(kept), "bplist00 rubbish");

  store.setObject("NumImages", 3);
  ASSERT_TRUE(store.synchronize());
  EXPECT_EQ(makeStore().storedValues(), (plist::Dictionary{{"NumImages", 3}}));
  EXPECT_EQ(bytesIn(kept), "bplist00 rubbish");
  EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(FilePreferences, takesAListForADamagedFile) {
  folder.write("config/Pelmora/Preferences.plist", "<plist><array/></plist>");
  EXPECT_EQ(storedOnDisk("Delay"), std::nullopt);
  EXPECT_EQ(log.countContaining("the property list is no dictionary"), 1U);
}

TEST_F(FilePreferences, doesNotWriteOverWhatItCannotRead) {
  folder.mkdir("config/Pelmora");
  ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
  FilePreferencesStore store = makeStore();
  EXPECT_EQ(store.objectForKey("Delay"), std::nullopt);
  EXPECT_EQ(store.objectForKey("Delay"), std::nullopt);
  EXPECT_EQ(
      log.count("Pelmora: Error reading preferences: " + file.bytes() + ": Not a regular file"),
      1U);
  store.setObject("Delay", 2.5);
  EXPECT_FALSE(store.synchronize());
  std::filesystem::remove(file.bytes());
  EXPECT_TRUE(store.synchronize()) << "the change has waited";
  EXPECT_EQ(storedOnDisk("Delay"), plist::Value(2.5));
}

TEST_F(FilePreferences, saysWhyItCannotWrite) {
  folder.write("config", "a file where the folder should be");
  FilePreferencesStore store = makeStore();
  store.setObject("Delay", 2.5);
  const Status status = store.synchronize();
  ASSERT_FALSE(status);
  EXPECT_NE(status.error().message.find("Not a directory"), std::string::npos);
  EXPECT_EQ(store.objectForKey("Delay"), plist::Value(2.5));
}

TEST_F(FilePreferences, sweepsWhatKilledWritersLeft) {
  const FilePath left = folder.write("config/Pelmora/.Preferences.plist.tmp-abcdef");
  FilePreferencesStore store = makeStore();
  store.setObject("Delay", 2.5);
  ASSERT_TRUE(store.synchronize());
  EXPECT_FALSE(std::filesystem::exists(left.bytes()));
}

TEST(FilePreferencesStore, liesInTheConfigurationFolder) {
  const ChangedVariable home("HOME", "/home/user");
  {
    const ChangedVariable config("XDG_CONFIG_HOME", "/config");
    EXPECT_EQ(defaultPreferencesPath().bytes(), "/config/Pelmora/Preferences.plist");
  }
  for (const char* const ignored : {"", "relative/path"}) {
    const ChangedVariable config("XDG_CONFIG_HOME", ignored);
    EXPECT_EQ(defaultPreferencesPath().bytes(), "/home/user/.config/Pelmora/Preferences.plist");
  }
}

TEST(FilePreferencesStore, worksInMemoryWhereThereIsNoHome) {
  const ChangedVariable config("XDG_CONFIG_HOME", nullptr);
  const ChangedVariable home("HOME", nullptr);
  RecordingLog log;
  FilePreferencesStore store(defaultPreferencesPath(), log);
  store.setObject("Delay", 2.5);
  EXPECT_EQ(store.objectForKey("Delay"), plist::Value(2.5));
  EXPECT_FALSE(store.synchronize());
}

TEST_F(FilePreferences, isNotWrittenWhileAnotherProcessHoldsItForEver) {
  FilePreferencesStore store(file, log, std::chrono::milliseconds(1));
  store.setObject("NumImages", 5);
  ASSERT_TRUE(store.synchronize().ok());
  const FileDescriptor other(::open((file.bytes() + ".lock").c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(::flock(other.get(), LOCK_EX), 0);
  store.setObject("NumImages", 7);
  EXPECT_EQ(store.synchronize().error().message,
            file.bytes() + ".lock: Another program holds it locked");
  EXPECT_EQ(storedOnDisk("NumImages"), plist::Value(5));
  ASSERT_EQ(::flock(other.get(), LOCK_UN), 0);
  EXPECT_TRUE(store.synchronize().ok());
  EXPECT_EQ(storedOnDisk("NumImages"), plist::Value(7));
}

}  // namespace pelmora::platform
