#include "render/SoftwareCompositor.h"

#include "render/Snapshot.h"
#include "render/Warp.h"

#include <QPainter>

#include <algorithm>
#include <cstring>
#include <utility>

namespace pelmora::render {

namespace {

using Items = std::vector<DrawItem>;

bool contains(const Items& items, const DrawItem& item) {
  return std::any_of(items.begin(), items.end(),
                     [&item](const DrawItem& each) { return each.looksLike(item); });
}

/// Those of `items` that are also among `others`.
Items common(const Items& items, const Items& others) {
  Items kept;
  std::copy_if(items.begin(), items.end(), std::back_inserter(kept),
               [&others](const DrawItem& item) { return contains(others, item); });
  return kept;
}

QRegion extentOf(const Items& items) {
  QRegion region;
  for (const DrawItem& item : items) region += item.extent();
  return region;
}

QRegion extentOfThoseNotIn(const Items& others, const Items& items) {
  QRegion region;
  for (const DrawItem& item : items) {
    if (!contains(others, item)) region += item.extent();
  }
  return region;
}

/// How many of the items at the end are new, so that they are just drawn over the rest.
std::ptrdiff_t countAppended(const Items& before, const Items& now) {
  const auto lastKept = std::find_if(
      now.rbegin(), now.rend(), [&before](const auto& item) { return contains(before, item); });
  return lastKept - now.rbegin();
}

using Iterator = Items::const_iterator;

void draw(QImage& target, Iterator begin, Iterator end, const QRect& clip) {
  std::vector<Warp> warps;
  for (auto item = begin; item != end; ++item) {
    if (!item->extent().intersects(clip)) continue;
    const BakedPicture& picture = *item->picture;
    warps.emplace_back(picture.image, picture.isOpaque ? picture.bounds : QRectF(), item->toTarget,
                       item->opacity);
  }
  drawWarped(target, warps, clip);
}

void copy(QImage& target, const QImage& from, const QRect& rect) {
  const auto offset = static_cast<std::size_t>(rect.left()) * 4;
  const auto length = static_cast<std::size_t>(rect.width()) * 4;
  for (int y = rect.top(); y <= rect.bottom(); ++y) {
    std::memcpy(target.scanLine(y) + offset, from.constScanLine(y) + offset, length);
  }
}

}  // namespace

QRegion SoftwareCompositor::paint(QImage& target, const Snapshot& snapshot, double time) {
  Items resting = drawListOf(snapshot, time);
  const auto firstMoving =
      std::find_if(resting.begin(), resting.end(), [](const DrawItem& item) { return item.moves; });
  Items live(firstMoving, resting.end());
  resting.erase(firstMoving, resting.end());

  QRegion damage = updateBackdrop(target.size(), snapshot, std::move(resting));
  if (!lookAlike(_live, live)) damage += extentOf(_live) + extentOf(live);
  _live = std::move(live);
  if (!std::exchange(_isTargetValid, true)) damage = target.rect();
  damage &= target.rect();
  for (const QRect& rect : damage) {
    copy(target, _backdrop, rect);
    draw(target, _live.begin(), _live.end(), rect);
  }
  return damage;
}

/// Only what came, went or changed is painted again: with several large cards, repainting all of
/// them would hold up the frame in which one goes.
QRegion SoftwareCompositor::updateBackdrop(const QSize& size, const Snapshot& snapshot,
                                           Items resting) {
  std::vector<FillItem> background = backgroundOf(snapshot);
  const Items before = std::exchange(_resting, std::move(resting));
  if (_backdrop.size() != size || _background != background) {
    _background = std::move(background);
    if (_backdrop.size() != size) _backdrop = QImage(size, QImage::Format_RGB32);
    repairBackdrop(_backdrop.rect(), _resting.end());
    return _backdrop.rect();
  }
  const auto appended = _resting.cend() - countAppended(before, _resting);
  const Items kept(_resting.cbegin(), appended);
  QRegion damage = extentOfThoseNotIn(kept, before) + extentOfThoseNotIn(before, kept);
  if (!lookAlike(common(before, kept), common(kept, before))) damage += extentOf(kept);
  repairBackdrop(damage, appended);
  draw(_backdrop, appended, _resting.cend(), _backdrop.rect());
  return damage + extentOf({appended, _resting.cend()});
}

void SoftwareCompositor::repairBackdrop(const QRegion& damage, Items::const_iterator end) {
  for (const QRect& rect : damage& _backdrop.rect()) {
    QPainter painter(&_backdrop);
    painter.setClipRect(rect);
    painter.fillRect(rect, Qt::black);
    for (const FillItem& fill : _background) painter.fillRect(fill.rect, fill.color);
    painter.end();
    draw(_backdrop, _resting.cbegin(), end, rect);
  }
}

}  // namespace pelmora::render
