#include "config/DaysCellView.h"

#include "config/DayNames.h"

#include <QAction>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QMenu>
#include <QStyle>

namespace pelmora::config {

namespace {

constexpr int kRoom = 24;  // points, around the title

}  // namespace

DaysCellView::DaysCellView(QWidget* parent)
    : QWidget(parent), _daysPop(new QPushButton(this)), _menu(new QMenu(_daysPop)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(2, 0, 0, 0);
  layout->addWidget(_daysPop, 0, Qt::AlignVCenter);
  layout->addStretch();
  _daysPop->setAutoDefault(false);
  // The list has the keyboard, and opens the menu by it.
  _daysPop->setFocusPolicy(Qt::NoFocus);
  _daysPop->setMenu(_menu);
  QObject::connect(_menu, &QMenu::triggered, this, [this](QAction* item) {
    if (chosen) chosen(item->data().toInt());
  });
}

void DaysCellView::fill(const QPersistentModelIndex& sourceDict, std::uint64_t days) {
  _sourceDict = sourceDict;
  _menu->clear();
  const QString title = QCoreApplication::translate("Settings", "Days");
  addItem(title, kTitleTag, false);
  // It stands on the button.
  itemWithTag(kTitleTag)->setVisible(false);
  addItem(QCoreApplication::translate("Settings", "Every Day"), kEveryDayTag, false);
  addItem(QCoreApplication::translate("Settings", "No Days"), kNoDaysTag, false);
  for (int day = 0; day < kDaysOfWeek; ++day) addItem(dayName(day), day, true);
  _daysPop->setText(title);
  // Narrower than a dialog's buttons, which all styles give room for long texts.
  const int arrow = style()->pixelMetric(QStyle::PM_MenuButtonIndicator, nullptr, _daysPop);
  _daysPop->setFixedWidth(fontMetrics().horizontalAdvance(title) + arrow + kRoom);
  _daysPop->setAccessibleName(title);
  showDays(days);
}

void DaysCellView::showDays(std::uint64_t days) {
  for (int day = 0; day < kDaysOfWeek; ++day) {
    if (QAction* item = itemWithTag(day)) item->setChecked((days >> day & 1U) != 0);
  }
  const QString text = daysText(days);
  _daysPop->setToolTip(text);
  _daysPop->setAccessibleDescription(text);
}

QAction* DaysCellView::itemWithTag(int tag) const {
  for (QAction* item : _menu->actions()) {
    if (item->data().toInt() == tag) return item;
  }
  return nullptr;
}

void DaysCellView::openMenu() {
  const bool isRightToLeft = layoutDirection() == Qt::RightToLeft;
  const int left = isRightToLeft ? _daysPop->width() - _menu->sizeHint().width() : 0;
  _menu->popup(_daysPop->mapToGlobal(QPoint(left, _daysPop->height())));
}

void DaysCellView::addItem(const QString& title, int tag, bool isCheckable) {
  QAction* item = _menu->addAction(title);
  item->setData(tag);
  item->setCheckable(isCheckable);
}

}  // namespace pelmora::config
