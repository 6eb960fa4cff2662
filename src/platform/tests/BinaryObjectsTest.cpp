#include "platform/BinaryObjects.h"

#include <gtest/gtest.h>

namespace pelmora::plist {

namespace {

/// A file of the given objects, one byte per offset and reference.
Bytes fileOf(const std::vector<Bytes>& objects) {
  Bytes file = {'b', 'p', 'l', 'i', 's', 't', '0', '0'};
  Bytes offsets;
  for (const Bytes& object : objects) {
    offsets.push_back(static_cast<std::uint8_t>(file.size()));
    file.insert(file.end(), object.begin(), object.end());
  }
  const auto table = static_cast<std::uint8_t>(file.size());
  file.insert(file.end(), offsets.begin(), offsets.end());
  const auto count = static_cast<std::uint8_t>(objects.size());
  const Bytes trailer = {0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, count,
                         0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, table};
  file.insert(file.end(), trailer.begin(), trailer.end());
  return file;
}

/// What `at(0)` says of a file that holds this object alone.
struct Single {
  explicit Single(Bytes object) : file(fileOf({std::move(object)})) {
    const Result<BinaryObjects> objects = BinaryObjects::open(file);
    if (objects) view = objects->at(0);
  }
  Bytes file;
  std::optional<ObjectView> view;
};

}  // namespace

TEST(BinaryObjects, readsIntegersOfEveryWidth) {
  EXPECT_EQ(BinaryObjects::integer(*Single({0x10, 0xFF}).view), 255);
  EXPECT_EQ(BinaryObjects::integer(*Single({0x11, 0xFF, 0xFF}).view), 65535);
  EXPECT_EQ(BinaryObjects::integer(*Single({0x12, 0xFF, 0xFF, 0xFF, 0xFF}).view), 4294967295);
  const Bytes minusTwo = {0x13, 255, 255, 255, 255, 255, 255, 255, 254};
  EXPECT_EQ(BinaryObjects::integer(*Single(minusTwo).view), -2);
}

TEST(BinaryObjects, readsSixteenByteIntegersThatFit) {
  Bytes wide(17, 0);
  wide[0] = 0x14;
  wide[16] = 7;
  EXPECT_EQ(BinaryObjects::integer(*Single(wide).view), 7);
  wide[9] = 0x80;
  EXPECT_EQ(BinaryObjects::integer(*Single(wide).view), std::nullopt);
  std::fill(wide.begin() + 1, wide.end(), 0xFF);
  EXPECT_EQ(BinaryObjects::integer(*Single(wide).view), -1);
}

TEST(BinaryObjects, readsRealsOfBothWidths) {
  EXPECT_EQ(BinaryObjects::real(*Single({0x22, 0x3E, 0x80, 0, 0}).view), 0.25);
  EXPECT_EQ(BinaryObjects::real(*Single({0x23, 0x3F, 0xD0, 0, 0, 0, 0, 0, 0}).view), 0.25);
  EXPECT_EQ(BinaryObjects::real(*Single({0x10, 1}).view), std::nullopt);
}

TEST(BinaryObjects, refusesStringsWithWrongBytes) {
  EXPECT_EQ(BinaryObjects::text(*Single({0x52, 'a', 'b'}).view), "ab");
  EXPECT_EQ(BinaryObjects::text(*Single({0x52, 'a', 0xE9}).view), std::nullopt);
  EXPECT_EQ(BinaryObjects::text(*Single({0x61, 0xD8, 0x00}).view), std::nullopt);
  EXPECT_EQ(BinaryObjects::text(*Single({0x41, 'a'}).view), std::nullopt);
}

TEST(BinaryObjects, refusesObjectsThatEndBehindTheTable) {
  for (const Bytes& object :
       {Bytes{0x13, 1}, Bytes{0x55, 'a'}, Bytes{0x61, 0}, Bytes{0xA1}, Bytes{0xD1, 0},
        Bytes{0x83, 1}, Bytes{0x33, 0}, Bytes{0x5F}, Bytes{0x5F, 0x13, 0xFF},
        Bytes{0x5F, 0x52, 1, 1}, Bytes{0x5F, 0x10, 9, 'a'},
        Bytes{0x6F, 0x13, 0x80, 0, 0, 0, 0, 0, 0, 1, 0, 0},
        Bytes{0xDF, 0x13, 0xFF, 255, 255, 255, 255, 255, 255, 255, 0}}) {
    EXPECT_FALSE(Single(object).view) << testing::PrintToString(object);
  }
}

TEST(BinaryObjects, refusesUnknownTypes) {
  for (const int marker :
       {0x01, 0x0F, 0x15, 0x21, 0x24, 0x30, 0x70, 0x90, 0xB0, 0xC0, 0xE0, 0xF0}) {
    Bytes object(20, 0);
    object[0] = static_cast<std::uint8_t>(marker);
    EXPECT_FALSE(Single(object).view) << marker;
  }
}

TEST(BinaryObjects, refusesIndexesOutOfRange) {
  const Bytes file = fileOf({{0x08}, {0x09}});
  const Result<BinaryObjects> objects = BinaryObjects::open(file);
  ASSERT_TRUE(objects);
  EXPECT_TRUE(objects->at(1));
  EXPECT_FALSE(objects->at(2));
  EXPECT_FALSE(objects->at(~std::uint64_t{0}));
}

TEST(BinaryObjects, refusesOffsetsOutsideOfTheObjects) {
  for (const int offset : {0, 7, 9, 255}) {
    Bytes file = fileOf({{0x08}});
    file[file.size() - 33] = static_cast<std::uint8_t>(offset);
    const Result<BinaryObjects> objects = BinaryObjects::open(file);
    ASSERT_TRUE(objects);
    EXPECT_FALSE(objects->at(0)) << offset;
  }
}

TEST(BinaryObjects, refusesDamagedTrailers) {
  const Bytes whole = fileOf({{0x08}});
  ASSERT_TRUE(BinaryObjects::open(whole));
  const auto changed = [&whole](std::size_t fromEnd, std::uint8_t value) {
    Bytes file = whole;
    file[file.size() - fromEnd] = value;
    return BinaryObjects::open(file).ok();
  };
  EXPECT_FALSE(changed(26, 0)) << "width of an offset";
  EXPECT_FALSE(changed(26, 9));
  EXPECT_FALSE(changed(25, 0)) << "width of a reference";
  EXPECT_FALSE(changed(17, 0)) << "number of objects";
  EXPECT_FALSE(changed(17, 2));
  EXPECT_FALSE(changed(24, 0xFF));
  EXPECT_FALSE(changed(9, 1)) << "top object";
  EXPECT_FALSE(changed(1, 8)) << "offset of the table";
  EXPECT_FALSE(changed(1, 10));
  EXPECT_FALSE(changed(8, 0xFF));
}

}  // namespace pelmora::plist
