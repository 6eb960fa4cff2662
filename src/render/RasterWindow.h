#pragma once

#include "render/PresenterWindow.h"
#include "render/SnapshotSlot.h"
#include "render/SoftwareCompositor.h"

#include <QBackingStore>
#include <QWindow>

#include <cstdint>
#include <memory>

namespace pelmora::render {

/// Shows a tree by painting it with the processor: for machines without a graphics processor.
/// Errors: a window system that gives no 32-bit pixels costs one more copy a frame.
class RasterWindow : public QWindow, public PresenterWindow {
 public:
  /// The clock outlives it. With a parent it is a child window.
  explicit RasterWindow(const platform::Clock& clock, QWindow* parent = nullptr);
  ~RasterWindow() override;

  void submit(std::shared_ptr<const Snapshot> snapshot) override;
  [[nodiscard]] bool isHidden() const override { return _slot.isHidden(); }
  [[nodiscard]] QWindow& window() override { return *this; }
  [[nodiscard]] std::uint64_t framesDrawn() const override { return _framesDrawn; }
  /// Whether another frame has been arranged.
  [[nodiscard]] bool isFrameDue() const { return _isFrameDue; }

 protected:
  bool event(QEvent* event) override;
  void exposeEvent(QExposeEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void drawFrame();
  [[nodiscard]] QRegion paint(const Snapshot& snapshot, double time);
  void flush(const QRegion& painted);
  void arrangeNextFrame(double frameStart, bool paintedNothing);
  void stopFrames();

  const platform::Clock& _clock;
  SnapshotSlot _slot;
  QBackingStore _store;
  SoftwareCompositor _compositor;
  QImage _frame;  // painted into where the store's own pixels cannot be
  std::uint64_t _framesDrawn = 0;
  double _nextFrame = 0;  // media time
  int _timer = 0;
  bool _isFrameDue = false;
};

}  // namespace pelmora::render
