#include "host/LiveSaver.h"

#include "host/EndingLimit.h"
#include "host/EndingSignals.h"
#include "host/ExitWork.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <cstdio>
#include <cstdlib>

namespace pelmora::host {

namespace {

/// More random numbers than a card takes, and no multiple of what it takes.
constexpr unsigned kDrawsApart = 997;

/// Without its server the toolkit cannot even be ended in an orderly way.
void endWith(ForeignWindow::State state) {
  if (state == ForeignWindow::State::destroyed) return QGuiApplication::quit();
  std::fputs("pelmora: the X server has gone away\n", stderr);
  std::exit(EXIT_FAILURE);
}

/// A run over the whole session is its saver. Hosts end the programs in their windows themselves,
/// and a window of one's own is there until its user closes it.
ServiceChoices choose(InputWatcher::Ends ends, bool verbose) {
  ServiceChoices choices{.verbose = verbose, .samplesWhenNoPictures = true, .sessionBus = true};
  if (ends == InputWatcher::Ends::any) {
    choices.didStop = [] {
      QMetaObject::invokeMethod(
          qApp, [] { QGuiApplication::quit(); }, Qt::QueuedConnection);
    };
  }
  return choices;
}

}  // namespace

LiveSaver::LiveSaver(Renderer renderer, InputWatcher::Ends ends, bool verbose)
    : _renderer(renderer),
      _choices(choose(ends, verbose)),
      _input(ends, [] { QGuiApplication::quit(); }) {}

LiveSaver::~LiveSaver() = default;

render::PresenterWindow& LiveSaver::addWindow(ViewPlace place) {
  _windows.push_back(makePresenterWindow(_renderer, _clock));
  render::PresenterWindow& presenter = *_windows.back();
  place.presenter = &presenter;
  presenter.window().installEventFilter(&_input);
  presenter.window().setTitle("Pelmora");
  _places.push_back(place);
  return presenter;
}

void LiveSaver::coverDisplays() {
  for (QScreen* screen : QGuiApplication::screens()) {
    const auto display = _displays.displayOf(screen);
    if (!display) continue;
    QWindow& window =
        addWindow({.frame = display->frame, .scale = display->scale, .display = display}).window();
    window.setScreen(screen);
    // A Wayland compositor names no size at first: the screen's is right until it does.
    window.setGeometry(screen->geometry());
    window.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    window.setCursor(Qt::BlankCursor);
    window.showFullScreen();
  }
  if (!_windows.empty()) _windows.front()->window().requestActivate();
}

void LiveSaver::openWindow(const Size& size, bool isPreview) {
  QScreen* screen = QGuiApplication::primaryScreen();
  QWindow& window = addWindow({.frame = {{0, 0}, size},
                               .scale = screen ? screen->devicePixelRatio() : 1,
                               .display = screen ? _displays.displayOf(screen) : std::nullopt,
                               .isPreview = isPreview})
                        .window();
  window.resize(static_cast<int>(size.width), static_cast<int>(size.height));
  window.show();
}

void LiveSaver::drawInto(std::unique_ptr<ForeignWindow> window) {
  _hostWindow = std::make_unique<HostWindow>(std::move(window), endWith);
  const QScreen* screen = _hostWindow->screen();
  const auto display = screen ? _displays.displayOf(screen) : std::nullopt;
  const Point origin = display ? display->frame.origin : Point{};
  // Hosts start a process for each display in the same second, which is what the numbers are
  // seeded with: the displays would all show the same.
  const qsizetype position = QGuiApplication::screens().indexOf(screen);
  const unsigned skippedDraws = position > 0 ? kDrawsApart * static_cast<unsigned>(position) : 0;
  _hostWindow->adopt(addWindow({.frame = {origin, _hostWindow->size()},
                                .scale = display ? display->scale : 1,
                                .display = display,
                                .isPreview = _hostWindow->isPreview(),
                                .skippedDraws = skippedDraws})
                         .window());
}

void LiveSaver::drawOnRoot() {
  for (QScreen* screen : QGuiApplication::screens()) {
    const auto display = _displays.displayOf(screen);
    if (!display) continue;
    QWindow& window =
        addWindow({.frame = display->frame, .scale = display->scale, .display = display}).window();
    window.setScreen(screen);
    window.setGeometry(screen->geometry());
    window.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                    Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus);
    window.show();
    window.lower();
  }
}

void LiveSaver::followSize(std::size_t index) {
  QWindow& window = _windows[index]->window();
  const auto resized = [this, index, &window] {
    if (_module) {
      _module->resize(index,
                      {static_cast<double>(window.width()), static_cast<double>(window.height())},
                      window.devicePixelRatio());
    }
  };
  QObject::connect(&window, &QWindow::widthChanged, &_input, resized);
  QObject::connect(&window, &QWindow::heightChanged, &_input, resized);
  QObject::connect(&window, &QWindow::screenChanged, &_input, resized);
  resized();  // since the window was shown it may have changed already
}

int LiveSaver::exec() {
  const EndingSignals endingSignals([] { QGuiApplication::quit(); });
  _module = std::make_unique<ModuleThread>(_clock, _displays, _choices, _places);
  const ExitWork stopWork([this] { _module.reset(); });
  for (std::size_t i = 0; i < _windows.size(); ++i) followSize(i);
  const int status = QGuiApplication::exec();
  const EndingLimit limit;
  for (const auto& presenter : _windows) presenter->window().hide();
  _module.reset();
  return status;
}

}  // namespace pelmora::host
