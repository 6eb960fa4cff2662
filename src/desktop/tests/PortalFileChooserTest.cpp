#include "desktop/PortalFileChooser.h"

#include "desktop/tests/TestBus.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <vector>

namespace pelmora::desktop {

namespace {

using testing::ElementsAre;

constexpr const char* kName = "org.freedesktop.portal.Desktop";

/// A portal that answers as it is told.
class Portal : public QDBusVirtualObject {
 public:
  [[nodiscard]] QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() == "Get") {
      connection.send(message.createReply(QVariant::fromValue(QDBusVariant(version))));
    } else if (message.member() == "Close") {
      closed = message.path();
    } else if (refuses) {
      connection.send(message.createErrorReply("org.example.No", "no"));
    } else {
      asked = message.arguments();
      const QString sender = message.service().mid(1).replace('.', '_');
      const QString token = qdbus_cast<QVariantMap>(asked[2])["handle_token"].toString();
      const QString handle = "/org/freedesktop/portal/desktop/request/" + sender + "/" + token;
      connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(handle))));
      opened = handle;
      if (isUndecided) return true;
      QDBusMessage answer =
          QDBusMessage::createSignal(handle, "org.freedesktop.portal.Request", "Response");
      answer << response << results;
      connection.send(answer);
    }
    return true;
  }

  unsigned int version = 3;
  bool isUndecided = false;  // the user goes on looking
  QString opened;
  QString closed;
  bool refuses = false;
  unsigned int response = 0;
  QVariantMap results;
  QVariantList asked;
};

class PortalFileChooserTest : public testing::Test {
 protected:
  PortalFileChooserTest()
      : bus(QDBusConnection::connectToBus(QString::fromStdString(testBus.address()), "chooser")),
        portalBus(
            QDBusConnection::connectToBus(QString::fromStdString(testBus.address()), "portal")) {}
  ~PortalFileChooserTest() override {
    QDBusConnection::disconnectFromBus("chooser");
    QDBusConnection::disconnectFromBus("portal");
  }

  void startPortal() {
    portalBus.registerVirtualObject("/org/freedesktop/portal/desktop", &portal,
                                    QDBusConnection::SubPath);
    ASSERT_TRUE(portalBus.registerService(kName));
  }
  /// Until the user, or nobody, has chosen.
  std::optional<std::vector<FilePath>> choose() {
    PortalFileChooser chooser(bus);
    std::optional<std::optional<std::vector<FilePath>>> answer;
    chooser.chooseFolders({"x11:1a", "Choose"}, [&](auto folders) { answer = folders; });
    while (!answer) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return *answer;
  }

  TestBus testBus;
  QDBusConnection bus;
  QDBusConnection portalBus;
  Portal portal;
};

}  // namespace

TEST_F(PortalFileChooserTest, givesBackTheFoldersThatWereChosen) {
  startPortal();
  portal.results = {{"uris", QStringList{"file:///home/me/a%20b", "file:///x/%FF", "http://x/",
                                         "file:///c%00d"}}};
  EXPECT_THAT(choose(),
              testing::Optional(ElementsAre(FilePath("/home/me/a b"), FilePath("/x/\xFF"))));
  EXPECT_EQ(portal.asked[0], "x11:1a");
  EXPECT_EQ(portal.asked[1], "Choose");
}

TEST_F(PortalFileChooserTest, givesBackNoneWhenThatIsCancelled) {
  startPortal();
  portal.response = 1;
  portal.results = {{"uris", QStringList{"file:///home"}}};
  EXPECT_THAT(choose(), testing::Optional(testing::IsEmpty()));
}

TEST_F(PortalFileChooserTest, saysWhereThereIsNone) {
  EXPECT_EQ(choose(), std::nullopt);
  startPortal();
  portal.version = 2;
  EXPECT_EQ(choose(), std::nullopt);
  portal.version = 3;
  portal.refuses = true;
  EXPECT_EQ(choose(), std::nullopt);
  portal.refuses = false;
  portal.response = 2;
  EXPECT_EQ(choose(), std::nullopt);
}

TEST_F(PortalFileChooserTest, saysWhereThereIsNoBus) {
  testBus.kill();
  while (bus.isConnected()) std::this_thread::yield();
  EXPECT_EQ(choose(), std::nullopt);
  const QDBusConnection none("none");
  PortalFileChooser chooser(none);
  bool isAnswered = false;
  chooser.chooseFolders({}, [&isAnswered](const auto& folders) {
    EXPECT_EQ(folders, std::nullopt);
    isAnswered = true;
  });
  EXPECT_TRUE(isAnswered);
}

TEST_F(PortalFileChooserTest, takesItsQuestionBack) {
  startPortal();
  portal.isUndecided = true;
  PortalFileChooser chooser(bus);
  int answers = 0;
  const auto countAnswers = [&answers](const auto& folders) {
    EXPECT_THAT(folders, testing::Optional(testing::IsEmpty()));
    ++answers;
  };
  chooser.chooseFolders({}, countAnswers);
  while (portal.opened.isEmpty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  chooser.cancel();
  EXPECT_EQ(answers, 1);
  while (portal.closed.isEmpty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_EQ(portal.closed, portal.opened);
  chooser.cancel();
  EXPECT_EQ(answers, 1);
}

TEST_F(PortalFileChooserTest, opensNothingThatWasTakenBackBefore) {
  startPortal();
  portal.response = 1;
  PortalFileChooser chooser(bus);
  int answers = 0;
  chooser.chooseFolders({"first", ""}, [&answers](const auto&) { ++answers; });
  chooser.cancel();
  EXPECT_EQ(answers, 1);
  chooser.chooseFolders({"second", ""}, [&answers](const auto&) { ++answers; });
  while (answers < 2) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_EQ(portal.asked[0], "second");
}

TEST_F(PortalFileChooserTest, livesWithAnswersOfAnotherType) {
  startPortal();
  portal.results = {{"uris", 7}};
  EXPECT_THAT(choose(), testing::Optional(testing::IsEmpty()));
}

}  // namespace pelmora::desktop
