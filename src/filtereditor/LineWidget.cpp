#include "filtereditor/LineWidget.h"

#include "filtereditor/GlyphButton.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>

#include <cstddef>

namespace pelmora::filtereditor {

namespace {

constexpr int kAbove = 3;  // logical pixels, as below
constexpr int kSide = 6;

}  // namespace

LineWidget::LineWidget(int depth, const Actions& actions, QWidget* parent)
    : QWidget(parent), _depth(depth), _layout(new QHBoxLayout(this)) {
  _layout->setContentsMargins(kSide, kAbove, kSide, kAbove);
  _layout->setSpacing(kSide);
  if (depth > 0) _layout->addSpacing(depth * step());
  addButtons(actions);
}

int LineWidget::step() const { return fontMetrics().height() + 4; }

void LineWidget::addButtons(const Actions& actions) {
  const auto button = [&](GlyphButton::Glyph glyph, const QString& name, const auto& action) {
    auto* made = new GlyphButton(glyph, name, this);
    connect(made, &QAbstractButton::clicked, made, [this, action] { action(this); });
    return made;
  };
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(0);
  auto* addRow = button(GlyphButton::Glyph::plus,
                        QCoreApplication::translate("Settings", "Add row"), actions.addRow);
  auto* addGroup = button(GlyphButton::Glyph::group,
                          QCoreApplication::translate("Settings", "Add group"), actions.addGroup);
  _controls = {addRow, addGroup};
  buttons->addWidget(addRow);
  buttons->addWidget(addGroup);
  if (_depth > 0) {
    auto* remove = button(GlyphButton::Glyph::minus,
                          QCoreApplication::translate("Settings", "Remove"), actions.remove);
    _controls.push_back(remove);
    buttons->addWidget(remove);
  } else {
    // The others stand below each other.
    buttons->addSpacing(addRow->sizeHint().width());
  }
  _layout->addLayout(buttons);
}

void LineWidget::add(QWidget* control, const QString& name, int stretch) {
  control->setAccessibleName(name);
  // A box of choices goes by the one that it shows.
  control->setAccessibleDescription(name);
  _layout->insertWidget(_layout->count() - 1, control, stretch);
  _controls.insert(_controls.begin() + static_cast<std::ptrdiff_t>(_ownControls++), control);
}

void LineWidget::addSpace() { _layout->insertStretch(_layout->count() - 1, 1); }

void LineWidget::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  QColor color = palette().color(QPalette::WindowText);
  color.setAlphaF(0.2F);
  for (int level = 0; level < _depth; ++level) {
    const QRect line(kSide + level * step() + step() / 2, 0, 1, height());
    painter.fillRect(QStyle::visualRect(layoutDirection(), rect(), line), color);
  }
}

}  // namespace pelmora::filtereditor
