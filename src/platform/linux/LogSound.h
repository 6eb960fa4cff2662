#pragma once

#include "platform/Log.h"
#include "platform/Sound.h"

namespace pelmora::platform {

/// Writes a log line in place of a sound, as a screen saver had better be quiet. Thread: any.
class LogSound : public Sound {
 public:
  /// `log` must outlive this.
  explicit LogSound(Log& log) : _log(log) {}
  void beep() override;

 private:
  Log& _log;
};

}  // namespace pelmora::platform
