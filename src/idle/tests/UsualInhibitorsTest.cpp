#include "idle/UsualInhibitors.h"

#include "desktop/tests/BusFixture.h"

#include <QDBusVariant>

#include <memory>

namespace pelmora::idle {

namespace {

QVariant boxed(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }

class UsualInhibitorsTest : public desktop::BusFixture {
 protected:
  /// What is held when `service` answers `answer`.
  bool isHeldAfter(const BusQuestion& question, const QVariant& answer) {
    other.answers[question.method] = {answer};
    if (!inhibitor) {
      other.appear(question.service, question.path);
      inhibitor = std::make_unique<BusInhibitor>(
          bus, question, [this] { ++changes; }, [](const std::string&) {});
    }
    bool isAnswered = false;
    inhibitor->ask([&] { isAnswered = true; });
    waitUntil([&] { return isAnswered; });
    return inhibitor->isHeld();
  }
  void changeProperties(const BusQuestion& question, const QString& interface,
                        const QVariantMap& changed, const QStringList& invalidated) {
    other.emitSignal(question.path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                     {interface, changed, invalidated});
  }

  int changes = 0;
  std::unique_ptr<BusInhibitor> inhibitor;
};

}  // namespace

TEST_F(UsualInhibitorsTest, askTheSessionManagerAboutIdleness) {
  const BusQuestion question = sessionManagerQuestion();
  EXPECT_FALSE(isHeldAfter(question, false));
  EXPECT_EQ(other.calls[0].member(), "IsInhibited");
  EXPECT_EQ(other.calls[0].arguments(), QVariantList{8U});
  other.answers["IsInhibited"] = {true};
  other.emitSignal(question.path, question.service, "InhibitorAdded",
                   {QVariant::fromValue(QDBusObjectPath("/org/gnome/SessionManager/Inhibitor1"))});
  waitUntil([this] { return inhibitor->isHeld(); });
  other.answers["IsInhibited"] = {false};
  other.emitSignal(question.path, question.service, "InhibitorRemoved",
                   {QVariant::fromValue(QDBusObjectPath("/org/gnome/SessionManager/Inhibitor1"))});
  waitUntil([this] { return !inhibitor->isHeld(); });
}

TEST_F(UsualInhibitorsTest, askPowerManagementAboutTheScreen) {
  const BusQuestion question = powerManagementQuestion();
  EXPECT_FALSE(isHeldAfter(question, false));
  EXPECT_EQ(other.calls[0].member(), "HasInhibition");
  EXPECT_EQ(other.calls[0].arguments(), QVariantList{4U});
  other.answers["HasInhibition"] = {true};
  other.emitSignal(question.path, question.service, "InhibitionsChanged");
  waitUntil([this] { return inhibitor->isHeld(); });
}

TEST_F(UsualInhibitorsTest, findIdleAmongWhatTheLoginManagerBlocks) {
  const BusQuestion question = loginManagerQuestion();
  EXPECT_FALSE(isHeldAfter(question, boxed("")));
  EXPECT_EQ(other.calls[0].arguments(),
            (QVariantList{"org.freedesktop.login1.Manager", "BlockInhibited"}));
  EXPECT_TRUE(isHeldAfter(question, boxed("shutdown:idle:sleep")));
  EXPECT_TRUE(isHeldAfter(question, boxed("idle")));
  EXPECT_FALSE(isHeldAfter(question, boxed("shutdown:handle-lid-switch:idleness")));
  EXPECT_FALSE(isHeldAfter(question, boxed(QStringList{"idle"})));
  EXPECT_FALSE(isHeldAfter(question, "idle"));
}

TEST_F(UsualInhibitorsTest, askTheLoginManagerAgainWhenItsBlocksChangeAndOnlyThen) {
  const BusQuestion question = loginManagerQuestion();
  EXPECT_FALSE(isHeldAfter(question, boxed("")));
  settle();
  const auto asked = other.calls.size();
  changeProperties(question, "org.freedesktop.login1.Manager", {{"IdleHint", true}}, {"Docked"});
  changeProperties(question, "org.example", {{"BlockInhibited", "idle"}}, {});
  other.emitSignal(question.path, "org.freedesktop.DBus.Properties", "PropertiesChanged", {7});
  settle();
  EXPECT_EQ(other.calls.size(), asked);
  other.answers["Get"] = {boxed("idle")};
  changeProperties(question, "org.freedesktop.login1.Manager", {{"BlockInhibited", "idle"}}, {});
  waitUntil([this] { return inhibitor->isHeld(); });
  other.answers["Get"] = {boxed("")};
  changeProperties(question, "org.freedesktop.login1.Manager", {}, {"BlockInhibited"});
  waitUntil([this] { return !inhibitor->isHeld(); });
}

TEST_F(UsualInhibitorsTest, askForTheBattery) {
  const BusQuestion question = batteryQuestion();
  EXPECT_TRUE(question.mayBeStarted);
  EXPECT_FALSE(isHeldAfter(question, boxed(false)));
  EXPECT_EQ(other.calls[0].arguments(), (QVariantList{"org.freedesktop.UPower", "OnBattery"}));
  EXPECT_FALSE(isHeldAfter(question, boxed("true")));
  EXPECT_TRUE(isHeldAfter(question, boxed(true)));
  other.answers["Get"] = {boxed(false)};
  changeProperties(question, "org.freedesktop.UPower", {{"OnBattery", false}}, {});
  waitUntil([this] { return !inhibitor->isHeld(); });
}

}  // namespace pelmora::idle
