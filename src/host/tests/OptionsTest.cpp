#include "host/Options.h"

#include <gtest/gtest.h>

namespace pelmora::host {

namespace {

constexpr Option kOptions[] = {
    {"out", "FILE", "where to write"}, {"at", "S", "when"}, {"preview", nullptr, "small"}};

Result<Arguments> parse(std::vector<std::string> words) {
  words.insert(words.begin(), "render");
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  return parseArguments(kOptions, pointers);
}

}  // namespace

TEST(Options, takesValuesInEitherForm) {
  const auto arguments = parse({"--out", "a b.png", "--at=2.5", "--preview"});
  ASSERT_TRUE(arguments);
  EXPECT_EQ(arguments->value("out"), "a b.png");
  EXPECT_EQ(arguments->value("at"), "2.5");
  EXPECT_TRUE(arguments->has("preview"));
  EXPECT_FALSE(parse({})->has("preview"));
}

TEST(Options, takesOneDashAsTwo) { EXPECT_EQ(parse({"-out", "x"})->value("out"), "x"); }

TEST(Options, keepsOtherWordsInOrderAndTheirBytes) {
  const auto arguments = parse({"list", "--at", "1", "caf\xE9\n", "--", "--out"});
  ASSERT_TRUE(arguments);
  EXPECT_EQ(arguments->positional(), (std::vector<std::string>{"list", "caf\xE9\n", "--out"}));
}

TEST(Options, namesTheWordThatIsWrong) {
  EXPECT_EQ(parse({"--nothing"}).error().message, "the option '--nothing' is not known");
  EXPECT_EQ(parse({"--out"}).error().message, "the option '--out' needs a value");
}

TEST(Options, startsAnewForEachCommandLine) {
  EXPECT_FALSE(parse({"--nothing", "--out", "x"}));
  EXPECT_EQ(parse({"--out", "y"})->value("out"), "y");
}

TEST(Options, describesEachInALine) {
  EXPECT_EQ(describeOptions(kOptions),
            "  --out FILE              where to write\n"
            "  --at S                  when\n"
            "  --preview               small\n");
}

}  // namespace pelmora::host
