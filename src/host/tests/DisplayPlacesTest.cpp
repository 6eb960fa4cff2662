#include "host/DisplayPlaces.h"

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

namespace pelmora::host {

namespace {

using testing::ElementsAre;

/// Connected displays, each known by its name.
class DisplayPlacesTest : public testing::Test {
 protected:
  void connect(const std::vector<std::string>& names) {
    std::vector<DisplayPlaces::Screen> screens;
    for (const std::string& name : names) screens.push_back({&handles[name], name});
    places.update(screens);
  }
  /// The name of each place, in parentheses where the display has gone.
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& place : places.places()) {
      names.push_back(place.screen ? place.name : "(" + place.name + ")");
    }
    return names;
  }

  std::map<std::string, char> handles;
  DisplayPlaces places;
};

}  // namespace

TEST_F(DisplayPlacesTest, areInTheWindowSystemsOrderAtFirst) {
  connect({"B", "A"});
  EXPECT_THAT(names(), ElementsAre("B", "A"));
  EXPECT_EQ(places.places()[1].screen, 1U);
}

TEST_F(DisplayPlacesTest, stayWhenTheWindowSystemsOrderChanges) {
  connect({"A", "B"});
  connect({"B", "A"});
  EXPECT_THAT(names(), ElementsAre("A", "B"));
  EXPECT_EQ(places.places()[0].screen, 1U);
}

TEST_F(DisplayPlacesTest, stayWhenAnotherDisplayGoes) {
  connect({"A", "B"});
  connect({"B"});
  EXPECT_THAT(names(), ElementsAre("(A)", "B"));
  connect({});
  EXPECT_THAT(names(), ElementsAre("(A)", "(B)"));
}

TEST_F(DisplayPlacesTest, areGivenBackToADisplayThatComesBack) {
  connect({"A", "B"});
  const std::uint64_t id = places.places()[0].id;
  connect({"B"});
  connect({"B", "A"});
  EXPECT_THAT(names(), ElementsAre("A", "B"));
  EXPECT_EQ(places.places()[0].id, id);
}

TEST_F(DisplayPlacesTest, areTakenByNewDisplaysWhenFree) {
  connect({"A", "B"});
  const std::uint64_t id = places.places()[0].id;
  connect({"B"});
  connect({"B", "C"});
  EXPECT_THAT(names(), ElementsAre("C", "B"));
  EXPECT_NE(places.places()[0].id, id);
  connect({"B", "C", "A"});
  EXPECT_THAT(names(), ElementsAre("C", "B", "A"));
}

TEST_F(DisplayPlacesTest, goToThoseThatComeBackBeforeNewOnes) {
  connect({"A", "B"});
  connect({"B"});
  connect({"C", "B", "A"});
  EXPECT_THAT(names(), ElementsAre("A", "B", "C"));
}

TEST_F(DisplayPlacesTest, areOfDisplaysThatShareAName) {
  char first = 0;
  char second = 0;
  places.update({{&first, ""}, {&second, ""}});
  EXPECT_EQ(places.places().size(), 2U);
  places.update({{&second, ""}});
  EXPECT_FALSE(places.places()[0].screen);
  EXPECT_EQ(places.places()[1].screen, 0U);
}

}  // namespace pelmora::host
