#pragma once

#include "host/CoverWindow.h"
#include "host/QtDisplays.h"
#include "host/ViewWindows.h"
#include "wayland/LayerShell.h"

#include <QObject>
#include <QTimer>

#include <map>
#include <memory>

class QScreen;

namespace pelmora::host {

/// Which windows cover which displays: one each, also those that are plugged in later, as long as
/// they are there. When the last display goes, the run waits for one to come. Thread: GUI.
/// Ownership: windows and displays outlive this, and it the windows' time on the screen.
class DisplayCover : public QObject {
 public:
  /// Whether windows go over panels, where the compositor lets them.
  enum class Layers { wherePossible, never };

  DisplayCover(ViewWindows& windows, QtDisplays& displays, Layers layers);
  ~DisplayCover() override;

 private:
  void coverLater();
  void coverAll();
  void cover(QScreen& screen);
  void uncover(QScreen& screen);
  void showOthersAgain();
  void windowClosed(QScreen& screen);

  struct Covered {
    QWindow& window;
    std::unique_ptr<CoverWindow> cover;
  };
  ViewWindows& _windows;
  QtDisplays& _displays;
  std::unique_ptr<wayland::LayerShell> _layers;
  std::map<QScreen*, Covered> _covered;
  QTimer _later;
  bool _hasOneGone = false;
};

}  // namespace pelmora::host
