#pragma once

#include <cstddef>
#include <vector>

namespace pelmora::sources {

/// Where the list's locks stand in the order in which one thread may hold them together. The lock
/// of the filter's scopes is held alone: what is done under it may take its time.
enum class LockPlace { none, items, weights, scopes };

/// Which of the list's locks one thread holds, and whether it may take another: two threads that
/// take two locks in different orders wait for each other for ever, some day. Debug builds ask it
/// before every lock of the list. Thread: one.
class LockOrder {
 public:
  /// Why a lock of that place must not be taken now; null when it may.
  [[nodiscard]] const char* objectionTo(LockPlace place) const;
  void took(LockPlace place);
  void gaveBack(LockPlace place);
  [[nodiscard]] std::size_t heldCount() const { return _held.size(); }

  /// The calling thread's.
  [[nodiscard]] static LockOrder& ofThisThread();

 private:
  std::vector<LockPlace> _held;  // in the order in which they were taken
};

}  // namespace pelmora::sources
