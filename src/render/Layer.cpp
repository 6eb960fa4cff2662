#include "render/Layer.h"

#include "render/LayerState.h"

#include <algorithm>
#include <utility>

namespace pelmora::render {

Layer::Layer() : _state(std::make_unique<State>()) {}

Layer::~Layer() {
  for (const auto& sublayer : _state->sublayers) sublayer->_state->superlayer = nullptr;
  while (!_state->animations.empty()) {
    const std::shared_ptr<RunningAnimation> last = _state->animations.back();
    stop(last, false);
  }
}

const std::string& Layer::role() const { return _state->role; }

void Layer::setRole(std::string role) {
  if (assign(_state->role, std::move(role))) changed();
}

const std::string& Layer::url() const { return _state->url; }

void Layer::setUrl(std::string url) {
  if (assign(_state->url, std::move(url))) changed();
}

Rect Layer::bounds() const { return _state->bounds; }

void Layer::setBounds(const Rect& bounds) {
  if (!assign(_state->bounds, bounds)) return;
  if (_state->needsDisplayOnBoundsChange) _state->needsDisplay = true;
  pictureChanged();
}

Point Layer::anchorPoint() const { return _state->anchorPoint; }

void Layer::setAnchorPoint(const Point& anchorPoint) {
  if (assign(_state->anchorPoint, anchorPoint)) changed();
}

Point Layer::position() const { return _state->position; }

void Layer::setPosition(const Point& position) {
  if (assign(_state->position, position)) changed();
}

double Layer::zPosition() const { return _state->zPosition; }

void Layer::setZPosition(double zPosition) {
  if (assign(_state->zPosition, zPosition)) changed();
}

double Layer::opacity() const { return _state->opacity; }

void Layer::setOpacity(double opacity) {
  if (assign(_state->opacity, opacity)) changed();
}

double Layer::rotation() const { return _state->rotation; }

void Layer::setRotation(double radians) {
  if (assign(_state->rotation, radians)) changed();
}

double Layer::scale() const { return _state->scale; }

void Layer::setScale(double scale) {
  if (assign(_state->scale, scale)) changed();
}

const QImage& Layer::contents() const { return _state->contents; }

void Layer::setContents(QImage contents) {
  _state->contents = std::move(contents);
  pictureChanged();
}

const std::optional<Color>& Layer::backgroundColor() const { return _state->backgroundColor; }

void Layer::setBackgroundColor(std::optional<Color> color) {
  if (assign(_state->backgroundColor, color)) pictureChanged();
}

double Layer::cornerRadius() const { return _state->cornerRadius; }

void Layer::setCornerRadius(double radius) {
  if (assign(_state->cornerRadius, radius)) pictureChanged();
}

Size Layer::shadowOffset() const { return _state->shadowOffset; }

void Layer::setShadowOffset(const Size& offset) {
  if (assign(_state->shadowOffset, offset)) pictureChanged();
}

double Layer::shadowRadius() const { return _state->shadowRadius; }

void Layer::setShadowRadius(double radius) {
  if (assign(_state->shadowRadius, radius)) pictureChanged();
}

double Layer::shadowOpacity() const { return _state->shadowOpacity; }

void Layer::setShadowOpacity(double opacity) {
  if (assign(_state->shadowOpacity, opacity)) pictureChanged();
}

bool Layer::needsDisplayOnBoundsChange() const { return _state->needsDisplayOnBoundsChange; }

void Layer::setNeedsDisplayOnBoundsChange(bool needs) {
  _state->needsDisplayOnBoundsChange = needs;
}

void Layer::setNeedsDisplay() { _state->needsDisplay = true; }

void Layer::setDelegate(LayerDelegate* delegate) { _state->delegate = delegate; }

Layer* Layer::superlayer() const { return _state->superlayer; }

const std::vector<std::shared_ptr<Layer>>& Layer::sublayers() const { return _state->sublayers; }

void Layer::addSublayer(std::shared_ptr<Layer> layer) {
  if (!layer) return;
  for (const Layer* ancestor = this; ancestor != nullptr; ancestor = ancestor->superlayer()) {
    if (ancestor == layer.get()) return;  // a layer cannot lie within itself
  }
  layer->removeFromSuperlayer();
  layer->_state->superlayer = this;
  Layer& added = *layer;
  _state->sublayers.push_back(std::move(layer));
  changed();
  if (LayerObserver* watching = observer()) added.announceAnimations(*watching);
}

void Layer::removeFromSuperlayer() {
  if (_state->superlayer == nullptr) return;
  changed();
  auto& siblings = std::exchange(_state->superlayer, nullptr)->_state->sublayers;
  const auto at = std::find_if(siblings.begin(), siblings.end(),
                               [this](const auto& sibling) { return sibling.get() == this; });
  if (at == siblings.end()) return;
  // The superlayer may have held the last reference: it goes when all is in order again.
  const std::shared_ptr<Layer> self = std::move(*at);
  siblings.erase(at);
}

void Layer::addAnimation(BasicAnimation animation, const std::string& key) {
  start(std::move(animation), key);
}

void Layer::addAnimation(KeyframeAnimation animation, const std::string& key) {
  start(std::move(animation), key);
}

void Layer::start(Animation animation, const std::string& key) {
  removeAnimation(key);
  auto running = std::make_shared<RunningAnimation>();
  running->key = key;
  running->animation = std::move(animation);
  running->layer = weak_from_this();
  _state->animations.push_back(running);
  changed();
  if (LayerObserver* watching = observer()) watching->animationAdded(running);
}

void Layer::removeAnimation(const std::string& key) {
  const auto at = std::find_if(_state->animations.begin(), _state->animations.end(),
                               [&key](const auto& running) { return running->key == key; });
  if (at == _state->animations.end()) return;
  const std::shared_ptr<RunningAnimation> running = *at;
  stop(running, false);
}

std::vector<std::string> Layer::animationKeys() const {
  std::vector<std::string> keys;
  for (const auto& running : _state->animations) keys.push_back(running->key);
  return keys;
}

void Layer::stop(const std::shared_ptr<RunningAnimation>& running, bool finished) {
  if (std::erase(_state->animations, running) == 0) return;
  changed();
  auto* animation = std::get_if<BasicAnimation>(&running->animation);
  if (animation == nullptr) return;
  // Telling the delegate, and letting go of it, may end this layer: nothing of it is used after.
  const std::shared_ptr<AnimationDelegate> delegate = std::move(animation->delegate);
  if (delegate) delegate->animationDidStop(*animation, finished);
}

void Layer::changed() {
  if (LayerObserver* watching = observer()) watching->layersChanged();
}

void Layer::pictureChanged() {
  _state->pictureIsStale = true;
  changed();
}

LayerObserver* Layer::observer() const {
  const Layer* top = this;
  while (top->_state->superlayer != nullptr) top = top->_state->superlayer;
  return top->_state->observer;
}

void Layer::announceAnimations(LayerObserver& observer) const {
  for (const auto& running : _state->animations) observer.animationAdded(running);
  for (const auto& sublayer : _state->sublayers) sublayer->announceAnimations(observer);
}

}  // namespace pelmora::render
