// The library's list files: SKV_AC.lst, SKV_PN.lst and SKV_SN.lst of each aircraft view. One line
// for each row, the two fields separated by the character of code 1 (shown here as a bar):
//
//   My Aircraft|C:\FS2002\aircraft\myplane\ CR LF
//
// The files are the record of the lists: every change is saved when it is made.
#pragma once

#include <string>
#include <vector>

#include "core/app.h"

namespace skv {

struct LibraryRow {
  std::string Name;
  std::string Folder;  // with trailing backslash, unless a file was edited by hand
};

// A line without the separator has an empty Folder; a third field is dropped. Lines may end in CR
// LF or LF.
std::vector<LibraryRow> parseLibraryRows(const std::string& bytes, const CodePage& codePage);
// One line with CR LF. What would break the format (code 1, line ends) becomes a blank.
std::string libraryLine(const LibraryRow& row, const CodePage& codePage);

// Replace the rows of the list by those of its file in ListDir. A missing file is an empty list;
// one that cannot be read is told in a box. Who shows them afterwards is reloadAircraftList.
void LoadACList(App& app);
void LoadPNList(App& app);
void LoadSNList(App& app);

// Rewrite the file in ListDir from the rows, in the order in which they stand. False when it could
// not be saved, which is told in a box; the rows and the old file stay. Only the content that the
// list was loaded from, or saved as, is written over.
bool SaveACList(App& app);
bool SavePNList(App& app);
bool SaveSNList(App& app);

// Adds one line to a list file, which is made when it is clearly missing, unless it has one for the
// folder. Answers whether it did. Fails for a folder that the code page cannot store.
Result<bool> listInLibrary(App& app, const std::string& file, const LibraryRow& row);

void lstAircraft_AfterLabelEdit(App& app, bool& cancel, const std::string& newString);
void lstPanel_AfterLabelEdit(App& app, bool& cancel, const std::string& newString);
void lstSound_AfterLabelEdit(App& app, bool& cancel, const std::string& newString);

// `column` counts from 1. The first click on any column sorts ascending, each further one flips the
// order.
void lstAircraft_ColumnClick(App& app, int column);

}  // namespace skv
