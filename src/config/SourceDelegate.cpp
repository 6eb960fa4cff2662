#include "config/SourceDelegate.h"

#include "config/ChanceText.h"
#include "config/DayNames.h"
#include "config/SourcesController.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace pelmora::config {

namespace {

constexpr int kMargin = 6;       // points
constexpr int kArrowWidth = 18;  // points
constexpr qreal kFaint = 0.25;   // opacity of a day on which a source is not used
constexpr QChar kLeftToRight(0x2066);
constexpr QChar kDirectionEnd(0x2069);

/// The days of a source as bars side by side, those on which it is used in full colour.
struct DayBars {
  explicit DayBars(const QFontMetrics& metrics)
      : width(std::max(3, metrics.height() / 5)), height(metrics.ascent()) {}

  [[nodiscard]] int step() const { return width + gap; }
  [[nodiscard]] int totalWidth() const { return kDaysOfWeek * step() - gap; }

  int width;
  int height;
  int gap = 2;
};

QColor textColor(const QStyleOptionViewItem& option) {
  const QPalette::ColorGroup group = !(option.state & QStyle::State_Enabled)  ? QPalette::Disabled
                                     : !(option.state & QStyle::State_Active) ? QPalette::Inactive
                                                                              : QPalette::Normal;
  return option.palette.color(
      group, option.state & QStyle::State_Selected ? QPalette::HighlightedText : QPalette::Text);
}

void paintDays(QPainter& painter, const QStyleOptionViewItem& option, std::uint64_t days) {
  const DayBars bars(option.fontMetrics);
  QRect all(0, 0, bars.totalWidth(), bars.height);
  all.moveCenter(option.rect.center());
  all.moveRight(option.rect.right() - kMargin);
  painter.save();
  for (int day = 0; day < kDaysOfWeek; ++day) {
    const QRect bar(all.left() + day * bars.step(), all.top(), bars.width, bars.height);
    painter.setOpacity((days >> day & 1U) != 0 ? 1 : kFaint);
    painter.fillRect(QStyle::visualRect(option.direction, option.rect, bar), textColor(option));
  }
  painter.restore();
}

const QStyle& styleOf(const QStyleOptionViewItem& option) {
  return option.widget ? *option.widget->style() : *QApplication::style();
}

/// Further from the edges than the style does: a number would run into the next column.
void paintText(QPainter& painter, const QStyleOptionViewItem& option, const QRect& rect,
               const QString& text) {
  const QString shown = option.fontMetrics.elidedText(text, Qt::ElideRight, rect.width());
  const auto alignment = QStyle::visualAlignment(option.direction, option.displayAlignment);
  painter.save();
  painter.setFont(option.font);
  painter.setPen(textColor(option));
  painter.drawText(rect, static_cast<int>(alignment) | Qt::TextSingleLine, shown);
  painter.restore();
}

/// What tells that there are choices.
void paintArrow(QPainter& painter, const QStyleOptionViewItem& option) {
  QStyleOption arrow;
  arrow.state = QStyle::State_Enabled;
  arrow.palette = option.palette;
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    arrow.palette.setColor(role, textColor(option));
  }
  const int size = kArrowWidth / 2;
  arrow.rect = QRect(0, 0, size, size);
  arrow.rect.moveCenter(SourceDelegate::choicesRect(option.rect, option.direction).center());
  styleOf(option).drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, &painter, option.widget);
}

/// The button with the focus, where it is held down and takes all changes of its dialog back.
const QAbstractButton* pressedCancel() {
  auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
  if (!button || !button->isDown()) return nullptr;
  const auto* box = qobject_cast<QDialogButtonBox*>(button->parentWidget());
  return box && box->buttonRole(button) == QDialogButtonBox::RejectRole ? button : nullptr;
}

}  // namespace

int SourceDelegate::daysWidth(const QFontMetrics& metrics) {
  return DayBars(metrics).totalWidth() + 2 * kMargin;
}

QRect SourceDelegate::choicesRect(const QRect& cell, Qt::LayoutDirection direction) {
  QRect arrow = cell;
  arrow.setLeft(cell.right() - kArrowWidth + 1);
  return QStyle::visualRect(direction, cell, arrow);
}

void SourceDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  // What is switched off is read, but not at first sight.
  if (!index.data(SourcesController::kIsEnabledRole).toBool()) {
    for (const auto group : {QPalette::Normal, QPalette::Inactive}) {
      option->palette.setColor(group, QPalette::Text,
                               option->palette.color(group, QPalette::PlaceholderText));
    }
  }
  if (SourcesController::isIn(index, SourceColumn::enabled)) {
    option->features &= ~QStyleOptionViewItem::HasCheckIndicator;  // a widget over it
  }
  if (!SourcesController::isIn(index, SourceColumn::folder)) return;
  if (index.data(SourcesController::kIsGoneRole).toBool()) {
    const QStyle& style = styleOf(*option);
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->icon = style.standardIcon(QStyle::SP_MessageBoxWarning, option, option->widget);
    const int size = style.pixelMetric(QStyle::PM_SmallIconSize, option, option->widget);
    option->decorationSize = QSize(size, size);
  }
  // A path begins at its left in any language.
  if (option->direction == Qt::RightToLeft) {
    option->text = kLeftToRight + option->text + kDirectionEnd;
  }
}

void SourceDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
  QStyleOptionViewItem own = option;
  initStyleOption(&own, index);
  const QString text = std::exchange(own.text, QString());
  const bool isPath = SourcesController::isIn(index, SourceColumn::folder);
  if (isPath) own.text = text;
  styleOf(own).drawControl(QStyle::CE_ItemViewItem, &own, painter, own.widget);
  if (isPath) return;
  QRect written = own.rect.adjusted(kMargin, 0, -kMargin, 0);
  if (SourcesController::isIn(index, SourceColumn::screens)) {
    written = own.rect.adjusted(kMargin, 0, -kArrowWidth, 0);
    paintArrow(*painter, own);
  }
  if (SourcesController::isIn(index, SourceColumn::days)) {
    paintDays(*painter, own, index.data(SourcesController::kDaysRole).toULongLong());
  }
  paintText(*painter, own, QStyle::visualRect(own.direction, own.rect, written), text);
}

QWidget* SourceDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const {
  if (SourcesController::isIn(index, SourceColumn::screens)) return makeScreensField(parent);
  if (!SourcesController::isIn(index, SourceColumn::chance)) {
    return QStyledItemDelegate::createEditor(parent, option, index);
  }
  auto* field = new QLineEdit(parent);
  field->setAccessibleName(QCoreApplication::translate("Settings", "Chance"));
  field->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return field;
}

QWidget* SourceDelegate::makeScreensField(QWidget* parent) const {
  auto* field = new QComboBox(parent);
  field->setEditable(true);
  field->setInsertPolicy(QComboBox::NoInsert);
  field->addItems(_screensMenuList);
  field->setAccessibleName(QCoreApplication::translate("Settings", "Screens"));
  auto* self = const_cast<SourceDelegate*>(this);  // the toolkit makes editors in a const call
  connect(field, &QComboBox::activated, self, [self, field] {
    Q_EMIT self->commitData(field);
    Q_EMIT self->closeEditor(field);
  });
  return field;
}

void SourceDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  const QString text = index.data(Qt::EditRole).toString();
  if (auto* choices = qobject_cast<QComboBox*>(editor)) {
    choices->setCurrentIndex(choices->findText(text));
    choices->setEditText(text);
    choices->lineEdit()->selectAll();
  } else if (auto* field = qobject_cast<QLineEdit*>(editor)) {
    field->setText(text);
  }
}

void SourceDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                  const QModelIndex& index) const {
  if (const auto* choices = qobject_cast<QComboBox*>(editor)) {
    model->setData(index, choices->currentText(), Qt::EditRole);
  } else if (const auto* field = qobject_cast<QLineEdit*>(editor)) {
    // Within its bounds also where the list ends editing without asking.
    const QString typed = withDecimalPoint(field->text(), QLocale());
    const auto corrected = correctedChance(typed, kLowestChance, kHighestChance);
    model->setData(index, corrected.value_or(typed), Qt::EditRole);
  }
}

bool SourceDelegate::editorEvent(QEvent*, QAbstractItemModel*, const QStyleOptionViewItem&,
                                 const QModelIndex&) {
  return false;  // nothing is switched by a click beside its widget
}

bool SourceDelegate::mayEnd(QLineEdit& field) const {
  return !shouldEndEditing || shouldEndEditing(field);
}

/// The focus went elsewhere: editing ends, or takes the focus back.
void SourceDelegate::leave(QLineEdit& field) {
  if (field.hasFocus() || !field.isVisible()) return;
  if (const QAbstractButton* cancel = pressedCancel()) {
    // What it drops need not be right. Without the focus it would not be pressed any more.
    connect(
        cancel, &QAbstractButton::released, &field,
        [this, &field] { QTimer::singleShot(0, &field, [this, &field] { leave(field); }); },
        Qt::SingleShotConnection);
    return;
  }
  if (mayEnd(field)) {
    Q_EMIT commitData(&field);
    Q_EMIT closeEditor(&field);
  } else {
    field.setFocus();
  }
}

bool SourceDelegate::eventFilter(QObject* object, QEvent* event) {
  auto* field = qobject_cast<QLineEdit*>(object);
  if (field && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool isEnd = key == Qt::Key_Tab || key == Qt::Key_Backtab || key == Qt::Key_Enter ||
                       key == Qt::Key_Return;
    if (isEnd && !mayEnd(*field)) return true;
  }
  if (field && event->type() == QEvent::FocusOut) {
    const auto reason = static_cast<QFocusEvent*>(event)->reason();
    // Another window, or the field's own menu: it goes on when that is over.
    const bool isShort = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    // Later, since a field cannot take the focus back while it is losing it.
    if (!isShort) QTimer::singleShot(0, field, [this, field] { leave(*field); });
    return false;
  }
  return QStyledItemDelegate::eventFilter(object, event);
}

}  // namespace pelmora::config
