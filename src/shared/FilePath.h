#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace pelmora {

/// The absolute path of a file or folder, as its bytes: never assumed to be UTF-8, never
/// normalised, without a trailing slash (but for "/"). One string and nothing else, since a walk
/// makes hundreds of thousands of them; `std::filesystem::path` keeps a parsed list beside it.
class FilePath {
 public:
  FilePath() = default;
  explicit FilePath(std::string bytes) : _bytes(std::move(bytes)) {
    while (_bytes.size() > 1 && _bytes.back() == '/') _bytes.pop_back();
  }

  [[nodiscard]] const std::string& bytes() const { return _bytes; }
  [[nodiscard]] const char* c_str() const { return _bytes.c_str(); }
  [[nodiscard]] bool empty() const { return _bytes.empty(); }

  /// The name after the last slash; "/" for the root.
  [[nodiscard]] std::string_view lastComponent() const {
    const std::size_t slash = _bytes.rfind('/');
    if (slash == std::string::npos || _bytes.size() == 1) return _bytes;
    return std::string_view(_bytes).substr(slash + 1);
  }

  /// The folder that holds this; the root for itself.
  [[nodiscard]] FilePath parent() const {
    const std::size_t slash = _bytes.rfind('/');
    if (slash == std::string::npos) return FilePath();
    return FilePath(_bytes.substr(0, slash == 0 ? 1 : slash));
  }

  [[nodiscard]] FilePath operator/(std::string_view name) const {
    FilePath joined;
    joined._bytes.reserve(_bytes.size() + 1 + name.size());
    joined._bytes = _bytes;
    if (joined._bytes.empty() || joined._bytes.back() != '/') joined._bytes += '/';
    joined._bytes += name;
    return joined;
  }

  auto operator<=>(const FilePath&) const = default;

 private:
  std::string _bytes;
};

}  // namespace pelmora

// Not noexcept: containers then keep each hash beside its path, and don't hash long paths again to
// pass them over.
template <>
struct std::hash<pelmora::FilePath> {
  std::size_t operator()(const pelmora::FilePath& path) const {
    return std::hash<std::string>{}(path.bytes());
  }
};
