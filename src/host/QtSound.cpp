#include "host/QtSound.h"

#include <QApplication>

namespace pelmora::host {

void QtSound::beep() { QApplication::beep(); }

}  // namespace pelmora::host
