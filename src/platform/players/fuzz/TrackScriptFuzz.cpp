#include "platform/players/TrackScript.h"
#include "platform/players/TrackText.h"
#include "platform/UnicodeText.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

// Any bytes as a script, and as a text that a player tells: what is read keeps its promises.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora::platform::players;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string text = trackText(bytes);
  if (!pelmora::plist::isUtf8(text) || text.size() > 4 * kLongestTrackText) std::abort();
  if (trackText(text) != text) std::abort();

  const auto script = parseTrackScript(bytes);
  if (!script) return 0;
  if (script->application.empty() || script->fields.empty()) std::abort();
  for (const auto& [keyword, property] : script->fields) {
    if (keyword.size() != 4) std::abort();
  }
  const Track track{text, text, text, 50};
  if (recordOf(*script, track).size() != script->fields.size()) std::abort();
  return 0;
}
