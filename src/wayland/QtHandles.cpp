#include "wayland/QtHandles.h"

#include <qpa/qplatformnativeinterface.h>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace pelmora::wayland {

namespace {

/// Null elsewhere: other platforms have resources of the same names.
QPlatformNativeInterface* nativeInterface() {
  if (!QGuiApplication::platformName().startsWith("wayland")) return nullptr;
  return QGuiApplication::platformNativeInterface();
}

}  // namespace

void allowBareSurfaces() { qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1"); }

wl_display* displayOfApplication() {
  QPlatformNativeInterface* native = nativeInterface();
  if (!native) return nullptr;
  return static_cast<wl_display*>(native->nativeResourceForIntegration("wl_display"));
}

wl_output* outputOf(QScreen& screen) {
  QPlatformNativeInterface* native = nativeInterface();
  if (!native) return nullptr;
  return static_cast<wl_output*>(native->nativeResourceForScreen("output", &screen));
}

wl_surface* surfaceOf(QWindow& window) {
  QPlatformNativeInterface* native = nativeInterface();
  if (!native || !window.handle()) return nullptr;
  return static_cast<wl_surface*>(native->nativeResourceForWindow("surface", &window));
}

}  // namespace pelmora::wayland
