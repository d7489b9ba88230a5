// "FS Skyvault - Scenery Options": the Flatten and Exclude values of a scenery of the library.
#pragma once

#include "core/app.h"

namespace skv {

// Edits the values of the selected row of lstInactScenery and saves the library. The dialog shows
// nine of each; what a row has beyond them is kept behind them.
void lstInactScenery_DblClick(App& app);

void frmSCOptions_Form_Load(App& app);
void lstFlatten_AfterLabelEdit(App& app, bool& cancel, const std::string& newString);
void lstExclude_AfterLabelEdit(App& app, bool& cancel, const std::string& newString);
void frmSCOptions_btnOK_Click(App& app);
void frmSCOptions_btnCancel_Click(App& app);

}  // namespace skv
