#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace pelmora::platform::metadata {

/// What kind of file it is, in the words of the platform.
struct ContentType {
  std::string_view name;    // "public.jpeg"
  std::string_view kind;    // "JPEG image"
  std::string_view parent;  // of the types that it is one of, the nearest
  std::string_view mimes;   // with blanks between
  std::string_view suffixes;
};

/// All types that files have, camera files and films among them. Thread: any; it never changes.
[[nodiscard]] std::span<const ContentType> contentTypes();

/// By "image/jpeg", or by the suffix of a file's name, whatever its case; nullptr when it is not
/// known.
[[nodiscard]] const ContentType* contentTypeOfMime(std::string_view mime);
[[nodiscard]] const ContentType* contentTypeOfName(std::string_view fileName);

/// The type itself and all types that it is one of, the nearest first: "public.jpeg",
/// "public.image", "public.data", …
[[nodiscard]] std::vector<std::string_view> contentTypeTree(const ContentType& type);

}  // namespace pelmora::platform::metadata
