#include "host/PortalFolderChooser.h"

#include "desktop/tests/ScriptedPortal.h"
#include "desktop/tests/TestBus.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileDialog>
#include <QHideEvent>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>

namespace pelmora::host {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PortalFolderChooserTest : public testing::Test {
 protected:
  PortalFolderChooserTest() { setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/none", 1); }

  char name[5] = "test";
  char* words[2] = {name, nullptr};
  int count = 1;
  QApplication application{count, words};
  QWidget parent;
  PortalFolderChooser chooser;
  std::optional<std::vector<FilePath>> chosen;
};

/// With a portal in which the user goes on looking.
class OpenPortalTest : public testing::Test {
 protected:
  OpenPortalTest() {
    portal.isUndecided = true;
    EXPECT_TRUE(portal.start(portalBus));
    parent->show();
  }
  ~OpenPortalTest() override {
    chooser.reset();
    QDBusConnection::disconnectFromBus("chooser");
    QDBusConnection::disconnectFromBus("portal");
  }

  void ask(QWidget* over) {
    chooser->chooseFolders(over, [this](auto folders) { answers.push_back(std::move(folders)); });
  }
  /// Asks, until the portal shows its dialog.
  void open(QWidget* over) {
    ask(over);
    while (portal.opened.isEmpty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  void waitUntilClosed() const {
    while (portal.closed.isEmpty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(portal.closed, portal.opened);
  }
  /// All that is on its way to the portal has come there, and what it said in return has come back.
  void settle() {
    for (const QString& each : {QString("chooser"), QString("portal")}) {
      const QDBusPendingCallWatcher call(
          QDBusConnection(each).asyncCall(QDBusMessage::createMethodCall(
              "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId")));
      while (!call.isFinished()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QCoreApplication::processEvents();
  }

  char name[5] = "test";
  char* words[2] = {name, nullptr};
  int count = 1;
  QApplication application{count, words};
  desktop::TestBus testBus;
  QDBusConnection bus =
      QDBusConnection::connectToBus(QString::fromStdString(testBus.address()), "chooser");
  QDBusConnection portalBus =
      QDBusConnection::connectToBus(QString::fromStdString(testBus.address()), "portal");
  desktop::ScriptedPortal portal;
  std::unique_ptr<QWidget> parent = std::make_unique<QWidget>();
  std::unique_ptr<PortalFolderChooser> chooser = std::make_unique<PortalFolderChooser>(bus);
  std::vector<std::vector<FilePath>> answers;
};

}  // namespace

TEST_F(PortalFolderChooserTest, usesTheToolkitsDialogWhereThereIsNoPortal) {
  parent.show();
  chooser.chooseFolders(&parent, [this](auto folders) { chosen = std::move(folders); });
  QFileDialog* dialog = nullptr;
  while (!dialog) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    for (QWidget* each : QApplication::topLevelWidgets()) {
      if (auto* found = qobject_cast<QFileDialog*>(each)) dialog = found;
    }
  }
  EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
  dialog->reject();
  while (!chosen) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_TRUE(chosen->empty());
}

TEST_F(PortalFolderChooserTest, opensNoDialogOverAWindowThatWasClosed) {
  chooser.chooseFolders(&parent, [this](auto folders) { chosen = std::move(folders); });
  while (!chosen) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_TRUE(chosen->empty());
}

TEST_F(OpenPortalTest, takesItsQuestionBackWhenItsWindowIsHidden) {
  QWidget button(parent.get());
  open(&button);
  parent->hide();
  waitUntilClosed();
  settle();
  EXPECT_THAT(answers, ElementsAre(IsEmpty()));
  parent->show();
  parent->hide();
  settle();
  EXPECT_EQ(answers.size(), 1U);
}

TEST_F(OpenPortalTest, keepsItsQuestionWhileItsWindowIsMinimised) {
  open(parent.get());
  QHideEvent minimised;
  QSpontaneKeyEvent::setSpontaneous(&minimised);
  QApplication::instance()->notify(parent.get(), &minimised);
  settle();
  EXPECT_THAT(answers, IsEmpty());
  EXPECT_EQ(portal.closed, "");
}

TEST_F(OpenPortalTest, keepsItsQuestionWhenTheWindowOfAnEarlierOneIsHidden) {
  QWidget earlier;
  earlier.show();
  open(&earlier);
  earlier.hide();
  waitUntilClosed();
  earlier.show();
  portal.opened.clear();
  portal.closed.clear();
  open(parent.get());
  earlier.hide();
  settle();
  EXPECT_EQ(answers.size(), 1U);
  EXPECT_EQ(portal.closed, "");
}

TEST_F(OpenPortalTest, answersASecondQuestionWithNoneAtOnce) {
  QWidget other;
  other.show();
  open(parent.get());
  ask(&other);
  EXPECT_THAT(answers, ElementsAre(IsEmpty()));
  other.hide();
  settle();
  EXPECT_EQ(answers.size(), 1U);
  EXPECT_EQ(portal.closed, "");
}

TEST_F(OpenPortalTest, tellsNobodyWhenTheOneWhoAskedIsGone) {
  auto button = std::make_unique<QWidget>(parent.get());
  open(button.get());
  button.reset();
  waitUntilClosed();
  settle();
  EXPECT_THAT(answers, IsEmpty());
}

TEST_F(OpenPortalTest, tellsNobodyWhenTheWindowThatAskedIsGone) {
  open(parent.get());
  parent.reset();
  waitUntilClosed();
  settle();
  EXPECT_THAT(answers, IsEmpty());
}

}  // namespace pelmora::host
