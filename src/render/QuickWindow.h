#pragma once

#include "render/PresenterWindow.h"
#include "render/SnapshotSlot.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <atomic>
#include <cstdint>
#include <memory>

namespace pelmora::render {

class SceneNodes;

/// Shows a tree through the scene graph, on the graphics processor: a node per picture, each
/// uploaded once, whose transform and opacity are set on the rendering thread as the frame begins.
/// The scene graph may be lost and made anew at any time.
class QuickWindow : public QQuickWindow, public PresenterWindow {
 public:
  /// The clock outlives it.
  explicit QuickWindow(const platform::Clock& clock, QWindow* parent = nullptr);
  ~QuickWindow() override;

  void submit(std::shared_ptr<const Snapshot> snapshot) override;
  [[nodiscard]] bool isHidden() const override { return _slot.isHidden(); }
  [[nodiscard]] QWindow& window() override { return *this; }
  void finishFrame() override;
  [[nodiscard]] std::uint64_t framesDrawn() const override { return _framesDrawn; }

 protected:
  bool event(QEvent* event) override;
  void exposeEvent(QExposeEvent* event) override;

 private:
  class Stage;

  void frameDrawn();

  const platform::Clock& _clock;
  SnapshotSlot _slot;
  Stage* _stage;                 // owned by the content item
  SceneNodes* _nodes = nullptr;  // the scene graph's; the rendering thread's
  std::atomic<std::uint64_t> _framesDrawn{0};
};

}  // namespace pelmora::render
