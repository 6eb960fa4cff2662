#pragma once

#include "platform/linux/index/IndexWork.h"
#include "platform/MetadataQuery.h"

#include <functional>
#include <limits>
#include <memory>

namespace pelmora::platform {

/// The search for files by their metadata: an index of the folders that queries search, kept from
/// run to run, brought up to date when a query first asks for a folder, and kept so while any does.
/// One thread of its own does all the work, at the lowest priority, and posts what queries find. It
/// starts with the first query that is started, or when values are first asked for; before that
/// nothing is opened or read.
/// Thread: main; `progress` from any. Ownership: the services outlive it, and it the queries.
/// Destruction ends the thread, which finishes the file that it is at.
class MetadataIndex : public MetadataSearch {
 public:
  struct Tools {
    const Files& files;
    Log& log;
    const Clock& clock;  // one that goes on by itself
    NotificationCenter& notifications;
    PatientInspector::Inspect inspect;  // called on the thread of the index
    /// Where the index is kept, in a folder that is there; empty: in memory. Asked for on the
    /// thread of the index, once.
    std::function<FilePath()> file;
    std::size_t mostWatches = std::numeric_limits<std::size_t>::max();  // of the system's
  };

  explicit MetadataIndex(Tools tools);
  ~MetadataIndex() override;
  MetadataIndex(const MetadataIndex&) = delete;
  MetadataIndex& operator=(const MetadataIndex&) = delete;

  [[nodiscard]] std::unique_ptr<MetadataQuery> makeQuery() override;
  [[nodiscard]] IndexProgress progress() const override;
  /// Answered on the thread of the index, from what is kept; no folder is looked at for it.
  void suggestValues(std::string attribute, std::size_t count,
                     std::function<void(std::vector<std::string>)> answer) override;

  /// The name of the index in its folder.
  static constexpr const char* kFileName = "Metadata.sqlite";

 private:
  class Query;
  class Thread;

  const std::unique_ptr<Thread> _thread;
  IndexWork::QueryId _lastQuery = 0;
};

}  // namespace pelmora::platform
