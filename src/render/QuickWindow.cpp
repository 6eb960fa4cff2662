#include "render/QuickWindow.h"

#include "platform/Clock.h"
#include "render/SceneNodes.h"
#include "render/Snapshot.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace pelmora::render {

namespace {

constexpr auto kFrameWanted = QEvent::User;

}  // namespace

/// The one item of the window, on which all is drawn.
class QuickWindow::Stage : public QQuickItem {
 public:
  explicit Stage(QuickWindow& owner) : QQuickItem(owner.contentItem()), _owner(owner) {
    setFlag(ItemHasContents);
  }

 protected:
  QSGNode* updatePaintNode(QSGNode* before, UpdatePaintNodeData* /*data*/) override {
    auto* nodes = static_cast<SceneNodes*>(before);
    std::shared_ptr<const Snapshot> newest = _owner._slot.newest();
    if (!newest) return nodes;
    if (nodes == nullptr) nodes = new SceneNodes(_owner._clock, _owner);
    nodes->show(std::move(newest), _owner.effectiveDevicePixelRatio());
    _owner._nodes = nodes;
    return nodes;
  }

 private:
  QuickWindow& _owner;
};

QuickWindow::QuickWindow(const platform::Clock& clock, QWindow* parent)
    : QQuickWindow(parent), _clock(clock), _slot(clock), _stage(new Stage(*this)) {
  setColor(Qt::black);
  connect(
      this, &QQuickWindow::sceneGraphInvalidated, this, [this] { _nodes = nullptr; },
      Qt::DirectConnection);
  connect(
      this, &QQuickWindow::afterFrameEnd, this, [this] { frameDrawn(); }, Qt::DirectConnection);
}

QuickWindow::~QuickWindow() {
  // The rendering thread is stopped while all that it uses is still there.
  disconnect(this, nullptr, this, nullptr);
  destroy();
  _slot.setShown(false);
}

void QuickWindow::submit(std::shared_ptr<const Snapshot> snapshot) {
  _slot.put(std::move(snapshot));
  QCoreApplication::postEvent(this, new QEvent(kFrameWanted));
}

/// The rendering thread is asked to let go of what it can, which it answers between frames.
void QuickWindow::finishFrame() { releaseResources(); }

bool QuickWindow::event(QEvent* event) {
  if (event->type() != kFrameWanted) return QQuickWindow::event(event);
  _stage->update();
  return true;
}

void QuickWindow::exposeEvent(QExposeEvent* event) {
  _slot.setShown(isExposed());
  QQuickWindow::exposeEvent(event);
  if (isExposed()) _stage->update();
}

/// Whether there is more to come is judged by the time that the frame showed, so that the end of a
/// movement is shown too, however late.
void QuickWindow::frameDrawn() {
  ++_framesDrawn;
  const SceneNodes* nodes = _nodes;
  if (nodes == nullptr || !nodes->isMoving()) return;
  QCoreApplication::postEvent(this, new QEvent(kFrameWanted));
}

}  // namespace pelmora::render
