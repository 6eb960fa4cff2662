#pragma once

#include "shared/Result.h"

namespace pelmora::host {

struct RenderRequest;

/// Runs the saver on a stepped clock, from the request's start to the last moment asked for,
/// through the host's stop sequence, and writes the pictures and the listing. Folders are walked by
/// one worker, so that the same request gives the same bytes. Thread: the program's main thread,
/// which becomes the module's.
[[nodiscard]] Status renderPictures(const RenderRequest& request);

}  // namespace pelmora::host
