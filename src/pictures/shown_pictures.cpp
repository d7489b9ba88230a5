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
  show(app.frmMain.imgPanel, firstPictureIn(app.files(), app.PanelPicDir));
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
  form.mnuPic.caption = &image == &form.imgAircraft ? "Picture of the aircraft"
                        : &image == &form.imgPanel  ? "Picture of the panel"
                                                    : "Picture of the scenery";
  const Outcome takes = takesPicture(app, image);
  const std::string why = takes.ok() ? std::string() : takes.description();
  for (ui::MenuItem* entry : {&form.mnuPicSnap, &form.mnuPicClip, &form.mnuPicFile}) {
    entry->enabled = takes.ok();
    entry->hint = why;
  }
  const bool own = PathExists(app.files(), PicFile(app, image).valueOr({}));
  form.mnuPicDel.enabled = takes.ok() && own;
  form.mnuPicDel.hint = !takes.ok() || own    ? why
                        : image.picture == "" ? "There is no picture to remove"
                                              : notOwnPicture;
}

}  // namespace skv
