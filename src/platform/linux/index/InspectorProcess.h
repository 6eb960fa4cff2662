#pragma once

#include "platform/linux/ChildProcess.h"
#include "platform/linux/index/EmbeddedMetadata.h"
#include "shared/Result.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace pelmora::platform {

/// One inspector at work: files are asked for ahead, and answered in the same order. It is ended as
/// soon as it breaks the protocol, takes too long or says that it is leaving; then what was asked
/// ahead of it is lost. Thread: one at a time. Owns the process. Errors: one short line for a
/// person.
class InspectorProcess {
 public:
  /// `deadline` is for each file; for the first, with the greeting. `late` outlives it.
  [[nodiscard]] static Result<InspectorProcess> start(const FilePath& program,
                                                      std::chrono::milliseconds deadline,
                                                      LateChildren& late);

  /// Asks for the file that `descriptor` is open on. Gives back an error number, or 0.
  [[nodiscard]] int ask(int descriptor);
  /// How many files were asked for and are not answered yet.
  [[nodiscard]] std::size_t ahead() const { return _asked - _answered; }

  struct Answer {
    /// False where it ended before it was ready or was asked for anything: no file has a part in
    /// it.
    bool wasTaken = true;
    EmbeddedMetadata metadata;
  };
  /// Waits for the answer to the first of the files that are not answered yet.
  [[nodiscard]] Answer next();

  /// Whether it can be asked again.
  [[nodiscard]] bool isAlive() const { return _child.has_value(); }
  /// Whether it has ended while it was asked for nothing.
  [[nodiscard]] bool hasEnded() const;

 private:
  InspectorProcess(ChildProcess child, std::chrono::milliseconds deadline)
      : _child(std::move(child)), _deadline(deadline) {}

  Answer reply();
  [[nodiscard]] const char* atWork() const;
  Answer endWith(EmbeddedMetadata problem);
  EmbeddedMetadata endOfItself();

  std::optional<ChildProcess> _child;
  std::chrono::milliseconds _deadline;
  bool _hasGreeted = false;
  std::uint32_t _asked = 0;  // the serial number of the last file that was asked for
  std::uint32_t _answered = 0;
};

}  // namespace pelmora::platform
