#include "platform/BinaryObjects.h"
#include "platform/PropertyList.h"

#include <gtest/gtest.h>

namespace pelmora::plist {

namespace {

std::uint64_t objectsIn(const Value& value) {
  const Bytes file = writeBinary(value);
  const Result<BinaryObjects> objects = BinaryObjects::open(file);
  return objects ? objects->size() : 0;
}

}  // namespace

TEST(BinaryPropertyListWriter, writesEqualScalarsOnce) {
  EXPECT_EQ(objectsIn(Array{"a", "a", 1, 1, 0.5, 0.5, true, true}), 1U + 4);
  EXPECT_EQ(objectsIn(Array{Bytes{1}, Bytes{1}, ReferenceTime{2}, ReferenceTime{2}}), 1U + 2);
  EXPECT_EQ(objectsIn(Array{Uid{3}, Uid{3}, "k", Dictionary{{"k", "k"}}}), 1U + 3);
}

TEST(BinaryPropertyListWriter, keepsEqualNumbersOfDifferentTypesApart) {
  const Value value = Array{1, 1.0, true, ReferenceTime{1}, "1", Uid{1}, Value(), 0.0, -0.0};
  EXPECT_EQ(objectsIn(value), 1U + 9);
  const Result<Value> back = read(writeBinary(value));
  ASSERT_TRUE(back) << back.error().message;
  EXPECT_EQ(*back, value);
}

TEST(BinaryPropertyListWriter, givesEqualBytesForEqualValues) {
  Dictionary forward;
  Dictionary backward;
  for (int i = 0; i < 20; ++i) forward["key" + std::to_string(i)] = i;
  for (int i = 19; i >= 0; --i) backward["key" + std::to_string(i)] = i;
  EXPECT_EQ(writeBinary(forward), writeBinary(backward));
}

TEST(BinaryPropertyListWriter, writesTextThatIsNotUtf8AsData) {
  const Result<Value> back = read(writeBinary(Array{"caf\xE9"}));
  ASSERT_TRUE(back);
  EXPECT_EQ(*back, Value(Array{Bytes{'c', 'a', 'f', 0xE9}}));
}

TEST(BinaryPropertyListWriter, writesAThousandDifferentTexts) {
  Array texts;
  for (int i = 0; i < 1000; ++i) texts.emplace_back("text " + std::to_string(i));
  const Result<Value> back = read(writeBinary(texts));
  ASSERT_TRUE(back);
  EXPECT_EQ(*back, Value(texts));
}

}  // namespace pelmora::plist
