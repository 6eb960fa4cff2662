#pragma once

#include "platform/linux/index/MetadataIndex.h"
#include "platform/linux/index/MetadataInspector.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/SystemLog.h"

#include <memory>
#include <string>
#include <vector>

namespace pelmora::bench {

/// The index as the program has it, with its inspector, over a file. Thread: one. Errors: a filter
/// that is none ends the program.
class PhotoIndex {
 public:
  explicit PhotoIndex(const FilePath& file);

  /// A query that has gathered; the folders are watched as long as it is there.
  struct Gathered {
    std::unique_ptr<platform::MetadataQuery> query;
    std::size_t files = 0;
    double seconds = 0;  // from its making to the end of the gathering
  };
  Gathered gather(const std::string& filter, const std::vector<FilePath>& folders);

 private:
  platform::SystemClock _clock;
  platform::SystemLog _log;
  platform::PosixFiles _files;
  platform::NotificationCenter _notifications;
  platform::MetadataInspector _inspector;
  std::size_t _found = 0;  // by the thread of the index, until a query has gathered
  platform::MetadataIndex _index;
};

/// The filter, read; one that is none ends the program.
[[nodiscard]] platform::predicate::Predicate filterOf(const std::string& text);

}  // namespace pelmora::bench
