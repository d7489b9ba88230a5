#include "aircraft/hangar_transfer.h"
#include "aircraft/aircraft_views.h"

#include "sample/zip_file.h"
#include "support/program_fixture.h"
#include "ui/views.h"

namespace skv {
namespace {

using Tree = std::vector<std::string>;

class HangarTransferTest : public test::ProgramTest {
 protected:
  HangarTransferTest() {
    drive.write("C:\\FS\\aircraft\\plane\\aircraft.cfg", "[fltsim.0]\r\ntitle=Plane\r\n");
    drive.write("C:\\FS\\aircraft\\plane\\panel\\panel.cfg", "old");
    drive.write("C:\\FS\\SKV_AC.lst",
                "Plane\x01"
                "C:\\FS\\aircraft\\plane\\\r\n");
    mnuViewFSAircraft_Click(app);
  }
  void press() {
    app.frmMain.btnHangar.click();
    expectIdle();
    EXPECT_EQ(app.frmMain.lblStatus.caption, "");
  }
  void hangarRow(const std::string& name) {
    drive.write("C:\\Hangar\\SKV_AC.lst", name +
                                              "\x01"
                                              "C:\\Hangar\\aircraft\\" +
                                              name + "\\\r\n");
    mnuViewHangar_Click(app);
  }
  ui::ListView& list = app.frmMain.lstAircraft;
};

TEST_F(HangarTransferTest, ParkingIsACopyAndALine) {
  const Tree simulator = drive.tree("C:\\FS");
  press();
  EXPECT_EQ(drive.tree("C:\\FS"), simulator);
  EXPECT_EQ(drive.tree("C:\\Hangar"),
            (Tree{"Aircraft\\", "Aircraft\\plane\\", "Aircraft\\plane\\aircraft.cfg",
                  "Aircraft\\plane\\panel\\", "Aircraft\\plane\\panel\\panel.cfg", "Main\\",
                  "Main\\plane\\", "Main\\plane\\Effects\\", "Main\\plane\\Gauges\\",
                  "Main\\plane\\Sound\\", "Main\\plane\\Texture\\", "SKV_AC.lst"}));
  const std::string line =
      "Plane\x01"
      "C:\\Hangar\\aircraft\\plane\\\r\n";
  EXPECT_EQ(drive.read("C:\\Hangar\\SKV_AC.lst"), line);
  EXPECT_EQ(list.smallIcon(1), 6) << "in the simulator and in the Hangar";

  drive.write("C:\\FS\\aircraft\\plane\\panel\\panel.cfg", "new");
  press();
  EXPECT_EQ(drive.read("C:\\Hangar\\aircraft\\plane\\panel\\panel.cfg"), "new");
  EXPECT_EQ(drive.read("C:\\Hangar\\SKV_AC.lst"), line) << "no second line";
}

TEST_F(HangarTransferTest, ToTheSimulatorMergesTheSharedFolders) {
  for (const char* file :
       {"aircraft\\h\\aircraft.cfg", "Main\\h\\Gauges\\g.gau", "Main\\h\\Gauges\\old.gau",
        "Main\\h\\Sound\\s.wav", "Main\\h\\Texture\\t.bmp", "Main\\h\\Effects\\e.fx"})
    drive.write(std::string("C:\\Hangar\\") + file, "mine");
  drive.setModified("C:\\Hangar\\Main\\h\\Gauges\\old.gau", {1000, 0});
  drive.write("C:\\FS\\Gauges\\OLD.GAU", "newer");
  hangarRow("h");
  press();
  EXPECT_EQ(drive.read("C:\\FS\\aircraft\\h\\aircraft.cfg"), "mine");
  for (const char* file : {"Gauges\\g.gau", "Sound\\s.wav", "Texture\\t.bmp", "Effects\\e.fx"})
    EXPECT_EQ(drive.read(std::string("C:\\FS\\") + file), "mine") << file;
  EXPECT_EQ(drive.read("C:\\FS\\Gauges\\old.gau"), "newer");
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"),
            "Plane\x01"
            "C:\\FS\\aircraft\\plane\\\r\nh\x01"
            "C:\\FS\\aircraft\\h\\\r\n");
  EXPECT_EQ(list.smallIcon(1), 6);
}

TEST_F(HangarTransferTest, APackageGoesBeforeTheHangarFolder) {
  drive.write("C:\\Hangar\\aircraft\\h\\aircraft.cfg", "thinned");
  sample::writeZip(disk.nativePath("C:\\Packs\\h.zip").value(),
                   {{"Aircraft/aircraft.cfg", "packed"},
                    {"Aircraft/model/m.mdl", "m"},
                    {"Main/Texture/.DS_Store", "hidden, which keeps its folder from a walk"},
                    {"Main/Gauges/g.gau", "g"}},
                   {.backslashes = true});
  drive.write("C:\\Temp\\SKVInstallTemp\\Aircraft\\stray.txt", "of a failed job");
  hangarRow("h");
  press();
  EXPECT_EQ(drive.tree("C:\\FS\\aircraft\\h"), (Tree{"aircraft.cfg", "model\\", "model\\m.mdl"}));
  EXPECT_EQ(drive.read("C:\\FS\\aircraft\\h\\aircraft.cfg"), "packed");
  EXPECT_EQ(drive.read("C:\\FS\\Gauges\\g.gau"), "g");
  EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Tree{});
  EXPECT_EQ(list.smallIcon(1), 8);
  EXPECT_EQ(windows.boxTexts(), Tree{});
  EXPECT_TRUE(drive.exists("C:\\Packs\\h.zip"));
}

TEST_F(HangarTransferTest, APackageWithoutRoomStopsWithTheMessage) {
  sample::writeZip(disk.nativePath("C:\\Packs\\h.zip").value(),
                   {{"Aircraft/aircraft.cfg", "packed"}});
  const std::string before = drive.read("C:\\FS\\SKV_AC.lst");
  hangarRow("h");
  files.freeSpace = 5;
  press();
  EXPECT_EQ(windows.boxTexts(), Tree{"Insufficient Disk Space in \"C:\\Temp\\SKVInstallTemp\\\"!"});
  EXPECT_EQ(drive.tree("C:\\FS\\aircraft\\h"), Tree{});
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"), before);
}

TEST_F(HangarTransferTest, AVanishedFolderGivesAnEmptyOne) {
  hangarRow("gone");
  press();
  EXPECT_EQ(drive.tree("C:\\FS\\aircraft\\gone"), Tree{});
  EXPECT_TRUE(drive.exists("C:\\FS\\aircraft\\gone"));
  EXPECT_EQ(list.smallIcon(1), 2);
}

TEST_F(HangarTransferTest, AFolderThatCannotBeMadeIsTold) {
  app.HangarDir = "C:\\no\\parent\\";
  press();
  EXPECT_EQ(windows.boxes.size(), 1U);
  EXPECT_FALSE(drive.exists("C:\\no"));
}

TEST_F(HangarTransferTest, OddRowsDoNothing) {
  const Tree before = drive.tree("C:\\");
  for (const char* folder : {"", "no backslash", "C:\\FS\\aircraft\\..\\", "\\"}) {
    list.clear();
    press();
    list.add("odd", {folder});
    press();
    EXPECT_EQ(drive.tree("C:\\"), before) << folder;
  }
}

TEST_F(HangarTransferTest, ARowWithoutAnIconAsksTheDiskAndMayGoMeanwhile) {
  list.clear();
  list.add("Plane", {"C:\\FS\\aircraft\\plane\\"});
  press();
  EXPECT_EQ(list.smallIcon(1), 6);
  windows.onYield = [this] {
    if (list.count() > 0) list.remove(1);
  };
  press();
  EXPECT_EQ(list.count(), 0);
}

TEST_F(HangarTransferTest, AnyFailingCallKeepsTheSource) {
  const Tree source = drive.tree("C:\\FS\\aircraft\\plane");
  for (int call = 1;; ++call) {
    drive.clear("C:\\Hangar");
    files.failAt(call, err::diskFull);
    press();
    const bool failed = files.heal();
    EXPECT_EQ(drive.tree("C:\\FS\\aircraft\\plane"), source) << call;
    EXPECT_EQ(drive.read("C:\\FS\\aircraft\\plane\\panel\\panel.cfg"), "old");
    if (!failed) break;
  }
}

}  // namespace
}  // namespace skv
