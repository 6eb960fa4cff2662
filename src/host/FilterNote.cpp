#include "host/FilterNote.h"

#include "platform/predicate/PredicateEmptiness.h"

namespace pelmora::host {

namespace {

using platform::predicate::Compound;
using platform::predicate::CompoundType;
using platform::predicate::Predicate;

/// The remarks of the test for emptiness are for the log of the saver.
class Unheard : public platform::Log {
  void write(std::string_view) override {}
};

bool isLoneNegation(const Predicate& predicate) {
  const auto* compound = predicate.get<Compound>();
  return compound && compound->type == CompoundType::negation;
}

}  // namespace

std::optional<std::string> noteOnFilter(const Predicate& predicate) {
  try {
    Unheard log;
    if (platform::predicate::isEmpty(predicate, log)) {
      return "the saver takes this filter for none, as nothing in it is compared with a text";
    }
  } catch (const platform::predicate::PredicateException&) {
    return "the saver does not use this filter: a comparison with a text by ==, !=, BEGINSWITH, "
           "ENDSWITH or CONTAINS has to come first";
  }
  if (isLoneNegation(predicate)) {
    return "the saver looks through a NOT around all of its filter, and shows what the rest of it "
           "admits";
  }
  return std::nullopt;
}

}  // namespace pelmora::host
