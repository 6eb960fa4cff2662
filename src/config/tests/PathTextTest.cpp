#include "config/PathText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelmora::config {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PathText, isReadableWhateverTheBytes) {
  EXPECT_EQ(pathText(FilePath("/home/anna/Bilder")), "/home/anna/Bilder");
  EXPECT_EQ(pathText(FilePath("/caf\xe9")), QString::fromUtf8("/caf\xef\xbf\xbd"));
  EXPECT_EQ(pathText(FilePath("/a\nb")), "/ab");
}

TEST(PathText, readsFileUrisByteByByte) {
  EXPECT_EQ(pathOfUri("file:///a/b%20c"), FilePath("/a/b c"));
  EXPECT_EQ(pathOfUri("file:///caf%E9/"), FilePath("/caf\xe9"));
  EXPECT_EQ(pathOfUri("file://localhost/a"), FilePath("/a"));
  EXPECT_EQ(pathOfUri("file:/a"), FilePath("/a"));
}

TEST(PathText, knowsNoPathOfOtherUris) {
  for (const char* uri : {"", "http://example.org/a", "file://server/a", "file:a", "file://",
                          "file:///a%00b", "/a"}) {
    EXPECT_EQ(pathOfUri(uri), std::nullopt) << uri;
  }
}

TEST(PathText, readsListsOfUris) {
  EXPECT_THAT(pathsOfUriList("file:///a\r\n# nothing\r\nhttp://b\r\nfile:///c"),
              ElementsAre(FilePath("/a"), FilePath("/c")));
  EXPECT_THAT(pathsOfUriList("file:///a\n\n"), ElementsAre(FilePath("/a")));
  EXPECT_THAT(pathsOfUriList(""), IsEmpty());
}

}  // namespace pelmora::config
