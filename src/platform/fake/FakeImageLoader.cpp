#include "platform/fake/FakeImageLoader.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelmora::platform {

namespace {

PixelSize fitted(PixelSize size, int longestSide) {
  const double scale = static_cast<double>(longestSide) / std::max(size.width, size.height);
  if (scale >= 1) return size;
  const auto scaled = [scale](int side) {
    return std::max(1, static_cast<int>(std::lround(side * scale)));
  };
  return {scaled(size.width), scaled(size.height)};
}

std::shared_ptr<const Pixels> greyPixels(PixelSize size) {
  const auto count = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
  std::vector<std::uint8_t> bytes(4 * count, 0x80);
  for (std::size_t alpha = 3; alpha < bytes.size(); alpha += 4) bytes[alpha] = 0xFF;
  return std::make_shared<const Pixels>(Pixels{size, true, std::move(bytes)});
}

}  // namespace

Result<Image> FakeImageLoader::load(const FilePath& file, int longestSide) {
  PixelSize size;
  {
    const std::lock_guard lock(_mutex);
    _loads.push_back({file, longestSide});
    if (!_isAtWork) return Error{"nothing can be loaded"};
    if (_failsAll) return Error{"told to fail"};
    if (const auto failure = _failures.find(file); failure != _failures.end()) {
      return Error{failure->second};
    }
    if (_invalid.contains(file)) return Image{};
    const auto chosen = _sizes.find(file);
    size = chosen == _sizes.end() ? _defaultSize : chosen->second;
  }
  return Image{{static_cast<double>(size.width), static_cast<double>(size.height)},
               greyPixels(fitted(size, longestSide))};
}

bool FakeImageLoader::isAtWork() const {
  const std::lock_guard lock(_mutex);
  return _isAtWork;
}

void FakeImageLoader::setAtWork(bool isAtWork) {
  const std::lock_guard lock(_mutex);
  _isAtWork = isAtWork;
}

void FakeImageLoader::setDefaultSize(PixelSize size) {
  const std::lock_guard lock(_mutex);
  _defaultSize = size;
}

void FakeImageLoader::setSize(const FilePath& file, PixelSize size) {
  const std::lock_guard lock(_mutex);
  _sizes[file] = size;
}

void FakeImageLoader::fail(const FilePath& file, std::string reason) {
  const std::lock_guard lock(_mutex);
  _failures[file] = std::move(reason);
}

void FakeImageLoader::failAll() {
  const std::lock_guard lock(_mutex);
  _failsAll = true;
}

void FakeImageLoader::makeInvalid(const FilePath& file) {
  const std::lock_guard lock(_mutex);
  _invalid.insert(file);
}

std::vector<FakeImageLoader::Load> FakeImageLoader::loads() const {
  const std::lock_guard lock(_mutex);
  return _loads;
}

std::size_t FakeImageLoader::loadCount(const FilePath& file) const {
  const std::lock_guard lock(_mutex);
  return static_cast<std::size_t>(std::count_if(
      _loads.begin(), _loads.end(), [&file](const Load& load) { return load.file == file; }));
}

}  // namespace pelmora::platform
