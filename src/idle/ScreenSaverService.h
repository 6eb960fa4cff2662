#pragma once

#include "idle/Inhibitor.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <set>
#include <string>

namespace pelmora::idle {

/// "org.freedesktop.ScreenSaver" on the session's bus, where nobody else is it: players and
/// browsers ask it to keep the saver away. What a caller holds goes when it leaves the bus. While a
/// desktop is it, or one is there that may want to be, the desktop's own inhibitors hold what its
/// programs asked for.
/// Thread: main. Errors: callers are not trusted; there are limits to what they hold and say.
class ScreenSaverService : public QObject, public Inhibitor, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")
 public:
  struct Events {
    std::function<void()> changed;
    std::function<void()> userSimulated;  // a caller says that the user is there
    std::function<void(const std::string& line)> say;
  };

  static constexpr std::size_t kMostHeld = 256;
  static constexpr qsizetype kLongestText = 100;  // characters

  ScreenSaverService(const QDBusConnection& bus, Events events);
  ~ScreenSaverService() override;

  [[nodiscard]] bool isHeld() const override { return !_held.empty(); }
  [[nodiscard]] std::string holder() const override;
  void ask(std::function<void()> answered) override { answered(); }

 public Q_SLOTS:
  // The names are the interface's.
  unsigned int Inhibit(const QString& application, const QString& reason);  // NOLINT
  void UnInhibit(unsigned int cookie);                                      // NOLINT
  void SimulateUserActivity();                                              // NOLINT

 private:
  struct Held {
    QString caller;
    std::string what;
  };

  void watchForDesktops();
  void desktopChanged(const QString& name, bool isThere);
  void requestName();
  void releaseName();
  void dropAll();
  void nameChanged(const QString& owner);
  void follow(const QString& caller);
  void dropAllOf(const QString& caller);
  [[nodiscard]] bool holds(const QString& caller) const;

  QDBusConnection _bus;
  const Events _events;
  QDBusServiceWatcher _name;
  QDBusServiceWatcher _callers;
  QDBusServiceWatcher _desktopNames;
  std::set<QString> _desktops;         // those of the names that are there
  std::set<QString> _unanswered;       // of which it is not known yet
  std::map<unsigned int, Held> _held;  // by cookie
  unsigned int _lastCookie = 0;
};

}  // namespace pelmora::idle
