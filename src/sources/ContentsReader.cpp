#include "sources/ContentsReader.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace pelmora::sources {

using cache::FolderCache;
using platform::EntryKind;
using platform::FileFacts;
using platform::FinalLink;
using platform::Listing;

namespace {

const SharedNames& noNames() {
  static const SharedNames none = std::make_shared<const NameList>();
  return none;
}

SharedNames orNone(SharedNames names) {
  if (!names) return noNames();
  return names;
}

class NameSorter {
 public:
  void take(std::string_view name, bool isFolder) { (isFolder ? _folders : _files).append(name); }
  [[nodiscard]] FolderContents finish() { return {_files.finish(), _folders.finish()}; }

 private:
  NameListBuilder _files;
  NameListBuilder _folders;
};

bool hasOnly(EntryKind kind, const Listing& listing) {
  return std::all_of(listing.kinds.begin(), listing.kinds.end(),
                     [kind](EntryKind other) { return other == kind; });
}

FolderContents splitBaseFolder(const Listing& listing, const platform::Operation& operation) {
  if (hasOnly(EntryKind::file, listing) && !operation.isCancelled()) {
    return {listing.names, noNames()};
  }
  NameSorter sorter;
  auto kind = listing.kinds.begin();
  for (const std::string_view name : *listing.names) {
    sorter.take(name, *kind++ == EntryKind::folder);
    if (operation.isCancelled()) break;
  }
  return sorter.finish();
}

}  // namespace

BaseFolderContents ContentsReader::readBaseFolder(const FilePath& folder,
                                                  const platform::Operation& operation) const {
  if (const auto cachedDate = _cache.mdateOfFolder(folder)) {
    const auto facts = _files.facts(folder, FinalLink::follow);
    if (facts && facts->contentModificationDate == *cachedDate) {
      return {
          {orNone(_cache.fileNamesOfFolder(folder)), orNone(_cache.folderNamesOfFolder(folder))},
          facts,
          true};
    }
  }
  const auto listing = _files.list(folder, FinalLink::follow);
  if (!listing) return {{noNames(), noNames()}, std::nullopt, false};
  return {splitBaseFolder(**listing, operation), (*listing)->folder, false};
}

std::optional<FoundFolder> ContentsReader::find(FilePath subfolder) const {
  if (_files.hasPackageSuffix(subfolder.lastComponent()) &&
      _files.isPackage(subfolder).value_or(true)) {
    return std::nullopt;
  }
  if (auto cached = _cache.cachedFolder(subfolder)) {
    return findUnlisted(std::move(subfolder), std::move(cached));
  }
  // Its names are needed, so opening it is the cheapest look at it.
  auto listing = _files.list(subfolder, FinalLink::refuse);
  if (!listing) return findUnlisted(std::move(subfolder), std::nullopt);
  const FileFacts facts = (*listing)->folder;
  return FoundFolder{std::move(subfolder), facts, false, *std::move(listing), std::nullopt};
}

std::optional<FoundFolder> ContentsReader::findUnlisted(
    FilePath subfolder, std::optional<FolderCache::CachedFolder> cached) const {
  const auto facts = _files.facts(subfolder, FinalLink::refuse);
  if (!facts) return std::nullopt;
  if (facts->kind == EntryKind::alias) return findTarget(subfolder);
  if (facts->kind != EntryKind::folder) return std::nullopt;
  return FoundFolder{std::move(subfolder), *facts, false, nullptr, std::move(cached)};
}

std::optional<FoundFolder> ContentsReader::findTarget(const FilePath& alias) const {
  auto target = _files.resolveAlias(alias);
  if (!target) return std::nullopt;
  const auto facts = _files.facts(*target, FinalLink::follow);
  if (!facts || facts->kind != EntryKind::folder) return std::nullopt;
  auto cached = _cache.cachedFolder(*target);
  return FoundFolder{*std::move(target), *facts, true, nullptr, std::move(cached)};
}

std::optional<FolderContents> ContentsReader::readFolder(const FoundFolder& folder) const {
  std::shared_ptr<const Listing> listing = folder.listing;
  if (!listing) {
    if (auto cached = cachedContents(folder)) {
      if (isPackage(folder, cached->folders.get())) return std::nullopt;
      return cached;
    }
    auto listed = _files.list(folder.url, FinalLink::refuse);
    if (!listed) return enter(folder.url, nullptr);
    listing = *std::move(listed);
  }
  if (isPackage(folder, listing->names.get())) return std::nullopt;
  return enter(folder.url, listing.get());
}

bool ContentsReader::isPackage(const FoundFolder& folder, const NameList* names) const {
  if (folder.isAliasTarget) return false;
  if (names && !names->contains("Contents")) return false;
  return _files.isPackage(folder.url).value_or(true);
}

std::optional<FolderContents> ContentsReader::cachedContents(const FoundFolder& folder) const {
  const ReferenceTime date = folder.facts.contentModificationDate;
  // Asking for the date counts the folder as used.
  if (_cache.mdateOfFolder(folder.url) != date) return std::nullopt;
  if (!folder.cached || folder.cached->mdate != date) return std::nullopt;
  SharedNames folders = folder.cached->folderNames;
  // Names of subfolders are only kept where there are some. Those of a folder that says it has
  // subfolders got lost when an earlier walk was cut short.
  if (!folders && !folder.facts.hasSubfolders) folders = noNames();
  return FolderContents{folder.cached->fileNames, std::move(folders)};
}

FolderContents ContentsReader::enter(const FilePath& folder, const Listing* listing) const {
  if (!listing) {
    _cache.addFolder(folder, noNames(), nullptr);
    return {noNames(), nullptr};
  }
  FolderContents contents = split(folder, *listing);
  _cache.addFolder(folder, contents.files, nullptr, listing->folder.contentModificationDate);
  if (!contents.folders->empty()) _cache.setFolderNames(contents.folders, folder);
  return contents;
}

FolderContents ContentsReader::split(const FilePath& folder, const Listing& listing) const {
  if (hasOnly(EntryKind::file, listing)) return {listing.names, noNames()};
  if (hasOnly(EntryKind::folder, listing)) return {noNames(), listing.names};
  NameSorter sorter;
  auto kind = listing.kinds.begin();
  for (const std::string_view name : *listing.names) {
    const EntryKind entry = *kind++;
    sorter.take(name, entry == EntryKind::folder ||
                          (entry == EntryKind::alias && isDirectory(_files, folder / name)));
  }
  return sorter.finish();
}

SharedNames ContentsReader::fileNamesOf(const FilePath& folder) const {
  const auto facts = _files.facts(folder, FinalLink::refuse);
  if (!facts) return noNames();
  const auto contents = readFolder({folder, *facts, true, nullptr, _cache.cachedFolder(folder)});
  return contents ? contents->files : noNames();
}

SharedNames ContentsReader::subfolderNamesOf(const FilePath& folder) const {
  if (SharedNames cached = _cache.folderNamesOfFolder(folder)) return cached;
  const auto listing = _files.list(folder, FinalLink::refuse);
  if (!listing) return noNames();
  const SharedNames folders = split(folder, **listing).folders;
  if (!folders->empty()) _cache.setFolderNames(folders, folder);
  return folders;
}

}  // namespace pelmora::sources
