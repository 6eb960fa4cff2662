#include "platform/fake/FakeMetadataSearch.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FakeMetadataSearch, remembersTheQueriesThatItMade) {
  FakeMetadataSearch search;
  EXPECT_EQ(search.lastQuery(), nullptr);
  const auto query = search.makeQuery();
  EXPECT_EQ(search.lastQuery(), query.get());
  EXPECT_EQ(search.queryCount(), 1);
  EXPECT_EQ(search.progress().foldersToDo, 0U);
}

TEST(FakeMetadataSearch, suggestsWhatItIsToldTo) {
  FakeMetadataSearch search;
  search.values["kMDItemCity"] = {"Oslo", "Bergen", "Tromsø"};
  std::vector<std::vector<std::string>> answers;
  const auto take = [&](std::vector<std::string> values) { answers.push_back(std::move(values)); };
  search.suggestValues("kMDItemCity", 2, take);
  search.suggestValues("kMDItemCountry", 2, take);
  EXPECT_EQ(answers, (std::vector<std::vector<std::string>>{{"Oslo", "Bergen"}, {}}));
}

}  // namespace pelmora::platform
