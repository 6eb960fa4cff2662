#pragma once

#include "platform/ScriptRunner.h"

namespace pelmora::platform {

/// Keeps the scripts that it is given, and returns what a test chooses; nothing at first.
/// Thread: one.
class FakeScriptRunner : public ScriptRunner {
 public:
  [[nodiscard]] ScriptResult execute(const std::string& script) override {
    executed.push_back(script);
    return result;
  }

  ScriptResult result;
  std::vector<std::string> executed;
};

}  // namespace pelmora::platform
