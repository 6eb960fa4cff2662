#include "host/CheckCommand.h"

#include "host/Command.h"
#include "host/DecoderPath.h"
#include "host/ParseValues.h"
#include "host/UserPaths.h"
#include "platform/linux/index/EmbeddedTags.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/SystemLog.h"

#include <cstdio>
#include <filesystem>

namespace pelmora::host {

namespace {

constexpr int kUsualLongestSide = 1620;  // three quarters of the height of a 4K display
constexpr int kGreatestLongestSide = 16384;

constexpr Option kOptions[] = {
    {"size", "PX", "the longest side of the decoded picture, 1 to 16384 (default 1620)"},
    {"out", "DIR", "write what would be shown there as PNG, upright, in sRGB"},
    {"help", nullptr, "show this help"},
};

void printHelp() {
  std::printf(
      "usage: pelmora check [OPTION]... FILE|DIR...\n"
      "\n"
      "Tells why a picture is shown or not. Folders are searched as the saver searches them.\n"
      "For each file a line is written, with six parts after its name:\n"
      "\n"
      "  PATH: FORMAT, WIDTH × HEIGHT, orientation N, PROFILE, no tags, N ms\n"
      "  PATH: not shown: REASON\n"
      "\n"
      "Width and height are those of the upright picture, orientation is what the file says (1 to\n"
      "8), tags read 'tags A; B', and the time is what it took to get the picture (the first one's "
      "with\n"
      "the start of the decoder). A comma in a part is written as ';', and what cannot be printed\n"
      "as \\xNN.\n"
      "The status is 1 when a picture is not shown, a folder cannot be read or a file be written.\n"
      "\n"
      "With --out, each picture's file is its name with '.png', and with '-2.png', '-3.png' and "
      "so\n"
      "on where the name is taken in this run. Files of earlier runs are replaced. DIR is made if\n"
      "it is missing, is not searched, and cannot be a folder that pictures are read from.\n"
      "\n%s",
      describeOptions(kOptions).c_str());
}

void tell(const std::string& line) {
  std::puts(line.c_str());
  std::fflush(stdout);
}

bool checkPictures(const CheckRequest& request) {
  const platform::SystemClock clock;
  platform::SystemLog log(platform::SystemLog::StandardError::always);
  const platform::PosixFiles files;
  platform::EmbeddedTags embeddedTags(inspectorPath(), clock, log);
  const platform::LinuxWorkspace workspace(
      labelsPath(), log, [&](const FilePath& file) { return embeddedTags.read(file); });
  platform::IsolatedImageLoader images({.program = decoderPath()});
  const CheckTools tools{
      .clock = clock,
      .files = files,
      .workspace = workspace,
      .inspect = [&images](const FilePath& file, int side) { return images.inspect(file, side); },
      .tell = tell,
      .complain = [](const std::string& problem) { failed("check", problem); }};
  return CheckRun(request, tools).run();
}

}  // namespace

std::span<const Option> checkOptions() { return kOptions; }

Result<CheckRequest> parseCheckRequest(const Arguments& arguments) {
  CheckRequest request{.words = arguments.positional(), .longestSide = kUsualLongestSide};
  if (request.words.empty()) return Error{"expected a file or a folder"};
  for (const std::string& word : request.words) {
    if (word.empty()) return Error{"'' is not a file's name"};
  }
  if (const auto size = arguments.value("size")) {
    const Result<std::int64_t> side = parseInteger(*size);
    if (!side || *side < 1 || *side > kGreatestLongestSide) {
      return Error{"--size: expected a number of pixels, 1 to 16384"};
    }
    request.longestSide = static_cast<int>(*side);
  }
  if (const auto out = arguments.value("out")) {
    if (out->empty()) return Error{"--out: expected a folder"};
    std::error_code problem;
    const std::filesystem::path absolute = std::filesystem::absolute(*out, problem);
    if (problem) return Error{"--out: " + problem.message()};
    request.out = FilePath(absolute.string());
  }
  return request;
}

ExitStatus runCheck(std::span<char*> words) {
  const Result<Arguments> arguments = parseArguments(kOptions, words);
  if (!arguments) return badUsage("check", arguments.error().message);
  if (arguments->has("help")) {
    printHelp();
    return ExitStatus::success;
  }
  const Result<CheckRequest> request = parseCheckRequest(*arguments);
  if (!request) return badUsage("check", request.error().message);
  const bool isAllWell = checkPictures(*request);
  if (std::ferror(stdout) != 0) return failed("check", "the lines could not be written");
  return isAllWell ? ExitStatus::success : ExitStatus::failure;
}

}  // namespace pelmora::host
