#include "filtereditor/KeptNotice.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace pelmora::filtereditor {

namespace {

constexpr int kLongestShown = 20'000;  // characters

}  // namespace

KeptNotice::KeptNotice(std::function<void()> replace, QWidget* parent)
    : QWidget(parent),
      _text(new QPlainTextEdit(this)),
      _replace(new QPushButton(QCoreApplication::translate("Settings", "Replace It"), this)) {
  auto* notice =
      new QLabel(QCoreApplication::translate(
                     "Settings", "This filter cannot be edited here. It is kept as it is."),
                 this);
  notice->setWordWrap(true);
  notice->setTextFormat(Qt::PlainText);

  _text->setReadOnly(true);
  _text->setTabChangesFocus(true);
  _text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  _text->setMinimumHeight(3 * _text->fontMetrics().lineSpacing());
  _text->setAccessibleName(QCoreApplication::translate("Settings", "Filter"));

  _replace->setAccessibleName(_replace->text());
  // Return means the sheet's own button.
  _replace->setAutoDefault(false);
  connect(_replace, &QPushButton::clicked, this, [action = std::move(replace)] { action(); });

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(notice);
  layout->addWidget(_text, 1);
  layout->addWidget(_replace, 0, Qt::AlignLeading);
}

QWidget* KeptNotice::entry() const { return _text; }

QWidget* KeptNotice::lastControl() const { return _replace; }

void KeptNotice::setText(const std::string& text) {
  QString shown = QString::fromStdString(text);
  if (shown.size() > kLongestShown) shown = shown.left(kLongestShown) + QChar(0x2026);
  _text->setPlainText(shown);
}

}  // namespace pelmora::filtereditor
