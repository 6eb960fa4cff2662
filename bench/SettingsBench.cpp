#include "Benches.h"
#include "OwnProcess.h"
#include "Report.h"
#include "Trees.h"

#include "config/FolderChooser.h"
#include "host/LinuxServices.h"
#include "host/SettingsWindow.h"
#include "platform/Bookmarks.h"
#include "platform/PreferencesStore.h"
#include "sources/SourceEntry.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace pelmora::bench {

namespace {

constexpr int kSources = 5'000;

struct Times {
  double open = 0;  // seconds, as all
  double key = 0;
  double slowestKey = 0;
  double store = 0;
};

class NoChooser : public config::FolderChooser {
 public:
  void chooseFolders(QWidget*, std::function<void(std::vector<FilePath>)> chosen) override {
    chosen({});
  }
};

/// The preferences of a user with many folders, each with a picture.
void storeSources(const FilePath& root) {
  const host::LinuxServices host{{}};
  const platform::Services& services = host.services();
  makeTree(root, kSources, 1);
  plist::Array stored;
  for (int i = 0; i < kSources; ++i) {
    sources::SourceEntry entry;
    entry.url = root / ("year" + std::to_string(i / 100)) / ("event " + std::to_string(i % 100));
    stored.emplace_back(sources::storedForm(entry, services.bookmarks));
  }
  services.preferences.setObject("Sources", plist::Value(std::move(stored)));
  if (!services.preferences.synchronize()) std::exit(1);
}

/// Until everything that is due was done, the painting included.
void settle() {
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents();
}

void typeInto(QWidget& widget, int key, const QString& text) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
  QCoreApplication::sendEvent(&widget, &press);
  QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
  QCoreApplication::sendEvent(&widget, &release);
}

/// Types digits into the chance of one row after the other.
std::vector<double> timesOfKeys(config::SourceListViewController& list) {
  std::vector<double> times;
  for (int row = 0; row < 5; ++row) {
    list.sourceTable()->editCell(config::SourcesController::indexOf(
        list.sourcesController(), row * 1'000, config::SourceColumn::chance));
    settle();
    for (const char* digit : {"5", "5", ".", "5"}) {
      times.push_back(secondsOf([digit] {
        QWidget* field = QApplication::focusWidget();
        if (field) typeInto(*field, Qt::Key_5, digit);
        settle();
      }));
    }
    if (!list.endEditing()) std::exit(1);
  }
  return times;
}

Times measure() {
  const Workplace home;
  setenv("HOME", home.path().c_str(), 1);
  setenv("XDG_CONFIG_HOME", (home.path() / "config").c_str(), 1);
  setenv("XDG_CACHE_HOME", (home.path() / "cache").c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
  unsetenv("XDG_RUNTIME_DIR");
  storeSources(home.mkdir("pictures"));

  int count = 1;
  char program[] = "bench";
  char* words[] = {program, nullptr};
  const QApplication application(count, words);
  NoChooser chooser;
  host::SettingsWindow window(chooser, false);
  window.show();
  settle();
  Times times;
  times.open = secondsOf([&window] {
    window.openOptions();
    settle();
  });
  QApplication::setActiveWindow(window.sheet().configWindow());
  config::SourceListViewController& list = *window.sheet().sourceListViewController();
  if (static_cast<int>(list.sources().size()) != kSources) std::exit(1);
  const std::vector<double> keys = timesOfKeys(list);
  times.key = median(keys);
  times.slowestKey = *std::max_element(keys.begin(), keys.end());
  times.store = secondsOf([&window] { window.sheet().onOK(); });
  return times;
}

}  // namespace

void benchSettings() {
  const Times times = inChild(measure);
  report({.name = "settings.open-5k-sources", .value = times.open, .unit = "s", .most = 0.5});
  report({.name = "settings.key", .value = times.key * 1e3, .unit = "ms", .most = 16});
  report(
      {.name = "settings.slowest-key", .value = times.slowestKey * 1e3, .unit = "ms", .most = 100});
  report({.name = "settings.store-5k-sources", .value = times.store, .unit = "s", .most = 1});
}

}  // namespace pelmora::bench
