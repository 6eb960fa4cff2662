#pragma once

#include <string>

namespace pelmora::decoder {

// ICC profiles made for tests, as the bytes that a file would hold.

/// The primaries of P3, the white and the curve of sRGB, as phones write it.
[[nodiscard]] std::string displayP3Profile();
[[nodiscard]] std::string srgbProfile();
/// RGB of which the channels have changed places: red is green's, green is blue's.
[[nodiscard]] std::string swappedProfile();
[[nodiscard]] std::string greyProfile(double gamma);
/// Inks that take away light as in a school book, in a table.
[[nodiscard]] std::string cmykProfile();
/// Of a kind that no picture has: it leads from device to device.
[[nodiscard]] std::string linkProfile();

}  // namespace pelmora::decoder
