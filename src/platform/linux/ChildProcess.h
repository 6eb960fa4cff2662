#pragma once

#include "platform/FileDescriptor.h"
#include "shared/FilePath.h"
#include "shared/Result.h"

#include <sys/types.h>

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::platform {

/// Ended processes that the kernel still holds on to, such as one that reads from a network disk
/// which is gone. They are forgotten when they are through; nobody ever waits for them.
/// Thread: any. Lock: `_mutex`.
class LateChildren {
 public:
  LateChildren() = default;
  ~LateChildren() { collect(); }
  LateChildren(const LateChildren&) = delete;
  LateChildren& operator=(const LateChildren&) = delete;

  void add(FileDescriptor process);
  /// Lets go of those that are through; gives back how many are not.
  std::size_t collect();

 private:
  std::mutex _mutex;  // guards all below
  std::vector<FileDescriptor> _processes;
};

/// A program that runs beside ours and has nothing of it but one end of a socket that keeps
/// messages whole, at `kDecoderSocket`: no other descriptor, next to no environment, no signal
/// mask. It is ended with this. Thread: one at a time. Owns: the process and our end of the socket.
class ChildProcess {
 public:
  /// `late` outlives it. Errors: why the program cannot be run.
  [[nodiscard]] static Result<ChildProcess> start(const FilePath& program, LateChildren& late);

  ChildProcess(ChildProcess&&) noexcept = default;
  ChildProcess& operator=(ChildProcess&&) = delete;
  ~ChildProcess();

  [[nodiscard]] int socket() const { return _socket.get(); }
  [[nodiscard]] pid_t id() const { return _id; }
  /// Waits for its end, at most so long, and then ends it; gives back the status of its process, or
  /// nullopt where it had to be ended or nobody knows. Then only the destructor is left to call.
  std::optional<int> end(std::chrono::milliseconds patience);

 private:
  ChildProcess(pid_t id, FileDescriptor process, FileDescriptor socket, LateChildren& late)
      : _id(id), _process(std::move(process)), _socket(std::move(socket)), _late(late) {}

  pid_t _id;
  FileDescriptor _process;  // refers to it even if its number were given to another
  FileDescriptor _socket;
  LateChildren& _late;
};

/// What the status of an ended process means: "crashed (Segmentation fault)", "ended (status 1)".
[[nodiscard]] std::string describeEnd(int status);

}  // namespace pelmora::platform
