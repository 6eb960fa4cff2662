#pragma once

namespace pelmora::platform {

/// The calling thread runs only when nothing else wants the processor or the disk, from now on. A
/// refusal of the system leaves it as it is: the work gets done all the same. Thread: any.
void yieldToEverythingElse();

}  // namespace pelmora::platform
