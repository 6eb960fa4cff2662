#pragma once

#include <QWidget>

#include <cstddef>
#include <functional>
#include <vector>

class QHBoxLayout;

namespace pelmora::filtereditor {

/// A line of the editor, set in by its depth: what the kind of line adds, and the buttons that
/// every line has. Thread: main.
class LineWidget : public QWidget {
 public:
  /// What the buttons of a line do. They may take it away, but not delete it at once.
  struct Actions {
    std::function<void(LineWidget*)> addRow;
    std::function<void(LineWidget*)> addGroup;
    std::function<void(LineWidget*)> remove;
  };

  /// The outermost, of depth 0, is not removed and has no button for it.
  LineWidget(int depth, const Actions& actions, QWidget* parent);

  /// What takes the focus first; where nothing is typed into, the first control.
  [[nodiscard]] virtual QWidget* entry() const { return _controls.front(); }
  /// All that take the focus, in their order.
  [[nodiscard]] const std::vector<QWidget*>& controls() const { return _controls; }

 protected:
  /// Puts a control before the buttons.
  void add(QWidget* control, const QString& name, int stretch = 0);
  void addSpace();

  /// Lines from the heads of the groups that it is in.
  void paintEvent(QPaintEvent* event) override;

 private:
  void addButtons(const Actions& actions);
  [[nodiscard]] int step() const;

  const int _depth;
  QHBoxLayout* const _layout;
  std::vector<QWidget*> _controls;
  std::size_t _ownControls = 0;  // before the buttons
};

}  // namespace pelmora::filtereditor
