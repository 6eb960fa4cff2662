#include "config/SourceMenu.h"

#include "config/DayNames.h"
#include "config/SourcesController.h"

#include <QAction>
#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace pelmora::config {

SourceMenu::SourceMenu(SourcesController& sources, QStringList screens, QWidget* parent)
    : QMenu(parent), _sources(sources), _screens(std::move(screens)) {
  // Also when an item was not chosen by pointer or keys, but by assistive technology.
  connect(this, &QMenu::triggered, this, &QMenu::close);
}

void SourceMenu::fill(std::vector<int> rows) {
  clear();
  qDeleteAll(findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
  _rows = std::move(rows);
  addEnabled();
  addDays();
  addTexts(QCoreApplication::translate("Settings", "&Chance"), SourceColumn::chance,
           {"100", "75", "50", "25", "10", "5", "1"});
  addTexts(QCoreApplication::translate("Settings", "&Screens"), SourceColumn::screens, _screens);
  addSeparator();
  if (openFolder) addOpenFolder();
  connect(addAction(QCoreApplication::translate("Settings", "&Remove")), &QAction::triggered, this,
          [this] { removeSources(); });
  for (QAction* item : actions()) item->setEnabled(item->isEnabled() && !_rows.empty());
}

void SourceMenu::addOpenFolder() {
  QAction* item = addAction(QCoreApplication::translate("Settings", "&Open Folder"));
  item->setEnabled(hasOne());
  connect(item, &QAction::triggered, this, [this] { openFolder(_rows.front()); });
}

void SourceMenu::addEnabled() {
  QAction* item = addAction(QCoreApplication::translate("Settings", "O&n"));
  item->setCheckable(true);
  item->setChecked(std::all_of(_rows.begin(), _rows.end(), [this](int row) {
    return _sources.content()[static_cast<std::size_t>(row)].enabled;
  }));
  connect(item, &QAction::triggered, this, [this](bool isOn) { _sources.setEnabled(_rows, isOn); });
}

void SourceMenu::addDays() {
  QMenu* menu = addMenu(QCoreApplication::translate("Settings", "&Days"));
  const auto addAll = [this, menu](const QString& title, std::uint64_t days) {
    connect(menu->addAction(title), &QAction::triggered, this,
            [this, days] { _sources.setDays(_rows, days); });
  };
  addAll(QCoreApplication::translate("Settings", "Every Day"), sources::kEveryDay);
  addAll(QCoreApplication::translate("Settings", "No Days"), 0);
  menu->addSeparator();
  std::uint64_t common = sources::kEveryDay;
  for (const int row : _rows) common &= _sources.content()[static_cast<std::size_t>(row)].days;
  for (int day = 0; day < kDaysOfWeek; ++day) {
    const std::uint64_t bit = std::uint64_t{1} << day;
    QAction* item = menu->addAction(dayName(day));
    item->setCheckable(true);
    item->setChecked((common & bit) != 0);
    connect(item, &QAction::triggered, this,
            [this, bit](bool isUsed) { _sources.changeDays(_rows, bit, isUsed); });
  }
}

void SourceMenu::addTexts(const QString& title, SourceColumn column, const QStringList& texts) {
  QMenu* menu = addMenu(title);
  for (const QString& text : texts) {
    connect(menu->addAction(text), &QAction::triggered, this,
            [this, column, text] { _sources.setTyped(_rows, column, text); });
  }
  menu->addSeparator();
  QAction* other = menu->addAction(QCoreApplication::translate("Settings", "Other…"));
  other->setEnabled(hasOne());
  connect(other, &QAction::triggered, this, [this, column] { editCell(_rows.front(), column); });
}

}  // namespace pelmora::config
