#include "BenchCards.h"

namespace pelmora::bench {

std::shared_ptr<render::Layer> makeCard(const Rect& screen, int number) {
  const double height = screen.size.height;
  const Size size{0.81 * height, 0.89 * height};
  QImage artwork(static_cast<int>(size.width), static_cast<int>(size.height),
                 QImage::Format_ARGB32_Premultiplied);
  artwork.fill(QColor::fromHsv(number * 50 % 360, 120, 230));
  auto card = std::make_shared<render::Layer>();
  card->setBounds({{0, 0}, size});
  card->setAnchorPoint({0.5, 0.5});
  card->setPosition({(0.3 + 0.08 * number) * screen.size.width, 0.5 * height});
  card->setRotation(0.03 * number - 0.1);
  card->setContents(artwork);
  card->setShadowOffset({-0.0075 * height, -0.0075 * height});
  card->setShadowRadius(0.01 * height);
  card->setShadowOpacity(0.75);
  return card;
}

void addEntrance(render::Layer& card, const Rect& screen) {
  using render::KeyPath;
  using render::MediaTimingFunction;
  const MediaTimingFunction easeOut(MediaTimingFunction::Name::easeOut);
  const MediaTimingFunction easeIn(MediaTimingFunction::Name::easeIn);
  card.addAnimation({.keyPath = KeyPath::position,
                     .duration = 1.0,
                     .timingFunction = easeOut,
                     .fromValue = Point{0.7 * screen.size.width, 0.4 * screen.size.height},
                     .toValue = card.position(),
                     .delegate = nullptr},
                    "FadeIn");
  card.addAnimation({.keyPath = KeyPath::scale,
                     .duration = 0.7,
                     .timingFunction = easeIn,
                     .fromValue = 1.3,
                     .toValue = 1.0,
                     .delegate = nullptr},
                    "TheScale");
  card.addAnimation({.keyPath = KeyPath::opacity,
                     .duration = 0.4,
                     .timingFunction = easeOut,
                     .fromValue = 0.0,
                     .toValue = 1.0,
                     .delegate = nullptr},
                    "TheOpacity");
  card.addAnimation({.keyPath = KeyPath::rotation,
                     .duration = kEntrance,
                     .timingFunction = easeOut,
                     .fromValue = 0.5,
                     .toValue = card.rotation(),
                     .delegate = nullptr},
                    "TheRotation");
}

}  // namespace pelmora::bench
