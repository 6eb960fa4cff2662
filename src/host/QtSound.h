#pragma once

#include "platform/Sound.h"

namespace pelmora::host {

/// The desktop's alert sound, for a program that has windows. Thread: GUI.
class QtSound : public platform::Sound {
 public:
  void beep() override;
};

}  // namespace pelmora::host
