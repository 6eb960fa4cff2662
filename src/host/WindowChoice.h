#pragma once

#include "host/WindowId.h"
#include "shared/Result.h"

#include <optional>
#include <string>

namespace pelmora::host {

/// Where a run of the saver draws.
struct WindowChoice {
  enum class Place { displays, root, window };

  Place place = Place::displays;
  WindowId window = 0;  // for Place::window
  std::string note{};   // what a person should know of the choice; may be empty
  bool operator==(const WindowChoice&) const = default;
};

/// What a saver host says on the command line and in the environment.
struct WindowWishes {
  bool root = false;                          // --root
  std::optional<std::string> windowOption{};  // --window-id
  std::optional<std::string> variable{};      // XSCREENSAVER_WINDOW
  bool hasXServer = false;
  bool hasRootWindow = false;  // one that is seen
};

/// Decides where to draw. The option is a person's word and must be right; the variable is set by
/// hosts, not all of which have an X window to name, and what is no window is left out of account.
[[nodiscard]] Result<WindowChoice> chooseWindow(const WindowWishes& wishes);

}  // namespace pelmora::host
