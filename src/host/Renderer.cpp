#include "host/Renderer.h"

#include "render/GlProbe.h"
#include "render/QuickWindow.h"
#include "render/RasterWindow.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <cstdio>
#include <optional>
#include <string>

namespace pelmora::host {

namespace {

constexpr const char* kThisProgram = "/proc/self/exe";

Renderer bestRenderer() {
  const auto name = render::probeRenderer(kThisProgram, {std::string(kProbeCommand)});
  return name && !render::isSoftwareRenderer(*name) ? Renderer::gpu : Renderer::software;
}

}  // namespace

bool isRendererName(std::string_view name) {
  return name == "auto" || name == "gpu" || name == "software";
}

Renderer chooseRenderer(std::string_view name) {
  if (name == "gpu") return Renderer::gpu;
  return name == "software" ? Renderer::software : bestRenderer();
}

ExitStatus probeGraphics() {
  int count = 1;
  char name[] = "pelmora";
  char* words[] = {name, nullptr};
  const QGuiApplication application(count, words);
  return render::glProbeMain() == 0 ? ExitStatus::success : ExitStatus::failure;
}

std::unique_ptr<render::PresenterWindow> makePresenterWindow(Renderer renderer,
                                                             platform::Clock& clock) {
  if (renderer == Renderer::software) return std::make_unique<render::RasterWindow>(clock);
  QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
  auto window = std::make_unique<render::QuickWindow>(clock);
  // Unheard, the failure would abort the program.
  QObject::connect(window.get(), &QQuickWindow::sceneGraphError, window.get(),
                   [](QQuickWindow::SceneGraphError, const QString& message) {
                     std::fprintf(stderr, "pelmora: %s\n", qPrintable(message));
                     QGuiApplication::exit(static_cast<int>(ExitStatus::failure));
                   });
  return window;
}

}  // namespace pelmora::host
