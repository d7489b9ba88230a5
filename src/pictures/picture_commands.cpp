#include "pictures/picture_commands.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "core/disk_queries.h"
#include "core/folder_guard.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "pictures/picture_reading.h"
#include "pictures/picture_store.h"
#include "pictures/shown_pictures.h"

namespace skv {

namespace {

constexpr const char* simulatorTitle = "Microsoft Flight Simulator 2002";
// The event loop's turns, by which the program paces itself.
constexpr int yieldsBeforeCapture = 300;
constexpr int yieldsBeforeFill = 1000;

// What a snapshot leaves out at the edges of the window, in pixels.
constexpr int marginAcross = 10, marginDown = 45;

constexpr const char* instructions =
    "This will take a Snapshot of your FS2002 screen.\r\n"
    "\r\n"
    "1. Set the FS2002 Screen to windowed mode\r\n"
    "     (NOT Full Screen!).\r\n"
    "2. Set the FS2002 Screen content.\r\n"
    "3. DO NOT mimimize the FS2002 Window! Just switch to SKV.\r\n"
    "4. Click \"OK\" and do NOT touch your computer\r\n"
    "     computer until the SKV window is activated again.\r\n";

void openMenu(App& app, ui::Image& image, ui::MouseButton button) {
  if (button != ui::MouseButton::right) return;
  app.PicTarget = &image;
  showPictureCommands(app);
  app.windows.popUp(app.frmMain.mnuPic);
}

// Fills the tabs of the variation anew, as a click on it does.
void fillAgain(App& app) {
  auto& versions = app.frmMain.lstACVersions;
  const auto shown = versions.selected() == 0 ? 0 : versions.id(versions.selected());
  app.windows.yieldTimes(yieldsBeforeFill);
  const int row = versions.rowOf(shown);
  if (row == 0 || app.ending) return;  // whoever took the row away has filled the tabs
  versions.select(row);
  // Edits in the boxes keep the click from it.
  showAircraftPicture(app);
  ui::raise(versions.click);
}

// Whether the picture that is there may go: one of the user's own is asked about. What cannot be
// written is told of by whoever tries.
bool mayReplace(App& app, const ui::Image& image) {
  const auto file = PicFile(app, image);
  if (!file.ok() || !picFileMayChange(app, image).ok() ||
      presenceOf(app.files(), file.value()) == Presence::absent)
    return true;
  const bool shared =
      &image == &app.frmMain.imgPanel && !isOrHolds(app.infoSource.folder, app.PanelPicDir);
  return app.windows.messageBox(
             {.text = "Replace your picture \"" + file.value() + "\" by the new one?" +
                      (shared ? "\r\n\r\nAll aircraft that use this panel show it." : ""),
              .icon = ui::BoxIcon::question,
              .buttons = ui::BoxButtons::yesNo,
              .defaultButton = ui::DefaultButton::no}) == ui::Answer::yes;
}

// Shows the picture and stores it. `reporting`: tells of an image that belongs to no add-on as of
// an error of its own.
void give(App& app, ui::Image& image, Pixels picture, bool reporting) {
  if (!mayReplace(app, image) || app.ending) return;
  const LongOperation busy(app);
  const auto shown = std::make_shared<const Pixels>(std::move(picture));
  image.pixels = shown;
  if (&image == &app.frmMain.imgAircraft) app.frmMain.lblACSpecimen.visible = false;
  const auto file = PicFile(app, image);
  if (reporting && ReportError(app, file.outcome())) return;
  const Outcome saved = savePicture(app, image, *shown);
  if (!saved.ok())
    app.windows.messageBox(
        {.text = "Failed to save the picture to the file: '" + file.valueOr({}) + "'",
         .icon = ui::BoxIcon::exclamation,
         .details = saved.description()});
  if (&image == &app.frmMain.imgAircraft)
    fillAgain(app);
  else if (saved.ok())
    showPictureOf(app, image);
  if (saved.ok()) app.frmMain.lblStatus.notice = "Picture saved as " + file.value();
}

bool belongsToAddon(const App& app, const ui::Image& image) { return PicFile(app, image).ok(); }

// Without the margins. Empty when nothing would be left.
Pixels cut(const Pixels& window) {
  Pixels part{window.width - 2 * marginAcross, window.height - 2 * marginDown, {}};
  if (part.width < 1 || part.height < 1) return {};
  const std::size_t from = window.rowBytes(), to = part.rowBytes();
  part.rows.resize(to * static_cast<std::size_t>(part.height));
  for (int y = 0; y < part.height; ++y)
    std::copy_n(window.rows.begin() +
                    static_cast<std::ptrdiff_t>(from * static_cast<std::size_t>(y + marginDown) +
                                                std::size_t{marginAcross} * 3),
                static_cast<std::size_t>(part.width) * 3,
                part.rows.begin() + static_cast<std::ptrdiff_t>(to * static_cast<std::size_t>(y)));
  return part;
}

// The simulator's window as it is on screen.
Result<Pixels> captureSimulator(App& app) {
  Screen& screen = app.platform.screen;
  if (Outcome active = screen.activate(simulatorTitle, true); !active.ok()) return active;
  app.windows.yieldTimes(yieldsBeforeCapture);
  // It may have been closed meanwhile, and then another window is the active one.
  if (Outcome active = screen.activate(simulatorTitle, false); !active.ok()) return active;
  return screen.captureActiveWindow();
}

// Whether the image's own file is a picture that can be deleted; tells of one that is not.
bool mayDelete(App& app, const ui::Image& image) {
  const auto file = PicFile(app, image);
  const auto found = file.ok() ? app.files().attributes(file.value()) : file.outcome();
  if (!found.ok() && presenceBy(found.outcome()) == Presence::unknown) {
    ReportError(app, found.outcome());
    return false;
  }
  if (found.ok() && !found.value().folder && picFileMayChange(app, image).ok()) return true;
  app.windows.messageBox({notOwnPicture, ui::BoxIcon::information});
  return false;
}

}  // namespace

void imgAircraft_MouseDown(App& app, ui::MouseButton button) {
  openMenu(app, app.frmMain.imgAircraft, button);
}
void imgPanel_MouseDown(App& app, ui::MouseButton button) {
  openMenu(app, app.frmMain.imgPanel, button);
}
void imgScenery_MouseDown(App& app, ui::MouseButton button) {
  openMenu(app, app.frmMain.imgScenery, button);
}
void lstACVersions_MouseDown(App& app, ui::MouseButton button) {
  openMenu(app, app.frmMain.imgPanel, button);
}

void mnuPic_Closed(App& app) {
  if (app.PicTarget && !isSeen(app, *app.PicTarget)) app.PicTarget = nullptr;
  showPictureCommands(app);
}

void mnuPicSnap_Click(App& app) {
  ui::Image& image = pictureInUse(app);
  if (!belongsToAddon(app, image)) return;
  app.windows.messageBox({instructions, ui::BoxIcon::information});
  const LongOperation busy(app);
  auto window = captureSimulator(app);
  if (app.ending) return;
  app.windows.show(app.frmMain, nullptr);
  if (!window.ok()) {
    app.windows.messageBox({.text = "Cannot activate FS2002 Window!",
                            .icon = ui::BoxIcon::exclamation,
                            .details = window.outcome().description()});
    return;
  }
  Pixels picture = cut(window.value());
  if (picture.rows.empty()) {
    app.windows.messageBox({"The FS2002 window is too small for a snapshot: it has " +
                                std::to_string(window.value().width) + " x " +
                                std::to_string(window.value().height) + " pixels.",
                            ui::BoxIcon::exclamation});
    return;
  }
  give(app, image, std::move(picture), true);
}

void mnuPicClip_Click(App& app) {
  ui::Image& image = pictureInUse(app);
  if (!belongsToAddon(app, image)) return;
  auto picture = app.platform.clipboard.picture();
  if (!picture.ok()) {
    app.windows.messageBox(
        {"No valid picture in Clipboard!", ui::BoxIcon::none, ui::BoxButtons::ok, "FD Skyvault"});
    return;
  }
  give(app, image, std::move(picture).value(), true);
}

void mnuPicFile_Click(App& app) {
  ui::Image& image = pictureInUse(app);
  if (!belongsToAddon(app, image)) return;
  if (app.LastPicDir.empty()) app.LastPicDir = app.platform.environment.home;
  const auto picked =
      app.windows.openFile({.initialFolder = app.LastPicDir,
                            .filter = "Pictures|*.jpg;*.jpeg;*.png;*.webp;*.gif;*.bmp;*.wmf"});
  if (picked.outcome().number() == err::cancelled || ReportError(app, picked.outcome())) return;
  app.LastPicDir = picked.value().initialFolder;
  takePictureFile(app, image, picked.value().path);
}

void takePictureFile(App& app, ui::Image& image, const std::string& path) {
  if (!belongsToAddon(app, image)) {
    app.frmMain.lblStatus.notice = "There is no add-on to give this picture to";
    return;
  }
  const LongOperation busy(app);
  auto picture = readPicture(app, path);
  if (app.ending) return;
  if (!ReportError(app, picture.outcome())) give(app, image, std::move(picture).value(), false);
}

void mnuPicDel_Click(App& app) {
  ui::Image& image = pictureInUse(app);
  if (!mayDelete(app, image)) return;
  const std::string file = PicFile(app, image).valueOr({});
  if (app.windows.messageBox({.text = "Delete this picture?",
                              .icon = ui::BoxIcon::question,
                              .buttons = ui::BoxButtons::yesNo,
                              .defaultButton = ui::DefaultButton::no}) != ui::Answer::yes)
    return;
  if (ReportError(app, deletePicture(app.files(), file))) return;
  showPictureOf(app, image);
  ui::raise(app.frmMain.lstACVersions.click);
}

}  // namespace skv
