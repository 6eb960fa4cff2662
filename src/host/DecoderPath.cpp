#include "host/DecoderPath.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace pelmora::host {

namespace {

constexpr std::string_view kName = "pelmora-decoder";

bool isFile(const FilePath& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path.bytes(), error);
}

}  // namespace

FilePath decoderPath() {
  std::error_code error;
  return decoderPathFor(FilePath(std::filesystem::read_symlink("/proc/self/exe", error).string()));
}

FilePath decoderPathFor(const FilePath& program) {
  const FilePath folder = program.parent();
  if (const FilePath beside = folder / kName; isFile(beside)) return beside;
  return folder.parent() / "libexec" / "pelmora" / kName;
}

}  // namespace pelmora::host
