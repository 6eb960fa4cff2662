#include "host/Command.h"
#include "host/DecoderPath.h"
#include "host/GivenPath.h"
#include "host/Options.h"
#include "host/XScreenSaverEntry.h"
#include "host/XScreenSaverFile.h"
#include "platform/AtomicFile.h"
#include "platform/FileContents.h"
#include "platform/linux/XdgBaseFolders.h"
#include "platform/PrintableLine.h"

#include <sys/stat.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace pelmora::host {

namespace {

constexpr std::string_view kProgram = "pelmora";
constexpr std::size_t kLargestFile = 1 << 20;  // bytes

constexpr Option kRegisterOptions[] = {
    {"select", nullptr, "have XScreenSaver show this saver, and no other"},
    {"file", "F", "the file to change (default ~/.xscreensaver)"},
    {"help", nullptr, "show this help"},
};
constexpr std::span kUnregisterOptions = std::span(kRegisterOptions).subspan(1);

struct Texts {
  const char* command;
  std::span<const Option> options;
  const char* help;
};

constexpr Texts kRegister = {
    "register", kRegisterOptions,
    "usage: pelmora register [--select] [--file F]\n\n"
    "Adds this saver to the user's list of those that XScreenSaver shows.\n\n"};
constexpr Texts kUnregister = {"unregister", kUnregisterOptions,
                               "usage: pelmora unregister [--file F]\n\n"
                               "Takes this saver from the user's list of those that XScreenSaver "
                               "shows.\n\n"};

/// A file as a person may read of it, and its text.
struct Opened {
  FilePath path;
  std::string shown;
  XScreenSaverFile file;
  struct stat facts;  // zero where there is none
};

/// Whether another program has written the file since.
bool hasChanged(const Opened& opened) {
  struct stat now {};
  ::stat(opened.path.c_str(), &now);
  const struct stat& then = opened.facts;
  return now.st_ino != then.st_ino || now.st_size != then.st_size ||
         now.st_mtim.tv_sec != then.st_mtim.tv_sec || now.st_mtim.tv_nsec != then.st_mtim.tv_nsec;
}

Result<FilePath> pathOf(const Arguments& arguments) {
  if (const auto given = arguments.value("file")) return GivenPath(*given).absolute();
  const auto home = platform::homeFolder(platform::processEnvironment());
  if (!home) return Error{"HOME names no folder; --file says which file to change"};
  return *home / ".xscreensaver";
}

Result<Opened> open(const Arguments& arguments) {
  const Result<FilePath> path = pathOf(arguments);
  if (!path) return path.error();
  const std::string shown = platform::printableLine(path->bytes());
  std::string text;
  struct stat facts {};
  ::stat(path->c_str(), &facts);
  struct stat link {};
  if (::lstat(path->c_str(), &link) == 0 || errno != ENOENT) {
    const auto contents = platform::FileContents::read(*path, kLargestFile);
    if (!contents) return contents.error();
    text.assign(contents->bytes().begin(), contents->bytes().end());
  }
  Result<XScreenSaverFile> file = XScreenSaverFile::parse(std::move(text));
  if (!file) return Error{shown + " is left as it is: " + file.error().message};
  return Opened{*path, shown, std::move(file).value(), facts};
}

/// Says what was done once it is, or why not.
ExitStatus save(const Texts& texts, const Opened& opened, const std::string& before,
                const std::string& report) {
  const std::string& text = opened.file.text();
  if (text != before) {
    if (hasChanged(opened)) {
      return failed(texts.command, opened.shown + " was changed meanwhile by another program");
    }
    platform::sweepTemporaryFiles(opened.path);
    const Status saved = platform::replaceContents(
        opened.path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    if (!saved) return failed(texts.command, saved.error().message);
  }
  std::printf("%s\n", report.c_str());
  return ExitStatus::success;
}

/// The position of the entry, which is made or switched on where it has to be; says so in `report`.
Result<std::size_t> enter(Opened& opened, std::string& report) {
  if (const auto position = opened.file.find(kProgram)) {
    const bool wasOff = opened.file.isSwitchedOff(*position);
    opened.file.switchOn(*position);
    report = wasOff ? "Switched it on in " + opened.shown + "."
                    : "It is in " + opened.shown + " already.";
    return *position;
  }
  const char* searchPath = std::getenv("PATH");
  const Result<std::string> entry =
      entryFor(runningProgram(), programFolders(searchPath != nullptr ? searchPath : ""));
  if (!entry) return entry.error();
  opened.file.add(*entry);
  report = "Added '" + *entry + "' to " + opened.shown + ".";
  return opened.file.find(kProgram).value_or(0);
}

ExitStatus enterAndSave(const Texts& texts, const Arguments& arguments) {
  Result<Opened> opened = open(arguments);
  if (!opened) return failed(texts.command, opened.error().message);
  const std::string before = opened->file.text();
  const bool isToSelect = arguments.has("select");
  if (!isToSelect && opened->file.selectsElsewhere()) {
    return failed(texts.command, opened->shown +
                                     " chooses a saver of XScreenSaver's own list by its number, "
                                     "which would become another's; --select chooses this one");
  }
  std::string report;
  const Result<std::size_t> position = enter(*opened, report);
  if (!position) return failed(texts.command, position.error().message);
  if (isToSelect) {
    const bool wasSelected = opened->file.isSelected(*position);
    opened->file.select(*position);
    report += wasSelected ? " It is the one that is shown already."
                          : " It is the one that is shown from now on.";
  }
  return save(texts, *opened, before, report);
}

ExitStatus removeAndSave(const Texts& texts, const Arguments& arguments) {
  Result<Opened> opened = open(arguments);
  if (!opened) return failed(texts.command, opened.error().message);
  const std::string before = opened->file.text();
  bool wasSelected = false;
  while (const auto position = opened->file.find(kProgram)) {
    wasSelected = wasSelected || opened->file.isSelected(*position);
    opened->file.remove(*position);
  }
  const bool wasThere = opened->file.text() != before;
  std::string report =
      wasThere ? "Removed it from " + opened->shown + "." : "It is not in " + opened->shown + ".";
  if (wasSelected) report += " XScreenSaver now chooses at random.";
  return save(texts, *opened, before, report);
}

ExitStatus run(const Texts& texts, std::span<char*> words,
               ExitStatus (*change)(const Texts&, const Arguments&)) {
  const Result<Arguments> arguments = parseArguments(texts.options, words);
  if (!arguments) return badUsage(texts.command, arguments.error().message);
  if (arguments->has("help")) {
    std::printf("%s%s", texts.help, describeOptions(texts.options).c_str());
    return ExitStatus::success;
  }
  if (!arguments->positional().empty()) {
    return badUsage(texts.command,
                    "'" + arguments->positional().front() + "' is one word too many");
  }
  return change(texts, *arguments);
}

}  // namespace

ExitStatus runRegister(std::span<char*> words) { return run(kRegister, words, enterAndSave); }

ExitStatus runUnregister(std::span<char*> words) { return run(kUnregister, words, removeAndSave); }

}  // namespace pelmora::host
