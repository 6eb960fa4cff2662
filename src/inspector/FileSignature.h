#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace pelmora::inspector {

/// How many bytes of a file `signatureOf` wants to see.
inline constexpr std::size_t kSignatureBytes = 64;

struct FileSignature {
  std::string_view mime;
  bool isReadable = true;  // by Exiv2
};

/// What picture a file is by its first bytes; nullopt for all that is none, such as films.
/// Thread: any.
[[nodiscard]] std::optional<FileSignature> signatureOf(std::span<const std::uint8_t> begin);

}  // namespace pelmora::inspector
