#pragma once

#include "platform/linux/index/MetadataInspector.h"
#include "platform/linux/index/PatientInspector.h"

#include <chrono>
#include <mutex>
#include <string>
#include <vector>

namespace pelmora::platform {

/// The tags that are embedded in files, as a filter knows them (`kMDItemUserTags`), read by an
/// inspector of its own, which starts with the first file. Thread: any; one waits for another.
/// Ownership: clock and log outlive it. Errors: no tags, and a log line.
class EmbeddedTags {
 public:
  /// Whoever asks does nothing else meanwhile, so a file has not long.
  static constexpr std::chrono::milliseconds kDeadline{1000};

  /// `program` is the inspector.
  EmbeddedTags(const FilePath& program, const Clock& clock, Log& log,
               std::chrono::milliseconds deadline = kDeadline);

  [[nodiscard]] std::vector<std::string> read(const FilePath& file);

 private:
  Log& _log;
  std::mutex _mutex;  // guards all below
  MetadataInspector _inspector;
  PatientInspector _patient;
};

}  // namespace pelmora::platform
