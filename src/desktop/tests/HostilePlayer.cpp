/// A music player that does its worst until it is ended: hostile_player KIND. It says "asked" on
/// its standard output when it was asked for the first time.

#include "desktop/tests/ScriptedPlayer.h"
#include "platform/Log.h"

#include <QCoreApplication>
#include <QDBusVariant>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::desktop {

namespace {

constexpr const char* kName = "org.mpris.MediaPlayer2.hostile";
constexpr int kLetters = 3'000'000;
constexpr int kSignalsAtOnce = 1000;

class NoLog : public platform::Log {
 public:
  void write(std::string_view) override {}
};

/// Answers with each of them in turn.
ScriptedPlayer::Answer inTurn(std::vector<QVariant> answers) {
  auto count = std::make_shared<std::size_t>(0);
  return [answers = std::move(answers), count](const QDBusMessage& question,
                                               const QDBusConnection& connection) {
    connection.send(question.createReply(answers[(*count)++ % answers.size()]));
  };
}

ScriptedPlayer::Answer wrongTypes() {
  QVariant nested("deep");
  for (int i = 0; i < 20; ++i) nested = QVariant::fromValue(QDBusVariant(nested));
  const QVariantMap metadata{{"xesam:title", QVariantList{1, 2}},
                             {"xesam:artist", QVariant::fromValue(QDBusObjectPath("/a"))},
                             {"xesam:album", nested},
                             {"xesam:userRating", "five"}};
  return inTurn({playing(metadata), QVariantMap{{"PlaybackStatus", 7}, {"Metadata", "a text"}}, 7,
                 "text", QVariantList{nested}, QStringList{"a"}, true,
                 playing({{"xesam:title", nested}, {"xesam:userRating", -1e300}})});
}

ScriptedPlayer::Answer missingKeys() {
  return inTurn({QVariantMap(), QVariantMap{{"PlaybackStatus", "Playing"}},
                 QVariantMap{{"Metadata", QVariantMap()}}, playing({}),
                 playing({{"xesam:artist", QStringList()}})});
}

ScriptedPlayer::Answer hugeValues() {
  QVariantMap many{{"xesam:title", "many"}};
  for (int i = 0; i < 20'000; ++i) many[QString::number(i)] = i;
  QStringList artists;
  for (int i = 0; i < kLetters / 100; ++i) artists << QString(100, 'z');
  return inTurn({playingTitle(QString(kLetters, 'y')), playing(many),
                 playing({{"xesam:title", "artists"}, {"xesam:artist", artists}}),
                 playingTitle(QString(kLetters, '\n'))});
}

ScriptedPlayer::Answer strangeLetters() {
  const QChar rightToLeft(0x202E);
  QString stacked("a");
  for (int i = 0; i < 2000; ++i) stacked += QChar(0x0301);
  QString controls;
  for (char16_t each = 1; each < 0xA0; ++each) controls += QChar(each);
  return inTurn({playingTitle(QString(kLetters, rightToLeft)), playingTitle(stacked),
                 playingTitle(controls), playingTitle(QString(5000, QChar(0x2028))),
                 playingTitle(QString(QChar(0xD800)) + "lone"),
                 playing({{"xesam:title", ""}, {"xesam:artist", ""}, {"xesam:album", ""}})});
}

/// A track that is another each time.
ScriptedPlayer::Answer restlessTrack() {
  auto count = std::make_shared<int>(0);
  return [count](const QDBusMessage& question, const QDBusConnection& connection) {
    connection.send(question.createReply(playingTitle(QString::number(++*count))));
  };
}

[[noreturn]] void die(const QDBusMessage&, const QDBusConnection&) {
  std::puts("asked");
  std::fflush(stdout);
  std::raise(SIGKILL);
  std::abort();
}

class Stage {
 public:
  explicit Stage(std::string address) : _address(std::move(address)), _player(_address, _log) {}

  [[noreturn]] void answerWith(ScriptedPlayer::Answer answer, int signalsAtOnce = 1) {
    _player.setAnswer(std::move(answer));
    _player.takeName(kName);
    for (;;) {
      _player.sayChanged(signalsAtOnce);
      waitForBus();
    }
  }

  /// Two that take the name from each other, each as soon as it was asked.
  [[noreturn]] void takeOverAndOver() {
    ScriptedPlayer other(_address, _log);
    _player.setAnswer(restlessTrack());
    other.setAnswer(restlessTrack());
    for (;;) {
      _player.takeName(kName);
      waitUntilAsked(_player);
      other.takeOverName(kName);
      waitUntilAsked(other);
      other.dropName(kName);
    }
  }

 private:
  void waitForBus() {
    _player.waitForBus();
    if (_hasSaid || _player.asked() == 0) return;
    _hasSaid = true;
    std::puts("asked");
    std::fflush(stdout);
  }

  void waitUntilAsked(const ScriptedPlayer& player) {
    for (const int before = player.asked(); player.asked() == before;) waitForBus();
  }

  const std::string _address;
  NoLog _log;
  ScriptedPlayer _player;
  bool _hasSaid = false;
};

[[noreturn]] void play(Stage& stage, const std::string& kind) {
  if (kind == "wrong-types") stage.answerWith(wrongTypes());
  if (kind == "missing-keys") stage.answerWith(missingKeys());
  if (kind == "huge-values") stage.answerWith(hugeValues());
  if (kind == "strange-letters") stage.answerWith(strangeLetters());
  if (kind == "hang") stage.answerWith([](const QDBusMessage&, const QDBusConnection&) {});
  if (kind == "crash") stage.answerWith(die);
  if (kind == "flood") stage.answerWith(restlessTrack(), kSignalsAtOnce);
  if (kind == "take-over") stage.takeOverAndOver();
  std::fprintf(stderr, "hostile_player: there is no kind '%s'\n", kind.c_str());
  std::exit(2);
}

}  // namespace

}  // namespace pelmora::desktop

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (argc != 2 || !address) {
    std::fputs("usage: DBUS_SESSION_BUS_ADDRESS=... hostile_player KIND\n", stderr);
    return 2;
  }
  pelmora::desktop::Stage stage(address);
  pelmora::desktop::play(stage, argv[1]);
}
