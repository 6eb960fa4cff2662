#include "inspector/MappedFile.h"

#include "inspector/tests/PaintedFile.h"

#include <gtest/gtest.h>

namespace pelmora::inspector {

TEST(MappedFile, hasTheBytesOfAFile) {
  const auto file = fileOf({1, 2, 3});
  const MappedFile mapped(file.get(), 3);
  EXPECT_EQ(Bytes(mapped.bytes().begin(), mapped.bytes().end()), (Bytes{1, 2, 3}));
}

TEST(MappedFile, hasNoneWhereItCannotBeMapped) {
  EXPECT_TRUE(MappedFile(-1, 3).bytes().empty());
  EXPECT_TRUE(MappedFile(fileOf({}).get(), 0).bytes().empty());
}

}  // namespace pelmora::inspector
