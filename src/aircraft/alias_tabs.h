// The Panel and Sound tabs: which panel and which sound the selected variation uses.
//
// A panel.cfg or sound.cfg that holds an alias is a pointer to another add-on's folder, relative to
// the aircraft root:
//
//   [fltsim]
//   alias=otherplane\panel.vfr
#pragma once

#include "aircraft/addon_kind.h"
#include "core/profile.h"

namespace skv {

// Show the variation's state, select the library row it uses, and set what "Restore original" may
// do. The boxes of the Info tab must hold the variation's keys.
void FillPanelTab(App& app, ProfileReader& reader);
void FillSoundTab(App& app, ProfileReader& reader);

// Shows one of the two tabs as the disk has it now, and leaves edits in the Info tab alone.
void showAliasState(App& app, const AddonKind& kind);

// Enables what the selected library rows and the shown variation give something to do.
void showAliasCommands(App& app);

// Shows the state of the selected library row itself.
void lstPanel_Click(App& app);
void lstSound_Click(App& app);

}  // namespace skv
