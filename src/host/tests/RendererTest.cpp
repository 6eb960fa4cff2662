#include "host/Renderer.h"

#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QQuickWindow>

namespace pelmora::host {

TEST(Renderer, isChosenByName) {
  EXPECT_EQ(chooseRenderer("gpu"), Renderer::gpu);
  EXPECT_EQ(chooseRenderer("software"), Renderer::software);
}

TEST(Renderer, hasThreeNames) {
  for (const char* name : {"auto", "gpu", "software"}) EXPECT_TRUE(isRendererName(name));
  EXPECT_FALSE(isRendererName("magic"));
}

TEST(Renderer, endsTheRunWhenTheGraphicsProcessorFails) {
  int count = 1;
  char name[] = "test";
  char* words[] = {name, nullptr};
  const QGuiApplication application(count, words);
  platform::SteppedClock clock;
  const auto presenter = makePresenterWindow(Renderer::gpu, clock);
  auto& window = dynamic_cast<QQuickWindow&>(presenter->window());
  const auto fail = [&window] {
    window.sceneGraphError(QQuickWindow::ContextNotAvailable, "no context");
  };
  QMetaObject::invokeMethod(&window, fail, Qt::QueuedConnection);
  testing::internal::CaptureStderr();
  EXPECT_EQ(QGuiApplication::exec(), 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "pelmora: no context\n");
}

}  // namespace pelmora::host
