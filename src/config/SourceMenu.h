#pragma once

#include <QMenu>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <vector>

namespace pelmora::config {

class SourcesController;
enum class SourceColumn : int;

/// What can be done with the selected sources, all at once: the same as in their cells. A day is
/// ticked where all of them have it. Thread: main. Ownership: the sources outlive it, and none is
/// added or removed while it is open, but by itself.
class SourceMenu : public QMenu {
 public:
  SourceMenu(SourcesController& sources, QStringList screens, QWidget* parent);

  /// Makes it the menu of these rows; without any, all that it offers is disabled.
  void fill(std::vector<int> rows);

  /// For a single source: its cell's field is to open.
  std::function<void(int row, SourceColumn column)> editCell = [](int, SourceColumn) {};
  /// The same: its folder is to be shown. Without it that is not offered.
  std::function<void(int row)> openFolder;
  std::function<void()> removeSources = [] {};

 private:
  void addEnabled();
  void addDays();
  /// A submenu of texts for a column with a field, and of the field itself.
  void addTexts(const QString& title, SourceColumn column, const QStringList& texts);
  void addOpenFolder();
  [[nodiscard]] bool hasOne() const { return _rows.size() == 1; }

  SourcesController& _sources;
  const QStringList _screens;
  std::vector<int> _rows;
};

}  // namespace pelmora::config
