#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

namespace pelmora::desktop {

struct StopPace;

/// A signal on a bus, listened to as long as it does not come too often: then the bus keeps it away
/// for a while. What arrives is of any type.
/// Thread: the bus's.
class BoundedSignal : public QObject {
  Q_OBJECT

 public:
  struct Name {
    QString sender;  // a unique name; "" for anyone
    QString path;    // "" for any
    QString interface;
    QString member;
    QString firstArgument = {};  // a text; "" for any
  };
  using Received = std::function<void(const QDBusMessage&)>;

  BoundedSignal(const QDBusConnection& connection, Name name, const StopPace& pace,
                Received received);
  ~BoundedSignal() override;

  [[nodiscard]] bool isListening() const { return _isListening; }

 private Q_SLOTS:
  void receive(const QDBusMessage& message);

 private:
  void listen();
  void stopListening();
  [[nodiscard]] QStringList arguments() const;

  QDBusConnection _connection;
  const Name _name;
  const int _most;
  const Received _received;
  QTimer _window;  // runs from a first signal on
  int _heard = 0;  // in the window
  bool _isListening = false;
};

}  // namespace pelmora::desktop
