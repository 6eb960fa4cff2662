#include "config/EnabledCellView.h"

#include <QCoreApplication>
#include <QHBoxLayout>

namespace pelmora::config {

EnabledCellView::EnabledCellView(QWidget* parent) : QWidget(parent), _cb(new QCheckBox(this)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(_cb, 0, Qt::AlignCenter);
  // The list has the keyboard, and switches by it.
  _cb->setFocusPolicy(Qt::NoFocus);
  _cb->setAccessibleName(QCoreApplication::translate("Settings", "On"));
}

}  // namespace pelmora::config
