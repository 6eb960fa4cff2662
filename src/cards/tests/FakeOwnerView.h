#pragma once

#include "cards/OwnerView.h"
#include "platform/fake/FakeServices.h"
#include "render/Layer.h"

#include <map>
#include <string>

namespace pelmora::cards {

/// A view that is nothing but what a card asks of it. Thread: main.
class FakeOwnerView : public OwnerView {
 public:
  [[nodiscard]] Rect frame() const override { return rect; }
  [[nodiscard]] double backingScaleFactor() const override { return scale; }
  [[nodiscard]] render::Layer* layer() const override { return backing.get(); }
  [[nodiscard]] std::optional<Color> colorOfLabel(std::string_view name) const override {
    const auto found = labels.find(name);
    return found == labels.end() ? std::nullopt : std::optional(found->second);
  }
  [[nodiscard]] const platform::Services& services() const override { return references; }

  Rect rect{{0, 0}, {1600, 1000}};
  double scale = 1;
  std::shared_ptr<render::Layer> backing = std::make_shared<render::Layer>();
  std::map<std::string, Color, std::less<>> labels;
  platform::FakeServices fakes;
  platform::Services references = fakes.services();
};

}  // namespace pelmora::cards
