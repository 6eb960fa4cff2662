#pragma once

#include <QCheckBox>
#include <QPersistentModelIndex>
#include <QWidget>

namespace pelmora::config {

/// The cell with the checkbox that switches one source on or off. Thread: main.
class EnabledCellView : public QWidget {
 public:
  explicit EnabledCellView(QWidget* parent = nullptr);

  [[nodiscard]] QCheckBox& cb() { return *_cb; }
  /// The source, as long as it has a row.
  [[nodiscard]] const QPersistentModelIndex& sourceDict() const { return _sourceDict; }
  void setSourceDict(const QPersistentModelIndex& sourceDict) { _sourceDict = sourceDict; }

 private:
  QPersistentModelIndex _sourceDict;
  QCheckBox* _cb;
};

}  // namespace pelmora::config
