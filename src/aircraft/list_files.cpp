#include "aircraft/list_files.h"

#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/list_store.h"
#include "core/messages.h"
#include "core/stores.h"

namespace skv {

namespace {

struct Library {
  ui::ListView ui::FrmMain::*list;
  ListSource App::*source;
  const char* file;
};

constexpr Library aircraftLibrary{&ui::FrmMain::lstAircraft, &App::aircraftSource,
                                  aircraftListFile};
constexpr Library panelLibrary{&ui::FrmMain::lstPanel, &App::panelSource, panelListFile};
constexpr Library soundLibrary{&ui::FrmMain::lstSound, &App::soundSource, soundListFile};

// What of a row the file does not hold is told, and a name is shown from now on as it is stored. A
// row whose folder cannot be stored would lead nowhere: it stays on screen, and out of the file.
std::string storedRows(App& app, ui::ListView& list, std::string& leftOut) {
  std::string bytes;
  for (int row = 1; row <= list.count(); ++row) {
    const LibraryRow stored{list.text(row), list.subItem(row, 1)};
    if (const std::string lacking = app.codePage.lacking(stored.Folder); !lacking.empty()) {
      leftOut += (leftOut.empty() ? "" : "\r\n") + notStorable(stored.Folder, lacking);
      continue;
    }
    bytes += libraryLine(stored, app.codePage);
    if (const std::string name = app.codePage.decode(app.codePage.encode(inOneField(stored.Name)));
        name != stored.Name)
      list.setText(row, name);
  }
  return bytes;
}

bool save(App& app, const Library& library) {
  const std::string file = app.ListDir + library.file;
  std::string leftOut;
  std::string bytes = storedRows(app, app.frmMain.*library.list, leftOut);
  const Outcome saved = saveListFile(app, app.*library.source, file, std::move(bytes));
  if (!saved.ok())
    tellListFailure(app, "saved", file, saved);
  else if (!leftOut.empty())
    tellListFailure(app, "saved whole", file, Outcome::withText(err::pathFileAccess, leftOut));
  return saved.ok();
}

// The rows of the library's file, of which the list is empty by now. What cannot be read is told,
// but for a folder that is not there.
std::vector<LibraryRow> load(App& app, const Library& library) {
  const std::string file = app.ListDir + library.file;
  (app.frmMain.*library.list).clear();
  app.*library.source = {file, std::nullopt};
  if (app.ListDir.empty()) return {};
  const auto bytes = loadListFile(app, app.*library.source, file);
  if (bytes.ok()) return parseLibraryRows(bytes.value(), app.codePage);
  // Of a folder that is away the list itself tells, and not each of the three once more.
  if (presenceOf(app.files(), app.ListDir) == Presence::there)
    tellListFailure(app, "read", file, bytes.outcome());
  return {};
}

void loadPlain(App& app, const Library& library) {
  for (LibraryRow& row : load(app, library))
    (app.frmMain.*library.list).add(std::move(row.Name), {std::move(row.Folder)});
}

// A name that cannot be stored as it was typed is refused. One that could not be saved goes back,
// so that the user can enter it again.
void rename(App& app, const Library& library, bool& cancel, const std::string& newString) {
  auto& list = app.frmMain.*library.list;
  const int row = list.selected();
  const std::string name = inOneField(composed(newString));
  if (row == 0 || list.text(row) == name) return;
  if (const std::string lacking = app.codePage.lacking(name); !lacking.empty()) {
    app.windows.messageBox({notStorable(name, lacking), ui::BoxIcon::exclamation});
    return;
  }
  cancel = false;
  const std::string old = list.text(row);
  const ui::ListView::RowId id = list.id(row);
  list.setText(row, name);
  if (save(app, library)) return;
  cancel = true;
  if (const int now = list.rowOf(id); now != 0) list.setText(now, old);
}

}  // namespace

std::vector<LibraryRow> parseLibraryRows(const std::string& bytes, const CodePage& codePage) {
  std::vector<LibraryRow> rows;
  for (const auto& fields : listLines(bytes))
    rows.push_back({codePage.decode(fields[0]),
                    fields.size() > 1 ? codePage.decode(fields[1]) : std::string()});
  return rows;
}

std::string libraryLine(const LibraryRow& row, const CodePage& codePage) {
  return codePage.encode(inOneField(row.Name)) + fieldSeparator +
         codePage.encode(inOneField(row.Folder)) + "\r\n";
}

void LoadACList(App& app) {
  auto& list = app.frmMain.lstAircraft;
  const auto rows = load(app, aircraftLibrary);
  if (rows.empty()) return;
  const PlaceIndex places(app);
  for (const LibraryRow& row : rows) {
    const int added = list.add(row.Name, {row.Folder});
    list.setSmallIcon(added, placeIcon(places.mask(FolderName(row.Folder))));
  }
  // The user's order holds in either view; without one, the order of the lines is that of the rows.
  if (list.sorted()) list.sort(list.sortKey(), list.sortOrder());
}

void LoadPNList(App& app) { loadPlain(app, panelLibrary); }
void LoadSNList(App& app) { loadPlain(app, soundLibrary); }

bool SaveACList(App& app) { return save(app, aircraftLibrary); }
bool SavePNList(App& app) { return save(app, panelLibrary); }
bool SaveSNList(App& app) { return save(app, soundLibrary); }

Result<bool> listInLibrary(App& app, const std::string& file, const LibraryRow& row) {
  auto old = readListFile(app.files(), file);
  if (!old.ok()) return old.outcome();
  std::string bytes = std::move(old).value();
  for (const LibraryRow& each : parseLibraryRows(bytes, app.codePage))
    if (equalsIgnoringCase(withBackslash(each.Folder), row.Folder)) return false;
  if (const std::string lacking = app.codePage.lacking(row.Folder); !lacking.empty())
    return Outcome::withText(err::badFileName, notStorable(row.Folder, lacking));
  if (!bytes.empty() && !bytes.ends_with('\n')) bytes += "\r\n";
  Outcome written = app.files().replaceFile(file, bytes + libraryLine(row, app.codePage));
  if (!written.ok()) return written;
  return true;
}

void lstAircraft_AfterLabelEdit(App& app, bool& cancel, const std::string& newString) {
  rename(app, aircraftLibrary, cancel, newString);
}

void lstPanel_AfterLabelEdit(App& app, bool& cancel, const std::string& newString) {
  rename(app, panelLibrary, cancel, newString);
}

void lstSound_AfterLabelEdit(App& app, bool& cancel, const std::string& newString) {
  rename(app, soundLibrary, cancel, newString);
}

void lstAircraft_ColumnClick(App& app, int column) {
  auto& list = app.frmMain.lstAircraft;
  const bool flips = list.sorted() && list.sortOrder() == ui::SortOrder::ascending;
  list.sort(column - 1, flips ? ui::SortOrder::descending : ui::SortOrder::ascending);
}

}  // namespace skv
