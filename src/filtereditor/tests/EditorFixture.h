#pragma once

#include "filtereditor/PredicateEditor.h"
#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <string>
#include <vector>

namespace pelmora::filtereditor {

/// An editor in a window, between two fields that are not its own.
class EditorFixture : public testing::Test {
 protected:
  EditorFixture() {
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(before = new QLineEdit);
    layout->addWidget(editor = new PredicateEditor);
    layout->addWidget(behind = new QLineEdit);
    window.resize(600, 400);
    window.show();
    window.activateWindow();
    QApplication::processEvents();
    QObject::connect(editor, &PredicateEditor::edited, editor, [this] { ++edits; });
  }

  void set(const char* text) {
    editor->setObjectValue(platform::predicate::parsePredicate(text).value());
    QApplication::processEvents();
  }
  [[nodiscard]] std::string text() const {
    const auto predicate = editor->predicate();
    return predicate ? textOf(*predicate) : "(none)";
  }

  /// What is shown of a kind under a name, from the top.
  template <typename Widget>
  [[nodiscard]] std::vector<Widget*> shown(const char* name) const {
    std::vector<Widget*> found;
    for (Widget* widget : editor->findChildren<Widget*>()) {
      const bool isIt = widget->accessibleName() == name && widget->isVisibleTo(editor);
      if (isIt) found.push_back(widget);
    }
    const auto top = [this](Widget* widget) { return widget->mapTo(editor, QPoint()).y(); };
    std::sort(found.begin(), found.end(),
              [&](Widget* one, Widget* other) { return top(one) < top(other); });
    return found;
  }
  [[nodiscard]] QLineEdit* field(std::size_t row) const { return shown<QLineEdit>("Text").at(row); }
  [[nodiscard]] QComboBox* choice(const char* name, std::size_t at) const {
    return shown<QComboBox>(name).at(at);
  }
  void click(const char* name, std::size_t line) {
    QTest::mouseClick(shown<QToolButton>(name).at(line), Qt::LeftButton);
    QApplication::processEvents();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    QApplication::processEvents();
  }

  QWidget window;
  QLineEdit* before = nullptr;
  PredicateEditor* editor = nullptr;
  QLineEdit* behind = nullptr;
  int edits = 0;
};

}  // namespace pelmora::filtereditor
