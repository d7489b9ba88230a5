// aircraft.cfg, the simulator's description of an aircraft, and the Info tab that shows it.
//
//   [fltsim.0]
//   title=Wessex 20
//   panel=vfr
//
// Each section "fltsim." + number is a variation; the first number without a title ends them. The
// program changes thirteen keys of them and nothing else, and keeps the file as it was before its
// first change as "Aircraft.preSKV.cfg".
#pragma once

#include "core/app.h"
#include "core/profile.h"

namespace skv {

// Folder of a part (panel, sound, model, texture) inside the aircraft's folder: "panel\" for an
// empty value, "panel.vfr\" for the value vfr.
std::string partFolder(const std::string& part, const std::string& value);

// The selected aircraft's folder, "" without a selected row.
std::string selectedAircraftFolder(App& app);

void FillACVersions(App& app, ProfileReader& reader);
void FillInfoTab(App& app, ProfileReader& reader);
void ClearInfoTab(App& app);

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
