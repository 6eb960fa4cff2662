#include "host/ResourceFolder.h"

#include "host/DecoderPath.h"

#include <filesystem>
#include <system_error>

namespace pelmora::host {

FilePath resourceFolder() { return resourceFolderFor(runningProgram()); }

FilePath resourceFolderFor(const FilePath& program) {
  const FilePath folder = program.parent();
  std::error_code error;
  const FilePath beside = folder / "data";
  if (std::filesystem::is_directory(beside.bytes(), error)) return beside;
  return folder.parent() / "share" / "pelmora";
}

}  // namespace pelmora::host
