#pragma once

#include <optional>
#include <string>
#include <vector>

namespace pelmora::platform {

struct RunningApplication {
  std::optional<std::string> bundleIdentifier;  // as "com.apple.Music"
};

/// The applications that run, as far as the module asks about them: music players. The one that
/// counts answers to the identifier that the rules of the module ask for. Thread: any.
class RunningApplications {
 public:
  virtual ~RunningApplications() = default;
  [[nodiscard]] virtual std::vector<RunningApplication> runningApplications() const = 0;
};

}  // namespace pelmora::platform
