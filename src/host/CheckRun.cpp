#include "host/CheckRun.h"

#include "host/GivenPath.h"
#include "host/PictureFile.h"
#include "host/PictureFinder.h"
#include "platform/PrintableLine.h"

#include <QColorSpace>
#include <QImage>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace pelmora::host {

namespace {

using platform::printableLine;

constexpr std::size_t kLongestStem = 240;  // bytes: leaves room for "-1000000.png"

/// Text of the file's own as one part of a line, whose parts are divided by commas.
std::string part(std::string text) {
  std::replace(text.begin(), text.end(), ',', ';');
  text.erase(text.find_last_not_of(' ') + 1);
  return printableLine(text);
}

std::string describeTags(const std::vector<std::string>& tags) {
  if (tags.empty()) return "no tags";
  std::string text = "tags ";
  for (const std::string& tag : tags) text += (&tag == &tags.front() ? "" : "; ") + tag;
  return part(std::move(text));
}

std::string describe(const platform::InspectedPicture& picture,
                     const std::vector<std::string>& tags, double seconds) {
  const auto number = [](double value) { return std::to_string(std::lround(value)); };
  return part(picture.format) + ", " + number(picture.image.size.width) + " × " +
         number(picture.image.size.height) + ", orientation " +
         std::to_string(picture.orientation) + ", " + part(picture.profile) + ", " +
         describeTags(tags) + ", " + number(seconds * 1000) + " ms";
}

/// The same pixels, for as long as `pixels` are there.
QImage imageOf(const platform::Pixels& pixels) {
  QImage image(pixels.bytes.data(), pixels.size.width, pixels.size.height, 4 * pixels.size.width,
               pixels.opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
  image.setColorSpace(QColorSpace::SRgb);
  return image;
}

}  // namespace

bool CheckRun::run() {
  if (const Status prepared = prepareOut(); !prepared) {
    _tools.complain(prepared.error().message);
    return false;
  }
  for (const std::string& word : _request.words) checkWord(word);
  return _isAllWell;
}

/// Makes the folder to write to. One that pictures are read from could lose some to those written.
Status CheckRun::prepareOut() const {
  if (_request.out.empty()) return Done{};
  const std::string name = printableLine(_request.out.bytes());
  std::error_code problem;
  std::filesystem::create_directories(_request.out.bytes(), problem);
  if (problem) return Error{name + ": " + problem.message()};
  const auto out = _tools.files.facts(_request.out, platform::FinalLink::follow);
  for (const std::string& word : _request.words) {
    const FilePath path = GivenPath(word).absolute();
    const bool isFolder = platform::isDirectory(_tools.files, path);
    const auto read =
        _tools.files.facts(isFolder ? path : path.parent(), platform::FinalLink::follow);
    if (out && read && out->identity == read->identity) {
      return Error{name + ": pictures are read from there; choose another folder"};
    }
  }
  return Done{};
}

void CheckRun::checkWord(const std::string& word) {
  const GivenPath start(word);
  const auto shown = [&start](const FilePath& path) { return printableLine(start.shown(path)); };
  PictureFinder finder(_tools.files,
                       {.file = [&](const FilePath& file) { checkFile(file, shown(file)); },
                        .unreadable = [&](const FilePath& folder,
                                          const Error& why) { refuse(shown(folder), why); }});
  if (!_request.out.empty()) finder.leaveOut(_request.out);
  finder.find(start.absolute());
}

void CheckRun::checkFile(const FilePath& file, const std::string& shownPath) {
  const double begin = _tools.clock.mediaTime();
  const auto picture = _tools.inspect(file, _request.longestSide);
  const double seconds = _tools.clock.mediaTime() - begin;
  if (!picture) return refuse(shownPath, picture.error());
  if (!picture->image.isValid()) return refuse(shownPath, {"it has no pixels"});
  _tools.tell(shownPath + ": " + describe(*picture, _tools.workspace.tagNames(file), seconds));
  if (!_request.out.empty()) writeOut(file, picture->image);
}

void CheckRun::refuse(const std::string& shownPath, const Error& why) {
  _isAllWell = false;
  _tools.tell(shownPath + ": not shown: " + printableLine(why.message));
}

void CheckRun::writeOut(const FilePath& file, const platform::Image& image) {
  const FilePath path = _request.out / nameFor(file);
  const Status written = writePicture(path.bytes(), imageOf(*image.pixels));
  if (written) return;
  _isAllWell = false;
  _tools.complain(printableLine(written.error().message));
}

std::string CheckRun::nameFor(const FilePath& file) {
  const std::string stem(file.lastComponent().substr(0, kLongestStem));
  std::string name = stem + ".png";
  for (int number = 2; !_namesWritten.insert(name).second; ++number) {
    name = stem + "-" + std::to_string(number) + ".png";
  }
  return name;
}

}  // namespace pelmora::host
