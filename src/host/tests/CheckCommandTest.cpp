#include "host/CheckCommand.h"

#include "host/tests/CommandRun.h"

#include <QImage>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace pelmora::host {

namespace {

Result<CheckRequest> parse(std::vector<std::string> words) {
  words.insert(words.begin(), "check");
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  const Result<Arguments> arguments = parseArguments(checkOptions(), pointers);
  if (!arguments) return arguments.error();
  return parseCheckRequest(*arguments);
}

class CheckCommandTest : public CommandFixture {
 protected:
  /// A picture whose left half is of one colour, and whose right half of another.
  FilePath paint(const std::string& name, const char* format, int width = 40, int height = 20) {
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(0xFF2040C0);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width / 2; ++x) picture.setPixel(x, y, 0xFFE0A020);
    }
    const FilePath file = home.path() / name;
    EXPECT_TRUE(picture.save(QString::fromStdString(file.bytes()), format, 95));
    return file;
  }

  /// Puts XMP into a JPEG file.
  static void embed(const FilePath& jpeg, const std::string& xmp) {
    std::ifstream in(jpeg.bytes(), std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(in), {});
    const std::string segment = std::string("http://ns.adobe.com/xap/1.0/\0", 29) + xmp;
    const std::size_t size = segment.size() + 2;
    const std::string head{'\xFF', '\xE1', static_cast<char>(size >> 8), static_cast<char>(size)};
    bytes.insert(2, head + segment);
    std::ofstream(jpeg.bytes(), std::ios::binary) << bytes;
  }
};

}  // namespace

TEST(CheckCommand, takesFilesAFolderToWriteToAndASize) {
  const auto request = parse({"a.jpg", "--size", "810", "--out", "/there", "--", "-b.jpg"});
  ASSERT_TRUE(request);
  EXPECT_EQ(request->words, (std::vector<std::string>{"a.jpg", "-b.jpg"}));
  EXPECT_EQ(request->longestSide, 810);
  EXPECT_EQ(request->out, FilePath("/there"));
  EXPECT_EQ(parse({"a"})->longestSide, 1620);
  EXPECT_TRUE(parse({"a"})->out.empty());
  EXPECT_EQ(parse({"a", "--out", "b"})->out.bytes(),
            std::filesystem::current_path().string() + "/b");
}

TEST(CheckCommand, refusesWhatMakesNoSense) {
  EXPECT_FALSE(parse({}));
  EXPECT_FALSE(parse({""}));
  EXPECT_FALSE(parse({"--out", "there"}));
  EXPECT_FALSE(parse({"a", "--out", ""}));
  for (const char* size : {"0", "16385", "-1", "x", "1.5", ""}) {
    EXPECT_FALSE(parse({"a", "--size", size})) << size;
  }
  EXPECT_TRUE(parse({"a", "--size", "1"}));
  EXPECT_TRUE(parse({"a", "--size", "16384"}));
}

TEST_F(CheckCommandTest, saysWhatItExpects) {
  EXPECT_EQ(run({"check"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"check", "--bogus", "a"}).status, ExitStatus::badUsage);
  EXPECT_NE(run({"check", "--help"}).out.find("PATH: not shown: REASON"), std::string::npos);
}

TEST_F(CheckCommandTest, tellsOfPicturesThatAreShown) {
  const FilePath file = paint("a.jpg", "JPEG");
  const Outcome checked = run({"check", file.bytes()});
  EXPECT_EQ(checked.status, ExitStatus::success) << checked.out;
  EXPECT_EQ(checked.out.find(file.bytes() + ": JPEG, 40 × 20, orientation 1, sRGB, no tags, "), 0U)
      << checked.out;
  EXPECT_TRUE(checked.out.ends_with(" ms\n")) << checked.out;
  EXPECT_EQ(checked.error, "");
}

TEST_F(CheckCommandTest, tellsTheTagsThatAreEmbedded) {
  const FilePath file = paint("a.jpg", "JPEG");
  embed(file,
        "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
        "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
        "xmlns:dc='http://purl.org/dc/elements/1.1/'><dc:subject><rdf:Bag><rdf:li>Sea, far</rdf:li>"
        "<rdf:li>Red</rdf:li></rdf:Bag></dc:subject></rdf:Description></rdf:RDF></x:xmpmeta>");
  const Outcome checked = run({"check", file.bytes()});
  EXPECT_NE(checked.out.find(", tags Sea; far; Red, "), std::string::npos) << checked.out;
  EXPECT_EQ(checked.error, "");
}

TEST_F(CheckCommandTest, tellsWhyOthersAreNot) {
  const FilePath text = home.write("text.jpg", "this is no picture");
  home.mkdir("folder");
  const Outcome checked = run({"check", text.bytes(), (home.path() / "gone.jpg").bytes()});
  EXPECT_EQ(checked.status, ExitStatus::failure);
  EXPECT_EQ(checked.out.find(text.bytes() + ": not shown: "), 0U) << checked.out;
  EXPECT_NE(checked.out.find("\n" + home.path().bytes() + "/gone.jpg: not shown: "),
            std::string::npos)
      << checked.out;
  EXPECT_EQ(checked.error, "");
}

TEST_F(CheckCommandTest, writesWhatWouldBeShown) {
  const FilePath file = paint("a.png", "PNG", 400, 200);
  const std::string out = (home.path() / "out").bytes();
  ASSERT_EQ(run({"check", "--size", "100", "--out", out, file.bytes()}).status,
            ExitStatus::success);
  const QImage written(QString::fromStdString(out + "/a.png.png"));
  EXPECT_EQ(written.size(), QSize(100, 50));
  EXPECT_EQ(written.pixel(10, 10), 0xFFE0A020);
  EXPECT_EQ(written.pixel(90, 40), 0xFF2040C0);
}

}  // namespace pelmora::host
