#include "platform/linux/FolderReader.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>

#include <gmock/gmock.h>

#include <cerrno>
#include <string>
#include <vector>

namespace pelmora::platform {

TEST(FolderReader, readsFromTheBeginning) {
  const TemporaryFolder temporary;
  (void)temporary.write("a");
  (void)temporary.mkdir("b");
  const FileDescriptor folder(::open(temporary.path().c_str(), O_RDONLY | O_DIRECTORY));
  Listing listing;
  ASSERT_EQ(readVisibleEntries(folder.get(), listing), 0);
  const std::vector<std::string> names(listing.names->begin(), listing.names->end());
  EXPECT_THAT(names, testing::UnorderedElementsAre("a", "b"));
  EXPECT_EQ(listing.kinds.size(), 2U);
}

TEST(FolderReader, tellsWhyItFails) {
  const TemporaryFolder temporary;
  const FileDescriptor file(::open(temporary.write("a").c_str(), O_RDONLY));
  Listing listing;
  EXPECT_EQ(readVisibleEntries(file.get(), listing), ENOTDIR);
  EXPECT_EQ(readVisibleEntries(-1, listing), EBADF);
}

TEST(FolderReader, knowsDesktopEntriesThatLinkToFiles) {
  const TemporaryFolder temporary;
  const FilePath link =
      temporary.write("a.desktop", "[Desktop Entry]\nType=Link\nURL=file:///nowhere");
  const FilePath program = temporary.write("b.desktop", "[Desktop Entry]\nType=Application");
  EXPECT_TRUE(isDesktopLink(AT_FDCWD, link.c_str()));
  EXPECT_FALSE(isDesktopLink(AT_FDCWD, program.c_str()));
  EXPECT_FALSE(isDesktopLink(AT_FDCWD, temporary.path().c_str()));
}

}  // namespace pelmora::platform
