#include "filtereditor/SuggestingLineEdit.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QMetaObject>
#include <QStringListModel>

#include <mutex>
#include <utility>

namespace pelmora::filtereditor {

/// Where answers arrive, whether or not the field is still there.
struct SuggestingLineEdit::Mailbox {
  std::mutex mutex;  // guards the field, and keeps it while a post is made
  SuggestingLineEdit* field = nullptr;
};

SuggestingLineEdit::SuggestingLineEdit(QWidget* parent)
    : QLineEdit(parent), _mailbox(std::make_shared<Mailbox>()) {
  _mailbox->field = this;
}

SuggestingLineEdit::~SuggestingLineEdit() {
  const std::lock_guard lock(_mailbox->mutex);
  _mailbox->field = nullptr;
}

void SuggestingLineEdit::setAttribute(std::string attribute) {
  if (attribute == _attribute) return;
  _attribute = std::move(attribute);
  ++_question;  // what is still to come is about another one
  setCompleter(nullptr);
  if (hasFocus()) ask();
}

void SuggestingLineEdit::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  // The list of suggestions gives it back.
  if (event->reason() != Qt::PopupFocusReason) ask();
}

void SuggestingLineEdit::ask() {
  if (!_suggest) return;
  _suggest(_attribute, [mailbox = _mailbox,
                        question = ++_question](const std::vector<std::string>& values) {
    const std::lock_guard lock(mailbox->mutex);
    SuggestingLineEdit* const field = mailbox->field;
    if (!field) return;
    QMetaObject::invokeMethod(
        field, [field, question, values] { field->take(question, values); }, Qt::QueuedConnection);
  });
}

void SuggestingLineEdit::take(std::uint64_t question, const std::vector<std::string>& values) {
  if (question != _question) return;
  QStringList texts;
  for (const std::string& value : values) texts.append(QString::fromStdString(value));
  if (auto* known = completer() ? qobject_cast<QStringListModel*>(completer()->model()) : nullptr) {
    // The list may be open.
    if (known->stringList() != texts) known->setStringList(texts);
    return;
  }
  auto* offered = new QCompleter(texts, this);
  offered->setCaseSensitivity(Qt::CaseInsensitive);
  offered->setFilterMode(Qt::MatchContains);
  setCompleter(offered);
}

void SuggestingLineEdit::keyPressEvent(QKeyEvent* event) {
  const bool asksForAll = event->key() == Qt::Key_Down && event->modifiers() == Qt::NoModifier;
  if (!asksForAll || !completer() || completer()->popup()->isVisible()) {
    return QLineEdit::keyPressEvent(event);
  }
  completer()->setCompletionPrefix(text());
  completer()->complete();
}

}  // namespace pelmora::filtereditor
