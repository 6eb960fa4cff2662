#include "decoder/VipsLibrary.h"

#include "decoder/VipsPointers.h"

#include <gtest/gtest.h>
#include <vips/vector.h>

namespace pelmora::decoder {

TEST(VipsLibrary, startsAsOftenAsItIsAsked) {
  EXPECT_TRUE(startVips().ok());
  EXPECT_TRUE(startVips().ok());
  EXPECT_EQ(vips_concurrency_get(), 1);
  EXPECT_EQ(vips_cache_get_max(), 0);
  EXPECT_FALSE(vips_vector_isenabled());
}

TEST(VipsLibrary, hasAProfileForInks) {
  ASSERT_TRUE(startVips().ok());
  const std::string profile = fallbackCmykProfile();
  ASSERT_GT(profile.size(), 128U);
  EXPECT_EQ(profile.substr(16, 4), "CMYK");
}

TEST(VipsLibrary, tellsTheFirstLineOfWhatWentWrongAndForgetsIt) {
  ASSERT_TRUE(startVips().ok());
  vips_error_clear();
  EXPECT_EQ(damagedPicture().message, "it is damaged");
  vips_error("reader", "first");
  vips_error("reader", "second");
  EXPECT_EQ(damagedPicture().message, "it is damaged (reader: first)");
  EXPECT_EQ(damagedPicture().message, "it is damaged");
}

TEST(VipsLibrary, writesNothingToStandardError) {
  ASSERT_TRUE(startVips().ok());
  testing::internal::CaptureStderr();
  g_log("VIPS", G_LOG_LEVEL_WARNING, "a warning");
  g_warning("another");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace pelmora::decoder
