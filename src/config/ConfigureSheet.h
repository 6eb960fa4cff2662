#pragma once

#include "config/SourceListViewController.h"
#include "platform/Services.h"
#include "shared/FilePath.h"
#include "shared/Result.h"

#include <QObject>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QCheckBox;
class QComboBox;
class QDialog;
class QDoubleSpinBox;
class QLabel;
class QSlider;
class QWidget;

namespace pelmora::filtereditor {
class PredicateEditor;
}

namespace pelmora::view {
class PelmoraView;
}

namespace pelmora::config {

/// The configuration sheet of a view: opened on what the preferences hold, it stores on OK what was
/// chosen, and on Cancel its own size alone. While it is open the shared source list is loaded but
/// not walked, so that the view shows no new pictures; when it has ended, the host is to stop the
/// view and start it anew.
/// Thread: main, which is the GUI thread. Ownership: owns its window, and its parts; the view and
/// the chooser outlive it. Errors: a window that cannot be loaded is logged, and told to the user.
class ConfigureSheet : public QObject {
 public:
  /// What the sheet ended with.
  enum ReturnCode { kCancel = 0, kOK = 1 };

  /// `parent` is the window that the sheet belongs to, or null.
  ConfigureSheet(view::PelmoraView& view, FolderChooser& chooser, QWidget* parent);
  ~ConfigureSheet() override;

  [[nodiscard]] bool hasConfigureSheet() const { return true; }
  /// The window, loaded once and filled anew; null when it cannot be loaded.
  QDialog* configureSheet();
  void onOK();
  void onCancel();

  /// Called when the window has ended; it is hidden then.
  std::function<void(ReturnCode)> sheetEnded = [](ReturnCode) {};

  [[nodiscard]] QDialog* configWindow() const { return _configWindow.get(); }
  [[nodiscard]] filtereditor::PredicateEditor* predEd() const { return _predEd; }
  /// Null before the window was first loaded.
  [[nodiscard]] SourceListViewController* sourceListViewController() const {
    return _sourceListViewController.get();
  }
  /// Of the checkbox: kept equal to it, but for other values that were stored.
  [[nodiscard]] std::int64_t showiTunesTrackState() const { return _showiTunesTrackState; }

 private:
  bool loadWindow();
  bool findOutlets();
  void linkControls();
  bool embedSourceList();
  void fillControls();
  void fillFilter();
  void restoreSize();
  void showMissingSources(const std::vector<std::string>& problems);
  void alertOfFailure();
  void storeSize();
  void storeFilter();
  void end(ReturnCode code);
  void warnOfLoss(const Error& problem);

  view::PelmoraView& _view;
  const platform::Services& _services;
  FolderChooser& _chooser;
  QWidget* const _parent;
  std::unique_ptr<QDialog> _configWindow;
  std::unique_ptr<SourceListViewController> _sourceListViewController;
  // Outlets: parts of the window.
  QWidget* _sourceListViewParent = nullptr;
  QLabel* _missingSourcesNotice = nullptr;
  QCheckBox* _polaroidCB = nullptr;
  QCheckBox* _showiTunesTrackCB = nullptr;
  QLabel* _numImagesLabel = nullptr;
  QSlider* _numImagesStepper = nullptr;
  QDoubleSpinBox* _delayField = nullptr;
  QComboBox* _iTunesTypePop = nullptr;
  filtereditor::PredicateEditor* _predEd = nullptr;

  bool _isOpen = false;
  std::int64_t _showiTunesTrackState = 0;
  double _storedDelay = 0;  // as it was before the field rounded it
  double _shownDelay = 0;   // what the field made of it
};

}  // namespace pelmora::config
