#include "host/WindowChoice.h"

#include <gtest/gtest.h>

namespace pelmora::host {

using Place = WindowChoice::Place;

TEST(WindowChoice, isEveryDisplayWhereNothingIsNamed) {
  EXPECT_EQ(chooseWindow({.hasXServer = true})->place, Place::displays);
  EXPECT_EQ(chooseWindow({.variable = "", .hasXServer = true})->note, "");
}

TEST(WindowChoice, isTheWindowThatTheHostNames) {
  for (const bool root : {false, true}) {
    const auto choice = chooseWindow({.root = root, .variable = "0x600016", .hasXServer = true});
    EXPECT_EQ(*choice, (WindowChoice{Place::window, 0x600016}));
  }
}

TEST(WindowChoice, isTheRootWindowWhereTheHostNamesNone) {
  EXPECT_EQ(chooseWindow({.root = true, .hasXServer = true, .hasRootWindow = true})->place,
            Place::root);
}

TEST(WindowChoice, isEveryDisplayWithoutAnXServer) {
  EXPECT_EQ(chooseWindow({.root = true})->place, Place::displays);
  const auto choice = chooseWindow({.root = true, .variable = "0x600016"});
  EXPECT_EQ(choice->place, Place::displays);
  EXPECT_NE(choice->note, "");
}

TEST(WindowChoice, isEveryDisplayWhereTheRootWindowIsNotSeen) {
  EXPECT_EQ(chooseWindow({.root = true, .hasXServer = true})->place, Place::displays);
  EXPECT_EQ(chooseWindow({.root = true, .variable = "7", .hasXServer = true})->place,
            Place::window);
}

TEST(WindowChoice, ignoresWhatIsNoWindowAndSaysSo) {
  const auto choice = chooseWindow(
      {.root = true, .variable = "to\nken", .hasXServer = true, .hasRootWindow = true});
  EXPECT_EQ(choice->place, Place::root);
  EXPECT_EQ(choice->note, "XSCREENSAVER_WINDOW names no window, and is ignored: 'to\\x0Aken'");
  EXPECT_EQ(chooseWindow({.variable = "0", .hasXServer = true})->place, Place::displays);
}

TEST(WindowChoice, followsTheOptionBeforeAllElse) {
  const auto choice =
      chooseWindow({.root = true, .windowOption = "7", .variable = "0x600016", .hasXServer = true});
  EXPECT_EQ(*choice, (WindowChoice{Place::window, 7}));
}

TEST(WindowChoice, refusesAnOptionThatIsNoWindow) {
  for (const char* text : {"", "0", "token", "0x", "12monkeys"}) {
    EXPECT_FALSE(chooseWindow({.windowOption = text, .hasXServer = true})) << text;
  }
}

}  // namespace pelmora::host
