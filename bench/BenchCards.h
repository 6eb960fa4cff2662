#pragma once

#include "render/Layer.h"

#include <memory>

namespace pelmora::bench {

constexpr double kEntrance = 1.15;  // seconds that a card's entrance takes

/// A framed card as the saver makes one for a screen of that size; the number gives its colour and
/// place.
[[nodiscard]] std::shared_ptr<render::Layer> makeCard(const Rect& screen, int number);

/// The four animations of an entrance.
void addEntrance(render::Layer& card, const Rect& screen);

}  // namespace pelmora::bench
