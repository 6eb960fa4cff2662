#include "desktop/PortalFileChooser.h"

#include "desktop/tests/ScriptedPortal.h"
#include "desktop/tests/TestBus.h"

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <vector>

namespace pelmora::desktop {

namespace {

using testing::ElementsAre;

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

  void startPortal() { ASSERT_TRUE(portal.start(portalBus)); }
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
  ScriptedPortal portal;
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

TEST_F(PortalFileChooserTest, answersASecondQuestionWithNoneWhileTheFirstIsOpen) {
  startPortal();
  portal.isUndecided = true;
  PortalFileChooser chooser(bus);
  EXPECT_FALSE(chooser.isAsking());
  chooser.chooseFolders({"first", ""}, [](const auto&) {});
  EXPECT_TRUE(chooser.isAsking());
  std::optional<std::optional<std::vector<FilePath>>> second;
  chooser.chooseFolders({"second", ""}, [&second](auto folders) { second = folders; });
  ASSERT_TRUE(second);
  EXPECT_THAT(*second, testing::Optional(testing::IsEmpty()));
  while (portal.opened.isEmpty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_EQ(portal.asked[0], "first");
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
