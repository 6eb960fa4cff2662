#include "platform/linux/DesktopEntry.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(DesktopEntry, isNamedForItsSuffix) {
  EXPECT_TRUE(DesktopEntry::hasEntryName("a.desktop"));
  EXPECT_FALSE(DesktopEntry::hasEntryName("desktop"));
  EXPECT_FALSE(DesktopEntry::hasEntryName("a.desktop.jpg"));
}

TEST(DesktopEntry, tellsItsTypeAndUrl) {
  const DesktopEntry entry = DesktopEntry::parse(
      "# made by hand\n[Desktop Entry]\nVersion=1.0\nType=Link\nName=Elsewhere\nURL=file:///a\n");
  EXPECT_EQ(entry.type, "Link");
  EXPECT_EQ(entry.url, "file:///a");
  EXPECT_TRUE(entry.isFileLink());
}

TEST(DesktopEntry, readsFilesOfOtherSystems) {
  const DesktopEntry entry =
      DesktopEntry::parse("\xEF\xBB\xBF[Desktop Entry]\r\n Type = Link \r\nURL\t=\tfile:/a\r\n");
  EXPECT_EQ(entry.type, "Link");
  EXPECT_EQ(entry.url, "file:/a");
}

TEST(DesktopEntry, resolvesEscapes) {
  EXPECT_EQ(DesktopEntry::parse("[Desktop Entry]\nURL=\\sa\\tb\\nc\\rd\\\\e\\").url,
            " a\tb\nc\rd\\e\\");
}

TEST(DesktopEntry, readsItsOwnGroupOnly) {
  const DesktopEntry entry = DesktopEntry::parse(
      "URL=file:///before\n[Desktop Action Open]\nURL=file:///other\n[Desktop Entry]\n"
      "URL[de]=file:///german\nURL=file:///a\nURL=file:///second\n[More]\nType=Link\n");
  EXPECT_EQ(entry.url, "file:///a");
  EXPECT_EQ(entry.type, "");
  EXPECT_FALSE(entry.isFileLink());
}

TEST(DesktopEntry, isNoFileLinkWithAnotherTypeOrScheme) {
  EXPECT_FALSE(
      DesktopEntry::parse("[Desktop Entry]\nType=Application\nURL=file:///a").isFileLink());
  EXPECT_FALSE(DesktopEntry::parse("[Desktop Entry]\nType=Link\nURL=https://a/b").isFileLink());
  EXPECT_FALSE(DesktopEntry::parse("[Desktop Entry]\nType=Link\n").isFileLink());
}

TEST(DesktopEntry, passesOverWhatMakesNoSense) {
  using namespace std::string_view_literals;
  const DesktopEntry entry = DesktopEntry::parse(
      "[Desktop Entry\n=\n==\n[\n]\n\0\xFF\n[Desktop Entry]\n=x\nURL\nType=\\"sv);
  EXPECT_EQ(entry.type, "\\");
  EXPECT_EQ(entry.url, "");
}

}  // namespace pelmora::platform
