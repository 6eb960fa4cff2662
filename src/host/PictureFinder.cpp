#include "host/PictureFinder.h"

#include <algorithm>
#include <string>

namespace pelmora::host {

using platform::EntryKind;
using platform::FinalLink;
using platform::Listing;

struct PictureFinder::Entry {
  std::string name;
  bool isFolder = false;
};

void PictureFinder::leaveOut(const FilePath& folder) {
  if (const auto facts = _files.facts(folder, FinalLink::follow)) _visited.insert(facts->identity);
}

void PictureFinder::find(const FilePath& fileOrFolder) {
  const auto facts = _files.facts(fileOrFolder, FinalLink::follow);
  const bool isFolder = facts && facts->kind == EntryKind::folder;
  if (!isFolder) return _answers.file(fileOrFolder);
  visitBaseFolder(fileOrFolder);
  while (!_waiting.empty()) {
    const FilePath next = std::move(_waiting.front());
    _waiting.pop_front();
    visit(next);
  }
}

void PictureFinder::visitBaseFolder(const FilePath& folder) {
  const auto listing = _files.list(folder, FinalLink::follow);
  if (!listing) return _answers.unreadable(folder, listing.error());
  _visited.insert((*listing)->folder.identity);
  std::vector<Entry> entries;
  auto kind = (*listing)->kinds.begin();
  for (const std::string_view name : *(*listing)->names) {
    entries.push_back({std::string(name), *kind++ == EntryKind::folder});
  }
  visitEntries(folder, std::move(entries));
}

void PictureFinder::visit(const FilePath& folder) {
  if (_files.hasPackageSuffix(folder.lastComponent()) && _files.isPackage(folder).value_or(true)) {
    return;
  }
  const auto listing = _files.list(folder, FinalLink::refuse);
  if (!listing) {
    const auto facts = _files.facts(folder, FinalLink::refuse);
    if (facts && facts->kind == EntryKind::alias) return visitTarget(folder);
    return _answers.unreadable(folder, listing.error());
  }
  if (isPackage(folder, *(*listing)->names)) return;
  if (!_visited.insert((*listing)->folder.identity).second) return;
  visitEntries(folder, entriesOf(folder, **listing));
}

void PictureFinder::visitTarget(const FilePath& alias) {
  const auto target = _files.resolveAlias(alias);
  if (!target) return;
  const auto listing = _files.list(*target, FinalLink::refuse);
  if (!listing) return _answers.unreadable(*target, listing.error());
  if (!_visited.insert((*listing)->folder.identity).second) return;
  std::vector<Entry> entries = entriesOf(*target, **listing);
  std::erase_if(entries, [](const Entry& entry) { return entry.isFolder; });
  visitEntries(*target, std::move(entries));
}

void PictureFinder::visitEntries(const FilePath& folder, std::vector<Entry> entries) {
  std::sort(entries.begin(), entries.end(),
            [](const Entry& left, const Entry& right) { return left.name < right.name; });
  for (const Entry& entry : entries) {
    if (entry.isFolder) {
      _waiting.push_back(folder / entry.name);
    } else {
      _answers.file(folder / entry.name);
    }
  }
}

bool PictureFinder::isPackage(const FilePath& folder, const NameList& names) const {
  return names.contains("Contents") && _files.isPackage(folder).value_or(true);
}

std::vector<PictureFinder::Entry> PictureFinder::entriesOf(const FilePath& folder,
                                                           const Listing& listing) const {
  std::vector<Entry> entries;
  auto kind = listing.kinds.begin();
  for (const std::string_view name : *listing.names) {
    const EntryKind entry = *kind++;
    const bool isFolder = entry == EntryKind::folder ||
                          (entry == EntryKind::alias && isDirectory(_files, folder / name));
    entries.push_back({std::string(name), isFolder});
  }
  return entries;
}

}  // namespace pelmora::host
