#include "ui/folder_fields.h"

#include "base/paths.h"
#include "core/disk_queries.h"
#include "ui/dialogs/folder_text.h"

namespace skv {

namespace {

FolderState stateOfSimulator(const FileSystem& files, const std::string& folder) {
  switch (presenceOf(files, folder + simulatorsMark)) {
    case Presence::there:
      return {"FS2002 found here"};
    case Presence::unknown:
      return {"Cannot be looked at", true};
    case Presence::absent:
      break;
  }
  return {folderExists(files, folder) ? "No Scenery.cfg here" : "This folder is not there", true};
}

}  // namespace

FolderState stateOf(const App& app, const FolderField& field) {
  const FileSystem& files = app.platform.files;
  const std::string& typed = (app.frmSettings.*field.box).text;
  if (typed.empty()) return {field.mayBeEmpty ? "Not used" : "No folder yet"};
  const auto folder = folderFromText(app, typed);
  if (!folder.ok()) return {"This " + folder.outcome().description(), true};
  if (!folderExists(files, folder.value().substr(0, 3)))
    return {"There is no drive " + folder.value().substr(0, 2), true};
  if (field.global == &App::FSRoot) return stateOfSimulator(files, folder.value());
  // With its backslash a file would not be found.
  const bool root = folder.value().size() == 3;
  const auto found = files.attributes(root ? folder.value() : withoutBackslash(folder.value()));
  if (found.ok())
    return found.value().folder ? FolderState{"Folder found"}
                                : FolderState{"A file of this name is in the way", true};
  if (presenceBy(found.outcome()) == Presence::unknown) return {"Cannot be looked at", true};
  return {"Will be made"};
}

}  // namespace skv
