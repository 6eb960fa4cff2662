#include "render/GlProbe.h"

#include <gtest/gtest.h>

namespace pelmora::render {
namespace {

TEST(GlProbe, knowsRenderersThatUseTheProcessor) {
  for (const char* name : {"llvmpipe (LLVM 15.0.6, 256 bits)", "softpipe", "Software Rasterizer",
                           "SWRAST", "Google SwiftShader", "ANGLE (Mesa, llvmpipe)", ""}) {
    EXPECT_TRUE(isSoftwareRenderer(name)) << name;
  }
}

TEST(GlProbe, knowsRealOnes) {
  for (const char* name :
       {"Mesa Intel(R) UHD Graphics 620 (KBL GT2)", "AMD Radeon RX 6600 (navi23, LLVM 15.0.6)",
        "NVIDIA GeForce GTX 1050/PCIe/SSE2", "V3D 4.2", "Mali-G52 (Panfrost)", "virgl (AMD)",
        "SVGA3D; build: RELEASE;  LLVM;"}) {
    EXPECT_FALSE(isSoftwareRenderer(name)) << name;
  }
}

TEST(GlProbe, readsTheNameThatTheProbePrints) {
  EXPECT_EQ(probeRenderer("/bin/echo", {"V3D 4.2"}), "V3D 4.2");
  EXPECT_EQ(probeRenderer("/bin/sh", {"-c", "printf 'one\\ntwo\\n'"}), "one");
  EXPECT_EQ(probeRenderer("/bin/true", {}), "");
}

TEST(GlProbe, hasNoAnswerFromAProbeThatFails) {
  EXPECT_EQ(probeRenderer("/bin/sh", {"-c", "echo V3D; exit 1"}), std::nullopt);
  EXPECT_EQ(probeRenderer("/bin/sh", {"-c", "echo V3D; kill -SEGV $$"}), std::nullopt);
  EXPECT_EQ(probeRenderer("/nonexistent/probe", {}), std::nullopt);
}

TEST(GlProbe, stopsAProbeThatHangs) {
  EXPECT_EQ(probeRenderer("/bin/sh", {"-c", "exec tail -f /dev/null"}, 0.02), std::nullopt);
}

TEST(GlProbe, keepsTheNameShort) {
  const auto name = probeRenderer("/bin/sh", {"-c", "head -c 100000 /dev/zero | tr '\\0' x"});
  ASSERT_TRUE(name);
  EXPECT_LE(name->size(), 1024U);
}

}  // namespace
}  // namespace pelmora::render
