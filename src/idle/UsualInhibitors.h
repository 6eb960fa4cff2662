#pragma once

#include "idle/BusInhibitor.h"

namespace pelmora::idle {

// Who is asked whether the saver may start, and what.

/// The session manager of GNOME, Cinnamon and MATE: its inhibitors of idleness.
[[nodiscard]] BusQuestion sessionManagerQuestion();
/// KDE's power management: its inhibitors of changes to the screen.
[[nodiscard]] BusQuestion powerManagementQuestion();
/// The system's login manager: its inhibitors of idleness.
[[nodiscard]] BusQuestion loginManagerQuestion();
/// The system's power supply: whether it is a battery.
[[nodiscard]] BusQuestion batteryQuestion();

}  // namespace pelmora::idle
