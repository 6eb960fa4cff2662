#include "platform/linux/index/InotifyQueue.h"

#include "platform/fake/TemporaryFolder.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace pelmora::platform {

namespace {

using Kind = InotifyQueue::Kind;
using Bytes = std::vector<std::byte>;

/// An event as the kernel writes it, with a name of so many bytes, whatever it claims.
Bytes event(int watch, std::uint32_t mask, std::uint32_t claimed = 0, std::size_t nameBytes = 0) {
  inotify_event header{};
  header.wd = watch;
  header.mask = mask;
  header.len = claimed;
  Bytes bytes(sizeof header + nameBytes);
  std::memcpy(bytes.data(), &header, sizeof header);
  return bytes;
}

/// "3 changed" for each event.
std::vector<std::string> eventsIn(std::span<const std::byte> bytes) {
  constexpr const char* kNames[] = {" changed", " moved", " gone", " lost"};
  std::vector<std::string> events;
  while (const auto next = InotifyQueue::takeEvent(bytes)) {
    events.push_back(std::to_string(next->watch) + kNames[static_cast<std::size_t>(next->kind)]);
  }
  return events;
}

std::vector<InotifyQueue::Event> eventsIn(const InotifyQueue& queue) {
  std::vector<InotifyQueue::Event> events;
  queue.read([&](const InotifyQueue::Event& next) { events.push_back(next); });
  return events;
}

using Events = std::vector<std::string>;

}  // namespace

TEST(InotifyQueue, tellsWhatHappensInAFolder) {
  const TemporaryFolder temporary;
  const InotifyQueue queue;
  ASSERT_GE(queue.descriptor(), 0);
  const auto watch = queue.add(temporary.path());
  ASSERT_TRUE(watch);
  EXPECT_TRUE(eventsIn(queue).empty());
  (void)temporary.write("file");
  const auto events = eventsIn(queue);
  ASSERT_FALSE(events.empty());
  EXPECT_EQ(events.front().watch, *watch);
  EXPECT_EQ(events.front().kind, Kind::changed);
}

TEST(InotifyQueue, givesAFolderTheSameWatchByEveryPath) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  const InotifyQueue queue;
  EXPECT_EQ(queue.add(folder), queue.add(temporary.link("link", folder)));
  EXPECT_NE(queue.add(folder), queue.add(temporary.path()));
}

TEST(InotifyQueue, addsNothingThatIsNoFolder) {
  const TemporaryFolder temporary;
  const InotifyQueue queue;
  EXPECT_FALSE(queue.add(temporary.write("file")));
  EXPECT_FALSE(queue.add(temporary.path() / "missing"));
  EXPECT_FALSE(queue.add(FilePath()));
}

TEST(InotifyQueue, tellsThatAWatchIsGone) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  const InotifyQueue queue;
  const auto removed = queue.add(folder);
  ASSERT_TRUE(removed);
  queue.remove(*removed);
  auto events = eventsIn(queue);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events.front().kind, Kind::gone);

  const auto watch = queue.add(folder);
  EXPECT_NE(watch, removed);
  ASSERT_EQ(::rmdir(folder.c_str()), 0);
  events = eventsIn(queue);
  ASSERT_FALSE(events.empty());
  EXPECT_EQ(events.back().watch, watch);
  EXPECT_EQ(events.back().kind, Kind::gone);
}

TEST(InotifyQueue, takesEventsOneAfterTheOther) {
  Bytes bytes = event(3, IN_CREATE, 16, 16);
  for (const Bytes& next : {event(4, IN_MOVE_SELF), event(5, IN_IGNORED), event(-1, IN_Q_OVERFLOW),
                            event(6, IN_ATTRIB | IN_ISDIR)}) {
    bytes.insert(bytes.end(), next.begin(), next.end());
  }
  EXPECT_EQ(eventsIn(bytes), (Events{"3 changed", "4 moved", "5 gone", "-1 lost", "6 changed"}));
}

TEST(InotifyQueue, passesOverWhatHappensToSubfolders) {
  Bytes bytes = event(3, IN_CREATE | IN_ISDIR, 16, 16);
  const Bytes next = event(4, IN_DELETE, 16, 16);
  bytes.insert(bytes.end(), next.begin(), next.end());
  EXPECT_EQ(eventsIn(bytes), Events{"4 changed"});
}

TEST(InotifyQueue, takesNothingThatIsCutOff) {
  const Bytes whole = event(3, IN_CREATE, 16, 16);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_TRUE(eventsIn(std::span(whole).first(length)).empty()) << length;
  }
  EXPECT_TRUE(eventsIn(event(3, IN_CREATE, 0xFFFFFFFF, 16)).empty());
}

}  // namespace pelmora::platform
