#include "platform/fake/FakeImageLoader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelmora::platform {

using testing::ElementsAre;

namespace {

const FilePath kOne("/p/one.jpg");
const FilePath kOther("/p/other.jpg");

}  // namespace

TEST(FakeImageLoader, givesEveryPathAPicture) {
  FakeImageLoader loader;
  const Result<Image> image = loader.load(kOne, 100);
  ASSERT_TRUE(image.ok());
  EXPECT_TRUE(image.value().isValid());
  EXPECT_EQ(image.value().size, (Size{1, 1}));
  const SharedBytes& bytes = image.value().pixels->bytes;
  EXPECT_THAT(std::vector(bytes.begin(), bytes.end()), ElementsAre(0x80, 0x80, 0x80, 0xFF));
}

TEST(FakeImageLoader, decodesToFitAndNeverEnlarges) {
  FakeImageLoader loader;
  loader.setDefaultSize({400, 300});
  loader.setSize(kOne, {30, 2000});
  const Image wide = loader.load(kOther, 100).value();
  EXPECT_EQ(wide.size, (Size{400, 300}));
  EXPECT_EQ(wide.pixels->size, (PixelSize{100, 75}));
  EXPECT_EQ(wide.pixels->bytes.size(), 4U * 100 * 75);
  const Image thin = loader.load(kOne, 20).value();
  EXPECT_EQ(thin.size, (Size{30, 2000}));
  EXPECT_EQ(thin.pixels->size, (PixelSize{1, 20}));
  EXPECT_EQ(loader.load(kOther, 1000).value().pixels->size, (PixelSize{400, 300}));
}

TEST(FakeImageLoader, failsWhereItIsToldTo) {
  FakeImageLoader loader;
  loader.fail(kOne, "damaged");
  EXPECT_EQ(loader.load(kOne, 100).error().message, "damaged");
  EXPECT_TRUE(loader.load(kOther, 100).ok());
  loader.failAll();
  EXPECT_FALSE(loader.load(kOther, 100).ok());
}

TEST(FakeImageLoader, isNotAtWorkWhileItIsToldSo) {
  FakeImageLoader loader;
  EXPECT_TRUE(loader.isAtWork());
  loader.setAtWork(false);
  EXPECT_FALSE(loader.isAtWork());
  EXPECT_FALSE(loader.load(kOne, 100).ok());
  loader.setAtWork(true);
  EXPECT_TRUE(loader.load(kOne, 100).ok());
}

TEST(FakeImageLoader, givesInvalidPicturesWhereItIsToldTo) {
  FakeImageLoader loader;
  loader.makeInvalid(kOne);
  ASSERT_TRUE(loader.load(kOne, 100).ok());
  EXPECT_FALSE(loader.load(kOne, 100).value().isValid());
}

TEST(FakeImageLoader, writesDownEveryLoad) {
  FakeImageLoader loader;
  loader.fail(kOne);
  (void)loader.load(kOne, 100);
  (void)loader.load(kOther, 200);
  (void)loader.load(kOne, 300);
  EXPECT_THAT(loader.loads(),
              ElementsAre(FakeImageLoader::Load{kOne, 100}, FakeImageLoader::Load{kOther, 200},
                          FakeImageLoader::Load{kOne, 300}));
  EXPECT_EQ(loader.loadCount(kOne), 2U);
}

}  // namespace pelmora::platform
