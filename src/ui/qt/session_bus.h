// The desktop's own bus, on which its portal and its screen readers are.
#pragma once

namespace skv::ui::qt {

// Whether the desktop tells where its bus is.
bool isSessionBusKnown();

// Where no bus can be, keeps libdbus from looking for one. It would do so by dbus-launch: a fork of
// the whole program, for which the first window waits even on machines without such a command. Call
// with the application made and before anything asks for the bus.
void lookForSessionBus();

}  // namespace skv::ui::qt
