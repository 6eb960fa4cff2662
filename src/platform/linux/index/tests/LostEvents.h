#pragma once

#include "shared/FilePath.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>

namespace pelmora::platform {

/// Makes two files in a folder, and more of their changes than the kernel keeps. Equal events in a
/// row would be kept as one.
inline void causeMoreEventsThanAreKept(const FilePath& folder) {
  std::size_t most = 0;
  std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
  ASSERT_GT(most, 0U);
  const FilePath one = folder / "one";
  const FilePath other = folder / "other";
  for (const FilePath& file : {one, other}) std::ofstream(file.bytes()) << "x";
  for (std::size_t i = 0; i <= most; ++i) {
    ASSERT_EQ(::chmod((i % 2 ? one : other).c_str(), 0600), 0);
  }
}

}  // namespace pelmora::platform
