#pragma once

#include "platform/DecodeProtocol.h"
#include "platform/linux/ChildProcess.h"
#include "platform/linux/Deadline.h"
#include "platform/linux/DecodeReply.h"

#include <chrono>
#include <optional>

namespace pelmora::platform {

/// What is said of a picture that took longer.
[[nodiscard]] Error tookTooLong(std::chrono::milliseconds deadline);

/// One decoder at work: it is asked for a picture at a time, and ended as soon as it breaks the
/// protocol, takes too long, says that it is leaving, or has been asked some hundred times.
/// Thread: one at a time. Owns the process. Errors: one short line for a person.
class DecoderProcess {
 public:
  struct Attempt {
    /// False where the decoder had ended before it took the request: another one may be asked.
    bool wasTaken = true;
    Result<InspectedPicture> picture;
  };

  /// `deadline` is for each picture. `late` outlives it.
  [[nodiscard]] static Result<DecoderProcess> start(const FilePath& program,
                                                    std::chrono::milliseconds deadline,
                                                    LateChildren& late);

  /// Asks for the picture in the file that `descriptor` is open on, at its begin.
  [[nodiscard]] Attempt request(int descriptor, int longestSide);
  /// The same, where some of the time has passed already.
  [[nodiscard]] Attempt request(int descriptor, int longestSide, const Deadline& until);
  /// Whether it can be asked again.
  [[nodiscard]] bool isAlive() const { return _child.has_value(); }
  /// The number of its process, while it is alive.
  [[nodiscard]] pid_t id() const { return _child ? _child->id() : 0; }

 private:
  DecoderProcess(ChildProcess child, std::chrono::milliseconds deadline)
      : _child(std::move(child)), _deadline(deadline) {}

  [[nodiscard]] bool hasEnded() const;
  void limitAnswer(int longestSide) const;
  Attempt answer(const DecodeRequest& request, const Deadline& until);
  Attempt notTaken();
  Error endWithoutReply();
  Error describe(std::optional<int> status) const;

  std::optional<ChildProcess> _child;
  std::chrono::milliseconds _deadline;
  std::uint32_t _serial = 0;
};

}  // namespace pelmora::platform
