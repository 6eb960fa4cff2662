#include "PhotoIndex.h"

#include "Report.h"

#include "platform/predicate/PredicateText.h"

#include <cstdio>
#include <cstdlib>

#ifndef PELMORA_INSPECTOR
#error "PELMORA_INSPECTOR names the program that reads what is embedded in files"
#endif

namespace pelmora::bench {

PhotoIndex::PhotoIndex(const FilePath& file)
    : _inspector({.program = FilePath(PELMORA_INSPECTOR)}),
      _index({.files = _files,
              .log = _log,
              .clock = _clock,
              .notifications = _notifications,
              .inspect = [this](auto open,
                                const auto& take) { return _inspector.inspect(open, take); },
              .file = [file] { return file; }}) {
  for (const char* name : {platform::NSMetadataQueryGatheringProgressNotification,
                           platform::NSMetadataQueryDidUpdateNotification}) {
    _notifications.addObserver(name, [this](const platform::Notification& posted) {
      const auto items = posted.userInfo.find(platform::NSMetadataQueryUpdateAddedItemsKey);
      if (items != posted.userInfo.end()) _found += items->second.get<plist::Array>()->size();
    });
  }
}

PhotoIndex::Gathered PhotoIndex::gather(const std::string& filter,
                                        const std::vector<FilePath>& folders) {
  std::vector<std::string> paths;
  for (const FilePath& folder : folders) paths.push_back(folder.bytes());
  _found = 0;
  Gathered gathered;
  gathered.seconds = secondsOf([&] {
    gathered.query = _index.makeQuery();
    gathered.query->setPredicate(filterOf(filter));
    gathered.query->setSearchScopes(platform::SearchScopes(paths));
    gathered.query->start();
    gathered.query->waitUntilGathered();
  });
  gathered.files = _found;
  return gathered;
}

platform::predicate::Predicate filterOf(const std::string& text) {
  const auto filter = platform::predicate::parsePredicate(text);
  if (filter) return *filter;
  std::fprintf(stderr, "%s: %s\n", text.c_str(), filter.error().message.c_str());
  std::exit(1);
}

}  // namespace pelmora::bench
