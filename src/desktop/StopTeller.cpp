#include "desktop/StopTeller.h"

#include <utility>

namespace pelmora::desktop {

StopTeller::StopTeller(std::shared_ptr<NotificationInbox> inbox, const StopPace& pace)
    : _inbox(std::move(inbox)) {
  _interval.setSingleShot(true);
  _interval.setInterval(pace.interval);
  QObject::connect(&_interval, &QTimer::timeout, [this] {
    if (std::exchange(_isDue, false)) tell();
  });
}

void StopTeller::stopped() {
  if (_interval.isActive()) {
    _isDue = true;
  } else {
    tell();
  }
}

void StopTeller::tell() {
  _inbox->put({.name = kScreensaverDidStop, .object = {}, .userInfo = {}});
  _interval.start();
}

}  // namespace pelmora::desktop
