#include "pictures/picture_viewer.h"

#include <memory>
#include <string>
#include <utility>

#include "pictures/picture_reading.h"

namespace skv {

namespace {

using Shown = std::shared_ptr<const Pixels>;

// Null when there is no picture. No larger than the screen shows it: that costs less to read.
Shown pictureOf(App& app, const ui::Image& image) {
  if (image.pixels.get() || image.picture == "") return image.pixels;
  const std::string file = image.picture;
  auto read = readPicture(app, file, app.windows.longestScreenSide());
  if (read.ok()) return std::make_shared<const Pixels>(std::move(read).value());
  app.frmMain.lblStatus.notice = file + " cannot be shown. " + read.outcome().description();
  return nullptr;
}

void showInFull(App& app, const ui::Image& image) {
  const Shown picture = pictureOf(app, image);
  auto& viewer = app.frmShowPic;
  if (!picture || viewer.visible || app.ending) return;
  viewer.imgShowPic.pixels = picture;
  app.windows.showModal(viewer, &app.frmMain);
  app.windows.unload(viewer);
  viewer.imgShowPic.pixels = nullptr;
}

}  // namespace

void imgAircraft_Click(App& app) { showInFull(app, app.frmMain.imgAircraft); }
void imgPanel_Click(App& app) { showInFull(app, app.frmMain.imgPanel); }
void imgScenery_Click(App& app) { showInFull(app, app.frmMain.imgScenery); }

void imgShowPic_Click(App& app) { app.windows.hide(app.frmShowPic); }

}  // namespace skv
