#include "host/LiveSaver.h"

#include "host/EndingLimit.h"
#include "host/EndingSignals.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <cstdio>
#include <cstdlib>

namespace pelmora::host {

namespace {

/// Leaves the windows, which may still be drawn in, as they are; `quit` would close them.
void endLoop() { QGuiApplication::exit(); }

/// More random numbers than a card takes, and no multiple of what it takes.
constexpr unsigned kDrawsApart = 997;

/// A run over the whole session is its saver. Hosts end the programs in their windows themselves,
/// and a window of one's own is there until its user closes it.
ServiceChoices choose(InputWatcher::Ends ends, bool verbose) {
  ServiceChoices choices{.verbose = verbose, .samplesWhenNoPictures = true, .sessionBus = true};
  if (ends == InputWatcher::Ends::any) {
    choices.didStop = [] {
      QMetaObject::invokeMethod(
          qApp, [] { endLoop(); }, Qt::QueuedConnection);
    };
  }
  return choices;
}

}  // namespace

LiveSaver::LiveSaver(Renderer renderer, InputWatcher::Ends ends, bool verbose)
    : _input(ends, [] { endLoop(); }),
      _windows(renderer, _clock, _displays, choose(ends, verbose), _input),
      _connectionLoss([this] { windowSystemGone(); }) {}

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

void LiveSaver::drawInto(std::unique_ptr<ForeignWindow> window) {
  _hostWindow = std::make_unique<HostWindow>(
      std::move(window), [this](ForeignWindow::State state) { hostWindowEnded(state); });
  const QScreen* screen = _hostWindow->screen();
  const auto display = screen ? _displays.displayOf(screen) : std::nullopt;
  const Point origin = display ? display->frame.origin : Point{};
  // Hosts start a process for each display in the same second, which is what the numbers are
  // seeded with: the displays would all show the same.
  const qsizetype position = QGuiApplication::screens().indexOf(screen);
  const unsigned skippedDraws = position > 0 ? kDrawsApart * static_cast<unsigned>(position) : 0;
  _hostWindow->adopt(_windows.add({.frame = {origin, _hostWindow->size()},
                                   .scale = display ? display->scale : 1,
                                   .display = display,
                                   .isPreview = _hostWindow->isPreview(),
                                   .skippedDraws = skippedDraws}));
}

void LiveSaver::drawOnRoot() {
  for (QScreen* screen : QGuiApplication::screens()) {
    const auto display = _displays.displayOf(screen);
    if (!display) continue;
    QWindow& window =
        _windows.add({.frame = display->frame, .scale = display->scale, .display = display});
    window.setScreen(screen);
    window.setGeometry(screen->geometry());
    window.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                    Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus);
    window.show();
    window.lower();
  }
}

/// The process is about to end, whatever becomes of this.
void LiveSaver::windowSystemGone() {
  const EndingLimit limit;
  _windows.end();
}

/// Without its server the toolkit cannot even be ended in an orderly way.
void LiveSaver::hostWindowEnded(ForeignWindow::State state) {
  if (state == ForeignWindow::State::destroyed) return endLoop();
  std::fputs("pelmora: the X server has gone away\n", stderr);
  windowSystemGone();
  std::_Exit(EXIT_FAILURE);
}

int LiveSaver::exec() {
  const EndingSignals endingSignals([] { endLoop(); });
  const int status = QGuiApplication::exec();
  const EndingLimit limit;
  _windows.finishFrames();
  _cover.reset();
  _windows.hide();
  _windows.end();
  return status;
}

}  // namespace pelmora::host
