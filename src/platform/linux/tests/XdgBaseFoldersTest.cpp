#include "platform/linux/XdgBaseFolders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

namespace pelmora::platform {

namespace {

Environment environmentOf(std::map<std::string, std::string> variables) {
  return [variables = std::move(variables)](const char* name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  };
}

}  // namespace

TEST(XdgBaseFolders, areWhereTheVariablesSay) {
  const Environment environment =
      environmentOf({{"HOME", "/h"}, {"XDG_CONFIG_HOME", "/c/"}, {"XDG_CACHE_HOME", "/d e"}});
  EXPECT_EQ(homeFolder(environment), FilePath("/h"));
  EXPECT_EQ(configFolder(environment), FilePath("/c"));
  EXPECT_EQ(cacheFolder(environment), FilePath("/d e"));
}

TEST(XdgBaseFolders, areInTheHomeFolderOtherwise) {
  for (const char* useless : {"", "relative", "./c", "~/c"}) {
    const Environment environment =
        environmentOf({{"HOME", "/h"}, {"XDG_CONFIG_HOME", useless}, {"XDG_CACHE_HOME", useless}});
    EXPECT_EQ(configFolder(environment), FilePath("/h/.config"));
    EXPECT_EQ(cacheFolder(environment), FilePath("/h/.cache"));
  }
}

TEST(XdgBaseFolders, areUnknownWithoutAHomeFolder) {
  EXPECT_EQ(homeFolder(environmentOf({})), std::nullopt);
  EXPECT_EQ(configFolder(environmentOf({{"HOME", ""}})), std::nullopt);
  EXPECT_EQ(cacheFolder(environmentOf({{"HOME", "h"}})), std::nullopt);
  EXPECT_EQ(cacheFolder(environmentOf({{"XDG_CACHE_HOME", "/c"}})), FilePath("/c"));
}

TEST(XdgBaseFolders, lookIntoTheProcessEnvironment) {
  ASSERT_EQ(::setenv("PELMORA_TEST_VARIABLE", "a b", 1), 0);
  EXPECT_EQ(processEnvironment()("PELMORA_TEST_VARIABLE"), "a b");
  ASSERT_EQ(::unsetenv("PELMORA_TEST_VARIABLE"), 0);
  EXPECT_EQ(processEnvironment()("PELMORA_TEST_VARIABLE"), std::nullopt);
}

}  // namespace pelmora::platform
