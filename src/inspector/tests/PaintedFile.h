#pragma once

#include "platform/FileDescriptor.h"

#include <exiv2/image.hpp>

#include <cstdint>
#include <functional>
#include <vector>

namespace pelmora::inspector {

using Bytes = std::vector<std::uint8_t>;

enum class Format { jpeg, png, tiff, webp };

/// A small picture with what `fill` puts into it.
[[nodiscard]] Bytes painted(Format format, const std::function<void(Exiv2::Image&)>& fill);

/// The same in a HEIF file of the kind that telephones write, which has Exif alone.
[[nodiscard]] Bytes paintedHeic(const Exiv2::ExifData& exif);

/// Some of everything: Exif with a place, IPTC and XMP.
void fillWithEverything(Exiv2::Image& image);

/// Bytes as an open file, at its begin.
[[nodiscard]] platform::FileDescriptor fileOf(const Bytes& bytes);

}  // namespace pelmora::inspector
