#include "host/DecoderPath.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace pelmora::host {

namespace {

constexpr std::string_view kDecoder = "pelmora-decoder";
constexpr std::string_view kInspector = "pelmora-inspector";

bool isFile(const FilePath& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path.bytes(), error);
}

FilePath thisProgram() {
  std::error_code error;
  return FilePath(std::filesystem::read_symlink("/proc/self/exe", error).string());
}

FilePath pathOf(std::string_view name, const FilePath& program) {
  const FilePath folder = program.parent();
  if (const FilePath beside = folder / name; isFile(beside)) return beside;
  return folder.parent() / "libexec" / "pelmora" / name;
}

}  // namespace

FilePath decoderPath() { return decoderPathFor(thisProgram()); }

FilePath decoderPathFor(const FilePath& program) { return pathOf(kDecoder, program); }

FilePath inspectorPath() { return pathOf(kInspector, thisProgram()); }

}  // namespace pelmora::host
