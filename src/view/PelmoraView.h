#pragma once

#include "cards/OwnerView.h"
#include "nowplaying/TrackOwner.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "render/Layer.h"
#include "shared/FilePath.h"
#include "shared/Geometry.h"
#include "sources/PMSourceList.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::platform {
class Window;
}

namespace pelmora::cards {
class PMFile;
}

namespace pelmora::nowplaying {
class PMiTunesTrack;
}

namespace pelmora::view {

/// The name of the module's folder in the user's caches, of its cache and its display lists.
inline constexpr std::string_view kApplicationName = "Pelmora";

/// One display's view of the saver, or the small preview: a black layer on which cards come and go.
/// The host drives it, in this order: constructor, `viewWillMoveToWindow` with a window,
/// `viewDidMoveToWindow`, `startAnimation`, `animateOneFrame` every `animationTimeInterval`,
/// `stopAnimation`, `viewWillMoveToWindow` without a window, `viewDidMoveToWindow`, destructor.
/// Thread: main, but for the notification "FirstFolderAdded", which arrives on any.
/// Ownership: owns its layer and its cards; the source list is shared and held weakly.
/// Units: points, seconds. Errors: logged; the view goes on with what it has.
class PelmoraView : public cards::OwnerView,
                    public nowplaying::TrackOwner,
                    public render::LayerDelegate {
 public:
  /// `frame` is the display's frame, or the preview's; the preview flag may be corrected.
  PelmoraView(const platform::Services& services, const Rect& frame, bool isPreview);
  ~PelmoraView() override;
  PelmoraView(const PelmoraView&) = delete;
  PelmoraView& operator=(const PelmoraView&) = delete;

  /// `newWindow` null: the view is about to be removed, and stops its work.
  void viewWillMoveToWindow(platform::Window* newWindow);
  /// Fixes the screen index, from the window's display.
  void viewDidMoveToWindow();

  void startAnimation();
  void stopAnimation();
  void animateOneFrame();
  /// The stop work; harmless when repeated.
  void stopAnimationMeat();

  /// Adds one card; false when there was no image to show.
  bool addNewImageToList();
  /// Whether `folder` holds an entry of that name.
  [[nodiscard]] bool folder(const FilePath& folder, std::string_view containsItemNamed) const;

  [[nodiscard]] bool isPreview() const override { return _isPreview; }
  [[nodiscard]] bool isAnimating() const;
  [[nodiscard]] double animationTimeInterval() const { return 0.5; }
  [[nodiscard]] std::uint64_t screenIndex() const;
  [[nodiscard]] std::uint64_t numImages() const { return _numImages; }
  [[nodiscard]] double delay() const { return _delay; }
  [[nodiscard]] double lastImageChangeTime() const;
  /// Whether the news of a first folder is still awaited; it is taken once.
  [[nodiscard]] bool observesFirstFolder() const;
  /// The display list, oldest first.
  [[nodiscard]] const std::vector<std::shared_ptr<cards::PMFile>>& images() const {
    return _images;
  }
  /// The label with the track that is playing; null before it was first to be shown.
  [[nodiscard]] nowplaying::PMiTunesTrack* iTunesTrack() const { return _iTunesTrack.get(); }
  [[nodiscard]] std::shared_ptr<sources::PMSourceList> sourceList() const {
    return _sourceList.lock();
  }
  /// Whether shown images are counted in a file: never.
  [[nodiscard]] bool logFrequencies() const { return false; }

  /// The host follows its window: the frame in it, and the device pixels in a point.
  void setFrame(const Rect& frame);
  void setBackingScaleFactor(double scale) { _backingScaleFactor = scale; }

  [[nodiscard]] Rect frame() const override { return _frame; }
  [[nodiscard]] double backingScaleFactor() const override { return _backingScaleFactor; }
  [[nodiscard]] render::Layer* layer() const override { return _layer.get(); }
  [[nodiscard]] const std::shared_ptr<render::Layer>& sharedLayer() const { return _layer; }
  [[nodiscard]] std::optional<Color> colorOfLabel(std::string_view name) const override;
  [[nodiscard]] const platform::Services& services() const override { return _services; }

  /// The background: black.
  void drawLayer(render::Layer* layer, render::LayerContext& context) override;

 private:
  /// What the "FirstFolderAdded" handler reads and writes: shared with it, as it may still be
  /// running on another thread when the view goes.
  struct Cycle;

  void observeNotifications();
  void screensaverDidStop();
  std::optional<std::uint64_t> screenPosition() const;
  void warnOfGoofyScreenIndex() const;
  void useStoredFilter();
  void prepareDisplayList();
  void changeImages(double now);
  void makeTrackLabel();
  [[nodiscard]] std::string screenName() const;

  const platform::Services& _services;
  const Rect _origFrame;
  Rect _frame;
  double _backingScaleFactor = 1;
  bool _isPreview;
  platform::Window* _window = nullptr;
  platform::Window* _newWindow = nullptr;
  std::shared_ptr<Cycle> _cycle;
  FilePath _logPath;
  std::uint64_t _numImages = 0;
  double _delay = 0;
  std::vector<std::string> _finderLabels;
  std::vector<Color> _finderLabelColors;
  std::weak_ptr<sources::PMSourceList> _sourceList;
  std::shared_ptr<render::Layer> _layer;
  std::vector<std::shared_ptr<cards::PMFile>> _images;  // after the layer: cards leave it first
  std::unique_ptr<nowplaying::PMiTunesTrack> _iTunesTrack;
  platform::NotificationCenter::Token _didStopToken{};
};

}  // namespace pelmora::view
