// aircraft.cfg, the simulator's description of an aircraft, and the Info tab that shows it.
//
//   [fltsim.0]
//   title=Wessex 20
//   panel=vfr
//
// Each section "fltsim." + number is a variation; the first number without a title ends them. The
// program changes thirteen keys of them and nothing else, and keeps the file as it was before its
// first change as "Aircraft.preSKV.cfg".
//
// The boxes remember in App::infoSource what they were filled from. They are saved there or
// nowhere, and edits in them never go without a question.
#pragma once

#include "core/app.h"
#include "core/profile.h"

namespace skv {

inline constexpr const char* aircraftCfg = "Aircraft.cfg";
// As it was before the program's first change.
inline constexpr const char* originalAircraftCfg = "Aircraft.preSKV.cfg";

// Folder of a part (panel, sound, model, texture) inside the aircraft's folder: "panel\" for an
// empty value, "panel.vfr\" for the value vfr.
std::string partFolder(const std::string& part, const std::string& value);

// What the variation that the boxes show has for a part's key ("panel"), as it is stored.
std::string variationValue(const App& app, std::string_view key);

// The selected aircraft's folder, "" without a selected row.
std::string selectedAircraftFolder(App& app);

void FillACVersions(App& app, ProfileReader& reader);
// Boxes that cannot be filled are empty and take no input; infoSource says why.
void FillInfoTab(App& app, ProfileReader& reader);
// Edits in the boxes go without a question: see mayLeaveInfo.
void ClearInfoTab(App& app);

// Asks about edits in the boxes that are not saved, and saves them where the user wants it. False
// when they have to stay: the user cancelled, or they could not be saved. Call before rows are
// loaded anew, the view changes or the program ends.
bool mayLeaveInfo(App& app);

// Show the selected row, unless edits have to stay: then the row that they belong to is selected
// again. A click on that row itself leaves them alone.
void lstAircraft_Click(App& app);
void lstAircraft_ItemClick(App& app);
void lstACVersions_Click(App& app);
// Enter types the two characters backslash and n, by which the file writes a line break.
std::string txtACDescription_KeyPress(int& key);

void btnSaveACInfo_Click(App& app);
void btnACRestoreOriginal_Click(App& app);

void mnuViewACCfgAC_Click(App& app);
void mnuViewACCfgPN_Click(App& app);
void mnuViewACCfgSN_Click(App& app);
void mnuViewACCfgMD_Click(App& app);

}  // namespace skv
