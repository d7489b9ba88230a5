#include "aircraft/alias_users.h"

#include <algorithm>
#include <array>
#include <unordered_set>

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/profile.h"
#include "core/staged_folder.h"

namespace skv {

namespace {

struct Aircraft {
  std::string name, folder;
};

// The rows, and the folders of the aircraft root that are none of them.
Result<std::vector<Aircraft>> allAircraft(App& app) {
  std::vector<Aircraft> all;
  std::unordered_set<std::string> listed;
  const auto& list = app.frmMain.lstAircraft;
  for (int row = 1; row <= list.count(); ++row) {
    all.push_back({list.text(row), withBackslash(list.subItem(row, 1))});
    listed.insert(upper(all.back().folder));
  }
  const auto listing = app.files().list(app.ACRoot, FileSystem::Entries::named);
  if (!listing.ok()) {
    if (presenceBy(listing.outcome()) == Presence::unknown) return listing.outcome();
    return all;
  }
  for (const FolderEntry& entry : listing.value()) {
    const std::string folder = app.ACRoot + entry.name + "\\";
    if (entry.folder && !equalsIgnoringCase(entry.name, StagedFolder::name) &&
        !listed.contains(upper(folder)))
      all.push_back({entry.name, folder});
  }
  return all;
}

}  // namespace

std::vector<Alias> aliasesOf(App& app, const std::string& folder) {
  std::vector<Alias> aliases;
  ProfileReader reader(app.files(), app.codePage);
  const auto look = [&](const std::string& where, const AddonKind& kind) {
    const std::string target = reader.read(where + kind.file, "fltsim", "alias");
    if (!target.empty()) aliases.push_back({where, withoutBackslash(target), &kind});
  };
  const std::array kinds{&panelKind, &soundKind};
  for (const AddonKind* kind : kinds) look(folder, *kind);
  const auto listing = app.files().list(folder, FileSystem::Entries::named);
  if (!listing.ok()) return aliases;
  for (const FolderEntry& entry : listing.value())
    for (const AddonKind* kind : kinds)
      if (entry.folder && lowerAscii(entry.name).starts_with(kind->part))
        look(folder + entry.name + "\\", *kind);
  return aliases;
}

std::string aliasUsersNote(App& app, const std::string& folder, const std::string& who) {
  constexpr std::size_t named = 5;
  const std::string heading = "\r\r" + who;
  const bool below = isOrHolds(app.ACRoot, folder);
  const std::string place =
      upper(withBackslash(below ? folder.substr(app.ACRoot.size()) : FolderName(folder)));
  const auto aircraft = allAircraft(app);
  if (!aircraft.ok()) return heading + "\rThat cannot be told. " + aircraft.outcome().description();
  std::vector<std::string> users;
  for (const Aircraft& each : aircraft.value()) {
    if (std::ranges::any_of(aliasesOf(app, each.folder), [&](const Alias& alias) {
          return upper(withBackslash(alias.target)).starts_with(place) &&
                 !isOrHolds(folder, alias.folder);
        }))
      users.push_back(each.name);
    app.windows.yield();
  }
  if (users.empty()) return {};
  std::string note = heading;
  for (std::size_t i = 0; i < std::min(named, users.size()); ++i) note += "\r" + users[i];
  if (users.size() > named) note += "\rand " + std::to_string(users.size() - named) + " more";
  return note;
}

}  // namespace skv
