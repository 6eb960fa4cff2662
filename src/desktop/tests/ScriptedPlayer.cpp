#include "desktop/tests/ScriptedPlayer.h"

#include <QDBusConnectionInterface>
#include <QDBusVariant>

#include <chrono>
#include <future>
#include <stdexcept>

namespace pelmora::desktop {

namespace {

constexpr const char* kPath = "/org/mpris/MediaPlayer2";
constexpr std::chrono::seconds kPatience(20);

}  // namespace

QVariantMap playing(const QVariantMap& metadata) {
  return {{"PlaybackStatus", "Playing"}, {"Metadata", metadata}};
}

QVariantMap playingTitle(const QString& title) { return playing({{"xesam:title", title}}); }

class ScriptedPlayer::Object : public QDBusVirtualObject {
 public:
  explicit Object(std::shared_ptr<std::atomic<int>> asked) : _asked(std::move(asked)) {}

  [[nodiscard]] QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() != "GetAll") return false;
    ++*_asked;
    answer(message, connection);
    return true;
  }

  Answer answer;

 private:
  const std::shared_ptr<std::atomic<int>> _asked;
};

ScriptedPlayer::ScriptedPlayer(const std::string& address, platform::Log& log)
    : _bus(std::make_unique<SessionBus>(address, log)) {
  run([object = _object, asked = _asked](QDBusConnection connection) {
    *object = std::make_shared<Object>(asked);
    connection.registerVirtualObject(kPath, object->get());
  });
  setProperties(QVariantMap());
}

void ScriptedPlayer::run(std::function<void(const QDBusConnection&)> task) {
  const auto done = std::make_shared<std::promise<void>>();
  _bus->post([done, task = std::move(task)](const QDBusConnection& connection) {
    task(connection);
    done->set_value();
  });
  if (done->get_future().wait_for(kPatience) != std::future_status::ready) {
    throw std::runtime_error("the player has no bus");
  }
}

void ScriptedPlayer::takeName(const std::string& name) {
  run([name](const QDBusConnection& connection) {
    connection.interface()->registerService(QString::fromStdString(name),
                                            QDBusConnectionInterface::DontQueueService,
                                            QDBusConnectionInterface::AllowReplacement);
  });
}

void ScriptedPlayer::takeOverName(const std::string& name) {
  run([name](const QDBusConnection& connection) {
    connection.interface()->registerService(QString::fromStdString(name),
                                            QDBusConnectionInterface::ReplaceExistingService);
  });
}

void ScriptedPlayer::dropName(const std::string& name) {
  run([name](const QDBusConnection& connection) {
    connection.interface()->unregisterService(QString::fromStdString(name));
  });
}

void ScriptedPlayer::setProperties(const QVariant& properties) {
  setAnswer([properties](const QDBusMessage& question, const QDBusConnection& connection) {
    connection.send(question.createReply(properties));
  });
}

void ScriptedPlayer::setAnswer(Answer answer) {
  run([object = _object, answer = std::move(answer)](const QDBusConnection&) {
    (*object)->answer = answer;
  });
}

void ScriptedPlayer::sayChanged(int times) {
  QDBusMessage signal =
      QDBusMessage::createSignal(kPath, "org.freedesktop.DBus.Properties", "PropertiesChanged");
  signal << "org.mpris.MediaPlayer2.Player"
         << QVariantMap{{"Metadata", QVariantMap{{"xesam:title", "not to be believed"}}}}
         << QStringList();
  run([signal, times](const QDBusConnection& connection) {
    for (int i = 0; i < times; ++i) connection.send(signal);
  });
}

void ScriptedPlayer::send(const QDBusMessage& message) {
  run([message](const QDBusConnection& connection) { connection.send(message); });
}

void ScriptedPlayer::waitForBus() {
  run([](const QDBusConnection& connection) {
    connection.call(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                   "org.freedesktop.DBus", "GetId"));
  });
}

}  // namespace pelmora::desktop
