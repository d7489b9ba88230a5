#include "aircraft/hangar_transfer.h"
#include "aircraft/aircraft_views.h"
#include "core/staged_folder.h"

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
  drive.remove("C:\\FS\\Effects");
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
  EXPECT_FALSE(drive.exists("C:\\FS\\aircraft\\h"));
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"), before);
  EXPECT_EQ(files.count("freeBytes", "C:\\FS"), 0);
  files.freeSpace = 6;
  press();
  EXPECT_EQ(files.count("freeBytes", "C:\\FS"), 1) << "the simulator's disk has to hold it, too";
  EXPECT_TRUE(drive.exists("C:\\FS\\aircraft\\h\\aircraft.cfg"));
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
  for (const char* folder :
       {"", "no backslash", "C:/FS/aircraft/plane\\", "C:\\FS\\aircraft\\..\\", "\\"}) {
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

// Both directions (true is to the Hangar), from a clean start each time.
class InterruptedTransferTest : public HangarTransferTest,
                                public ::testing::WithParamInterface<bool> {
 protected:
  InterruptedTransferTest() {
    const bool toHangar = GetParam();
    source = toHangar ? "C:\\FS\\aircraft\\plane" : "C:\\Hangar\\aircraft\\h";
    target = toHangar ? "C:\\Hangar\\aircraft\\plane" : "C:\\FS\\aircraft\\h";
    listFile = toHangar ? "C:\\Hangar\\SKV_AC.lst" : "C:\\FS\\SKV_AC.lst";
    stage = target.substr(0, target.rfind('\\')) + "\\~SKVUnfinished";
    line = (toHangar ? "Plane\x01" : "h\x01") + target + "\\\r\n";
    start();
  }
  void start() {
    drive.clear("C:\\Hangar");
    drive.remove("C:\\FS\\aircraft\\h");
    drive.clear("C:\\FS\\Gauges");
    drive.write("C:\\Hangar\\SKV_AC.lst", others);
    if (!GetParam()) {
      drive.write("C:\\Hangar\\aircraft\\h\\aircraft.cfg", "h");
      drive.write("C:\\Hangar\\aircraft\\h\\model\\h.mdl", "model");
      drive.write("C:\\Hangar\\Main\\h\\Gauges\\g.gau", "gauge");
      drive.write("C:\\FS\\SKV_AC.lst", others);
      hangarRow("h");
    } else {
      mnuViewFSAircraft_Click(app);
    }
    before = list.smallIcon(1);
    windows.boxes.clear();
    app.frmMain.lblStatus.notice = "";
  }
  bool whole() { return drive.tree(target) == drive.tree(source) && drive.exists(target); }
  void expectCopied() {
    EXPECT_EQ(drive.tree(target), drive.tree(source));
    for (const std::string& name : drive.tree(source))
      EXPECT_EQ(drive.read(target + "\\" + name), drive.read(source + "\\" + name));
  }
  void expectDone(const std::string& what) {
    SCOPED_TRACE(what);
    expectCopied();
    EXPECT_EQ(drive.read(listFile), others + line);
    EXPECT_EQ(list.smallIcon(1), 6);
    EXPECT_EQ(drive.read("C:\\FS\\Gauges\\g.gau"), GetParam() ? "" : "gauge");
    for (const char* root : {"C:\\FS\\aircraft", "C:\\Hangar\\aircraft"})
      EXPECT_FALSE(drive.exists(root + std::string("\\~SKVUnfinished")));
    EXPECT_NE(app.frmMain.lblStatus.notice, "");
  }
  // The first line of each list.
  const std::string others =
      "Plane\x01"
      "C:\\FS\\aircraft\\plane\\\r\nOther\x01"
      "C:\\Hangar\\aircraft\\other\\\r\n";
  std::string source, target, stage, listFile, line;
  int before = 0;
};

TEST_P(InterruptedTransferTest, WhatFailsIsToldMarksNothingAndIsFinishedByTheNext) {
  int struck = 0;
  for (const bool reads : {false, true}) {
    for (int call = 1; call < 300; ++call) {
      SCOPED_TRACE((reads ? "read " : "write ") + std::to_string(call));
      start();
      const Tree kept = drive.tree(source);
      if (reads)
        files.failReadAt(call, err::deviceIo);
      else
        files.failAt(call, err::diskFull);
      press();
      if (!files.heal()) break;
      ++struck;
      EXPECT_EQ(drive.tree(source), kept);
      if (!windows.boxes.empty()) {
        EXPECT_EQ(drive.read(listFile), others);
        EXPECT_EQ(list.smallIcon(1), before);
        EXPECT_EQ(app.frmMain.lblStatus.notice, "");
        EXPECT_TRUE(!drive.exists(target) || whole()) << "no half aircraft under its name";
        EXPECT_TRUE(reads || !drive.exists(stage)) << "nor under ours";
      } else {
        expectDone("told as a success");
      }
      press();
      expectDone("the second try");
    }
  }
  EXPECT_GT(struck, 10);
}

TEST_P(InterruptedTransferTest, WhatIsKilledIsFinishedByTheNext) {
  for (int call = 1; call < 100; ++call) {
    start();
    files.killAt(call);
    bool killed = false;
    try {
      press();
    } catch (const test::Killed&) {
      killed = true;
    }
    files.heal();
    if (!killed) break;
    EXPECT_TRUE(!drive.exists(target) || whole()) << call;
    drive.write(stage + "\\half", "what a process that is gone cannot take away");
    if (call % 2 == 0) {
      clearUnfinishedFolders(app);
      EXPECT_FALSE(drive.exists(stage));
    }
    press();
    expectDone("after a kill at " + std::to_string(call));
  }
}

TEST_P(InterruptedTransferTest, APowerCutLeavesNoLineForWhatIsNotOnTheDisk) {
  using Lost = test::FaultyFileSystem::Lost;
  for (const Lost lost : {Lost::contents, Lost::files}) {
    for (int call = 1; call < 100; ++call) {
      SCOPED_TRACE(call);
      start();
      files.killAt(call);
      bool killed = false;
      try {
        press();
      } catch (const test::Killed&) {
        killed = true;
      }
      files.heal();
      files.powerCut(lost);
      if (drive.exists(target)) expectCopied();
      press();
      expectDone("the second try");
      if (!killed) break;
    }
  }
}

TEST_P(InterruptedTransferTest, WhatCannotBeReadIsNotTakenForMissing) {
  const auto refused = [this](const char* call, const std::string& path) {
    start();
    files.failWhen(call, path, err::deviceIo);
    press();
    EXPECT_TRUE(files.heal()) << call << path;
    EXPECT_EQ(windows.boxes.size(), 1U) << call << path;
    EXPECT_EQ(drive.read(listFile), others) << call << path;
    EXPECT_EQ(list.smallIcon(1), before) << call << path;
    EXPECT_EQ(app.frmMain.lblStatus.notice, "");
  };
  refused("readFile", listFile);
  refused("attributes", source);
  refused("attributes", target);
  refused("list", source);
  refused("flushDisk", "");
  refused("copyFile", source + "\\aircraft.cfg");
  EXPECT_FALSE(drive.exists(target));
  EXPECT_FALSE(drive.exists("C:\\FS\\Gauges\\g.gau")) << "of an aircraft that has not come";
}

TEST_P(InterruptedTransferTest, AStopLeavesNothing) {
  windows.onYield = [this] {
    EXPECT_FALSE(app.frmMain.enabled);
    EXPECT_EQ(windows.pointers.back(), ui::Pointer::hourglass);
    app.stopRequested = true;
  };
  press();
  windows.onYield = nullptr;
  EXPECT_FALSE(drive.exists(target));
  EXPECT_EQ(drive.read(listFile), others);
  EXPECT_EQ(list.smallIcon(1), before);
  EXPECT_EQ(windows.boxTexts(), Tree{});
  EXPECT_TRUE(app.frmMain.lblStatus.notice.get().starts_with("Stopped"));
  press();
  expectDone("the wish to stop is forgotten");
}

INSTANTIATE_TEST_SUITE_P(Both, InterruptedTransferTest, ::testing::Bool());

TEST_F(HangarTransferTest, TellsHowManyFilesAndWritesALineThatIsMissing) {
  press();
  EXPECT_EQ(app.frmMain.lblStatus.notice, "Plane copied to the Hangar: 2 files");
  // Listed in other letters, and without the backslash.
  drive.write("C:\\Hangar\\SKV_AC.lst",
              "P\x01"
              "c:\\hangar\\AIRCRAFT\\Plane\r\n");
  press();
  EXPECT_EQ(drive.read("C:\\Hangar\\SKV_AC.lst"),
            "P\x01"
            "c:\\hangar\\AIRCRAFT\\Plane\r\n");
  drive.write("C:\\Hangar\\SKV_AC.lst", "");
  press();
  EXPECT_EQ(drive.read("C:\\Hangar\\SKV_AC.lst"),
            "Plane\x01"
            "C:\\Hangar\\aircraft\\plane\\\r\n");
}

TEST_F(HangarTransferTest, ARowMayNotSpreadAStore) {
  const Tree before = drive.tree("C:\\");
  for (const char* folder : {"C:\\FS\\", "C:\\", "C:\\FS\\aircraft\\", "C:\\FS\\Gauges\\",
                             "C:\\FS\\aircraft\\x\\..\\plane\\"}) {
    list.clear();
    list.add("odd", {folder});
    list.select(1);
    windows.boxes.clear();
    press();
    EXPECT_EQ(drive.tree("C:\\"), before) << folder;
    EXPECT_EQ(windows.boxes.size(), 1U) << folder;
  }
  mnuViewFSAircraft_Click(app);
  ASSERT_TRUE(disk.makeFolder("C:\\Hangar").ok() && disk.makeFolder("C:\\Hangar\\Aircraft").ok());
  drive.link("C:\\Hangar\\Aircraft\\plane", "C:\\FS");
  press();
  EXPECT_FALSE(drive.exists("C:\\FS\\aircraft.cfg"));
}

TEST_F(HangarTransferTest, ARowThatLeadsToTheTargetItselfHasNothingToCopy) {
  drive.write("C:\\Hangar\\SKV_AC.lst",
              "Plane\x01"
              "C:\\FS\\aircraft\\plane\\\r\n");
  drive.write("C:\\Hangar\\Main\\plane\\Gauges\\p.gau", "p");
  mnuViewHangar_Click(app);
  press();
  EXPECT_EQ(drive.read("C:\\FS\\aircraft\\plane\\panel\\panel.cfg"), "old");
  EXPECT_EQ(drive.read("C:\\FS\\Gauges\\p.gau"), "p");
  EXPECT_EQ(windows.boxTexts(), Tree{});
}

TEST_F(HangarTransferTest, AWorkingFolderThatIsALinkStopsAPackage) {
  sample::writeZip(disk.nativePath("C:\\Packs\\h.zip").value(),
                   {{"Aircraft/aircraft.cfg", "packed"}});
  drive.remove("C:\\Temp\\SKVInstallTemp");
  drive.write("C:\\data\\sub\\file", "kept");
  drive.link("C:\\Temp\\SKVInstallTemp", "C:\\data");
  hangarRow("h");
  press();
  EXPECT_EQ(drive.tree("C:\\data"), (Tree{"sub\\", "sub\\file"}));
  EXPECT_EQ(windows.boxes.size(), 1U);
  EXPECT_FALSE(drive.exists("C:\\FS\\aircraft\\h"));
}

}  // namespace
}  // namespace skv
