#include "decoder/tests/PaintedProfile.h"

#include "decoder/IccProfile.h"

#include <array>

namespace pelmora::decoder {

namespace {

std::string saved(const ProfilePointer& profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile.get(), nullptr, &size);
  std::string bytes(size, '\0');
  cmsSaveProfileToMem(profile.get(), bytes.data(), &size);
  return bytes;
}

void describe(const ProfilePointer& profile, const char* text) {
  cmsMLU* description = cmsMLUalloc(nullptr, 1);
  cmsMLUsetASCII(description, "en", "US", text);
  cmsWriteTag(profile.get(), cmsSigProfileDescriptionTag, description);
  cmsMLUfree(description);
}

std::string rgbProfile(const cmsCIExyYTRIPLE& primaries, const char* name) {
  constexpr std::array<double, 5> kCurve{2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
  const cmsCIExyY white{0.3127, 0.3290, 1};
  cmsToneCurve* curve = cmsBuildParametricToneCurve(nullptr, 4, kCurve.data());
  const std::array curves{curve, curve, curve};
  const ProfilePointer profile(cmsCreateRGBProfile(&white, &primaries, curves.data()));
  cmsFreeToneCurve(curve);
  describe(profile, name);
  return saved(profile);
}

constexpr cmsCIExyY kRed{0.64, 0.33, 1};
constexpr cmsCIExyY kGreen{0.30, 0.60, 1};
constexpr cmsCIExyY kBlue{0.15, 0.06, 1};

cmsInt32Number mixInks(const cmsUInt16Number inks[], cmsUInt16Number lab[], void*) {
  std::array<double, 3> light{};
  for (std::size_t i = 0; i < 3; ++i) light[i] = (1 - inks[i] / 65535.0) * (1 - inks[3] / 65535.0);
  const cmsCIEXYZ xyz{0.4361 * light[0] + 0.3851 * light[1] + 0.1431 * light[2],
                      0.2225 * light[0] + 0.7169 * light[1] + 0.0606 * light[2],
                      0.0139 * light[0] + 0.0971 * light[1] + 0.7142 * light[2]};
  cmsCIELab color{};
  cmsXYZ2Lab(nullptr, &color, &xyz);
  cmsFloat2LabEncodedV2(lab, &color);
  return TRUE;
}

}  // namespace

std::string displayP3Profile() {
  return rgbProfile({{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}}, "Display P3");
}

std::string srgbProfile() { return rgbProfile({kRed, kGreen, kBlue}, "sRGB, made anew"); }

std::string swappedProfile() { return rgbProfile({kGreen, kBlue, kRed}, "swapped"); }

std::string greyProfile(double gamma) {
  const cmsCIExyY white{0.3457, 0.3585, 1};
  cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
  const ProfilePointer profile(cmsCreateGrayProfile(&white, curve));
  cmsFreeToneCurve(curve);
  return saved(profile);
}

std::string cmykProfile() {
  const ProfilePointer profile(cmsCreateProfilePlaceholder(nullptr));
  cmsSetProfileVersion(profile.get(), 2.1);
  cmsSetDeviceClass(profile.get(), cmsSigOutputClass);
  cmsSetColorSpace(profile.get(), cmsSigCmykData);
  cmsSetPCS(profile.get(), cmsSigLabData);
  describe(profile, "inks");
  cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
  cmsStage* table = cmsStageAllocCLut16bit(nullptr, 9, 4, 3, nullptr);
  cmsStageSampleCLut16bit(table, mixInks, nullptr, 0);
  cmsPipelineInsertStage(pipeline, cmsAT_BEGIN, table);
  cmsWriteTag(profile.get(), cmsSigAToB0Tag, pipeline);
  cmsPipelineFree(pipeline);
  return saved(profile);
}

std::string linkProfile() {
  return saved(ProfilePointer(cmsCreateInkLimitingDeviceLink(cmsSigCmykData, 300)));
}

}  // namespace pelmora::decoder
