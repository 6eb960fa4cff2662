#pragma once

#include "shared/Result.h"

#include <string>

namespace pelmora::decoder {

/// Starts libvips: once in a process, before it is shut off from the file system; whatever it and
/// the libraries below it load late (modules, profiles) is loaded here. Every reader but those of
/// JPEG, PNG, WebP, TIFF, GIF, HEIC, AVIF and JPEG XL is blocked, and it writes no warnings.
/// Thread: the one that decodes. Errors: one short line.
[[nodiscard]] Status startVips();

/// The profile that stands for CMYK that says nothing of its inks; empty when there is none.
[[nodiscard]] std::string fallbackCmykProfile();

}  // namespace pelmora::decoder
