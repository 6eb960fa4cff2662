#include "render/SceneNodes.h"

#include "platform/Clock.h"
#include "render/Snapshot.h"

#include <QMatrix4x4>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>
#include <QSGTexture>

#include <utility>

namespace pelmora::render {

namespace {

void deleteChildren(QSGNode& node) {
  while (QSGNode* child = node.firstChild()) {
    node.removeChildNode(child);
    delete child;
  }
}

}  // namespace

SceneNodes::SceneNodes(const platform::Clock& clock, QQuickWindow& window)
    : _clock(clock), _window(window), _background(new QSGNode), _pixels(new QSGTransformNode) {
  setFlag(QSGNode::UsePreprocess);
  appendChildNode(_pixels);
  _pixels->appendChildNode(_background);
}

void SceneNodes::show(std::shared_ptr<const Snapshot> snapshot, double devicePixelRatio) {
  QMatrix4x4 toUnits;
  toUnits.scale(static_cast<float>(1 / devicePixelRatio));
  if (_pixels->matrix() != toUnits) _pixels->setMatrix(toUnits);
  if (snapshot == _snapshot) return;
  _snapshot = std::move(snapshot);
  appendBackground();
  appendPictures();
  pose(_clock.mediaTime());
}

void SceneNodes::appendBackground() {
  deleteChildren(*_background);
  for (const FillItem& fill : backgroundOf(*_snapshot)) {
    QSGRectangleNode* node = _window.createRectangleNode();
    node->setRect(fill.rect);
    node->setColor(fill.color);
    _background->appendChildNode(node);
  }
}

/// The nodes are taken out and put in again in the new order, and those of gone pictures deleted.
void SceneNodes::appendPictures() {
  auto before = std::exchange(_pictures, {});
  for (const auto& [picture, node] : before) _pixels->removeChildNode(node.transform);
  for (const auto& picture : picturesOf(*_snapshot)) {
    const auto known = before.find(picture);
    const PictureNode node = known != before.end() ? known->second : makeNode(*picture);
    if (known != before.end()) before.erase(known);
    _pixels->appendChildNode(node.transform);
    _pictures.emplace(picture, node);
  }
  for (const auto& [picture, node] : before) delete node.transform;
}

SceneNodes::PictureNode SceneNodes::makeNode(const BakedPicture& picture) const {
  const QRectF whole(picture.image.rect());
  QSGImageNode* image = _window.createImageNode();
  // A node without a texture must not get into the graph.
  image->setTexture(
      _window.createTextureFromImage(picture.image, QQuickWindow::TextureHasAlphaChannel));
  image->setOwnsTexture(true);
  image->setFiltering(QSGTexture::Linear);
  image->setMipmapFiltering(QSGTexture::None);
  image->setRect(whole);
  image->setSourceRect(whole);
  const PictureNode node{new QSGTransformNode, new QSGOpacityNode};
  node.opacity->appendChildNode(image);
  node.transform->appendChildNode(node.opacity);
  return node;
}

void SceneNodes::preprocess() {
  if (!_snapshot) return;
  const double time = _clock.mediaTime();
  _snapshot->beginAnimations(time);
  _isMoving = _snapshot->movesAt(time);
  pose(time);
}

void SceneNodes::pose(double time) {
  std::unordered_map<const BakedPicture*, const DrawItem*> shown;
  const std::vector<DrawItem> items = drawListOf(*_snapshot, time);
  for (const DrawItem& item : items) shown.emplace(item.picture.get(), &item);
  for (const auto& [picture, node] : _pictures) {
    const auto found = shown.find(picture.get());
    const double opacity = found == shown.end() ? 0 : found->second->opacity;
    if (node.opacity->opacity() != opacity) node.opacity->setOpacity(opacity);
    if (found == shown.end()) continue;
    const QMatrix4x4 matrix(found->second->toTarget);
    if (node.transform->matrix() != matrix) node.transform->setMatrix(matrix);
  }
}

}  // namespace pelmora::render
