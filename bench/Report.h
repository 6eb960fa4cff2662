#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::bench {

/// One measured figure. A figure with a base is judged by its ratio to it, one without by its
/// value.
struct Figure {
  std::string name;
  double value = 0;
  std::string unit;
  std::string base = {};                       // what it is compared with; empty: nothing
  double baseValue = 0;                        // in the same unit
  std::optional<double> most = std::nullopt;   // target: no more than this
  std::optional<double> least = std::nullopt;  // target: no less than this
};

/// Prints `name value unit ratio-to what target ok|short`, "-" for what does not apply.
void report(const Figure& figure);

/// Wall time of one call, in seconds.
[[nodiscard]] double secondsOf(const std::function<void()>& work);

[[nodiscard]] double median(std::vector<double> values);

/// Runs a command without a shell, its output thrown away, and gives its wall time in seconds.
double secondsOfCommand(const std::vector<std::string>& words);

}  // namespace pelmora::bench
