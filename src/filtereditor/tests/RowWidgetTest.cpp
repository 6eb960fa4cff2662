#include "filtereditor/RowWidget.h"

#include "filtereditor/AttributeNames.h"

#include <gtest/gtest.h>
#include <QComboBox>
#include <QLineEdit>

#include <memory>
#include <vector>

namespace pelmora::filtereditor {
namespace {

using platform::predicate::Operator;

class RowWidgetTest : public testing::Test {
 protected:
  std::unique_ptr<RowWidget> make(Row row) {
    return std::make_unique<RowWidget>(
        1, std::move(row), choices,
        RowWidget::Hooks{.actions = {},
                         .changed = [this](LineWidget*, const Row& to) { changes.push_back(to); },
                         .suggest = {}},
        nullptr);
  }
  static QComboBox* choice(const RowWidget& row, const char* name) {
    for (QComboBox* box : row.findChildren<QComboBox*>()) {
      if (box->accessibleName() == name) return box;
    }
    return nullptr;
  }

  QObject owner;
  const RowChoices choices = RowChoices::make(&owner);
  std::vector<Row> changes;
};

TEST_F(RowWidgetTest, offersTheAttributesAndTheOperators) {
  const auto row = make({});
  const QComboBox* const attributes = choice(*row, "Attribute");
  ASSERT_EQ(attributes->count(), static_cast<int>(attributeNames().size()));
  EXPECT_EQ(attributes->itemText(1), "Tags");
  QStringList operators;
  for (int i = 0; i < choice(*row, "Operator")->count(); ++i) {
    operators += choice(*row, "Operator")->itemText(i);
  }
  EXPECT_EQ(operators, (QStringList{"contains", "begins with", "ends with", "is", "is not"}));
}

TEST_F(RowWidgetTest, showsEveryOperatorAndTellsOfNothingByItself) {
  for (const Operator type : {Operator::contains, Operator::beginsWith, Operator::endsWith,
                              Operator::equal, Operator::notEqual}) {
    const auto row = make({.type = type, .text = "a"});
    EXPECT_EQ(choice(*row, "Operator")->currentData().toInt(), static_cast<int>(type));
  }
  EXPECT_TRUE(changes.empty());
}

TEST_F(RowWidgetTest, tellsOfEachChangeWithAllOfTheRow) {
  const auto row = make({.attribute = "kMDItemCity", .text = "a", .options = 1});
  choice(*row, "Operator")->setCurrentText("is not");
  choice(*row, "Attribute")->setCurrentText("Keywords");
  auto* field = row->findChild<QLineEdit*>();
  field->setText("aé");
  ASSERT_EQ(changes.size(), 3U);
  EXPECT_EQ(
      changes[0],
      (Row{.attribute = "kMDItemCity", .type = Operator::notEqual, .text = "a", .options = 1}));
  EXPECT_EQ(
      changes[2],
      (Row{
          .attribute = "kMDItemKeywords", .type = Operator::notEqual, .text = "aé", .options = 1}));
  EXPECT_EQ(row->entry(), field);
}

TEST_F(RowWidgetTest, showsAnUnknownAttributeShortenedAndKeepsItWhole) {
  const std::string name = "an.attribute.of.somebody.with.a.name.that.is.very.long.indeed";
  const auto row = make({.attribute = name, .text = ""});
  const auto other = make({});
  QComboBox* const attributes = choice(*row, "Attribute");
  EXPECT_EQ(attributes->currentData().toString().toStdString(), name);
  EXPECT_TRUE(attributes->currentText().contains(QChar(0x2026)));
  EXPECT_EQ(attributes->toolTip().toStdString(), name);
  EXPECT_EQ(attributes->width(), choice(*other, "Attribute")->sizeHint().width());
  row->findChild<QLineEdit*>()->setText("x");
  EXPECT_EQ(changes.at(0), (Row{.attribute = name, .text = "x"}));
}

TEST_F(RowWidgetTest, holdsTheLongestTextAndLetsNoLongerOneBeTypedThanItWouldShowAgain) {
  const auto loaded = make({.text = std::string(kLongestText, 'x')});
  EXPECT_EQ(loaded->findChild<QLineEdit*>()->text().size(), static_cast<int>(kLongestText));
  const auto typed = make({});
  typed->findChild<QLineEdit*>()->insert(QString(static_cast<int>(kLongestText), QChar(0x6771)));
  EXPECT_EQ(changes.at(0).text.size(), kLongestText);
}

}  // namespace
}  // namespace pelmora::filtereditor
