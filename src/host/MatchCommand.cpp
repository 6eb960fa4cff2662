#include "host/Command.h"
#include "host/DecoderPath.h"
#include "host/FilterNote.h"
#include "host/IndexFile.h"
#include "host/MatchRun.h"
#include "host/Options.h"
#include "platform/linux/index/MetadataIndex.h"
#include "platform/linux/index/MetadataInspector.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/SystemLog.h"
#include "platform/linux/XdgUserFolders.h"
#include "platform/predicate/PredicateText.h"

#include <unistd.h>

#include <cstdio>

namespace pelmora::host {

namespace {

constexpr Option kOptions[] = {
    {"0", nullptr, "end each path with a NUL byte, not with a line's end"},
    {"help", nullptr, "show this help"},
};

void printHelp() {
  std::printf(
      "usage: pelmora match [OPTION]... PREDICATE DIR...\n"
      "\n"
      "Lists the files in folders for which a predicate over their metadata holds, a path a line,\n"
      "sorted by the bytes of the paths. Folders are searched as the saver searches them. What is\n"
      "known of the files is kept, so that the next search is quick, and the saver's first one.\n"
      "\n"
      "  pelmora match 'kMDItemKeywords == \"beach\" AND kMDItemCity CONTAINS[cd] \"malmo\"' "
      "~/Pictures\n"
      "  pelmora match -0 'kMDItemUserTags == \"Best\"' . | xargs -0 cp -t /media/frame\n"
      "\n"
      "docs/filters.md tells what may stand in a predicate. It is taken at its word here; where "
      "the\n"
      "saver would take it otherwise as its filter, a note says so.\n"
      "The status is 1 when a folder cannot be read, and 2 when the predicate cannot.\n"
      "\n%s",
      describeOptions(kOptions).c_str());
}

/// How far the reading has come, in a line of the terminal that is written over.
class ProgressLine {
 public:
  void show(const platform::IndexProgress& progress) {
    if (!_isTerminal) return;
    _isShown = true;
    std::fprintf(stderr, "\r\033[K%zu files in %zu folders looked at, %zu folders to go",
                 progress.filesDone, progress.foldersDone, progress.foldersToDo);
  }
  void clear() {
    if (std::exchange(_isShown, false)) std::fputs("\r\033[K", stderr);
  }

 private:
  const bool _isTerminal = isatty(STDERR_FILENO) == 1;
  bool _isShown = false;
};

bool listMatches(const MatchRequest& request, char end) {
  const platform::SystemClock clock;
  platform::SystemLog log(platform::SystemLog::StandardError::always);
  const platform::PosixFiles files;
  const platform::XdgUserFolders userFolders(platform::processEnvironment());
  platform::NotificationCenter notifications;
  platform::MetadataInspector inspector({.program = inspectorPath()});
  platform::MetadataIndex metadata(
      {.files = files,
       .log = log,
       .clock = clock,
       .notifications = notifications,
       .inspect = [&](auto open, const auto& take) { return inspector.inspect(open, take); },
       .file = [&] { return indexFile(userFolders); }});
  ProgressLine line;
  const MatchTools tools{.files = files,
                         .metadata = metadata,
                         .notifications = notifications,
                         .tell =
                             [&](const std::string& path) {
                               line.clear();
                               std::fwrite(path.data(), 1, path.size(), stdout);
                               std::fputc(end, stdout);
                             },
                         .complain = [](const std::string& problem) { failed("match", problem); },
                         .progress = [&](const auto& progress) { line.show(progress); }};
  const bool isAllWell = MatchRun(request, tools).run();
  line.clear();
  return isAllWell;
}

Result<MatchRequest> parseMatchRequest(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.positional();
  if (words.empty()) return Error{"expected a predicate"};
  auto predicate = platform::predicate::parsePredicate(words.front());
  if (!predicate) return Error{"the predicate: " + predicate.error().message};
  if (words.size() == 1) return Error{"expected a folder"};
  MatchRequest request{.predicate = *std::move(predicate),
                       .folders = {words.begin() + 1, words.end()}};
  for (const std::string& folder : request.folders) {
    if (folder.empty()) return Error{"'' is not a folder's name"};
  }
  return request;
}

}  // namespace

ExitStatus runMatch(std::span<char*> words) {
  const Result<Arguments> arguments = parseArguments(kOptions, words);
  if (!arguments) return badUsage("match", arguments.error().message);
  if (arguments->has("help")) {
    printHelp();
    return ExitStatus::success;
  }
  const Result<MatchRequest> request = parseMatchRequest(*arguments);
  if (!request) return badUsage("match", request.error().message);
  if (const auto text = noteOnFilter(request->predicate)) note("match", *text);
  const bool isAllWell = listMatches(*request, arguments->has("0") ? '\0' : '\n');
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    return failed("match", "the paths could not be written");
  }
  return isAllWell ? ExitStatus::success : ExitStatus::failure;
}

}  // namespace pelmora::host
