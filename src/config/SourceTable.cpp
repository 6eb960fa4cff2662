#include "config/SourceTable.h"

#include "config/DaysCellView.h"
#include "config/PathText.h"
#include "config/SourceDelegate.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>
#include <array>
#include <utility>

namespace pelmora::config {

namespace {

constexpr int kSpace = 12;  // points, beside what a column shows

std::vector<FilePath> pathsIn(const QMimeData& data) {
  const QByteArray list = data.data(QStringLiteral("text/uri-list"));
  return pathsOfUriList({list.constData(), static_cast<std::size_t>(list.size())});
}

/// Never a move: the program that folders come from would then delete them. Ignored where that is
/// all it offers.
Qt::DropAction dropActionFor(const QDropEvent& event) {
  for (const Qt::DropAction action : {Qt::LinkAction, Qt::CopyAction}) {
    if (event.possibleActions() & action) return action;
  }
  return Qt::IgnoreAction;
}

/// Keeps titles that end at the trailing edge as far from it as their numbers are.
class TitleRow : public QHeaderView {
 public:
  explicit TitleRow(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

 protected:
  void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override {
    QHeaderView::initStyleOptionForIndex(option, section);
    if (option->textAlignment & Qt::AlignRight) option->text += kEnSpace;
  }

 private:
  static constexpr QChar kEnSpace{0x2002};
};

}  // namespace

SourceTable::SourceTable(QWidget* parent) : QTableView(parent) {
  setHorizontalHeader(new TitleRow(this));
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
  setTabKeyNavigation(false);
  setTextElideMode(Qt::ElideMiddle);
  setWordWrap(false);
  setShowGrid(false);
  setAlternatingRowColors(true);
  setCornerButtonEnabled(false);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollMode(ScrollPerPixel);
  setDragDropMode(DropOnly);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsClickable(false);
}

void SourceTable::sizeColumns() {
  if (!model() || model()->columnCount() != kNumSourceColumns) return;
  DaysCellView cell;
  cell.fill({}, 0);
  cell.ensurePolished();
  const QSize button = cell.daysPop().sizeHint();
  const QFontMetrics metrics(fontMetrics());
  const auto textWidth = [&metrics](const char* text) {
    return metrics.horizontalAdvance(QLatin1String(text)) + 2 * kSpace;
  };
  verticalHeader()->setDefaultSectionSize(std::max(button.height(), metrics.height() + 8) + 4);
  const std::array<int, kNumSourceColumns> widths = {
      0,
      0,
      textWidth("0,000,000"),
      cell.daysPop().width() + SourceDelegate::daysWidth(metrics),
      textWidth("100.000"),
      textWidth("1, 2, 3, 4, 5")};
  QHeaderView& header = *horizontalHeader();
  header.setMinimumSectionSize(header.fontMetrics().height());
  for (int column = 0; column < kNumSourceColumns; ++column) {
    const bool isFolder = column == static_cast<int>(SourceColumn::folder);
    header.setSectionResizeMode(column, isFolder ? QHeaderView::Stretch : QHeaderView::Interactive);
    const int width =
        std::max(widths[static_cast<std::size_t>(column)], header.sectionSizeHint(column) + kSpace);
    if (!isFolder) header.resizeSection(column, width);
  }
}

QWidget* SourceTable::cellAt(SourceColumn column, int row) const {
  return model() ? indexWidget(SourcesController::indexOf(*model(), row, column)) : nullptr;
}

void SourceTable::revealRow(int row) {
  executeDelayedItemsLayout();
  scrollTo(SourcesController::indexOf(*model(), row, SourceColumn::folder));
  updateCells();
}

QWidget* SourceTable::openEditor() const {
  const QModelIndex index = currentIndex();
  const bool hasField = SourcesController::isIn(index, SourceColumn::chance) ||
                        SourcesController::isIn(index, SourceColumn::screens);
  return hasField ? indexWidget(index) : nullptr;
}

bool SourceTable::endEditing() {
  QWidget* editor = openEditor();
  if (!editor) return true;
  if (_owner && !_owner->mayEndEditing(*editor)) {
    editor->setFocus();
    return false;
  }
  commitData(editor);
  closeEditor(editor, QAbstractItemDelegate::NoHint);
  return true;
}

void SourceTable::editCell(const QModelIndex& index) {
  setFocus();
  setCurrentIndex(index);
  edit(index);
}

void SourceTable::openChoices(const QModelIndex& index) {
  editCell(index);
  // Once it has its place.
  if (auto* choices = qobject_cast<QComboBox*>(openEditor())) {
    QTimer::singleShot(0, choices, [choices] { choices->showPopup(); });
  }
}

SourceTable::Rows SourceTable::rowsInSight() const {
  if (!model() || !isVisible() || model()->rowCount() == 0) return {};
  const int first = rowAt(0);
  const int last = rowAt(viewport()->height() - 1);
  return {first < 0 ? model()->rowCount() : first, last < 0 ? model()->rowCount() - 1 : last};
}

void SourceTable::updateCells() {
  if (_isUpdatingCells || !_owner) return;
  const QScopedValueRollback guard(_isUpdatingCells, true);
  const Rows inSight = rowsInSight();
  dropCells(inSight);
  for (int row = inSight.first; row <= inSight.last; ++row) {
    for (const SourceColumn column : {SourceColumn::enabled, SourceColumn::days}) {
      const QModelIndex index = SourcesController::indexOf(*model(), row, column);
      if (indexWidget(index)) continue;
      if (QWidget* cell = _owner->viewForTableColumn(column, row, nullptr)) {
        setIndexWidget(index, cell);
        _cells.emplace_back(index);
      }
    }
  }
}

void SourceTable::dropCells(const Rows& inSight) {
  std::erase_if(_cells, [this, &inSight](const QPersistentModelIndex& index) {
    if (index.isValid() && inSight.contains(index.row())) return false;
    if (QWidget* cell = index.isValid() ? indexWidget(index) : nullptr) {
      cell->hide();  // it goes later, and would be in the way until then
      setIndexWidget(index, nullptr);
    }
    return true;
  });
}

void SourceTable::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                              const QList<int>& roles) {
  QTableView::dataChanged(topLeft, bottomRight, roles);
  if (_isUpdatingCells || !_owner) return;
  for (const QPersistentModelIndex& index : _cells) {
    const bool isMeant = index.isValid() && index.row() >= topLeft.row() &&
                         index.row() <= bottomRight.row() && index.column() >= topLeft.column() &&
                         index.column() <= bottomRight.column();
    if (QWidget* cell = isMeant ? indexWidget(index) : nullptr) {
      _owner->viewForTableColumn(static_cast<SourceColumn>(index.column()), index.row(), cell);
    }
  }
}

void SourceTable::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) sizeColumns();
}

void SourceTable::scrollContentsBy(int dx, int dy) {
  QTableView::scrollContentsBy(dx, dy);
  updateCells();
}

void SourceTable::showEvent(QShowEvent* event) {
  QTableView::showEvent(event);
  updateCells();
}

void SourceTable::updateGeometries() {
  QTableView::updateGeometries();
  updateCells();
}

void SourceTable::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  const bool isEmpty = !model() || model()->rowCount() == 0;
  if (!isEmpty && !_isDropTarget) return;
  QPainter painter(viewport());
  if (isEmpty) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const QRect middle = viewport()->rect().adjusted(kSpace, kSpace, -kSpace, -kSpace);
    painter.drawText(
        middle, static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap,
        QCoreApplication::translate("Settings", "Add folders with pictures, or drop them here."));
  }
  if (_isDropTarget) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(viewport()->rect().adjusted(1, 1, -1, -1));
  }
}

void SourceTable::contextMenuEvent(QContextMenuEvent* event) {
  if (!_owner) return;
  QPoint position = event->globalPos();
  if (event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid()) {
    position = viewport()->mapToGlobal(visualRect(currentIndex()).center());
  }
  _owner->showMenu(position);
  event->accept();
}

void SourceTable::mousePressEvent(QMouseEvent* event) {
  if (!endEditing()) return;
  const QModelIndex index = indexAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier &&
      SourcesController::isIn(index, SourceColumn::screens) &&
      SourceDelegate::choicesRect(visualRect(index), layoutDirection())
          .contains(event->position().toPoint())) {
    return openChoices(index);
  }
  QTableView::mousePressEvent(event);
}

void SourceTable::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && SourcesController::isIn(index, SourceColumn::folder)) {
    if (_owner) _owner->activate(index);
    return;
  }
  QTableView::mouseDoubleClickEvent(event);
}

void SourceTable::keyPressEvent(QKeyEvent* event) {
  // What a field has no use for, such as its own Return: nobody else's either.
  if (openEditor()) return event->accept();
  if (_owner && handleKey(event->key(), event->modifiers() & ~Qt::KeypadModifier)) {
    return event->accept();
  }
  QTableView::keyPressEvent(event);
}

bool SourceTable::handleKey(int key, Qt::KeyboardModifiers modifiers) {
  const QModelIndex current = currentIndex();
  if (key == Qt::Key_Delete && modifiers == Qt::NoModifier) {
    _owner->removeSelectedFolders();
    return true;
  }
  if (!current.isValid()) return false;
  if (key == Qt::Key_Space && modifiers == Qt::NoModifier) {
    _owner->toggleEnabled(current.row());
    return true;
  }
  if (key == Qt::Key_Down && modifiers == Qt::AltModifier) {
    if (SourcesController::isIn(current, SourceColumn::screens)) {
      openChoices(current);
    } else {
      _owner->activate(SourcesController::indexOf(*model(), current.row(), SourceColumn::days));
    }
    return true;
  }
  const bool isStart = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F2;
  if (!isStart || modifiers != Qt::NoModifier) return false;
  if (current.flags() & Qt::ItemIsEditable) {
    edit(current);
  } else {
    _owner->activate(current);
  }
  return true;
}

void SourceTable::setDropTarget(bool isDropTarget) {
  _isDropTarget = isDropTarget;
  viewport()->update();
}

void SourceTable::dragEnterEvent(QDragEnterEvent* event) {
  const Qt::DropAction action = dropActionFor(*event);
  const bool isWelcome = action != Qt::IgnoreAction && _owner && event->mimeData()->hasUrls() &&
                         _owner->acceptsDrop(pathsIn(*event->mimeData()));
  setDropTarget(isWelcome);
  if (!isWelcome) return event->ignore();
  event->setDropAction(action);
  event->accept();
}

void SourceTable::dragMoveEvent(QDragMoveEvent* event) {
  if (!_isDropTarget) return event->ignore();
  event->setDropAction(dropActionFor(*event));
  event->accept();
}

void SourceTable::dragLeaveEvent(QDragLeaveEvent* event) {
  setDropTarget(false);
  event->accept();
}

void SourceTable::dropEvent(QDropEvent* event) {
  const Qt::DropAction action = dropActionFor(*event);
  setDropTarget(false);
  if (!_owner || action == Qt::IgnoreAction) return event->ignore();
  event->setDropAction(action);
  event->accept();
  _owner->drop(pathsIn(*event->mimeData()));
}

}  // namespace pelmora::config
