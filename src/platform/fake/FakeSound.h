#pragma once

#include "platform/Sound.h"

#include <atomic>
#include <functional>

namespace pelmora::platform {

/// Counts the beeps, and calls `onBeep` for each on the thread that beeps. Thread: any, once
/// chosen.
class FakeSound : public Sound {
 public:
  void beep() override {
    ++_beeps;
    if (onBeep) onBeep();
  }
  [[nodiscard]] int beeps() const { return _beeps; }

  std::function<void()> onBeep;

 private:
  std::atomic<int> _beeps{0};
};

}  // namespace pelmora::platform
