#pragma once

#include "platform/Files.h"
#include "sources/PMFolder.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace pelmora::sources {

/// What a lookup that finds nothing returns.
inline constexpr std::uint64_t kNotFound = 9223372036854775807ULL;

/// Which records take part in a choice, and by which of their names.
struct Eligibility {
  std::uint64_t screen = 0;
  int day = 0;              // 0 = Sunday
  bool isFiltered = false;  // the names that the metadata filter admitted count
};

/// Where a drawn number leads: the record, if the records' weights reach that far, and the sum of
/// the weights passed on the way.
struct DrawnRecord {
  std::shared_ptr<PMFolder> record;
  std::uint64_t runningSum = 0;
};

/// The folder records in the order in which they were added, each found by its identity through a
/// hash, with what a choice among them needs side by side: 100,000 records are weighed in a
/// fraction of a millisecond. Thread: none of its own; the list's `dirItemsLock` guards it, and
/// every change of a record in it goes through it.
class FolderRecords {
 public:
  [[nodiscard]] std::size_t size() const { return _records.size(); }
  [[nodiscard]] bool empty() const { return _records.empty(); }
  [[nodiscard]] const std::vector<std::shared_ptr<PMFolder>>& all() const { return _records; }

  void append(std::shared_ptr<PMFolder> record);
  /// The same, unless there is a record with its identity; whether it was appended.
  bool appendIfNew(std::shared_ptr<PMFolder> record);
  /// Takes this record out; an unknown one is ignored.
  void remove(const PMFolder& record);
  void clear();

  /// The index of the first record with the identity, or `kNotFound`.
  [[nodiscard]] std::uint64_t indexOf(const platform::FileIdentity& identity) const;

  // Changes of a record; an index that is not below the size is ignored.
  void setPriorityAndScreens(std::uint64_t index, double priority, std::string screens);
  void addSpotlightFilename(std::uint64_t index, std::string name);

  /// The weights of all eligible records: files × priority, rounded up, each.
  [[nodiscard]] std::uint64_t sumOfWeights(const Eligibility& eligibility) const;
  /// The eligible record in whose share of the weights, laid end to end, `number` lies.
  [[nodiscard]] DrawnRecord drawnRecord(std::uint64_t number, const Eligibility& eligibility) const;
  /// How many records may be shown on a screen, whatever the day.
  [[nodiscard]] std::uint64_t countForScreen(std::uint64_t screen) const;

 private:
  /// What a choice needs of the record at the same index.
  struct Weighing {
    std::uint64_t serial = 0;  // rises with the index
    std::uint64_t weight = 0;
    std::uint64_t filteredWeight = 0;
    std::uint64_t days = 0;
    std::uint32_t screens = 0;  // index into _screens
  };

  void appendWithSerial(std::shared_ptr<PMFolder> record);
  void weigh(std::size_t index);
  [[nodiscard]] std::uint32_t numberOfScreens(const std::string& screens);
  /// For each of `_screens`, whether it includes the screen.
  [[nodiscard]] std::vector<char> screensWith(std::uint64_t screen) const;

  std::vector<std::shared_ptr<PMFolder>> _records;
  std::vector<Weighing> _weighings;
  std::vector<std::string> _screens;  // the different screens strings: a handful
  std::unordered_map<platform::FileIdentity, std::uint64_t, platform::FileIdentityHash> _serials;
  std::uint64_t _nextSerial = 0;
};

}  // namespace pelmora::sources
