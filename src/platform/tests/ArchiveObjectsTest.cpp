#include "platform/ArchiveObjects.h"

#include "platform/KeyedArchive.h"

#include <gtest/gtest.h>

#include <string>

namespace pelmora::plist {

namespace {

Dictionary smallest() {
  return {{"$archiver", "NSKeyedArchiver"},
          {"$objects", Array{"$null", "text"}},
          {"$top", Dictionary{{"root", Uid{1}}}},
          {"$version", 100000}};
}

bool opens(const Dictionary& layout) {
  const Bytes file = writeBinary(layout);
  return ArchiveObjects::open(file).ok();
}

bool opensWith(const char* key, Value value) {
  Dictionary layout = smallest();
  layout[key] = std::move(value);
  return opens(layout);
}

}  // namespace

TEST(ArchiveObjects, readsFieldsAndClassesInPlace) {
  const Bytes file = archive(Dictionary{{"when", ReferenceTime{2.5}}});
  const Result<ArchiveObjects> archive = ArchiveObjects::open(file);
  ASSERT_TRUE(archive) << archive.error().message;
  const auto root = archive->object(archive->root());
  ASSERT_TRUE(root);
  EXPECT_EQ(archive->className(*root), "NSMutableDictionary");
  const auto values = archive->numbers(*root, "NS.objects");
  ASSERT_TRUE(values);
  ASSERT_EQ(values->count, 1U);
  const auto date = archive->object(archive->number(*values, 0).value());
  ASSERT_TRUE(date);
  EXPECT_EQ(archive->className(*date), "NSDate");
  EXPECT_EQ(BinaryObjects::real(*archive->field(*date, "NS.time")), 2.5);
  EXPECT_FALSE(archive->field(*date, "NS.objects"));
  EXPECT_FALSE(archive->numbers(*date, "NS.time"));
}

TEST(ArchiveObjects, opensOnlyKeyedArchives) {
  EXPECT_TRUE(opens(smallest()));
  EXPECT_FALSE(opens({}));
  EXPECT_FALSE(opensWith("$archiver", "NSArchiver"));
  EXPECT_FALSE(opensWith("$version", 1));
  EXPECT_FALSE(opensWith("$objects", "text"));
  EXPECT_FALSE(opensWith("$top", Dictionary{}));
  EXPECT_FALSE(opensWith("$top", Dictionary{{"root", 1}}));
  EXPECT_FALSE(opensWith("$top", Dictionary{{"root", Uid{2}}}));
  const Bytes array = writeBinary(Array{});
  EXPECT_FALSE(ArchiveObjects::open(array));
}

TEST(ArchiveObjects, looksForNoFieldAmongTooMany) {
  Dictionary layout = smallest();
  for (int i = 0; i < 60; ++i) layout["field " + std::to_string(i)] = i;
  EXPECT_TRUE(opens(layout));
  layout["one more"] = 0;
  EXPECT_FALSE(opens(layout));
}

TEST(ArchiveObjects, hasNoClassForPlainObjects) {
  const Bytes file = writeBinary(smallest());
  const Result<ArchiveObjects> archive = ArchiveObjects::open(file);
  ASSERT_TRUE(archive);
  EXPECT_EQ(archive->className(*archive->object(1)), "");
  EXPECT_FALSE(archive->object(2));
}

TEST(ArchiveObjects, knowsTheTwinsOfEachClass) {
  EXPECT_TRUE(isDictionaryClass("NSDictionary") && isDictionaryClass("NSMutableDictionary"));
  EXPECT_TRUE(isArrayClass("NSArray") && isArrayClass("NSMutableArray"));
  EXPECT_TRUE(isStringClass("NSString") && isStringClass("NSMutableString"));
  EXPECT_TRUE(isDataClass("NSData") && isDataClass("NSMutableData"));
  EXPECT_FALSE(isArrayClass("NSSet") || isStringClass("") || isDataClass("NSDate"));
}

}  // namespace pelmora::plist
