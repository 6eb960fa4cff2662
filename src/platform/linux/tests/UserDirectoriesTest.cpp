#include "platform/linux/UserDirectories.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

namespace {

std::optional<FilePath> picturesIn(std::string_view text) {
  return userDirectory(text, "XDG_PICTURES_DIR", FilePath("/home/me"));
}

}  // namespace

TEST(UserDirectories, areReadFromTheirFile) {
  EXPECT_EQ(picturesIn("# This file is written by xdg-user-dirs-update\n"
                       "XDG_DESKTOP_DIR=\"$HOME/Desktop\"\nXDG_PICTURES_DIR=\"$HOME/Bilder\"\n"),
            FilePath("/home/me/Bilder"));
  EXPECT_EQ(picturesIn("XDG_PICTURES_DIR=\"/srv/photos/\""), FilePath("/srv/photos"));
  EXPECT_EQ(picturesIn("\t XDG_PICTURES_DIR = \"/a\"  # mine"), FilePath("/a"));
}

TEST(UserDirectories, mayHoldAnyCharacters) {
  EXPECT_EQ(picturesIn("XDG_PICTURES_DIR=\"$HOME/a \\\"b\\\" \\$c \\\\\xE9\""),
            FilePath("/home/me/a \"b\" $c \\\xE9"));
}

TEST(UserDirectories, areTheHomeFolderWhenSwitchedOff) {
  EXPECT_EQ(picturesIn("XDG_PICTURES_DIR=\"$HOME/\""), FilePath("/home/me"));
  EXPECT_EQ(picturesIn("XDG_PICTURES_DIR=\"$HOME\""), FilePath("/home/me"));
}

TEST(UserDirectories, takeTheLastLineThatMakesSense) {
  EXPECT_EQ(
      picturesIn("XDG_PICTURES_DIR=\"/a\"\nXDG_PICTURES_DIR=\"/b\"\nXDG_PICTURES_DIR=\"c\"\n"),
      FilePath("/b"));
}

TEST(UserDirectories, areUnknownWhereNothingMakesSense) {
  using namespace std::string_view_literals;
  for (const std::string_view text :
       {""sv, "\n\n"sv, "XDG_PICTURES_DIR"sv, "XDG_PICTURES_DIR="sv, "XDG_PICTURES_DIR=\""sv,
        "XDG_PICTURES_DIR=\"/a"sv, "XDG_PICTURES_DIR=\"/a\\"sv, "XDG_PICTURES_DIR=/a"sv,
        "XDG_PICTURES_DIR=\"\""sv, "XDG_PICTURES_DIR=\"Pictures\""sv,
        "XDG_PICTURES_DIR=\"$HOMER/a\""sv, "XDG_PICTURES_DIR=\"/a\0b\""sv,
        "XDG_PICTURES_DIRECTORY=\"/a\""sv, "#XDG_PICTURES_DIR=\"/a\""sv}) {
    EXPECT_EQ(picturesIn(text), std::nullopt) << text;
  }
}

}  // namespace pelmora::platform
