#include "filtereditor/KeptNotice.h"

#include <gtest/gtest.h>
#include <QPlainTextEdit>
#include <QPushButton>

namespace pelmora::filtereditor {

TEST(KeptNotice, showsTheTextOfTheFilterForReading) {
  KeptNotice notice([] {}, nullptr);
  notice.setText("kMDItemCity LIKE \"<b>Été*\"");
  const auto* text = notice.findChild<QPlainTextEdit*>();
  EXPECT_EQ(text->toPlainText(), "kMDItemCity LIKE \"<b>Été*\"");
  EXPECT_TRUE(text->isReadOnly());
  EXPECT_TRUE(text->tabChangesFocus());
}

TEST(KeptNotice, showsTheBeginningOfAVeryLongText) {
  KeptNotice notice([] {}, nullptr);
  notice.setText(std::string(1'000'000, 'x'));
  const QString shown = notice.findChild<QPlainTextEdit*>()->toPlainText();
  EXPECT_LT(shown.size(), 100'000);
  EXPECT_TRUE(shown.startsWith("xxx"));
  EXPECT_TRUE(shown.endsWith(QChar(0x2026)));
}

TEST(KeptNotice, replacesByItsButtonAlone) {
  int replaced = 0;
  KeptNotice notice([&] { ++replaced; }, nullptr);
  auto* button = notice.findChild<QPushButton*>();
  EXPECT_EQ(button->text(), "Replace It");
  EXPECT_FALSE(button->autoDefault()) << "Return is the sheet's";
  button->click();
  EXPECT_EQ(replaced, 1);
}

}  // namespace pelmora::filtereditor
