#include "host/SamplePictures.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <QImage>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>

namespace pelmora::host {

namespace {

namespace fs = std::filesystem;

std::map<std::string, std::string> contents(const FilePath& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::directory_iterator(folder.bytes())) {
    std::ifstream in(entry.path(), std::ios::binary);
    files[entry.path().filename().string()] = std::string(std::istreambuf_iterator<char>(in), {});
  }
  return files;
}

class SamplePictures : public testing::Test {
 protected:
  platform::TemporaryFolder _folder;
  const FilePath _samples = _folder.path() / "new" / "Samples";
};

}  // namespace

TEST_F(SamplePictures, areSeveralPicturesOfSeveralShapes) {
  ASSERT_TRUE(paintSamplePictures(_samples).ok());
  std::set<double> shapes;
  for (const auto& [name, bytes] : contents(_samples)) {
    const QImage picture = QImage::fromData(QByteArray::fromStdString(bytes));
    ASSERT_FALSE(picture.isNull()) << name;
    EXPECT_GE(std::max(picture.width(), picture.height()), 1400) << name;
    shapes.insert(double(picture.width()) / picture.height());
    std::set<QRgb> colors;
    for (int i = 0; i < 400; ++i) {
      colors.insert(picture.pixel(i * 7 % picture.width(), i * 37 % picture.height()));
    }
    EXPECT_GE(colors.size(), 6U) << name << " is nearly blank";
  }
  EXPECT_GE(contents(_samples).size(), 8U);
  EXPECT_GE(shapes.size(), 5U);
}

TEST_F(SamplePictures, areTheSameEveryTime) {
  ASSERT_TRUE(paintSamplePictures(_samples).ok());
  ASSERT_TRUE(paintSamplePictures(_folder.path() / "again").ok());
  EXPECT_EQ(contents(_samples), contents(_folder.path() / "again"));
}

TEST_F(SamplePictures, leaveWhatIsThereAlone) {
  ASSERT_TRUE(paintSamplePictures(_samples).ok());
  const auto painted = contents(_samples);
  const std::string first = painted.begin()->first;
  const std::string last = painted.rbegin()->first;
  _folder.write("new/Samples/" + first, "the user's own");
  fs::remove((_samples / last).bytes());
  ASSERT_TRUE(paintSamplePictures(_samples).ok());
  const auto after = contents(_samples);
  EXPECT_EQ(after.size(), painted.size());
  EXPECT_EQ(after.at(first), "the user's own");
  EXPECT_EQ(after.at(last), painted.at(last));
}

TEST_F(SamplePictures, sayWhichFolderCannotBeMade) {
  const FilePath file = _folder.write("file");
  const Status painted = paintSamplePictures(file / "Samples");
  ASSERT_FALSE(painted.ok());
  EXPECT_NE(painted.error().message.find((file / "Samples").bytes()), std::string::npos);
}

}  // namespace pelmora::host
