#pragma once

#include <QDBusPendingCallWatcher>
#include <QObject>

#include <utility>

namespace pelmora::desktop {

/// Calls `then` with the call when it is finished, unless `context` is gone by then. On the thread
/// of `context`. A call on a bus that is not connected never finishes.
template <typename Then>
void whenFinished(const QDBusPendingCall& call, QObject* context, Then then) {
  auto* watcher = new QDBusPendingCallWatcher(call, context);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                   [then = std::move(then)](QDBusPendingCallWatcher* finished) {
                     finished->deleteLater();
                     then(*finished);
                   });
}

}  // namespace pelmora::desktop
