#include "idle/InstanceLock.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

namespace pelmora::idle {

TEST(InstanceLock, keepsOthersFromTheSameDisplayWhileItIsHeld) {
  const platform::TemporaryFolder folder;
  const std::string path = folder.path().bytes();
  std::optional<InstanceLock> first = std::move(*InstanceLock::take(path, ":0"));
  const auto second = InstanceLock::take(path, ":0.0");
  ASSERT_FALSE(second);
  EXPECT_EQ(second.error().message, "another one watches this display already");
  EXPECT_TRUE(InstanceLock::take(path, ":1"));
  EXPECT_TRUE(InstanceLock::take(path, "wayland-0"));
  first.reset();
  EXPECT_TRUE(InstanceLock::take(path, ":0"));
}

TEST(InstanceLock, namesItsFileForTheDisplayAlone) {
  EXPECT_EQ(lockName(":0.0"), "pelmora-idle-:0.lock");
  EXPECT_EQ(lockName("wayland-1.5"), "pelmora-idle-wayland-1.5.lock");
  EXPECT_EQ(lockName("/tmp/../x"), "pelmora-idle-_tmp_.._x.lock");
  EXPECT_LT(lockName(std::string(5000, 'x')).size(), 255U);
}

TEST(InstanceLock, saysWhyItCannotBeTaken) {
  const platform::TemporaryFolder folder;
  const std::string path = folder.path().bytes();
  EXPECT_FALSE(InstanceLock::take(path + "/none", ":0"));
  std::filesystem::create_symlink("/dev/null", path + "/" + lockName(":0"));
  const auto taken = InstanceLock::take(path, ":0");
  ASSERT_FALSE(taken);
  EXPECT_NE(taken.error().message.find("pelmora-idle-:0.lock: "), std::string::npos);
}

}  // namespace pelmora::idle
