#pragma once

#include "platform/linux/index/MetadataStore.h"
#include "platform/metadata/FileMetadata.h"

#include <optional>
#include <string_view>

namespace pelmora::platform {

/// The stamp of a file in the folder open as `folder`, links followed; nullopt for what is no
/// regular file, or not there. Thread: any.
[[nodiscard]] std::optional<IndexStamp> stampOf(int folder, const char* name);

/// A file as the file system knows it.
struct FileAttributes {
  IndexStamp stamp;
  metadata::FileMetadata metadata;  // without name and path
};

/// Reads them of the open file, which has that name; nullopt for what is no regular file. Extended
/// attributes that make no sense are none. Thread: any.
[[nodiscard]] std::optional<FileAttributes> fileAttributes(int file, std::string_view name);

/// Joins what the file system knows and what is embedded in the file, by the table's `Origin`.
[[nodiscard]] metadata::FileMetadata joined(metadata::FileMetadata ofFile,
                                            const metadata::FileMetadata& embedded);

}  // namespace pelmora::platform
