#pragma once

#include "idle/Inhibitor.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace pelmora::idle {

/// What a fake inhibitor does; outlives it.
struct InhibitorScript {
  bool isHeld = false;
  bool answersAtOnce = true;
  std::string holder = "a player";
  std::vector<std::function<void()>> asked;  // those who wait for an answer

  void answer() {
    for (const auto& each : std::exchange(asked, {})) each();
  }
};

/// An inhibitor that does as it is told.
class FakeInhibitor : public Inhibitor {
 public:
  explicit FakeInhibitor(InhibitorScript& script) : _script(script) {}

  [[nodiscard]] bool isHeld() const override { return _script.isHeld; }
  [[nodiscard]] std::string holder() const override { return _script.holder; }
  void ask(std::function<void()> answered) override {
    _script.asked.push_back(std::move(answered));
    if (_script.answersAtOnce) _script.answer();
  }

 private:
  InhibitorScript& _script;
};

}  // namespace pelmora::idle
