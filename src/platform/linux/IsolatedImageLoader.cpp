#include "platform/linux/IsolatedImageLoader.h"

#include "platform/linux/DecoderProcess.h"
#include "platform/linux/PatientFiles.h"
#include "platform/SystemError.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace pelmora::platform {

namespace {

constexpr std::size_t kMaxIdle = 2;
constexpr std::int64_t kGigabyte = 1'000'000'000;
constexpr std::int64_t kMaxFileBytes = 4 * kGigabyte;

Error tooLarge(std::int64_t bytes) {
  std::array<char, 96> text{};
  const std::int64_t tenths = (bytes + kGigabyte / 10 - 1) / (kGigabyte / 10);  // rounded up
  std::snprintf(text.data(), text.size(), "it is %lld.%lld GB, and no more than %lld GB are read",
                static_cast<long long>(tenths / 10), static_cast<long long>(tenths % 10),
                static_cast<long long>(kMaxFileBytes / kGigabyte));
  return Error{text.data()};
}

struct Opened {
  Result<FileDescriptor> file;
  bool isForWantOfMeans = false;  // that it could not be opened: no other could either
};

bool isWantOfMeans(int error) { return error == EMFILE || error == ENFILE || error == ENOMEM; }

Opened openPicture(const FilePath& file) {
  // Without O_NONBLOCK, opening a named pipe would wait for its writer.
  FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (!descriptor.isOpen()) {
    const int error = errno;
    return {Error{"it cannot be opened: " + systemErrorText(error)}, isWantOfMeans(error)};
  }
  struct stat facts {};
  if (fstat(descriptor.get(), &facts) != 0) return {Error{"it cannot be examined"}};
  if (!S_ISREG(facts.st_mode)) return {Error{"it is not a file"}};
  if (facts.st_size == 0) return {Error{"it is empty"}};
  if (facts.st_size > kMaxFileBytes) return {tooLarge(facts.st_size)};
  return {std::move(descriptor)};
}

}  // namespace

struct IsolatedImageLoader::State {
  explicit State(Settings chosen) : settings(std::move(chosen)) {}

  std::optional<DecoderProcess> takeIdle();
  void keepIdle(DecoderProcess decoder);
  Result<DecoderProcess> start();
  DecoderProcess::Attempt ask(DecoderProcess decoder, int descriptor, int longestSide,
                              const Deadline& until);
  Result<InspectedPicture> askUntilTaken(int descriptor, int longestSide);
  Result<InspectedPicture> askUntil(int descriptor, int longestSide, const Deadline& until);

  const Settings settings;
  LateChildren late;
  std::mutex mutex;                  // guards all below
  std::vector<DecoderProcess> idle;  // the last one was used last
  std::vector<const Deadline*> waiting;
  bool isGivenUp = false;
  std::atomic<bool> isAtWork = true;

  void beginToWait(const Deadline& until);
  bool endToWait(const Deadline& until);
};

/// Keeps the deadline of a load where it can be brought forward.
void IsolatedImageLoader::State::beginToWait(const Deadline& until) {
  const std::lock_guard lock(mutex);
  waiting.push_back(&until);
  if (isGivenUp) until.endNow();
}

/// False when the load was given up.
bool IsolatedImageLoader::State::endToWait(const Deadline& until) {
  const std::lock_guard lock(mutex);
  std::erase(waiting, &until);
  return !isGivenUp;
}

std::optional<DecoderProcess> IsolatedImageLoader::State::takeIdle() {
  const std::lock_guard lock(mutex);
  if (idle.empty()) return std::nullopt;
  std::optional<DecoderProcess> last = std::move(idle.back());
  idle.pop_back();
  return last;
}

void IsolatedImageLoader::State::keepIdle(DecoderProcess decoder) {
  const std::lock_guard lock(mutex);
  if (idle.size() < kMaxIdle) idle.push_back(std::move(decoder));
}

Result<DecoderProcess> IsolatedImageLoader::State::start() {
  return DecoderProcess::start(settings.program, settings.deadline, late);
}

DecoderProcess::Attempt IsolatedImageLoader::State::ask(DecoderProcess decoder, int descriptor,
                                                        int longestSide, const Deadline& until) {
  DecoderProcess::Attempt attempt = decoder.request(descriptor, longestSide, until);
  if (decoder.isAlive()) keepIdle(std::move(decoder));
  return attempt;
}

Result<InspectedPicture> IsolatedImageLoader::State::askUntilTaken(int descriptor,
                                                                   int longestSide) {
  const Deadline until(settings.deadline);
  beginToWait(until);
  Result<InspectedPicture> picture = askUntil(descriptor, longestSide, until);
  if (!endToWait(until) && !picture) return Error{"its loading was given up"};
  return picture;
}

/// Idle decoders may have been ended by anybody meanwhile; one that was just started has no excuse.
Result<InspectedPicture> IsolatedImageLoader::State::askUntil(int descriptor, int longestSide,
                                                              const Deadline& until) {
  while (std::optional<DecoderProcess> decoder = takeIdle()) {
    auto attempt = ask(*std::move(decoder), descriptor, longestSide, until);
    if (attempt.wasTaken) {
      isAtWork = true;
      return std::move(attempt.picture);
    }
    if (until.isOver()) return tookTooLong(settings.deadline);
  }
  Result<DecoderProcess> decoder = start();
  isAtWork = decoder.ok();
  if (!decoder) return decoder.error();
  auto attempt = ask(*std::move(decoder), descriptor, longestSide, until);
  isAtWork = attempt.wasTaken;
  return std::move(attempt.picture);
}

IsolatedImageLoader::IsolatedImageLoader(Settings settings)
    : _state(std::make_unique<State>(std::move(settings))) {}

IsolatedImageLoader::~IsolatedImageLoader() = default;

Result<Image> IsolatedImageLoader::load(const FilePath& file, int longestSide) {
  Result<InspectedPicture> inspected = inspect(file, longestSide);
  if (!inspected) return inspected.error();
  return std::move(inspected->image);
}

Result<InspectedPicture> IsolatedImageLoader::inspect(const FilePath& file, int longestSide) {
  const PatientFiles* files = _state->settings.files;
  const auto answer = files ? files->wait(file, [file] { return openPicture(file); })
                            : std::optional(openPicture(file));
  if (!answer) return Error{"its disk does not answer"};
  const Result<FileDescriptor>& opened = answer->file;
  if (answer->isForWantOfMeans) _state->isAtWork = false;
  if (!opened) return opened.error();
  return _state->askUntilTaken(opened->get(), longestSide);
}

bool IsolatedImageLoader::isAtWork() const { return _state->isAtWork; }

void IsolatedImageLoader::giveUp() {
  const std::lock_guard lock(_state->mutex);
  _state->isGivenUp = true;
  for (const Deadline* deadline : _state->waiting) deadline->endNow();
}

}  // namespace pelmora::platform
