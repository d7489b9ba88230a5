#include "aircraft/alias_commands.h"

#include "aircraft/addon_kind.h"
#include "aircraft/aircraft_cfg.h"
#include "aircraft/alias_tabs.h"
#include "aircraft/alias_users.h"
#include "aircraft/list_commands.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/kept_original.h"
#include "core/list_store.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/profile.h"
#include "core/stores.h"
#include "core/walktree.h"
#include "ui/dialogs/dir_select.h"

namespace skv {

namespace {

constexpr const char* aliasSection = "fltsim";
constexpr const char* aliasKey = "alias";

Outcome refused(const std::string& why) { return Outcome::withText(err::pathFileAccess, why); }

bool isAlias(const App& app, const std::string& bytes) {
  return !Profile(bytes, app.codePage).read(aliasSection, aliasKey).empty();
}

// Whether the folder holds a real panel or sound; if not, the user is told what it is.
bool isReal(App& app, const std::string& folder, const AddonKind& kind) {
  const std::string file = folder + kind.file;
  const auto bytes = app.files().readFile(file);
  if (!bytes.ok()) {
    if (presenceOf(app.files(), file) == Presence::absent)
      app.windows.messageBox({kind.words.wrongFolder, ui::BoxIcon::exclamation});
    else
      tellFailure(app, "\"" + file + "\" could not be read.", bytes.outcome());
    return false;
  }
  if (!isAlias(app, bytes.value())) return true;
  app.windows.messageBox(
      {kind.words.alias, ui::BoxIcon::exclamation, ui::BoxButtons::ok, kind.words.aliasTitle});
  return false;
}

void add(App& app, const AddonKind& kind) {
  const std::string view = app.ListDir;
  const auto folder = chooseFolder(app, app.frmMain, app.ACRoot, "Tolmere Settings");
  if (!folder || !isReal(app, *folder, kind)) return;
  const auto name = askRowName(app, kind.words.addPrompt, kind.words.addTitle, FolderName(*folder));
  if (app.ListDir != view) return;  // another list came up meanwhile
  auto& list = app.frmMain.*kind.list;
  const int selected = list.selected();
  list.add(name, {*folder});
  list.select(selected);
  list.ensureVisible(list.count());
  kind.save(app);
  showAliasCommands(app);
}

void remove(App& app, const AddonKind& kind) {
  auto& list = app.frmMain.*kind.list;
  if (list.selected() == 0) return;
  const auto id = list.id(list.selected());
  if (app.windows.messageBox({kind.words.deleteQuestion, ui::BoxIcon::warning,
                              ui::BoxButtons::yesNo, kind.words.deleteTitle}) != ui::Answer::yes)
    return;
  const int row = list.rowOf(id);
  if (row == 0) return;
  list.remove(row);
  kind.save(app);
  showAliasCommands(app);
}

// The variation's own folder of the part, the plain one when no variation is shown; "" without an
// aircraft.
std::string variationFolder(App& app, const AddonKind& kind) {
  if (app.infoSource.folder.empty()) return {};
  return app.infoSource.folder + partFolder(kind.part, variationValue(app, kind.part));
}

// The value that an alias has to have to lead from anywhere to `target`.
Result<std::string> aliasTo(App& app, const std::string& target, const std::string& own,
                            const AddonKind& kind) {
  if (Outcome lies = mayBeFilled(app, {target, app.ACRoot}); !lies.ok()) return lies;
  const FileSystem& files = app.files();
  const std::string identity = files.identity(target);
  if (equalsIgnoringCase(target, own) || (!identity.empty() && identity == files.identity(own)))
    return refused("It is the " + std::string(kind.part) + " of this variation itself.");
  return withoutBackslash(target.substr(app.ACRoot.size()));
}

// Writes the alias into the variation's own folder.
Outcome writeAlias(App& app, const std::string& own, const std::string& alias,
                   const AddonKind& kind) {
  FileSystem& files = app.files();
  const std::string current = own + kind.file, original = own + kind.backup;
  // Beside a backup stands an alias, or what the user has made of it: the rest of it stays. Where
  // an assignment was cut off behind its backup, the real one stands yet.
  const auto kept = files.attributes(original);
  if (!kept.ok() && presenceBy(kept.outcome()) == Presence::unknown) return kept.outcome();
  std::string before;
  if (kept.ok()) {
    auto bytes = files.readFile(current);
    if (!bytes.ok() && presenceOf(files, current) != Presence::absent) return bytes.outcome();
    const auto real = files.readFile(original);
    if (!real.ok()) return real.outcome();
    if (bytes.ok() && bytes.value() != real.value()) before = std::move(bytes).value();
  }
  Profile file(before, app.codePage);
  if (!file.write(aliasSection, aliasKey, alias)) return refused("\"" + alias + "\" is no alias.");
  return changeKeepingOriginal(files, current, original, file.bytes());
}

Outcome assignTo(App& app, const std::string& own, const std::string& alias,
                 const AddonKind& kind) {
  FileSystem& files = app.files();
  if (Outcome may = mayBeFilled(app, {own, app.infoSource.folder}); !may.ok()) return may;
  const Presence there = presenceOf(files, own);
  if (there == Presence::unknown) return files.attributes(own).outcome();
  if (there == Presence::absent)
    if (Outcome made = files.makeFolder(own); !made.ok()) return made;
  Outcome written = writeAlias(app, own, alias, kind);
  if (!written.ok() && there == Presence::absent) files.removeFolder(own).skipped();
  return written;
}

// The simulator follows one alias: whoever uses the variation's own panel would stand without one
// when that becomes an alias.
bool mayBecomeAlias(App& app, const std::string& own, const AddonKind& kind) {
  const auto bytes = app.files().readFile(own + kind.file);
  if (!bytes.ok() || isAlias(app, bytes.value())) return true;
  const LongOperation busy(app);
  const std::string part = kind.part;
  const std::string note =
      aliasUsersNote(app, own, "The " + part + " of this variation is used by:");
  return note.empty() ||
         app.windows.messageBox({.text = note.substr(note.find_first_not_of('\r')) +
                                         "\r\rThey would stand without a " + part +
                                         ". Assign another one all the same?",
                                 .icon = ui::BoxIcon::warning,
                                 .buttons = ui::BoxButtons::yesNo,
                                 .title = kind.words.aliasTitle}) == ui::Answer::yes;
}

void assign(App& app, const AddonKind& kind) {
  const auto& list = app.frmMain.*kind.list;
  const std::string own = variationFolder(app, kind);
  if (list.selected() == 0 || app.infoSource.values.empty()) return;
  const std::string name = list.text(list.selected());
  const std::string target = withBackslash(list.subItem(list.selected(), 1));
  const auto alias = aliasTo(app, target, own, kind);
  if (alias.ok() && (!isReal(app, target, kind) || !mayBecomeAlias(app, own, kind))) return;
  const Outcome assigned = alias.ok() ? assignTo(app, own, alias.value(), kind) : alias.outcome();
  if (!assigned.ok())
    tellFailure(app, "\"" + name + "\" was not assigned.", assigned);
  else
    app.frmMain.lblStatus.notice =
        "The " + std::string(kind.part) + " of this variation is \"" + name + "\" now";
  showAliasState(app, kind);
}

void restore(App& app, const AddonKind& kind) {
  const std::string own = variationFolder(app, kind);
  if (own.empty()) return;
  auto& button = app.frmMain.*kind.restore;
  if (presenceOf(app.files(), own + kind.backup) == Presence::absent) {
    button.enabled = false;
    return;
  }
  if (app.windows.messageBox({kind.words.resetQuestion, ui::BoxIcon::warning, ui::BoxButtons::yesNo,
                              kind.words.resetTitle}) != ui::Answer::yes)
    return;
  Outcome restored = mayBeFilled(app, {own, app.infoSource.folder});
  if (restored.ok()) restored = restoreOriginal(app.files(), own + kind.file, own + kind.backup);
  if (!restored.ok()) {
    tellFailure(app, "The " + std::string(kind.part) + " could not be reset.", restored);
    return;
  }
  showAliasState(app, kind);
  app.windows.messageBox(
      {kind.words.resetDone, ui::BoxIcon::information, ui::BoxButtons::ok, kind.words.resetTitle});
}

// Whether the two folders may be brought into line, and stand then.
Outcome prepareSync(App& app, const std::string& panels, const std::string& mirror) {
  FileSystem& files = app.files();
  const std::string root = aircraftRootOf(app.HangarDir);
  if (!isElementName(FolderName(panels)))
    return refused("\"" + panels + "\" has no name of its own.");
  if (isOrHolds(panels, mirror) || isOrHolds(mirror, panels))
    return refused("\"" + panels + "\" and its mirror \"" + mirror + "\" lie in one another.");
  if (Outcome may = mayBeFilled(app, {mirror, root}); !may.ok()) return may;
  for (const std::string& folder : {panels, mirror}) {
    if (mayBeMadeUnasked(app, folder)) MakePath(files, folder);
    const auto found = files.attributes(folder);
    if (!found.ok()) return found.outcome();
  }
  const auto place = files.canonicalPath(panels), other = files.canonicalPath(mirror);
  if (!place.ok() || !other.ok()) return place.ok() ? other.outcome() : place.outcome();
  if (place.value().starts_with(other.value()) || other.value().starts_with(place.value()))
    return refused("\"" + panels + "\" and its mirror \"" + mirror + "\" are one folder on disk.");
  return {};
}

}  // namespace

void btnAddPN_Click(App& app) { add(app, panelKind); }
void btnAddSN_Click(App& app) { add(app, soundKind); }
void btnDelPN_Click(App& app) { remove(app, panelKind); }
void btnDelSN_Click(App& app) { remove(app, soundKind); }
void btnAssignPN_Click(App& app) { assign(app, panelKind); }
void btnAssignSN_Click(App& app) { assign(app, soundKind); }
void btnPNRestoreOriginal_Click(App& app) { restore(app, panelKind); }
void btnSNRestoreOriginal_Click(App& app) { restore(app, soundKind); }

void mnuFileSynchPN_Click(App& app) {
  if (app.PanelsDir.empty() || app.HangarDir.empty()) return;
  const LongOperation busy(app);
  const std::string panels = withBackslash(app.PanelsDir);
  const std::string mirror = aircraftRootOf(app.HangarDir) + FolderName(panels) + "\\";
  if (const Outcome ready = prepareSync(app, panels, mirror); !ready.ok()) {
    tellFailure(app, "The panels folder was not synchronized.", ready);
    return;
  }
  app.frmMain.lblStatus.caption = "Synchronizing panels...";
  WalkReport report = WalkTree(app, mirror, panels, WalkCopy, false);
  if (!report.stopped) report += WalkTree(app, panels, mirror, WalkCopy, false);
  app.frmMain.lblStatus.caption = "";
  if (tellWalk(app, report, "copied"))
    app.frmMain.lblStatus.notice = "Panels synchronized: " + std::to_string(report.done) +
                                   (report.done == 1 ? " file" : " files") + " copied";
}

}  // namespace skv
