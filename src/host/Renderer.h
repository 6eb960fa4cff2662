#pragma once

#include "host/Command.h"
#include "platform/Clock.h"
#include "render/PresenterWindow.h"

#include <memory>
#include <string_view>

namespace pelmora::host {

/// How frames are made: by the graphics processor, or by this one.
enum class Renderer { gpu, software };

/// "auto", "gpu" or "software".
[[nodiscard]] bool isRendererName(std::string_view name);
/// The renderer of that name; auto looks for a graphics processor, in a child process, since
/// looking costs a moment and memory that a machine without one should not keep paying for.
[[nodiscard]] Renderer chooseRenderer(std::string_view name);

/// A window that presents, not shown yet. Should the graphics processor fail it, that is said and
/// the event loop ends with a failure. Thread: GUI.
[[nodiscard]] std::unique_ptr<render::PresenterWindow> makePresenterWindow(Renderer renderer,
                                                                           platform::Clock& clock);

/// The child's part of the look, behind a word on the command line that nobody types.
inline constexpr std::string_view kProbeCommand = "probe-graphics";
[[nodiscard]] ExitStatus probeGraphics();

}  // namespace pelmora::host
