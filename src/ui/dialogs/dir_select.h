// frmDirSelect: the folder picker of the program.
#pragma once

#include <optional>
#include <string>

#include "core/app.h"

namespace skv {

// Shows the picker above `owner`, opened at `start`, until it is left. The folder that was chosen
// stands, is a full path and ends in a backslash. Anything else that was chosen is refused in a box
// of that title; the answer is then none, as it is when the user cancels, while the picker is in
// use by another command, and when the owner goes.
std::optional<std::string> chooseFolder(App& app, ui::Form& owner, const std::string& start,
                                        const std::string& refusalTitle);

// For a dialog that goes: takes along the picker that stands above it.
void cancelFolderChoice(App& app);

void frmDirSelect_Dir1_Change(App& app);
void frmDirSelect_btnOK_Click(App& app);
void frmDirSelect_btnCancel_Click(App& app);
void frmDirSelect_btnMkDir_Click(App& app);

}  // namespace skv
