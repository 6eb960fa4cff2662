#include "Benches.h"
#include "Report.h"
#include "Trees.h"

#include "platform/fake/FakeServices.h"
#include "shared/NameList.h"
#include "sources/PMFolder.h"
#include "sources/PMSourceList.h"

#include <malloc.h>

namespace pelmora::bench {

namespace {

std::size_t heapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

/// Megabytes on the heap of a million names in 10,000 lists, as `make` makes a list of them.
template <typename Make>
double heapOfNames(const Make& make) {
  std::vector<decltype(make(std::vector<std::string>()))> lists;
  lists.reserve(10'000);
  const std::size_t before = heapInUse();
  for (int folder = 0; folder < 10'000; ++folder) {
    std::vector<std::string> names;
    for (int n = 0; n < 100; ++n) names.push_back(cameraName(n));
    lists.push_back(make(names));
  }
  return static_cast<double>(heapInUse() - before) / 1e6;
}

}  // namespace

void benchNames() {
  const double strings = heapOfNames([](const std::vector<std::string>& names) {
    std::vector<std::string> copy;
    copy.reserve(names.size());
    for (const std::string& name : names) copy.push_back(name);
    return copy;
  });
  const double lists =
      heapOfNames([](const std::vector<std::string>& names) { return makeNameList(names); });
  report({.name = "names.heap-of-1M",
          .value = lists,
          .unit = "MB",
          .base = "std::string",
          .baseValue = strings,
          .most = 0.45});
}

void benchPick() {
  constexpr int kFolders = 100'000;
  constexpr int kPicks = 200;
  platform::FakeServices fakes;
  const platform::Services services = fakes.services();
  sources::PMSourceList list(services);
  const SharedNames names = makeNameList({"a.jpg", "b.jpg", "c.jpg"});
  for (int i = 0; i < kFolders; ++i) {
    auto record = std::make_shared<sources::PMFolder>(
        FilePath("/p/" + std::to_string(i)), false,
        sources::PMFolder::Contents{.contentNames = names}, 0.5, "", 127);
    list.addFolder(record, 0, false);
  }
  std::vector<double> picks, firsts;
  for (int i = 0; i < kPicks; ++i) {
    list.resetWeights();
    firsts.push_back(secondsOf([&] { (void)list.randomFolderForScreen(1); }) * 1e3);
    picks.push_back(secondsOf([&] { (void)list.randomFolderForScreen(1); }) * 1e3);
  }
  report({.name = "pick.of-100k-records", .value = median(picks), .unit = "ms", .most = 1.0});
  report({.name = "pick.with-weights-anew", .value = median(firsts), .unit = "ms", .most = 1.0});
}

}  // namespace pelmora::bench
