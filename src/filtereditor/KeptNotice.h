#pragma once

#include <QWidget>

#include <functional>
#include <string>

class QPlainTextEdit;
class QPushButton;

namespace pelmora::filtereditor {

/// Says of a filter that it cannot be edited here and is kept, shows its text, and offers to
/// replace it. Thread: main.
class KeptNotice : public QWidget {
 public:
  KeptNotice(std::function<void()> replace, QWidget* parent);

  /// UTF-8; of a very long one the beginning is shown.
  void setText(const std::string& text);

  /// What takes the focus first, and last.
  [[nodiscard]] QWidget* entry() const;
  [[nodiscard]] QWidget* lastControl() const;

 private:
  QPlainTextEdit* const _text;
  QPushButton* const _replace;
};

}  // namespace pelmora::filtereditor
