#pragma once

#include <string>
#include <string_view>

namespace pelmora::inspector {

enum class ByteOrder { littleEndian, bigEndian };

// Texts as they are embedded in files, as what is kept of them: one line of UTF-8 without control
// characters, without blanks at either end, no longer than `metadata::kMaxTextBytes`. Thread: any.

/// Bytes up to the first zero, in UTF-8; what is not is taken for Latin-1, as many programs write
/// what they like, or where it is said to be UTF-8, shown by a replacement character.
enum class Otherwise { latin1, replaced };
[[nodiscard]] std::string textFromBytes(std::string_view bytes,
                                        Otherwise otherwise = Otherwise::latin1);
/// Up to the first zero; a mark at the begin says the byte order.
[[nodiscard]] std::string textFromUtf16(std::string_view bytes, ByteOrder order);
/// As of Exif.Photo.UserComment: the first eight bytes name the character set.
[[nodiscard]] std::string textFromComment(std::string_view bytes, ByteOrder order);

}  // namespace pelmora::inspector
