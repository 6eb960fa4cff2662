#pragma once

#include "platform/fake/FakeServices.h"
#include "platform/linux/index/MetadataIndex.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SystemClock.h"
#include "platform/Log.h"
#include "platform/Services.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string_view>

namespace pelmora::stress {

/// Counts lines, since to keep them all would fill the memory. Thread: any.
class CountingLog : public platform::Log {
 public:
  void write(std::string_view line) override {
    ++_lines;
    if (line.find("lock") != std::string_view::npos &&
        line.find("failed") != std::string_view::npos) {
      ++_failedLocks;
    }
  }
  [[nodiscard]] std::uint64_t lines() const { return _lines; }
  [[nodiscard]] std::uint64_t failedLocks() const { return _failedLocks; }

 private:
  std::atomic<std::uint64_t> _lines{0};
  std::atomic<std::uint64_t> _failedLocks{0};
};

/// Pictures for most paths, chosen by the path, so that now and then a whole folder fails.
/// Thread: any.
class MostlyLoading : public platform::ImageLoader {
 public:
  [[nodiscard]] Result<platform::Image> load(const FilePath& file, int /*longestSide*/) override {
    ++_loads;
    const std::size_t kind = std::hash<std::string>{}(file.bytes()) % 4;
    if (kind == 0) return Error{"told to fail"};
    if (kind == 1) return platform::Image{};
    return platform::Image{{1, 1}, _pixels};
  }
  [[nodiscard]] std::uint64_t loads() const { return _loads; }

 private:
  std::atomic<std::uint64_t> _loads{0};
  const std::shared_ptr<const platform::Pixels> _pixels = std::make_shared<const platform::Pixels>(
      platform::Pixels{{1, 1}, true, std::vector<std::uint8_t>(4, 0xFF)});
};

/// The fakes, but for what would write down every call, and with the real index of metadata.
/// Thread: main makes it.
struct StressServices {
  explicit StressServices(const FilePath& caches) {
    fakes.userFolders.cachesFolders = {caches};
    fakes.displays.displays = {
        platform::FakeDisplays::display(1, {{0, 0}, {1920, 1080}}),
        platform::FakeDisplays::display(2, {{1920, 0}, {1280, 1024}}),
        platform::FakeDisplays::display(3, {{3200, 0}, {800, 600}}),
    };
  }

  platform::FakeServices fakes;
  CountingLog log;
  MostlyLoading images;
  platform::PosixFiles files;
  platform::SystemClock realClock;
  platform::MetadataIndex metadata{{.files = files,
                                    .log = log,
                                    .clock = realClock,
                                    .notifications = fakes.notifications,
                                    .inspect = [](auto opened, const auto& take) -> Status {
                                      // The files are empty.
                                      const platform::EmbeddedMetadata nothing{
                                          platform::metadata::FileMetadata{}};
                                      for (std::size_t i = 0; i < opened.size(); ++i) {
                                        if (!take(i, nothing)) break;
                                      }
                                      return Done{};
                                    },
                                    .file = [] { return FilePath(); }}};
  const platform::Services services{.clock = fakes.clock,
                                    .scheduler = fakes.scheduler,
                                    .log = log,
                                    .files = files,
                                    .userFolders = fakes.userFolders,
                                    .bookmarks = fakes.bookmarks,
                                    .preferences = fakes.preferences,
                                    .displays = fakes.displays,
                                    .workspace = fakes.workspace,
                                    .images = images,
                                    .metadata = metadata,
                                    .sound = fakes.sound,
                                    .notifications = fakes.notifications,
                                    .distributedNotifications = fakes.distributedNotifications,
                                    .runningApplications = fakes.runningApplications,
                                    .scripts = fakes.scripts,
                                    .enumerationConcurrency = 4};
};

}  // namespace pelmora::stress
