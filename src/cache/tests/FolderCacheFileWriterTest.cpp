#include "cache/FolderCacheFile.h"
#include "platform/BinaryObjects.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/KeyedArchive.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <limits>

namespace pelmora::cache {

namespace {

using Entries = FolderCacheFile::Entries;

FolderCacheFile::Entry entryOf(double mdate, SharedNames names, SharedNames folderNames = nullptr) {
  return {ReferenceTime{mdate}, std::move(names), std::move(folderNames), true};
}

Entries sample() {
  Entries entries;
  entries[FilePath("/p")] = entryOf(718283.1234567, makeNameList({"a.jpg", "b.jpg"}),
                                    makeNameList({"Bücher", "caf\xE9"}));
  entries[FilePath("/p/caf\xE9")] = entryOf(-0.1, makeNameList({"a.jpg", "📷.png", "$null"}));
  entries[FilePath("/p/Bücher")] = entryOf(0, makeNameList({}), makeNameList({}));
  return entries;
}

plist::Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

std::string outputOf(const std::string& command) {
  std::string output;
  FILE* const pipe = ::popen(command.c_str(), "r");
  if (!pipe) return output;
  std::array<char, 4096> part{};
  while (std::fgets(part.data(), static_cast<int>(part.size()), pipe)) output += part.data();
  return ::pclose(pipe) == 0 ? output : "failed: " + output;
}

}  // namespace

TEST(FolderCacheFileWriter, writesAnArchiveThatAnyReaderUnderstands) {
  const Result<plist::Bytes> file = FolderCacheFile::encode(sample());
  ASSERT_TRUE(file) << file.error().message;
  const Result<plist::Value> read = plist::unarchive(*file);
  ASSERT_TRUE(read) << read.error().message;
  const plist::Dictionary expected = {
      {"/p", plist::Dictionary{{"mdate", ReferenceTime{718283.1234567}},
                               {"names", plist::Array{"a.jpg", "b.jpg"}},
                               {"folderNames", plist::Array{"Bücher", bytesOf("caf\xE9")}}}},
      {"/p/caf\xE9", plist::Dictionary{{"mdate", ReferenceTime{-0.1}},
                                       {"names", plist::Array{"a.jpg", "📷.png", "$null"}}}},
      {"/p/Bücher", plist::Dictionary{{"mdate", ReferenceTime{0}},
                                      {"names", plist::Array{}},
                                      {"folderNames", plist::Array{}}}}};
  EXPECT_EQ(*read, plist::Value(expected));
}

TEST(FolderCacheFileWriter, writesAnArchiveThatPythonUnderstands) {
  const Result<plist::Bytes> file = FolderCacheFile::encode(sample());
  ASSERT_TRUE(file) << file.error().message;
  const platform::TemporaryFolder folder;
  const FilePath path =
      folder.write("cache", {reinterpret_cast<const char*>(file->data()), file->size()});
  const std::string command =
      "'" PELMORA_PYTHON "' '" PELMORA_CACHE_TESTS "/read_folder_cache.py' '";
  EXPECT_EQ(outputOf(command + path.bytes() + "'"),
            "'/p' 718283.1234567 ['a.jpg', 'b.jpg'] ['B\\xfccher', b'caf\\xe9']\n"
            "'/p/B\\xfccher' 0.0 [] []\n"
            "b'/p/caf\\xe9' -0.1 ['a.jpg', '\\U0001f4f7.png', '$null'] None\n");
}

TEST(FolderCacheFileWriter, writesAnEmptyCache) {
  const Result<plist::Bytes> file = FolderCacheFile::encode({});
  ASSERT_TRUE(file);
  const Result<plist::Value> read = plist::unarchive(*file);
  ASSERT_TRUE(read) << read.error().message;
  EXPECT_EQ(*read, plist::Value(plist::Dictionary{}));
}

TEST(FolderCacheFileWriter, writesEqualNamesOnce) {
  const std::vector<std::string> names = {"IMG_0001.JPG", "IMG_0002.JPG"};
  const auto size = [&names](int folders) {
    Entries entries;
    for (int i = 0; i < folders; ++i) {
      entries[FilePath("/p/" + std::to_string(100 + i))] = entryOf(i, makeNameList(names));
    }
    const Result<plist::Bytes> file = FolderCacheFile::encode(entries);
    const Result<plist::BinaryObjects> objects = plist::BinaryObjects::open(*file);
    return objects ? objects->size() : 0;
  };
  // A folder costs its path, entry, date and names, the UID of each, and two lists and a number.
  EXPECT_EQ(size(2) - size(1), 4U + 4 + 3);
}

TEST(FolderCacheFileWriter, givesEqualBytesForEqualEntries) {
  Entries forward;
  Entries backward;
  backward.reserve(1000);  // another order of iteration
  for (int i = 0; i < 30; ++i) {
    forward[FilePath("/" + std::to_string(i))] = entryOf(i, makeNameList({"a"}));
    backward[FilePath("/" + std::to_string(29 - i))] = entryOf(29 - i, makeNameList({"a"}));
  }
  EXPECT_EQ(*FolderCacheFile::encode(forward), *FolderCacheFile::encode(backward));
}

TEST(FolderCacheFileWriter, leavesTheMarksOfUseOut) {
  Entries unused = sample();
  for (auto& [path, entry] : unused) entry.accessed = false;
  EXPECT_EQ(*FolderCacheFile::encode(sample()), *FolderCacheFile::encode(unused));
}

TEST(FolderCacheFileWriter, refusesWhatItWouldNotReadAgain) {
  Entries relative;
  relative[FilePath("p")] = entryOf(0, makeNameList({}));
  EXPECT_FALSE(FolderCacheFile::encode(relative));
  Entries dateless;
  dateless[FilePath("/p")] = entryOf(std::numeric_limits<double>::quiet_NaN(), makeNameList({}));
  EXPECT_FALSE(FolderCacheFile::encode(dateless));
}

}  // namespace pelmora::cache
