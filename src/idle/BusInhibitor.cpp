#include "idle/BusInhibitor.h"

#include "desktop/PendingCall.h"

#include <QDBusError>

#include <utility>

namespace pelmora::idle {

BusInhibitor::BusInhibitor(const QDBusConnection& bus, BusQuestion question,
                           std::function<void()> changed, Say say, int patience)
    : _bus(bus),
      _question(std::move(question)),
      _changed(std::move(changed)),
      _say(std::move(say)),
      _patience(patience),
      _owner(_question.service, bus, QDBusServiceWatcher::WatchForOwnerChange) {
  QObject::connect(
      &_owner, &QDBusServiceWatcher::serviceOwnerChanged, &_context,
      [this](const QString&, const QString&, const QString& owner) { ownerChanged(owner); });
  for (const BusQuestion::Signal& each : _question.signalsOfChange) {
    _signals.push_back(std::make_unique<desktop::BusSignal>(
        _bus, desktop::BusSignal::Name{_question.path, each.interface, each.name},
        [this, isRelevant = each.isRelevant](const QDBusMessage& signal) {
          if (isRelevant(signal)) ask([] {});
        }));
  }
}

void BusInhibitor::ask(std::function<void()> answered) {
  if (!_bus.isConnected()) return answered();
  _waiting.push_back(std::move(answered));
  if (_isAsking) {
    _isOutdated = true;
    return;
  }
  send();
}

void BusInhibitor::send() {
  _isAsking = true;
  _isOutdated = false;
  QDBusMessage call = QDBusMessage::createMethodCall(_question.service, _question.path,
                                                     _question.interface, _question.method);
  call.setArguments(_question.arguments);
  call.setAutoStartService(_question.mayBeStarted);
  desktop::whenFinished(_bus.asyncCall(call, _patience), &_context,
                        [this](const QDBusPendingCall& finished) { take(finished.reply()); });
}

void BusInhibitor::take(const QDBusMessage& answer) {
  _isAsking = false;
  const QDBusError::ErrorType error = QDBusError(answer).type();
  if (answer.type() == QDBusMessage::ReplyMessage) {
    set(_question.isHeld(answer));
  } else if (error == QDBusError::NoReply || error == QDBusError::Timeout) {
    if (!std::exchange(_hasBeenLate, true)) {
      _say("Pelmora: No answer whether the saver may start from " + _question.who);
    }
  } else {
    set(false);
  }
  if (_isOutdated) return send();
  for (const auto& answered : std::exchange(_waiting, {})) answered();
}

void BusInhibitor::set(bool isHeld) {
  if (std::exchange(_isHeld, isHeld) != isHeld) _changed();
}

void BusInhibitor::ownerChanged(const QString& owner) {
  _hasBeenLate = false;
  if (owner.isEmpty()) return set(false);
  ask([] {});
}

}  // namespace pelmora::idle
