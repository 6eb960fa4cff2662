#pragma once

#include "platform/FileDescriptor.h"
#include "platform/linux/index/EmbeddedMetadata.h"
#include "shared/FilePath.h"
#include "shared/Result.h"

#include <chrono>
#include <functional>
#include <memory>
#include <span>

namespace pelmora::platform {

/// Reads what is embedded in files in a process of its own, which can open nothing, reaches no
/// network and has bounded memory and time, as those who look into files of others tend to crash:
/// `program` is started when it is first needed, at the priority of the thread that asks, and kept;
/// one that crashed, hung or answered nonsense costs the file that it was at, and the files after
/// that are asked of another. Thread: one at a time. Errors: one short line for a person.
class MetadataInspector {
 public:
  struct Settings {
    FilePath program;
    std::chrono::milliseconds deadline{10'000};  // for one file; then its process is ended
  };
  using Answer = EmbeddedMetadata;
  /// False: no more is wanted.
  using Take = std::function<bool(std::size_t index, Answer answer)>;

  explicit MetadataInspector(Settings settings);
  ~MetadataInspector();

  /// Calls `take` for each file in their order, with what is embedded in it. The descriptors are
  /// open on regular files, at their begin; closed ones fail. Requests are sent ahead of the
  /// replies, so many files at once are read faster than one by one; when no more is wanted, the
  /// process is ended that was asked for more. An error: no inspector was to be had, though no file
  /// is to blame; `take` was not called for the rest of the files.
  [[nodiscard]] Status inspect(std::span<const FileDescriptor> files, const Take& take);

 private:
  struct State;
  class Run;
  std::unique_ptr<State> _state;
};

}  // namespace pelmora::platform
