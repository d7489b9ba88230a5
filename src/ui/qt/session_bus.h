// The desktop's own bus, on which its portal and its screen readers are.
#pragma once

namespace skv::ui::qt {

// Whether the desktop tells where its bus is, or it is where systemd puts it.
bool isSessionBusKnown();

// Where no bus can be, keeps libdbus from looking for one. It would do so by dbus-launch: a fork of
// the whole program, for which the first window waits even on machines without such a command. Qt
// asks for the bus once, for that window; after it the environment is to be as it was, for what the
// program starts. Before the program's first thread, which may read it. Answers whether there is
// something to undo.
bool hideMissingBus();
void showMissingBus();

}  // namespace skv::ui::qt
