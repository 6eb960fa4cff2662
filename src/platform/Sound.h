#pragma once

namespace pelmora::platform {

/// The desktop's alert sound. Thread: any.
class Sound {
 public:
  virtual ~Sound() = default;
  virtual void beep() = 0;
};

}  // namespace pelmora::platform
