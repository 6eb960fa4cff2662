#include "host/PreviewWidget.h"

#include "platform/SteppedTime.h"
#include "render/Layer.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace pelmora::host {

namespace {

class PreviewWidgetTest : public testing::Test {
 protected:
  PreviewWidgetTest() {
    root->setBounds({{0, 0}, {200, 120}});
    card->setBounds({{0, 0}, {20, 20}});
    card->setPosition({100, 60});
    card->setBackgroundColor(Color{1, 0, 0, 1});
    root->addSublayer(card);
    widget.resize(200, 120);
    layers.setPresenter(&widget);
  }
  [[nodiscard]] QColor middle() { return widget.grab().toImage().pixelColor(100, 60); }

  char name[5] = "test";
  char* words[2] = {name, nullptr};
  int count = 1;
  QApplication application{count, words};
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler{clock};
  std::shared_ptr<render::Layer> root = std::make_shared<render::Layer>();
  std::shared_ptr<render::Layer> card = std::make_shared<render::Layer>();
  PreviewWidget widget{clock};
  render::LayerTree layers{clock, scheduler, root};
};

}  // namespace

TEST_F(PreviewWidgetTest, isBlackAtFirst) { EXPECT_EQ(middle(), QColor(Qt::black)); }

TEST_F(PreviewWidgetTest, showsWhatIsSubmitted) {
  widget.show();
  layers.commit();
  EXPECT_EQ(middle(), QColor(Qt::red));
  card->setPosition({20, 20});
  layers.commit();
  EXPECT_EQ(middle(), QColor(Qt::black));
}

TEST_F(PreviewWidgetTest, showsTheNewestWhenItIsShownAgain) {
  widget.show();
  layers.commit();
  widget.hide();
  card->setBackgroundColor(Color{0, 0, 1, 1});
  layers.commit();
  widget.show();
  EXPECT_EQ(middle(), QColor(Qt::blue));
}

TEST_F(PreviewWidgetTest, tellsOfAnotherSize) {
  widget.show();
  int told = 0;
  widget.resized = [&told] { ++told; };
  widget.resize(300, 200);
  EXPECT_GT(told, 0);
}

}  // namespace pelmora::host
