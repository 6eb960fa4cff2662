#pragma once

#include "desktop/BusSignal.h"
#include "idle/Inhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::idle {

/// What one program on a bus is asked, and when.
struct BusQuestion {
  struct Signal {
    QString interface;
    QString name;
    bool (*isRelevant)(const QDBusMessage& signal);
  };

  std::string who;  // for the log
  QString service;
  QString path;
  QString interface;
  QString method;
  QVariantList arguments;
  std::vector<Signal> signalsOfChange;
  /// Whether its answer, of any type, says that the saver is not to start.
  bool (*isHeld)(const QDBusMessage& answer);
  /// Whether it may be started to be asked.
  bool mayBeStarted = false;
};

/// An inhibitor whose state a program on a bus tells: asked once when it is made known, when it
/// says that something changed, and when it comes or goes.
/// Thread: main. Errors: one that has no answer holds nothing; one that does not answer in time
/// holds what it held, with a line in the log the first time. Signals are not trusted: they only
/// lead to the question, and there is one at a time.
class BusInhibitor : public Inhibitor {
 public:
  /// What is said of it, line by line.
  using Say = std::function<void(const std::string& line)>;

  /// How long it may take to answer, in milliseconds, unless said otherwise.
  static constexpr int kPatience = 1000;

  BusInhibitor(const QDBusConnection& bus, BusQuestion question, std::function<void()> changed,
               Say say, int patience = kPatience);

  [[nodiscard]] bool isHeld() const override { return _isHeld; }
  [[nodiscard]] std::string holder() const override { return _question.who; }
  void ask(std::function<void()> answered) override;

 private:
  void send();
  void take(const QDBusMessage& answer);
  void set(bool isHeld);
  void ownerChanged(const QString& owner);

  QDBusConnection _bus;
  const BusQuestion _question;
  const std::function<void()> _changed;
  const Say _say;
  const int _patience;  // milliseconds
  QObject _context;     // of calls: their answers come no more when this has gone
  QDBusServiceWatcher _owner;
  std::vector<std::unique_ptr<desktop::BusSignal>> _signals;
  bool _isHeld = false;
  bool _isAsking = false;
  bool _isOutdated = false;  // something changed since it was asked
  bool _hasBeenLate = false;
  std::vector<std::function<void()>> _waiting;
};

}  // namespace pelmora::idle
