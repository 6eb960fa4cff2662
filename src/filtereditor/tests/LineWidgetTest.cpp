#include "filtereditor/LineWidget.h"

#include <gtest/gtest.h>
#include <QImage>
#include <QLineEdit>
#include <QToolButton>

namespace pelmora::filtereditor {
namespace {

/// A line with one control.
class OneField : public LineWidget {
 public:
  explicit OneField(int depth, const Actions& actions = {}) : LineWidget(depth, actions, nullptr) {
    add(field, "Text", 1);
  }
  QLineEdit* const field = new QLineEdit(this);
};

std::vector<std::string> namesIn(const LineWidget& line) {
  std::vector<std::string> names;
  for (const QWidget* control : line.controls()) {
    names.push_back(control->accessibleName().toStdString());
  }
  return names;
}

int leftOfFieldIn(OneField& line) {
  line.resize(400, 30);
  line.ensurePolished();
  line.grab();
  return line.field->x();
}

TEST(LineWidget, hasItsControlsBeforeTheButtons) {
  EXPECT_EQ(namesIn(OneField(1)),
            (std::vector<std::string>{"Text", "Add row", "Add group", "Remove"}));
  EXPECT_EQ(namesIn(OneField(0)), (std::vector<std::string>{"Text", "Add row", "Add group"}))
      << "the outermost stays";
}

TEST(LineWidget, doesWhatItsButtonsSay) {
  std::string done;
  LineWidget* pressed = nullptr;
  const auto action = [&](char sign) {
    return [&done, &pressed, sign](LineWidget* line) {
      done += sign;
      pressed = line;
    };
  };
  const OneField line(1, {.addRow = action('+'), .addGroup = action('g'), .remove = action('-')});
  for (QToolButton* button : line.findChildren<QToolButton*>()) button->click();
  EXPECT_EQ(done, "+g-");
  EXPECT_EQ(pressed, &line);
}

TEST(LineWidget, isSetInByItsDepth) {
  OneField outermost(0);
  OneField first(1);
  OneField second(2);
  const int step = leftOfFieldIn(first) - leftOfFieldIn(outermost);
  EXPECT_GT(step, 0);
  EXPECT_EQ(leftOfFieldIn(second) - leftOfFieldIn(first), step);
}

TEST(LineWidget, isMirroredWhereReadingGoesFromTheRight) {
  OneField line(2);
  const int left = leftOfFieldIn(line);
  line.setLayoutDirection(Qt::RightToLeft);
  leftOfFieldIn(line);
  EXPECT_EQ(line.width() - line.field->geometry().right() - 1, left);
  const QImage mirrored = line.grab().toImage();
  const QColor empty = mirrored.pixelColor(0, 0);
  int marks = 0;
  for (int x = line.field->geometry().right() + 1; x < line.width(); ++x) {
    if (mirrored.pixelColor(x, 0) != empty) ++marks;
  }
  EXPECT_EQ(marks, 2) << "a line for each group that it is in";
}

}  // namespace
}  // namespace pelmora::filtereditor
