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

FilePath pathOf(std::string_view name, const FilePath& program) {
  const FilePath folder = program.parent();
  if (const FilePath beside = folder / name; isFile(beside)) return beside;
  return folder.parent() / "libexec" / "pelmora" / name;
}

}  // namespace

FilePath runningProgram() {
  std::error_code error;
  return FilePath(std::filesystem::read_symlink("/proc/self/exe", error).string());
}

FilePath decoderPath() { return decoderPathFor(runningProgram()); }

FilePath decoderPathFor(const FilePath& program) { return pathOf(kDecoder, program); }

FilePath inspectorPath() { return pathOf(kInspector, runningProgram()); }

}  // namespace pelmora::host
