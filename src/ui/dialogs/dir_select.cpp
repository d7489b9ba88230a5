#include "ui/dialogs/dir_select.h"

#include "base/paths.h"

namespace skv {

FolderPick pickFolder(App& app, ui::Form& owner, const std::string& start) {
  auto& form = app.frmDirSelect;
  if (form.visible) return FolderPick::busy;
  form.DirCancelled = false;
  app.windows.show(form, &owner);
  form.Dir1.folder = start;
  form.txtDir.text = start;
  app.windows.yieldUntil([&form] { return !form.visible; });
  return form.DirCancelled || app.ending ? FolderPick::cancelled : FolderPick::chosen;
}

void frmDirSelect_Dir1_Change(App& app) {
  auto& form = app.frmDirSelect;
  form.txtDir.text = withBackslash(form.Dir1.folder.get());
}

void frmDirSelect_btnOK_Click(App& app) { app.windows.hide(app.frmDirSelect); }

void frmDirSelect_btnCancel_Click(App& app) {
  app.frmDirSelect.DirCancelled = true;
  app.windows.hide(app.frmDirSelect);
}

void frmDirSelect_btnMkDir_Click(App& app) {
  constexpr const char* proposal = "New Folder";
  auto& form = app.frmDirSelect;
  const auto name = app.windows.inputBox("New folder name:", ui::programTitle, proposal);
  if (!name || name->empty() || *name == proposal) return;
  const std::string folder = withBackslash(form.txtDir.text.get()) + *name;
  if (!app.files().makeFolder(folder).ok()) {
    app.windows.messageBox({"Unable to create folder!", ui::BoxIcon::exclamation});
    return;
  }
  form.txtDir.text = folder + "\\";
  form.Dir1.folder = folder + "\\";
}

}  // namespace skv
