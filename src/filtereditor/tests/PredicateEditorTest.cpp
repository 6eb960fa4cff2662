#include "filtereditor/PredicateEditor.h"

#include "filtereditor/tests/EditorFixture.h"
#include "platform/Log.h"
#include "platform/predicate/PredicateArchive.h"
#include "platform/predicate/PredicateEmptiness.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

namespace pelmora::filtereditor {
namespace {

using namespace platform::predicate;

class PredicateEditorTest : public EditorFixture {};

class Unheard : public platform::Log {
  void write(std::string_view /*line*/) override {}
};

bool isNoFilter(const PredicateEditor& editor) {
  Unheard log;
  return isEmpty(editor.predicate().value(), log);
}

constexpr const char* kNested =
    "kMDItemFSName CONTAINS[cd] \"beach\" AND (kMDItemCity == \"Oslo\" OR NOT (kMDItemKeywords "
    "BEGINSWITH \"a\" OR kMDItemKeywords ENDSWITH[c] \"b\")) AND kMDItemKind != \"c\"";

TEST_F(PredicateEditorTest, hasNoPredicateBeforeItGetsOne) {
  EXPECT_EQ(editor->predicate(), std::nullopt);
}

TEST_F(PredicateEditorTest, showsOneEmptyRowThatIsNoFilterAndCanBeArchived) {
  editor->addRow();
  EXPECT_EQ(shown<QLineEdit>("Text").size(), 1U);
  EXPECT_EQ(choice("Attribute", 0)->currentText(), "File name");
  EXPECT_EQ(choice("Operator", 0)->currentText(), "contains");
  EXPECT_EQ(text(), "kMDItemFSName CONTAINS[cd] \"\"");
  EXPECT_TRUE(isNoFilter(*editor));
  EXPECT_TRUE(writePredicateArchive(editor->predicate().value()).ok());
  EXPECT_EQ(edits, 0);
}

TEST_F(PredicateEditorTest, isAFilterOnceSomethingIsTyped) {
  editor->addRow();
  QTest::keyClicks(field(0), "sea");
  EXPECT_EQ(text(), "kMDItemFSName CONTAINS[cd] \"sea\"");
  EXPECT_FALSE(isNoFilter(*editor));
  EXPECT_EQ(edits, 3);
  field(0)->clear();
  EXPECT_TRUE(isNoFilter(*editor));
}

TEST_F(PredicateEditorTest, givesBackWhatItWasGiven) {
  for (const char* given : {kNested, "kMDItemCity == \"Oslo\"", "my.own.name CONTAINS \"x\"",
                            "NOT (kMDItemCity == \"a\" OR kMDItemCity == \"b\")"}) {
    set(given);
    EXPECT_EQ(editor->predicate(), parsePredicate(given).value());
  }
  EXPECT_EQ(edits, 0);
}

TEST_F(PredicateEditorTest, showsWhatItWasGiven) {
  set(kNested);
  const auto texts = shown<QLineEdit>("Text");
  ASSERT_EQ(texts.size(), 5U);
  EXPECT_EQ(texts[0]->text(), "beach");
  EXPECT_EQ(texts[4]->text(), "c");
  EXPECT_EQ(choice("Attribute", 1)->currentText(), "City");
  EXPECT_EQ(choice("Operator", 1)->currentText(), "is");
  EXPECT_EQ(choice("Operator", 2)->currentText(), "begins with");
  EXPECT_EQ(choice("Operator", 3)->currentText(), "ends with");
  EXPECT_EQ(choice("Operator", 4)->currentText(), "is not");
  const auto heads = shown<QComboBox>("Match");
  ASSERT_EQ(heads.size(), 3U);
  EXPECT_EQ(heads[0]->currentText(), "All of the following");
  EXPECT_EQ(heads[1]->currentText(), "Any of the following");
  EXPECT_EQ(heads[2]->currentText(), "None of the following");
  const auto left = [this](QWidget* widget) { return widget->mapTo(editor, QPoint()).x(); };
  EXPECT_LT(left(heads[0]), left(heads[1]));
  EXPECT_LT(left(heads[1]), left(heads[2]));
  EXPECT_EQ(left(heads[1]), left(choice("Attribute", 0)));
}

TEST_F(PredicateEditorTest, keepsTheOptionsOfARowThatIsEdited) {
  set("kMDItemCity ==[c] \"Oslo\"");
  QTest::keyClick(field(0), Qt::Key_End);
  QTest::keyClicks(field(0), "!");
  EXPECT_EQ(text(), "kMDItemCity ==[c] \"Oslo!\"");
}

TEST_F(PredicateEditorTest, keepsLineBreaksInATextThatIsNotEdited) {
  set("kMDItemCity == \"two\\nlines\" AND kMDItemCity == \"b\"");
  QTest::keyClicks(field(1), "a");
  EXPECT_EQ(text(), "kMDItemCity == \"two\\nlines\" AND kMDItemCity == \"ab\"");
}

TEST_F(PredicateEditorTest, replacesWhatItShowed) {
  set(kNested);
  set("kMDItemCity == \"Oslo\"");
  EXPECT_EQ(shown<QLineEdit>("Text").size(), 1U);
  EXPECT_EQ(shown<QComboBox>("Match").size(), 1U);
}

TEST_F(PredicateEditorTest, addsRowsByTheButton) {
  set("kMDItemCity == \"a\" AND kMDItemCity == \"b\"");
  click("Add row", 1);
  EXPECT_TRUE(field(1)->hasFocus());
  QTest::keyClicks(field(1), "new");
  EXPECT_EQ(text(),
            "kMDItemCity == \"a\" AND kMDItemFSName CONTAINS[cd] \"new\" AND kMDItemCity == \"b\"");
  click("Add row", 0);
  EXPECT_TRUE(field(0)->hasFocus()) << "behind the head: the first";
}

TEST_F(PredicateEditorTest, addsGroupsByTheButton) {
  set("kMDItemCity == \"a\"");
  click("Add group", 1);
  EXPECT_TRUE(field(1)->hasFocus());
  QTest::keyClicks(field(1), "b");
  click("Add row", 3);
  QTest::keyClicks(field(2), "c");
  EXPECT_EQ(text(),
            "kMDItemCity == \"a\" AND (kMDItemFSName CONTAINS[cd] \"b\" OR kMDItemFSName "
            "CONTAINS[cd] \"c\")");
}

TEST_F(PredicateEditorTest, removesRowsAndGroupsByTheButton) {
  set(kNested);
  click("Remove", 1);  // the "any", with the "none" in it
  EXPECT_EQ(text(), "kMDItemFSName CONTAINS[cd] \"beach\" AND kMDItemKind != \"c\"");
  EXPECT_EQ(shown<QComboBox>("Match").size(), 1U);
  click("Remove", 0);
  EXPECT_EQ(editor->predicate(),
            Predicate(Compound{.type = CompoundType::conjunction,
                               .subpredicates = {parsePredicate("kMDItemKind != \"c\"").value()}}));
  EXPECT_EQ(edits, 2);
}

TEST_F(PredicateEditorTest, isAnEmptyConjunctionWithoutRows) {
  set("kMDItemCity == \"a\" OR kMDItemCity == \"b\"");
  click("Remove", 0);
  click("Remove", 0);
  EXPECT_EQ(editor->predicate(), Predicate(Compound{}));
  EXPECT_TRUE(isNoFilter(*editor));
  EXPECT_TRUE(writePredicateArchive(editor->predicate().value()).ok());
  EXPECT_EQ(choice("Match", 0)->currentText(), "All of the following");
  click("Add row", 0);
  EXPECT_EQ(text(), "kMDItemFSName CONTAINS[cd] \"\"");
}

TEST_F(PredicateEditorTest, takesTheChoices) {
  set("kMDItemCity == \"a\" AND kMDItemCity == \"b\"");
  choice("Attribute", 0)->setCurrentText("Tags");
  choice("Operator", 0)->setCurrentText("ends with");
  choice("Match", 0)->setCurrentText("Any of the following");
  EXPECT_EQ(text(), "kMDItemUserTags ENDSWITH \"a\" OR kMDItemCity == \"b\"");
  EXPECT_EQ(edits, 3);
}

TEST_F(PredicateEditorTest, writesANoneThatMeansNoneToTheSaver) {
  set("kMDItemCity == \"a\" AND kMDItemCity == \"b\"");
  choice("Match", 0)->setCurrentText("None of the following");
  const auto none = parsePredicate("NOT (kMDItemCity == \"a\" OR kMDItemCity == \"b\")").value();
  EXPECT_EQ(editor->predicate(), Predicate(Compound{.subpredicates = {none}}));
}

TEST_F(PredicateEditorTest, keepsWhatItCannotShowUntilItIsReplaced) {
  const char* given = "kMDItemStarRating >= 4 AND kMDItemCity == \"Oslo\"";
  set(given);
  EXPECT_EQ(text(), given);
  EXPECT_TRUE(shown<QLineEdit>("Text").empty());
  EXPECT_EQ(shown<QPlainTextEdit>("Filter").at(0)->toPlainText(), given);
  editor->addRow();
  press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(text(), given);
  EXPECT_EQ(edits, 0);

  QTest::mouseClick(shown<QPushButton>("Replace It").at(0), Qt::LeftButton);
  QApplication::processEvents();
  EXPECT_EQ(text(), "kMDItemFSName CONTAINS[cd] \"\"");
  EXPECT_EQ(edits, 1);
  EXPECT_TRUE(field(0)->hasFocus());
  EXPECT_TRUE(shown<QPlainTextEdit>("Filter").empty());
}

TEST_F(PredicateEditorTest, showsRowsAgainAfterAFilterThatItCouldNot) {
  set("TRUEPREDICATE");
  EXPECT_EQ(editor->predicate(), Predicate(Fixed{true}));
  set("kMDItemCity == \"Oslo\"");
  EXPECT_EQ(text(), "kMDItemCity == \"Oslo\"");
  EXPECT_EQ(shown<QLineEdit>("Text").size(), 1U);
  EXPECT_TRUE(shown<QPushButton>("Replace It").empty());
}

TEST_F(PredicateEditorTest, showsAnAttributeThatItDoesNotOfferUnderItsName) {
  set("own.name == \"a\" AND kMDItemCity == \"b\"");
  EXPECT_EQ(choice("Attribute", 0)->currentText(), "own.name");
  EXPECT_LT(choice("Attribute", 1)->findText("own.name"), 0);
  choice("Attribute", 0)->setCurrentText("Title");
  EXPECT_EQ(text(), "kMDItemTitle == \"a\" AND kMDItemCity == \"b\"");
}

TEST_F(PredicateEditorTest, refusesWhatIsBeyondTheLimits) {
  Predicate deepest = parsePredicate("kMDItemCity == \"a\"").value();
  for (;;) {
    const Predicate deeper =
        Compound{.type = CompoundType::disjunction, .subpredicates = {deepest}};
    if (!isWithinLimits(deeper)) break;
    deepest = deeper;
  }
  editor->setObjectValue(deepest);
  QApplication::processEvents();
  const std::size_t groups = shown<QComboBox>("Match").size();
  click("Add group", groups);
  QComboBox* const innermost = shown<QComboBox>("Match").back();
  innermost->setCurrentText("None of the following");
  EXPECT_EQ(innermost->currentText(), "Any of the following");
  EXPECT_EQ(shown<QComboBox>("Match").size(), groups);
  EXPECT_EQ(editor->predicate(), deepest);
  EXPECT_EQ(edits, 0);
}

TEST_F(PredicateEditorTest, asksForSuggestionsOfTheRowsAttribute) {
  std::vector<std::string> asked;
  editor->setSuggest([&](const std::string& attribute, const auto& answer) {
    asked.push_back(attribute);
    answer({"Oslo", "Bergen"});
  });
  set("kMDItemCity == \"a\" AND kMDItemTitle == \"b\"");
  field(1)->setFocus();
  field(0)->setFocus();
  choice("Attribute", 0)->setCurrentText("Country");
  field(0)->setFocus();
  EXPECT_EQ(asked, (std::vector<std::string>{"kMDItemTitle", "kMDItemCity", "kMDItemCountry"}));
}

TEST_F(PredicateEditorTest, scrollsToTheRowThatIsAdded) {
  std::string many = "kMDItemCity == \"0\"";
  for (int i = 1; i < 20; ++i) many += " AND kMDItemCity == \"" + std::to_string(i) + "\"";
  set(many.c_str());
  auto* scroll = editor->findChild<QScrollArea*>();
  EXPECT_GT(scroll->verticalScrollBar()->maximum(), 0);
  EXPECT_EQ(scroll->verticalScrollBar()->value(), 0);
  field(19)->setFocus();
  press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(scroll->verticalScrollBar()->value(), scroll->verticalScrollBar()->maximum());
  EXPECT_TRUE(field(20)->hasFocus());
  EXPECT_FALSE(field(20)->visibleRegion().isEmpty());
}

TEST_F(PredicateEditorTest, hearsNoMoreOfALineThatWasTakenAway) {
  set("kMDItemCity == \"a\" AND (kMDItemCity == \"b\" OR kMDItemCity == \"c\")");
  QLineEdit* const typed = field(1);
  QComboBox* const attribute = choice("Attribute", 1);
  QComboBox* const type = choice("Operator", 1);
  QComboBox* const match = choice("Match", 1);
  std::vector<QToolButton*> buttons;
  for (const char* name : {"Add row", "Add group", "Remove"}) {
    for (QToolButton* button : shown<QToolButton>(name)) {
      const bool isOfGroup = match->parentWidget()->isAncestorOf(button);
      if (isOfGroup || typed->parentWidget()->isAncestorOf(button)) buttons.push_back(button);
    }
  }
  ASSERT_EQ(buttons.size(), 6U);
  QTest::mouseClick(shown<QToolButton>("Remove").at(1), Qt::LeftButton);  // the group
  const std::string left = "kMDItemCity == \"a\"";
  ASSERT_EQ(text(), left);
  edits = 0;
  typed->setText("z");
  attribute->setCurrentIndex(0);
  type->setCurrentIndex(0);
  match->setCurrentIndex(0);
  for (QToolButton* button : buttons) button->click();
  EXPECT_EQ(text(), left);
  EXPECT_EQ(edits, 0);
  EXPECT_EQ(shown<QLineEdit>("Text").size(), 1U);
}

TEST_F(PredicateEditorTest, hasRoomForARowAtItsSmallest) {
  set(kNested);
  window.resize(window.minimumSizeHint());
  QApplication::processEvents();
  EXPECT_EQ(editor->findChild<QScrollArea*>()->horizontalScrollBar()->maximum(), 0);
}

}  // namespace
}  // namespace pelmora::filtereditor
