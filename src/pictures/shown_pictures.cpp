#include "pictures/shown_pictures.h"

#include "core/disk_queries.h"
#include "core/program_folder.h"
#include "pictures/picture_lookup.h"
#include "pictures/picture_store.h"

namespace skv {

namespace {

void show(ui::Image& image, const std::string& file) {
  image.visible = true;
  image.pixels = nullptr;
  image.picture = file;
  // The file may be another one of the same name.
  image.changed();
}

}  // namespace

void showAircraftPicture(App& app) {
  auto& form = app.frmMain;
  AircraftPicture found;
  if (!app.infoSource.values.empty())
    found = findAircraftPicture(app.files(), {.TexDir = app.TexDir,
                                              .Folder = app.infoSource.folder,
                                              .specimens = shippedWith(app, "ACPics\\"),
                                              .type = form.txtUIType.text});
  show(form.imgAircraft, found.file);
  form.lblACSpecimen.visible = found.specimen;
  showPictureCommands(app);
}

void showPanelPicture(App& app) {
  show(app.frmMain.imgPanel, panelPictureIn(app.files(), app.PanelPicDir));
  showPictureCommands(app);
}

void showLibraryPanelPicture(App& app) {
  show(app.frmMain.imgPanel, firstJpegIn(app.files(), app.PanelPicDir));
  showPictureCommands(app);
}

void showSceneryPicture(App& app) {
  auto& image = app.frmMain.imgScenery;
  show(image, ownPictureIn(app.files(), image.tag));
  showPictureCommands(app);
}

void showPictureOf(App& app, const ui::Image& image) {
  if (&image == &app.frmMain.imgAircraft)
    showAircraftPicture(app);
  else if (&image == &app.frmMain.imgPanel)
    showPanelPicture(app);
  else
    showSceneryPicture(app);
}

void clearAircraftPictures(App& app) {
  auto& form = app.frmMain;
  show(form.imgAircraft, "");
  show(form.imgPanel, "");
  form.lblACSpecimen.visible = false;
}

void showPictureCommands(App& app) {
  auto& form = app.frmMain;
  const ui::Image& image = pictureInUse(app);
  const bool takes = takesPicture(app, image);
  for (ui::MenuItem* entry : {&form.mnuPicSnap, &form.mnuPicClip, &form.mnuPicFile})
    entry->enabled = takes;
  form.mnuPicDel.enabled = takes && PathExists(app.files(), PicFile(app, image).valueOr({}));
}

}  // namespace skv
