#include "cache/FolderCacheFile.h"
#include "platform/BinaryObjectWriter.h"
#include "platform/KeyedArchive.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace pelmora::cache {

namespace {

using plist::Array;
using plist::Dictionary;
using plist::Uid;
using plist::Value;
using Entries = FolderCacheFile::Entries;

plist::Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

bool equal(const SharedNames& a, const SharedNames& b) { return a == b || (a && b && *a == *b); }

/// Whether both hold the same folders, marks of use included.
bool equal(const Entries& a, const Entries& b) {
  if (a.size() != b.size()) return false;
  for (const auto& [path, entry] : a) {
    const auto other = b.find(path);
    if (other == b.end() || entry.mdate != other->second.mdate ||
        entry.accessed != other->second.accessed || !equal(entry.names, other->second.names) ||
        !equal(entry.folderNames, other->second.folderNames)) {
      return false;
    }
  }
  return true;
}

Entries sample() {
  Entries entries;
  entries[FilePath("/p")] = {ReferenceTime{718283.1234567}, makeNameList({"a.jpg", "b.jpg"}),
                             makeNameList({"Bücher", "caf\xE9"}), false};
  entries[FilePath("/p/caf\xE9")] = {ReferenceTime{-0.1}, makeNameList({"a.jpg", "📷", "$null"}),
                                     nullptr, false};
  entries[FilePath("/p/Bücher")] = {ReferenceTime{0}, makeNameList({}), makeNameList({}), false};
  return entries;
}

Dictionary folderOf(Array names) {
  return {{"mdate", ReferenceTime{5}}, {"names", std::move(names)}};
}

/// What is wrong with a cache of this value.
std::string problemIn(const Value& root) {
  const auto outcome = FolderCacheFile::decode(plist::archive(root));
  return outcome ? "none" : outcome.error().message;
}

std::string problemInFolder(Value folder) {
  return problemIn(Dictionary{{"/p", std::move(folder)}});
}

std::string problemInName(Value name) { return problemInFolder(folderOf(Array{std::move(name)})); }

constexpr const char* kBadName = "a name of the cache is none that a file can have";

}  // namespace

TEST(FolderCacheFileReader, readsBackWhatWasWritten) {
  const auto read = FolderCacheFile::decode(*FolderCacheFile::encode(sample()));
  ASSERT_TRUE(read) << read.error().message;
  EXPECT_TRUE(equal(*read, sample()));
}

TEST(FolderCacheFileReader, keepsTheLastBitOfADate) {
  for (const double date :
       {718283.1234567, std::nextafter(718283.1234567, 1e9), 1e-300, -63114076800.0}) {
    Entries entries;
    entries[FilePath("/p")] = {ReferenceTime{date}, makeNameList({}), nullptr, false};
    const auto read = FolderCacheFile::decode(*FolderCacheFile::encode(entries));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->at(FilePath("/p")).mdate.seconds, date);
  }
}

TEST(FolderCacheFileReader, readsMoreFoldersThanOneByteCounts) {
  Entries entries;
  for (int i = 0; i < 300; ++i) {
    std::vector<std::string> names;
    for (int j = 0; j < i % 40; ++j) names.push_back(std::to_string(i * j) + ".jpg");
    const SharedNames folders = i % 3 == 0 ? nullptr : makeNameList({"x", std::to_string(i)});
    entries[FilePath("/p/" + std::to_string(i))] = {ReferenceTime{i / 7.0}, makeNameList(names),
                                                    folders, false};
  }
  const auto read = FolderCacheFile::decode(*FolderCacheFile::encode(entries));
  ASSERT_TRUE(read) << read.error().message;
  EXPECT_TRUE(equal(*read, entries));
}

TEST(FolderCacheFileReader, readsArchivesOfOtherWriters) {
  Dictionary folder = folderOf({"a.jpg", bytesOf("caf\xE9")});
  folder["accessed"] = true;
  folder["folderNames"] = Array{"sub"};
  const auto read = FolderCacheFile::decode(plist::archive(Dictionary{{"/p", folder}}));
  ASSERT_TRUE(read) << read.error().message;
  Entries expected;
  expected[FilePath("/p")] = {ReferenceTime{5}, makeNameList({"a.jpg", "caf\xE9"}),
                              makeNameList({"sub"}), false};
  EXPECT_TRUE(equal(*read, expected)) << "the mark of use is passed over";
}

TEST(FolderCacheFileReader, readsTextsAndContainersOfEveryAllowedClass) {
  const auto classNamed = [](const char* name) {
    return Dictionary{{"$classname", name}, {"$classes", Array{name, "NSObject"}}};
  };
  const Array objects = {
      "$null",
      Dictionary{{"$class", Uid{2}}, {"NS.keys", Array{Uid{3}}}, {"NS.objects", Array{Uid{5}}}},
      classNamed("NSDictionary"),
      Dictionary{{"$class", Uid{4}}, {"NS.string", "/p"}},
      classNamed("NSMutableString"),
      Dictionary{{"$class", Uid{2}},
                 {"NS.keys", Array{Uid{6}, Uid{7}}},
                 {"NS.objects", Array{Uid{8}, Uid{10}}}},
      "mdate",
      "names",
      Dictionary{{"$class", Uid{9}}, {"NS.time", 2.5}},
      classNamed("NSDate"),
      Dictionary{{"$class", Uid{11}}, {"NS.objects", Array{Uid{12}, Uid{14}}}},
      classNamed("NSMutableArray"),
      Dictionary{{"$class", Uid{13}}, {"NS.data", plist::Bytes{'b', 0xE9}}},
      classNamed("NSMutableData"),
      Dictionary{{"$class", Uid{4}}, {"NS.string", "é"}}};
  const auto read =
      FolderCacheFile::decode(plist::writeBinary(Dictionary{{"$archiver", "NSKeyedArchiver"},
                                                            {"$version", 100000},
                                                            {"$top", Dictionary{{"root", Uid{1}}}},
                                                            {"$objects", objects}}));
  ASSERT_TRUE(read) << read.error().message;
  Entries expected;
  expected[FilePath("/p")] = {ReferenceTime{2.5}, makeNameList({"b\xE9", "é"}), nullptr, false};
  EXPECT_TRUE(equal(*read, expected));
}

TEST(FolderCacheFileReader, refusesNamesThatNoFileHas) {
  const std::vector<std::string> names = {"",
                                          ".",
                                          "..",
                                          "a/b",
                                          "/a",
                                          "0123456/",
                                          "01234567/",
                                          std::string("a\0b", 3),
                                          std::string("0123456789\0", 11),
                                          "é/x",
                                          std::string(256, 'x')};
  for (const std::string& name : names) EXPECT_EQ(problemInName(name), kBadName) << name;
  EXPECT_EQ(problemInName(bytesOf("caf\xE9/x")), kBadName);
  EXPECT_EQ(problemInName(std::string(255, 'x')), "none");
  EXPECT_EQ(problemInName("..."), "none");
}

TEST(FolderCacheFileReader, refusesPathsThatAreNone) {
  for (const char* const path : {"", "p", "p/q"}) {
    EXPECT_EQ(problemIn(Dictionary{{path, folderOf({})}}), "a folder of the cache is no path");
  }
  EXPECT_EQ(problemIn(Dictionary{{std::string("/p\0q", 4), folderOf({})}}),
            "a folder of the cache is no path");
  EXPECT_EQ(problemIn(Dictionary{{"/p", folderOf({})}, {"/p/", folderOf({})}}),
            "a folder of the cache appears twice");
}

TEST(FolderCacheFileReader, refusesValuesOfOtherTypes) {
  const Value date = ReferenceTime{5};
  EXPECT_NE(problemIn(Array{}), "none");
  EXPECT_NE(problemIn("text"), "none");
  EXPECT_NE(problemInFolder(Array{}), "none");
  EXPECT_NE(problemInFolder(5), "none");
  EXPECT_NE(problemInFolder(Dictionary{}), "none");
  EXPECT_NE(problemInFolder(Dictionary{{"mdate", date}}), "none");
  EXPECT_NE(problemInFolder(Dictionary{{"names", Array{}}}), "none");
  EXPECT_NE(problemInFolder(Dictionary{{"mdate", 5.0}, {"names", Array{}}}), "none");
  EXPECT_NE(problemInFolder(Dictionary{{"mdate", date}, {"names", "a.jpg"}}), "none");
  EXPECT_NE(problemInFolder(Dictionary{{"mdate", date}, {"names", Dictionary{}}}), "none");
  EXPECT_NE(problemInName(7), "none");
  EXPECT_NE(problemInName(Array{}), "none");
  EXPECT_NE(problemInName(Value()), "none") << "null is named \"$null\" but is no name";
}

TEST(FolderCacheFileReader, refusesDatesThatAreNone) {
  for (const double date :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(problemInFolder(Dictionary{{"mdate", ReferenceTime{date}}, {"names", Array{}}}),
              "a date of the cache is none");
  }
}

TEST(FolderCacheFileReader, refusesOneLongNameUsedTooOften) {
  Entries entries;
  const std::vector<std::string> names(30'000, std::string(255, 'x'));
  entries[FilePath("/p")] = {ReferenceTime{0}, makeNameList(names), nullptr, false};
  const plist::Bytes file = *FolderCacheFile::encode(entries);
  EXPECT_LT(file.size(), 40'000U);
  const auto outcome = FolderCacheFile::decode(file);
  ASSERT_FALSE(outcome);
  EXPECT_EQ(outcome.error().message, "the cache is too large");
}

TEST(FolderCacheFileReader, refusesAFileCutAtAnyLength) {
  const plist::Bytes whole = *FolderCacheFile::encode(sample());
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(FolderCacheFile::decode(std::span(whole).first(length))) << length;
  }
}

TEST(FolderCacheFileReader, survivesAnyChangedByte) {
  const plist::Bytes whole = *FolderCacheFile::encode(sample());
  std::size_t different = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int mask : {0x01, 0x90, 0xFF}) {
      plist::Bytes changed = whole;
      changed[at] = static_cast<std::uint8_t>(changed[at] ^ mask);
      const auto outcome = FolderCacheFile::decode(changed);
      if (!outcome || !equal(*outcome, sample())) ++different;
    }
  }
  EXPECT_GT(different, whole.size() * 3 / 2);
}

TEST(FolderCacheFileReader, refusesOtherFiles) {
  EXPECT_FALSE(FolderCacheFile::decode({}));
  EXPECT_FALSE(FolderCacheFile::decode(bytesOf("<plist version=\"1.0\"><dict/></plist>")));
  EXPECT_FALSE(FolderCacheFile::decode(plist::writeBinary(Dictionary{})));
}

}  // namespace pelmora::cache
