#include "platform/linux/LabelFile.h"

#include "platform/linux/SmallFile.h"
#include "platform/PlainText.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <charconv>
#include <optional>

namespace pelmora::platform {

namespace {

constexpr std::size_t kMaxFileBytes = 64 * 1024;

std::optional<double> component(std::string_view hexDigits) {
  unsigned value = 0;
  const char* const end = hexDigits.data() + hexDigits.size();
  const auto [at, error] = std::from_chars(hexDigits.data(), end, value, 16);
  if (error != std::errc() || at != end) return std::nullopt;
  return value / 255.0;
}

std::optional<Color> colorOf(std::string_view text) {
  if (text.size() != 7 || text.front() != '#') return std::nullopt;
  const auto red = component(text.substr(1, 2));
  const auto green = component(text.substr(3, 2));
  const auto blue = component(text.substr(5, 2));
  if (!red || !green || !blue) return std::nullopt;
  return Color{*red, *green, *blue, 1};
}

std::optional<Label> labelOf(std::string_view line) {
  const std::size_t blank = line.find_last_of(" \t");
  if (blank == std::string_view::npos) return std::nullopt;
  const std::optional<Color> color = colorOf(line.substr(blank + 1));
  std::string name = plainText(line.substr(0, blank));
  if (!color || name.empty()) return std::nullopt;
  return Label{std::move(name), *color};
}

std::string_view withoutTrailingBlanks(std::string_view line) {
  return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

bool isThere(const FilePath& file) {
  struct stat status {};
  return ::stat(file.c_str(), &status) == 0;
}

}  // namespace

std::vector<Label> labelsInFile(const FilePath& file, Log& log) {
  std::vector<Label> labels;
  if (!isThere(file)) return labels;
  const Result<std::string> contents = readSmallFile(AT_FDCWD, file.c_str(), kMaxFileBytes);
  if (!contents) {
    log.print("Pelmora: Error reading labels: %s", contents.error().message.c_str());
    return labels;
  }
  std::string_view text = *contents;
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    const std::string_view line = withoutTrailingBlanks(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.empty() || line.front() == '#') continue;
    if (auto label = labelOf(line)) {
      labels.push_back(std::move(*label));
    } else {
      log.print("Pelmora: Error reading labels: %s, line %d: not a name and a colour", file.c_str(),
                number);
    }
  }
  return labels;
}

}  // namespace pelmora::platform
