#include "idle/UsualInhibitors.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QStringList>

namespace pelmora::idle {

namespace {

constexpr unsigned int kIdleFlag = 8;              // of the session manager's inhibitors
constexpr unsigned int kChangeScreenSettings = 4;  // of power management's
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";

bool isAlwaysRelevant(const QDBusMessage&) { return true; }

bool saysYes(const QDBusMessage& answer) {
  return answer.signature() == QLatin1String("b") && answer.arguments().constFirst().toBool();
}

QVariant propertyIn(const QDBusMessage& answer) {
  if (answer.signature() != QLatin1String("v")) return {};
  return answer.arguments().constFirst().value<QDBusVariant>().variant();
}

bool blocksIdle(const QDBusMessage& answer) {
  const QVariant what = propertyIn(answer);
  if (what.typeId() != QMetaType::QString) return false;
  return what.toString().split(':').contains(QLatin1String("idle"));
}

bool isTrue(const QDBusMessage& answer) {
  const QVariant value = propertyIn(answer);
  return value.typeId() == QMetaType::Bool && value.toBool();
}

/// Whether a signal says that `property` of `interface` has changed, with or without its value.
bool tellsOf(const QDBusMessage& signal, const QString& interface, const QString& property) {
  if (signal.signature() != QLatin1String("sa{sv}as")) return false;
  const QVariantList arguments = signal.arguments();
  if (arguments[0].toString() != interface) return false;
  return qdbus_cast<QVariantMap>(arguments[1]).contains(property) ||
         arguments[2].toStringList().contains(property);
}

constexpr const char* kLogin = "org.freedesktop.login1.Manager";
constexpr const char* kBattery = "org.freedesktop.UPower";

bool tellsOfBlocks(const QDBusMessage& signal) { return tellsOf(signal, kLogin, "BlockInhibited"); }
bool tellsOfBattery(const QDBusMessage& signal) { return tellsOf(signal, kBattery, "OnBattery"); }

}  // namespace

BusQuestion sessionManagerQuestion() {
  const QString interface = "org.gnome.SessionManager";
  return {.who = "the session manager",
          .service = interface,
          .path = "/org/gnome/SessionManager",
          .interface = interface,
          .method = "IsInhibited",
          .arguments = {kIdleFlag},
          .signalsOfChange = {{interface, "InhibitorAdded", isAlwaysRelevant},
                              {interface, "InhibitorRemoved", isAlwaysRelevant}},
          .isHeld = saysYes};
}

BusQuestion powerManagementQuestion() {
  const QString interface = "org.kde.Solid.PowerManagement.PolicyAgent";
  return {.who = "power management",
          .service = interface,
          .path = "/org/kde/Solid/PowerManagement/PolicyAgent",
          .interface = interface,
          .method = "HasInhibition",
          .arguments = {kChangeScreenSettings},
          .signalsOfChange = {{interface, "InhibitionsChanged", isAlwaysRelevant}},
          .isHeld = saysYes};
}

BusQuestion loginManagerQuestion() {
  return {.who = "the login manager",
          .service = "org.freedesktop.login1",
          .path = "/org/freedesktop/login1",
          .interface = kProperties,
          .method = "Get",
          .arguments = {kLogin, "BlockInhibited"},
          .signalsOfChange = {{kProperties, "PropertiesChanged", tellsOfBlocks}},
          .isHeld = blocksIdle};
}

BusQuestion batteryQuestion() {
  return {.who = "the battery",
          .service = "org.freedesktop.UPower",
          .path = "/org/freedesktop/UPower",
          .interface = kProperties,
          .method = "Get",
          .arguments = {kBattery, "OnBattery"},
          .signalsOfChange = {{kProperties, "PropertiesChanged", tellsOfBattery}},
          .isHeld = isTrue,
          .mayBeStarted = true};
}

}  // namespace pelmora::idle
