#include "cards/TextLine.h"

#include "cards/CaptionFonts.h"

#include <QFont>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

namespace pelmora::cards {

namespace {

constexpr int kDesignSize = 100;  // pixels that the text is laid out at

QFont designFont(const CardFont& cardFont) {
  QFont font(cardFont.families);
  font.setPixelSize(kDesignSize);
  // Hints would fit the letters to the pixels of one size, and move them at another.
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
  return font;
}

bool breaksTheLine(QChar character) {
  return character.category() == QChar::Other_Control ||
         character.category() == QChar::Separator_Line ||
         character.category() == QChar::Separator_Paragraph;
}

}  // namespace

TextLine::TextLine(const QString& text, const CardFont& font)
    : _layout(std::make_unique<QTextLayout>(text, designFont(font))),
      _sizeFactor(font.sizeFactor),
      _ascent(font.ascent * kDesignSize),
      _descent(font.descent * kDesignSize) {
  QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
  option.setWrapMode(QTextOption::NoWrap);
  option.setUseDesignMetrics(true);
  _layout->setTextOption(option);
  _layout->beginLayout();
  QTextLine line = _layout->createLine();
  line.setLineWidth(0);
  _layout->endLayout();
  if (_ascent <= 0) _ascent = line.ascent();
  if (_descent <= 0) _descent = line.descent();
}

TextLine::~TextLine() = default;
TextLine::TextLine(TextLine&&) noexcept = default;

Size TextLine::sizeAt(double fontSize) const {
  const double scale = fontSize * _sizeFactor / kDesignSize;
  return {_layout->lineAt(0).naturalTextWidth() * scale, (_ascent + _descent) * scale};
}

void TextLine::draw(QPainter& painter, const QPointF& topLeft, double fontSize,
                    const QColor& color) const {
  const double scale = fontSize * _sizeFactor / kDesignSize;
  if (!(scale > 0)) return;
  painter.save();
  painter.translate(topLeft);
  painter.scale(scale, scale);
  painter.setPen(color);
  _layout->draw(&painter, QPointF(0, _ascent - _layout->lineAt(0).ascent()));
  painter.restore();
}

QString singleLine(std::string_view bytes) {
  QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
  for (QChar& character : text) {
    if (breaksTheLine(character)) character = QLatin1Char(' ');
  }
  return text;
}

}  // namespace pelmora::cards
