#include "host/MatchRun.h"

#include "host/GivenPath.h"
#include "host/PictureFinder.h"
#include "platform/PrintableLine.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace pelmora::host {

namespace {

constexpr std::chrono::milliseconds kBetweenProgress{200};

const std::string* pathIn(const plist::Value& item) {
  const auto* values = item.get<plist::Dictionary>();
  if (!values) return nullptr;
  const auto found = values->find(platform::NSMetadataItemPathKey);
  return found == values->end() ? nullptr : found->second.get<std::string>();
}

}  // namespace

/// What a query posts, from its thread, until it has gathered everything.
class MatchRun::Gathering {
 public:
  explicit Gathering(platform::NotificationCenter& center) : _center(center) {
    using namespace platform;
    constexpr std::array kNames{NSMetadataQueryGatheringProgressNotification,
                                NSMetadataQueryDidUpdateNotification,
                                NSMetadataQueryDidFinishGatheringNotification};
    for (const char* name : kNames) {
      _tokens.push_back(_center.addObserver(
          name, [gathered = _gathered](const Notification& posted) { gathered->take(posted); }));
    }
  }
  ~Gathering() {
    for (const auto token : _tokens) _center.removeObserver(token);
  }
  Gathering(const Gathering&) = delete;
  Gathering& operator=(const Gathering&) = delete;

  [[nodiscard]] std::vector<std::string> wait(const std::function<void()>& meanwhile) const {
    std::unique_lock lock(_gathered->mutex);
    while (!_gathered->changed.wait_for(lock, kBetweenProgress,
                                        [this] { return _gathered->isFinished; })) {
      meanwhile();
    }
    return std::move(_gathered->paths);
  }

 private:
  /// Shared with the handlers: one that runs may outlive us.
  struct Gathered {
    void take(const platform::Notification& posted) {
      const std::lock_guard lock(mutex);
      const auto items = posted.userInfo.find(platform::NSMetadataQueryUpdateAddedItemsKey);
      if (items != posted.userInfo.end()) {
        const auto* added = items->second.get<plist::Array>();
        for (const plist::Value& item : added ? *added : plist::Array{}) {
          if (const std::string* path = pathIn(item)) paths.push_back(*path);
        }
      }
      if (posted.name != platform::NSMetadataQueryDidFinishGatheringNotification) return;
      isFinished = true;
      changed.notify_all();
    }

    std::mutex mutex;  // guards all below
    std::condition_variable changed;
    std::vector<std::string> paths;
    bool isFinished = false;
  };

  platform::NotificationCenter& _center;
  const std::shared_ptr<Gathered> _gathered = std::make_shared<Gathered>();
  std::vector<platform::NotificationCenter::Token> _tokens;
};

bool MatchRun::run() {
  for (const std::string& word : _request.folders) find(word);
  std::stable_sort(_found.begin(), _found.end(),
                   [](const Found& a, const Found& b) { return a.path < b.path; });
  _found.erase(std::unique(_found.begin(), _found.end(),
                           [](const Found& a, const Found& b) { return a.path == b.path; }),
               _found.end());
  std::vector<std::string> paths = matches();
  std::sort(paths.begin(), paths.end());
  std::erase_if(_found, [&paths](const Found& file) {
    return !std::binary_search(paths.begin(), paths.end(), file.path);
  });
  std::vector<GivenPath> folders(_request.folders.begin(), _request.folders.end());
  for (Found& file : _found) file.shown = folders[file.folder].shown(FilePath(file.path));
  std::sort(_found.begin(), _found.end(),
            [](const Found& a, const Found& b) { return a.shown < b.shown; });
  for (const Found& file : _found) _tools.tell(file.shown);
  return _isAllWell;
}

void MatchRun::find(const std::string& word) {
  const GivenPath start(word);
  const auto facts = _tools.files.facts(start.absolute(), platform::FinalLink::follow);
  if (!facts) return complain(word, "there is no such folder");
  if (facts->kind != platform::EntryKind::folder) return complain(word, "it is not a folder");
  const auto folder = static_cast<std::size_t>(&word - _request.folders.data());
  PictureFinder finder(_tools.files, {.file =
                                          [&](const FilePath& file) {
                                            _found.push_back({file.bytes(), folder});
                                          },
                                      .unreadable =
                                          [&](const FilePath& path, const Error& why) {
                                            complain(start.shown(path), why.message);
                                          }});
  finder.find(start.absolute());
}

void MatchRun::complain(const std::string& path, const std::string& why) {
  _isAllWell = false;
  _tools.complain(platform::printableLine(path + ": " + why));
}

/// The paths of the files for which the predicate holds, in the folders of those that were found.
std::vector<std::string> MatchRun::matches() const {
  platform::SearchScopes scopes;
  FilePath last;
  for (const Found& file : _found) {
    const FilePath folder = FilePath(file.path).parent();
    if (folder != last) scopes.append(folder.bytes());
    last = folder;
  }
  if (scopes.empty()) return {};
  const Gathering gathering(_tools.notifications);
  const auto query = _tools.metadata.makeQuery();
  query->setPredicate(_request.predicate);
  query->setSearchScopes(std::move(scopes));
  query->start();
  auto paths = gathering.wait([this] { _tools.progress(_tools.metadata.progress()); });
  query->stop();
  return paths;
}

}  // namespace pelmora::host
