#include "scenery/scenery_database.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/disk_queries.h"
#include "core/kept_original.h"
#include "core/messages.h"
#include "core/profile.h"
#include "scenery/scenery_cfg.h"
#include "scenery/scenery_lists.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

// What stands in the file now; none when it is clearly missing.
struct CfgFile {
  std::optional<FileState> state;
  std::string bytes;
};

bool isSameFile(const FileState& a, const FileState& b) {
  return a.modified == b.modified && a.length == b.length;
}

// The bytes and the state that goes with them, the file being changed meanwhile or not.
Result<CfgFile> readCfg(const FileSystem& files, const std::string& file) {
  constexpr int tries = 5;
  for (int i = 0; i < tries; ++i) {
    const auto state = files.fileState(file);
    if (!state.ok()) {
      if (presenceBy(state.outcome()) == Presence::absent) return CfgFile{};
      return state.outcome();
    }
    auto bytes = files.readFile(file);
    if (!bytes.ok()) return bytes.outcome();
    const auto after = files.fileState(file);
    if (after.ok() && isSameFile(after.value(), state.value()))
      return CfgFile{state.value(), std::move(bytes).value()};
  }
  return Outcome::withText(err::deviceIo, "\"" + file + "\" is being changed all the time.");
}

void addAreas(ui::ListView& list, const std::vector<SceneryArea>& areas) {
  for (const SceneryArea& area : areas) {
    SceneryRow row = rowOfArea(area);
    const bool builtIn = IsBuiltInArea(row);
    const int added = addRow(list, std::move(row));
    if (builtIn) list.setColour(added, builtInColour);
    list.setChecked(added, area.Active);
  }
}

bool asks(App& app, const std::string& text, const std::string& details = "") {
  return app.windows.messageBox({.text = text + "\r\n\r\nDo you want to proceed?",
                                 .icon = ui::BoxIcon::question,
                                 .buttons = ui::BoxButtons::yesNo,
                                 .defaultButton = ui::DefaultButton::no,
                                 .details = details}) == ui::Answer::yes;
}

// A line for each area that the rows don't know of; for a hostile file no more than a user reads.
std::string namesOf(const std::vector<std::string>& unreached) {
  constexpr std::size_t mostLines = 200;
  std::string lines;
  for (std::size_t i = 0; i < std::min(unreached.size(), mostLines); ++i)
    lines += unreached[i] + "\r\n";
  if (unreached.size() > mostLines)
    lines += "and " + std::to_string(unreached.size() - mostLines) + " more\r\n";
  return lines;
}

// How many areas of the file are not listed, and why.
std::string toldUnreached(const App& app) {
  const std::size_t count = app.sceneryDatabase.unreached->size();
  const bool one = count == 1;
  return "\"" + app.sceneryDatabase.file + "\" has " + std::to_string(count) +
         (one ? " area that is" : " areas that are") +
         " not listed here: eleven numbers or more are missing before " + (one ? "it" : "them") +
         ", the number is above 999 or there twice, or there is no title. Saving drops " +
         (one ? "it." : "them.");
}

// Whether what is in the file may be replaced, asking where the rows don't know of it.
bool mayBeReplaced(App& app, bool changed) {
  const auto& unreached = app.sceneryDatabase.unreached;
  const bool drops = unreached && !unreached->empty();
  const std::string names = drops ? namesOf(*unreached) : "";
  if (changed &&
      !asks(app,
            "Another program has changed \"" + app.sceneryDatabase.file +
                "\" since its sceneries were listed here. Saving replaces these changes.",
            names))
    return false;
  return !drops || asks(app, toldUnreached(app), names);
}

void takeOutline(App& app, std::string_view bytes) {
  SceneryCfg cfg = outlineOfSceneryCfg(bytes, app.codePage);
  app.sceneryDatabase.unreached = std::move(cfg.unreached);
  app.CfgCacheSize = cfg.Cache_Size;
  app.CfgCleanOnExit = cfg.Clean_On_Exit;
}

// What the file in force tells a save: which areas the rows don't know of, and the values of
// [General] that the new file carries on. Where it is missing those are the ones that were read
// with the rows, or else the original's.
Outcome lookAtCfg(App& app, const std::optional<FileState>& state) {
  auto& database = app.sceneryDatabase;
  if (!state) {
    database.unreached.emplace();
    if (!app.CfgCacheSize.empty() || !app.CfgCleanOnExit.empty()) return {};
    ProfileReader original(app.platform.files, app.codePage);
    const std::string file = app.FSRoot + originalSceneryCfgFile;
    app.CfgCacheSize = original.read(file, "General", "Cache_Size");
    app.CfgCleanOnExit = original.read(file, "General", "Clean_On_Exit");
    return {};
  }
  const auto now = readCfg(app.files(), database.file);
  if (!now.ok()) return now.outcome();
  takeOutline(app, now.value().bytes);
  return {};
}

// The rows but `without` as a file, walked from the bottom row up.
std::string bytesOfRows(App& app, ui::ListView::RowId without) {
  const auto& list = app.frmMain.lstScenery;
  SceneryCfg cfg{.Cache_Size = app.CfgCacheSize, .Clean_On_Exit = app.CfgCleanOnExit};
  const int count = list.count();
  cfg.areas.reserve(static_cast<std::size_t>(count));
  for (int row = count; row > 0; --row) {
    app.frmMain.lblStatus.setProgress(
        static_cast<int>(std::lround(100.0 * (count - row + 1) / count)));
    if (list.id(row) != without) cfg.areas.push_back(areaOfRow(rowAt(list, row)));
  }
  return sceneryCfgBytes(cfg, app.codePage);
}

// The state of the file, none when it is clearly missing.
Result<std::optional<FileState>> stateOf(const FileSystem& files, const std::string& file) {
  const auto state = files.fileState(file);
  if (state.ok()) return std::optional(state.value());
  if (presenceBy(state.outcome()) == Presence::absent) return std::optional<FileState>();
  return state.outcome();
}

bool isSameFile(const std::optional<FileState>& a, const std::optional<FileState>& b) {
  return a && b ? isSameFile(*a, *b) : a.has_value() == b.has_value();
}

// Replaces the file that was in this state.
Outcome write(App& app, const std::optional<FileState>& state, const std::string& bytes) {
  const std::string& file = app.sceneryDatabase.file;
  const auto now = stateOf(app.files(), file);
  if (!now.ok()) return now.outcome();
  if (!isSameFile(now.value(), state))
    return Outcome::withText(err::pathFileAccess, "Another program has changed it meanwhile.");
  // A mount point without its disk is an empty folder.
  if (!state && !diskIsThere(app.files(), app.FSRoot))
    return Outcome::failure(err::deviceUnavailable, app.FSRoot);
  return changeKeepingOriginal(app.files(), file, app.FSRoot + originalSceneryCfgFile, bytes);
}

Result<SceneryCfgLeave> lookBeforeSave(App& app) {
  auto& database = app.sceneryDatabase;
  if (!database.read || database.file != app.FSRoot + sceneryCfgFile)
    return Outcome::withText(err::pathFileAccess,
                             "It could not be read before. View, Refresh (F5) loads it anew.");
  const auto state = stateOf(app.files(), database.file);
  if (!state.ok()) return state.outcome();
  if (!isSameFile(state.value(), database.was) || !database.unreached)
    if (Outcome looked = lookAtCfg(app, state.value()); !looked.ok()) return looked;
  return SceneryCfgLeave{state.value()};
}

Outcome save(App& app, const SceneryCfgLeave& leave, ui::ListView::RowId without) {
  auto& database = app.sceneryDatabase;
  const std::string bytes = bytesOfRows(app, without);
  if (Outcome written = write(app, leave.state, bytes); !written.ok()) return written;
  // Where somebody else was faster, the cache is to be stale.
  const auto saved = app.files().fileState(database.file);
  database.was.reset();
  if (saved.ok() && saved.value().length == bytes.size()) database.was = saved.value();
  database.unreached.emplace();
  auto& list = app.frmMain.lstScenery;
  if (const int row = without == 0 ? 0 : list.rowOf(without); row != 0) list.remove(row);
  noteSceneriesSaved(app);
  return {};
}

void tellNotSaved(App& app, const Outcome& failure) {
  tellFailure(app, "The scenery database \"" + app.FSRoot + sceneryCfgFile + "\" was not saved.",
              failure);
}

bool saysRequired(const App& app, const std::string& file, const SceneryRow& row) {
  const auto bytes = app.platform.files.readFile(file);
  const SceneryCfg cfg = parseSceneryCfg(bytes.valueOr({}), app.codePage);
  return std::ranges::any_of(cfg.areas, [&row](const SceneryArea& area) {
    return area.Required && area.Title == row.Name && equalsIgnoringCase(area.Local, row.Folder);
  });
}

}  // namespace

bool LoadSceneryCfgList(App& app) {
  auto& form = app.frmMain;
  auto& database = app.sceneryDatabase;
  const unsigned load = ++database.loads;
  form.lstScenery.clear();
  database = {.file = app.FSRoot + sceneryCfgFile, .loads = load};
  form.lstScenery.visible = false;
  form.lblListLoading.visible = true;
  app.windows.yield();
  if (database.loads != load) return false;

  const auto file = readCfg(app.files(), database.file);
  if (file.ok()) {
    SceneryCfg cfg = parseSceneryCfg(file.value().bytes, app.codePage);
    app.CfgCacheSize = cfg.Cache_Size;
    app.CfgCleanOnExit = cfg.Clean_On_Exit;
    addAreas(form.lstScenery, cfg.areas);
    sortByLayer(form.lstScenery);
    database.read = true;
    database.was = file.value().state;
    database.unreached = std::move(cfg.unreached);
    noteSceneriesSaved(app);
  }
  form.lstScenery.visible = true;
  form.lblListLoading.visible = false;
  if (!file.ok()) tellFailure(app, "\"" + database.file + "\" could not be read.", file.outcome());
  return file.ok();
}

void findUnreachedAreas(App& app) {
  const auto file = readCfg(app.files(), app.sceneryDatabase.file);
  if (file.ok() && isSameFile(file.value().state, app.sceneryDatabase.was))
    takeOutline(app, file.value().bytes);
}

void lblSceneryUnreached_Click(App& app) {
  const auto& unreached = app.sceneryDatabase.unreached;
  if (!unreached || unreached->empty()) return;
  app.windows.messageBox({.text = toldUnreached(app),
                          .icon = ui::BoxIcon::information,
                          .details = namesOf(*unreached)});
}

std::optional<SceneryCfgLeave> mayReplaceSceneryCfg(App& app) {
  const auto leave = lookBeforeSave(app);
  if (!leave.ok()) {
    tellNotSaved(app, leave.outcome());
    return std::nullopt;
  }
  const auto& state = leave.value().state;
  const bool changed = state && !isSameFile(state, app.sceneryDatabase.was);
  return mayBeReplaced(app, changed) ? std::optional(leave.value()) : std::nullopt;
}

bool SaveSceneryCfg(App& app, const SceneryCfgLeave& leave, ui::ListView::RowId without) {
  auto& status = app.frmMain.lblStatus;
  status.caption = "Saving FS2002 Scenery Database...";
  const Outcome saved = save(app, leave, without);
  if (saved.ok()) SaveSceneryList(app);
  status.clearProgress();
  if (!saved.ok()) {
    tellNotSaved(app, saved);
    return false;
  }
  if (const int count = app.frmMain.lstScenery.count(); count > SceneryCfg::lastNumber)
    app.windows.messageBox({"The scenery database has " + std::to_string(count) +
                                " areas now. The simulator reads 999 of them.",
                            ui::BoxIcon::exclamation});
  return true;
}

bool SaveSceneryCfg(App& app) {
  const auto leave = mayReplaceSceneryCfg(app);
  return leave && SaveSceneryCfg(app, *leave);
}

bool isRequiredArea(const App& app, const SceneryRow& row) {
  return saysRequired(app, app.FSRoot + sceneryCfgFile, row) ||
         saysRequired(app, app.FSRoot + originalSceneryCfgFile, row);
}

bool sceneriesDiffer(const App& app) {
  const auto& list = app.frmMain.lstScenery;
  const auto& rows = app.sceneryDatabase.rows;
  if (static_cast<std::size_t>(list.count()) != rows.size()) return true;
  for (int row = 1; row <= list.count(); ++row)
    if (rows[static_cast<std::size_t>(row - 1)] != std::pair(list.id(row), list.checked(row)))
      return true;
  return false;
}

void noteSceneriesSaved(App& app) {
  const auto& list = app.frmMain.lstScenery;
  auto& rows = app.sceneryDatabase.rows;
  rows.clear();
  for (int row = 1; row <= list.count(); ++row) rows.emplace_back(list.id(row), list.checked(row));
}

}  // namespace skv
