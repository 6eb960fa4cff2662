#pragma once

#include "desktop/NotificationInbox.h"
#include "platform/Clock.h"
#include "platform/players/PlayerList.h"
#include "platform/players/TrackNews.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace pelmora::desktop {

/// Watches the music players on the bus ("org.mpris.MediaPlayer2.…"), and puts what they play into
/// the inbox. That a player's properties changed is taken as a hint alone: it is then asked. From a
/// hint to the question the bus keeps its further hints away, so that a player which says it at
/// every moment costs no more than one that says it once.
/// Thread: the bus's. Errors: what players say is untrusted; one that does not answer is what it
/// was.
class PlayerWatch : public QObject {
  Q_OBJECT

 public:
  struct Surroundings {
    const platform::Clock& clock;
    platform::players::PlayerPace pace;
    std::shared_ptr<NotificationInbox> inbox;
    std::shared_ptr<std::atomic<bool>> isPlayerThere;  // kept up to date
  };
  /// Gives back whether the track was still waited for.
  using Answer = std::function<bool(const std::optional<platform::players::Track>&)>;

  PlayerWatch(const QDBusConnection& connection, Surroundings surroundings);

  /// Asks the player that counts what it plays; `answer` is called here, soon or when it has failed
  /// to tell. Who has waited for a track is not told of it once more.
  void ask(Answer answer);

 private Q_SLOTS:
  void propertiesChanged(const QDBusMessage& message);
  void busGone();

 private:
  struct Question {
    std::string owner;
    Answer answer;
  };

  void listPlayers();
  void askForOwner(const QString& name);
  void ownerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);
  void askPlayer(const std::string& owner);
  void answered(const std::string& owner, const QDBusPendingCall& call);
  void listen(const std::string& owner);
  void stopListening(const std::string& owner);
  void answerQuestions();
  void step();
  [[nodiscard]] double now() const { return _around.clock.mediaTime(); }

  const Surroundings _around;
  QDBusConnection _connection;
  QDBusServiceWatcher _names;
  QTimer _timer;
  platform::players::PlayerList _players;
  platform::players::TrackNews _news;
  std::set<std::string, std::less<>> _heard;  // the owners whose hints come in
  std::vector<Question> _questions;           // that wait for a player
};

}  // namespace pelmora::desktop
