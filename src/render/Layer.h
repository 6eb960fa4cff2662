#pragma once

#include "render/Animation.h"
#include "shared/Geometry.h"

#include <QImage>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::render {

class Layer;
class LayerTree;

/// Where a layer's own drawing goes: fills, kept as a list and painted under its contents.
class LayerContext {
 public:
  struct Fill {
    Rect rect;
    Color color;
    bool operator==(const Fill&) const = default;
  };
  void fillRect(const Rect& rect, const Color& color) { _fills.push_back({rect, color}); }
  [[nodiscard]] const std::vector<Fill>& fills() const { return _fills; }

 private:
  std::vector<Fill> _fills;
};

/// Draws a layer that was marked as needing display. On main.
class LayerDelegate {
 public:
  virtual ~LayerDelegate() = default;
  virtual void drawLayer(Layer* layer, LayerContext& context) = 0;
};

class LayerObserver;
struct RunningAnimation;

/// A rectangle of picture with a place, a turn, an opacity and a shadow; the model half of the
/// layer engine. Every attribute here is the model value, which holds when no animation is running;
/// attributes that are animated are shown as the animations say meanwhile. What the layer shows is,
/// from below, its shadow, its background colour, its delegate's drawing, its contents, its text,
/// and its sublayers.
/// Thread: the module's main thread. Ownership: a layer owns its sublayers, and is held by whoever
/// made it. Units: points, radians; origin lower left, y upward.
class Layer : public std::enable_shared_from_this<Layer> {
 public:
  Layer();
  virtual ~Layer();
  Layer(const Layer&) = delete;
  Layer& operator=(const Layer&) = delete;

  /// What the layer is to those who list layers: "card", "track", "text". Empty for others.
  [[nodiscard]] const std::string& role() const;
  void setRole(std::string role);
  /// The path that a card shows, for those who list layers.
  [[nodiscard]] const std::string& url() const;
  void setUrl(std::string url);

  [[nodiscard]] Rect bounds() const;
  void setBounds(const Rect& bounds);
  /// The point of the bounds, in fractions, that `position` places in the superlayer and about
  /// which the layer turns and scales.
  [[nodiscard]] Point anchorPoint() const;
  void setAnchorPoint(const Point& anchorPoint);
  [[nodiscard]] Point position() const;
  void setPosition(const Point& position);
  [[nodiscard]] double zPosition() const;
  void setZPosition(double zPosition);
  /// Of the layer and its sublayers together; of each by itself while a sublayer is animated.
  [[nodiscard]] double opacity() const;
  void setOpacity(double opacity);
  /// Counterclockwise, radians ("transform.rotation.z").
  [[nodiscard]] double rotation() const;
  void setRotation(double radians);
  [[nodiscard]] double scale() const;
  void setScale(double scale);

  /// The layer's picture, stretched over its bounds. Its own pixels may be more than the points
  /// (device pixels); it is never changed after it was set.
  [[nodiscard]] const QImage& contents() const;
  void setContents(QImage contents);
  /// Fills the bounds; none at first.
  [[nodiscard]] const std::optional<Color>& backgroundColor() const;
  void setBackgroundColor(std::optional<Color> color);
  /// Of the background and the delegate's drawing.
  [[nodiscard]] double cornerRadius() const;
  void setCornerRadius(double radius);

  [[nodiscard]] Size shadowOffset() const;  // y upward
  void setShadowOffset(const Size& offset);
  /// The standard deviation of the shadow's blur, in points.
  [[nodiscard]] double shadowRadius() const;
  void setShadowRadius(double radius);
  [[nodiscard]] double shadowOpacity() const;
  void setShadowOpacity(double opacity);

  [[nodiscard]] bool needsDisplayOnBoundsChange() const;
  void setNeedsDisplayOnBoundsChange(bool needs);
  /// The delegate draws the layer at the next commit; drawing the same again changes nothing.
  void setNeedsDisplay();
  /// Not owned; must be cleared before the delegate goes.
  void setDelegate(LayerDelegate* delegate);

  [[nodiscard]] Layer* superlayer() const;
  [[nodiscard]] const std::vector<std::shared_ptr<Layer>>& sublayers() const;
  /// Adds as the last, so topmost, sublayer.
  void addSublayer(std::shared_ptr<Layer> layer);
  void removeFromSuperlayer();

  /// Starts an animation; one that runs under the same key is removed first. Outside of a tree it
  /// never begins, and is held until it is removed or the layer goes.
  void addAnimation(BasicAnimation animation, const std::string& key);
  void addAnimation(KeyframeAnimation animation, const std::string& key);
  void removeAnimation(const std::string& key);
  [[nodiscard]] std::vector<std::string> animationKeys() const;  // in the order they were added

 private:
  friend class LayerTree;
  friend class TextLayer;
  struct State;

  void start(Animation animation, const std::string& key);
  void changed();
  void pictureChanged();
  [[nodiscard]] LayerObserver* observer() const;
  void announceAnimations(LayerObserver& observer) const;
  /// Takes the animation from the layer, then tells its delegate; nothing if it is not the layer's.
  void stop(const std::shared_ptr<RunningAnimation>& running, bool finished);

  std::unique_ptr<State> _state;
};

}  // namespace pelmora::render
