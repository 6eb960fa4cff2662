#include "platform/players/PlayerState.h"

#include <cstdint>
#include <cstdlib>

namespace {

constexpr std::size_t kMostBytes = 512 * 4;  // of as many characters

void check(const std::optional<std::string>& text) {
  if (text && (text->empty() || text->size() > kMostBytes)) std::abort();
}

}  // namespace

// Any dictionary as what a player says of itself: what is taken of it can be shown.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora;
  const auto read = plist::read({data, size});
  const auto* properties = read ? read->get<plist::Dictionary>() : nullptr;
  if (!properties) return 0;
  const auto state = platform::players::playerState(*properties);
  if (!state.track) return 0;
  check(state.track->name);
  check(state.track->artist);
  check(state.track->album);
  const double rating = state.track->rating.value_or(0);
  if (!(rating >= 0 && rating <= 100)) std::abort();
  return 0;
}
