#include "render/GlProbe.h"

#include <QByteArray>
#include <QFile>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <sys/prctl.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <csignal>
#include <cstdio>

namespace pelmora::render {

namespace {

// Mesa's rasterizers, Google's, Microsoft's; a virtual graphics card names its host's driver, but
// without one it falls back to these, and then says so.
constexpr std::array<std::string_view, 8> kSoftwareRenderers = {
    "llvmpipe", "softpipe",   "swrast", "software rasterizer", "swiftshader", "basic render driver",
    "lavapipe", "gdi generic"};

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return lower;
}

}  // namespace

bool isSoftwareRenderer(std::string_view renderer) {
  const std::string name = lowerCase(renderer);
  return name.empty() || std::any_of(kSoftwareRenderers.begin(), kSoftwareRenderers.end(),
                                     [&name](std::string_view software) {
                                       return name.find(software) != std::string::npos;
                                     });
}

int glProbeMain() {
  QOpenGLContext context;
  if (!context.create()) return 1;
  QOffscreenSurface surface;
  surface.setFormat(context.format());
  surface.create();
  if (!surface.isValid() || !context.makeCurrent(&surface)) return 1;
  const GLubyte* renderer = context.functions()->glGetString(GL_RENDERER);
  if (renderer == nullptr) return 1;
  std::printf("%s\n", reinterpret_cast<const char*>(renderer));
  return std::fflush(stdout) == 0 ? 0 : 1;
}

std::optional<std::string> probeRenderer(const std::string& program,
                                         const std::vector<std::string>& arguments,
                                         double timeLimit) {
  constexpr qint64 kLongestName = 1024;
  QStringList list;
  for (const std::string& argument : arguments) list << QFile::decodeName(argument.c_str());
  QProcess process;
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  // It may hang in a driver, and the saver may be ended meanwhile.
  process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
  process.start(QFile::decodeName(program.c_str()), list);
  const bool ended = process.waitForFinished(static_cast<int>(std::lround(timeLimit * 1000)));
  if (!ended) {
    process.kill();
    process.waitForFinished();
    return std::nullopt;
  }
  if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) return std::nullopt;
  const QByteArray line = process.readLine(kLongestName).trimmed();
  return std::string(line.constData(), static_cast<std::size_t>(line.size()));
}

}  // namespace pelmora::render
