#include "sources/LockOrder.h"

#include <algorithm>
#include <iterator>

namespace pelmora::sources {

const char* LockOrder::objectionTo(LockPlace place) const {
  if (place == LockPlace::none) return nullptr;
  for (const LockPlace held : _held) {
    // Also for reading: with a writer waiting in between, the second call may wait for ever.
    if (held == place) return "a lock is taken twice by one thread";
    if (held == LockPlace::scopes) return "a lock is taken while the scopes are locked";
    if (place == LockPlace::scopes) return "the scopes are locked while another lock is held";
    if (held > place) return "the records are locked after the weights";
  }
  return nullptr;
}

void LockOrder::took(LockPlace place) {
  if (place != LockPlace::none) _held.push_back(place);
}

void LockOrder::gaveBack(LockPlace place) {
  const auto last = std::find(_held.rbegin(), _held.rend(), place);
  if (last != _held.rend()) _held.erase(std::next(last).base());
}

LockOrder& LockOrder::ofThisThread() {
  thread_local LockOrder order;
  return order;
}

}  // namespace pelmora::sources
