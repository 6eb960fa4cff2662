#pragma once

#include "platform/Image.h"

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace pelmora::platform {

/// Gives every path a picture of one grey, 1 × 1 unless told otherwise, decoded to fit as a real
/// loader does. Looks at no disk. Thread: any. Lock: `_mutex`.
class FakeImageLoader : public ImageLoader {
 public:
  struct Load {
    FilePath file;
    int longestSide = 0;
    bool operator==(const Load&) const = default;
  };

  [[nodiscard]] Result<Image> load(const FilePath& file, int longestSide) override;
  [[nodiscard]] bool isAtWork() const override;

  /// The size of the pictures for which no other is set.
  void setDefaultSize(PixelSize size);
  void setSize(const FilePath& file, PixelSize size);
  /// From now on the file cannot be loaded.
  void fail(const FilePath& file, std::string reason = "told to fail");
  /// From now on no file can be loaded.
  void failAll();
  /// From now on no file can be loaded, which is not the files' fault; or it is over.
  void setAtWork(bool isAtWork);
  /// From now on the file loads as a picture that is not valid.
  void makeInvalid(const FilePath& file);

  /// Every load, the failed ones too, in order.
  [[nodiscard]] std::vector<Load> loads() const;
  [[nodiscard]] std::size_t loadCount(const FilePath& file) const;

 private:
  mutable std::mutex _mutex;  // guards all below
  PixelSize _defaultSize{1, 1};
  std::map<FilePath, PixelSize> _sizes;
  std::map<FilePath, std::string> _failures;
  std::set<FilePath> _invalid;
  bool _failsAll = false;
  bool _isAtWork = true;
  std::vector<Load> _loads;
};

}  // namespace pelmora::platform
