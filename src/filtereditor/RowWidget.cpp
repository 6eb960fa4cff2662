#include "filtereditor/RowWidget.h"

#include "filtereditor/AttributeNames.h"
#include "filtereditor/QuietComboBox.h"

#include <QCoreApplication>
#include <QStandardItemModel>

#include <algorithm>
#include <utility>

namespace pelmora::filtereditor {

namespace {

using platform::predicate::Operator;

void append(QStandardItemModel& model, const QString& text, const QVariant& data) {
  auto* item = new QStandardItem(text);
  item->setData(data, Qt::UserRole);
  model.appendRow(item);
}

void append(QStandardItemModel& model, const QString& text, Operator type) {
  append(model, text, static_cast<int>(type));
}

QString nameOf(const std::string& attribute) { return QString::fromStdString(attribute); }

QStandardItemModel* attributeModel(QObject* parent) {
  auto* model = new QStandardItemModel(parent);
  for (const AttributeName& name : attributeNames()) {
    append(*model, name.translated(), nameOf(std::string(name.attribute)));
  }
  return model;
}

}  // namespace

RowChoices RowChoices::make(QObject* parent) {
  auto* operators = new QStandardItemModel(parent);
  append(*operators, QCoreApplication::translate("Settings", "contains"), Operator::contains);
  append(*operators, QCoreApplication::translate("Settings", "begins with"), Operator::beginsWith);
  append(*operators, QCoreApplication::translate("Settings", "ends with"), Operator::endsWith);
  append(*operators, QCoreApplication::translate("Settings", "is"), Operator::equal);
  append(*operators, QCoreApplication::translate("Settings", "is not"), Operator::notEqual);
  return {.attributes = attributeModel(parent), .operators = operators};
}

RowWidget::RowWidget(int depth, Row row, const RowChoices& choices, const Hooks& hooks,
                     QWidget* parent)
    : LineWidget(depth, hooks.actions, parent),
      _row(std::move(row)),
      _changed(hooks.changed),
      _attribute(new QuietComboBox(this)),
      _operator(new QuietComboBox(this)),
      _text(new SuggestingLineEdit(this)) {
  makeAttribute(choices.attributes);
  makeOperator(choices.operators);
  makeText(hooks.suggest);
}

void RowWidget::makeAttribute(QAbstractItemModel* attributes) {
  _attribute->setModel(attributes);
  const QString name = nameOf(_row.attribute);
  if (_attribute->findData(name) < 0) {
    // One more in a list of its own, as wide as those of the others.
    const int width = _attribute->sizeHint().width();
    _attribute->setFixedWidth(width);
    QStandardItemModel* own = attributeModel(_attribute);
    const int room = width - 3 * fontMetrics().height();
    append(*own, fontMetrics().elidedText(name, Qt::ElideMiddle, room), name);
    _attribute->setModel(own);
    _attribute->setToolTip(name.toHtmlEscaped());
  }
  _attribute->setCurrentIndex(_attribute->findData(name));
  add(_attribute, QCoreApplication::translate("Settings", "Attribute"));
  connect(_attribute, &QComboBox::currentIndexChanged, this, [this] {
    _row.attribute = _attribute->currentData().toString().toStdString();
    _text->setAttribute(_row.attribute);
    _changed(this, _row);
  });
}

void RowWidget::makeOperator(QAbstractItemModel* operators) {
  _operator->setModel(operators);
  _operator->setCurrentIndex(_operator->findData(static_cast<int>(_row.type)));
  add(_operator, QCoreApplication::translate("Settings", "Operator"));
  connect(_operator, &QComboBox::currentIndexChanged, this, [this] {
    _row.type = static_cast<Operator>(_operator->currentData().toInt());
    _changed(this, _row);
  });
}

void RowWidget::makeText(const Suggest& suggest) {
  constexpr int kShortest = 12;  // characters
  _text->setMinimumWidth(kShortest * fontMetrics().averageCharWidth());
  const QString shown = QString::fromStdString(_row.text);
  _text->setMaxLength(std::max(static_cast<int>(kLongestText / 3), static_cast<int>(shown.size())));
  _text->setText(shown);
  _text->setCursorPosition(0);
  _text->setAttribute(_row.attribute);
  _text->setSuggest(suggest);
  add(_text, QCoreApplication::translate("Settings", "Text"), 1);
  connect(_text, &QLineEdit::textChanged, this, [this](const QString& text) {
    _row.text = text.toStdString();
    _changed(this, _row);
  });
}

}  // namespace pelmora::filtereditor
