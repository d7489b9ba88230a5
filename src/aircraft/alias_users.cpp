#include "aircraft/alias_users.h"

#include <algorithm>
#include <array>

#include "aircraft/addon_kind.h"
#include "base/paths.h"
#include "core/profile.h"

namespace skv {

namespace {

// Whether an alias in the configuration files of `folder` begins with `place`, in upper case.
bool hasAliasInto(App& app, const std::string& folder, const std::string& place) {
  ProfileReader reader(app.files(), app.codePage);
  return std::ranges::any_of(std::array{&panelKind, &soundKind}, [&](const AddonKind* kind) {
    return upper(withBackslash(reader.read(folder + kind->file, "fltsim", "alias")))
        .starts_with(place);
  });
}

// A panel or a sound lies in the aircraft's own folder or one below it.
bool usesFolder(App& app, const std::string& aircraft, const std::string& place) {
  if (hasAliasInto(app, aircraft, place)) return true;
  const auto listing = app.files().list(aircraft, FileSystem::Entries::named);
  if (!listing.ok()) return false;
  return std::ranges::any_of(listing.value(), [&](const FolderEntry& entry) {
    const std::string name = lowerAscii(entry.name);
    return entry.folder && (name.starts_with(panelKind.part) || name.starts_with(soundKind.part)) &&
           hasAliasInto(app, aircraft + entry.name + "\\", place);
  });
}

}  // namespace

std::vector<std::string> aliasUsers(App& app, const std::string& folder) {
  std::vector<std::string> users;
  const std::string place = upper(FolderName(folder)) + "\\";
  const auto& list = app.frmMain.lstAircraft;
  for (int row = 1; row <= list.count(); ++row) {
    const std::string aircraft = withBackslash(list.subItem(row, 1));
    if (!equalsIgnoringCase(aircraft, withBackslash(folder)) && usesFolder(app, aircraft, place))
      users.push_back(list.text(row));
    app.windows.yield();
  }
  return users;
}

}  // namespace skv
