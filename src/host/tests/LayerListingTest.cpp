#include "host/LayerListing.h"

#include "cache/FolderCache.h"
#include "platform/fake/FakeServices.h"
#include "sources/PMSourceList.h"
#include "view/PelmoraView.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace pelmora::host {

class LayerListingTest : public testing::Test {
 protected:
  ~LayerListingTest() override { sources::PMSourceList::endSharedSourceList(); }

  [[nodiscard]] static render::LayerSnapshot card() {
    render::LayerSnapshot layer;
    layer.role = "card";
    layer.url = "/p/a b.jpg";
    layer.bounds = {{0, 0}, {300, 200}};
    layer.anchorPoint = {0.5, 0.5};
    layer.position = {10, 20};
    layer.rotation = 0.1;
    layer.shadowOpacity = 0.75;
    render::AnimationSnapshot turn;
    turn.key = "TheRotation";
    turn.keyPath = render::KeyPath::rotation;
    turn.duration = 1.15;
    turn.timingFunction = render::MediaTimingFunction(render::MediaTimingFunction::Name::easeOut);
    turn.fromValue = 0.5;
    turn.toValue = 0.1;
    turn.begin = std::make_shared<render::AnimationBegin>();
    turn.begin->fix(12.0);
    layer.animations.push_back(turn);
    return layer;
  }

  [[nodiscard]] static render::LayerSnapshot label() {
    render::LayerSnapshot layer;
    layer.role = "track";
    render::AnimationSnapshot fade;
    fade.key = "Fade";
    fade.keyPath = render::KeyPath::opacity;
    fade.duration = 10;
    fade.keyframes = render::Keyframes{{0, 0.2, 0.8, 1}, {0.0, 0.8, 0.8, 0.0}};
    fade.begin = std::make_shared<render::AnimationBegin>();
    fade.begin->fix(12.0);
    layer.animations.push_back(fade);
    render::LayerSnapshot text;
    text.role = "text";
    text.string = "Title\nArtist";
    layer.sublayers.push_back(text);
    return layer;
  }

  platform::FakeServices fakes;
  const platform::Services services = fakes.services();
  view::PelmoraView view{services, {{0, 0}, {1920, 1080}}, false};
};

TEST_F(LayerListingTest, tellsALayersModelAnimationsAndPresentation) {
  render::Snapshot snapshot;
  snapshot.root.sublayers.push_back(card());
  const QJsonObject listing = layerListing(view, snapshot, 10.0, 12.0);
  const QJsonObject layer = listing["layers"].toArray()[0].toObject();
  EXPECT_EQ(layer["role"], "card");
  EXPECT_EQ(layer["url"], "/p/a b.jpg");
  EXPECT_EQ(layer["bounds"], (QJsonArray{0, 0, 300, 200}));
  EXPECT_EQ(layer["rotation"], 0.1);
  const QJsonObject turn = layer["animations"].toObject()["TheRotation"].toObject();
  EXPECT_EQ(turn["keyPath"], "transform.rotation.z");
  EXPECT_EQ(turn["timingFunction"], "easeOut");
  EXPECT_EQ(turn["from"], 0.5);
  EXPECT_EQ(turn["to"], 0.1);
  EXPECT_EQ(turn["duration"], 1.15);
  EXPECT_EQ(turn["beginTime"], 2.0);  // since the start
  EXPECT_EQ(layer["presentation"].toObject()["rotation"], 0.5);
}

TEST_F(LayerListingTest, tellsTheValuesOfKeyframes) {
  render::Snapshot snapshot;
  snapshot.root.sublayers.push_back(label());
  const QJsonObject listing = layerListing(view, snapshot, 10.0, 13.0);
  const QJsonObject layer = listing["layers"].toArray()[0].toObject();
  EXPECT_EQ(layer["animations"].toObject()["Fade"].toObject(),
            (QJsonObject{{"keyPath", "opacity"},
                         {"values", QJsonArray{0, 0.8, 0.8, 0}},
                         {"keyTimes", QJsonArray{0, 0.2, 0.8, 1}},
                         {"duration", 10.0},
                         {"beginTime", 2.0}}));
  EXPECT_NEAR(layer["presentation"].toObject()["opacity"].toDouble(), 0.4, 1e-12);
}

TEST_F(LayerListingTest, tellsTheStringOfTextsAlone) {
  render::Snapshot snapshot;
  snapshot.root.sublayers.push_back(label());
  const QJsonObject listing = layerListing(view, snapshot, 10.0, 13.0);
  const QJsonObject layer = listing["layers"].toArray()[0].toObject();
  EXPECT_FALSE(layer.contains("string"));
  const QJsonObject text = layer["sublayers"].toArray()[0].toObject();
  EXPECT_EQ(text["role"], "text");
  EXPECT_EQ(text["string"], "Title\nArtist");
}

TEST_F(LayerListingTest, leavesOutAnimationsThatAreOver) {
  render::Snapshot snapshot;
  snapshot.root.sublayers.push_back(card());
  const QJsonObject listing = layerListing(view, snapshot, 10.0, 14.0);
  const QJsonObject layer = listing["layers"].toArray()[0].toObject();
  EXPECT_TRUE(layer["animations"].toObject().isEmpty());
  EXPECT_EQ(layer["presentation"].toObject()["rotation"], 0.1);
}

TEST_F(LayerListingTest, writesNumbersThatReadBackTheSame) {
  render::Snapshot snapshot;
  snapshot.root.sublayers.push_back(card());
  snapshot.root.sublayers[0].rotation = 0.1 + 0.2;
  const QByteArray text = QJsonDocument(layerListing(view, snapshot, 0, 20)).toJson();
  const QJsonObject read = QJsonDocument::fromJson(text).object();
  EXPECT_EQ(read["layers"].toArray()[0].toObject()["rotation"].toDouble(), 0.1 + 0.2);
}

TEST_F(LayerListingTest, tellsTheViewsOwnFields) {
  const QJsonObject listing = layerListing(view, {}, 0, 0);
  EXPECT_EQ(listing["frame"], (QJsonArray{0, 0, 1920, 1080}));
  EXPECT_EQ(listing["isPreview"], false);
  EXPECT_TRUE(listing["layers"].toArray().isEmpty());
}

}  // namespace pelmora::host
