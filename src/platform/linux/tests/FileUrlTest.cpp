#include "platform/linux/FileUrl.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FileUrl, yieldsItsPath) {
  EXPECT_EQ(localPathOfFileUrl("file:///a/b"), FilePath("/a/b"));
  EXPECT_EQ(localPathOfFileUrl("file:/a/b/"), FilePath("/a/b"));
  EXPECT_EQ(localPathOfFileUrl("FILE://LocalHost/a"), FilePath("/a"));
  EXPECT_EQ(localPathOfFileUrl("file:///"), FilePath("/"));
}

TEST(FileUrl, decodesEscapesToBytes) {
  EXPECT_EQ(localPathOfFileUrl("file:///a%20b/%E9%c3%A9%25%23"), FilePath("/a b/\xE9\xC3\xA9%#"));
}

TEST(FileUrl, endsItsPathAtAQueryOrAFragment) {
  EXPECT_EQ(localPathOfFileUrl("file:///a?b/c"), FilePath("/a"));
  EXPECT_EQ(localPathOfFileUrl("file:///a#b/c"), FilePath("/a"));
}

TEST(FileUrl, yieldsNothingForOtherSchemesAndHosts) {
  EXPECT_EQ(localPathOfFileUrl("http:///a"), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl("/a"), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl(""), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl("file://server/a"), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl("file://localhostess/a"), std::nullopt);
}

TEST(FileUrl, yieldsNothingForDamagedOnes) {
  EXPECT_EQ(localPathOfFileUrl("file:"), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl("file://"), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl("file:a/b"), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl("file:///a%"), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl("file:///a%2"), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl("file:///a%2x"), std::nullopt);
  EXPECT_EQ(localPathOfFileUrl("file:///a%00b"), std::nullopt);
}

}  // namespace pelmora::platform
