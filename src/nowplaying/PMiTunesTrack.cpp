#include "nowplaying/PMiTunesTrack.h"

#include "nowplaying/MusicPlayer.h"
#include "shared/Random.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace pelmora::nowplaying {

namespace {

constexpr const char* kPlayerInfo = "com.apple.iTunes.playerInfo";
constexpr double kFontSize = 24;  // points
constexpr Color kWhite{1, 1, 1, 1};
constexpr Color kOrange{1, 0.5, 0, 1};
constexpr double kCornerRadius = 4;
constexpr double kPreviewScale = 0.25;
constexpr double kOpacity = 0.8F;  // in single precision
constexpr const char* kGlideKey = "position";
constexpr render::MediaTimingFunction kGlide(render::MediaTimingFunction::Name::standard);
constexpr double kFadeDuration = 10;  // seconds

/// Slow or fast, to one side or the other, but never still.
double randomSpeed() {
  return randomIntBetween(0, 1) == 1 ? randomDoubleBetween(0.5, 5.0)
                                     : randomDoubleBetween(-5.0, -0.5);
}

render::TextRun run(std::string text, bool isBold) {
  return {std::move(text), {.size = kFontSize, .bold = isBold}, kWhite};
}

/// The rectangle that a layer covers in its superlayer, but for its scale.
Rect frameOf(const render::Layer& layer) { return {layer.position(), layer.bounds().size}; }

Rect boundsOf(const render::Layer* layer) { return layer ? layer->bounds() : Rect{}; }

/// Where an edge has to go for a range to be inside of another; the lower end is looked at first.
double pulledIn(double at, double length, double least, double most) {
  if (at < least) return least;
  return at + length > most ? most - length : at;
}

/// Whether a step leads across one of the two edges, on the way to it.
bool crosses(double delta, double low, double high, double least, double most) {
  return (delta > 0 && high + delta > most) || (delta < 0 && low + delta < least);
}

PMiTunesTrack::Text textIn(const plist::Dictionary& info, const char* key) {
  const auto found = info.find(key);
  const auto* text = found == info.end() ? nullptr : found->second.get<std::string>();
  return text ? PMiTunesTrack::Text(*text) : std::nullopt;
}

PMiTunesTrack::Text textIn(const platform::ScriptRecord& record, const char* keyword) {
  const auto found = record.find(keyword);
  const auto* text = found == record.end() ? nullptr : std::get_if<std::string>(&found->second);
  return text ? PMiTunesTrack::Text(*text) : std::nullopt;
}

}  // namespace

PMiTunesTrack::PMiTunesTrack(TrackOwner& ownerView, std::int64_t iTunesTrackType)
    : _services(ownerView.services()), _iTunesType(iTunesTrackType) {
  if (_iTunesType == kFliesAround) {
    const double x = randomSpeed();
    setFlyDelta({x, randomSpeed()});
  }
  makeLayers(ownerView);
  _playerInfoToken = _services.distributedNotifications.addObserver(
      kPlayerInfo, [this](const platform::Notification& notification) {
        handleiTunesStateChangedDistributedNotification(notification);
      });
}

PMiTunesTrack::~PMiTunesTrack() {
  _services.distributedNotifications.removeObserver(_playerInfoToken);
}

void PMiTunesTrack::makeLayers(TrackOwner& ownerView) {
  _textLayer = std::make_shared<render::TextLayer>();
  _textLayer->setAlignment(render::TextAlignment::center);
  _textLayer->setAnchorPoint({0, 0});
  _baseLayer = std::make_shared<render::Layer>();
  _baseLayer->setRole("track");
  _baseLayer->setBounds(insetRect(_textLayer->bounds(), -4, -4));
  _ownerViewFrame.set(ownerView.frame());
  _baseLayer->setPosition(randomPointForSizeInRect(_baseLayer->bounds().size, ownerViewFrame()));
  _baseLayer->setAnchorPoint({0, 0});
  _baseLayer->setBackgroundColor(kOrange);
  _baseLayer->setCornerRadius(kCornerRadius);
  _baseLayer->setZPosition(std::numeric_limits<float>::max());  // above every card
  _baseLayer->addSublayer(_textLayer);
  _baseLayer->setOpacity(0);
  if (ownerView.isPreview()) _baseLayer->setScale(kPreviewScale);
  if (render::Layer* const layer = ownerView.layer()) layer->addSublayer(_baseLayer);
}

// What is playing ---------------------------------------------------------------------------------

void PMiTunesTrack::handleiTunesStateChangedDistributedNotification(
    const platform::Notification& notification) {
  const plist::Dictionary& info = notification.userInfo;
  const auto rating = info.find("Rating");
  setTrack(textIn(info, "Name"), textIn(info, "Artist"), textIn(info, "Album"),
           rating == info.end() ? 0.0 : rating->second.doubleValue());
  fillOutLayers();
}

void PMiTunesTrack::askiTunesForCurrentTrackInfo() {
  if (isAskingiTunes()) return;
  setIsAskingiTunes(true);
  takeTrack(isMusicPlayerRunning(_services) ? runTrackScript(_services) : platform::ScriptResult());
  setIsAskingiTunes(false);
}

void PMiTunesTrack::takeTrack(const platform::ScriptResult& result) {
  const auto* record = std::get_if<platform::ScriptRecord>(&result);
  if (!record) return setTrack({}, {}, {}, 0);
  const auto rating = record->find("pRte");
  const auto* number = rating == record->end() ? nullptr : std::get_if<double>(&rating->second);
  setTrack(textIn(*record, "pnam"), textIn(*record, "pArt"), textIn(*record, "pAlb"),
           number ? *number : 0.0);
}

void PMiTunesTrack::setTrack(Text name, Text artist, Text album, double rating) {
  setTrackName(std::move(name));
  setArtist(std::move(artist));
  setAlbum(std::move(album));
  setRating(rating);
}

// The label ---------------------------------------------------------------------------------------

void PMiTunesTrack::fillOutLayers() {
  if (!trackName()) askiTunesForCurrentTrackInfo();
  const Text name = trackName();
  if (!name) return makeEmpty();
  render::AttributedString text{{run(*name, true)}};
  if (const Text by = artist()) text.runs.push_back(run("\n" + *by, false));
  if (const Text from = album()) text.runs.push_back(run("\n" + *from, false));
  const Rect screen = boundsOf(_baseLayer->superlayer());
  const Size size = render::boundingSize(text, screen.size);
  _textLayer->setString(std::move(text));
  _textLayer->setBounds({{0, 0}, size});
  _baseLayer->setBounds(insetRect(_textLayer->bounds(), -8, -2));
  if (_iTunesType == kFadesInAndOut) {
    fadeInAndOut(screen);
  } else {
    keepInside(screen);
  }
}

void PMiTunesTrack::makeEmpty() {
  _textLayer->setString({});
  _textLayer->setBounds({});
  _baseLayer->setBounds({});
}

void PMiTunesTrack::fadeInAndOut(const Rect& screen) {
  _baseLayer->addAnimation(render::KeyframeAnimation{.keyPath = render::KeyPath::opacity,
                                                     .duration = kFadeDuration,
                                                     .keyTimes = {0, 0.2, 0.8, 1},
                                                     .values = {0.0, 0.8, 0.8, 0.0}},
                           "TheFadeInAndOut");
  _baseLayer->setOpacity(0);
  _baseLayer->setPosition(randomPointForSizeInRect(_baseLayer->bounds().size, screen));
}

void PMiTunesTrack::keepInside(const Rect& screen) {
  const Rect frame = frameOf(*_baseLayer);
  const Point inside{pulledIn(frame.minX(), frame.size.width, screen.minX(), screen.maxX()),
                     pulledIn(frame.minY(), frame.size.height, screen.minY(), screen.maxY())};
  if (inside != frame.origin) {
    _baseLayer->removeAnimation(kGlideKey);  // which leads elsewhere
    _baseLayer->setPosition(inside);
  }
  _baseLayer->setOpacity(kOpacity);
}

void PMiTunesTrack::flyAround() {
  if (!trackName()) return;
  const Rect frame = frameOf(*_baseLayer);
  const Rect box = ownerViewFrame();
  Point delta = flyDelta();
  if (crosses(delta.x, frame.minX(), frame.maxX(), box.minX(), box.maxX())) delta.x = -delta.x;
  if (crosses(delta.y, frame.minY(), frame.maxY(), box.minY(), box.maxY())) delta.y = -delta.y;
  setFlyDelta(delta);
  const Point from = _baseLayer->position();
  const Point to{from.x + delta.x, from.y + delta.y};
  _baseLayer->setPosition(to);
  // Steps are far apart in time: the label glides from one to the next.
  _baseLayer->addAnimation(render::BasicAnimation{.keyPath = render::KeyPath::position,
                                                  .timingFunction = kGlide,
                                                  .fromValue = from,
                                                  .toValue = to},
                           kGlideKey);
}

}  // namespace pelmora::nowplaying
