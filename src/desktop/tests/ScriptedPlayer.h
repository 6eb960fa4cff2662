#pragma once

#include "desktop/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariant>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace pelmora::desktop {

/// What a player that plays says of itself.
[[nodiscard]] QVariantMap playing(const QVariantMap& metadata);
/// The same of one that plays a track with a title alone.
[[nodiscard]] QVariantMap playingTitle(const QString& title);

/// A music player that does what a test says, good or bad, on a thread and a connection of its own.
/// Each call returns when it is done. Thread: the test's.
class ScriptedPlayer {
 public:
  /// Answers one question for its properties, or doesn't.
  using Answer = std::function<void(const QDBusMessage& question, const QDBusConnection&)>;

  ScriptedPlayer(const std::string& address, platform::Log& log);

  void takeName(const std::string& name);
  /// Takes a name that another has, too.
  void takeOverName(const std::string& name);
  void dropName(const std::string& name);
  /// What it answers from now on.
  void setProperties(const QVariant& properties);
  void setAnswer(Answer answer);
  /// Says that its properties have changed, so many times.
  void sayChanged(int times = 1);
  void send(const QDBusMessage& message);
  /// Until the bus has taken all that was said.
  void waitForBus();
  /// How often it was asked.
  [[nodiscard]] int asked() const { return *_asked; }
  /// Leaves the bus, whatever it owes.
  void vanish() { _bus.reset(); }

 private:
  class Object;

  void run(std::function<void(const QDBusConnection&)> task);

  std::shared_ptr<std::atomic<int>> _asked = std::make_shared<std::atomic<int>>(0);
  std::shared_ptr<std::shared_ptr<Object>> _object = std::make_shared<std::shared_ptr<Object>>();
  std::unique_ptr<SessionBus> _bus;
};

}  // namespace pelmora::desktop
