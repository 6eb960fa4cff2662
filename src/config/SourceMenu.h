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
/// ticked where all of them have it. It is made for one opening, and goes when it is closed.
/// Thread: main. Ownership: the sources outlive it, and are not added to or removed from while it
/// is open, but by itself at its end.
class SourceMenu : public QMenu {
 public:
  /// `rows` are the selected ones; without any, all that is offered is disabled.
  SourceMenu(SourcesController& sources, std::vector<int> rows, const QStringList& screens,
             QWidget* parent);

  /// For a single source: its cell's field is to open.
  std::function<void(int row, SourceColumn column)> editCell = [](int, SourceColumn) {};
  std::function<void()> removeSources = [] {};

  /// Offers to show a single source's folder, by this.
  void offerFolder(std::function<void(int row)> openFolder);

 private:
  void addEnabled();
  void addDays();
  /// A submenu of texts for a column with a field, and of the field itself.
  void addTexts(const QString& title, SourceColumn column, const QStringList& texts);
  [[nodiscard]] bool hasOne() const { return _rows.size() == 1; }

  SourcesController& _sources;
  const std::vector<int> _rows;
  QAction* _remove;
};

}  // namespace pelmora::config
