#pragma once

#include <QLineEdit>
#include <QStringList>
#include <QStyledItemDelegate>

#include <functional>
#include <utility>

namespace pelmora::config {

/// Paints the cells of the list of sources that have no widget, and makes the fields in which the
/// chance and the screens are typed. A field for the chance ends only as its owner allows, however
/// the user leaves it: by keys, or for another place in the window; only the button that cancels
/// the dialog is pressed without asking. Thread: main.
class SourceDelegate : public QStyledItemDelegate {
 public:
  explicit SourceDelegate(QObject* parent = nullptr) : QStyledItemDelegate(parent) {}

  /// The choices that a field for the screens offers.
  void setScreensMenuList(QStringList choices) { _screensMenuList = std::move(choices); }

  /// The width that the days take beside their button.
  [[nodiscard]] static int daysWidth(const QFontMetrics& metrics);
  /// Where in a cell for the screens a click opens the choices.
  [[nodiscard]] static QRect choicesRect(const QRect& cell, Qt::LayoutDirection direction);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;

  /// Asked before a field for the chance ends; where it says no, editing goes on.
  std::function<bool(QLineEdit& field)> shouldEndEditing;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  QWidget* makeScreensField(QWidget* parent) const;
  [[nodiscard]] bool mayEnd(QLineEdit& field) const;
  void leave(QLineEdit& field);

  QStringList _screensMenuList;
};

}  // namespace pelmora::config
