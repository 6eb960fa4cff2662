#include "decoder/IccProfile.h"

#include <algorithm>
#include <array>

namespace pelmora::decoder {

namespace {

constexpr std::size_t kLongestDescription = 60;

void ignoreError(cmsContext, cmsUInt32Number, const char*) {}

bool isOfDevice(cmsHPROFILE profile) {
  switch (cmsGetDeviceClass(profile)) {
    case cmsSigInputClass:
    case cmsSigDisplayClass:
    case cmsSigOutputClass:
    case cmsSigColorSpaceClass:
      break;
    default:
      return false;
  }
  const cmsColorSpaceSignature connection = cmsGetPCS(profile);
  return connection == cmsSigXYZData || connection == cmsSigLabData;
}

}  // namespace

ColorContext makeColorContext() {
  ColorContext context(cmsCreateContext(nullptr, nullptr));
  if (context) cmsSetLogErrorHandlerTHR(context.get(), ignoreError);
  return context;
}

ProfilePointer openProfile(cmsContext context, const std::string& bytes) {
  if (bytes.empty() || bytes.size() > kLargestIccProfile) return nullptr;
  ProfilePointer profile(
      cmsOpenProfileFromMemTHR(context, bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
  if (profile && !isOfDevice(profile.get())) profile.reset();
  return profile;
}

bool fits(cmsHPROFILE profile, ColorModel model) {
  const cmsColorSpaceSignature colors = cmsGetColorSpace(profile);
  switch (model) {
    case ColorModel::grey:
      return colors == cmsSigGrayData || colors == cmsSigRgbData;
    case ColorModel::rgb:
      return colors == cmsSigRgbData;
    case ColorModel::cmyk:
      return colors == cmsSigCmykData;
  }
  return false;
}

std::string describeProfile(const std::string& profile) {
  if (profile.empty()) return "sRGB";
  const ColorContext context = makeColorContext();
  const ProfilePointer opened = openProfile(context.get(), profile);
  if (!opened) return "broken";
  std::array<char, kLongestDescription + 1> text{};
  cmsGetProfileInfoASCII(opened.get(), cmsInfoDescription, "en", "US", text.data(),
                         static_cast<cmsUInt32Number>(text.size()));
  text.back() = '\0';
  std::string description(text.data());
  std::replace_if(
      description.begin(), description.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return description.empty() ? "unnamed" : description;
}

}  // namespace pelmora::decoder
