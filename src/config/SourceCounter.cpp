#include "config/SourceCounter.h"

#include "platform/Files.h"
#include "sources/PMFolder.h"

#include <utility>

namespace pelmora::config {

/// One look at all folders; on a thread of the queue, as a disk that is away may keep it waiting.
class SourceCounter::Look : public platform::Operation {
 public:
  Look(std::vector<FilePath> folders, const platform::Files& files, std::shared_ptr<Found> found)
      : _folders(std::move(folders)), _files(files), _found(std::move(found)) {}

  void main() override {
    std::set<FilePath> gone;
    for (const FilePath& folder : _folders) {
      if (isCancelled()) return;
      if (!platform::isDirectory(_files, folder)) gone.insert(folder);
    }
    const std::lock_guard lock(_found->mutex);
    _found->gone = std::move(gone);
  }

 private:
  const std::vector<FilePath> _folders;
  const platform::Files& _files;
  const std::shared_ptr<Found> _found;
};

SourceCounter::SourceCounter(const platform::Services& services, Told told)
    : _told(std::move(told)),
      _services(platform::withNotifications(services, _unheard)),
      _walk(std::make_unique<sources::PMSourceList>(_services)),
      _looks({.qualityOfService = platform::QualityOfService::background, .name = "folder look"}) {
  _timer = _services.scheduler.every(kInterval, [this] { report(); });
}

SourceCounter::~SourceCounter() {
  _services.scheduler.cancel(_timer);
  _looks.cancelAllOperations();
  _walk->cancelOperations();
}

void SourceCounter::add(const std::vector<FilePath>& folders) {
  bool isAnyNew = false;
  for (const FilePath& folder : folders) {
    if (!_counts.try_emplace(folder).second) continue;
    isAnyNew = true;
    _walk->addEnumOpToQueue(_walk->enumQueue(), folder, 0, true);
  }
  if (!isAnyNew) return;
  _recordsSeen = 0;  // what was found before may be in a folder that is new
  for (auto& [folder, count] : _counts) count.pictures = 0;
}

void SourceCounter::report() {
  const bool isDone = _walk->enumQueue().operationCount() == 0;
  countNewRecords();
  if (_reports++ % kLooksAfter == 0) lookForFolders();
  {
    const std::lock_guard lock(_found->mutex);
    for (auto& [folder, count] : _counts) count.isGone = _found->gone.contains(folder);
  }
  for (auto& [folder, count] : _counts) {
    count.isDone = isDone;
    const auto [last, isNew] = _reported.try_emplace(folder, count);
    if (!isNew && last->second == count) continue;
    last->second = count;
    _told(folder, count);
  }
}

/// A folder in a folder that is counted is a part of it, though it may be counted itself.
void SourceCounter::countNewRecords() {
  const auto records = _walk->dirItems();
  for (; _recordsSeen < records.size(); ++_recordsSeen) {
    const sources::PMFolder& record = *records[_recordsSeen];
    for (FilePath at = record.url; !at.empty(); at = at.parent()) {
      if (const auto counted = _counts.find(at); counted != _counts.end()) {
        counted->second.pictures += record.filenames->size();
      }
      if (at == at.parent()) break;
    }
  }
}

void SourceCounter::lookForFolders() {
  if (_looks.operationCount() > 0) return;
  std::vector<FilePath> folders;
  for (const auto& [folder, count] : _counts) folders.push_back(folder);
  _looks.addOperation(std::make_shared<Look>(std::move(folders), _services.files, _found));
}

}  // namespace pelmora::config
