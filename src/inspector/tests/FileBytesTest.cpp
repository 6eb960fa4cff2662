#include "inspector/FileBytes.h"

#include "inspector/tests/PaintedFile.h"

#include <gtest/gtest.h>

namespace pelmora::inspector {

namespace {

Bytes bytesOf(const platform::FileDescriptor& file, std::size_t size) {
  const FileBytes bytes(file.get(), size);
  return {bytes.all().begin(), bytes.all().end()};
}

/// Of all values, and not the same ones everywhere.
Bytes someBytes(std::size_t count) {
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<std::uint8_t>(i % 251);
  return bytes;
}

}  // namespace

TEST(FileBytes, areThoseOfAFileOfAnySize) {
  for (const std::size_t size : {std::size_t{1}, FileBytes::kCopied, FileBytes::kCopied + 1}) {
    const Bytes bytes = someBytes(size);
    EXPECT_EQ(bytesOf(fileOf(bytes), size), bytes) << size;
  }
}

TEST(FileBytes, areThoseThatAreLeftOfASmallFileThatWasMadeShorter) {
  EXPECT_EQ(bytesOf(fileOf({1, 2, 3}), 5), (Bytes{1, 2, 3}));
}

TEST(FileBytes, areNoneWhereTheyCannotBeRead) {
  EXPECT_TRUE(bytesOf({}, 3).empty());
  EXPECT_TRUE(bytesOf({}, FileBytes::kCopied + 1).empty());
  EXPECT_TRUE(bytesOf(fileOf({}), 0).empty());
}

}  // namespace pelmora::inspector
