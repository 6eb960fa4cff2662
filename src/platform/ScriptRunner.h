#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

namespace pelmora::platform {

using ScriptValue = std::variant<std::string, double>;
/// Values by keywords of four letters, as "pnam".
using ScriptRecord = std::map<std::string, ScriptValue>;
using ScriptList = std::vector<ScriptValue>;
/// What a script returns; nothing also where it failed.
using ScriptResult = std::variant<std::monostate, std::string, double, ScriptList, ScriptRecord>;

/// Runs small scripts that ask a music player for what it plays. Thread: any.
class ScriptRunner {
 public:
  virtual ~ScriptRunner() = default;
  /// Runs a script's text. Waits for the player, but no longer than a second.
  [[nodiscard]] virtual ScriptResult execute(const std::string& script) = 0;
};

}  // namespace pelmora::platform
