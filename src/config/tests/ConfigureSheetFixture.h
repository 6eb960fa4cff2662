#pragma once

#include "cache/FolderCache.h"
#include "config/ConfigureSheet.h"
#include "config/FolderChooser.h"
#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"
#include "sources/PMSourceList.h"
#include "view/PelmoraView.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>
#include <string>
#include <vector>

namespace pelmora::config {

/// Nothing is ever chosen.
class NoChooser : public FolderChooser {
 public:
  void chooseFolders(QWidget*, std::function<void(std::vector<FilePath>)> chosen) override {
    chosen({});
  }
};

/// The sheet of a view that runs.
class ConfigureSheetFixture : public testing::Test {
 protected:
  ConfigureSheetFixture() {
    services.resourceFolder = FilePath(PELMORA_DATA);
    fakes.displays.displays = {platform::FakeDisplays::display(1, {{0, 0}, {1920, 1080}})};
    view.viewWillMoveToWindow(&window);
    view.viewDidMoveToWindow();
    view.startAnimation();
  }
  ~ConfigureSheetFixture() override {
    sheet.reset();
    view.stopAnimation();
    sources::PMSourceList::endSharedSourceList();
    cache::FolderCache::endSharedCache();
  }

  void storeSources(const std::vector<std::string>& paths) {
    plist::Array stored;
    for (const std::string& path : paths) {
      stored.emplace_back(
          plist::Dictionary{{"bookmark", platform::FakeBookmarks::bookmarkOf(FilePath(path))},
                            {"enabled", true},
                            {"chance", 100},
                            {"days", 127},
                            {"screens", ""}});
    }
    fakes.preferences.setObject("Sources", std::move(stored));
  }
  void store(const char* key, plist::Value value) {
    fakes.preferences.setObject(key, std::move(value));
  }
  [[nodiscard]] plist::Value stored(const char* key) const {
    return fakes.preferences.storedValues()[key];
  }
  template <typename T>
  [[nodiscard]] T& outlet(const char* name) const {
    return *sheet->configWindow()->findChild<T*>(name);
  }
  void click(QDialogButtonBox::StandardButton which) const {
    QTest::mouseClick(outlet<QDialogButtonBox>("buttons").button(which), Qt::LeftButton);
  }
  void open() const {
    QDialog* const opened = sheet->configureSheet();
    ASSERT_NE(opened, nullptr);
    opened->show();
  }
  /// Presses the only button of the next alert, and remembers what that was.
  void answerAlert() {
    QTimer::singleShot(0, [this] {
      auto* alert = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(alert, nullptr);
      alertText = alert->text();
      ASSERT_EQ(alert->buttons().size(), 1);
      alertButton = alert->buttons().front()->text();
      QTest::mouseClick(alert->buttons().front(), Qt::LeftButton);
    });
  }

  platform::FakeServices fakes;
  platform::TemporaryFolder temporary;
  platform::Services services = fakes.services();
  platform::FakeWindow window{platform::FakeDisplays::display(1, {{0, 0}, {1920, 1080}})};
  view::PelmoraView view{services, {{0, 0}, {400, 300}}, true};
  NoChooser chooser;
  std::unique_ptr<ConfigureSheet> sheet = std::make_unique<ConfigureSheet>(view, chooser, nullptr);
  QString alertText;
  QString alertButton;
};

}  // namespace pelmora::config
