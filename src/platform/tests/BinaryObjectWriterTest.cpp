#include "platform/BinaryObjectWriter.h"

#include "platform/BinaryObjects.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelmora::plist {

namespace {

/// The bytes of one object alone, without the file around it.
template <typename Add>
Bytes objectBytes(Add add) {
  BinaryObjectWriter writer(1);
  add(writer);
  const Bytes file = std::move(writer).finish();
  constexpr std::ptrdiff_t kAround = 32 + 1;  // the trailer and a table of one offset
  return {file.begin() + 8, file.end() - kAround};
}

Bytes integerBytes(std::int64_t value) {
  return objectBytes([value](BinaryObjectWriter& writer) { writer.integer(value); });
}

Bytes textBytes(std::string_view text) {
  return objectBytes([text](BinaryObjectWriter& writer) { writer.text(text); });
}

}  // namespace

TEST(BinaryObjectWriter, takesTheFewestBytesForAnInteger) {
  EXPECT_EQ(integerBytes(0), (Bytes{0x10, 0}));
  EXPECT_EQ(integerBytes(255), (Bytes{0x10, 255}));
  EXPECT_EQ(integerBytes(256), (Bytes{0x11, 1, 0}));
  EXPECT_EQ(integerBytes(65536), (Bytes{0x12, 0, 1, 0, 0}));
  EXPECT_EQ(integerBytes(1LL << 32), (Bytes{0x13, 0, 0, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(integerBytes(-1), (Bytes{0x13, 255, 255, 255, 255, 255, 255, 255, 255}));
}

TEST(BinaryObjectWriter, writesTextInTheShortestForm) {
  EXPECT_EQ(textBytes("ab"), (Bytes{0x52, 'a', 'b'}));
  EXPECT_EQ(textBytes("é"), (Bytes{0x61, 0x00, 0xE9}));
  EXPECT_EQ(textBytes("\xE9"), (Bytes{0x41, 0xE9}));
  EXPECT_EQ(textBytes(std::string(14, 'x')).front(), 0x5E);
  const Bytes longer = textBytes(std::string(15, 'x'));
  EXPECT_EQ(longer.size(), 18U);
  EXPECT_EQ(longer[0], 0x5F);
  EXPECT_EQ(longer[1], 0x10);
  EXPECT_EQ(longer[2], 15);
}

TEST(BinaryObjectWriter, writesTheWholeFile) {
  BinaryObjectWriter writer(2);
  writer.array(2);
  writer.ref(1);
  writer.ref(1);
  writer.boolean(true);
  const Bytes expected = {'b', 'p', 'l', 'i', 's', 't', '0', '0', 0xA2, 1, 1, 0x09, 8, 11, 0, 0,
                          0,   0,   0,   0,   1,   1,                                             //
                          0,   0,   0,   0,   0,   0,   0,   2,   0,    0, 0, 0,    0, 0,  0, 0,  //
                          0,   0,   0,   0,   0,   0,   0,   12};
  EXPECT_EQ(std::move(writer).finish(), expected);
}

TEST(BinaryObjectWriter, countsTheBytesOfANumber) {
  EXPECT_EQ(BinaryObjectWriter::bytesFor(0), 1U);
  EXPECT_EQ(BinaryObjectWriter::bytesFor(255), 1U);
  EXPECT_EQ(BinaryObjectWriter::bytesFor(256), 2U);
  EXPECT_EQ(BinaryObjectWriter::bytesFor(1 << 24), 4U);
  EXPECT_EQ(BinaryObjectWriter::bytesFor(std::numeric_limits<std::uint64_t>::max()), 8U);
}

TEST(BinaryObjectWriter, writesReferencesOfThreeBytes) {
  constexpr std::uint64_t kObjects = 70'000;
  BinaryObjectWriter writer(kObjects);
  writer.array(1);
  writer.ref(kObjects - 1);
  for (std::uint64_t i = 1; i < kObjects; ++i) writer.uid(static_cast<std::uint32_t>(i));
  const Bytes file = std::move(writer).finish();
  const Result<BinaryObjects> objects = BinaryObjects::open(file);
  ASSERT_TRUE(objects);
  const auto top = objects->at(0);
  ASSERT_TRUE(top);
  EXPECT_EQ(objects->ref(*top, 0), kObjects - 1);
  EXPECT_EQ(BinaryObjects::uid(*objects->at(kObjects - 1)), kObjects - 1);
}

}  // namespace pelmora::plist
