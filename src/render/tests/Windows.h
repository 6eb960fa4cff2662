#pragma once

#include "render/tests/Stage.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickWindow>

#include <functional>

namespace pelmora::render {

/// The application that windows need: one for the whole program, without a display, and with the
/// scene graph in software. It goes before the program exits, as the toolkit's own globals do.
class GuiEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QSG_RENDER_LOOP", "basic");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    _application = std::make_unique<QGuiApplication>(_argc, _argv);
  }
  void TearDown() override { _application.reset(); }

 private:
  int _argc = 1;
  char _name[13] = "render_tests";
  char* _argv[2] = {_name, nullptr};
  std::unique_ptr<QGuiApplication> _application;
};

inline testing::Environment* const kGui = testing::AddGlobalTestEnvironment(new GuiEnvironment);

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
