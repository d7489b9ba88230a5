// The desktop's own bus, on which its portal and its screen readers are.
#pragma once

namespace skv::ui::qt {

// Whether the desktop tells where its bus is, or it is where systemd puts it.
bool isSessionBusKnown();

// Where no bus can be, keeps libdbus from looking for one. It would do so by dbus-launch: a fork of
// the whole program, for which the first window waits even on machines without such a command. With
// the application made, and before the program's first thread, which may read the environment.
void spareSearchForSessionBus();

}  // namespace skv::ui::qt
