#pragma once

#include <QString>
#include <QToolButton>

#include <cstdint>

namespace pelmora::filtereditor {

/// A small button with a sign that is drawn in the colours of the palette, sharp at any scale; its
/// text is what it is called, in its tooltip and to those who cannot see it. Thread: main.
class GlyphButton : public QToolButton {
 public:
  enum class Glyph : std::uint8_t { plus, minus, group };

  GlyphButton(Glyph glyph, const QString& name, QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Glyph _glyph;
};

}  // namespace pelmora::filtereditor
