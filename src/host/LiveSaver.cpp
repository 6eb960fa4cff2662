#include "host/LiveSaver.h"

#include "host/EndingSignals.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace pelmora::host {

LiveSaver::LiveSaver(Renderer renderer, InputWatcher::Ends ends, bool verbose)
    : _input(ends, [] { QGuiApplication::quit(); }),
      _windows(
          renderer, _clock, _displays,
          ServiceChoices{.verbose = verbose, .samplesWhenNoPictures = true, .sessionBus = true},
          _input),
      _connectionLoss([this] { _windows.end(); }) {}

LiveSaver::~LiveSaver() { QGuiApplication::setQuitOnLastWindowClosed(true); }

void LiveSaver::coverDisplays(DisplayCover::Layers layers) {
  // Displays go, and with them the last window perhaps, but the run goes on.
  QGuiApplication::setQuitOnLastWindowClosed(false);
  _cover = std::make_unique<DisplayCover>(_windows, _displays, layers);
}

void LiveSaver::openWindow(const Size& size, bool isPreview) {
  QScreen* screen = QGuiApplication::primaryScreen();
  QWindow& window = _windows.add({.frame = {{0, 0}, size},
                                  .scale = screen ? screen->devicePixelRatio() : 1,
                                  .display = screen ? _displays.displayOf(screen) : std::nullopt,
                                  .isPreview = isPreview});
  window.resize(static_cast<int>(size.width), static_cast<int>(size.height));
  window.show();
}

int LiveSaver::exec() {
  const EndingSignals endingSignals([] { QGuiApplication::quit(); });
  const int status = QGuiApplication::exec();
  _cover.reset();
  _windows.hide();
  _windows.end();
  return status;
}

}  // namespace pelmora::host
