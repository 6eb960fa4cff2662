#include "platform/linux/PackageName.h"

#include <gtest/gtest.h>

#include <string>

namespace pelmora::platform {

TEST(PackageName, knowsTheSuffixesOfPackages) {
  for (const char* name :
       {"A.app", "A.bundle", "A.framework", "Photos Library.photoslibrary", "A.photolibrary",
        "A.aplibrary", "A Previews.lrdata", "A.lrlibrary", "A.rtfd", "A.pages", "A.key",
        "A.numbers", "A.fcpbundle", "A.sparsebundle"}) {
    EXPECT_TRUE(isPackageName(name)) << name;
  }
}

TEST(PackageName, takesSuffixesInEitherCase) {
  EXPECT_TRUE(isPackageName("A.PhotosLibrary"));
  EXPECT_TRUE(isPackageName("A.PHOTOSLIBRARY"));
  EXPECT_TRUE(isPackageName("A.APP"));
  EXPECT_TRUE(isPackageName("A.dSYM"));
}

TEST(PackageName, leavesOrdinaryFoldersAlone) {
  for (const char* name : {"", ".", ".app", "app", "2024.05.01", "A.app.d", "A.", "A.apps",
                           "A.\xC3\x84pp", "photoslibrary", "A.app "}) {
    EXPECT_FALSE(isPackageName(name)) << name;
  }
  EXPECT_FALSE(isPackageName("A." + std::string(253, 'p')));
}

}  // namespace pelmora::platform
