#include "sources/FolderRecords.h"

#include "sources/ScreenIndexAdditions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace pelmora::sources {

namespace {

std::uint64_t weightOf(std::size_t files, double priority) {
  const double weight = std::ceil(static_cast<double>(files) * priority);
  constexpr double kEnd = 18446744073709551616.0;  // 2^64, the first that doesn't fit
  if (!(weight > 0)) return 0;
  if (weight >= kEnd) return std::numeric_limits<std::uint64_t>::max();
  return static_cast<std::uint64_t>(weight);
}

std::uint64_t dayBit(int day) { return std::uint64_t{1} << (static_cast<unsigned>(day) % 32); }

}  // namespace

void FolderRecords::append(std::shared_ptr<PMFolder> record) {
  if (record->identity) _serials.try_emplace(*record->identity, _nextSerial);
  appendWithSerial(std::move(record));
}

bool FolderRecords::appendIfNew(std::shared_ptr<PMFolder> record) {
  if (record->identity && !_serials.try_emplace(*record->identity, _nextSerial).second)
    return false;
  appendWithSerial(std::move(record));
  return true;
}

void FolderRecords::appendWithSerial(std::shared_ptr<PMFolder> record) {
  _records.push_back(std::move(record));
  _weighings.push_back({.serial = _nextSerial++});
  weigh(_records.size() - 1);
}

void FolderRecords::remove(const PMFolder& record) {
  const auto at = std::find_if(_records.begin(), _records.end(),
                               [&record](const auto& other) { return other.get() == &record; });
  if (at == _records.end()) return;
  const auto weighing = _weighings.begin() + (at - _records.begin());
  const std::optional<platform::FileIdentity> identity = record.identity;
  const bool wasFirst = identity && _serials.at(*identity) == weighing->serial;
  const auto nextWeighing = _weighings.erase(weighing);
  const auto next = _records.erase(at);  // may end the record
  if (!wasFirst) return;

  _serials.erase(*identity);
  const auto same = std::find_if(
      next, _records.end(), [&identity](const auto& other) { return other->identity == identity; });
  if (same != _records.end()) _serials.emplace(*identity, nextWeighing[same - next].serial);
}

void FolderRecords::clear() {
  _records.clear();
  _weighings.clear();
  _screens.clear();
  _serials.clear();
}

std::uint64_t FolderRecords::indexOf(const platform::FileIdentity& identity) const {
  const auto serial = _serials.find(identity);
  if (serial == _serials.end()) return kNotFound;
  const auto at = std::lower_bound(
      _weighings.begin(), _weighings.end(), serial->second,
      [](const Weighing& weighing, std::uint64_t wanted) { return weighing.serial < wanted; });
  return static_cast<std::uint64_t>(at - _weighings.begin());
}

void FolderRecords::setPriorityAndScreens(std::uint64_t index, double priority,
                                          std::string screens) {
  if (index >= _records.size()) return;
  _records[index]->priority = priority;
  _records[index]->screens = std::move(screens);
  weigh(index);
}

void FolderRecords::addSpotlightFilename(std::uint64_t index, std::string name) {
  if (index >= _records.size()) return;
  _records[index]->addSpotlightFilename(std::move(name));
  weigh(index);
}

void FolderRecords::weigh(std::size_t index) {
  const PMFolder& record = *_records[index];
  Weighing& weighing = _weighings[index];
  weighing.weight = weightOf(record.filenames->size(), record.priority);
  weighing.filteredWeight = weightOf(record.spotlightFilenames.size(), record.priority);
  weighing.days = record.days;
  weighing.screens = numberOfScreens(record.screens);
}

std::uint32_t FolderRecords::numberOfScreens(const std::string& screens) {
  const auto at = std::find(_screens.begin(), _screens.end(), screens);
  const auto number = static_cast<std::uint32_t>(at - _screens.begin());
  if (at == _screens.end()) _screens.push_back(screens);
  return number;
}

std::vector<char> FolderRecords::screensWith(std::uint64_t screen) const {
  std::vector<char> included;
  included.reserve(_screens.size());
  for (const std::string& screens : _screens) {
    included.push_back(includesScreenIndex(screens, screen) ? 1 : 0);
  }
  return included;
}

std::uint64_t FolderRecords::sumOfWeights(const Eligibility& eligibility) const {
  const std::vector<char> included = screensWith(eligibility.screen);
  const std::uint64_t day = dayBit(eligibility.day);
  std::uint64_t sum = 0;
  for (const Weighing& weighing : _weighings) {
    if (included[weighing.screens] == 0 || (weighing.days & day) == 0) continue;
    sum += eligibility.isFiltered ? weighing.filteredWeight : weighing.weight;
  }
  return sum;
}

DrawnRecord FolderRecords::drawnRecord(std::uint64_t number, const Eligibility& eligibility) const {
  const std::vector<char> included = screensWith(eligibility.screen);
  const std::uint64_t day = dayBit(eligibility.day);
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < _weighings.size(); ++i) {
    const Weighing& weighing = _weighings[i];
    if (included[weighing.screens] == 0 || (weighing.days & day) == 0) continue;
    sum += eligibility.isFiltered ? weighing.filteredWeight : weighing.weight;
    if (number < sum) return {_records[i], sum};
  }
  return {nullptr, sum};
}

std::uint64_t FolderRecords::countForScreen(std::uint64_t screen) const {
  const std::vector<char> included = screensWith(screen);
  return static_cast<std::uint64_t>(std::count_if(
      _weighings.begin(), _weighings.end(),
      [&included](const Weighing& weighing) { return included[weighing.screens] != 0; }));
}

}  // namespace pelmora::sources
