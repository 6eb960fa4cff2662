#include "platform/linux/LinuxWorkspace.h"

#include "platform/linux/ExtendedAttribute.h"
#include "platform/linux/FileTags.h"
#include "platform/linux/PatientFiles.h"

#include <algorithm>
#include <utility>

namespace pelmora::platform {

namespace {

constexpr Color rgb(int red, int green, int blue) {
  return {red / 255.0, green / 255.0, blue / 255.0, 1};
}

/// "None" has a colour because the lists go by position: one that cannot be seen, and is light, so
/// that text on it stays dark.
std::vector<Label> standardLabels() {
  return {
      {"None", {1, 1, 1, 0}},        {"Gray", rgb(142, 142, 147)},  {"Green", rgb(91, 185, 70)},
      {"Purple", rgb(164, 87, 194)}, {"Blue", rgb(62, 134, 232)},   {"Yellow", rgb(244, 200, 58)},
      {"Red", rgb(232, 72, 63)},     {"Orange", rgb(242, 145, 58)},
  };
}

void setLabel(std::vector<Label>& labels, Label label) {
  const auto known = std::find_if(labels.begin(), labels.end(),
                                  [&](const Label& other) { return other.name == label.name; });
  if (known != labels.end()) {
    known->color = label.color;
  } else {
    labels.push_back(std::move(label));
  }
}

}  // namespace

LinuxWorkspace::LinuxWorkspace(const FilePath& labelsFile, Log& log, ReadEmbedded readEmbedded,
                               const PatientFiles* files)
    : _labels(standardLabels()), _readEmbedded(std::move(readEmbedded)), _files(files) {
  for (Label& label : labelsInFile(labelsFile, log)) setLabel(_labels, std::move(label));
}

std::vector<std::string> LinuxWorkspace::fileLabels() const {
  std::vector<std::string> names;
  for (const Label& label : _labels) names.push_back(label.name);
  return names;
}

std::vector<Color> LinuxWorkspace::fileLabelColors() const {
  std::vector<Color> colors;
  for (const Label& label : _labels) colors.push_back(label.color);
  return colors;
}

std::vector<std::string> LinuxWorkspace::tagNames(const FilePath& file) const {
  const auto read = [file] {
    return tagsOfAttributes([&file](const char* name) { return extendedAttribute(file, name); });
  };
  const auto tags = _files ? _files->wait(file, read) : std::optional(read());
  if (!tags) return {};
  return tags->empty() ? _readEmbedded(file) : *tags;
}

}  // namespace pelmora::platform
