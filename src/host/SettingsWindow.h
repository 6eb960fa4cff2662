#pragma once

#include "config/ConfigureSheet.h"
#include "config/SourceCounter.h"
#include "host/GuiScheduler.h"
#include "host/LinuxServices.h"
#include "host/PreviewWidget.h"
#include "host/QtDisplays.h"
#include "host/QtSound.h"
#include "host/SaverSession.h"
#include "platform/linux/SystemClock.h"

#include <QDialog>

#include <memory>

class QLabel;
class QPushButton;

namespace pelmora::host {

/// The saver's settings: a small view of it that runs, how far its search for pictures has come,
/// and a button that opens the options as a sheet. The view's module runs on the GUI thread.
/// Thread: GUI. Ownership: owns the whole run; the chooser outlives it.
class SettingsWindow : public QDialog {
 public:
  SettingsWindow(config::FolderChooser& chooser, bool verbose);
  ~SettingsWindow() override;

  /// Opens the sheet.
  void openOptions();
  [[nodiscard]] config::ConfigureSheet& sheet() { return *_sheet; }

 private:
  void makeParts();
  void startPreview();
  void optionsEnded();
  void watchSources();
  void showProgress();
  [[nodiscard]] QString progress() const;

  platform::SystemClock _clock;
  QtDisplays _displays;
  QtSound _sound;
  GuiScheduler _scheduler;
  LinuxServices _linuxServices;
  const platform::Services& _services;
  const std::unique_ptr<PreviewWidget> _preview;  // ends with the window, but before the clock
  QLabel* _status = nullptr;
  QPushButton* _options = nullptr;
  SaverSession _session;
  std::unique_ptr<config::ConfigureSheet> _sheet;
  std::unique_ptr<config::SourceCounter> _counter;  // while the sheet is open
};

}  // namespace pelmora::host
