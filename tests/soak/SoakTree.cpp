#include "SoakTree.h"

#include "platform/linux/MountTable.h"

#include <QImage>
#include <QPainter>

#include <cmath>
#include <filesystem>
#include <stdexcept>

namespace pelmora::soak {

namespace {

constexpr int kOriginals = 8;
constexpr std::size_t kOneMatchesIn = 4;
constexpr const char* kTravels = "travels";
constexpr const char* kTravelsAgain = "travels, again";
constexpr const char* kVanishes = "other screens";
constexpr const char* kRenamed = "renamed";

/// A picture with something to see in it; every second one is a JPEG.
FilePath paintOriginal(const FilePath& folder, int number) {
  const QSize sizes[] = {{320, 240}, {240, 320}, {200, 200}, {480, 160}};
  QImage picture(sizes[number % 4], QImage::Format_RGB32);
  picture.fill(QColor::fromHsv(number * 359 / kOriginals, 160, 200));
  QPainter painter(&picture);
  painter.setBrush(Qt::white);
  painter.drawEllipse(QRect(20 * number, 30, 90, 90));
  painter.end();
  const FilePath path =
      folder / ("original " + std::to_string(number) + (number % 2 == 0 ? ".jpg" : ".png"));
  if (!picture.save(QString::fromStdString(path.bytes()))) {
    throw std::runtime_error("cannot write " + path.bytes());
  }
  return path;
}

}  // namespace

const std::vector<SoakSource>& SoakTree::sources() {
  constexpr std::uint64_t kWeekend = 65;
  constexpr std::uint64_t kWeekdays = 62;
  static const std::vector<SoakSource> sources = {
      {.name = "family", .folders = 60},
      {.name = "weekends", .days = kWeekend, .folders = 40},
      {.name = "work", .chance = 50, .days = kWeekdays, .folders = 40},
      {.name = "first screen", .chance = 25, .screens = "1", .folders = 20},
      {.name = kVanishes, .screens = "2,3", .folders = 20},
      {.name = "hardly ever", .chance = 0.001, .folders = 10},
      {.name = kTravels, .folders = 10},
  };
  return sources;
}

SoakTree::SoakTree(FilePath folder, std::size_t pictures)
    : _root(std::move(folder)),
      _areRenamedFollowed(platform::MountTable::ofThisProcess().mountOf(_root) != nullptr),
      _filesInFolder(pictures / 200),
      _travels(kTravels) {
  const FilePath originals = _root / "originals";
  std::filesystem::create_directories(originals.bytes());
  for (int i = 0; i < kOriginals; ++i) _originals.push_back(paintOriginal(originals, i));
  for (const SoakSource& source : sources()) makeSource(source);
}

FilePath SoakTree::pathOf(const SoakSource& source) const {
  return _root / (source.name == kTravels ? _travels : source.name);
}

void SoakTree::makeSource(const SoakSource& source) const {
  // Some files are in the source itself.
  makeFolder(pathOf(source));
  for (std::size_t i = 1; i < source.folders; ++i) {
    makeFolder(pathOf(source) / ("folder " + std::to_string(i)));
  }
}

void SoakTree::makeFolder(const FilePath& folder) const {
  std::filesystem::create_directories(folder.bytes());
  for (std::size_t i = 0; i < _filesInFolder; ++i) {
    const FilePath& original = _originals[i % _originals.size()];
    const std::string name = i % kOneMatchesIn == 0 ? kMatching : "picture";
    const auto extension = std::filesystem::path(original.bytes()).extension();
    std::filesystem::create_hard_link(
        original.bytes(), (folder / (name + " " + std::to_string(i))).bytes() + extension.string());
  }
}

void SoakTree::changeForDay(int day) {
  for (const SoakFolder& folder : folders()) _everThere.insert(folder.path.bytes());
  if (day == 0) return;
  // Every day a folder is renamed, so that its source has changed.
  const FilePath family = pathOf(sources().front());
  const FilePath before = family / (day % 2 == 1 ? "folder 1" : kRenamed);
  const FilePath after = family / (day % 2 == 1 ? kRenamed : "folder 1");
  std::filesystem::rename(before.bytes(), after.bytes());

  // A bookmark follows a folder that is renamed, and finds one that was made again in its place,
  // but cannot follow the latter, which is another folder.
  if (day % 2 == 1 && _areRenamedFollowed) {
    const std::string name = _travels == kTravels ? kTravelsAgain : kTravels;
    std::filesystem::rename((_root / _travels).bytes(), (_root / name).bytes());
    _travels = name;
  }
  if (day % 5 == 3) {
    std::filesystem::remove_all((_root / kVanishes).bytes());
    _isVanished = true;
  } else if (_isVanished) {
    _isVanished = false;
    for (const SoakSource& source : sources()) {
      if (source.name == kVanishes) makeSource(source);
    }
  }
}

std::vector<SoakFolder> SoakTree::folders() const {
  std::vector<SoakFolder> found;
  for (std::size_t i = 0; i < sources().size(); ++i) {
    if (sources()[i].name == kVanishes && _isVanished) continue;
    const FilePath source = pathOf(sources()[i]);
    const std::uint64_t matching = (_filesInFolder + kOneMatchesIn - 1) / kOneMatchesIn;
    found.push_back({i, source, _filesInFolder, matching});
    for (const auto& entry : std::filesystem::directory_iterator(source.bytes())) {
      if (!entry.is_directory()) continue;
      found.push_back({i, FilePath(entry.path().string()), _filesInFolder, matching});
    }
  }
  return found;
}

std::vector<FilePath> SoakTree::goneFolders() const {
  std::set<std::string> gone = _everThere;
  for (const SoakFolder& folder : folders()) gone.erase(folder.path.bytes());
  return {gone.begin(), gone.end()};
}

std::uint64_t SoakTree::weight(const SoakFolder& folder, std::uint64_t screen, int day,
                               bool isFiltered) {
  const SoakSource& source = sources()[folder.source];
  const bool isOnScreen = source.screens.empty() || screen == 0 ||
                          source.screens.find(std::to_string(screen)) != std::string::npos;
  if (!isOnScreen || ((source.days >> day) & 1) == 0) return 0;
  const auto files = static_cast<double>(isFiltered ? folder.matching : folder.files);
  return static_cast<std::uint64_t>(std::ceil(files * (source.chance / 100)));
}

}  // namespace pelmora::soak
