#include "render/SceneNodes.h"

#include "render/tests/Windows.h"

#include <gtest/gtest.h>

#include <QSGImageNode>

namespace pelmora::render {
namespace {

/// Nodes as a window's scene graph would have them; textures need that graph to be there.
struct SceneNodesTest : testing::Test {
  SceneNodesTest() {
    window.setGeometry(0, 0, 200, 100);
    window.show();
    waitUntil([this] { return window.isSceneGraphInitialized(); });
  }
  void show(double devicePixelRatio = 1) {
    stage.tree.commit();
    nodes->show(stage.presenter.snapshots.back(), devicePixelRatio);
  }
  std::shared_ptr<Layer> addPicture(const Point& position) {
    auto layer = stage.addLayer({{0, 0}, {20, 10}}, position);
    layer->setContents(plainPicture(20, 10));
    return layer;
  }
  /// The nodes of the pictures, from back to front: after the background.
  std::vector<QSGTransformNode*> transforms() const {
    std::vector<QSGTransformNode*> found;
    for (QSGNode* node = nodes->firstChild()->firstChild()->nextSibling(); node != nullptr;
         node = node->nextSibling()) {
      found.push_back(static_cast<QSGTransformNode*>(node));
    }
    return found;
  }
  static QSGOpacityNode& opacityOf(QSGTransformNode* transform) {
    return static_cast<QSGOpacityNode&>(*transform->firstChild());
  }
  static QSGTexture* textureOf(QSGTransformNode* transform) {
    return static_cast<QSGImageNode*>(transform->firstChild()->firstChild())->texture();
  }

  Stage stage;
  QQuickWindow window;
  std::unique_ptr<SceneNodes> nodes = std::make_unique<SceneNodes>(stage.clock, window);
};

TEST_F(SceneNodesTest, hasANodeForEachPictureFromBackToFront) {
  addPicture({30, 30})->setZPosition(1);
  addPicture({50, 50});
  show();
  ASSERT_EQ(transforms().size(), 2U);
  const auto items = drawListOf(stage.latest(), 0);
  EXPECT_EQ(transforms()[0]->matrix(), QMatrix4x4(items[0].toTarget));
  EXPECT_EQ(transforms()[1]->matrix(), QMatrix4x4(items[1].toTarget));
}

TEST_F(SceneNodesTest, uploadsAPictureOnce) {
  const auto first = addPicture({30, 30});
  const auto second = addPicture({50, 50});
  show();
  QSGTexture* const texture = textureOf(transforms()[1]);
  second->setPosition({60, 60});
  first->removeFromSuperlayer();
  show();
  ASSERT_EQ(transforms().size(), 1U);
  EXPECT_EQ(textureOf(transforms()[0]), texture);
}

TEST_F(SceneNodesTest, posesEachFrameAtItsOwnTime) {
  const auto card = addCard(stage);
  show();
  EXPECT_EQ(opacityOf(transforms()[0]).opacity(), 0);
  nodes->preprocess();
  EXPECT_TRUE(nodes->isMoving());
  stage.clock.advanceTo(0.2);
  nodes->preprocess();
  const auto items = drawListOf(stage.latest(), 0.2);
  EXPECT_EQ(transforms()[0]->matrix(), QMatrix4x4(items[0].toTarget));
  EXPECT_EQ(opacityOf(transforms()[0]).opacity(), items[0].opacity);
  stage.clock.advanceTo(1.15);
  nodes->preprocess();
  EXPECT_FALSE(nodes->isMoving());
  EXPECT_EQ(opacityOf(transforms()[0]).opacity(), 1);
}

TEST_F(SceneNodesTest, keepsATransparentPictureReady) {
  addPicture({30, 30})->setOpacity(0);
  show();
  ASSERT_EQ(transforms().size(), 1U);
  EXPECT_NE(textureOf(transforms()[0]), nullptr);
  EXPECT_EQ(opacityOf(transforms()[0]).opacity(), 0);
}

TEST_F(SceneNodesTest, worksInDevicePixels) {
  addPicture({30, 30});
  show(2);
  auto* pixels = static_cast<QSGTransformNode*>(nodes->firstChild());
  EXPECT_EQ(pixels->matrix().map(QPointF(100, 50)), QPointF(50, 25));
}

}  // namespace
}  // namespace pelmora::render
