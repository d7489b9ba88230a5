#include "core/standing_addon.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/walktree.h"

namespace skv {

namespace {

StandingAddon unknown(Outcome why) { return {Standing::unknown, std::move(why)}; }

StandingAddon noFolderOfItsOwn(const std::string& path, const char* what) {
  return unknown(
      Outcome::withText(err::badFileName, "\"" + path + "\" " + what +
                                              ". It stays as it is, and no add-on of that "
                                              "name can be put there."));
}

// Whether a search hits anything in the folder. The search leaves no trace.
Result<bool> finds(App& app, const std::string& folder, WalkCode finder) {
  const std::string found = std::exchange(app.FoundDir, {});
  const std::string status = app.frmMain.lblStatus.caption;
  const WalkReport report = WalkTree(app, folder, "", finder, true, OnStop::goOn);
  app.frmMain.lblStatus.caption = status;
  const bool hit = !std::exchange(app.FoundDir, found).empty();
  if (!hit && !report.complete()) return report.first;
  return hit;
}

// Whether a file in sight lies directly in the folder, which may be missing.
Result<bool> holdsFiles(const FileSystem& files, const std::string& folder) {
  const auto listing = files.list(folder, FileSystem::Entries::plain);
  if (!listing.ok()) {
    if (presenceBy(listing.outcome()) == Presence::absent) return false;
    return listing.outcome();
  }
  return std::ranges::any_of(listing.value(), [](const FolderEntry& e) { return !e.folder; });
}

StandingAddon standingAircraft(App& app, const std::string& folder) {
  const auto config = app.files().attributes(folder + "\\aircraft.cfg");
  if (config.ok()) return {config.value().folder ? Standing::notWhole : Standing::whole};
  if (presenceBy(config.outcome()) == Presence::unknown) return unknown(config.outcome());
  const auto deeper = finds(app, folder, WalkFindACCfg);
  if (!deeper.ok()) return unknown(deeper.outcome());
  if (deeper.value()) return noFolderOfItsOwn(folder, "holds other aircraft in its folders");
  return {Standing::notWhole};
}

StandingAddon standingScenery(App& app, const std::string& folder, const std::string& package) {
  for (const char* part : {"\\Scenery", "\\Texture"}) {
    const auto holds = holdsFiles(app.files(), folder + part);
    if (!holds.ok()) return unknown(holds.outcome());
    if (holds.value()) return {Standing::whole};
  }
  const auto bgl = finds(app, folder, WalkFindBgl);
  if (!bgl.ok()) return unknown(bgl.outcome());
  if (bgl.value()) return {Standing::whole};
  if (package.empty()) return {Standing::notWhole};
  const auto packed = app.files().attributes(package);
  if (packed.ok()) return {Standing::whole};
  if (presenceBy(packed.outcome()) == Presence::unknown) return unknown(packed.outcome());
  return {Standing::notWhole};
}

}  // namespace

StandingAddon standingAddon(App& app, AddonType type, const std::string& folder,
                            const std::string& package) {
  const std::string path = withoutBackslash(folder);
  const auto found = app.files().attributes(path);
  if (!found.ok()) {
    if (presenceBy(found.outcome()) == Presence::absent) return {Standing::absent};
    return unknown(found.outcome());
  }
  if (!found.value().folder) return noFolderOfItsOwn(path, "is a file");
  const auto link = isLinkForCertain(app.files(), path);
  if (!link.ok()) return unknown(link.outcome());
  if (link.value()) return noFolderOfItsOwn(path, "is a link to another folder");
  return type == AddonType::aircraft ? standingAircraft(app, path)
                                     : standingScenery(app, path, package);
}

}  // namespace skv
