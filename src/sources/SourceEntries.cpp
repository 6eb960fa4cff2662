#include "sources/SourceEntries.h"

namespace pelmora::sources {

bool SourceEntries::isEnabled(const platform::FileIdentity& folder) const {
  for (const SourceEntry& entry : _entries) {
    if (entry.identity == folder) return entry.enabled;
  }
  return true;
}

FolderValues SourceEntries::valuesForFolder(std::string_view folder) const {
  const SourceEntry* decisive = nullptr;
  for (const SourceEntry& entry : _entries) {
    const std::string& path = entry.url.bytes();
    if (!folder.starts_with(path)) continue;
    if (!decisive || path.size() > decisive->url.bytes().size()) decisive = &entry;
  }
  if (!decisive) return {};
  return {decisive->priority(), decisive->screens, decisive->days};
}

}  // namespace pelmora::sources
