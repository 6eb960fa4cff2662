#include "filtereditor/tests/EditorFixture.h"

#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWindow>

namespace pelmora::filtereditor {
namespace {

class PredicateEditorKeysTest : public EditorFixture {
 protected:
  /// The names of what takes the focus, from the field before the editor to the one behind it.
  std::vector<std::string> tabbed() {
    std::vector<std::string> names;
    before->setFocus();
    for (int i = 0; i < 40; ++i) {
      press(Qt::Key_Tab);
      if (QApplication::focusWidget() == behind) return names;
      names.push_back(QApplication::focusWidget()->accessibleName().toStdString());
    }
    return {"never left"};
  }
};

const std::vector<std::string> kHead = {"Match", "Add row", "Add group"};
const std::vector<std::string> kGroup = {"Match", "Add row", "Add group", "Remove"};
const std::vector<std::string> kRow = {"Attribute", "Operator",  "Text",
                                       "Add row",   "Add group", "Remove"};

std::vector<std::string> joined(const std::vector<std::vector<std::string>>& parts) {
  std::vector<std::string> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST_F(PredicateEditorKeysTest, goFromRowToRowAndThenOn) {
  set("kMDItemCity == \"a\" AND (kMDItemCity == \"b\" OR kMDItemCity == \"c\")");
  EXPECT_EQ(tabbed(), joined({kHead, kRow, kGroup, kRow, kRow}));
}

TEST_F(PredicateEditorKeysTest, goThroughRowsThatWereAddedInTheirPlace) {
  set("kMDItemCity == \"a\" AND kMDItemCity == \"b\"");
  click("Add group", 1);
  click("Add row", 0);
  click("Remove", 1);
  EXPECT_EQ(tabbed(), joined({kHead, kRow, kGroup, kRow, kRow}));
}

TEST_F(PredicateEditorKeysTest, addARowBehindTheOneWithTheFocus) {
  set("kMDItemCity == \"a\" AND kMDItemCity == \"b\"");
  field(0)->setFocus();
  press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(field(1)->hasFocus());
  QTest::keyClicks(QApplication::focusWidget(), "c");
  EXPECT_EQ(text(),
            "kMDItemCity == \"a\" AND kMDItemFSName CONTAINS[cd] \"c\" AND kMDItemCity == \"b\"");
  for (const char* name : {"Attribute", "Operator"}) {
    choice(name, 0)->setFocus();
    press(Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_TRUE(field(1)->hasFocus()) << name;
  }
  shown<QToolButton>("Remove").front()->setFocus();
  press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(field(1)->hasFocus());
  EXPECT_EQ(shown<QLineEdit>("Text").size(), 6U);
}

TEST_F(PredicateEditorKeysTest, addNoRowWithoutControl) {
  set("kMDItemCity == \"a\"");
  field(0)->setFocus();
  press(Qt::Key_Return);
  press(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(shown<QLineEdit>("Text").size(), 1U);
  EXPECT_EQ(edits, 0);
}

TEST_F(PredicateEditorKeysTest, leaveReturnToTheSheetAndKeepControlReturnFromIt) {
  QDialog sheet;
  auto* layout = new QVBoxLayout(&sheet);
  auto* rows = new PredicateEditor;
  auto* okay = new QPushButton("OK");
  layout->addWidget(rows);
  layout->addWidget(okay);
  okay->setDefault(true);
  int pressed = 0;
  QObject::connect(okay, &QPushButton::clicked, okay, [&] { ++pressed; });
  rows->addRow();
  sheet.show();
  sheet.activateWindow();
  QApplication::processEvents();
  rows->findChild<QLineEdit*>()->setFocus();
  press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(pressed, 0);
  EXPECT_EQ(rows->findChildren<QLineEdit*>().size(), 2);
  press(Qt::Key_Return);
  EXPECT_EQ(pressed, 1);
}

TEST_F(PredicateEditorKeysTest, pressTheButtons) {
  set("kMDItemCity == \"a\"");
  shown<QToolButton>("Add group").at(1)->setFocus();
  press(Qt::Key_Space);
  EXPECT_EQ(shown<QComboBox>("Match").size(), 2U);
  shown<QToolButton>("Remove").at(0)->setFocus();
  press(Qt::Key_Space);
  EXPECT_EQ(shown<QComboBox>("Match").size(), 2U);
  ASSERT_EQ(shown<QLineEdit>("Text").size(), 1U);
  EXPECT_EQ(field(0)->text(), "");
}

TEST_F(PredicateEditorKeysTest, leaveTheFocusToTheNextRowOrElseTheLast) {
  set("kMDItemCity == \"a\" AND kMDItemCity == \"b\" AND kMDItemCity == \"c\"");
  const auto removeByKey = [&](std::size_t row) {
    shown<QToolButton>("Remove").at(row)->setFocus();
    press(Qt::Key_Space);
  };
  removeByKey(1);
  EXPECT_EQ(field(1)->text(), "c");
  EXPECT_TRUE(field(1)->hasFocus());
  removeByKey(1);
  EXPECT_TRUE(field(0)->hasFocus());
  removeByKey(0);
  EXPECT_TRUE(choice("Match", 0)->hasFocus());
}

TEST_F(PredicateEditorKeysTest, leaveTheFocusWhereItIsWhenAnotherRowIsRemovedByTheMouse) {
  set("kMDItemCity == \"a\" AND kMDItemCity == \"b\" AND kMDItemCity == \"c\"");
  QLineEdit* const last = field(2);
  last->setFocus();
  click("Remove", 0);
  EXPECT_TRUE(last->hasFocus());
}

TEST_F(PredicateEditorKeysTest, changeTheChoices) {
  set("kMDItemCity == \"a\" AND kMDItemCity == \"b\"");
  choice("Match", 0)->setFocus();
  press(Qt::Key_Down);
  choice("Operator", 0)->setFocus();
  press(Qt::Key_Up);
  choice("Attribute", 1)->setFocus();
  press(Qt::Key_Home);
  EXPECT_EQ(text(), "kMDItemCity ENDSWITH \"a\" OR kMDItemFSName == \"b\"");
}

TEST_F(PredicateEditorKeysTest, reachTheButtonThatReplacesAFilter) {
  set("TRUEPREDICATE");
  EXPECT_EQ(tabbed(), (std::vector<std::string>{"Filter", "Replace It"}));
  shown<QPushButton>("Replace It").at(0)->setFocus();
  press(Qt::Key_Space);
  EXPECT_TRUE(field(0)->hasFocus());
  EXPECT_EQ(tabbed(), joined({kHead, kRow}));
}

TEST_F(PredicateEditorKeysTest, goToTheFirstLineFromTheLabelOfTheEditor) {
  QLabel label("&Show", &window);
  label.setBuddy(editor);
  label.show();
  const auto pressLabel = [this] {
    behind->setFocus();
    press(Qt::Key_S, Qt::AltModifier);
  };
  editor->addRow();
  pressLabel();
  EXPECT_TRUE(choice("Match", 0)->hasFocus());
  set("kMDItemCity == \"a\" OR kMDItemCity == \"b\"");
  pressLabel();
  EXPECT_TRUE(choice("Match", 0)->hasFocus());
  set("TRUEPREDICATE");
  pressLabel();
  EXPECT_EQ(QApplication::focusWidget(), editor->findChild<QPlainTextEdit*>());
}

TEST_F(PredicateEditorKeysTest, areLeftWhereTheyAreByAClickBesideTheLines) {
  editor->addRow();
  behind->setFocus();
  QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                    editor->mapTo(&window, QPoint(40, editor->height() - 20)));
  EXPECT_TRUE(behind->hasFocus());
}

}  // namespace
}  // namespace pelmora::filtereditor
