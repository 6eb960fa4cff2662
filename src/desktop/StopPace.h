#pragma once

#include <chrono>

namespace pelmora::desktop {

/// How much is made of those who say that the saver is to end, however often they say it.
struct StopPace {
  /// Between two notifications, at least.
  std::chrono::milliseconds interval{250};
  /// So many signals of a kind are heard in a window of time; the bus keeps the others away.
  int heardInWindow = 10;
  std::chrono::milliseconds window{1000};
};

}  // namespace pelmora::desktop
