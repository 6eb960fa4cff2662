#pragma once

#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/index/FolderIndexer.h"
#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace pelmora::platform {

/// An index over folders of the test's own, whose files have as their title what is in them.
class IndexFixture : public testing::Test {
 protected:
  IndexFixture() {
    for (const char* name :
         {NSMetadataQueryGatheringProgressNotification, NSMetadataQueryDidUpdateNotification,
          NSMetadataQueryDidFinishGatheringNotification}) {
      fakes.notifications.addObserver(name, [this](const Notification& posted) { take(posted); });
    }
  }

  /// Reads a few bytes of each file as its title, and counts the files.
  [[nodiscard]] PatientInspector::Inspect inspect() {
    return [this](std::span<const FileDescriptor> files,
                  const PatientInspector::TakeNext& take) -> Status {
      ++inspectorsAskedFor;
      for (std::size_t i = 0; i < files.size(); ++i) {
        if (filesRead == filesUntilItIsGone) return Error{"there is no inspector"};
        ++filesRead;
        char text[64];
        const ssize_t size = ::read(files[i].get(), text, sizeof text);
        metadata::FileMetadata embedded;
        const std::string title(text, size < 0 ? 0 : static_cast<std::size_t>(size));
        if (!title.empty()) embedded.set("kMDItemTitle", {predicate::Constant(title)});
        EmbeddedMetadata answer(std::move(embedded));
        if (title == "broken" || isDiskSlow) answer = Error{"it is broken"};
        answer.isPassing = isDiskSlow;
        if (!take(i, std::move(answer))) return Done{};
      }
      return Done{};
    };
  }

  void take(const Notification& posted) {
    posts.push_back(posted.name);
    const auto found = posted.userInfo.find(NSMetadataQueryUpdateAddedItemsKey);
    if (found == posted.userInfo.end()) return;
    for (const plist::Value& item : *found->second.get<plist::Array>()) {
      ++reported[*item.get<plist::Dictionary>()->at(NSMetadataItemPathKey).get<std::string>()];
    }
  }

  [[nodiscard]] static predicate::Predicate parse(const char* text) {
    return predicate::parsePredicate(text).value();
  }

  using Reported = std::map<std::string, int>;

  TemporaryFolder temporary;
  FakeServices fakes;
  int filesRead = 0;
  int filesUntilItIsGone = -1;  // negative: it stays
  int inspectorsAskedFor = 0;
  bool isDiskSlow = false;  // no file can be read for now
  std::vector<std::string> posts;
  Reported reported;  // how often each path was
};

}  // namespace pelmora::platform
