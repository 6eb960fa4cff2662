#include "decoder/IccProfile.h"

#include "decoder/tests/PaintedProfile.h"

#include <gtest/gtest.h>

namespace pelmora::decoder {

namespace {

bool opens(const std::string& bytes) {
  const ColorContext context = makeColorContext();
  return openProfile(context.get(), bytes) != nullptr;
}

bool fitsModel(const std::string& bytes, ColorModel model) {
  const ColorContext context = makeColorContext();
  const ProfilePointer profile = openProfile(context.get(), bytes);
  return fits(profile.get(), model);
}

}  // namespace

TEST(IccProfile, opensThoseOfDevices) {
  EXPECT_TRUE(opens(displayP3Profile()));
  EXPECT_TRUE(opens(greyProfile(2.2)));
  EXPECT_TRUE(opens(cmykProfile()));
}

TEST(IccProfile, refusesWhatIsBrokenOrTooLarge) {
  EXPECT_FALSE(opens(""));
  EXPECT_FALSE(opens("no profile"));
  EXPECT_FALSE(opens(std::string(500, 'x')));
  EXPECT_FALSE(opens(displayP3Profile().substr(0, 200)));
  std::string large = displayP3Profile();
  large.resize(kLargestIccProfile + 1);
  EXPECT_FALSE(opens(large));
}

TEST(IccProfile, refusesALinkFromDeviceToDevice) { EXPECT_FALSE(opens(linkProfile())); }

TEST(IccProfile, fitsItsOwnModelAndRgbFitsGreyToo) {
  EXPECT_TRUE(fitsModel(displayP3Profile(), ColorModel::rgb));
  EXPECT_TRUE(fitsModel(displayP3Profile(), ColorModel::grey));
  EXPECT_FALSE(fitsModel(displayP3Profile(), ColorModel::cmyk));
  EXPECT_TRUE(fitsModel(greyProfile(1.8), ColorModel::grey));
  EXPECT_FALSE(fitsModel(greyProfile(1.8), ColorModel::rgb));
  EXPECT_TRUE(fitsModel(cmykProfile(), ColorModel::cmyk));
  EXPECT_FALSE(fitsModel(cmykProfile(), ColorModel::rgb));
}

TEST(IccProfile, isCalledByItsDescription) {
  EXPECT_EQ(describeProfile(displayP3Profile()), "Display P3");
  EXPECT_EQ(describeProfile(""), "sRGB");
  EXPECT_EQ(describeProfile("no profile"), "broken");
}

TEST(IccProfile, hasADescriptionOfOneShortPrintableLine) {
  std::string hostile = displayP3Profile();
  // The description is in UTF-16, high byte first.
  const std::size_t at = hostile.find(std::string("\0D\0i\0s\0p", 8));
  ASSERT_NE(at, std::string::npos);
  hostile[at + 1] = '\n';
  hostile[at + 3] = '\x1b';
  EXPECT_EQ(describeProfile(hostile), "??splay P3");
}

}  // namespace pelmora::decoder
