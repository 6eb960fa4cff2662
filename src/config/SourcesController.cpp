#include "config/SourcesController.h"

#include "config/ChanceText.h"
#include "config/DayNames.h"
#include "config/PathText.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <utility>

namespace pelmora::config {

namespace {

using sources::SourceEntry;

/// By column: its title, and what it is for.
struct ColumnTexts {
  const char* title;
  const char* help;
};
constexpr std::array<ColumnTexts, kNumSourceColumns> kColumnTexts = {{
    {QT_TRANSLATE_NOOP("Settings", "On"),
     QT_TRANSLATE_NOOP("Settings", "Whether pictures of the folder are shown")},
    {QT_TRANSLATE_NOOP("Settings", "Folder"),
     QT_TRANSLATE_NOOP("Settings",
                       "Pictures are taken from the folder and from the folders in it")},
    {QT_TRANSLATE_NOOP("Settings", "Pictures"),
     QT_TRANSLATE_NOOP("Settings", "How many pictures were found in the folder")},
    {QT_TRANSLATE_NOOP("Settings", "Days"),
     QT_TRANSLATE_NOOP("Settings", "The days of the week on which the folder is used")},
    {QT_TRANSLATE_NOOP("Settings", "Chance"),
     QT_TRANSLATE_NOOP("Settings",
                       "How likely the folder's pictures are, from 0.001 to 100 percent")},
    {QT_TRANSLATE_NOOP("Settings", "Screens"),
     QT_TRANSLATE_NOOP("Settings",
                       "The screens that show the folder: All, or their numbers, such as 1, 3")},
}};

QString translated(const char* text) { return QCoreApplication::translate("Settings", text); }

QString goneText() {
  return QCoreApplication::translate("Settings", "This folder cannot be found.");
}

bool isNumeric(SourceColumn column) {
  return column == SourceColumn::pictures || column == SourceColumn::chance;
}

}  // namespace

QString allScreensText() { return QCoreApplication::translate("Settings", "All"); }

SourcesController::SourcesController(platform::Log& log, QObject* parent)
    : QAbstractTableModel(parent), _chances(log), _screens(allScreensText().toStdString()) {}

void SourcesController::setContent(std::vector<SourceEntry> content) {
  beginResetModel();
  _content = std::move(content);
  _statuses.clear();
  endResetModel();
}

void SourcesController::addObjects(std::vector<SourceEntry> entries) {
  if (entries.empty()) return;
  const int first = rowCount();
  beginInsertRows({}, first, first + static_cast<int>(entries.size()) - 1);
  std::move(entries.begin(), entries.end(), std::back_inserter(_content));
  endInsertRows();
  announce();
}

void SourcesController::removeObjects(std::vector<int> rows) {
  std::erase_if(rows, [this](int row) { return !hasRow(row); });
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  if (rows.empty()) return;
  // Each run of neighbours at once, the last first, so that the others keep their numbers.
  while (!rows.empty()) {
    const int last = rows.back();
    int first = last;
    rows.pop_back();
    for (; !rows.empty() && rows.back() == first - 1; rows.pop_back()) --first;
    beginRemoveRows({}, first, last);
    _content.erase(_content.begin() + first, _content.begin() + last + 1);
    endRemoveRows();
  }
  announce();
}

void SourcesController::setEnabled(const std::vector<int>& rows, bool enabled) {
  // Not of the columns with fields: what is being typed there would be lost.
  edit(rows, SourceColumn::enabled, SourceColumn::days,
       [enabled](SourceEntry& entry) { entry.enabled = enabled; });
}

void SourcesController::setDays(const std::vector<int>& rows, std::uint64_t days) {
  edit(rows, SourceColumn::days, SourceColumn::days,
       [days](SourceEntry& entry) { entry.days = days; });
}

void SourcesController::changeDays(const std::vector<int>& rows, std::uint64_t days, bool isUsed) {
  edit(rows, SourceColumn::days, SourceColumn::days, [days, isUsed](SourceEntry& entry) {
    entry.days = isUsed ? entry.days | days : entry.days & ~days;
  });
}

void SourcesController::setTyped(const std::vector<int>& rows, SourceColumn column,
                                 const QString& typed) {
  edit(rows, column, column, [this, column, &typed](SourceEntry& entry) {
    if (column == SourceColumn::chance) setChance(entry, typed);
    if (column == SourceColumn::screens) setScreens(entry, typed);
  });
}

void SourcesController::setStatus(const FilePath& url, SourceStatus status) {
  SourceStatus& known = _statuses[url];
  if (known == status) return;
  known = status;
  if (_content.empty()) return;
  // Of all rows: what is not in sight is not painted, so finding the row would cost more.
  Q_EMIT dataChanged(indexOf(*this, 0, SourceColumn::folder),
                     indexOf(*this, rowCount() - 1, SourceColumn::pictures));
}

int SourcesController::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(_content.size());
}

int SourcesController::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kNumSourceColumns;
}

QVariant SourcesController::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !hasRow(index.row())) return {};
  const SourceEntry& entry = _content[static_cast<std::size_t>(index.row())];
  const auto column = static_cast<SourceColumn>(index.column());
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return shownText(entry, column);
    case Qt::CheckStateRole:
      if (column != SourceColumn::enabled) return {};
      return static_cast<int>(entry.enabled ? Qt::Checked : Qt::Unchecked);
    case Qt::ToolTipRole:
      return toolTip(entry, column);
    case Qt::AccessibleTextRole:
      return accessibleText(entry, column);
    case Qt::AccessibleDescriptionRole:
      return column == SourceColumn::folder && statusOf(entry).isGone ? goneText() : QString();
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(Qt::AlignVCenter |
                                 (isNumeric(column) ? Qt::AlignRight : Qt::AlignLeft));
    case kIsGoneRole:
      return column == SourceColumn::folder && statusOf(entry).isGone;
    case kIsEnabledRole:
      return entry.enabled;
    case kDaysRole:
      return static_cast<qulonglong>(entry.days);
    default:
      return {};
  }
}

QVariant SourcesController::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kNumSourceColumns) return {};
  const auto column = static_cast<SourceColumn>(section);
  switch (role) {
    case Qt::DisplayRole:
      return translated(kColumnTexts[static_cast<std::size_t>(section)].title);
    case Qt::ToolTipRole:
      return translated(kColumnTexts[static_cast<std::size_t>(section)].help);
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(Qt::AlignVCenter |
                                 (isNumeric(column) ? Qt::AlignRight : Qt::AlignLeft));
    default:
      return {};
  }
}

Qt::ItemFlags SourcesController::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  if (isIn(index, SourceColumn::enabled)) flags |= Qt::ItemIsUserCheckable;
  if (isIn(index, SourceColumn::chance) || isIn(index, SourceColumn::screens)) {
    flags |= Qt::ItemIsEditable;
  }
  return flags;
}

bool SourcesController::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || !hasRow(index.row())) return false;
  if (role == Qt::CheckStateRole && isIn(index, SourceColumn::enabled)) {
    setEnabled({index.row()}, value.toInt() == Qt::Checked);
    return true;
  }
  const bool hasField = isIn(index, SourceColumn::chance) || isIn(index, SourceColumn::screens);
  if (role != Qt::EditRole || !hasField) return false;
  setTyped({index.row()}, static_cast<SourceColumn>(index.column()), value.toString());
  return true;
}

bool SourcesController::hasRow(int row) const { return row >= 0 && row < rowCount(); }

SourceStatus SourcesController::statusOf(const SourceEntry& entry) const {
  const auto known = _statuses.find(entry.url);
  return known == _statuses.end() ? SourceStatus() : known->second;
}

QString SourcesController::shownText(const SourceEntry& entry, SourceColumn column) const {
  switch (column) {
    case SourceColumn::folder:
      return pathText(entry.url);
    case SourceColumn::pictures: {
      const auto pictures = statusOf(entry).pictures;
      return pictures ? QLocale().toString(static_cast<qulonglong>(*pictures)) : QString();
    }
    case SourceColumn::chance:
      return chanceText(_chances.transformedValue(plist::Value(entry.chance))->doubleValue());
    case SourceColumn::screens: {
      const auto shown = _screens.transformedValue(plist::Value(entry.screens));
      return QString::fromStdString(*shown->get<std::string>());
    }
    case SourceColumn::enabled:
    case SourceColumn::days:
      return {};  // cells of their own
  }
  return {};
}

QString SourcesController::toolTip(const SourceEntry& entry, SourceColumn column) const {
  if (column == SourceColumn::days) return daysText(entry.days);
  if (column == SourceColumn::screens) return shownText(entry, column);  // it may be cut off
  if (column != SourceColumn::folder) return {};
  const QString path = pathText(entry.url);
  return statusOf(entry).isGone ? path + QLatin1Char('\n') + goneText() : path;
}

QString SourcesController::accessibleText(const SourceEntry& entry, SourceColumn column) const {
  switch (column) {
    case SourceColumn::enabled:
      return entry.enabled ? QCoreApplication::translate("Settings", "On")
                           : QCoreApplication::translate("Settings", "Off");
    case SourceColumn::days:
      return daysText(entry.days);
    default:
      return shownText(entry, column);
  }
}

void SourcesController::setChance(SourceEntry& entry, const QString& typed) const {
  const auto number = _chances.reverseTransformedValue(plist::Value(typed.toStdString()));
  entry.chance = number->doubleValue();
  entry.isChanceReal = number->get<double>() != nullptr;
}

void SourcesController::setScreens(SourceEntry& entry, const QString& typed) const {
  const auto stored = _screens.reverseTransformedValue(plist::Value(typed.toStdString()));
  entry.screens = *stored->get<std::string>();
}

void SourcesController::edit(const std::vector<int>& rows, SourceColumn first, SourceColumn last,
                             const std::function<void(SourceEntry&)>& change) {
  int lowest = rowCount();
  int highest = -1;
  for (const int row : rows) {
    if (!hasRow(row)) continue;
    change(_content[static_cast<std::size_t>(row)]);
    lowest = std::min(lowest, row);
    highest = std::max(highest, row);
  }
  if (highest < 0) return;
  Q_EMIT dataChanged(indexOf(*this, lowest, first), indexOf(*this, highest, last));
  announce();
}

void SourcesController::announce() {
  if (sourcesChanged) sourcesChanged();
}

}  // namespace pelmora::config
