#pragma once

#include "wayland/LayerShell.h"
#include "wayland/LayerSurface.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>

class QScreen;
class QWindow;

namespace pelmora::host {

/// Puts a window over a whole display, without a pointer. Where there are layers it lies over
/// panels too; it is then shown when the compositor has said its size. Otherwise, and when the
/// compositor stays silent, it is an ordinary full-screen window. Follows what becomes of the
/// display's size. Thread: GUI. Ownership: window and screen outlive this; the window is off the
/// screen afterwards.
class CoverWindow : public QObject {
 public:
  /// `layers` may be null: there are none. `closed` is called when the compositor has taken the
  /// window away.
  CoverWindow(QWindow& window, QScreen& screen, const wayland::LayerShell* layers,
              std::function<void()> closed);
  ~CoverWindow() override;

  [[nodiscard]] bool isLayer() const { return _layer != nullptr; }
  /// Takes a window that is no layer off the screen and puts it there anew, in front.
  void showAgain();

 private:
  [[nodiscard]] bool coverByLayer(const wayland::LayerShell& layers);
  void coverByFullScreen();
  void sizeLayer(std::uint32_t width, std::uint32_t height);
  void followScreen();

  QWindow& _window;
  QScreen& _screen;
  const std::function<void()> _closed;
  std::unique_ptr<wayland::LayerSurface> _layer;
  QTimer _patience;
};

}  // namespace pelmora::host
