#include "filtereditor/PredicateEditor.h"

#include "filtereditor/KeptNotice.h"
#include "platform/predicate/PredicateText.h"

#include <QApplication>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace pelmora::filtereditor {

using platform::predicate::Predicate;

PredicateEditor::PredicateEditor(QWidget* parent)
    : QWidget(parent),
      _scroll(new QScrollArea(this)),
      _content(new QWidget(_scroll)),
      _column(new QVBoxLayout(_content)),
      _notice(new KeptNotice([this] { replaceKept(); }, this)),
      _choices(RowChoices::make(this)) {
  _column->setContentsMargins(0, 0, 0, 0);
  _column->setSpacing(0);
  _column->addStretch(1);
  _scroll->setWidget(_content);
  _scroll->setWidgetResizable(true);
  // The lines are what is gone to by keys.
  _scroll->setFocusPolicy(Qt::NoFocus);
  _notice->hide();
  // Of no use to the mouse, as a click beside the lines would go to the first.
  setFocusPolicy(Qt::TabFocus);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(_scroll);
  layout->addWidget(_notice);
  setAccessibleName(QCoreApplication::translate("Settings", "Filter"));
  connectLines();
  // Of a row in a group.
  _rowSize = RowWidget(2, Row{}, _choices, _hooks, nullptr).sizeHint();
  showLines(FilterLines());
}

PredicateEditor::~PredicateEditor() = default;

void PredicateEditor::connectLines() {
  _hooks.actions = {
      .addRow = [this](LineWidget* line) { withLine(line, &PredicateEditor::insertRow); },
      .addGroup = [this](LineWidget* line) { withLine(line, &PredicateEditor::insertGroup); },
      .remove = [this](LineWidget* line) { withLine(line, &PredicateEditor::remove); },
  };
  _hooks.changed = [this](LineWidget* line, const Row& row) {
    const auto at = indexOf(line);
    if (!at) return;
    _lines.setRow(*at, row);
    Q_EMIT edited();
  };
  _hooks.suggest = [this](const std::string& attribute, auto answer) {
    if (_suggest) _suggest(attribute, std::move(answer));
  };
  _choose = [this](LineWidget* line, Match match) {
    const auto at = indexOf(line);
    if (!at) return false;
    if (!_lines.setMatch(*at, match)) {
      QApplication::beep();
      return false;
    }
    _isSet = true;
    Q_EMIT edited();
    return true;
  };
}

// The filter --------------------------------------------------------------------------------------

std::optional<Predicate> PredicateEditor::predicate() const {
  if (_kept) return _kept;
  if (!_isSet) return std::nullopt;
  return toPredicate(_lines.group());
}

void PredicateEditor::setObjectValue(const Predicate& predicate) {
  const std::optional<Group> group = fromPredicate(predicate);
  _isSet = true;
  _kept.reset();
  if (!group) {
    _kept = predicate;
    _notice->setText(textOf(predicate));
  }
  showLines(group ? FilterLines(*group) : FilterLines());
}

void PredicateEditor::addRow() {
  if (_kept) return;
  if (const auto at = _lines.appendRow()) place(*at);
  _isSet = true;
}

void PredicateEditor::replaceKept() {
  _kept.reset();
  showLines(FilterLines());
  addRow();
  enter(1);
  Q_EMIT edited();
}

// The lines ---------------------------------------------------------------------------------------

void PredicateEditor::showLines(FilterLines lines) {
  // What is visible would be laid out again with each line.
  _content->hide();
  for (LineWidget* widget : std::exchange(_widgets, {})) {
    // It may be the one that this is done for.
    widget->hide();
    widget->deleteLater();
  }
  _lines = std::move(lines);
  for (std::size_t i = 0; i < _lines.lines().size(); ++i) place(i);
  _content->show();
  _scroll->setVisible(!_kept);
  _notice->setVisible(_kept.has_value());
  // What a label of the editor gives the focus to.
  setFocusProxy(_kept ? _notice->entry() : _widgets.front()->entry());
}

/// Makes the widget of a line that has none yet; those before have theirs.
void PredicateEditor::place(std::size_t at) {
  LineWidget* const widget = makeWidget(_lines.lines()[at]);
  _widgets.insert(_widgets.begin() + static_cast<std::ptrdiff_t>(at), widget);
  _column->insertWidget(static_cast<int>(at), widget);
  widget->show();
  // The notice has its place among the controls around the editor from the beginning.
  QWidget* before = at == 0 ? _notice->lastControl() : _widgets[at - 1]->controls().back();
  for (QWidget* control : widget->controls()) {
    setTabOrder(before, control);
    before = control;
  }
}

LineWidget* PredicateEditor::makeWidget(const Line& line) {
  if (const auto* row = std::get_if<Row>(&line.content)) {
    return new RowWidget(line.depth, *row, _choices, _hooks, _content);
  }
  const Match match = std::get<Match>(line.content);
  return new GroupHead(line.depth, match, _hooks.actions, _choose, _content);
}

void PredicateEditor::insertRow(std::size_t behind) {
  const auto at = _lines.insertRow(behind);
  if (!at) return QApplication::beep();
  place(*at);
  enter(*at);
  _isSet = true;
  Q_EMIT edited();
}

void PredicateEditor::insertGroup(std::size_t behind) {
  const auto at = _lines.insertGroup(behind);
  if (!at) return QApplication::beep();
  place(*at);
  place(*at + 1);
  enter(*at + 1);
  _isSet = true;
  Q_EMIT edited();
}

void PredicateEditor::remove(std::size_t at) {
  const FilterLines::Range range = _lines.remove(at);
  const auto first = _widgets.begin() + static_cast<std::ptrdiff_t>(range.first);
  const auto end = first + static_cast<std::ptrdiff_t>(range.count);
  const std::vector<LineWidget*> removed(first, end);
  const auto focus = lineWithFocus();
  const bool isFocusElsewhere =
      focus && (*focus < range.first || *focus >= range.first + range.count);
  _widgets.erase(first, end);
  if (!isFocusElsewhere) enter(std::min(range.first, _widgets.size() - 1));
  for (LineWidget* widget : removed) {
    widget->hide();
    widget->deleteLater();
  }
  // Without members it is another.
  const Match outermost = std::get<Match>(_lines.lines().front().content);
  if (auto* head = dynamic_cast<GroupHead*>(_widgets.front())) head->setMatch(outermost);
  Q_EMIT edited();
}

/// Gives a line the focus, and scrolls to it when it has its place.
void PredicateEditor::enter(std::size_t at) {
  LineWidget* const line = _widgets[at];
  line->entry()->setFocus(Qt::OtherFocusReason);
  QTimer::singleShot(0, line, [this, line] {
    _column->activate();
    _scroll->ensureWidgetVisible(line, 0, 0);
  });
}

void PredicateEditor::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
  if (_kept || !isReturn || modifiers != Qt::ControlModifier) return QWidget::keyPressEvent(event);
  insertRow(lineWithFocus().value_or(_widgets.size() - 1));
}

/// A line that was taken away is there for a while yet, and may tell of what is done to it.
std::optional<std::size_t> PredicateEditor::indexOf(const LineWidget* line) const {
  const auto found = std::find(_widgets.begin(), _widgets.end(), line);
  if (found == _widgets.end()) return std::nullopt;
  return static_cast<std::size_t>(found - _widgets.begin());
}

void PredicateEditor::withLine(const LineWidget* line, void (PredicateEditor::*act)(std::size_t)) {
  if (const auto at = indexOf(line)) (this->*act)(*at);
}

std::optional<std::size_t> PredicateEditor::lineWithFocus() const {
  const QWidget* const focus = focusWidget();
  for (std::size_t i = 0; i < _widgets.size(); ++i) {
    if (focus && _widgets[i]->isAncestorOf(focus)) return i;
  }
  return std::nullopt;
}

// Sizes -------------------------------------------------------------------------------------------

QSize PredicateEditor::sizeHint() const { return sizeOfRows(7); }

QSize PredicateEditor::minimumSizeHint() const { return sizeOfRows(3); }

QSize PredicateEditor::sizeOfRows(int count) const {
  const int frame = 2 * _scroll->frameWidth();
  return {_rowSize.width() + _scroll->verticalScrollBar()->sizeHint().width() + frame,
          count * _rowSize.height() + frame};
}

}  // namespace pelmora::filtereditor
