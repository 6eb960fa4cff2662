#include "host/SampleFolders.h"

#include "host/SamplePictures.h"
#include "platform/Log.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

namespace pelmora::host {

namespace {

constexpr int kMostEntries = 5000;

bool hasPictureSuffix(std::string name) {
  static constexpr std::array<std::string_view, 13> kSuffixes = {
      ".jpg", ".jpeg", ".png",  ".webp", ".heic", ".heif", ".avif",
      ".jxl", ".tif",  ".tiff", ".gif",  ".mpo",  ".bmp"};
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return std::any_of(kSuffixes.begin(), kSuffixes.end(),
                     [&name](std::string_view suffix) { return name.ends_with(suffix); });
}

}  // namespace

bool holdsPictures(const FilePath& folder) {
  namespace fs = std::filesystem;
  std::error_code problem;
  int left = kMostEntries;
  fs::recursive_directory_iterator each(folder.bytes(),
                                        fs::directory_options::skip_permission_denied, problem);
  for (; !problem && each != fs::recursive_directory_iterator(); each.increment(problem)) {
    if (--left == 0) return true;
    std::error_code unreadable;
    if (each->is_regular_file(unreadable) && hasPictureSuffix(each->path().filename().string())) {
      return true;
    }
  }
  return false;
}

SampleFolders::SampleFolders(const platform::UserFolders& folders, FilePath samples,
                             platform::Log& log)
    : _folders(folders), _samples(std::move(samples)), _log(log) {}

std::vector<FilePath> SampleFolders::pictures() const {
  if (!_looked) _found = find();
  _looked = true;
  return _found;
}

std::vector<FilePath> SampleFolders::find() const {
  std::vector<FilePath> pictures = _folders.pictures();
  if (!pictures.empty() && holdsPictures(pictures.front())) return pictures;
  std::error_code unmade;  // then painting fails, and says why
  std::filesystem::create_directories(_samples.parent().bytes(), unmade);
  const Status painted = paintSamplePictures(_samples);
  if (!painted) {
    _log.print("Pelmora: No sample pictures could be painted in %s: %s", _samples.c_str(),
               painted.error().message.c_str());
    return pictures;
  }
  std::fprintf(stderr,
               "pelmora: There are no pictures in your pictures folder yet, so sample pictures are "
               "shown, from %s. Put pictures into it, or add a folder: pelmora sources add DIR\n",
               _samples.c_str());
  return {_samples};
}

}  // namespace pelmora::host
