#include "platform/metadata/ContentTypes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace pelmora::platform::metadata {

using testing::ElementsAre;

TEST(ContentTypes, areToldByTheMimeType) {
  EXPECT_EQ(contentTypeOfMime("image/jpeg")->name, "public.jpeg");
  EXPECT_EQ(contentTypeOfMime("image/x-ms-bmp")->name, "com.microsoft.bmp");
  EXPECT_EQ(contentTypeOfMime("image/x-nikon-nef")->kind, "Nikon raw image");
  EXPECT_EQ(contentTypeOfMime("image"), nullptr);
  EXPECT_EQ(contentTypeOfMime(""), nullptr);
}

TEST(ContentTypes, areToldByTheSuffixOfAName) {
  EXPECT_EQ(contentTypeOfName("a.b.jpg")->name, "public.jpeg");
  EXPECT_EQ(contentTypeOfName("IMG_0001.HEIC")->name, "public.heic");
  EXPECT_EQ(contentTypeOfName("film.Mov")->kind, "QuickTime movie");
  EXPECT_EQ(contentTypeOfName("jpg"), nullptr);
  EXPECT_EQ(contentTypeOfName(".jpg"), nullptr);
  EXPECT_EQ(contentTypeOfName("a."), nullptr);
  EXPECT_EQ(contentTypeOfName("a.jpg "), nullptr);
  EXPECT_EQ(contentTypeOfName(""), nullptr);
}

TEST(ContentTypes, areOneOfOthers) {
  EXPECT_THAT(contentTypeTree(*contentTypeOfName("a.nef")),
              ElementsAre("com.nikon.raw-image", "public.camera-raw-image", "public.image",
                          "public.data", "public.item", "public.content"));
  EXPECT_THAT(contentTypeTree(*contentTypeOfName("a.mp4")),
              ElementsAre("public.mpeg-4", "public.movie", "public.audiovisual-content",
                          "public.data", "public.item", "public.content"));
}

TEST(ContentTypes, allEndInTheSameOne) {
  for (const ContentType& type : contentTypes()) {
    EXPECT_EQ(contentTypeTree(type).back(), "public.content") << type.name;
    EXPECT_FALSE(type.kind.empty()) << type.name;
  }
}

TEST(ContentTypes, haveNothingInCommon) {
  std::set<std::string> words;
  for (const ContentType& type : contentTypes()) {
    EXPECT_TRUE(words.insert(std::string(type.name)).second) << type.name;
    for (const std::string_view list : {type.mimes, type.suffixes}) {
      for (std::size_t at = 0; at < list.size();) {
        const std::size_t end = std::min(list.find(' ', at), list.size());
        EXPECT_TRUE(words.insert(std::string(list.substr(at, end - at))).second) << list;
        at = end + 1;
      }
    }
  }
}

}  // namespace pelmora::platform::metadata
