#pragma once

#include "nowplaying/AtomicProperty.h"
#include "nowplaying/TrackOwner.h"
#include "platform/NotificationCenter.h"
#include "platform/ScriptRunner.h"
#include "render/Layer.h"
#include "render/TextLayer.h"
#include "shared/Geometry.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace pelmora::nowplaying {

/// A label with the title, the artist and the album of the track that the music player plays, over
/// one view's cards. It learns of tracks from the player's notifications, and asks the player by a
/// script when it is to be drawn and knows of none.
/// Thread: main; the properties any. Ownership: made by the view, which outlives it; its layers
/// stay with the view's layer. Units: points, y upward. Errors: none; without a track it is empty.
class PMiTunesTrack {
 public:
  /// How the label shows; any other number stands still.
  static constexpr std::int64_t kFadesInAndOut = 1;
  static constexpr std::int64_t kFliesAround = 2;

  PMiTunesTrack(TrackOwner& ownerView, std::int64_t iTunesTrackType);
  ~PMiTunesTrack();
  PMiTunesTrack(const PMiTunesTrack&) = delete;
  PMiTunesTrack& operator=(const PMiTunesTrack&) = delete;

  /// Writes the track into the layers, and places them or lets them fade in, as the type asks.
  void fillOutLayers();
  /// Moves the label by one step, which it reverses at the edges of the view's frame.
  void flyAround();

  void handleiTunesStateChangedDistributedNotification(const platform::Notification& notification);
  /// Waits for the player, at most a second.
  void askiTunesForCurrentTrackInfo();

  using Text = std::optional<std::string>;
  /// The title; none: no track is known, and the label is empty.
  [[nodiscard]] Text trackName() const { return _trackName.get(); }
  void setTrackName(Text name) { _trackName.set(std::move(name)); }
  [[nodiscard]] Text artist() const { return _artist.get(); }
  void setArtist(Text artist) { _artist.set(std::move(artist)); }
  [[nodiscard]] Text album() const { return _album.get(); }
  void setAlbum(Text album) { _album.set(std::move(album)); }
  /// As the player tells it; it is not drawn.
  [[nodiscard]] double rating() const { return _rating; }
  void setRating(double rating) { _rating = rating; }
  /// Whether the player is being asked. No lock: a plain test and set against asking within asking.
  [[nodiscard]] bool isAskingiTunes() const { return _isAskingiTunes; }
  void setIsAskingiTunes(bool isAsking) { _isAskingiTunes = isAsking; }

  [[nodiscard]] std::int64_t iTunesType() const { return _iTunesType; }
  [[nodiscard]] const std::shared_ptr<render::Layer>& baseLayer() const { return _baseLayer; }
  [[nodiscard]] const std::shared_ptr<render::TextLayer>& textLayer() const { return _textLayer; }
  /// The way of a step.
  [[nodiscard]] Point flyDelta() const { return _flyDelta.get(); }
  void setFlyDelta(const Point& delta) { _flyDelta.set(delta); }
  /// The view's frame as it was at the start: the box of the flight, also where its origin is not
  /// that of the view's own coordinates, in which the label is placed.
  [[nodiscard]] Rect ownerViewFrame() const { return _ownerViewFrame.get(); }

 private:
  void makeLayers(TrackOwner& ownerView);
  void setTrack(Text name, Text artist, Text album, double rating);
  void takeTrack(const platform::ScriptResult& result);
  void makeEmpty();
  void fadeInAndOut(const Rect& screen);
  void keepInside(const Rect& screen);

  const platform::Services& _services;
  const std::int64_t _iTunesType;
  AtomicProperty<Text> _trackName;
  AtomicProperty<Text> _artist;
  AtomicProperty<Text> _album;
  std::atomic<double> _rating{0};
  std::atomic<bool> _isAskingiTunes{false};
  AtomicProperty<Point> _flyDelta;
  AtomicProperty<Rect> _ownerViewFrame;
  std::shared_ptr<render::Layer> _baseLayer;
  std::shared_ptr<render::TextLayer> _textLayer;
  platform::NotificationCenter::Token _playerInfoToken{};
};

}  // namespace pelmora::nowplaying
