#pragma once

#include "platform/Image.h"
#include "platform/MetadataQuery.h"
#include "platform/OperationQueue.h"
#include "platform/predicate/Predicate.h"
#include "platform/PreferencesStore.h"
#include "platform/Services.h"
#include "shared/FilePath.h"
#include "shared/ReferenceTime.h"
#include "sources/FolderRecords.h"
#include "sources/LockGuards.h"
#include "sources/MainTurns.h"
#include "sources/QueueObserver.h"
#include "sources/SourceEntries.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::sources {

/// The only search scope of a filter while there are no records: it names no place.
inline constexpr const char* kPlaceholderScope = "I'm not a folde® that is anywhe®e";

/// What a view is handed to show.
struct ImagePick {
  platform::Image image;
  FilePath url;
};

/// The folders that the user chose, the folders with pictures found in them, and the weighted
/// choice among those. One list serves all views: the first that loads it starts the walk, the last
/// that unloads it empties it. Thread: made, loaded, unloaded and ended on main; the lookups and
/// the choice from any. Locks: `dirItemsLock` guards the records, `weightsSumLock` the weights,
/// `spotlightScopesLock` the filter and its scopes, and is held alone; of the first two,
/// `dirItemsLock` is taken first. A lock call that fails is logged, and the work goes on.
/// Ownership: everything in `services` outlives it. Destruction cancels the walk and waits for the
/// folders under way. Errors: what cannot be read is logged, and left out.
class PMSourceList {
 public:
  /// The one list of the process, made on first use.
  static std::shared_ptr<PMSourceList> sharedSourceList(const platform::Services& services);
  /// Lets go of the shared list, so that the next use makes a new one: one process, several runs.
  static void endSharedSourceList();

  explicit PMSourceList(const platform::Services& services);
  ~PMSourceList();
  PMSourceList(const PMSourceList&) = delete;
  PMSourceList& operator=(const PMSourceList&) = delete;

  /// Counts a loader; the first one loads the sources, and starts the walk of those that are on.
  void loadSourcesFromPrefs(platform::PreferencesStore& prefs, bool enumerateFolders,
                            bool doSecurityScoped);
  /// Uncounts a loader; the last one empties the list. The walk is to be cancelled before.
  void unloadSources();
  /// Forgets the sources, but not the records.
  void justUnloadSources();
  /// Cancels what is left of the walk. The folders under way end soon, and add nothing more.
  void cancelOperations();
  /// Forgets the records and the weights.
  void clearAll();

  /// Null when there are not that many.
  [[nodiscard]] std::shared_ptr<PMFolder> getFolderAtIndex(std::uint64_t index) const;
  /// The index of the first record of that folder, by file identity; `kNotFound` without one.
  [[nodiscard]] std::uint64_t indexOfEnumeratedFolderWithURL(const FilePath& url) const;
  [[nodiscard]] std::uint64_t indexOfEnumeratedFolder(const platform::FileIdentity& identity) const;
  /// Whether the source that is this folder is on, by file identity; true for any other folder.
  [[nodiscard]] bool isSourceEnabled(const FilePath& url) const;
  // By the longest source path that `folder` begins with; 0, 1.0 and "" without one.
  [[nodiscard]] std::uint64_t daysForFolder(std::string_view folder) const;
  [[nodiscard]] double priorityForFolder(std::string_view folder) const;
  [[nodiscard]] std::string screensForFolder(std::string_view folder) const;

  /// Adds a record that has files and is meant for the screen, as a search scope of the filter too,
  /// and posts "FirstFolderAdded" on this thread when it is the first one.
  void addFolder(const std::shared_ptr<PMFolder>& record, std::uint64_t forScreen,
                 bool watchForChanges);
  /// The same for a walk's operation. Adds nothing once that is cancelled, or when another
  /// operation was quicker, and is false then: the folder is not this operation's to go on with.
  [[nodiscard]] bool addWalkedFolder(const std::shared_ptr<PMFolder>& record,
                                     std::uint64_t forScreen, const platform::Operation& operation);
  /// Sets a record's priority and screens; an index without a record is ignored.
  void setPriorityAndScreens(std::uint64_t ofFolderAtIndex, const FolderValues& values);
  /// Adds a name that the filter admitted to a record; an index without a record is ignored.
  void addSpotlightFilename(std::uint64_t toFolderAtIndex, std::string name);

  /// Queues the enumeration of a folder. An operation that queues another as part of its walk names
  /// itself, so that its cancellation holds for both, and what it knows of the folder. Where it
  /// knows that there are no subfolders, the operation is run at once instead.
  void addEnumOpToQueue(platform::OperationQueue& queue, FilePath forFolder,
                        std::uint64_t forScreen, bool isBaseFolder,
                        const platform::Operation* ofWalk = nullptr,
                        SharedNames withSubfolders = nullptr);
  /// The work of one operation: the folder's record, and operations for its subfolders.
  void enumFolder(const FilePath& folder, std::uint64_t forScreen, bool isBaseFolder,
                  platform::OperationQueue& addOpToQueue,
                  const platform::Operation& currentOperation,
                  const SharedNames& withSubfolders = nullptr);

  /// A record that may be shown on the screen today, drawn by weight; null without one.
  [[nodiscard]] std::shared_ptr<PMFolder> randomFolderForScreen(std::uint64_t screenIndex);
  /// A picture from such a record, loaded at the size that the displays need. A folder whose files
  /// keep failing is given up until the sources are loaded again. nullopt when nothing is left.
  [[nodiscard]] std::optional<ImagePick> randomImageAndURLForScreenIndex(std::uint64_t screenIndex);
  [[nodiscard]] std::optional<FilePath> randomURLForScreenIndex(std::uint64_t screenIndex);

  /// Every weight is computed anew at its next use.
  void resetWeights();

  /// Ten seconds after each midnight, on main: from now on the folders of the new day are shown.
  /// Nothing is loaded anew. A clock that was set, or a machine that slept, makes it early or late;
  /// the day is read from the clock when it runs.
  void changeDayCallback();

  /// Only files for which the predicate holds are chosen from now on, as far as the query over the
  /// metadata of the records' folders has reported them; without a predicate, or with one that asks
  /// for nothing, all files. Main. Throws `PredicateException` for a predicate that no editor could
  /// have made; then there is no filter.
  void setSpotlightQuery(const std::optional<platform::predicate::Predicate>& predicate);
  /// The query while a filter is in use, else null. Thread: any.
  [[nodiscard]] std::shared_ptr<platform::MetadataQuery> queer() const;
  // What reports of the query are handled by; null while there is no filter. Main.
  [[nodiscard]] QueueObserver* observerForQueryGatheringProgress() const {
    return _observerForQueryGatheringProgress.get();
  }
  [[nodiscard]] QueueObserver* observerForQueryDidUpdate() const {
    return _observerForQueryDidUpdate.get();
  }
  [[nodiscard]] QueueObserver* observerForQueryFinishedGather() const {
    return _observerForQueryFinishedGather.get();
  }
  /// Waits until the filter has found what there is to find in its scopes, and the records have it.
  /// Thread: any, while main sets no other filter.
  void waitUntilGathered() const;

  [[nodiscard]] platform::Files& fileMan() const { return _services.files; }
  [[nodiscard]] SharedSourceEntries sources() const;
  /// Why each of the stored sources that is not among the loaded ones is missing. Main.
  [[nodiscard]] const std::vector<std::string>& missingSources() const { return _missingSources; }
  /// The records as they are now, in the order in which they were added.
  [[nodiscard]] std::vector<std::shared_ptr<PMFolder>> dirItems() const;
  [[nodiscard]] platform::OperationQueue& enumQueue() { return _enumQueue; }
  [[nodiscard]] ReferenceTime startDate() const { return _startDate; }
  /// 0 = Sunday.
  [[nodiscard]] int currentDay() const { return _currentDay; }
  [[nodiscard]] bool usesSecurityScoped() const { return _usesSecurityScoped; }
  [[nodiscard]] std::int32_t numLoaders() const { return _numLoaders; }
  [[nodiscard]] std::vector<std::uint64_t> weightsSums() const;
  [[nodiscard]] std::string description() const;

  mutable ListLock dirItemsLock{LockPlace::items};
  mutable ListLock weightsSumLock{LockPlace::weights};
  mutable ListLock spotlightScopesLock{LockPlace::scopes};

 private:
  struct Draw;

  void scheduleDayChange();
  void loadSources(const plist::Array& stored, bool enumerateFolders);
  void setSources(std::vector<SourceEntry> entries);
  bool append(const std::shared_ptr<PMFolder>& record, std::uint64_t forScreen,
              const platform::Operation* ofWalk);
  void walkFolder(const FilePath& folder, std::uint64_t forScreen, bool isBaseFolder,
                  platform::OperationQueue& addOpToQueue,
                  const platform::Operation& currentOperation, const SharedNames& withSubfolders);
  void addSearchScope(const FilePath& folder, const platform::Operation* ofWalk);
  void observeQuery();
  void endQueryObservers();
  void handleQueryNotification(const platform::Notification& notification, int which);
  void addSpotlightFilenames(const plist::Array& items);

  [[nodiscard]] Eligibility eligibilityForScreen(std::uint64_t screenIndex) const;
  [[nodiscard]] bool knowsScreen(std::uint64_t screenIndex);
  void computeWeight(std::uint64_t screenIndex);
  [[nodiscard]] std::uint64_t weightForScreen(std::uint64_t screenIndex) const;
  [[nodiscard]] std::uint64_t numFilesIn(const PMFolder& folder, bool isFiltered) const;
  [[nodiscard]] FilePath fileIn(const PMFolder& folder, bool isFiltered, std::uint64_t index) const;
  void drawImage(const PMFolder& folder, Draw& draw) const;
  void tellOfObstacle(const Error& obstacle);
  void giveUp(const PMFolder& folder, std::uint64_t numFiles);
  void subtractFromWeights(std::uint64_t numFiles);

  const platform::Services& _services;
  const ReferenceTime _startDate;
  std::atomic<int> _currentDay;
  std::atomic<bool> _isToldOfObstacle{false};
  std::atomic<bool> _isFiltered{false};  // whether there is a _queer

  FolderRecords _dirItems;                  // guarded by dirItemsLock
  std::vector<std::uint64_t> _weightsSums;  // guarded by weightsSumLock; grows with the displays
  std::atomic<std::size_t> _numScreens;     // how many weights there are
  mutable std::mutex _sourcesMutex;         // guards the pointer
  SharedSourceEntries _sources = std::make_shared<const SourceEntries>();

  // On main:
  std::int32_t _numLoaders = 0;
  std::vector<std::string> _missingSources;
  bool _usesSecurityScoped = false;
  std::optional<platform::Scheduler::TimerId> _dayTimer;

  std::shared_ptr<platform::MetadataQuery> _queer;  // changed on main, under spotlightScopesLock

  MainTurns _mainTurns;
  // On main; their ends wait for handlers that use all above.
  std::unique_ptr<QueueObserver> _observerForQueryGatheringProgress;
  std::unique_ptr<QueueObserver> _observerForQueryDidUpdate;
  std::unique_ptr<QueueObserver> _observerForQueryFinishedGather;
  platform::OperationQueue _enumQueue;  // last: its end waits for operations that use all above
};

}  // namespace pelmora::sources
