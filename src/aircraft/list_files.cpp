#include "aircraft/list_files.h"

#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/stores.h"

namespace skv {

namespace {

constexpr char fieldSeparator = '\x01';

std::string storable(std::string text) {
  for (char& c : text)
    if (c == fieldSeparator || c == '\r' || c == '\n') c = ' ';
  return text;
}

void tellListFailure(App& app, const std::string& what, const std::string& file,
                     const Outcome& failure) {
  app.windows.messageBox(
      {"The list \"" + file + "\" could not be " + what + ".\r\n" + failure.description(),
       ui::BoxIcon::exclamation});
}

// The rows of a list file. What exists and cannot be read is told, and counts as empty.
std::vector<LibraryRow> readRows(App& app, const std::string& file) {
  if (!PathExists(app.files(), file)) return {};
  const auto bytes = app.files().readFile(file);
  if (bytes.ok()) return parseLibraryRows(bytes.value(), app.codePage);
  tellListFailure(app, "read", file, bytes.outcome());
  return {};
}

void saveRows(App& app, const ui::ListView& list, const char* name) {
  const std::string file = app.ListDir + name;
  std::string bytes;
  for (int row = 1; row <= list.count(); ++row)
    bytes += libraryLine({list.text(row), list.subItem(row, 1)}, app.codePage);
  // A file that could not be read shows as an empty list; writing that list would lose the rows in
  // it.
  Outcome saved;
  if (PathExists(app.files(), file)) saved = app.files().readFile(file).outcome();
  if (saved.ok()) saved = app.files().replaceFile(file, bytes);
  if (!saved.ok()) tellListFailure(app, "saved", file, saved);
}

void loadRows(App& app, ui::ListView& list, const char* name) {
  list.clear();
  for (LibraryRow& row : readRows(app, app.ListDir + name))
    list.add(std::move(row.Name), {std::move(row.Folder)});
}

void rename(App& app, ui::ListView& list, bool& cancel, const std::string& newString,
            void (*save)(App&)) {
  const int row = list.selected();
  if (row == 0 || list.text(row) == newString) return;
  cancel = false;
  list.setText(row, storable(newString));
  save(app);
}

}  // namespace

std::vector<LibraryRow> parseLibraryRows(const std::string& bytes, const CodePage& codePage) {
  std::vector<LibraryRow> rows;
  for (std::size_t start = 0; start < bytes.size();) {
    const std::size_t end = std::min(bytes.find('\n', start), bytes.size());
    std::string_view line = std::string_view(bytes).substr(start, end - start);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const auto fields = split(line, fieldSeparator);
    rows.push_back({codePage.decode(fields[0]),
                    fields.size() > 1 ? codePage.decode(fields[1]) : std::string()});
    start = end + 1;
  }
  return rows;
}

std::string libraryLine(const LibraryRow& row, const CodePage& codePage) {
  return codePage.encode(storable(row.Name)) + fieldSeparator +
         codePage.encode(storable(row.Folder)) + "\r\n";
}

void LoadACList(App& app) {
  auto& list = app.frmMain.lstAircraft;
  list.clear();
  list.clearSort();  // the order of the lines is the order of the rows
  const auto rows = readRows(app, app.ListDir + aircraftListFile);
  if (rows.empty()) return;
  const PlaceIndex places(app);
  for (const LibraryRow& row : rows) {
    const int added = list.add(row.Name, {row.Folder});
    list.setSmallIcon(added, placeIcon(places.mask(FolderName(row.Folder))));
  }
}

void LoadPNList(App& app) { loadRows(app, app.frmMain.lstPanel, panelListFile); }
void LoadSNList(App& app) { loadRows(app, app.frmMain.lstSound, soundListFile); }

void SaveACList(App& app) { saveRows(app, app.frmMain.lstAircraft, aircraftListFile); }
void SavePNList(App& app) { saveRows(app, app.frmMain.lstPanel, panelListFile); }
void SaveSNList(App& app) { saveRows(app, app.frmMain.lstSound, soundListFile); }

Outcome appendLibraryRow(App& app, const std::string& file, const LibraryRow& row) {
  std::string bytes;
  if (PathExists(app.files(), file)) {
    auto old = app.files().readFile(file);
    if (!old.ok()) return old.outcome();
    bytes = std::move(old).value();
    if (!bytes.empty() && !bytes.ends_with('\n')) bytes += "\r\n";
  }
  return app.files().replaceFile(file, bytes + libraryLine(row, app.codePage));
}

void lstAircraft_AfterLabelEdit(App& app, bool& cancel, const std::string& newString) {
  rename(app, app.frmMain.lstAircraft, cancel, newString, SaveACList);
}

void lstPanel_AfterLabelEdit(App& app, bool& cancel, const std::string& newString) {
  rename(app, app.frmMain.lstPanel, cancel, newString, SavePNList);
}

void lstSound_AfterLabelEdit(App& app, bool& cancel, const std::string& newString) {
  rename(app, app.frmMain.lstSound, cancel, newString, SaveSNList);
}

void lstAircraft_ColumnClick(App& app, int column) {
  auto& list = app.frmMain.lstAircraft;
  const bool flips = list.sorted() && list.sortOrder() == ui::SortOrder::ascending;
  list.sort(column - 1, flips ? ui::SortOrder::descending : ui::SortOrder::ascending);
}

}  // namespace skv
