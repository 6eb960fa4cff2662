#pragma once

namespace pelmora::host {

/// From now on the process ends with one line, and status 1, where there is no memory to be had:
/// what it writes is replaced whole or not at all, so that nothing is lost but the show. Thread:
/// any, once.
void endWhenMemoryRunsOut();

}  // namespace pelmora::host
