#pragma once

#include "platform/Image.h"
#include "render/Animation.h"
#include "shared/FilePath.h"
#include "shared/Geometry.h"

#include <QImage>

#include <memory>

namespace pelmora::render {
class Layer;
}

namespace pelmora::cards {

class OwnerView;

/// One picture on one screen: its artwork (the picture itself, or mounted in an instant-photo frame
/// with a handwritten caption and tag pills) and the layer that shows it and slides into place.
/// Releasing the card takes its layer off the screen at once; during its entrance the layer holds
/// the card, so a card dropped within its first 1.15 s goes when its turn has ended.
/// Thread: the view's. Units: points.
/// Errors: none; what cannot be had (a font, tags) is done without.
class PMFile : public render::AnimationDelegate, public std::enable_shared_from_this<PMFile> {
 public:
  /// Makes the card and starts its entrance on `ownerView` (null: a zero frame, nothing shown).
  static std::shared_ptr<PMFile> make(FilePath url, const platform::Image& image,
                                      OwnerView* ownerView);
  ~PMFile() override;

  [[nodiscard]] const FilePath& url() const;
  /// The artwork; null once the layer has it.
  [[nodiscard]] const QImage& image() const;
  [[nodiscard]] const std::shared_ptr<render::Layer>& layer() const;

  /// Empty on purpose: nothing happens at the end of an entrance.
  void animationDidStop(const render::BasicAnimation& animation, bool finished) override;

 private:
  PMFile(FilePath url, const platform::Image& image, OwnerView* ownerView);
  void makeLayer(OwnerView* ownerView);

  FilePath _url;
  QImage _image;
  Size _size;  // of the artwork, in points
  std::shared_ptr<render::Layer> _layer;
};

}  // namespace pelmora::cards
