#include "host/Translations.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace pelmora::host {

namespace {

class TranslationsTest : public testing::Test {
 protected:
  static QString all() { return QCoreApplication::translate("Settings", "All"); }

  char name[5] = "test";
  char* words[2] = {name, nullptr};
  int count = 1;
  QApplication application{count, words};
};

}  // namespace

TEST_F(TranslationsTest, speakTheUsersLanguageAsLongAsTheyLive) {
  {
    const Translations german(QLocale("de_AT"));
    EXPECT_EQ(all(), "Alle");
  }
  EXPECT_EQ(all(), "All");
}

TEST_F(TranslationsTest, speakTheFirstLanguageOfSeveralThatThereIs) {
  const auto allIn = [](const QStringList& languages) {
    const Translations translations(QLocale("de_DE"), languages);
    return all();
  };
  EXPECT_EQ(allIn({"is", "fr-FR", "de"}), "Tous");
  EXPECT_EQ(allIn({"en-GB", "de"}), "All");
}

TEST_F(TranslationsTest, speakEnglishWhereThereAreNone) {
  const Translations icelandic(QLocale("is_IS"));
  EXPECT_EQ(all(), "All");
}

TEST_F(TranslationsTest, runFromTheRightWhereTheLanguageDoes) {
  {
    const Translations arabic(QLocale("ar_EG"));
    EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::RightToLeft);
  }
  const Translations french(QLocale("fr_FR"));
  EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::LeftToRight);
}

}  // namespace pelmora::host
