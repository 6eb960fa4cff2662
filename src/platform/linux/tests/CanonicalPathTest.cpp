#include "platform/linux/CanonicalPath.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(CanonicalPath, holdsNoLinks) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("a/b");
  (void)temporary.link("link", "a");
  EXPECT_EQ(canonicalPath(temporary.path() / "link/b"), folder);
  EXPECT_EQ(canonicalPath(temporary.path() / "a/./b/../b"), folder);
}

TEST(CanonicalPath, isUnknownForWhatIsNotThere) {
  const TemporaryFolder temporary;
  EXPECT_EQ(canonicalPath(temporary.path() / "nothing"), std::nullopt);
  EXPECT_EQ(canonicalPath(temporary.link("loop", "loop")), std::nullopt);
  EXPECT_EQ(canonicalPath(FilePath()), std::nullopt);
}

}  // namespace pelmora::platform
