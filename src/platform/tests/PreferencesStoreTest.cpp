#include "platform/PreferencesStore.h"

#include "platform/fake/MemoryPreferencesStore.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(PreferencesStore, readsNumbersOfEveryKind) {
  MemoryPreferencesStore store;
  store.setObject("NumImages", 5);
  store.setObject("Delay", 4.5);
  store.setObject("UsePolaroid", true);
  EXPECT_EQ(store.integerForKey("NumImages"), 5);
  EXPECT_EQ(store.integerForKey("Delay"), 4);
  EXPECT_EQ(store.integerForKey("UsePolaroid"), 1);
  EXPECT_EQ(store.doubleForKey("NumImages"), 5.0);
  EXPECT_EQ(store.doubleForKey("Delay"), 4.5);
}

TEST(PreferencesStore, readsZeroForWhatIsMissingOrNoNumber) {
  MemoryPreferencesStore store;
  store.setObject("Name", "7");
  EXPECT_EQ(store.integerForKey("Name"), 0);
  EXPECT_EQ(store.doubleForKey("Name"), 0.0);
  EXPECT_EQ(store.integerForKey("missing"), 0);
  EXPECT_EQ(store.doubleForKey("missing"), 0.0);
}

TEST(PreferencesStore, onlyTheValueOneTurnsACheckboxOn) {
  MemoryPreferencesStore store;
  EXPECT_FALSE(store.isOn("ShowiTunesTrack"));
  for (const int value : {0, 2, -1}) {
    store.setObject("ShowiTunesTrack", value);
    EXPECT_FALSE(store.isOn("ShowiTunesTrack")) << value;
  }
  store.setObject("ShowiTunesTrack", 1);
  EXPECT_TRUE(store.isOn("ShowiTunesTrack"));
}

TEST(PreferencesStore, readsContainersOfTheirOwnTypeOnly) {
  MemoryPreferencesStore store;
  store.setObject("Sources", plist::Array{1, 2});
  store.setObject("Size", plist::Dictionary{{"Width", 1.5}});
  EXPECT_EQ(store.arrayForKey("Sources"), (plist::Array{1, 2}));
  EXPECT_EQ(store.dictionaryForKey("Size"), (plist::Dictionary{{"Width", 1.5}}));
  EXPECT_EQ(store.arrayForKey("Size"), std::nullopt);
  EXPECT_EQ(store.dictionaryForKey("Sources"), std::nullopt);
  EXPECT_EQ(store.arrayForKey("missing"), std::nullopt);
  EXPECT_EQ(store.dictionaryForKey("missing"), std::nullopt);
}

TEST(PreferencesStore, readsRegisteredDefaults) {
  MemoryPreferencesStore store;
  store.registerDefaults({{"NumImages", 5}});
  EXPECT_EQ(store.integerForKey("NumImages"), 5);
  store.setObject("NumImages", 9);
  EXPECT_EQ(store.integerForKey("NumImages"), 9);
}

}  // namespace pelmora::platform
