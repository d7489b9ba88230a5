#include "tour_addons.h"

#include <algorithm>

#include "base/text.h"
#include "sample/sample_files.h"

namespace skv::tour {

namespace {

namespace fs = std::filesystem;

long filesIn(const fs::path& folder) {
  return std::count_if(fs::recursive_directory_iterator(folder), fs::recursive_directory_iterator(),
                       [](const fs::directory_entry& entry) { return entry.is_regular_file(); });
}

}  // namespace

void AddonRoad::take() {
  user_.press(Qt::Key_F, Qt::ControlModifier);
  assignAndReset();
  importAndDelete();
  compressAndBack();
}

void AddonRoad::selectAircraft(const std::string& name) {
  user_.clickRow("lstAircraft", User::rowOf("lstAircraft", name));
}

void AddonRoad::assignAndReset() {
  user_.stage("The panel of another aircraft, and its own again");
  const fs::path folder = sample_.simulator / "aircraft/corvane_c410/panel";
  const std::string own = sample::readFile(folder / "panel.cfg");
  selectAircraft("Corvane C-410 Swiftlet");
  user_.clickTab("tabAddon", "Panel");
  user_.clickRow("lstPanel", User::rowOf("lstPanel", "Halden H2 Trainer"));
  user_.expectBox("The panel of this variation is used by:", "Yes");
  user_.click("btnAssignPN");
  user_.allAnswered();
  require(sample::readFile(folder / "panel.cfg") == "[fltsim]\r\nalias=halden_h2\\panel\r\n",
          "panel.cfg is " + sample::readFile(folder / "panel.cfg"));
  require(sample::readFile(folder / "panel.preSKV.cfg") == own, "no true backup");
  require(User::text("lblPNStatus") == "Alias: halden_h2\\panel",
          "the status is " + User::text("lblPNStatus"));
  user_.picture("panel-assigned");
  user_.expectBox("Are you sure to reset Panel.cfg to original?", "Yes");
  user_.expectBox("Panel reset to original version!", "OK");
  user_.click("btnPNRestoreOriginal");
  user_.allAnswered();
  require(sample::readFile(folder / "panel.cfg") == own, "not the original");
  user_.clickTab("tabAddon", "Info");
}

void AddonRoad::importAndDelete() {
  user_.stage("A row out of the list, and back by an import");
  const int before = User::rows("lstAircraft");
  selectAircraft("Halden H2 Trainer");
  user_.expectBox("Remove selected Aircraft?", "Yes");
  user_.expect("messageBox", [this](QWidget& box) {
    user_.picture("delete");
    User::pressButton(box, "No");
  });
  user_.click("btnDelAC");
  user_.allAnswered();
  require(User::rows("lstAircraft") == before - 1, "the row is still there");
  require(fs::exists(sample_.simulator / "aircraft/halden_h2/aircraft.cfg"), "the files are gone");
  user_.chooseMenu({"File", "Import", "Aircrafts"});
  require(User::rows("lstAircraft") >= before, "the import did not find it");
  user_.picture("imported");
}

void AddonRoad::compressAndBack() {
  user_.stage("An aircraft of the Hangar into a Package, and back");
  user_.press(Qt::Key_H, Qt::ControlModifier);
  const auto archive = std::ranges::find_if(
      sample_.archives, [](const sample::Download& one) { return !one.title.empty(); });
  selectAircraft(archive->title);
  const std::string place = User::cell("lstAircraft", User::selectedRow("lstAircraft"), 1);
  const fs::path name = split(place, '\\').end()[-2];
  const fs::path folder = sample_.simulator / "SKV-Hangar/Aircraft" / name;
  const long whole = filesIn(folder);
  user_.chooseMenu({"File", "Package SKV Addon"}, "package-menu");
  user_.allAnswered();
  const long thin = filesIn(folder);
  require(thin < whole, "nothing was thinned out");
  user_.picture("compressed");
  user_.chooseMenu({"File", "UnPackage SKV Addon"});
  user_.allAnswered();
  require(filesIn(folder) == whole, "the files are not all back");
  user_.press(Qt::Key_F, Qt::ControlModifier);
}

}  // namespace skv::tour
