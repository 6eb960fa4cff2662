#include "platform/linux/LogSound.h"

namespace pelmora::platform {

void LogSound::beep() { _log.write("Pelmora: beep."); }

}  // namespace pelmora::platform
