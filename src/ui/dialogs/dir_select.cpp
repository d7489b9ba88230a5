#include "ui/dialogs/dir_select.h"

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/messages.h"
#include "ui/dialogs/folder_text.h"

namespace skv {

namespace {

void refuse(App& app, const std::string& text, const std::string& title) {
  app.windows.messageBox({text, ui::BoxIcon::exclamation, ui::BoxButtons::ok, title});
}

// The folder of a text that the user has chosen, none when it was refused.
std::optional<std::string> validFolder(App& app, const std::string& typed,
                                       const std::string& refusalTitle) {
  const auto folder = folderFromText(app, typed);
  if (folder.ok() && folderExists(app.files(), folder.value())) return folder.value();
  const auto lacking = app.codePage.lacking(typed);
  refuse(app, lacking.empty() ? "You must specify a valid location!" : notStorable(typed, lacking),
         refusalTitle);
  return {};
}

}  // namespace

std::optional<std::string> chooseFolder(App& app, ui::Form& owner, const std::string& start,
                                        const std::string& refusalTitle) {
  auto& form = app.frmDirSelect;
  if (form.visible) {
    app.windows.setFocus(form.txtDir);
    return {};
  }
  form.DirCancelled = false;
  app.windows.show(form, &owner);
  form.Dir1.folder = start;
  form.txtDir.text = start;
  app.windows.yieldUntil([&form] { return !form.visible; });
  const bool left = form.DirCancelled || app.ending || !owner.visible;
  const std::string typed = trim(form.txtDir.text.get());
  app.windows.unload(form);
  if (left) return {};
  return validFolder(app, typed, refusalTitle);
}

void cancelFolderChoice(App& app) {
  if (app.frmDirSelect.visible) frmDirSelect_btnCancel_Click(app);
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
  // The dialog below may have gone meanwhile.
  if (!form.visible || !name || name->empty() || *name == proposal) return;
  if (const auto lacking = app.codePage.lacking(*name); !lacking.empty()) {
    refuse(app, notStorable(*name, lacking), ui::programTitle);
    return;
  }
  const auto parent = folderFromText(app, form.txtDir.text.get());
  if (!parent.ok() || !isElementName(*name) ||
      !app.files().makeFolder(parent.value() + *name).ok()) {
    refuse(app, "Unable to create folder!", ui::programTitle);
    return;
  }
  form.txtDir.text = parent.value() + *name + "\\";
  form.Dir1.folder = form.txtDir.text.get();
}

}  // namespace skv
