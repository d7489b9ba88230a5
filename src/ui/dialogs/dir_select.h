// frmDirSelect: the folder picker of the program.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

enum class FolderPick {
  chosen,  // the text is in frmDirSelect.txtDir, not checked
  cancelled,
  busy,  // the picker is in use by another command
};

// Shows the picker above `owner`, opened at `start`, and waits until it is hidden. The caller reads
// txtDir and unloads the form, except when it was busy.
FolderPick pickFolder(App& app, ui::Form& owner, const std::string& start);

void frmDirSelect_Dir1_Change(App& app);
void frmDirSelect_btnOK_Click(App& app);
void frmDirSelect_btnCancel_Click(App& app);
void frmDirSelect_btnMkDir_Click(App& app);

}  // namespace skv
