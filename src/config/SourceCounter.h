#pragma once

#include "platform/NotificationCenter.h"
#include "platform/OperationQueue.h"
#include "platform/Scheduler.h"
#include "platform/Services.h"
#include "shared/FilePath.h"
#include "sources/PMSourceList.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

namespace pelmora::config {

/// Counts the pictures of folders, as a show would find them, and looks now and then whether the
/// folders are still there. All reading is done by threads of its own, at low priority.
/// Thread: main. Ownership: the services outlive it. Destruction waits for the folders under way.
class SourceCounter {
 public:
  /// What is known of a folder: its own files, and those of all folders in it, so far.
  struct Count {
    std::size_t pictures = 0;
    bool isDone = false;  // all folders, of all that are counted, were walked
    bool isGone = false;
    bool operator==(const Count&) const = default;
  };
  /// Called on main when another count is known.
  using Told = std::function<void(const FilePath& folder, const Count& count)>;

  SourceCounter(const platform::Services& services, Told told);
  ~SourceCounter();
  SourceCounter(const SourceCounter&) = delete;
  SourceCounter& operator=(const SourceCounter&) = delete;

  /// Counts these too. Folders that are counted already are not counted again.
  void add(const std::vector<FilePath>& folders);

  static constexpr double kInterval = 0.5;  // seconds between two reports
  static constexpr int kLooksAfter = 4;     // reports from one look at the folders to the next

 private:
  class Look;
  /// What the looks found, for main to take.
  struct Found {
    std::mutex mutex;
    std::set<FilePath> gone;  // under the mutex
  };

  void report();
  void lookForFolders();
  void countNewRecords();

  const Told _told;
  platform::NotificationCenter _unheard;  // what the walk has to say is for nobody
  const platform::Services _services;
  platform::Scheduler::TimerId _timer{};
  std::map<FilePath, Count> _counts;
  std::map<FilePath, Count> _reported;
  std::size_t _recordsSeen = 0;
  int _reports = 0;
  const std::shared_ptr<Found> _found = std::make_shared<Found>();
  std::unique_ptr<sources::PMSourceList> _walk;
  platform::OperationQueue _looks;
};

}  // namespace pelmora::config
