#include "filtereditor/GlyphButton.h"

#include <QPainter>
#include <QStyleOptionToolButton>
#include <QStylePainter>

#include <cmath>

namespace pelmora::filtereditor {

namespace {

void paintPlus(QPainter& painter, QPointF center, double arm) {
  painter.drawLine(center - QPointF(arm, 0), center + QPointF(arm, 0));
  painter.drawLine(center - QPointF(0, arm), center + QPointF(0, arm));
}

/// A plus in brackets.
void paintGroup(QPainter& painter, QPointF center, double arm) {
  paintPlus(painter, center, arm * 0.62);
  for (const double side : {-1.0, 1.0}) {
    const QPointF outer(center.x() + side * arm * 1.3, center.y());
    const QPointF top(0, -arm * 1.15);
    const QPointF inward(-side * arm * 0.4, 0);
    painter.drawPolyline(
        QPolygonF{outer + top + inward, outer + top, outer - top, outer - top + inward});
  }
}

}  // namespace

GlyphButton::GlyphButton(Glyph glyph, const QString& name, QWidget* parent)
    : QToolButton(parent), _glyph(glyph) {
  setAutoRaise(true);
  setToolTip(name);
  setAccessibleName(name);
}

QSize GlyphButton::sizeHint() const {
  const int side = fontMetrics().height() + 8;
  return {side, side};
}

void GlyphButton::paintEvent(QPaintEvent* /*event*/) {
  QStylePainter painter(this);
  QStyleOptionToolButton option;
  initStyleOption(&option);
  painter.drawComplexControl(QStyle::CC_ToolButton, option);

  // On whole pixels, so that the lines are sharp where they are one or two wide.
  const double arm = std::round(fontMetrics().ascent() * 0.38);
  const QPointF center = QPointF(rect().center()) + QPointF(0.5, 0.5);
  const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(group, QPalette::ButtonText), qMax(1.0, arm / 4),
                      Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
  switch (_glyph) {
    case Glyph::plus:
      return paintPlus(painter, center, arm);
    case Glyph::minus:
      return painter.drawLine(center - QPointF(arm, 0), center + QPointF(arm, 0));
    case Glyph::group:
      return paintGroup(painter, center, arm);
  }
}

}  // namespace pelmora::filtereditor
