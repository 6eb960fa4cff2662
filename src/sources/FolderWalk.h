#pragma once

#include "sources/ContentsReader.h"
#include "sources/PMSourceList.h"

#include <cstdint>
#include <string_view>

namespace pelmora::sources {

/// The work of one operation of the walk on one folder.
/// Thread: the operation's worker.
class FolderWalk {
 public:
  FolderWalk(PMSourceList& list, cache::FolderCache& cache, std::uint64_t forScreen,
             platform::OperationQueue& queue, const platform::Operation& operation)
      : _list(list),
        _cache(cache),
        _reader(list.fileMan(), cache),
        _sources(list.sources()),
        _screen(forScreen),
        _queue(queue),
        _operation(operation) {}

  /// Makes the record of a source folder, and walks its subfolders.
  void walkBaseFolder(const FilePath& folder) const;
  /// Walks the subfolders of a folder that has its record. Without their names it looks for them.
  void walkSubfolder(const FilePath& folder, const SharedNames& names) const;

 private:
  void addBaseFolder(const FilePath& folder, const BaseFolderContents& contents) const;
  void visitAll(const FilePath& folder, const NameList& names) const;
  void visit(const FilePath& folder, std::string_view name) const;

  PMSourceList& _list;
  cache::FolderCache& _cache;
  const ContentsReader _reader;
  const SharedSourceEntries _sources;
  const std::uint64_t _screen;
  platform::OperationQueue& _queue;
  const platform::Operation& _operation;
};

}  // namespace pelmora::sources
