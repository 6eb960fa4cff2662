#pragma once

#include "config/SourcesController.h"
#include "shared/FilePath.h"

#include <QPersistentModelIndex>
#include <QTableView>

#include <vector>

namespace pelmora::config {

/// What a `SourceTable` asks and tells. Thread: main.
class SourceTableOwner {
 public:
  virtual ~SourceTableOwner() = default;

  /// A new widget for a cell, or, where `cell` is one, that with what the row holds now; null for
  /// columns without widgets. The table owns it.
  virtual QWidget* viewForTableColumn(SourceColumn column, int row, QWidget* cell) = 0;
  /// Whether an editor that is open may end.
  virtual bool mayEndEditing(QWidget& editor) = 0;
  virtual void removeSelectedFolders() = 0;
  virtual void toggleEnabled(int row) = 0;
  /// Return, F2 or a double click on a cell.
  virtual void activate(const QModelIndex& index) = 0;
  virtual void showMenu(const QPoint& globalPosition) = 0;
  /// Whether paths may be dropped, and what to do when they were.
  [[nodiscard]] virtual bool acceptsDrop(const std::vector<FilePath>& paths) = 0;
  virtual void drop(const std::vector<FilePath>& paths) = 0;
};

/// The table of sources. Cells with widgets have them only while their row is in sight, so that
/// thousands of rows cost no more than a windowful. Keys: Space switches the row, Delete removes
/// the selection, Return and F2 begin with the cell, Alt+Down opens its choices. Folders may be
/// dropped on it. Thread: main. Ownership: its owner outlives it, or is taken back.
class SourceTable : public QTableView {
 public:
  explicit SourceTable(QWidget* parent = nullptr);

  void setOwner(SourceTableOwner* owner) { _owner = owner; }

  /// Gives columns the width of what they show, and the folder the rest.
  void sizeColumns();
  /// The widget of a cell that is in sight; null without one.
  [[nodiscard]] QWidget* cellAt(SourceColumn column, int row) const;
  /// Brings a row into sight, with its widgets.
  void revealRow(int row);
  /// Ends an edit that is open, as if the user had left it. False where it may not end yet.
  bool endEditing();
  /// Opens the field of a cell that has one.
  void editCell(const QModelIndex& index);
  /// The same, of the screens, with its choices.
  void openChoices(const QModelIndex& index);

 protected:
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                   const QList<int>& roles) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void showEvent(QShowEvent* event) override;
  void updateGeometries() override;

 private:
  struct Rows {
    int first = 0;
    int last = -1;
    [[nodiscard]] bool contains(int row) const { return row >= first && row <= last; }
  };

  [[nodiscard]] QWidget* openEditor() const;
  [[nodiscard]] Rows rowsInSight() const;
  void updateCells();
  void dropCells(const Rows& inSight);
  bool handleKey(int key, Qt::KeyboardModifiers modifiers);
  void setDropTarget(bool isDropTarget);

  SourceTableOwner* _owner = nullptr;
  std::vector<QPersistentModelIndex> _cells;  // those with widgets
  bool _isUpdatingCells = false;
  bool _isDropTarget = false;
};

}  // namespace pelmora::config
