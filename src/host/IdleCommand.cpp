#include "host/Command.h"
#include "host/EndingSignals.h"
#include "host/IdleRun.h"
#include "host/Options.h"
#include "host/ParseValues.h"
#include "idle/InstanceLock.h"
#include "platform/linux/XdgBaseFolders.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

namespace pelmora::host {

namespace {

constexpr std::int64_t kLongestDelay = 32'767;  // seconds: X servers count no further

constexpr Option kOptions[] = {
    {"delay", "SECONDS", "how long there is no input before it starts (default 600)"},
    {"not-on-battery", nullptr, "do not start it while the computer runs on its battery"},
    {"verbose", nullptr, "write the log to standard error too"},
    {"help", nullptr, "show this help"},
};

void printHelp() {
  std::printf(
      "usage: pelmora idle [OPTION]... [-- SAVEROPTION]...\n\n"
      "Starts the saver when there has been no input for a while and ends it on activity.\n"
      "Programs that keep screen savers away, such as players of films, are heeded. What stands\n"
      "behind -- goes to the saver.\n\n%s",
      describeOptions(kOptions).c_str());
}

Result<IdleRequest> parseRequest(const Arguments& arguments) {
  IdleRequest request{.delay = std::chrono::seconds(600),
                      .notOnBattery = arguments.has("not-on-battery"),
                      .isVerbose = arguments.has("verbose"),
                      .saverArguments = {}};
  if (const auto text = arguments.value("delay")) {
    const Result<std::int64_t> seconds = parseInteger(*text);
    if (!seconds || *seconds < 1 || *seconds > kLongestDelay) {
      return Error{"--delay is a number of seconds from 1 to " + std::to_string(kLongestDelay) +
                   ", not '" + *text + "'"};
    }
    request.delay = std::chrono::seconds(*seconds);
  }
  return request;
}

/// What names the display among those of the user.
std::string displayName(const platform::Environment& environment) {
  const std::string wayland = environment("WAYLAND_DISPLAY").value_or("");
  return wayland.empty() ? environment("DISPLAY").value_or("") : wayland;
}

/// This program's own file, by its name: after an update that is the new one.
std::string ownProgram() {
  const std::string link = "/proc/self/exe";
  std::error_code problem;
  const std::string path = std::filesystem::read_symlink(link, problem).string();
  // A process is started by a name in Unicode, or by the link.
  const bool isUnicode = QFile::decodeName(path.c_str()).toUtf8().toStdString() == path;
  return problem || !isUnicode ? link : path;
}

ExitStatus watch(IdleRequest request) {
  const platform::Environment environment = platform::processEnvironment();
  Result<IdleDisplays> displays = IdleDisplays::open();
  if (!displays) return failed("idle", displays.error().message);
  std::optional<idle::InstanceLock> lock;
  if (const auto folder = environment("XDG_RUNTIME_DIR")) {
    auto taken = idle::InstanceLock::take(*folder, displayName(environment));
    if (!taken) return failed("idle", taken.error().message);
    lock = std::move(*taken);
  } else {
    note("idle", "XDG_RUNTIME_DIR is not set: a second one would not be noticed");
  }
  prepareSignals();
  int count = 1;
  char program[] = "pelmora";
  char* words[] = {program, nullptr};
  const QCoreApplication application(count, words);
  IdleRun run(std::move(request), std::move(*displays), ownProgram());
  const Status outcome = run.exec();
  return outcome ? ExitStatus::success : failed("idle", outcome.error().message);
}

}  // namespace

ExitStatus runIdle(std::span<char*> words) {
  const auto isSeparator = [](const char* word) { return std::string_view(word) == "--"; };
  const auto separator = std::find_if(words.begin(), words.end(), isSeparator);
  const auto ownCount = static_cast<std::size_t>(separator - words.begin());
  const Result<Arguments> arguments = parseArguments(kOptions, words.first(ownCount));
  if (!arguments) return badUsage("idle", arguments.error().message);
  if (arguments->has("help")) {
    printHelp();
    return ExitStatus::success;
  }
  if (!arguments->positional().empty()) {
    return badUsage("idle", "'" + arguments->positional().front() +
                                "' is one word too many; options for the saver stand behind --");
  }
  Result<IdleRequest> request = parseRequest(*arguments);
  if (!request) return badUsage("idle", request.error().message);
  if (separator != words.end()) {
    // From the separator on, which stands where the saver's own name does.
    if (const Status known = checkSaverWords(words.subspan(ownCount)); !known) {
      return badUsage("idle", "for the saver: " + known.error().message);
    }
    request->saverArguments.assign(separator + 1, words.end());
  }
  return watch(std::move(*request));
}

}  // namespace pelmora::host
