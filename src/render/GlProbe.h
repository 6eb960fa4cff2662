#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::render {

/// Whether a renderer, by the name that OpenGL gives it, draws with the processor. An empty name
/// stands for no OpenGL at all, which comes to the same.
[[nodiscard]] bool isSoftwareRenderer(std::string_view renderer);

/// What the probing process runs: makes an offscreen OpenGL context and prints the renderer's name,
/// one line, to standard output. The answer is the process's exit status: 0, or 1 without OpenGL.
/// A process of its own, since a broken driver may crash or hang, and since loading one costs 55 MB
/// that are of no use afterwards. Needs a QGuiApplication.
[[nodiscard]] int glProbeMain();

/// Runs a program that ends in `glProbeMain` and reads the renderer's name; nullopt when it fails
/// or takes longer than `timeLimit` seconds, after which it is killed. Blocks.
[[nodiscard]] std::optional<std::string> probeRenderer(const std::string& program,
                                                       const std::vector<std::string>& arguments,
                                                       double timeLimit = 2);

}  // namespace pelmora::render
