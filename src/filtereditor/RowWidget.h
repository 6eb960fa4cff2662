#pragma once

#include "filtereditor/FilterRows.h"
#include "filtereditor/LineWidget.h"
#include "filtereditor/SuggestingLineEdit.h"

#include <functional>

class QAbstractItemModel;
class QComboBox;

namespace pelmora::filtereditor {

/// The attributes and the operators that rows offer, shared by all of them.
struct RowChoices {
  QAbstractItemModel* attributes = nullptr;
  QAbstractItemModel* operators = nullptr;

  /// Owned by the parent.
  [[nodiscard]] static RowChoices make(QObject* parent);
};

/// A row: attribute, operator, text. What it was made with it keeps until the user changes it; an
/// attribute that is not offered is there under its own name. Thread: main.
class RowWidget : public LineWidget {
 public:
  struct Hooks {
    Actions actions;
    std::function<void(LineWidget*, const Row&)> changed;
    Suggest suggest;
  };

  RowWidget(int depth, Row row, const RowChoices& choices, const Hooks& hooks, QWidget* parent);

  [[nodiscard]] QWidget* entry() const override { return _text; }

 private:
  void makeAttribute(QAbstractItemModel* attributes);
  void makeOperator(QAbstractItemModel* operators);
  void makeText(const Suggest& suggest);

  Row _row;
  const std::function<void(LineWidget*, const Row&)> _changed;
  QComboBox* const _attribute;
  QComboBox* const _operator;
  SuggestingLineEdit* const _text;
};

}  // namespace pelmora::filtereditor
