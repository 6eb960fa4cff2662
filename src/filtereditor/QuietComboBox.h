#pragma once

#include <QComboBox>
#include <QWheelEvent>

namespace pelmora::filtereditor {

/// A choice in something that scrolls: the wheel turns what is around it, not the choice. Thread:
/// main.
class QuietComboBox : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

}  // namespace pelmora::filtereditor
