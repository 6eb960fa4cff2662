#include "platform/Files.h"

namespace pelmora::platform {

bool isDirectory(const Files& files, const FilePath& path) {
  const std::optional<FileFacts> facts = files.facts(path, FinalLink::refuse);
  if (!facts) return false;
  if (facts->kind != EntryKind::alias) return facts->kind == EntryKind::folder;
  const std::optional<FilePath> target = files.resolveAlias(path);
  if (!target) return false;
  const std::optional<FileFacts> targetFacts = files.facts(*target, FinalLink::refuse);
  return targetFacts && targetFacts->kind == EntryKind::folder;
}

}  // namespace pelmora::platform
