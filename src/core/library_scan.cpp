#include "core/library_scan.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/paths.h"
#include "core/profile.h"
#include "core/staged_folder.h"

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

// Sees what the import's walk sees, and yields to nobody.
class AircraftCounter {
 public:
  explicit AircraftCounter(const FileSystem& files) : files_(files) {}

  AircraftCount below(const std::string& root) {
    // One that lies in the root itself is the only one that an import takes.
    if (hasAircraft(root)) return {.aircraft = 1};
    folder(root);
    return count_;
  }

 private:
  bool hasAircraft(const std::string& folder) const {
    const auto found = files_.attributes(folder + "aircraft.cfg");
    return found.ok() && !found.value().folder && !found.value().hidden && !found.value().system;
  }

  void folder(const std::string& path) {
    constexpr int mostFolders = 1000;
    const std::string here = files_.identity(path);
    if (here.empty() || std::ranges::find(ancestors_, here) != ancestors_.end()) return;
    const auto listing = files_.list(path, FileSystem::Entries::named);
    if (!listing.ok()) return;
    ancestors_.push_back(here);
    for (const FolderEntry& entry : listing.value()) {
      if (!entry.folder) {
        if (equalsIgnoringCase(entry.name, "aircraft.cfg") && hasAircraft(path)) ++count_.aircraft;
      } else if (folders_ == mostFolders) {
        count_.all = false;
        break;
      } else if (!equalsIgnoringCase(entry.name, StagedFolder::name)) {
        ++folders_;
        folder(path + entry.name + "\\");
      }
    }
    ancestors_.pop_back();
  }

  const FileSystem& files_;
  AircraftCount count_;
  int folders_ = 0;
  std::vector<std::string> ancestors_;  // identities, by which a circle of links shows
};

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

AircraftCount countAircraft(const App& app) {
  return AircraftCounter(app.platform.files).below(app.ACRoot);
}

Outcome scanPanel(App& app, const std::string& folder, const std::string& file) {
  return scan(app, app.frmMain.lstPanel, folder, file, "PANEL");
}

Outcome scanSound(App& app, const std::string& folder, const std::string& file) {
  return scan(app, app.frmMain.lstSound, folder, file, "SOUND");
}

}  // namespace skv
