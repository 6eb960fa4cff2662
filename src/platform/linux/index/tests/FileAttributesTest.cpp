#include "platform/linux/index/FileAttributes.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <map>
#include <string>

namespace pelmora::platform {

namespace {

using predicate::Constant;

Constant valueOf(const metadata::FileMetadata& metadata, const char* attribute) {
  const auto values = metadata.values(attribute);
  return values.empty() ? Constant() : values.front();
}

FileDescriptor open(const FilePath& path) { return FileDescriptor(::open(path.c_str(), O_RDONLY)); }

}  // namespace

TEST(FileAttributes, areTheSizeTheDatesAndTheTypeByTheName) {
  const TemporaryFolder folder;
  const FilePath path = folder.write("a.JPG", "four");
  const auto attributes = fileAttributes(open(path).get(), "a.JPG");
  ASSERT_TRUE(attributes);
  EXPECT_EQ(valueOf(attributes->metadata, "kMDItemFSSize"), Constant(4));
  EXPECT_EQ(valueOf(attributes->metadata, "kMDItemContentType"), Constant("public.jpeg"));
  EXPECT_TRUE(valueOf(attributes->metadata, "kMDItemFSContentChangeDate").get<ReferenceTime>());
}

TEST(FileAttributes, haveTheSameStampByNameAndByDescriptor) {
  const TemporaryFolder folder;
  const FilePath path = folder.write("a.jpg", "four");
  const FileDescriptor parent = open(folder.path());
  const auto stamp = stampOf(parent.get(), "a.jpg");
  ASSERT_TRUE(stamp);
  EXPECT_EQ(fileAttributes(open(path).get(), "a.jpg")->stamp, *stamp);
  EXPECT_EQ(stamp->bytes, 4);
  (void)folder.write("a.jpg", "fiver");
  EXPECT_NE(stampOf(parent.get(), "a.jpg"), stamp);
}

TEST(FileAttributes, areThoseOfRegularFilesAlone) {
  const TemporaryFolder folder;
  (void)folder.mkdir("sub");
  const FileDescriptor parent = open(folder.path());
  EXPECT_FALSE(stampOf(parent.get(), "sub"));
  EXPECT_FALSE(stampOf(parent.get(), "gone"));
  EXPECT_FALSE(fileAttributes(parent.get(), "folder"));
}

TEST(FileAttributes, cutACommentAndHalveARating) {
  const TemporaryFolder folder;
  const FilePath path = folder.write("a.jpg", "four");
  const auto set = [&path](const char* name, const std::string& value) {
    return setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
  };
  const auto value = [&path](const char* attribute) {
    return valueOf(fileAttributes(open(path).get(), "a.jpg")->metadata, attribute);
  };
  const std::size_t most = metadata::kMaxTextBytes;
  // Some file systems keep no attributes, or none as long.
  if (set("user.xdg.comment", std::string(most + 1, 'x'))) {
    EXPECT_EQ(value("kMDItemFinderComment"), Constant(std::string(most, 'x')));
  }
  if (!set("user.baloo.rating", "8")) return;
  EXPECT_EQ(value("kMDItemStarRating"), Constant(4));
  for (const auto& [rating, stars] : std::map<std::string, Constant>{
           {"7", 3}, {"10", 5}, {"0", {}}, {"11", {}}, {"-2", {}}, {"4 ", {}}, {"", {}}}) {
    ASSERT_TRUE(set("user.baloo.rating", rating));
    EXPECT_EQ(value("kMDItemStarRating"), stars) << rating;
  }
}

TEST(FileAttributes, preferTheTagsOfTheFileAndTheTypeThatIsEmbedded) {
  metadata::FileMetadata ofFile;
  ofFile.set("kMDItemUserTags", {Constant("mine")});
  ofFile.set("kMDItemKind", {Constant("PNG image")});
  ofFile.set("kMDItemContentType", {Constant("public.png")});
  metadata::FileMetadata embedded;
  embedded.set("kMDItemUserTags", {Constant("embedded")});
  embedded.set("kMDItemKind", {Constant("JPEG image")});
  embedded.set("kMDItemContentType", {Constant("public.jpeg")});
  embedded.set("kMDItemCity", {Constant("Porto")});
  const metadata::FileMetadata both = joined(ofFile, embedded);
  EXPECT_EQ(valueOf(both, "kMDItemUserTags"), Constant("mine"));
  EXPECT_EQ(valueOf(both, "kMDItemKind"), Constant("JPEG image"));
  EXPECT_EQ(valueOf(both, "kMDItemContentType"), Constant("public.jpeg"));
  EXPECT_EQ(valueOf(both, "kMDItemCity"), Constant("Porto"));
}

}  // namespace pelmora::platform
