#include "platform/predicate/PredicateEvaluation.h"
#include "platform/predicate/PredicateText.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

// Any bytes as a predicate's text: what is read comes back from its text, and can be asked.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora::platform::predicate;
  static const MetadataMap kFile(
      {{"a", {"Caf\u00E9 \u0130stanbul.jpg"}},
       {"b", {"beach", "Stra\u00DFe", "aaaaaaaaaaaaaaaaaaaaaaaa", "2\uFF0A\uFB01?"}},
       {"n", {1, 2.5, pelmora::ReferenceTime{3}}}});
  const auto read = parsePredicate({reinterpret_cast<const char*>(data), size});
  if (!read) {
    if (read.error().message.find('\n') != std::string::npos) std::abort();
    return 0;
  }
  const auto again = parsePredicate(textOf(*read));
  if (!again || !(*again == *read)) std::abort();
  if (matches(*read, kFile) != matches(*again, kFile)) std::abort();
  return 0;
}
