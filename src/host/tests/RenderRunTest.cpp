#include "host/RenderRun.h"

#include "host/tests/CommandRun.h"

#include <sys/stat.h>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace pelmora::host {

class RenderRunTest : public CommandFixture {
 protected:
  [[nodiscard]] std::string path(const std::string& name) const {
    return home.path().bytes() + "/" + name;
  }

  [[nodiscard]] std::string bytesOf(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

TEST_F(RenderRunTest, givesTheSameBytesForTheSameCommand) {
  for (const char* name : {"a", "b"}) {
    const Outcome done = run({"render", "--samples", "--out", path(std::string(name) + ".png"),
                              "--layers", path(std::string(name) + ".json"), "--size", "320x200",
                              "--start", "2026-11-21T12:00:00"});
    ASSERT_EQ(done.status, ExitStatus::success) << done.error;
  }
  EXPECT_FALSE(bytesOf("a.png").empty());
  EXPECT_EQ(bytesOf("a.png"), bytesOf("b.png"));
  EXPECT_EQ(bytesOf("a.json"), bytesOf("b.json"));
  EXPECT_NE(bytesOf("a.json").find("\"role\": \"card\""), std::string::npos);
}

TEST_F(RenderRunTest, writesAFilmFrameByFrame) {
  const Outcome done = run({"render", "--frames", path("film"), "--fps", "10", "--from", "0",
                            "--to", "0.5", "--size", "32x20"});
  ASSERT_EQ(done.status, ExitStatus::success) << done.error;
  std::size_t frames = 0;
  for (const auto& entry : std::filesystem::directory_iterator(path("film"))) {
    frames += entry.path().extension() == ".png";
  }
  EXPECT_EQ(frames, 6U);
}

TEST_F(RenderRunTest, writesTheMomentAskedForAlsoWhenItLiesWithinAFilm) {
  const std::vector<std::string> common{"render",  "--samples",           "--size", "160x100",
                                        "--start", "2026-11-21T12:00:00", "--at",   "0.25"};
  const auto runWith = [&](std::vector<std::string> more) {
    more.insert(more.begin(), common.begin(), common.end());
    const Outcome done = run(more);
    EXPECT_EQ(done.status, ExitStatus::success) << done.error;
  };
  runWith({"--out", path("alone.png"), "--layers", path("alone.json")});
  runWith({"--out", path("within.png"), "--layers", path("within.json"), "--frames", path("film"),
           "--fps", "5", "--to", "0.6"});
  EXPECT_FALSE(bytesOf("alone.png").empty());
  EXPECT_EQ(bytesOf("within.png"), bytesOf("alone.png"));
  EXPECT_EQ(bytesOf("within.json"), bytesOf("alone.json"));
  EXPECT_FALSE(bytesOf("film/frame000003.png").empty());
  EXPECT_NE(bytesOf("film/frame000003.png"), bytesOf("alone.png"));
}

TEST_F(RenderRunTest, endsWithTheStopSequence) {
  home.mkdir("Pictures");
  home.write("Pictures/a.jpg", "no picture");
  run({"render", "--out", path("f.png"), "--size", "32x20"});
  EXPECT_FALSE(bytesOf(".cache/Pelmora/FolderCache.plist").empty());
  EXPECT_TRUE(std::filesystem::exists(path(".cache/Pelmora/Screen 1 Log.txt")));
}

TEST_F(RenderRunTest, leavesTheModeOfItsFilesToTheUser) {
  const mode_t before = umask(0022);
  run({"render", "--out", path("f.png"), "--size", "32x20"});
  umask(before);
  EXPECT_EQ(std::filesystem::status(path("f.png")).permissions(), std::filesystem::perms(0644));
}

TEST_F(RenderRunTest, saysWhereItCannotWrite) {
  const Outcome done = run({"render", "--out", path("missing/f.png"), "--size", "32x20"});
  EXPECT_EQ(done.status, ExitStatus::failure);
  EXPECT_NE(done.error.find("missing/f.png"), std::string::npos);
}

}  // namespace pelmora::host
