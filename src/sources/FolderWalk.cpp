#include "sources/FolderWalk.h"

#include <memory>
#include <optional>
#include <utility>

namespace pelmora::sources {

namespace {

std::shared_ptr<PMFolder> makeRecord(const FilePath& url, bool isBaseFolder,
                                     const platform::FileIdentity& identity,
                                     const PMFolder::Contents& contents, FolderValues values) {
  auto record = std::make_shared<PMFolder>(url, isBaseFolder, contents, values.priority,
                                           std::move(values.screens), values.days);
  record->identity = identity;
  return record;
}

}  // namespace

void FolderWalk::walkBaseFolder(const FilePath& folder) const {
  const BaseFolderContents contents = _reader.readBaseFolder(folder, _operation);
  if (!contents.names.files->empty() && !_operation.isCancelled()) addBaseFolder(folder, contents);
  if (!contents.isFromCache) {
    std::optional<ReferenceTime> listedAt;
    if (contents.facts) listedAt = contents.facts->contentModificationDate;
    _cache.addFolder(folder, contents.names.files, contents.names.folders, listedAt);
  }
  visitAll(folder, *contents.names.folders);
}

void FolderWalk::addBaseFolder(const FilePath& folder, const BaseFolderContents& contents) const {
  const platform::FileIdentity identity = contents.facts->identity;
  const FolderValues values = _sources->valuesForFolder(folder.bytes());
  std::uint64_t index = _list.indexOfEnumeratedFolder(identity);
  if (index == kNotFound) {
    const auto record =
        makeRecord(folder, true, identity, {.contentNames = contents.names.files}, values);
    if (_list.addWalkedFolder(record, _screen, _operation)) return;
    index = _list.indexOfEnumeratedFolder(identity);
  }
  _list.setPriorityAndScreens(index, values);
}

void FolderWalk::walkSubfolder(const FilePath& folder, const SharedNames& names) const {
  visitAll(folder, *(names ? names : _reader.subfolderNamesOf(folder)));
}

void FolderWalk::visitAll(const FilePath& folder, const NameList& names) const {
  for (const std::string_view name : names) {
    visit(folder, name);
    if (_operation.isCancelled()) return;
  }
}

void FolderWalk::visit(const FilePath& folder, std::string_view name) const {
  std::optional<FoundFolder> found = _reader.find(folder / name);
  if (!found) return;
  const platform::FileIdentity& identity = found->facts.identity;
  if (_list.indexOfEnumeratedFolder(identity) != kNotFound) return;
  if (!_sources->isEnabled(identity)) return;

  PMFolder::Contents contents;
  SharedNames subfolders;
  if (found->isAliasTarget) {
    contents.fileMan = &_reader;
  } else {
    std::optional<FolderContents> read = _reader.readFolder(*found);
    if (!read) return;
    contents.contentNames = std::move(read->files);
    subfolders = std::move(read->folders);
  }
  const auto record = makeRecord(found->url, false, identity, contents,
                                 _sources->valuesForFolder(found->url.bytes()));
  if (_operation.isCancelled() || !_list.addWalkedFolder(record, _screen, _operation)) return;
  // An alias is queued as itself: it is no folder, so its target's subfolders are not walked.
  FilePath toWalk = found->isAliasTarget ? folder / name : std::move(found->url);
  _list.addEnumOpToQueue(_queue, std::move(toWalk), _screen, false, &_operation,
                         std::move(subfolders));
}

}  // namespace pelmora::sources
