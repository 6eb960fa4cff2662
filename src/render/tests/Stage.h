#pragma once

#include "platform/SteppedTime.h"
#include "render/LayerTree.h"
#include "render/Snapshot.h"

#include <QImage>

#include <memory>
#include <string>
#include <vector>

namespace pelmora::render {

/// Keeps what is submitted. Visible, it shows nothing by itself; hidden, animations begin at once.
class RecordingPresenter : public Presenter {
 public:
  explicit RecordingPresenter(platform::Clock& clock) : _clock(clock) {}
  void submit(std::shared_ptr<const Snapshot> snapshot) override {
    if (isHidden) snapshot->beginAnimations(_clock.mediaTime());
    snapshots.push_back(std::move(snapshot));
  }
  bool isHidden = false;
  std::vector<std::shared_ptr<const Snapshot>> snapshots;

 private:
  platform::Clock& _clock;
};

class RecordingDelegate : public AnimationDelegate {
 public:
  void animationDidStop(const BasicAnimation& animation, bool finished) override {
    stops.push_back(std::string(description(animation.keyPath)) +
                    (finished ? " finished" : " removed"));
  }
  std::vector<std::string> stops;
};

/// A tree of layers with stepped time around it.
struct Stage {
  explicit Stage(Size size = {200, 100}) {
    root->setBounds({{0, 0}, size});
    tree.setPresenter(&presenter);
    scheduler.setEndOfTurn([this] { tree.commit(); });
  }

  std::shared_ptr<Layer> addLayer(const Rect& bounds, const Point& position) {
    auto layer = std::make_shared<Layer>();
    layer->setBounds(bounds);
    layer->setPosition(position);
    root->addSublayer(layer);
    return layer;
  }
  /// Commits, and shows a frame of the latest snapshot now.
  void showFrame() {
    tree.commit();
    latest().beginAnimations(clock.mediaTime());
    scheduler.runPosted();
  }
  [[nodiscard]] const Snapshot& latest() const { return *presenter.snapshots.back(); }

  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler{clock};
  std::shared_ptr<Layer> root = std::make_shared<Layer>();
  RecordingPresenter presenter{clock};
  LayerTree tree{clock, scheduler, root};
};

inline BasicAnimation fade(double duration, std::shared_ptr<AnimationDelegate> delegate = nullptr) {
  return {.keyPath = KeyPath::opacity,
          .duration = duration,
          .timingFunction = {},
          .fromValue = 0.0,
          .toValue = 1.0,
          .delegate = std::move(delegate)};
}

/// In to 0.8, and out again, in ten seconds.
inline KeyframeAnimation fadeInAndOut() {
  return {.keyPath = KeyPath::opacity,
          .duration = 10,
          .keyTimes = {0, 0.2, 0.8, 1},
          .values = {0.0, 0.8, 0.8, 0.0}};
}

/// A picture of one colour.
inline QImage plainPicture(int width, int height, QRgb color = 0xFFFFFFFF) {
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  image.fill(color);
  return image;
}

/// The four animations of a card's entrance, on a layer of that size.
inline void startEntrance(Layer& layer, const Point& from, const Point& to, double tilt,
                          std::shared_ptr<AnimationDelegate> delegate = nullptr) {
  using Name = MediaTimingFunction::Name;
  const MediaTimingFunction easeOut(Name::easeOut);
  const MediaTimingFunction easeIn(Name::easeIn);
  layer.setPosition(to);
  layer.setRotation(tilt);
  layer.addAnimation({KeyPath::position, 1.0, easeOut, from, to, nullptr}, "FadeIn");
  layer.addAnimation({KeyPath::scale, 0.7, easeIn, 1.3, 1.0, nullptr}, "TheScale");
  layer.addAnimation({KeyPath::opacity, 0.4, easeOut, 0.0, 1.0, nullptr}, "TheOpacity");
  layer.addAnimation({KeyPath::rotation, 1.15, easeOut, -0.5, tilt, std::move(delegate)},
                     "TheRotation");
}

}  // namespace pelmora::render
