#include "config/PathText.h"

#include "platform/PlainText.h"

#include <QByteArray>

#include <string>

namespace pelmora::config {

namespace {

constexpr std::string_view kScheme = "file:";
constexpr std::string_view kLocalHost = "localhost";
constexpr std::string_view kLineEnds = "\r\n";

}  // namespace

QString pathText(const FilePath& path) {
  return QString::fromStdString(platform::plainText(path.bytes()));
}

std::optional<FilePath> pathOfUri(std::string_view uri) {
  if (!uri.starts_with(kScheme)) return std::nullopt;
  uri.remove_prefix(kScheme.size());
  if (uri.starts_with("//")) {
    uri.remove_prefix(2);
    if (uri.starts_with(kLocalHost)) uri.remove_prefix(kLocalHost.size());
  }
  if (!uri.starts_with('/')) return std::nullopt;
  const QByteArray encoded(uri.data(), static_cast<qsizetype>(uri.size()));
  std::string bytes = QByteArray::fromPercentEncoding(encoded).toStdString();
  // No path has such a byte, and the system would read a shorter one.
  if (bytes.find('\0') != std::string::npos) return std::nullopt;
  return FilePath(std::move(bytes));
}

std::vector<FilePath> pathsOfUriList(std::string_view list) {
  std::vector<FilePath> paths;
  while (!list.empty()) {
    const std::string_view line = list.substr(0, list.find_first_of(kLineEnds));
    if (auto path = pathOfUri(line)) paths.push_back(*std::move(path));
    list.remove_prefix(line.size());
    const auto next = list.find_first_not_of(kLineEnds);
    list.remove_prefix(next == std::string_view::npos ? list.size() : next);
  }
  return paths;
}

}  // namespace pelmora::config
