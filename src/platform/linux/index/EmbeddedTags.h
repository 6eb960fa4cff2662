#pragma once

#include "platform/linux/index/InspectorProcess.h"
#include "platform/linux/index/PatientInspector.h"

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::platform {

class PatientFiles;

/// The tags that are embedded in files, as a filter knows them (`kMDItemUserTags`), read by an
/// inspector of its own, which starts with the first file, at the priority of the thread that asks.
/// Thread: any; one waits for another. Ownership: clock and log outlive it. Errors: no tags, and a
/// log line.
class EmbeddedTags {
 public:
  /// Whoever asks does nothing else meanwhile, so a file has not long, its inspector's start
  /// included.
  static constexpr std::chrono::milliseconds kDeadline{1000};

  /// `program` is the inspector. `files`, by which to open them, outlives it; null: directly.
  EmbeddedTags(const FilePath& program, const Clock& clock, Log& log,
               std::chrono::milliseconds deadline = kDeadline, const PatientFiles* files = nullptr);

  [[nodiscard]] std::vector<std::string> read(const FilePath& file);

 private:
  Status inspect(const FileDescriptor& file, const PatientInspector::TakeNext& take);

  const FilePath _program;
  const std::chrono::milliseconds _deadline;
  const PatientFiles* const _files;
  Log& _log;
  std::mutex _mutex;  // guards all below
  LateChildren _late;
  std::optional<InspectorProcess> _process;
  PatientInspector _patient;
};

}  // namespace pelmora::platform
