#pragma once

#include "platform/FileDescriptor.h"
#include "platform/metadata/FileMetadata.h"

#include <sys/mman.h>
#include <unistd.h>

#include <initializer_list>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace pelmora::platform {

/// A file that tells the fake inspector what to do.
inline FileDescriptor telling(std::string_view text) {
  FileDescriptor file(memfd_create("told", MFD_CLOEXEC));
  if (write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw std::runtime_error("no memory");
  }
  return file;
}

inline std::vector<FileDescriptor> telling(std::initializer_list<std::string_view> texts) {
  std::vector<FileDescriptor> files;
  for (const std::string_view text : texts) files.push_back(telling(text));
  return files;
}

/// What the fake inspector answers to a number.
inline metadata::FileMetadata rated(std::int64_t rating) {
  metadata::FileMetadata metadata;
  metadata.set("kMDItemStarRating", {rating});
  return metadata;
}

}  // namespace pelmora::platform
