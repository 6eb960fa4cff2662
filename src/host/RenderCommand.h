#pragma once

#include "host/Options.h"
#include "platform/Displays.h"
#include "platform/players/PlayerState.h"
#include "shared/FilePath.h"
#include "shared/ReferenceTime.h"
#include "shared/Result.h"

#include <optional>
#include <string>
#include <vector>

namespace pelmora::host {

/// What `pelmora render` is asked for.
struct RenderRequest {
  std::string out;     // picture file, or empty
  std::string frames;  // folder for a film's frames, or empty
  std::string layers;  // JSON file, or empty
  std::vector<platform::Display> displays;
  Size previewSize{400, 300};
  double scale = 1;
  std::size_t screen = 1;  // 0: the preview
  std::optional<ReferenceTime> start;
  double at = 2;  // seconds after the start
  double fps = 60;
  double from = 0;
  double to = 0;
  bool settle = true;
  bool samples = false;
  std::optional<platform::players::Track> track;  // that seems to play
  bool verbose = false;

  /// How many frames the film has, both ends included; 0 without a film.
  [[nodiscard]] int frameCount() const;
};

[[nodiscard]] std::span<const Option> renderOptions();
/// What the words ask for, or what is wrong with them.
[[nodiscard]] Result<RenderRequest> parseRenderRequest(const Arguments& arguments);

}  // namespace pelmora::host
