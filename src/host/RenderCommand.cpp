#include "host/RenderCommand.h"

#include "host/Command.h"
#include "host/ParseValues.h"
#include "host/QtDisplays.h"
#include "host/RenderRun.h"

#include <cstdio>

namespace pelmora::host {

namespace {

constexpr Option kOptions[] = {
    {"out", "F.png", "write the picture there"},
    {"layers", "F.json", "write what every view shows there"},
    {"frames", "DIR", "write the frames of a film there"},
    {"size", "WxH", "the display's size in points (default 1920x1080)"},
    {"scale", "S", "device pixels in a point (default 1)"},
    {"displays", "LIST", "several displays: 1920x1080+0+0,1280x1024+1920+0"},
    {"screen", "N", "which display's view is written, from 1 (default 1)"},
    {"preview", nullptr, "write the small preview instead (400x300 unless --size says)"},
    {"start", "TIME", "local time at the start: 2026-11-21T12:00:00 (default: now)"},
    {"at", "SECONDS", "the moment to show, after the start (default 2)"},
    {"fps", "N", "frames of a film in a second (default 60)"},
    {"from", "SECONDS", "where a film begins (default 0)"},
    {"to", "SECONDS", "where a film ends (default: --at)"},
    {"no-settle", nullptr, "do not wait for the folders to be walked: no two runs are alike then"},
    {"samples", nullptr, "show painted sample pictures to a user who has none"},
    {"track", "TITLE",
     "what seems to play, for who has its label shown; also --artist and --album"},
    {"artist", "NAME", "who plays it"},
    {"album", "TITLE", "where it is from"},
    {"verbose", nullptr, "write the log to standard error too"},
    {"help", nullptr, "show this help"},
};

constexpr double kLongestRun = 366.0 * 86400;  // seconds
constexpr double kMostFramesASecond = 1000;
constexpr double kLargestScale = 8;
constexpr double kMostFrames = 1e6;  // what the digits of their names can tell apart

/// Reads an option's number into `number`, which stays as it is when the option was not given.
Status readNumber(const Arguments& arguments, const char* name, double least, double most,
                  double& number) {
  const auto text = arguments.value(name);
  if (!text) return Done{};
  const Result<double> parsed = parseNumber(*text);
  if (!parsed) return Error{"--" + std::string(name) + ": " + parsed.error().message};
  if (*parsed < least || *parsed > most) {
    return Error{"--" + std::string(name) + ": '" + *text + "' is out of range"};
  }
  number = *parsed;
  return Done{};
}

Status readNumbers(const Arguments& arguments, RenderRequest& request) {
  const double least = 1.0 / 64;
  if (auto status = readNumber(arguments, "scale", least, kLargestScale, request.scale); !status) {
    return status;
  }
  if (auto status = readNumber(arguments, "at", 0, kLongestRun, request.at); !status) return status;
  request.to = request.at;
  if (auto status = readNumber(arguments, "fps", least, kMostFramesASecond, request.fps); !status) {
    return status;
  }
  if (auto status = readNumber(arguments, "from", 0, kLongestRun, request.from); !status) {
    return status;
  }
  if (auto status = readNumber(arguments, "to", 0, kLongestRun, request.to); !status) return status;
  if (request.to < request.from) return Error{"--to is before --from"};
  if (!request.frames.empty() && (request.to - request.from) * request.fps >= kMostFrames) {
    return Error{"the film has more than a million frames"};
  }
  return Done{};
}

Result<std::vector<Rect>> readGeometries(const std::optional<std::string>& displays,
                                         const std::optional<std::string>& size) {
  if (displays && size) return Error{"--size and --displays exclude each other"};
  if (displays) return parseGeometries(*displays);
  if (!size) return std::vector<Rect>{{{0, 0}, {1920, 1080}}};
  const Result<Size> parsed = parseSize(*size);
  if (!parsed) return parsed.error();
  return std::vector<Rect>{{{0, 0}, *parsed}};
}

/// The size is the preview's where a preview is asked for, else the display's.
Status readDisplays(const Arguments& arguments, bool isPreview, RenderRequest& request) {
  const auto size = arguments.value("size");
  if (isPreview && size) {
    const Result<Size> parsed = parseSize(*size);
    if (!parsed) return parsed.error();
    request.previewSize = *parsed;
  }
  const Result<std::vector<Rect>> geometries =
      readGeometries(arguments.value("displays"), isPreview ? std::nullopt : size);
  if (!geometries) return geometries.error();
  for (const Rect& frame : flipped(*geometries)) {
    const std::uint64_t number = request.displays.size() + 1;
    request.displays.push_back({number, "Display " + std::to_string(number), frame, request.scale});
  }
  return Done{};
}

Status readTrack(const Arguments& arguments, RenderRequest& request) {
  if (const auto title = arguments.value("track")) {
    request.track = {
        .name = title, .artist = arguments.value("artist"), .album = arguments.value("album")};
    return Done{};
  }
  const bool isPart = arguments.has("artist") || arguments.has("album");
  return isPart ? Status(Error{"--artist and --album go with --track"}) : Status(Done{});
}

/// Which view is written: 0, the preview, or a display's.
Result<std::int64_t> readScreen(const Arguments& arguments) {
  const auto text = arguments.value("screen");
  if (text && arguments.has("preview")) return Error{"--screen and --preview exclude each other"};
  if (!text) return arguments.has("preview") ? 0 : 1;
  Result<std::int64_t> number = parseInteger(*text);
  if (!number) return Error{"--screen: " + number.error().message};
  return number;
}

}  // namespace

int RenderRequest::frameCount() const {
  // From 0 to 0.3 there are four at 10 a second, though 0.3 × 10 is a little less than 3.
  constexpr double kRounding = 1e-6;
  return frames.empty() ? 0 : static_cast<int>((to - from) * fps + kRounding) + 1;
}

std::span<const Option> renderOptions() { return kOptions; }

Result<RenderRequest> parseRenderRequest(const Arguments& arguments) {
  RenderRequest request;
  if (!arguments.positional().empty()) {
    return Error{"'" + arguments.positional().front() + "' is one word too many"};
  }
  request.out = arguments.value("out").value_or("");
  request.frames = arguments.value("frames").value_or("");
  request.layers = arguments.value("layers").value_or("");
  if (request.out.empty() && request.frames.empty() && request.layers.empty()) {
    return Error{"nothing is asked for: give --out, --frames or --layers"};
  }
  request.settle = !arguments.has("no-settle");
  request.samples = arguments.has("samples");
  request.verbose = arguments.has("verbose");
  if (auto status = readNumbers(arguments, request); !status) return status.error();
  if (auto status = readTrack(arguments, request); !status) return status.error();
  const Result<std::int64_t> screen = readScreen(arguments);
  if (!screen) return screen.error();
  if (auto status = readDisplays(arguments, *screen == 0, request); !status) return status.error();
  if (*screen < 0 || *screen > static_cast<std::int64_t>(request.displays.size())) {
    return Error{"--screen: there is no screen " + std::to_string(*screen)};
  }
  request.screen = static_cast<std::size_t>(*screen);
  if (const auto start = arguments.value("start")) {
    const Result<ReferenceTime> parsed = parseLocalTime(*start);
    if (!parsed) return Error{"--start: " + parsed.error().message};
    request.start = *parsed;
  }
  return request;
}

ExitStatus runRender(std::span<char*> words) {
  const Result<Arguments> arguments = parseArguments(kOptions, words);
  if (!arguments) return badUsage("render", arguments.error().message);
  if (arguments->has("help")) {
    std::printf(
        "usage: pelmora render --out F.png [OPTION]...\n\n"
        "Renders the saver without a display: the same command gives the same bytes.\n\n%s",
        describeOptions(kOptions).c_str());
    return ExitStatus::success;
  }
  const Result<RenderRequest> request = parseRenderRequest(*arguments);
  if (!request) return badUsage("render", request.error().message);
  const Status done = renderPictures(*request);
  return done ? ExitStatus::success : failed("render", done.error().message);
}

}  // namespace pelmora::host
