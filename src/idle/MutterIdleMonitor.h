#pragma once

#include "desktop/BusSignal.h"
#include "idle/IdleMonitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace pelmora::idle {

/// GNOME's compositor, asked over the session's bus.
/// Thread: main. Errors: while the compositor is away, or says no, the user counts as active. What
/// others than the compositor say is ignored.
class MutterIdleMonitor : public IdleMonitor {
 public:
  explicit MutterIdleMonitor(const QDBusConnection& bus);
  ~MutterIdleMonitor() override;

  /// Tells `found` whether there is one on `bus`; not at all when `context` is gone by then.
  static void look(const QDBusConnection& bus, QObject* context, std::function<void(bool)> found);

  void start(std::chrono::seconds delay, Events events) override;

 private:
  void fired(const QDBusMessage& message);
  void addIdleWatch();
  void addActiveWatch();
  void ownerChanged(const QString& owner);
  void becomeActive();

  QDBusConnection _bus;
  QObject _context;  // of calls: their answers come no more when this has gone
  QDBusServiceWatcher _service;
  std::optional<desktop::BusSignal> _fired;
  std::chrono::seconds _delay{};
  Events _events;
  QString _owner;                            // its unique name, "" while it is not known
  std::optional<QDBusMessage> _firedBefore;  // the last that came while it was not known
  unsigned int _idleWatch = 0;               // their ids; 0 is none
  unsigned int _activeWatch = 0;             // once
  unsigned int _early = 0;                   // fired before its id was told
  unsigned int _generation = 0;              // counts owners: answers of an earlier one are ignored
  bool _isIdle = false;
};

}  // namespace pelmora::idle
