#pragma once

#include "platform/RunningApplications.h"

namespace pelmora::platform {

/// Applications that a test chooses; none at first. Thread: any, once chosen.
class FakeRunningApplications : public RunningApplications {
 public:
  [[nodiscard]] std::vector<RunningApplication> runningApplications() const override {
    return applications;
  }

  std::vector<RunningApplication> applications;
};

}  // namespace pelmora::platform
