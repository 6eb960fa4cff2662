#include "host/Command.h"
#include "host/DisplayCheck.h"
#include "host/EndingSignals.h"
#include "host/LiveSaver.h"
#include "host/Options.h"
#include "host/ParseValues.h"
#include "host/WindowChoice.h"
#include "wayland/QtHandles.h"

#include <QGuiApplication>
#include <QIcon>

#include <cstdio>
#include <cstdlib>

namespace pelmora::host {

namespace {

constexpr Option kSaverOptions[] = {
    {"root", nullptr, "draw for a saver host"},
    {"window-id", "N", "draw in this window of the X server"},
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

std::string rendererName(const Arguments& arguments) {
  return arguments.value("renderer").value_or("auto");
}

Status checkLive(const Arguments& arguments) {
  if (!arguments.positional().empty()) {
    return Error{"'" + arguments.positional().front() + "' is one word too many"};
  }
  if (!isRendererName(rendererName(arguments))) {
    return Error{"--renderer is auto, gpu or software"};
  }
  return Done{};
}

/// What both commands have in common: `show` opens the windows.
template <typename Show>
ExitStatus runLive(const char* command, const Arguments& arguments, InputWatcher::Ends ends,
                   const Show& show) {
  if (const Status checked = checkLive(arguments); !checked) {
    return badUsage(command, checked.error().message);
  }
  const std::string name = rendererName(arguments);
  if (const Status display = checkDisplay(); !display) {
    return failed(command, display.error().message);
  }
  const Renderer renderer = chooseRenderer(name);
  prepareSignals();
  // A saver is no part of a session that is to be restored.
  QCoreApplication::setAttribute(Qt::AA_DisableSessionManager);
  wayland::allowBareSurfaces();
  int count = 1;
  char program[] = "pelmora";
  char* words[] = {program, nullptr};
  const QGuiApplication application(count, words);
  LiveSaver saver(renderer, ends, arguments.has("verbose"));
  show(saver);
  return saver.exec() == 0 ? ExitStatus::success : ExitStatus::failure;
}

WindowWishes wishesOf(const Arguments& arguments) {
  const char* variable = std::getenv("XSCREENSAVER_WINDOW");
  WindowWishes wishes{.root = arguments.has("root"),
                      .windowOption = arguments.value("window-id"),
                      .variable = std::nullopt};
  if (variable != nullptr) wishes.variable = variable;
  if (wishes.root || wishes.variable) {
    wishes.hasXServer = xServerAnswers();
    // The X server of a Wayland session shows nothing on its root window.
    wishes.hasRootWindow = wishes.hasXServer && !compositorAnswers();
  }
  return wishes;
}

Result<std::unique_ptr<ForeignWindow>> openWindow(const WindowChoice& choice) {
  if (choice.place == WindowChoice::Place::window) return ForeignWindow::open(choice.window);
  const Result<WindowId> root = ForeignWindow::root();
  if (!root) return root.error();
  return ForeignWindow::open(*root);
}

ExitStatus runInWindow(const Arguments& arguments, const WindowChoice& choice) {
  Result<std::unique_ptr<ForeignWindow>> window = openWindow(choice);
  if (!window) return failed("", window.error().message);
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  return runLive("", arguments, InputWatcher::Ends::none, [&window](LiveSaver& saver) {
    if ((*window)->isRoot()) return saver.drawOnRoot();
    saver.drawInto(std::move(*window));
  });
}

}  // namespace

ExitStatus runSaver(std::span<char*> words) {
  const Result<Arguments> arguments = parseArguments(kSaverOptions, words);
  if (!arguments) return badUsage("", arguments.error().message);
  const Result<WindowChoice> choice = chooseWindow(wishesOf(*arguments));
  if (!choice) return badUsage("", choice.error().message);
  if (!choice->note.empty()) note("", choice->note);
  if (choice->place != WindowChoice::Place::displays) return runInWindow(*arguments, *choice);
  const auto layers = arguments->has("no-layers") ? DisplayCover::Layers::never
                                                  : DisplayCover::Layers::wherePossible;
  preferWayland();
  return runLive("", *arguments, InputWatcher::Ends::any,
                 [layers](LiveSaver& saver) { saver.coverDisplays(layers); });
}

Status checkSaverWords(std::span<char*> words) {
  const Result<Arguments> arguments = parseArguments(kSaverOptions, words);
  return arguments ? checkLive(*arguments) : Status(arguments.error());
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
    QGuiApplication::setDesktopFileName("pelmora-settings");
    QGuiApplication::setWindowIcon(QIcon::fromTheme("pelmora"));
    saver.openWindow(request->size, request->isPreview);
  });
}

}  // namespace pelmora::host
