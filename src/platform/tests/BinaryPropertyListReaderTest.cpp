#include "platform/BinaryPropertyList.h"

#include "platform/BinaryObjectWriter.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelmora::plist {

namespace {

std::string problemIn(const Bytes& file) {
  const Result<Value> outcome = readBinary(file);
  return outcome ? "none" : outcome.error().message;
}

/// Arrays of `width` references each, every one to the next array, the last to a string.
Bytes bush(std::uint64_t depth, std::uint64_t width, const std::string& leaf) {
  BinaryObjectWriter writer(depth + 1);
  for (std::uint64_t i = 0; i < depth; ++i) {
    writer.array(width);
    for (std::uint64_t j = 0; j < width; ++j) writer.ref(i + 1);
  }
  writer.text(leaf);
  return std::move(writer).finish();
}

}  // namespace

TEST(BinaryPropertyListReader, refusesAListThatContainsItself) {
  BinaryObjectWriter writer(2);
  writer.array(1);
  writer.ref(1);
  writer.array(1);
  writer.ref(0);
  EXPECT_EQ(problemIn(std::move(writer).finish()), "the property list contains itself");
}

TEST(BinaryPropertyListReader, readsSharedContainers) {
  const Result<Value> read = readBinary(bush(2, 2, "x"));
  ASSERT_TRUE(read);
  EXPECT_EQ(*read, Value(Array{Array{"x", "x"}, Array{"x", "x"}}));
}

TEST(BinaryPropertyListReader, refusesAnExplosionOfSharedContainers) {
  EXPECT_EQ(problemIn(bush(40, 2, "x")), "the property list is too large");
}

TEST(BinaryPropertyListReader, refusesOneLongTextManyTimes) {
  EXPECT_EQ(problemIn(bush(1, 10'000, std::string(10'000, 'x'))), "the property list is too large");
}

TEST(BinaryPropertyListReader, refusesWhatIsTooDeep) {
  EXPECT_EQ(problemIn(bush(128, 1, "x")), "none");
  EXPECT_EQ(problemIn(bush(129, 1, "x")), "the property list is too deep");
}

TEST(BinaryPropertyListReader, refusesReferencesOutOfRange) {
  BinaryObjectWriter writer(1);
  writer.array(1);
  writer.ref(200);
  EXPECT_EQ(problemIn(std::move(writer).finish()), "an object of the property list is damaged");
}

TEST(BinaryPropertyListReader, refusesKeysThatAreNoTextOrComeTwice) {
  BinaryObjectWriter number(2);
  number.dictionary(1);
  number.ref(1);
  number.ref(1);
  number.integer(1);
  EXPECT_EQ(problemIn(std::move(number).finish()), "a key of the property list is no string");

  BinaryObjectWriter twice(2);
  twice.dictionary(2);
  for (int i = 0; i < 4; ++i) twice.ref(1);
  twice.text("a");
  EXPECT_EQ(problemIn(std::move(twice).finish()), "a key of the property list appears twice");
}

TEST(BinaryPropertyListReader, refusesDatesThatAreNone) {
  EXPECT_TRUE(readBinary(writeBinary(ReferenceTime{-1e9})));
  EXPECT_EQ(problemIn(writeBinary(ReferenceTime{std::numeric_limits<double>::quiet_NaN()})),
            "a value of the property list is damaged");
}

TEST(BinaryPropertyListReader, refusesAFileWithoutObjects) {
  EXPECT_FALSE(readBinary(Bytes{'b', 'p', 'l', 'i', 's', 't', '0', '0'}));
  EXPECT_FALSE(readBinary({}));
}

}  // namespace pelmora::plist
