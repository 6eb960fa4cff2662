#include "shared/FilePath.h"

#include <gtest/gtest.h>

namespace pelmora {

TEST(FilePath, dropsTrailingSlashesButKeepsTheRoot) {
  EXPECT_EQ(FilePath("/a/b//").bytes(), "/a/b");
  EXPECT_EQ(FilePath("/").bytes(), "/");
}

TEST(FilePath, takesPathsApart) {
  EXPECT_EQ(FilePath("/a/b.jpg").lastComponent(), "b.jpg");
  EXPECT_EQ(FilePath("/a/b.jpg").parent(), FilePath("/a"));
  EXPECT_EQ(FilePath("/a").parent(), FilePath("/"));
  EXPECT_EQ(FilePath("/").parent(), FilePath("/"));
  EXPECT_EQ(FilePath("/").lastComponent(), "/");
}

TEST(FilePath, joinsNamesOfAnyBytes) {
  EXPECT_EQ((FilePath("/a") / "b c\n\xE9").bytes(), "/a/b c\n\xE9");
  EXPECT_EQ((FilePath("/") / "b").bytes(), "/b");
}

}  // namespace pelmora
