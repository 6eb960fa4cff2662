#include "host/RenderCommand.h"

#include <gtest/gtest.h>

namespace pelmora::host {

namespace {

Result<RenderRequest> parse(std::vector<std::string> words) {
  words.insert(words.begin(), "render");
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  const Result<Arguments> arguments = parseArguments(renderOptions(), pointers);
  if (!arguments) return arguments.error();
  return parseRenderRequest(*arguments);
}

}  // namespace

TEST(RenderCommand, showsOneDisplayAfterTwoSecondsUnlessTold) {
  const auto request = parse({"--out", "f.png"});
  ASSERT_TRUE(request);
  ASSERT_EQ(request->displays.size(), 1U);
  EXPECT_EQ(request->displays[0].frame, (Rect{{0, 0}, {1920, 1080}}));
  EXPECT_EQ(request->at, 2);
  EXPECT_EQ(request->screen, 1U);
  EXPECT_EQ(request->scale, 1);
  EXPECT_TRUE(request->settle);
}

TEST(RenderCommand, takesATrackThatSeemsToPlay) {
  EXPECT_EQ(parse({"--out", "f"})->track, std::nullopt);
  const auto request = parse({"--out", "f", "--track", "Song", "--album", "Record"});
  ASSERT_TRUE(request);
  EXPECT_EQ(request->track, (platform::players::Track{.name = "Song", .album = "Record"}));
  EXPECT_FALSE(parse({"--out", "f", "--artist", "Singer"}));
}

TEST(RenderCommand, boundsTheFramesOfAFilmAlone) {
  EXPECT_TRUE(parse({"--out", "f", "--at", "259200"}));
  EXPECT_FALSE(parse({"--frames", "f", "--at", "259200"}));
}

TEST(RenderCommand, takesSeveralDisplays) {
  const auto request =
      parse({"--out", "f", "--displays", "1920x1080+0+0,1280x1024+1920+0", "--screen", "2"});
  ASSERT_TRUE(request);
  EXPECT_EQ(request->displays[1].frame, (Rect{{1920, 56}, {1280, 1024}}));
  EXPECT_EQ(request->screen, 2U);
}

TEST(RenderCommand, sizesThePreviewAlone) {
  const auto request = parse({"--out", "f", "--preview", "--size", "300x200"});
  ASSERT_TRUE(request);
  EXPECT_EQ(request->screen, 0U);
  EXPECT_EQ(request->previewSize, (Size{300, 200}));
  EXPECT_EQ(request->displays[0].frame.size, (Size{1920, 1080}));
}

TEST(RenderCommand, takesScreenZeroForThePreview) {
  const auto request = parse({"--out", "f", "--screen", "0", "--size", "300x200"});
  ASSERT_TRUE(request);
  EXPECT_EQ(request->screen, 0U);
  EXPECT_EQ(request->previewSize, (Size{300, 200}));
  EXPECT_EQ(request->displays[0].frame.size, (Size{1920, 1080}));
}

TEST(RenderCommand, countsTheFramesOfAFilmWithBothItsEnds) {
  const auto countOf = [](const std::string& to, const std::string& fps) {
    return parse({"--frames", "d", "--to", to, "--fps", fps})->frameCount();
  };
  EXPECT_EQ(countOf("0", "60"), 1);
  EXPECT_EQ(countOf("0.3", "10"), 4);
  EXPECT_EQ(countOf("0.39", "10"), 4);
  EXPECT_EQ(countOf("99999.9", "10"), 1000000);
  EXPECT_EQ(parse({"--out", "f"})->frameCount(), 0);
}

TEST(RenderCommand, filmsUpToTheMomentUnlessTold) {
  const auto request = parse({"--frames", "d", "--at", "3", "--fps", "25"});
  ASSERT_TRUE(request);
  EXPECT_EQ(request->from, 0);
  EXPECT_EQ(request->to, 3);
  EXPECT_EQ(request->fps, 25);
}

TEST(RenderCommand, refusesWhatMakesNoSense) {
  EXPECT_FALSE(parse({}));
  EXPECT_FALSE(parse({"--out", "f", "word"}));
  EXPECT_FALSE(parse({"--out", "f", "--at", "-1"}));
  EXPECT_FALSE(parse({"--out", "f", "--fps", "0"}));
  EXPECT_FALSE(parse({"--out", "f", "--scale", "9"}));
  EXPECT_FALSE(parse({"--out", "f", "--screen", "2"}));
  EXPECT_FALSE(parse({"--out", "f", "--from", "3", "--to", "2"}));
  EXPECT_FALSE(parse({"--frames", "d", "--to", "9000000", "--fps", "1000"}));
  EXPECT_FALSE(parse({"--out", "f", "--screen", "-1"}));
  EXPECT_FALSE(parse({"--out", "f", "--start", "noon"}));
  EXPECT_FALSE(parse({"--out", "f", "--preview", "--screen", "1"}));
  EXPECT_FALSE(parse({"--out", "f", "--size", "1x1", "--displays", "1x1+0+0"}));
}

}  // namespace pelmora::host
