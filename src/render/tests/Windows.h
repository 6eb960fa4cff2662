#pragma once

#include "render/tests/Stage.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickWindow>

#include <functional>

namespace pelmora::render {

/// The application that windows need: one for the whole program, without a display, and with the
/// scene graph in software.
inline void makeGuiApplication() {
  if (QGuiApplication::instance() != nullptr) return;
  qputenv("QSG_RENDER_LOOP", "basic");
  QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  static int argc = 1;
  static char name[] = "render_tests";
  static char* argv[] = {name, nullptr};
  static QGuiApplication application(argc, argv);
}

inline void waitUntil(const std::function<bool()>& done) {
  while (!done()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// Runs what is already there to run.
inline void settle() {
  for (int turn = 0; turn < 20; ++turn) QCoreApplication::processEvents();
}

/// A white card, entering.
inline std::shared_ptr<Layer> addCard(Stage& stage) {
  auto card = stage.addLayer({{0, 0}, {60, 40}}, {0, 0});
  card->setContents(plainPicture(60, 40));
  startEntrance(*card, {60, 40}, {120, 60}, 0.1);
  return card;
}

}  // namespace pelmora::render
