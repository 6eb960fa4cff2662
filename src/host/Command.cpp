#include "host/Command.h"

#include <cstdio>
#include <string>
#include "host/Renderer.h"

namespace pelmora::host {

namespace {

constexpr Command kCommands[] = {
    {"window", "run the saver in a window", runWindow},
    {"render", "render the saver to picture files, without a display", runRender},
    {"settings", "open the settings: preview, folders, filter and look", runSettings},
    {"idle", "start the saver when the user is idle", runIdle},
    {"defaults", "read and write the preferences", runDefaults},
    {"check", "tell why a picture is shown or not", runCheck},
    {"match", "list the files that a filter admits", runMatch},
    {"sources", "list, add and remove picture folders", runSources},
    {"register", "add the saver to XScreenSaver's list", runRegister},
    {"unregister", "take the saver from XScreenSaver's list", runUnregister},
};

void printHelp() {
  std::puts(
      "usage: pelmora [OPTION]...\n"
      "       pelmora COMMAND [OPTION]...\n"
      "\n"
      "Shows a slowly changing pile of your photographs on every display until there is input.\n"
      "\n"
      "Commands (each has --help):");
  for (const Command& command : kCommands)
    std::printf("  %-10s %s\n", command.name, command.summary);
  std::puts(
      "\n"
      "Options:\n"
      "  --root                  draw for a saver host: in the window that it names in\n"
      "                          XSCREENSAVER_WINDOW, else on the root window\n"
      "  --window-id N           draw in this window of the X server\n"
      "  --renderer NAME         auto, gpu or software (default auto)\n"
      "  --no-layers             on Wayland, use ordinary full-screen windows\n"
      "  --verbose               write the log to standard error too\n"
      "  --help                  show this help\n"
      "  --version               show the version");
}

ExitStatus report(std::string_view command, std::string_view problem, const char* hint) {
  const std::string name = command.empty() ? "pelmora" : "pelmora " + std::string(command);
  std::fprintf(stderr, "%s: %.*s\n", name.c_str(), static_cast<int>(problem.size()),
               problem.data());
  if (hint) std::fprintf(stderr, "See '%s --help' %s\n", name.c_str(), hint);
  return ExitStatus::failure;
}

}  // namespace

ExitStatus badUsage(std::string_view command, std::string_view problem) {
  report(command, problem, "for what it understands.");
  return ExitStatus::badUsage;
}

ExitStatus failed(std::string_view command, std::string_view problem) {
  return report(command, problem, nullptr);
}

void note(std::string_view command, std::string_view text) {
  report(command, "note: " + std::string(text), nullptr);
}

ExitStatus runProgram(std::span<char*> words) {
  const std::string_view first = words.size() > 1 ? words[1] : "";
  if (first == "--help" || first == "-help" || first == "-h") {
    printHelp();
    return ExitStatus::success;
  }
  if (first == "--version" || first == "-version") {
    std::puts("pelmora " PELMORA_VERSION);
    return ExitStatus::success;
  }
  if (first == kProbeCommand) return probeGraphics();
  if (first.empty() || first.starts_with('-')) return runSaver(words);
  for (const Command& command : kCommands) {
    if (first == command.name) return command.run(words.subspan(1));
  }
  return badUsage("", "there is no command '" + std::string(first) + "'");
}

}  // namespace pelmora::host
