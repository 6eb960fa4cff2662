#include "host/SettingsWindow.h"

#include "config/FolderChooser.h"
#include "host/tests/CommandRun.h"
#include "view/PelmoraView.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <gmock/gmock.h>

#include <fstream>

namespace pelmora::host {

namespace {

class NoChooser : public config::FolderChooser {
 public:
  void chooseFolders(QWidget*, std::function<void(std::vector<FilePath>)> chosen) override {
    chosen({});
  }
};

class SettingsWindowTest : public CommandFixture {
 protected:
  SettingsWindowTest() {
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    unsetenv("XDG_RUNTIME_DIR");
    pictures = home.mkdir("Pictures");
    QImage picture(60, 40, QImage::Format_RGB32);
    picture.fill(Qt::red);
    for (const char* name : {"a.png", "b.png", "c.png"}) {
      picture.save(QString::fromStdString((pictures / name).bytes()));
    }
  }

  [[nodiscard]] QPushButton& button(const char* text) {
    for (QPushButton* each : window->findChildren<QPushButton*>()) {
      if (each->text() == text) return *each;
    }
    throw std::logic_error("no such button");
  }
  [[nodiscard]] std::string status() const {
    for (const QLabel* label : window->findChildren<QLabel*>()) {
      if (label->accessibleName() == "Progress") return label->text().toStdString();
    }
    return {};
  }
  template <typename Condition>
  static void runUntil(Condition isMet) {
    while (!isMet()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  FilePath pictures;
  char program[5] = "test";
  char* words[2] = {program, nullptr};
  int count = 1;
  QApplication application{count, words};
  NoChooser chooser;
  std::optional<SettingsWindow> window;
};

}  // namespace

TEST_F(SettingsWindowTest, showsTheSaverAndHowManyPicturesItHasFound) {
  window.emplace(chooser, false);
  window->show();
  runUntil([this] { return status() == "Folders: 1  Pictures: 3"; });
  auto* preview = window->findChild<PreviewWidget*>();
  ASSERT_NE(preview, nullptr);
  // A card has come onto the black.
  runUntil([preview] {
    const QImage shown = preview->grab().toImage();
    for (int y = 0; y < shown.height(); y += 4) {
      for (int x = 0; x < shown.width(); x += 4) {
        if (shown.pixelColor(x, y) != Qt::black) return true;
      }
    }
    return false;
  });
}

TEST_F(SettingsWindowTest, saysWhatToDoWhereThereAreNoPictures) {
  for (const char* each : {"a.png", "b.png", "c.png"}) {
    std::remove((pictures / each).c_str());
  }
  window.emplace(chooser, false);
  runUntil([this] { return status().starts_with("No pictures were found."); });
}

TEST_F(SettingsWindowTest, opensTheOptionsAsItsSheet) {
  window.emplace(chooser, false);
  window->show();
  QTest::mouseClick(&button("&Options…"), Qt::LeftButton);
  QDialog* sheet = window->sheet().configWindow();
  ASSERT_NE(sheet, nullptr);
  EXPECT_TRUE(sheet->isVisible());
  EXPECT_EQ(sheet->windowModality(), Qt::WindowModal);
  EXPECT_EQ(sheet->parentWidget(), &*window);
  EXPECT_FALSE(button("&Options…").isEnabled());
  auto* buttons = sheet->findChild<QDialogButtonBox*>("buttons");
  QTest::mouseClick(buttons->button(QDialogButtonBox::Cancel), Qt::LeftButton);
  EXPECT_FALSE(sheet->isVisible());
  EXPECT_TRUE(button("&Options…").isEnabled());
}

TEST_F(SettingsWindowTest, countsThePicturesOfEachSource) {
  window.emplace(chooser, false);
  window->show();
  window->openOptions();
  auto& list = *window->sheet().sourceListViewController();
  runUntil([&list] {
    const auto& model = list.sourcesController();
    return model.index(0, static_cast<int>(config::SourceColumn::pictures)).data() == "3";
  });
}

TEST_F(SettingsWindowTest, startsThePreviewAnewWithWhatWasChosen) {
  window.emplace(chooser, false);
  window->show();
  runUntil([this] { return status() == "Folders: 1  Pictures: 3"; });
  window->openOptions();
  auto& list = *window->sheet().sourceListViewController();
  list.sourcesController().setEnabled({0}, false);
  window->sheet().onOK();
  runUntil([this] { return status().starts_with("No pictures were found."); });
}

TEST_F(SettingsWindowTest, showsPicturesAgainAfterCancel) {
  window.emplace(chooser, false);
  window->show();
  runUntil([this] { return status() == "Folders: 1  Pictures: 3"; });
  window->openOptions();
  runUntil([this] { return status().empty(); });
  window->sheet().onCancel();
  runUntil([this] { return status() == "Folders: 1  Pictures: 3"; });
}

TEST_F(SettingsWindowTest, closes) {
  window.emplace(chooser, false);
  window->show();
  QTest::mouseClick(&button("&Close"), Qt::LeftButton);
  EXPECT_FALSE(window->isVisible());
}

}  // namespace pelmora::host
