#include "host/PictureFile.h"

#include "platform/fake/TemporaryFolder.h"

#include <QImage>

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(PictureFile, writesAPictureThatReadsBackTheSame) {
  const platform::TemporaryFolder folder;
  QImage picture(3, 2, QImage::Format_RGB32);
  picture.fill(0xFF204060);
  const FilePath file = folder.path() / "a.png";
  ASSERT_TRUE(writePicture(file.bytes(), picture));
  EXPECT_EQ(QImage(QString::fromStdString(file.bytes())).pixel(2, 1), 0xFF204060);
}

TEST(PictureFile, saysWhichFileCouldNotBeWrittenAndWhy) {
  const platform::TemporaryFolder folder;
  const std::string path = (folder.path() / "nowhere/a.png").bytes();
  const Status written = writePicture(path, QImage(1, 1, QImage::Format_RGB32));
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().message, path + ": No such file or directory");
  EXPECT_FALSE(writeFile("/dev/full", "bytes"));
}

TEST(PictureFile, refusesAPictureWithoutPixels) {
  const platform::TemporaryFolder folder;
  EXPECT_FALSE(writePicture((folder.path() / "a.png").bytes(), QImage()));
}

}  // namespace pelmora::host
