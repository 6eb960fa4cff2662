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
  if (const FilePath beside = program.parent() / name; isFile(beside)) return beside;
  return installedFolder(program, PELMORA_HELPERS) / name;
}

}  // namespace

FilePath runningProgram() {
  std::error_code error;
  return FilePath(std::filesystem::read_symlink("/proc/self/exe", error).string());
}

FilePath installedFolder(const FilePath& program, std::string_view fromItsFolder) {
  const std::filesystem::path folder(program.parent().bytes());
  return FilePath((folder / fromItsFolder).lexically_normal().string());
}

FilePath decoderPath() { return decoderPathFor(runningProgram()); }

FilePath decoderPathFor(const FilePath& program) { return pathOf(kDecoder, program); }

FilePath inspectorPath() { return pathOf(kInspector, runningProgram()); }

}  // namespace pelmora::host
