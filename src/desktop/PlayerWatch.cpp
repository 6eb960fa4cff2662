#include "desktop/PlayerWatch.h"

#include "desktop/BusValues.h"
#include "desktop/PendingCall.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelmora::desktop {

namespace {

constexpr const char* kPlayerNames = "org.mpris.MediaPlayer2.";
constexpr const char* kPlayerPath = "/org/mpris/MediaPlayer2";
constexpr const char* kPlayerInterface = "org.mpris.MediaPlayer2.Player";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";
constexpr const char* kChanged = "PropertiesChanged";
constexpr const char* kBus = "org.freedesktop.DBus";
constexpr const char* kBusPath = "/org/freedesktop/DBus";

QDBusMessage callToBus(const char* method) {
  return QDBusMessage::createMethodCall(kBus, kBusPath, kBus, method);
}

}  // namespace

PlayerWatch::PlayerWatch(const QDBusConnection& connection, Surroundings surroundings)
    : _around(std::move(surroundings)),
      _connection(connection),
      _players(_around.pace),
      _news(_around.pace.settle) {
  _timer.setSingleShot(true);
  connect(&_timer, &QTimer::timeout, this, [this] { step(); });
  _connection.connect(QString(), "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local",
                      "Disconnected", this, SLOT(busGone()));
  connect(&_names, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString& name, const QString& oldOwner, const QString& newOwner) {
            ownerChanged(name, oldOwner, newOwner);
          });
  // Before the names are listed, so that none that comes meanwhile is missed.
  _names.setConnection(_connection);
  _names.addWatchedService("org.mpris.MediaPlayer2*");
  listPlayers();
}

void PlayerWatch::listPlayers() {
  whenFinished(_connection.asyncCall(callToBus("ListNames")), this, [this](const auto& call) {
    if (call.isError() || call.reply().signature() != QLatin1String("as")) return;
    for (const QString& name : call.reply().arguments().constFirst().toStringList()) {
      if (name.startsWith(QLatin1String(kPlayerNames))) askForOwner(name);
    }
  });
}

void PlayerWatch::askForOwner(const QString& name) {
  QDBusMessage question = callToBus("GetNameOwner");
  question << name;
  whenFinished(_connection.asyncCall(question), this, [this, name](const auto& call) {
    if (call.isError() || call.reply().signature() != QLatin1String("s")) return;
    ownerChanged(name, QString(), call.reply().arguments().constFirst().toString());
  });
}

void PlayerWatch::ownerChanged(const QString& name, const QString& oldOwner,
                               const QString& newOwner) {
  _players.nameChanged(name.toStdString(), newOwner.toStdString(), now());
  const std::string old = oldOwner.toStdString();
  if (!_players.has(old)) stopListening(old);
  step();
}

void PlayerWatch::busGone() {
  _players.clear();
  _heard.clear();
  step();
}

void PlayerWatch::propertiesChanged(const QDBusMessage& message) {
  const std::string owner = message.service().toStdString();
  stopListening(owner);
  _players.hint(owner, now());
  step();
}

void PlayerWatch::ask(Answer answer) {
  const std::string owner = _players.refresh(now());
  if (owner.empty()) {
    answer(std::nullopt);
    return;
  }
  _questions.push_back({owner, std::move(answer)});
  step();
}

void PlayerWatch::askPlayer(const std::string& owner) {
  listen(owner);  // first: what changes after the answer is then heard
  QDBusMessage question = QDBusMessage::createMethodCall(QString::fromStdString(owner), kPlayerPath,
                                                         kProperties, "GetAll");
  question.setAutoStartService(false);
  question << QString(kPlayerInterface);
  const int patience = static_cast<int>(_around.pace.patience * 1000);
  whenFinished(_connection.asyncCall(question, patience), this,
               [this, owner](const auto& call) { answered(owner, call); });
}

void PlayerWatch::answered(const std::string& owner, const QDBusPendingCall& call) {
  std::optional<platform::players::PlayerState> state;
  if (!call.isError() && call.reply().signature() == QLatin1String("a{sv}")) {
    state =
        platform::players::playerState(dictionaryFromBus(call.reply().arguments().constFirst()));
  }
  _players.answered(owner, state, now());
  answerQuestions();  // before it is asked again, for a hint that came meanwhile
  step();
}

void PlayerWatch::listen(const std::string& owner) {
  if (!_heard.insert(owner).second) return;
  _connection.connect(QString::fromStdString(owner), kPlayerPath, kProperties, kChanged,
                      {QString(kPlayerInterface)}, QString(), this,
                      SLOT(propertiesChanged(QDBusMessage)));
}

void PlayerWatch::stopListening(const std::string& owner) {
  if (_heard.erase(owner) == 0) return;
  _connection.disconnect(QString::fromStdString(owner), kPlayerPath, kProperties, kChanged,
                         {QString(kPlayerInterface)}, QString(), this,
                         SLOT(propertiesChanged(QDBusMessage)));
}

void PlayerWatch::answerQuestions() {
  const auto open =
      std::stable_partition(_questions.begin(), _questions.end(),
                            [this](const Question& each) { return _players.isAsked(each.owner); });
  std::vector<Question> answered(std::make_move_iterator(open),
                                 std::make_move_iterator(_questions.end()));
  _questions.erase(open, _questions.end());
  for (const Question& each : answered) {
    const auto track = _players.answeredTrack(each.owner);
    if (each.answer(track) && track) _news.told(*track);
  }
}

void PlayerWatch::step() {
  const double moment = now();
  for (const std::string& owner : _players.takeDue(moment)) askPlayer(owner);
  _news.set(_players.track(), moment);
  if (auto notification = _news.take(moment)) _around.inbox->put(std::move(*notification));
  *_around.isPlayerThere = !_players.isEmpty();
  answerQuestions();

  std::optional<double> due = _players.nextDue();
  if (_news.nextDue()) due = std::min(due.value_or(*_news.nextDue()), *_news.nextDue());
  if (due) {
    _timer.start(static_cast<int>(std::ceil(std::max(0.0, *due - moment) * 1000)));
  } else {
    _timer.stop();
  }
}

}  // namespace pelmora::desktop
