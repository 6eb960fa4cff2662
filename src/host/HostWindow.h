#pragma once

#include "host/ForeignWindow.h"
#include "shared/Geometry.h"

#include <QSocketNotifier>
#include <QWindow>

#include <functional>
#include <memory>

class QScreen;

namespace pelmora::host {

/// A saver host's window, to be drawn into: the parent of a window of ours that covers it, whatever
/// size it takes. Keys and the pointer stay the host's.
/// Thread: GUI. The covering window goes before this.
class HostWindow {
 public:
  /// `ended` is called once, when there is no more window to draw into.
  HostWindow(std::unique_ptr<ForeignWindow> window,
             std::function<void(ForeignWindow::State)> ended);

  /// The display that it stands for; null without displays.
  [[nodiscard]] QScreen* screen() const { return _screen; }
  [[nodiscard]] bool isPreview() const { return _isPreview; }
  /// In points.
  [[nodiscard]] Size size() const;

  /// Puts a window that was not shown yet into this one, and shows it.
  void adopt(QWindow& child);

 private:
  void update();

  const std::unique_ptr<ForeignWindow> _window;
  const std::function<void(ForeignWindow::State)> _ended;
  QScreen* _screen = nullptr;
  bool _isPreview = false;
  const std::unique_ptr<QWindow> _parent;
  QWindow* _child = nullptr;
  QSocketNotifier _news;
};

/// Where a display is on the X server.
[[nodiscard]] PixelRect pixelsOf(const QScreen& screen);

/// The points that cover so many pixels; a part of a point counts as a whole one.
[[nodiscard]] QSize coveringSize(const PixelRect& rect, double scale);

}  // namespace pelmora::host
