#include "filtereditor/GroupHead.h"

#include "filtereditor/QuietComboBox.h"

#include <QCoreApplication>
#include <QSignalBlocker>

#include <utility>

namespace pelmora::filtereditor {

GroupHead::GroupHead(int depth, Match match, const Actions& actions, Choose choose, QWidget* parent)
    : LineWidget(depth, actions, parent),
      _choice(new QuietComboBox(this)),
      _choose(std::move(choose)),
      _match(match) {
  // In the order of Match.
  _choice->addItem(QCoreApplication::translate("Settings", "All of the following"));
  _choice->addItem(QCoreApplication::translate("Settings", "Any of the following"));
  _choice->addItem(QCoreApplication::translate("Settings", "None of the following"));
  _choice->setCurrentIndex(static_cast<int>(match));
  add(_choice, QCoreApplication::translate("Settings", "Match"));
  addSpace();
  connect(_choice, &QComboBox::currentIndexChanged, this, [this](int index) {
    const auto chosen = static_cast<Match>(index);
    setMatch(_choose(this, chosen) ? chosen : _match);
  });
}

void GroupHead::setMatch(Match match) {
  const QSignalBlocker blocker(_choice);
  _match = match;
  _choice->setCurrentIndex(static_cast<int>(match));
}

}  // namespace pelmora::filtereditor
