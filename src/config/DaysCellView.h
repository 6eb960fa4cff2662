#pragma once

#include <QPersistentModelIndex>
#include <QPushButton>
#include <QWidget>

#include <cstdint>
#include <functional>

class QAction;

namespace pelmora::config {

/// The cell in which the user chooses the days of one source: a pull-down button whose title is
/// always "Days", and whose menu lists every day, no days, and the seven days, ticked where they
/// are chosen. It tells of a choice, and leaves it to its owner to make it. Thread: main.
class DaysCellView : public QWidget {
 public:
  // Tags of the items, beside 0 (Sunday) to 6.
  static constexpr int kTitleTag = -1;
  static constexpr int kEveryDayTag = 10;
  static constexpr int kNoDaysTag = 11;

  explicit DaysCellView(QWidget* parent = nullptr);

  /// Fills the menu anew, for a source that is used on these days.
  void fill(const QPersistentModelIndex& sourceDict, std::uint64_t days);
  /// Ticks the days of a mask, and tells them to who points at the cell or listens to it.
  void showDays(std::uint64_t days);

  /// The source, as long as it has a row.
  [[nodiscard]] const QPersistentModelIndex& sourceDict() const { return _sourceDict; }
  [[nodiscard]] QPushButton& daysPop() { return *_daysPop; }
  /// The item with that tag; null without one.
  [[nodiscard]] QAction* itemWithTag(int tag) const;
  /// Opens the menu, and returns at once.
  void openMenu();

  /// Called with the tag of the item that was chosen.
  std::function<void(int tag)> chosen;

 private:
  void addItem(const QString& title, int tag, bool isCheckable);

  QPersistentModelIndex _sourceDict;
  QPushButton* _daysPop;
  QMenu* _menu;
};

}  // namespace pelmora::config
