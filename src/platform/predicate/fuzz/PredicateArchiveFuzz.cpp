#include "platform/predicate/OperatorTable.h"
#include "platform/predicate/PredicateArchive.h"
#include "platform/predicate/PredicateText.h"

#include <cstdint>
#include <cstdlib>

namespace {

using namespace pelmora::platform::predicate;

bool hasUnknown(const Predicate& predicate) {
  if (const auto* comparison = predicate.get<Comparison>()) {
    return !entryOf(comparison->type) || std::get_if<UnknownExpression>(&comparison->left) ||
           std::get_if<UnknownExpression>(&comparison->right);
  }
  const auto* compound = predicate.get<Compound>();
  for (std::size_t i = 0; compound && i < compound->subpredicates.size(); ++i) {
    if (hasUnknown(compound->subpredicates[i])) return true;
  }
  return false;
}

}  // namespace

// Any bytes as a predicate's archive: what is read can be written, and comes back from there.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto read = readPredicateArchive({data, size});
  if (!read) return 0;
  if (!isWithinLimits(*read)) std::abort();
  const auto text = parsePredicate(textOf(*read));
  if (text && !isWithinLimits(*text)) std::abort();
  const auto written = writePredicateArchive(*read);
  if (hasUnknown(*read)) return written ? (std::abort(), 0) : 0;
  if (!written) std::abort();
  const auto again = readPredicateArchive(*written);
  if (!again || !(*again == *read)) std::abort();
  return 0;
}
