#include "host/ResourceFolder.h"

#include "host/DecoderPath.h"

#include <filesystem>
#include <system_error>

namespace pelmora::host {

FilePath resourceFolder() { return resourceFolderFor(runningProgram()); }

FilePath resourceFolderFor(const FilePath& program) {
  std::error_code error;
  const FilePath beside = program.parent() / "data";
  if (std::filesystem::is_directory(beside.bytes(), error)) return beside;
  return installedFolder(program, PELMORA_RESOURCES);
}

}  // namespace pelmora::host
