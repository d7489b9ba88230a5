#include "core/library_scan.h"

#include <utility>

#include "base/paths.h"
#include "core/profile.h"

namespace skv {

namespace {

// An alias is only a pointer to another add-on. A folder that is called after its kind
// ("panel.vfr") tells nothing, so the aircraft's name stands for it.
Outcome scan(App& app, ui::ListView& list, const std::string& folder, const std::string& file,
             const char* kind) {
  if (list.findSubItem1(folder) != 0) return {};
  const auto bytes = app.files().readFile(folder + file);
  if (!bytes.ok()) return bytes.outcome();
  if (!Profile(bytes.value(), app.codePage).read("fltsim", "alias").empty()) return {};
  std::string name = FolderName(folder);
  if (upper(name).starts_with(kind))
    name = FolderName(folder.substr(0, folder.size() - name.size() - 1));
  list.add(std::move(name), {folder});
  return {};
}

}  // namespace

Outcome scanAircraft(App& app, const std::string& folder, const std::string& file) {
  auto& list = app.frmMain.lstAircraft;
  if (list.findSubItem1(folder) != 0 || list.findSubItem1(app.ACRoot) != 0) return {};
  const auto bytes = app.files().readFile(folder + file);
  if (!bytes.ok()) return bytes.outcome();
  std::string title = Profile(bytes.value(), app.codePage).read("fltsim.0", "Title");
  if (title.empty()) title = "*Unknown*";
  list.add(std::move(title), {folder});
  return {};
}

Outcome scanPanel(App& app, const std::string& folder, const std::string& file) {
  return scan(app, app.frmMain.lstPanel, folder, file, "PANEL");
}

Outcome scanSound(App& app, const std::string& folder, const std::string& file) {
  return scan(app, app.frmMain.lstSound, folder, file, "SOUND");
}

}  // namespace skv
