#include "host/LayerListing.h"

#include "view/PelmoraView.h"

#include <QJsonArray>

namespace pelmora::host {

namespace {

QJsonArray toJson(const Point& point) { return {point.x, point.y}; }

QJsonArray toJson(const Size& size) { return {size.width, size.height}; }

QJsonArray toJson(const Rect& rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

QJsonValue toJson(const render::AnimatableValue& value) {
  if (const auto* point = std::get_if<Point>(&value)) return toJson(*point);
  return std::get<double>(value);
}

QJsonArray toJson(const std::vector<double>& numbers) {
  QJsonArray listed;
  for (const double number : numbers) listed.append(number);
  return listed;
}

QJsonArray toJson(const std::vector<render::AnimatableValue>& values) {
  QJsonArray listed;
  for (const render::AnimatableValue& value : values) listed.append(toJson(value));
  return listed;
}

QString text(const std::string& utf8) { return QString::fromStdString(utf8); }

QJsonObject course(const render::AnimationSnapshot& animation) {
  if (animation.keyframes) {
    return {{"values", toJson(animation.keyframes->values)},
            {"keyTimes", toJson(animation.keyframes->keyTimes)}};
  }
  return {{"from", toJson(animation.fromValue)},
          {"to", toJson(animation.toValue)},
          {"timingFunction", animation.timingFunction.description()}};
}

QJsonObject runningAnimations(const render::LayerSnapshot& layer, double start, double time) {
  QJsonObject animations;
  for (const render::AnimationSnapshot& animation : layer.animations) {
    if (animation.isOverAt(time)) continue;
    QJsonObject fields = course(animation);
    fields["keyPath"] = render::description(animation.keyPath);
    fields["duration"] = animation.duration;
    if (animation.begin->isKnown()) fields["beginTime"] = animation.begin->time() - start;
    animations[text(animation.key)] = fields;
  }
  return animations;
}

QJsonObject presentation(const render::LayerSnapshot& layer, double time) {
  const render::Pose pose = render::presentationOf(layer, time);
  return {{"position", toJson(pose.position)},
          {"scale", pose.scale},
          {"opacity", pose.opacity},
          {"rotation", pose.rotation}};
}

QJsonArray listLayers(const std::vector<render::LayerSnapshot>& layers, double start, double time) {
  QJsonArray listed;
  for (const render::LayerSnapshot& layer : layers) {
    QJsonObject fields{
        {"role", text(layer.role)},
        {"bounds", toJson(layer.bounds)},
        {"anchorPoint", toJson(layer.anchorPoint)},
        {"position", toJson(layer.position)},
        {"zPosition", layer.zPosition},
        {"opacity", layer.opacity},
        {"rotation", layer.rotation},
        {"shadowOffset", toJson(layer.shadowOffset)},
        {"shadowRadius", layer.shadowRadius},
        {"shadowOpacity", layer.shadowOpacity},
        {"cornerRadius", layer.cornerRadius},
        {"animations", runningAnimations(layer, start, time)},
        {"presentation", presentation(layer, time)},
        {"sublayers", listLayers(layer.sublayers, start, time)},
    };
    if (!layer.url.empty()) fields["url"] = text(layer.url);
    if (layer.role == "text") fields["string"] = text(layer.string);
    listed.append(fields);
  }
  return listed;
}

}  // namespace

QJsonObject layerListing(const view::PelmoraView& view, const render::Snapshot& snapshot,
                         double start, double time) {
  return {
      {"screenIndex", static_cast<qint64>(view.screenIndex())},
      {"isPreview", view.isPreview()},
      {"frame", toJson(view.frame())},
      {"numImages", static_cast<qint64>(view.numImages())},
      {"delay", view.delay()},
      {"layers", listLayers(snapshot.root.sublayers, start, time)},
  };
}

}  // namespace pelmora::host
