#include "sources/FolderRecords.h"

#include "sources/tests/SourcesTest.h"

#include <limits>

namespace pelmora::sources {

namespace {

class FolderRecordsTest : public testing::Test {
 protected:
  std::shared_ptr<PMFolder> add(std::size_t files, double priority = 1, std::string screens = {},
                                std::uint64_t days = 127) {
    auto record = makeFolder("/p", files, priority, std::move(screens), days);
    records.append(record);
    return record;
  }

  std::shared_ptr<PMFolder> addWithInode(std::uint64_t inode) {
    auto record = makeFolder("/p", 1);
    record->identity = platform::FileIdentity{1, inode};
    records.append(record);
    return record;
  }

  /// The index of the record that a number leads to; -1 without one.
  int drawn(std::uint64_t number, const Eligibility& eligibility = {}) const {
    const auto record = records.drawnRecord(number, eligibility).record;
    const auto at = std::find(records.all().begin(), records.all().end(), record);
    return record ? static_cast<int>(at - records.all().begin()) : -1;
  }

  FolderRecords records;
};

}  // namespace

TEST_F(FolderRecordsTest, weighFilesTimesPriority) {
  add(10);
  add(10, 0.5);
  EXPECT_EQ(records.sumOfWeights({}), 15U);
  EXPECT_EQ(drawn(0), 0);
  EXPECT_EQ(drawn(9), 0);
  EXPECT_EQ(drawn(10), 1);
  EXPECT_EQ(drawn(14), 1);
  EXPECT_EQ(drawn(15), -1);
}

TEST_F(FolderRecordsTest, roundWeightsUp) {
  add(3, 0.25);
  EXPECT_EQ(records.sumOfWeights({}), 1U);
  add(9, 0.25);
  EXPECT_EQ(records.sumOfWeights({}), 1U + 3U);
}

TEST_F(FolderRecordsTest, neverDrawWhatWeighsNothing) {
  add(10, 0);
  add(1);
  EXPECT_EQ(records.sumOfWeights({}), 1U);
  EXPECT_EQ(drawn(0), 1);
}

TEST_F(FolderRecordsTest, passUnusablePrioritiesOver) {
  add(10, -1);
  add(10, std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(records.sumOfWeights({}), 0U);
  add(10, std::numeric_limits<double>::infinity());
  EXPECT_EQ(drawn(5), 2);
}

TEST_F(FolderRecordsTest, takeTheDayIntoAccount) {
  add(1, 1, "", 65);  // weekends
  add(2, 1, "", 0);
  add(4, 1, "", 2);  // Mondays
  add(8, 1, "", 128);
  EXPECT_EQ(records.sumOfWeights({.day = 0}), 1U);
  EXPECT_EQ(records.sumOfWeights({.day = 1}), 4U);
  EXPECT_EQ(records.sumOfWeights({.day = 2}), 0U);
  EXPECT_EQ(records.sumOfWeights({.day = 6}), 1U);
  EXPECT_EQ(drawn(0, {.day = 1}), 2);
}

TEST_F(FolderRecordsTest, takeTheScreenIntoAccount) {
  add(1, 1, "1,3");
  add(2, 1, "2");
  add(4);
  EXPECT_EQ(records.sumOfWeights({.screen = 0}), 7U);
  EXPECT_EQ(records.sumOfWeights({.screen = 1}), 5U);
  EXPECT_EQ(records.sumOfWeights({.screen = 2}), 6U);
  EXPECT_EQ(records.sumOfWeights({.screen = 4}), 4U);
  EXPECT_EQ(drawn(0, {.screen = 2}), 1);
  EXPECT_EQ(records.countForScreen(0), 3U);
  EXPECT_EQ(records.countForScreen(2), 2U);
}

TEST_F(FolderRecordsTest, weighTheFiltersNamesWhereThereIsAFilter) {
  add(10);
  add(10, 0.5);
  const Eligibility filtered{.isFiltered = true};
  EXPECT_EQ(records.sumOfWeights(filtered), 0U);
  EXPECT_EQ(drawn(0, filtered), -1);
  for (const char* name : {"a", "b", "b"}) records.addSpotlightFilename(1, name);
  EXPECT_EQ(records.sumOfWeights(filtered), 2U);
  EXPECT_EQ(drawn(0, filtered), 1);
  EXPECT_EQ(records.sumOfWeights({}), 15U);
}

TEST_F(FolderRecordsTest, tellTheSumWhereNothingIsDrawn) {
  add(3);
  add(4);
  const DrawnRecord drawn = records.drawnRecord(7, {});
  EXPECT_FALSE(drawn.record);
  EXPECT_EQ(drawn.runningSum, 7U);
}

TEST_F(FolderRecordsTest, takeChangedValuesIntoAccount) {
  add(10);
  records.setPriorityAndScreens(0, 0.2, "2");
  EXPECT_EQ(records.all()[0]->priority, 0.2);
  EXPECT_EQ(records.all()[0]->screens, "2");
  EXPECT_EQ(records.sumOfWeights({.screen = 2}), 2U);
  EXPECT_EQ(records.sumOfWeights({.screen = 1}), 0U);
}

TEST_F(FolderRecordsTest, ignoreChangesOfRecordsThatAreNotThere) {
  records.setPriorityAndScreens(0, 1, "");
  records.addSpotlightFilename(kNotFound, "a");
  EXPECT_TRUE(records.empty());
}

TEST_F(FolderRecordsTest, findTheFirstRecordWithAnIdentity) {
  add(1);
  addWithInode(5);
  const auto first = addWithInode(6);
  addWithInode(6);
  const auto last = addWithInode(6);
  EXPECT_EQ(records.indexOf({1, 5}), 1U);
  EXPECT_EQ(records.indexOf({1, 6}), 2U);
  EXPECT_EQ(records.indexOf({1, 7}), 9223372036854775807U);
  EXPECT_EQ(records.indexOf({2, 5}), kNotFound);

  records.remove(*last);
  EXPECT_EQ(records.indexOf({1, 6}), 2U);
  records.remove(*first);
  EXPECT_EQ(records.indexOf({1, 6}), 2U);
  EXPECT_NE(records.all()[2], first);
  records.remove(*records.all()[2]);
  EXPECT_EQ(records.indexOf({1, 6}), kNotFound);
  EXPECT_EQ(records.size(), 2U);
}

TEST_F(FolderRecordsTest, keepTheirIndexesRightWhenOneIsRemoved) {
  std::vector<std::shared_ptr<PMFolder>> added;
  for (std::uint64_t inode = 0; inode < 20; ++inode) added.push_back(addWithInode(inode));
  records.remove(*added[7]);
  records.remove(*added[0]);
  EXPECT_EQ(records.indexOf({1, 7}), kNotFound);
  EXPECT_EQ(records.indexOf({1, 1}), 0U);
  EXPECT_EQ(records.indexOf({1, 19}), 17U);
  EXPECT_EQ(records.sumOfWeights({}), 18U);
  addWithInode(7);
  EXPECT_EQ(records.indexOf({1, 7}), 18U);
}

TEST_F(FolderRecordsTest, takeOnlyNewRecordsWhereThatIsAsked) {
  const auto record = addWithInode(1);
  EXPECT_FALSE(records.appendIfNew(record));
  EXPECT_EQ(records.size(), 1U);
  records.remove(*record);
  EXPECT_TRUE(records.appendIfNew(record));
  EXPECT_EQ(records.indexOf({1, 1}), 0U);
  EXPECT_TRUE(records.appendIfNew(makeFolder("/p", 1)));
  EXPECT_TRUE(records.appendIfNew(makeFolder("/p", 1)));
  EXPECT_EQ(records.size(), 3U);
}

TEST_F(FolderRecordsTest, ignoreTheRemovalOfAStranger) {
  addWithInode(1);
  records.remove(PMFolder());
  EXPECT_EQ(records.size(), 1U);
}

TEST_F(FolderRecordsTest, areGoneWhenCleared) {
  addWithInode(1);
  records.clear();
  EXPECT_TRUE(records.empty());
  EXPECT_EQ(records.indexOf({1, 1}), kNotFound);
  EXPECT_EQ(records.sumOfWeights({}), 0U);
  addWithInode(1);
  EXPECT_EQ(records.indexOf({1, 1}), 0U);
}

}  // namespace pelmora::sources
