#include "platform/linux/index/LocalStorage.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(LocalStorage, isWhereOnlyThisMachineWrites) {
  const TemporaryFolder temporary;
  EXPECT_TRUE(isOnLocalStorage(temporary.path()));
  EXPECT_TRUE(isOnLocalStorage(temporary.link("link", temporary.path())));
  EXPECT_FALSE(isOnLocalStorage(FilePath("/proc")));
}

TEST(LocalStorage, isNotWhereThereIsNoFolder) {
  const TemporaryFolder temporary;
  EXPECT_FALSE(isOnLocalStorage(temporary.write("file")));
  EXPECT_FALSE(isOnLocalStorage(temporary.path() / "missing"));
  EXPECT_FALSE(isOnLocalStorage(FilePath()));
}

}  // namespace pelmora::platform
