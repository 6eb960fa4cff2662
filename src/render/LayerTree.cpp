#include "render/LayerTree.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "render/LayerState.h"
#include "render/Snapshot.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace pelmora::render {

/// Shared, so that it lasts through a delegate's call that ends the tree.
struct LayerTree::State : LayerObserver, std::enable_shared_from_this<State> {
  State(platform::Clock& theClock, platform::Scheduler& theScheduler,
        std::shared_ptr<Layer> theRoot)
      : clock(theClock),
        scheduler(theScheduler),
        root(std::move(theRoot)),
        notice(std::make_shared<BeginNotice>(theScheduler, [this] { armTimer(); })) {}

  void open();
  void close();
  void layersChanged() override { isDirty = true; }
  void animationAdded(const std::shared_ptr<RunningAnimation>& added) override;

  [[nodiscard]] LayerSnapshot snapshotOf(Layer& layer, double outerScale);
  void prepare(Layer::State& layer, double pictureScale) const;
  void display(Layer& layer);

  [[nodiscard]] bool holds(const Layer& layer) const;
  void beginUnseenAnimations();
  void armTimer();
  void endAnimations();

  platform::Clock& clock;
  platform::Scheduler& scheduler;
  std::shared_ptr<Layer> root;
  std::shared_ptr<BeginNotice> notice;
  Presenter* presenter = nullptr;
  double scale = 1;
  bool isDirty = true;
  // Those that came under the root and still run, even if their layer has left it since.
  std::vector<std::weak_ptr<RunningAnimation>> running;
  std::optional<platform::Scheduler::TimerId> timer;
};

namespace {

double endOf(const RunningAnimation& running) {
  return running.begin->time() + std::max(0.0, durationOf(running.animation));
}

AnimationSnapshot snapshotOfAnimation(const RunningAnimation& running) {
  AnimationSnapshot shown;
  shown.key = running.key;
  shown.duration = durationOf(running.animation);
  shown.begin = running.begin;
  if (const auto* basic = std::get_if<BasicAnimation>(&running.animation)) {
    shown.keyPath = basic->keyPath;
    shown.timingFunction = basic->timingFunction;
    shown.fromValue = basic->fromValue;
    shown.toValue = basic->toValue;
  } else {
    const auto& keyframe = std::get<KeyframeAnimation>(running.animation);
    shown.keyPath = keyframe.keyPath;
    shown.keyframes = Keyframes{keyframe.keyTimes, keyframe.values};
  }
  return shown;
}

}  // namespace

void LayerTree::State::open() {
  root->_state->observer = this;
  root->announceAnimations(*this);
}

void LayerTree::State::close() {
  root->_state->observer = nullptr;
  notice->close();
  if (timer) scheduler.cancel(*std::exchange(timer, std::nullopt));
  for (const auto& each : std::exchange(running, {})) {
    const auto animation = each.lock();
    const auto layer = animation ? animation->layer.lock() : nullptr;
    if (layer) layer->stop(animation, false);
  }
}

void LayerTree::State::animationAdded(const std::shared_ptr<RunningAnimation>& added) {
  // Here too: while no frame is shown none begins, and others may take their places without end.
  std::erase_if(running, [](const auto& each) { return each.expired(); });
  const bool isKnown = std::any_of(running.begin(), running.end(),
                                   [&](const auto& each) { return each.lock() == added; });
  if (isKnown) return;
  added->begin->setNotice(notice);
  running.push_back(added);
}

/// Only a drawing that differs from the last is a change, so that a view which draws the same
/// background again and again costs no frame.
void LayerTree::State::display(Layer& layer) {
  Layer::State& state = *layer._state;
  if (std::exchange(state.needsDisplay, false) && state.delegate != nullptr) {
    LayerContext context;
    state.delegate->drawLayer(&layer, context);
    if (state.fills != context.fills()) {
      state.fills = context.fills();
      layer.pictureChanged();
    }
  }
  for (const auto& sublayer : state.sublayers) display(*sublayer);
}

void LayerTree::State::prepare(Layer::State& layer, double pictureScale) const {
  if (!layer.pictureIsStale && layer.pictureScale == pictureScale) return;
  layer.picture = bake({.contents = layer.contents,
                        .fills = layer.fills,
                        .bounds = layer.bounds,
                        .backgroundColor = layer.backgroundColor,
                        .cornerRadius = layer.cornerRadius,
                        .text = layer.text,
                        .shadowOffset = layer.shadowOffset,
                        .shadowRadius = layer.shadowRadius,
                        .shadowOpacity = layer.shadowOpacity,
                        .scale = pictureScale});
  layer.pictureIsStale = false;
  layer.pictureScale = pictureScale;
}

LayerSnapshot LayerTree::State::snapshotOf(Layer& layer, double outerScale) {
  Layer::State& state = *layer._state;
  const double ownScale = outerScale * state.scale;
  if (&layer != root.get()) prepare(state, ownScale);
  LayerSnapshot shown{.role = state.role,
                      .url = state.url,
                      .bounds = state.bounds,
                      .anchorPoint = state.anchorPoint,
                      .position = state.position,
                      .zPosition = state.zPosition,
                      .opacity = state.opacity,
                      .rotation = state.rotation,
                      .scale = state.scale,
                      .shadowOffset = state.shadowOffset,
                      .shadowRadius = state.shadowRadius,
                      .shadowOpacity = state.shadowOpacity,
                      .cornerRadius = state.cornerRadius,
                      .backgroundColor = state.backgroundColor,
                      .fills = state.fills,
                      .contents = state.contents,
                      .string = state.text ? state.text->string.plainText() : std::string(),
                      .picture = state.picture,
                      .animations = {},
                      .sublayers = {}};
  for (const auto& each : state.animations) {
    shown.animations.push_back(snapshotOfAnimation(*each));
  }
  for (const auto& sublayer : state.sublayers) {
    shown.sublayers.push_back(snapshotOf(*sublayer, ownScale));
  }
  std::stable_sort(shown.sublayers.begin(), shown.sublayers.end(),
                   [](const auto& a, const auto& b) { return a.zPosition < b.zPosition; });
  if (&layer != root.get()) state.flattened.replacePictures(shown, ownScale);
  return shown;
}

bool LayerTree::State::holds(const Layer& layer) const {
  const Layer* top = &layer;
  while (top->superlayer() != nullptr) top = top->superlayer();
  return top == root.get();
}

/// No frame will show an animation whose layer has left the tree, and without a presenter none
/// shows any: their time begins now, so that it ends.
void LayerTree::State::beginUnseenAnimations() {
  for (const auto& each : running) {
    const auto animation = each.lock();
    const auto layer = animation ? animation->layer.lock() : nullptr;
    if (!layer || (presenter != nullptr && holds(*layer))) continue;
    animation->begin->fix(clock.mediaTime());
  }
}

void LayerTree::State::armTimer() {
  std::erase_if(running, [](const auto& each) { return each.expired(); });
  std::optional<double> next;
  for (const auto& each : running) {
    const auto animation = each.lock();
    if (animation->begin->isKnown())
      next = std::min(next.value_or(endOf(*animation)), endOf(*animation));
  }
  if (timer) scheduler.cancel(*std::exchange(timer, std::nullopt));
  if (!next) return;
  timer = scheduler.after(std::max(0.0, *next - clock.mediaTime()), [this] { endAnimations(); });
}

void LayerTree::State::endAnimations() {
  const auto self = shared_from_this();
  timer.reset();
  const double now = clock.mediaTime();
  std::vector<std::shared_ptr<RunningAnimation>> over;
  for (const auto& each : running) {
    auto animation = each.lock();
    if (animation && animation->begin->isKnown() && endOf(*animation) <= now) {
      over.push_back(std::move(animation));
    }
  }
  std::stable_sort(over.begin(), over.end(),
                   [](const auto& a, const auto& b) { return endOf(*a) < endOf(*b); });
  for (const auto& animation : over) {
    if (const auto layer = animation->layer.lock()) layer->stop(animation, true);
  }
  over.clear();
  if (root->_state->observer == this) armTimer();
}

LayerTree::LayerTree(platform::Clock& clock, platform::Scheduler& scheduler,
                     std::shared_ptr<Layer> root)
    : _state(std::make_shared<State>(clock, scheduler, std::move(root))) {
  _state->open();
}

LayerTree::~LayerTree() { _state->close(); }

void LayerTree::setPresenter(Presenter* presenter) {
  if (_state->presenter == presenter) return;
  _state->presenter = presenter;
  _state->isDirty = true;
}

void LayerTree::setScale(double scale) {
  if (_state->scale == scale) return;
  _state->scale = scale;
  _state->isDirty = true;
}

void LayerTree::commit() {
  if (_state->presenter != nullptr) _state->display(*_state->root);
  if (_state->presenter != nullptr && std::exchange(_state->isDirty, false)) {
    const auto snapshot = std::make_shared<Snapshot>(
        Snapshot{_state->snapshotOf(*_state->root, _state->scale), _state->scale});
    _state->presenter->submit(snapshot);
  }
  _state->beginUnseenAnimations();
}

bool LayerTree::isHidden() const {
  return _state->presenter != nullptr && _state->presenter->isHidden();
}

Layer& LayerTree::root() const { return *_state->root; }

}  // namespace pelmora::render
