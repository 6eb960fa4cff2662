#pragma once

#include "platform/Files.h"

#include <cstddef>
#include <map>
#include <mutex>
#include <set>
#include <vector>

namespace pelmora::platform {

/// Passes every call on to other files, counting by path, and fails where it is told to.
/// Thread: any.
class CountingFiles : public Files {
 public:
  enum class Call : std::uint8_t { list, facts, resolveAlias, isPackage };

  /// `files` must outlive this.
  explicit CountingFiles(const Files& files) : _files(files) {}

  /// How often a call was made for the path.
  [[nodiscard]] std::size_t count(Call call, const FilePath& path) const;
  /// How often a call was made, for whatever path.
  [[nodiscard]] std::size_t count(Call call) const;
  /// The paths of a call, in the order in which they were asked for.
  [[nodiscard]] std::vector<FilePath> paths(Call call) const;
  /// Forgets the calls, not the failures.
  void clearCounts();

  /// From now on the call fails for the path, as it does for one that cannot be read.
  void fail(Call call, const FilePath& path);
  void succeedAgain();

  [[nodiscard]] Result<std::shared_ptr<const Listing>> list(const FilePath& folder,
                                                            FinalLink link) const override;
  [[nodiscard]] std::optional<FileFacts> facts(const FilePath& path, FinalLink link) const override;
  [[nodiscard]] std::optional<FilePath> resolveAlias(const FilePath& path) const override;
  [[nodiscard]] std::optional<bool> isPackage(const FilePath& folder) const override;
  [[nodiscard]] bool hasPackageSuffix(std::string_view name) const override;
  [[nodiscard]] bool isStalled(const FilePath& path) const override;

 private:
  /// Counts the call; whether it shall fail.
  bool shallFail(Call call, const FilePath& path) const;

  const Files& _files;
  mutable std::mutex _mutex;  // guards all below
  mutable std::map<Call, std::vector<FilePath>> _calls;
  std::set<std::pair<Call, FilePath>> _failures;
};

}  // namespace pelmora::platform
