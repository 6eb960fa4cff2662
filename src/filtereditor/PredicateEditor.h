#pragma once

#include "filtereditor/FilterLines.h"
#include "filtereditor/GroupHead.h"
#include "filtereditor/RowWidget.h"
#include "filtereditor/SuggestingLineEdit.h"
#include "platform/predicate/Predicate.h"

#include <QWidget>

#include <cstddef>
#include <optional>
#include <vector>

class QScrollArea;
class QVBoxLayout;

namespace pelmora::filtereditor {

class KeptNotice;

/// Edits a filter in rows and groups of rows. A filter that cannot be shown so is kept, and shown
/// as text, until the user wants another in its place. Ctrl+Return adds a row behind the one that
/// has the focus. The focus that the editor is given goes to its first line. Thread: main. Errors:
/// what would be beyond the limits of predicates is refused with a beep.
class PredicateEditor : public QWidget {
  Q_OBJECT

 public:
  using Suggest = filtereditor::Suggest;

  explicit PredicateEditor(QWidget* parent = nullptr);
  ~PredicateEditor() override;

  /// What the rows say, empty texts included, or the filter that is kept; equal to what was set
  /// until it is edited. One row alone is a comparison, no row an empty conjunction. nullopt: there
  /// never was anything.
  [[nodiscard]] std::optional<platform::predicate::Predicate> predicate() const;
  void setObjectValue(const platform::predicate::Predicate& predicate);
  /// An empty row behind the others; none while a filter is kept.
  void addRow();

  /// From where suggestions come while a text is typed.
  void setSuggest(Suggest suggest) { _suggest = std::move(suggest); }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

  /// The user has changed something.
  Q_SIGNAL void edited();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void connectLines();
  void showLines(FilterLines lines);
  void place(std::size_t at);
  LineWidget* makeWidget(const Line& line);

  void insertRow(std::size_t behind);
  void insertGroup(std::size_t behind);
  void remove(std::size_t at);
  void enter(std::size_t at);
  void replaceKept();

  [[nodiscard]] std::optional<std::size_t> indexOf(const LineWidget* line) const;
  void withLine(const LineWidget* line, void (PredicateEditor::*act)(std::size_t at));
  [[nodiscard]] std::optional<std::size_t> lineWithFocus() const;
  [[nodiscard]] QSize sizeOfRows(int count) const;

  QScrollArea* const _scroll;
  QWidget* const _content;
  QVBoxLayout* const _column;
  KeptNotice* const _notice;
  const RowChoices _choices;
  RowWidget::Hooks _hooks;
  GroupHead::Choose _choose;
  QSize _rowSize;
  Suggest _suggest;

  FilterLines _lines;
  std::vector<LineWidget*> _widgets;  // one for each line
  std::optional<platform::predicate::Predicate> _kept;
  bool _isSet = false;
};

}  // namespace pelmora::filtereditor
