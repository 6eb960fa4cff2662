#include "platform/linux/BookmarkRecord.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

namespace {

std::string errorOf(const plist::Dictionary& keys) {
  const auto record = BookmarkRecord::decode(plist::writeBinary(keys));
  return record.ok() ? "" : record.error().message;
}

}  // namespace

TEST(BookmarkRecord, survivesEncoding) {
  const BookmarkRecord record{FilePath("/media/x/\xE9"),  FilePath("/\xE9"),         {"uuid", -7},
                              0xFFFFFFFFFFFFFFFF,         1'700'000'000'123'456'789, {3, 2},
                              {"a b", "\xFF", "\xC3\xA9"}};
  EXPECT_EQ(BookmarkRecord::decode(record.encoded()).value(), record);
}

TEST(BookmarkRecord, needsAPathAlone) {
  BookmarkRecord record;
  record.path = FilePath("/a");
  EXPECT_EQ(BookmarkRecord::decode(plist::writeBinary(plist::Dictionary{{"path", "/a/"}})).value(),
            record);
  EXPECT_EQ(BookmarkRecord::decode(record.encoded()).value(), record);
  EXPECT_EQ(errorOf({{"inode", 1}}), "the bookmark has no path");
  EXPECT_EQ(errorOf({{"path", ""}}), "the bookmark has no path");
}

TEST(BookmarkRecord, refusesValuesOfWrongTypes) {
  EXPECT_EQ(errorOf({{"path", 1}}), "the bookmark's path is damaged");
  EXPECT_EQ(errorOf({{"path", "relative"}}), "the bookmark's path is damaged");
  EXPECT_EQ(errorOf({{"path", std::string("/a\0b", 4)}}), "the bookmark's path is damaged");
  EXPECT_EQ(errorOf({{"path", "/" + std::string(5000, 'a')}}), "the bookmark's path is damaged");
  for (const char* key : {"filesystemPath", "filesystemName", "filesystemID", "inode", "birthTime",
                          "ancestorInodes", "childNames"}) {
    EXPECT_EQ(errorOf({{"path", "/a"}, {key, 0.5}}),
              "the bookmark's " + std::string(key) + " is damaged");
  }
  EXPECT_EQ(errorOf({{"path", "/a"}, {"ancestorInodes", plist::Array{"x"}}}),
            "the bookmark's ancestorInodes is damaged");
  EXPECT_EQ(errorOf({{"path", "/a"}, {"ancestorInodes", plist::Array(5000, plist::Value(1))}}),
            "the bookmark's ancestorInodes is damaged");
}

TEST(BookmarkRecord, refusesNamesThatAreNone) {
  for (const plist::Value& name :
       {plist::Value(""), plist::Value("../a"), plist::Value(std::string("a\0b", 3)),
        plist::Value(plist::Dictionary{})}) {
    EXPECT_EQ(errorOf({{"path", "/a"}, {"childNames", plist::Array{name}}}),
              "the bookmark's childNames is damaged");
  }
  EXPECT_EQ(errorOf({{"path", "/a"}, {"childNames", plist::Array(17, plist::Value("a"))}}),
            "the bookmark's childNames is damaged");
}

TEST(BookmarkRecord, refusesWhatIsNoDictionary) {
  EXPECT_FALSE(BookmarkRecord::decode({}).ok());
  EXPECT_FALSE(BookmarkRecord::decode({'b', 'o', 'o', 'k'}).ok());
  EXPECT_EQ(BookmarkRecord::decode(plist::writeBinary(plist::Array{})).error().message,
            "the bookmark is no dictionary");
}

TEST(BookmarkRecord, refusesHugeAndDeepBookmarks) {
  EXPECT_EQ(BookmarkRecord::decode(plist::Bytes(BookmarkRecord::kMaxBytes + 1)).error().message,
            "the bookmark is too large");
  plist::Value deep;
  for (int i = 0; i < 1000; ++i) {
    plist::Array outer;
    if (i > 0) outer.push_back(std::move(deep));
    deep = std::move(outer);
  }
  EXPECT_FALSE(
      BookmarkRecord::decode(plist::writeBinary(plist::Dictionary{{"path", "/a"}, {"deep", deep}}))
          .ok());
}

TEST(BookmarkRecord, refusesEveryTruncation) {
  const plist::Bytes whole = BookmarkRecord{FilePath("/a"), {}, {}, 1, 2, {3}, {"b"}}.encoded();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(
        BookmarkRecord::decode(
            plist::Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)))
            .ok())
        << length;
  }
}

}  // namespace pelmora::platform
