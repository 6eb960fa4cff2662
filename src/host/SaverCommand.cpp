#include "host/Command.h"
#include "host/DisplayCheck.h"
#include "host/EndingSignals.h"
#include "host/LiveSaver.h"
#include "host/Options.h"
#include "host/ParseValues.h"
#include "wayland/QtHandles.h"

#include <QGuiApplication>

#include <cstdio>

namespace pelmora::host {

namespace {

constexpr Option kSaverOptions[] = {
    {"renderer", "NAME", "auto, gpu or software (default auto)"},
    {"no-layers", nullptr, "on Wayland, use ordinary full-screen windows"},
    {"verbose", nullptr, "write the log to standard error too"},
};

constexpr Option kWindowOptions[] = {
    {"size", "WxH", "the window's size in points (default 1280x720, preview 400x300)"},
    {"preview", nullptr, "run as the small preview"},
    {"renderer", "NAME", "auto, gpu or software (default auto)"},
    {"verbose", nullptr, "write the log to standard error too"},
    {"help", nullptr, "show this help"},
};

struct WindowRequest {
  Size size{1280, 720};
  bool isPreview = false;
};

Result<WindowRequest> parseWindowRequest(const Arguments& arguments) {
  WindowRequest request;
  request.isPreview = arguments.has("preview");
  if (request.isPreview) request.size = {400, 300};
  if (const auto size = arguments.value("size")) {
    const Result<Size> parsed = parseSize(*size);
    if (!parsed) return parsed.error();
    request.size = *parsed;
  }
  return request;
}

/// What both commands have in common: `show` opens the windows.
template <typename Show>
ExitStatus runLive(const char* command, const Arguments& arguments, InputWatcher::Ends ends,
                   const Show& show) {
  if (!arguments.positional().empty()) {
    return badUsage(command, "'" + arguments.positional().front() + "' is one word too many");
  }
  const std::string name = arguments.value("renderer").value_or("auto");
  if (!isRendererName(name)) return badUsage(command, "--renderer is auto, gpu or software");
  if (const Status display = checkDisplay(); !display) {
    return failed(command, display.error().message);
  }
  const Renderer renderer = chooseRenderer(name);
  blockEndingSignals();
  wayland::allowBareSurfaces();
  int count = 1;
  char program[] = "pelmora";
  char* words[] = {program, nullptr};
  const QGuiApplication application(count, words);
  LiveSaver saver(renderer, ends, arguments.has("verbose"));
  show(saver);
  return saver.exec() == 0 ? ExitStatus::success : ExitStatus::failure;
}

}  // namespace

ExitStatus runSaver(std::span<char*> words) {
  const Result<Arguments> arguments = parseArguments(kSaverOptions, words);
  if (!arguments) return badUsage("", arguments.error().message);
  const auto layers = arguments->has("no-layers") ? DisplayCover::Layers::never
                                                  : DisplayCover::Layers::wherePossible;
  preferWayland();
  return runLive("", *arguments, InputWatcher::Ends::any,
                 [layers](LiveSaver& saver) { saver.coverDisplays(layers); });
}

ExitStatus runWindow(std::span<char*> words) {
  const Result<Arguments> arguments = parseArguments(kWindowOptions, words);
  if (!arguments) return badUsage("window", arguments.error().message);
  if (arguments->has("help")) {
    std::printf(
        "usage: pelmora window [OPTION]...\n\nRuns the saver in a window until it is closed "
        "or Escape is pressed.\n\n%s",
        describeOptions(kWindowOptions).c_str());
    return ExitStatus::success;
  }
  const Result<WindowRequest> request = parseWindowRequest(*arguments);
  if (!request) return badUsage("window", request.error().message);
  return runLive("window", *arguments, InputWatcher::Ends::escape, [&request](LiveSaver& saver) {
    saver.openWindow(request->size, request->isPreview);
  });
}

}  // namespace pelmora::host
