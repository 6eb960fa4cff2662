#include "host/Command.h"
#include "host/DisplayCheck.h"
#include "host/EndingLimit.h"
#include "host/EndingSignals.h"
#include "host/Options.h"
#include "host/PortalFolderChooser.h"
#include "host/SettingsWindow.h"
#include "host/Translations.h"

#include <QApplication>

#include <cstdio>
#include <optional>

namespace pelmora::host {

namespace {

constexpr Option kOptions[] = {
    {"verbose", nullptr, "write the log to standard error too"},
    {"help", nullptr, "show this help"},
};

}  // namespace

ExitStatus runSettings(std::span<char*> words) {
  const Result<Arguments> arguments = parseArguments(kOptions, words);
  if (!arguments) return badUsage("settings", arguments.error().message);
  if (arguments->has("help")) {
    std::printf(
        "usage: pelmora settings [OPTION]...\n\n"
        "Opens the saver's settings: a preview, and the options for folders, filter and look.\n\n"
        "%s",
        describeOptions(kOptions).c_str());
    return ExitStatus::success;
  }
  if (!arguments->positional().empty()) {
    return badUsage("settings", "'" + arguments->positional().front() + "' is one word too many");
  }
  if (const Status display = checkDisplay(); !display) {
    return failed("settings", display.error().message);
  }
  prepareSignals();
  int count = 1;
  char program[] = "pelmora";
  char* pointers[] = {program, nullptr};
  const QApplication application(count, pointers);
  QApplication::setApplicationName("pelmora");
  QApplication::setDesktopFileName("pelmora-settings");
  const Translations translations;
  const EndingSignals endingSignals([] { QApplication::quit(); });
  PortalFolderChooser chooser;
  std::optional<EndingLimit> limit;  // outlives the window
  SettingsWindow window(chooser, arguments->has("verbose"));
  QObject::connect(&window, &QDialog::finished, &application, [] { QApplication::quit(); });
  window.show();
  const int status = QApplication::exec();
  limit.emplace();
  return status == 0 ? ExitStatus::success : ExitStatus::failure;
}

}  // namespace pelmora::host
