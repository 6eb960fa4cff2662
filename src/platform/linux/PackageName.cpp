#include "platform/linux/PackageName.h"

#include <algorithm>
#include <array>
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

// None of them is longer, so a longer suffix need not be looked up.
constexpr std::size_t kLongestSuffix = 20;

}  // namespace

bool isPackageName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return false;
  std::string suffix(name.substr(dot + 1));
  if (suffix.size() > kLongestSuffix) return false;
  // Not by tolower, which keeps the I of a Turkish user.
  for (char& letter : suffix) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return std::binary_search(kSuffixes.begin(), kSuffixes.end(), suffix);
}

}  // namespace pelmora::platform
