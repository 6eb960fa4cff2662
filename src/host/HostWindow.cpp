#include "host/HostWindow.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelmora::host {

namespace {

int scaled(int length, double scale) { return static_cast<int>(std::lround(length * scale)); }

int covering(int pixels, double scale) {
  return std::max(1, static_cast<int>(std::ceil(pixels / scale)));
}

}  // namespace

HostWindow::HostWindow(std::unique_ptr<ForeignWindow> window,
                       std::function<void(ForeignWindow::State)> ended)
    : _window(std::move(window)),
      _ended(std::move(ended)),
      _parent(QWindow::fromWinId(_window->id())),
      _news(_window->descriptor(), QSocketNotifier::Read) {
  const QList<QScreen*> screens = QGuiApplication::screens();
  std::vector<PixelRect> displays;
  for (const QScreen* screen : screens) displays.push_back(pixelsOf(*screen));
  if (const auto place = placeOf(_window->rect(), displays)) {
    _screen = screens[static_cast<qsizetype>(place->display)];
    _isPreview = place->isPreview;
    _parent->setScreen(_screen);
  }
  QObject::connect(&_news, &QSocketNotifier::activated, &_news, [this] { update(); });
}

Size HostWindow::size() const {
  const QSize size = coveringSize(_window->rect(), _screen ? _screen->devicePixelRatio() : 1);
  return {static_cast<double>(size.width()), static_cast<double>(size.height())};
}

void HostWindow::adopt(QWindow& child) {
  _child = &child;
  child.setParent(_parent.get());
  child.setFlag(Qt::WindowTransparentForInput);
  child.setFlag(Qt::WindowDoesNotAcceptFocus);
  child.setGeometry({{0, 0}, coveringSize(_window->rect(), child.devicePixelRatio())});
  child.show();
  // What came while it was examined has been read from the connection and wakes nobody.
  QMetaObject::invokeMethod(
      &_news, [this] { update(); }, Qt::QueuedConnection);
}

void HostWindow::update() {
  if (_window->state() != ForeignWindow::State::open) return;
  _window->update();
  if (_window->state() != ForeignWindow::State::open) {
    _news.setEnabled(false);
    return _ended(_window->state());
  }
  if (_child != nullptr) {
    _child->resize(coveringSize(_window->rect(), _child->devicePixelRatio()));
  }
}

PixelRect pixelsOf(const QScreen& screen) {
  const QRect points = screen.geometry();
  const double scale = screen.devicePixelRatio();
  // Of a display's place the toolkit scales the size alone.
  return {points.x(), points.y(), scaled(points.width(), scale), scaled(points.height(), scale)};
}

QSize coveringSize(const PixelRect& rect, double scale) {
  return {covering(rect.width, scale), covering(rect.height, scale)};
}

}  // namespace pelmora::host
