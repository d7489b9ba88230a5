#include "pictures/picture_viewer.h"

#include <memory>
#include <utility>

#include "core/long_operation.h"

namespace skv {

namespace {

using Shown = std::shared_ptr<const Pixels>;

// Null when there is no picture. No larger than the screen shows it: that costs less to read.
Shown pictureOf(App& app, const ui::Image& image) {
  if (image.pixels.get() || image.picture == "") return image.pixels;
  const HourglassPointer busy(app);
  auto read = app.platform.pictures.read(image.picture.get(), app.windows.longestScreenSide());
  if (read.ok()) return std::make_shared<const Pixels>(std::move(read).value());
  app.frmMain.lblStatus.notice =
      image.picture.get() + " cannot be shown. " + read.outcome().description();
  return nullptr;
}

void showInFull(App& app, const ui::Image& image) {
  const Shown picture = pictureOf(app, image);
  auto& viewer = app.frmShowPic;
  if (!picture || viewer.visible) return;
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
