#pragma once

#include "render/LayerTree.h"
#include "render/SnapshotSlot.h"
#include "render/SoftwareCompositor.h"

#include <QBasicTimer>
#include <QImage>
#include <QWidget>

#include <functional>
#include <memory>

namespace pelmora::host {

/// A small view among other widgets: black, painted by the processor. Frames are drawn only while
/// something moves and the widget can be seen. Thread: GUI.
class PreviewWidget : public QWidget, public render::Presenter {
 public:
  /// The clock outlives it.
  explicit PreviewWidget(const platform::Clock& clock, QWidget* parent = nullptr);
  ~PreviewWidget() override;

  void submit(std::shared_ptr<const render::Snapshot> snapshot) override;
  [[nodiscard]] QSize sizeHint() const override { return {480, 300}; }

  /// Called when its size or its scale is another.
  std::function<void()> resized = [] {};

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  /// The part that is new, in the widget's units.
  QRegion drawFrame();

  const platform::Clock& _clock;
  render::SnapshotSlot _slot;
  render::SoftwareCompositor _compositor;
  QImage _frame;
  QBasicTimer _timer;  // runs while something moves
};

}  // namespace pelmora::host
