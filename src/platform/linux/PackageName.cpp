#include "platform/linux/PackageName.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

namespace pelmora::platform {

namespace {

constexpr auto kSuffixes =
    std::to_array<std::string_view>({"abbu",         "aplibrary",     "app",
                                     "appex",        "band",          "bundle",
                                     "cocatalog",    "dsym",          "dvdmedia",
                                     "fcpbundle",    "fcpcache",      "framework",
                                     "graffle",      "imovielibrary", "kext",
                                     "key",          "logicx",        "lrdata",
                                     "lrlibrary",    "mdimporter",    "migratedphotolibrary",
                                     "mlpackage",    "nib",           "numbers",
                                     "pages",        "pbproj",        "photoboothlibrary",
                                     "photolibrary", "photoslibrary", "playground",
                                     "plugin",       "prefpane",      "qlgenerator",
                                     "rtfd",         "saver",         "scptd",
                                     "sparsebundle", "tvlibrary",     "utm",
                                     "vmwarevm",     "wdgt",          "xcarchive",
                                     "xcassets",     "xcdatamodel",   "xcdatamodeld",
                                     "xcodeproj",    "xcworkspace",   "xpc"});
static_assert(std::is_sorted(kSuffixes.begin(), kSuffixes.end()));

// All of them are shorter, and a longer suffix need not be looked up.
constexpr std::size_t kLongestSuffix = 20;

}  // namespace

bool isPackageName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return false;
  std::string suffix(name.substr(dot + 1));
  if (suffix.size() > kLongestSuffix) return false;
  std::transform(suffix.begin(), suffix.end(), suffix.begin(), [](unsigned char letter) {
    return static_cast<char>(letter < 0x80 ? std::tolower(letter) : letter);
  });
  return std::binary_search(kSuffixes.begin(), kSuffixes.end(), suffix);
}

}  // namespace pelmora::platform
