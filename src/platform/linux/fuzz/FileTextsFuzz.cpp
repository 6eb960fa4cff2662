#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/FileTags.h"
#include "platform/linux/FileUrl.h"
#include "platform/linux/FolderReader.h"
#include "platform/linux/LabelFile.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/UserDirectories.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace pelmora;
using namespace pelmora::platform;

void checkTags(const std::vector<std::string>& tags) {
  if (tags.size() > kMaxTags) std::abort();
  for (const std::string& tag : tags) {
    if (tag.empty() || tag.size() > kMaxTagBytes) std::abort();
  }
}

void checkPath(const std::optional<FilePath>& path) {
  if (!path) return;
  const std::string& bytes = path->bytes();
  if (!bytes.starts_with('/') || bytes.find('\0') != std::string::npos) std::abort();
}

bool hasLine(std::string_view text, std::string_view line) {
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    if (text.substr(at, end - at) == line) return true;
    at = end + 1;
  }
  return false;
}

}  // namespace

// Any bytes as each of the small texts beside pictures: the first says which.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static const TemporaryFolder folder;
  static const FilePath picture = folder.write("listed/a.jpg");
  RecordingLog log;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  switch (data[0] % 7) {
    case 0:
      checkTags(tagsOfText(text));
      break;
    case 1:
      checkTags(tagsOfPropertyList(text));
      break;
    case 2:
      if (const DesktopEntry entry = DesktopEntry::parse(text); entry.isFileLink()) {
        checkPath(localPathOfFileUrl(entry.url));
      }
      break;
    case 3:
      checkPath(localPathOfFileUrl(text));
      break;
    case 4:
      checkPath(userDirectory(text, "XDG_PICTURES_DIR", FilePath("/home/me")));
      break;
    case 5:
      for (const Label& label : labelsInFile(folder.write("labels", text), log)) {
        if (label.name.empty()) std::abort();
      }
      break;
    default: {
      folder.write("listed/.hidden", text);
      const auto listing = PosixFiles().list(folder.path() / "listed", FinalLink::refuse);
      const std::size_t shown = hasLine(text, "a.jpg") ? 0 : 1;
      if (!listing || (*listing)->names->size() != shown) std::abort();
    }
  }
  return 0;
}
