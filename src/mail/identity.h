// frmIdentity: the name and the address under which Packages are sent.
#pragma once

#include "core/app.h"

namespace skv {

// Shows the dialog above `owner`, with the keyboard in one of its fields, until it is left.
void askIdentity(App& app, ui::Form& owner, ui::TextBox& field);

void frmIdentity_btnOK_Click(App& app);
void frmIdentity_btnCancel_Click(App& app);

}  // namespace skv
