#include "render/TextLayer.h"

#include "render/LayerState.h"
#include "render/TextSetting.h"

#include <algorithm>
#include <utility>

namespace pelmora::render {

TextLayer::TextLayer() {
  _state->text.emplace();
  setRole("text");
}

const AttributedString& TextLayer::string() const { return _state->text->string; }

void TextLayer::setString(AttributedString string) {
  if (assign(_state->text->string, std::move(string))) pictureChanged();
}

TextAlignment TextLayer::alignment() const { return _state->text->alignment; }

void TextLayer::setAlignment(TextAlignment alignment) {
  if (assign(_state->text->alignment, alignment)) pictureChanged();
}

Color TextLayer::foregroundColor() const { return _state->text->foregroundColor; }

void TextLayer::setForegroundColor(const Color& color) {
  if (assign(_state->text->foregroundColor, color)) pictureChanged();
}

Size boundingSize(const AttributedString& string, const Size& most) {
  const Size size = TextSetting({.string = string}, most.width).size();
  return {std::min(size.width, std::max(0.0, most.width)),
          std::min(size.height, std::max(0.0, most.height))};
}

}  // namespace pelmora::render
