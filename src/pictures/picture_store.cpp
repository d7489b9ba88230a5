#include "pictures/picture_store.h"

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/stores.h"
#include "pictures/cdib_section.h"
#include "pictures/jpeg_file.h"
#include "pictures/picture_lookup.h"

namespace skv {

namespace {

constexpr int jpegQuality = 70;

const std::string& folderOf(const App& app, const ui::Image& image) {
  if (&image == &app.frmMain.imgAircraft) return app.TexDir;
  return &image == &app.frmMain.imgPanel ? app.PanelPicDir : image.tag.get();
}

// The store that a panel's folder lies in: the aircraft, for an alias all aircraft of the view,
// else the folder of the library row that shows.
std::string storeOfPanel(const App& app, const std::string& folder) {
  const auto& list = app.frmMain.lstPanel;
  if (isOrHolds(app.infoSource.folder, folder)) return app.infoSource.folder;
  if (isOrHolds(app.ACRoot, folder) || list.selected() == 0) return app.ACRoot;
  return withBackslash(list.subItem(list.selected(), 1));
}

std::string storeOfScenery(const App& app, const std::string& folder) {
  // A folder that the user has opened himself, wherever it is.
  if (equalsIgnoringCase(folder, withBackslash(app.frmMain.ftreeScenery.folder.get())))
    return folder;
  const std::string library = sceneryRootOf(withBackslash(app.SceneryLib));
  return isOrHolds(library, folder) ? library : app.FSRoot;
}

std::string storeOf(const App& app, const ui::Image& image, const std::string& folder) {
  if (&image == &app.frmMain.imgAircraft) return app.infoSource.folder;
  return &image == &app.frmMain.imgPanel ? storeOfPanel(app, folder) : storeOfScenery(app, folder);
}

}  // namespace

ui::Image& pictureInUse(App& app) {
  auto& form = app.frmMain;
  const bool sceneries = form.frameScenery.visible;
  if (app.PicTarget && (app.PicTarget == &form.imgScenery) == sceneries) return *app.PicTarget;
  return sceneries ? form.imgScenery : form.imgAircraft;
}

Result<std::string> PicFile(const App& app, const ui::Image& image) {
  const std::string& folder = folderOf(app, image);
  if (folder.empty()) return Outcome::failure(err::pathNotFound);
  return folder + ownPictureName;
}

Outcome picFileMayChange(const App& app, const ui::Image& image) {
  const std::string& folder = folderOf(app, image);
  return mayHoldOwnFile(app, {folder, storeOf(app, image, folder)});
}

Outcome takesPicture(const App& app, const ui::Image& image) {
  const std::string& folder = folderOf(app, image);
  if (folder.empty()) return Outcome::withText(err::pathNotFound, "No add-on is selected");
  if (Outcome may = picFileMayChange(app, image); !may.ok()) return may;
  if (folderExists(app.platform.files, folder)) return {};
  return Outcome::withText(err::pathNotFound, "There is no folder \"" + folder + "\"");
}

bool isSeen(const App& app, const ui::Image& image) {
  const auto& form = app.frmMain;
  if (form.frameScenery.visible || &image == &form.imgScenery)
    return form.frameScenery.visible && &image == &form.imgScenery;
  return &image == &form.imgAircraft || form.framePanel.visible;
}

Outcome savePicture(App& app, const ui::Image& image, const Pixels& picture) {
  const auto file = PicFile(app, image);
  if (!file.ok()) return file.outcome();
  if (Outcome may = picFileMayChange(app, image); !may.ok()) return may;
  cDIBSection dib;
  dib.CreateFromPicture({picture.width, picture.height, picture.rowBytes(), picture.rows});
  return SaveJPEGFile(app.files(), dib, file.value(), jpegQuality);
}

Outcome deletePicture(FileSystem& files, const std::string& file) {
  const auto found = files.attributes(file);
  if (!found.ok()) return found.outcome();
  if (!found.value().readOnly) return files.deleteFile(file);
  Attributes writable = found.value();
  writable.readOnly = false;
  if (Outcome cleared = files.setAttributes(file, writable); !cleared.ok()) return cleared;
  Outcome deleted = files.deleteFile(file);
  if (!deleted.ok()) files.setAttributes(file, found.value()).skipped();
  return deleted;
}

}  // namespace skv
