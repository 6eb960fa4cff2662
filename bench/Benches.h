#pragma once

namespace pelmora::bench {

// The benchmarks; each prints its figures.
void benchWalkMillion();
void benchWalkManyFolders();
void benchCacheMemory();
void benchNames();
void benchPick();
void benchFrames();
void benchHeldFrames();
void benchAtRest();
void benchFirstPicture();
void benchDecode();
void benchIndex();
void benchSettings();

}  // namespace pelmora::bench
