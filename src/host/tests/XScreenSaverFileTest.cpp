#include "host/XScreenSaverFile.h"

#include <gtest/gtest.h>

#include <random>

namespace pelmora::host {

namespace {

constexpr const char* kEntry = "pelmora --root";

/// As XScreenSaver's own settings write it.
constexpr const char* kUsual =
    "# XScreenSaver Preferences File\n"
    "\n"
    "timeout:\t0:10:00\n"
    "mode:\t\trandom\n"
    "selected:\t1\n"
    "\n"
    "programs:\t\t\t\t\t\t\t      \\\n"
    "\t\t\t\tmaze --root\t\t\t\t    \\n\\\n"
    "- GL: \t\t\t\tsuperquadrics --root\t\t\t    \\n\\\n"
    "  GL: \"A title\" \tmolecule --root\t\t\t    \\n\\\n"
    "\n"
    "\n"
    "pointerHysteresis:\t10\n"
    "\n";

XScreenSaverFile parsed(const std::string& text) {
  auto file = XScreenSaverFile::parse(text);
  EXPECT_TRUE(file) << text;
  return file ? *file : *XScreenSaverFile::parse("");
}

std::string with(std::string text, const std::string& before, const std::string& added) {
  return text.insert(text.find(before), added);
}

}  // namespace

TEST(XScreenSaverFile, getsAnEntryAtTheEndOfItsListAndKeepsAllElse) {
  XScreenSaverFile file = parsed(kUsual);
  EXPECT_EQ(file.find("pelmora"), std::nullopt);
  file.add(kEntry);
  EXPECT_EQ(file.text(), with(kUsual, "\n\npointer", "\t\t\t\tpelmora --root\t\t\t    \\n\\\n"));
  EXPECT_EQ(file.find("pelmora"), 3U);
  EXPECT_EQ(file.find("superquadrics"), 1U);
}

TEST(XScreenSaverFile, isAsBeforeWhenTheEntryIsGoneAgain) {
  XScreenSaverFile file = parsed(kUsual);
  file.add(kEntry);
  file.remove(*file.find("pelmora"));
  EXPECT_EQ(file.text(), kUsual);
}

TEST(XScreenSaverFile, isMadeOfNothing) {
  XScreenSaverFile file = parsed("");
  file.add(kEntry);
  EXPECT_EQ(file.text(), "programs:\t\t\t\\\n\t\t\t\tpelmora --root\t\t\t    \\n\\\n\n");
  file.select(0);
  EXPECT_TRUE(file.isSelected(0));
  file.remove(0);
  EXPECT_EQ(file.text(), "mode:\t\trandom\nselected:\t\t-1\n");
}

TEST(XScreenSaverFile, selectsAnEntryInThePlaceOfAnother) {
  XScreenSaverFile file = parsed(kUsual);
  file.add(kEntry);
  file.select(3);
  EXPECT_TRUE(file.isSelected(3));
  EXPECT_NE(file.text().find("\nmode:\t\tone\nselected:\t3\n"), std::string::npos);
  const std::string once = file.text();
  file.select(3);
  EXPECT_EQ(file.text(), once);
}

TEST(XScreenSaverFile, switchesAnEntryOnAndKeepsItsPlaceInTheLine) {
  XScreenSaverFile file = parsed(kUsual);
  EXPECT_TRUE(file.isSwitchedOff(1));
  EXPECT_FALSE(file.isSwitchedOff(2));
  file.switchOn(1);
  EXPECT_FALSE(file.isSwitchedOff(1));
  EXPECT_NE(file.text().find("\n  GL: \t\t\t\tsuperq"), std::string::npos);
  file.switchOn(2);
  EXPECT_NE(file.text().find("\n  GL: \"A title\" \t"), std::string::npos);
}

TEST(XScreenSaverFile, keepsTheChoiceOnItsEntryWhenOneBeforeGoes) {
  XScreenSaverFile file = parsed(kUsual);
  file.select(2);
  file.remove(0);
  EXPECT_EQ(file.find("molecule"), 1U);
  EXPECT_TRUE(file.isSelected(1));
  file.remove(1);
  EXPECT_FALSE(file.isSelected(1));
  EXPECT_NE(file.text().find("mode:\t\trandom\nselected:\t-1\n"), std::string::npos);
}

TEST(XScreenSaverFile, keepsAChoiceBeyondTheListBeyondIt) {
  XScreenSaverFile file = parsed("selected: 1\nprograms: a\n");
  file.add(kEntry);
  EXPECT_NE(file.text().find("selected: 2\n"), std::string::npos);
}

TEST(XScreenSaverFile, knowsAChoiceInTheListOfOthers) {
  EXPECT_TRUE(parsed("mode: one\nselected: 3\n").selectsElsewhere());
  EXPECT_FALSE(parsed("mode: random\nselected: 3\n").selectsElsewhere());
  EXPECT_FALSE(parsed("mode: one\nselected: 0\nprograms: a\n").selectsElsewhere());
  EXPECT_FALSE(parsed("mode: one\nselected: -1\n").selectsElsewhere());
}

TEST(XScreenSaverFile, extendsListsHoweverTheyAreWritten) {
  for (const char* text : {"programs: a\\nb -c", "programs: a\\n b\n", "programs: a\\n\\\nb\\n\\\n",
                           "Programs:a\\n\\\n  b  \\n  \n", "\t programs: a \\\n\\n b\\n \\\n \n",
                           "programs: \\n\\n a \\n \\n\\\n\\n - GL: b\\n", "programs: a\\nb\\",
                           "programs: a\\n\\\nb \\n\\\n\\n\\\n\nmode: one"}) {
    XScreenSaverFile file = parsed(text);
    ASSERT_EQ(file.find("b"), 1U) << text;
    file.add(kEntry);
    EXPECT_EQ(file.find("a"), 0U) << file.text();
    EXPECT_EQ(file.find("b"), 1U) << file.text();
    EXPECT_EQ(file.find("pelmora"), 2U) << file.text();
    EXPECT_TRUE(file.text().ends_with('\n')) << file.text();
  }
}

TEST(XScreenSaverFile, fillsAnEmptyList) {
  for (const char* text : {"programs:\n", "programs: \\\n\\\n \\n\\\n\n", "programs:"}) {
    XScreenSaverFile file = parsed(std::string("a: b\n") + text);
    file.add(kEntry);
    EXPECT_EQ(file.find("pelmora"), 0U) << file.text();
    EXPECT_TRUE(file.text().starts_with("a: b\nprograms:")) << file.text();
  }
}

TEST(XScreenSaverFile, takesNoListOutOfAComment) {
  XScreenSaverFile file = parsed("# all \\\nprograms: a\n! programs: b\n;programs: c\n");
  EXPECT_EQ(file.find("a"), std::nullopt);
  file.add(kEntry);
  EXPECT_EQ(file.find("pelmora"), 0U);
}

TEST(XScreenSaverFile, keepsACommentThatOpensIntoNothing) {
  XScreenSaverFile file = parsed("# open \\\n");
  file.add(kEntry);
  EXPECT_EQ(file.find("pelmora"), 0U) << file.text();
  EXPECT_TRUE(file.text().starts_with("# open \\\n\nprograms:")) << file.text();
}

TEST(XScreenSaverFile, isRefusedWhenItMakesNoSense) {
  EXPECT_EQ(XScreenSaverFile::parse("a: b\\\nc\n\njunk\n").error().message,
            "line 4 is neither 'name: value' nor a comment");
  EXPECT_EQ(XScreenSaverFile::parse("programs: a\nprograms: b\n").error().message,
            "line 2 begins a second list of programs");
  EXPECT_FALSE(XScreenSaverFile::parse("a: b\r\n"));
  EXPECT_FALSE(XScreenSaverFile::parse(std::string("a: \0", 4)));
}

TEST(XScreenSaverFile, survivesAnythingThatCanBeRead) {
  constexpr const char* kPieces[] = {
      "programs:", "mode:", "selected:", "\\n",     "\\",       "\n", "\\\n", " ", "\t",   "-",
      "GL:",       "\"",    "#",         "pelmora", "a --root", "1",  "one",  ":", "\\\\", "\xff"};
  std::mt19937 random(4711);  // NOLINT: the same texts each time
  int read = 0;
  for (int round = 0; round < 400; ++round) {
    std::string text;
    for (auto pieces = random() % 24; pieces > 0; --pieces)
      text += kPieces[random() % std::size(kPieces)];
    auto file = XScreenSaverFile::parse(text);
    if (!file) continue;
    ++read;
    if (!file->find("pelmora")) file->add(kEntry);
    ASSERT_TRUE(file->find("pelmora")) << text << "\n---\n" << file->text();
    file->switchOn(*file->find("pelmora"));
    file->select(*file->find("pelmora"));
    ASSERT_TRUE(file->isSelected(*file->find("pelmora"))) << text << "\n---\n" << file->text();
    const auto again = XScreenSaverFile::parse(file->text());
    ASSERT_TRUE(again) << text;
    while (const auto position = file->find("pelmora")) file->remove(*position);
    ASSERT_TRUE(XScreenSaverFile::parse(file->text())) << text;
  }
  EXPECT_GT(read, 100);
}

}  // namespace pelmora::host
