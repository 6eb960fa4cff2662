#include "platform/linux/index/PredicateFunction.h"

#include "platform/linux/index/PredicateSql.h"
#include "platform/metadata/AttributeTable.h"
#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

namespace pelmora::platform {
namespace {

/// What the function says of a city and a width, given as SQL.
std::int64_t holds(const std::string& predicate, const std::string& city,
                   const std::string& width) {
  SqliteDatabase database(":memory:");
  definePredicateFunction(database);
  const PredicateCall call{predicate::parsePredicate(predicate).value(),
                           {metadata::attributeNamed("kMDItemCity").value(),
                            metadata::attributeNamed("kMDItemPixelWidth").value()}};
  SqliteStatement statement = database.prepare("SELECT holds(?1, " + city + ", " + width + ")");
  auto execution = statement.execute();
  execution.bindPointer(1, &call, kPredicateCallType);
  EXPECT_TRUE(execution.step());
  return execution.integer(0);
}

TEST(PredicateFunction, evaluatesAPredicateOverWhatItIsGiven) {
  const std::string predicate = "kMDItemCity LIKE[c] 'par*' AND kMDItemPixelWidth > 10";
  EXPECT_EQ(holds(predicate, "CAST('Paris' AS BLOB)", "11"), 1);
  EXPECT_EQ(holds(predicate, "CAST('Paris' AS BLOB)", "10"), 0);
  EXPECT_EQ(holds(predicate, "CAST('London' AS BLOB)", "11"), 0);
}

TEST(PredicateFunction, takesWhatIsNotThereAndWhatIsOfAnotherTypeForMissing) {
  for (const char* width : {"NULL", "'11'", "CAST('11' AS BLOB)", "11.0"}) {
    EXPECT_EQ(holds("kMDItemPixelWidth == NULL", "NULL", width), 1) << width;
  }
  EXPECT_EQ(holds("kMDItemTitle == NULL", "NULL", "1"), 1) << "an attribute that is not given";
}

TEST(PredicateFunction, holdsOfNothingWithoutAPredicate) {
  SqliteDatabase database(":memory:");
  definePredicateFunction(database);
  for (const char* call : {"holds()", "holds(1)", "holds(?1, x'00')", "holds(NULL, 2)"}) {
    SqliteStatement statement = database.prepare(std::string("SELECT ") + call);
    auto execution = statement.execute();
    ASSERT_TRUE(execution.step());
    EXPECT_EQ(execution.value(0), SqlValue(std::int64_t{0})) << call;
  }
}

}  // namespace
}  // namespace pelmora::platform
