#pragma once

#include "decoder/RowReader.h"

#include <lcms2.h>

#include <memory>
#include <string>

namespace pelmora::decoder {

/// A profile that is larger is left unused. The largest real ones, of printing presses, have 3 MB.
constexpr std::size_t kLargestIccProfile = 4'000'000;

struct ColorContextDeleter {
  void operator()(cmsContext context) const { cmsDeleteContext(context); }
};
struct ProfileCloser {
  void operator()(cmsHPROFILE profile) const { cmsCloseProfile(profile); }
};
struct TransformDeleter {
  void operator()(cmsHTRANSFORM transform) const { cmsDeleteTransform(transform); }
};
using ColorContext = std::unique_ptr<std::remove_pointer_t<cmsContext>, ColorContextDeleter>;
using ProfilePointer = std::unique_ptr<void, ProfileCloser>;
using TransformPointer = std::unique_ptr<void, TransformDeleter>;

/// Of the colour library, with errors that go nowhere instead of to standard error.
[[nodiscard]] ColorContext makeColorContext();

/// The profile in `bytes`, which must stay; null where it is broken, too large, or does not say
/// what a device's colours are (those that name inks or link two devices).
[[nodiscard]] ProfilePointer openProfile(cmsContext context, const std::string& bytes);

/// Whether the profile says what pixels of that model mean. One of RGB does so for grey too.
[[nodiscard]] bool fits(cmsHPROFILE profile, ColorModel model);

/// What a person calls the profile ("Display P3"); "sRGB" for none, "broken" for one that cannot be
/// read. Printable, one line, at most 60 bytes.
[[nodiscard]] std::string describeProfile(const std::string& profile);

}  // namespace pelmora::decoder
