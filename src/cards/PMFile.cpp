#include "cards/PMFile.h"

#include "cards/CaptionFonts.h"
#include "cards/CardArtwork.h"
#include "cards/OwnerView.h"
#include "platform/PreferencesStore.h"
#include "platform/Workspace.h"
#include "render/Layer.h"
#include "shared/Random.h"

#include <utility>

namespace pelmora::cards {

namespace {

using render::BasicAnimation;
using render::KeyPath;
using render::MediaTimingFunction;

constexpr MediaTimingFunction kEaseIn(MediaTimingFunction::Name::easeIn);
constexpr MediaTimingFunction kEaseOut(MediaTimingFunction::Name::easeOut);

Rect frameOf(const OwnerView* ownerView) { return ownerView ? ownerView->frame() : Rect{}; }

/// Black is drawn seven times in ten.
Color randomCaptionColor() {
  switch (randomIntBetween(1, 10)) {
    case 8:
      return {0, 0, 0.5, 1};
    case 9:
      return {0.8, 0, 0, 1};
    case 10:
      return {0, 0.5, 0.1, 1};
    default:
      return {0, 0, 0, 1};
  }
}

bool wantsFrame(const OwnerView* ownerView) {
  return !ownerView || ownerView->services().preferences.isOn("UsePolaroid");
}

QImage framedArtwork(const FilePath& url, const platform::Image& image, OwnerView* ownerView) {
  const auto last = static_cast<std::int32_t>(captionFonts().size()) - 1;
  const auto font = static_cast<std::size_t>(randomIntBetween(0, last));
  const FramedCard card{
      .picture = image,
      .caption = std::string(url.lastComponent()),
      .captionFont = captionFonts()[font],
      .captionColor = randomCaptionColor(),
      .tags =
          ownerView ? ownerView->services().workspace.tagNames(url) : std::vector<std::string>{},
      .colorOfTag = [ownerView](std::string_view tag) { return ownerView->colorOfLabel(tag); }};
  const double scale = ownerView ? ownerView->backingScaleFactor() : 1;
  return paintFramedCard(card, frameOf(ownerView).size.height, scale);
}

/// The centre of a card that lies at a random place in the view.
Point randomCenter(const Size& card, const Rect& frame) {
  const Point origin = randomPointForSizeInRect(card, frame);
  return {origin.x + card.width / 2, origin.y + card.height / 2};
}

void addShadow(render::Layer& layer, double viewHeight) {
  layer.setShadowOffset({-0.0075 * viewHeight, -0.0075 * viewHeight});
  layer.setShadowRadius(0.01 * viewHeight);
  layer.setShadowOpacity(0.75);
}

void addMovement(render::Layer& layer, const Point& to) {
  layer.addAnimation({.keyPath = KeyPath::position,
                      .duration = 1.0,
                      .timingFunction = kEaseOut,
                      .fromValue = layer.position(),
                      .toValue = to,
                      .delegate = nullptr},
                     "FadeIn");
  layer.setPosition(to);
}

void addScale(render::Layer& layer) {
  layer.addAnimation({.keyPath = KeyPath::scale,
                      .duration = 0.7,
                      .timingFunction = kEaseIn,
                      .fromValue = randomDoubleBetween(1.1, 1.5),
                      .toValue = 1.0,
                      .delegate = nullptr},
                     "TheScale");
}

void addFade(render::Layer& layer) {
  layer.addAnimation({.keyPath = KeyPath::opacity,
                      .duration = 0.4,
                      .timingFunction = kEaseOut,
                      .fromValue = 0.0,
                      .toValue = 1.0,
                      .delegate = nullptr},
                     "TheOpacity");
  layer.setOpacity(1.0);
}

void addTurn(render::Layer& layer, std::shared_ptr<render::AnimationDelegate> delegate) {
  const double from = DegreesToRadians(randomDoubleBetween(-35, 35));
  const double to = DegreesToRadians(randomDoubleBetween(-10, 10));
  layer.addAnimation({.keyPath = KeyPath::rotation,
                      .duration = 1.15,
                      .timingFunction = kEaseOut,
                      .fromValue = from,
                      .toValue = to,
                      .delegate = std::move(delegate)},
                     "TheRotation");
  layer.setRotation(to);
}

}  // namespace

std::shared_ptr<PMFile> PMFile::make(FilePath url, const platform::Image& image,
                                     OwnerView* ownerView) {
  // In two steps, since the turn holds the card, which it can do once the card is shared.
  const std::shared_ptr<PMFile> card(new PMFile(std::move(url), image, ownerView));
  card->makeLayer(ownerView);
  return card;
}

PMFile::PMFile(FilePath url, const platform::Image& image, OwnerView* ownerView) {
  if (wantsFrame(ownerView)) {
    _image = framedArtwork(url, image, ownerView);
    _size = framedSize(image.size, frameOf(ownerView).size.height);
  } else {
    _image = pictureImage(image);
    _size = image.size;
  }
  _url = std::move(url);
}

PMFile::~PMFile() {
  if (_layer) _layer->removeFromSuperlayer();
}

const FilePath& PMFile::url() const { return _url; }
const QImage& PMFile::image() const { return _image; }
const std::shared_ptr<render::Layer>& PMFile::layer() const { return _layer; }

void PMFile::makeLayer(OwnerView* ownerView) {
  const Rect frame = frameOf(ownerView);
  _layer = std::make_shared<render::Layer>();
  _layer->setRole("card");
  _layer->setUrl(_url.bytes());
  _layer->setPosition(randomCenter(_size, frame));
  _layer->setBounds({{0, 0}, _size});
  _layer->setAnchorPoint({0.5, 0.5});
  _layer->setContents(std::exchange(_image, {}));
  _layer->setNeedsDisplayOnBoundsChange(true);
  if (render::Layer* below = ownerView ? ownerView->layer() : nullptr) below->addSublayer(_layer);
  addShadow(*_layer, frame.size.height);
  addMovement(*_layer, randomCenter(_size, frame));
  addScale(*_layer);
  addFade(*_layer);
  addTurn(*_layer, shared_from_this());
}

void PMFile::animationDidStop(const render::BasicAnimation&, bool) {}

}  // namespace pelmora::cards
