#include "config/InterfaceLoader.h"

#include "platform/fake/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QLabel>
#include <QString>

#include <string>

namespace pelmora::config {

namespace {

class InterfaceLoaderTest : public testing::Test {
 protected:
  FilePath write(const std::string& widget) const {
    return temporary.write("Some.ui",
                           "<ui version=\"4.0\"><class>Settings</class>" + widget + "</ui>");
  }

  platform::TemporaryFolder temporary;
};

class OwnLabel : public QLabel {
 public:
  using QLabel::QLabel;
};

}  // namespace

TEST_F(InterfaceLoaderTest, makesTheWidgetsOfAFile) {
  const auto loaded =
      loadInterface(write("<widget class=\"QWidget\" name=\"all\">"
                          "<widget class=\"QLabel\" name=\"title\"><property name=\"text\">"
                          "<string>Hello</string></property></widget></widget>"));
  ASSERT_TRUE(loaded) << loaded.error().message;
  const auto* label = (*loaded)->findChild<QLabel*>("title");
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->text(), "Hello");
}

TEST_F(InterfaceLoaderTest, makesTheProgramsOwnWidgets) {
  const auto loaded = loadInterface(write("<widget class=\"QWidget\" name=\"all\">"
                                          "<widget class=\"OwnLabel\" name=\"title\"/></widget>"),
                                    {{QStringLiteral("OwnLabel"), [](QWidget* parent) -> QWidget* {
                                        return new OwnLabel(parent);
                                      }}});
  ASSERT_TRUE(loaded) << loaded.error().message;
  EXPECT_NE(dynamic_cast<OwnLabel*>((*loaded)->findChild<QLabel*>("title")), nullptr);
}

TEST_F(InterfaceLoaderTest, saysWhyThereIsNothing) {
  const auto missing = loadInterface(temporary.path() / "None.ui");
  ASSERT_FALSE(missing);
  EXPECT_THAT(missing.error().message, testing::HasSubstr("None.ui"));
  const auto damaged = loadInterface(temporary.write("Bad.ui", "<ui version=\"4.0\"><wid"));
  ASSERT_FALSE(damaged);
  EXPECT_THAT(damaged.error().message, testing::HasSubstr("Bad.ui: "));
}

}  // namespace pelmora::config
