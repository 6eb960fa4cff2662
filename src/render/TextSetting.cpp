#include "render/TextSetting.h"

#include "render/DrawList.h"

#include <QFont>
#include <QFontInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace pelmora::render {

namespace {

constexpr qsizetype kMostCharacters = 512;  // of a line, in units of UTF-16
constexpr std::size_t kMostParagraphs = 64;
constexpr double kMostPoints = 16384;
constexpr double kLargestFont = 1000;

double sizeOf(const TextFont& font) { return std::clamp(std::round(font.size), 1.0, kLargestFont); }

/// The family that is really used comes first: behind one that is missing, or a generic one, the
/// emoji would take the digits. Then emoji, and a wide sans for the scripts that it lacks.
QStringList familiesOf(const TextFont& font) {
  const QFont wanted =
      font.family.empty() ? QGuiApplication::font() : QFont(QString::fromStdString(font.family));
  QStringList families{QFontInfo(wanted).family()};
  for (const char* fallback : {"Noto Color Emoji", "DejaVu Sans"}) {
    if (families.front() != QLatin1String(fallback)) families += QLatin1String(fallback);
  }
  return families;
}

QFont qFont(const TextFont& textFont) {
  QFont font(familiesOf(textFont));
  font.setPixelSize(static_cast<int>(sizeOf(textFont)));
  font.setBold(textFont.bold);
  // Hints would fit the letters to the pixels of one scale, and move them at another.
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
  return font;
}

struct Paragraph {
  QFont font;  // of a line without any text
  QString text;
  QList<QTextLayout::FormatRange> formats;
};

bool breaksTheLine(QChar character) {
  return character == QLatin1Char('\n') || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator;
}

void append(Paragraph& paragraph, QStringView text, const QTextCharFormat& format) {
  const int start = static_cast<int>(paragraph.text.size());
  for (const QChar character : text) {
    if (character.category() != QChar::Other_Control) paragraph.text += character;
  }
  paragraph.text.truncate(kMostCharacters);
  if (!paragraph.text.isEmpty() && paragraph.text.back().isHighSurrogate()) paragraph.text.chop(1);
  const int length = static_cast<int>(paragraph.text.size()) - start;
  if (length > 0) paragraph.formats.append({start, length, format});
}

void append(std::vector<Paragraph>& paragraphs, const TextRun& run) {
  const QFont font = qFont(run.font);
  QTextCharFormat format;
  format.setFont(font);
  if (run.color) format.setForeground(toQColor(*run.color));
  const QString text = QString::fromStdString(run.text);
  if (paragraphs.back().text.isEmpty()) paragraphs.back().font = font;
  auto begin = text.begin();
  while (true) {
    const auto end = std::find_if(begin, text.end(), breaksTheLine);
    append(paragraphs.back(), QStringView(begin, end), format);
    if (end == text.end() || paragraphs.size() == kMostParagraphs) return;
    paragraphs.push_back({font, {}, {}});
    begin = end + 1;
  }
}

/// None for a text that shows nothing. A line feed at the very end begins no line.
std::vector<Paragraph> paragraphsOf(const AttributedString& string) {
  std::vector<Paragraph> paragraphs(1);
  for (const TextRun& run : string.runs) append(paragraphs, run);
  const auto isEmpty = [](const Paragraph& each) { return each.text.isEmpty(); };
  if (std::all_of(paragraphs.begin(), paragraphs.end(), isEmpty)) return {};
  if (isEmpty(paragraphs.back())) paragraphs.pop_back();
  return paragraphs;
}

Qt::Alignment qAlignment(TextAlignment alignment, const QString& text) {
  switch (alignment) {
    case TextAlignment::left:
      return Qt::AlignLeft;
    case TextAlignment::center:
      return Qt::AlignHCenter;
    case TextAlignment::right:
      return Qt::AlignRight;
    case TextAlignment::natural:
      break;
  }
  return text.isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
}

std::unique_ptr<QTextLayout> layoutOf(const Paragraph& paragraph, TextAlignment alignment) {
  QTextOption option(qAlignment(alignment, paragraph.text));
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setUseDesignMetrics(true);
  auto layout = std::make_unique<QTextLayout>(paragraph.text, paragraph.font);
  layout->setTextOption(option);
  layout->setFormats(paragraph.formats);
  return layout;
}

}  // namespace

TextSetting::TextSetting(const TextBlock& block, double width)
    : _foregroundColor(block.foregroundColor) {
  if (!(width > 0)) return;
  for (const Paragraph& paragraph : paragraphsOf(block.string)) {
    auto layout = layoutOf(paragraph, block.alignment);
    layout->beginLayout();
    while (_height < kMostPoints) {
      QTextLine line = layout->createLine();
      if (!line.isValid()) break;
      line.setLeadingIncluded(true);
      line.setLineWidth(std::min(width, kMostPoints));
      line.setPosition({0, _height});
      _height += line.height();
      _width = std::max(_width, line.naturalTextWidth());
    }
    layout->endLayout();
    _paragraphs.push_back(std::move(layout));
  }
}

TextSetting::~TextSetting() = default;

Size TextSetting::size() const {
  return {std::min(std::ceil(_width), kMostPoints), std::min(std::ceil(_height), kMostPoints)};
}

void TextSetting::draw(QPainter& painter) const {
  painter.setPen(toQColor(_foregroundColor));
  for (const auto& paragraph : _paragraphs) paragraph->draw(&painter, {});
}

double overhangOf(const AttributedString& string) {
  constexpr double kPartOfFontSize = 0.25;
  double largest = 0;
  for (const TextRun& run : string.runs) largest = std::max(largest, sizeOf(run.font));
  return largest * kPartOfFontSize;
}

}  // namespace pelmora::render
