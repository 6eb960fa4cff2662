#include "filtereditor/SuggestingLineEdit.h"

#include <gtest/gtest.h>
#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QStringListModel>
#include <QTest>
#include <QVBoxLayout>

#include <thread>

namespace pelmora::filtereditor {
namespace {

class SuggestingLineEditTest : public testing::Test {
 protected:
  using Answer = std::function<void(std::vector<std::string>)>;

  SuggestingLineEditTest() {
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(other = new QLineEdit);
    layout->addWidget(field = new SuggestingLineEdit);
    field->setAttribute("kMDItemCity");
    field->setSuggest([this](const std::string& attribute, Answer answer) {
      asked.push_back(attribute);
      answers.push_back(std::move(answer));
    });
    window.show();
    window.activateWindow();
    QApplication::processEvents();
    other->setFocus();
  }

  [[nodiscard]] QStringList offered() const {
    if (!field->completer()) return {};
    QStringList texts;
    const QAbstractItemModel* model = field->completer()->completionModel();
    for (int i = 0; i < model->rowCount(); ++i) texts += model->index(i, 0).data().toString();
    return texts;
  }
  void answer(std::size_t question, std::vector<std::string> values) {
    answers.at(question)(std::move(values));
    QApplication::processEvents();
  }

  QWidget window;
  QLineEdit* other = nullptr;
  SuggestingLineEdit* field = nullptr;
  std::vector<std::string> asked;
  std::vector<Answer> answers;
};

TEST_F(SuggestingLineEditTest, asksWhenItGetsTheFocus) {
  EXPECT_TRUE(asked.empty());
  field->setFocus();
  EXPECT_EQ(asked, std::vector<std::string>{"kMDItemCity"});
}

TEST_F(SuggestingLineEditTest, offersThoseInWhichTheTextStandsInAnyCase) {
  field->setFocus();
  answer(0, {"Oslo", "Bergen", "Old Oslo"});
  QTest::keyClicks(field, "oS");
  EXPECT_EQ(offered(), (QStringList{"Oslo", "Old Oslo"}));
  EXPECT_TRUE(field->completer()->popup()->isVisible());
  QTest::keyClick(field->completer()->popup(), Qt::Key_Down);
  QTest::keyClick(field->completer()->popup(), Qt::Key_Return);
  EXPECT_EQ(field->text(), "Oslo");
}

TEST_F(SuggestingLineEditTest, offersAllByDown) {
  field->setFocus();
  QTest::keyClick(field, Qt::Key_Down);
  answer(0, {"Oslo", "Bergen"});
  QTest::keyClick(field, Qt::Key_Down);
  EXPECT_TRUE(field->completer()->popup()->isVisible());
  EXPECT_EQ(offered(), (QStringList{"Oslo", "Bergen"}));
  field->completer()->popup()->hide();
}

TEST_F(SuggestingLineEditTest, takesAnAnswerFromAnotherThread) {
  field->setFocus();
  std::thread([&] { answers.at(0)({"Oslo"}); }).join();
  EXPECT_TRUE(offered().isEmpty()) << "not before it is this thread's turn";
  QApplication::processEvents();
  EXPECT_EQ(offered(), QStringList{"Oslo"});
}

TEST_F(SuggestingLineEditTest, dropsAnswersAboutAnotherAttribute) {
  field->setFocus();
  field->setAttribute("kMDItemCountry");
  EXPECT_EQ(asked, (std::vector<std::string>{"kMDItemCity", "kMDItemCountry"}));
  answer(0, {"Oslo"});
  EXPECT_TRUE(offered().isEmpty());
  answer(1, {"Norway"});
  EXPECT_EQ(offered(), QStringList{"Norway"});
  other->setFocus();
  field->setAttribute("kMDItemTitle");
  EXPECT_TRUE(offered().isEmpty());
  EXPECT_EQ(asked.size(), 2U) << "not before it has the focus";
}

TEST_F(SuggestingLineEditTest, takesTheNewestAnswer) {
  field->setFocus();
  answer(0, {"Oslo"});
  other->setFocus();
  field->setFocus();
  answer(1, {"Oslo", "Bergen"});
  EXPECT_EQ(offered(), (QStringList{"Oslo", "Bergen"}));
  answer(0, {});
  EXPECT_EQ(offered(), (QStringList{"Oslo", "Bergen"}));
}

TEST_F(SuggestingLineEditTest, takesNoAnswerWhenItIsGone) {
  field->setFocus();
  answers.at(0)({"Oslo"});
  delete field;
  QApplication::processEvents();
  answers.at(0)({"Oslo"});
  QApplication::processEvents();
}

TEST_F(SuggestingLineEditTest, isAPlainFieldWithoutASource) {
  SuggestingLineEdit plain;
  plain.show();
  plain.setFocus();
  QTest::keyClicks(&plain, "a");
  QTest::keyClick(&plain, Qt::Key_Down);
  EXPECT_EQ(plain.text(), "a");
}

}  // namespace
}  // namespace pelmora::filtereditor
