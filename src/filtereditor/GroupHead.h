#pragma once

#include "filtereditor/FilterRows.h"
#include "filtereditor/LineWidget.h"

#include <functional>

class QComboBox;

namespace pelmora::filtereditor {

/// The head of a group, at which all, any or none of it is chosen. Thread: main.
class GroupHead : public LineWidget {
 public:
  /// Called with each choice; false: it cannot be, and the choice before stands again.
  using Choose = std::function<bool(LineWidget*, Match)>;

  GroupHead(int depth, Match match, const Actions& actions, Choose choose, QWidget* parent);

  /// Shows another choice, and tells nobody.
  void setMatch(Match match);

 private:
  QComboBox* const _choice;
  const Choose _choose;
  Match _match;
};

}  // namespace pelmora::filtereditor
