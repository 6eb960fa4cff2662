#pragma once

#include "platform/metadata/FileMetadata.h"
#include "shared/Result.h"

#include <utility>

namespace pelmora::platform {

/// What is embedded in a file, or why that is not known. Thread: a plain value.
struct EmbeddedMetadata : Result<metadata::FileMetadata> {
  using Result::Result;
  EmbeddedMetadata(Result result) : Result(std::move(result)) {}

  /// Of an error: it need not be the file's fault, and another time it may be read.
  bool isPassing = false;
};

}  // namespace pelmora::platform
