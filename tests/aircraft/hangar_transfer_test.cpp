#include "aircraft/hangar_transfer.h"
#include "aircraft/aircraft_views.h"
#include "core/staged_folder.h"

#include <set>

#include "sample/zip_file.h"
#include "support/every_call.h"
#include "support/program_fixture.h"

namespace skv::test {

class HangarTransferTest : public ProgramTest {
 protected:
  HangarTransferTest() {
    drive.write("C:\\FS\\aircraft\\plane\\aircraft.cfg", "[fltsim.0]\r\ntitle=Plane\r\n");
    drive.write("C:\\FS\\aircraft\\plane\\panel\\panel.cfg", "old");
    drive.write("C:\\FS\\SKV_AC.lst", planeHere);
    mnuViewFSAircraft_Click(app);
  }
  void press() {
    form.btnHangar.click();
    expectIdle();
    EXPECT_EQ(form.lblStatus.caption, "");
  }
  void hangarRow(const std::string& name) {
    drive.write(hangarList, line(name, "C:\\Hangar\\aircraft\\" + name + "\\"));
    mnuViewHangar_Click(app);
  }
  void package() {
    sample::writeZip(disk.nativePath("C:\\Packs\\h.zip").value(),
                     {{"Aircraft/aircraft.cfg", "packed"},
                      {"Aircraft/model/m.mdl", "m"},
                      {"Main/Texture/.DS_Store", "hidden, which keeps its folder from a walk"},
                      {"Main/Gauges/g.gau", "g"}},
                     {.backslashes = true});
    hangarRow("h");
  }
  const std::string hangarList = "C:\\Hangar\\SKV_AC.lst";
  const std::string planeHere = line("Plane", "C:\\FS\\aircraft\\plane\\");
  const std::string planeParked = line("Plane", "C:\\Hangar\\aircraft\\plane\\");
  ui::ListView& list = form.lstAircraft;
};

TEST_F(HangarTransferTest, ParkingIsACopyAndALine) {
  const Lines simulator = drive.tree("C:\\FS");
  press();
  EXPECT_EQ(drive.tree("C:\\FS"), simulator);
  EXPECT_EQ(drive.tree("C:\\Hangar"),
            (Lines{"Aircraft\\", "Aircraft\\plane\\", "Aircraft\\plane\\aircraft.cfg",
                   "Aircraft\\plane\\panel\\", "Aircraft\\plane\\panel\\panel.cfg", "Main\\",
                   "Main\\plane\\", "Main\\plane\\Effects\\", "Main\\plane\\Gauges\\",
                   "Main\\plane\\Sound\\", "Main\\plane\\Texture\\", "SKV_AC.lst"}));
  EXPECT_EQ(drive.read(hangarList), planeParked);
  EXPECT_EQ(list.smallIcon(1), 6) << "in the simulator and in the Hangar";
  EXPECT_EQ(form.lblStatus.notice, "Plane copied to the Hangar: 2 files");

  drive.write("C:\\FS\\aircraft\\plane\\panel\\panel.cfg", "new");
  // Listed already, listed in other letters and without the backslash, and not listed.
  const std::string other = line("P", "c:\\hangar\\AIRCRAFT\\Plane");
  for (const auto& [before, after] :
       {std::pair{planeParked, planeParked}, {other, other}, {std::string(), planeParked}}) {
    drive.write(hangarList, before);
    press();
    EXPECT_EQ(drive.read(hangarList), after);
  }
  EXPECT_EQ(drive.read("C:\\Hangar\\aircraft\\plane\\panel\\panel.cfg"), "new");
  // A list that one look has missed gets no line twice.
  forEveryCall(
      files, Ending::failedLook, [] {}, [this] { press(); },
      [this](bool) { EXPECT_EQ(drive.read(hangarList), planeParked); });
}

TEST_F(HangarTransferTest, ToTheSimulatorMergesTheSharedFolders) {
  const Lines shared = {"Gauges\\g.gau", "Sound\\s.wav", "Texture\\t.bmp", "Effects\\e.fx"};
  drive.write("C:\\Hangar\\aircraft\\h\\aircraft.cfg", "mine");
  for (const std::string& file : shared) drive.write("C:\\Hangar\\Main\\h\\" + file, "mine");
  drive.write("C:\\Hangar\\Main\\h\\Gauges\\old.gau", "mine");
  drive.setModified("C:\\Hangar\\Main\\h\\Gauges\\old.gau", {1000, 0});
  drive.write("C:\\FS\\Gauges\\OLD.GAU", "newer");
  drive.remove("C:\\FS\\Effects");
  hangarRow("h");
  press();
  EXPECT_EQ(drive.read("C:\\FS\\aircraft\\h\\aircraft.cfg"), "mine");
  for (const std::string& file : shared) EXPECT_EQ(drive.read("C:\\FS\\" + file), "mine") << file;
  EXPECT_EQ(drive.read("C:\\FS\\Gauges\\old.gau"), "newer");
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"), planeHere + line("h", "C:\\FS\\aircraft\\h\\"));
  EXPECT_EQ(list.smallIcon(1), 6);
}

TEST_F(HangarTransferTest, ReadOnlyFilesAtTheTargetAreNoObstacle) {
  const std::string here = "C:\\Hangar\\aircraft\\h\\", there = "C:\\FS\\aircraft\\h\\";
  const auto protect = [this](const std::string& path, const std::string& content) {
    drive.write(path, content);
    drive.setModified(path, {1000, 0});
    EXPECT_TRUE(disk.setAttributes(path, {.readOnly = true}).ok());
  };
  drive.write(here + "aircraft.cfg", "new");
  drive.write(here + "model\\same.mdl", "same");
  drive.write(here + "model\\other.mdl", "new");
  drive.write("C:\\Hangar\\Main\\h\\Gauges\\g.gau", "new");
  protect(there + "aircraft.cfg", "old");
  protect(there + "model\\same.mdl", "same");
  protect(there + "model\\other.mdl", "old");
  protect("C:\\FS\\Gauges\\g.gau", "old");
  hangarRow("h");
  // One that cannot be freed.
  files.failWhen("setAttributes", there + "model\\other.mdl", err::permissionDenied);
  press();
  expectTold("files could not be copied");
  EXPECT_EQ(drive.read(there + "model\\other.mdl"), "old");
  files.heal();
  press();
  EXPECT_EQ(windows.boxTexts(), Lines{});
  for (const std::string& file :
       {there + "aircraft.cfg", there + "model\\other.mdl", std::string("C:\\FS\\Gauges\\g.gau")})
    EXPECT_EQ(drive.read(file), "new") << file;
  EXPECT_TRUE(disk.attributes(there + "model\\same.mdl").value().readOnly) << "left alone";
}

TEST_F(HangarTransferTest, APackageGoesBeforeTheHangarFolder) {
  drive.write("C:\\Hangar\\aircraft\\h\\aircraft.cfg", "thinned");
  drive.write("C:\\Temp\\SKVInstallTemp\\Aircraft\\stray.txt", "of a failed job");
  package();
  std::set<std::string> shown;
  form.lblStatus.onChange = [&] { shown.insert(form.lblStatus.caption); };
  press();
  form.lblStatus.onChange = nullptr;
  EXPECT_TRUE(shown.contains("Prepairing files...") && shown.contains("Unzipping: h.zip"));
  EXPECT_EQ(drive.tree("C:\\FS\\aircraft\\h"), (Lines{"aircraft.cfg", "model\\", "model\\m.mdl"}));
  EXPECT_EQ(drive.read("C:\\FS\\aircraft\\h\\aircraft.cfg"), "packed");
  EXPECT_EQ(drive.read("C:\\FS\\Gauges\\g.gau"), "g");
  EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Lines{});
  EXPECT_EQ(list.smallIcon(1), 8);
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_TRUE(drive.exists("C:\\Packs\\h.zip"));

  sample::writeZip(disk.nativePath("C:\\Packs\\h.zip").value(), {{"aircraft.cfg", "loose"}});
  press();
  EXPECT_EQ(windows.boxTexts(),
            Lines{"h was not copied to the simulator.\r\n"
                  "The Package \"C:\\Packs\\h.zip\" holds no folder \"Aircraft\"."});
  EXPECT_EQ(drive.read("C:\\FS\\aircraft\\h\\aircraft.cfg"), "packed");
}

TEST_F(HangarTransferTest, WhatMayNotBeTheWholeAircraftIsAskedAbout) {
  const std::string root = "C:\\Hangar\\aircraft\\", there = "C:\\FS\\aircraft\\h\\aircraft.cfg";
  drive.write(root + "h\\aircraft.cfg", "[fltsim.0]\r\nsim=flight\r\n");
  hangarRow("h");
  for (const ui::Answer answer : {no, yes}) {
    windows.answers = {answer};
    press();
    EXPECT_EQ(drive.exists(there), answer == yes) << "thinned out, and without its Package";
  }
  drive.write(root + "h\\flight.air", "");
  press();
  EXPECT_EQ(windows.boxes.size(), 2U);

  drive.write(root + "deep\\h\\aircraft.cfg", "[fltsim.0]\r\n");
  package();
  drive.write(hangarList, line("h", root + "h\\") + line("Deep", root + "deep\\h\\"));
  mnuViewFSAircraft_Click(app);
  mnuViewHangar_Click(app);
  select(list, 2);
  for (const auto& [answer, arrives] : {std::pair{ui::Answer::cancel, drive.read(there)},
                                        {no, std::string("[fltsim.0]\r\n")},
                                        {yes, std::string("packed")}}) {
    disk.deleteFile(there).skipped();
    if (answer == ui::Answer::cancel) drive.write(there, arrives);
    windows.answers = {answer};
    press();
    EXPECT_EQ(drive.read(there), arrives) << "the Package may be that of the other one";
  }
}

TEST_F(HangarTransferTest, APackageWithoutRoomStops) {
  package();
  files.freeSpace = 49;
  press();
  expectTold("Insufficient Disk Space in \"C:\\Temp\\SKVInstallTemp\\\"!");
  EXPECT_EQ(files.count("freeBytes", "C:\\FS"), 0);
  EXPECT_FALSE(drive.exists("C:\\FS\\aircraft\\h"));
  files.freeSpace = 50;
  press();
  EXPECT_EQ(files.count("freeBytes", "C:\\FS"), 1) << "the simulator's disk has to hold it, too";
  EXPECT_TRUE(drive.exists("C:\\FS\\aircraft\\h\\aircraft.cfg"));
}

TEST_F(HangarTransferTest, OddRowsSpreadNoStore) {
  const Lines before = drive.tree("C:\\");
  list.clear();
  press();
  // The first few are passed over, the others are refused.
  int row = 0;
  for (const char* folder :
       {"", "no backslash", "C:/FS/aircraft/plane\\", "\\", "C:\\FS\\aircraft\\..\\", "C:\\",
        "C:\\FS\\", "C:\\FS\\aircraft\\", "C:\\FS\\Gauges\\", "C:\\FS\\aircraft\\x\\..\\plane\\"}) {
    windows.boxes.clear();
    list.select(list.add("odd", {folder}));
    press();
    EXPECT_EQ(drive.tree("C:\\"), before) << folder;
    EXPECT_EQ(windows.boxes.size(), ++row > 5 ? 1U : 0U) << folder;
  }
  mnuViewFSAircraft_Click(app);
  windows.boxes.clear();
  app.HangarDir = "C:\\no\\parent\\";
  press();
  expectTold("");
  EXPECT_EQ(drive.tree("C:\\"), before);
  app.HangarDir = "C:\\Hangar\\";
  ASSERT_TRUE(disk.makeFolder("C:\\Hangar").ok() && disk.makeFolder("C:\\Hangar\\Aircraft").ok());
  drive.link("C:\\Hangar\\Aircraft\\plane", "C:\\FS");
  press();
  EXPECT_FALSE(drive.exists("C:\\FS\\aircraft.cfg"));
}

TEST_F(HangarTransferTest, ARowMayGoMeanwhile) {
  windows.onYield = [this] {
    if (list.count() > 0) list.remove(1);
  };
  press();
  EXPECT_EQ(list.count(), 0);
  EXPECT_EQ(drive.read(hangarList), planeParked) << "and is copied all the same";
  EXPECT_EQ(drive.filesIn("C:\\Hangar\\Aircraft\\plane").size(), 2U);
}

TEST_F(HangarTransferTest, TheAircraftThatAnAliasLeadsToIsOfferedToo) {
  const std::string here = "C:\\Hangar\\aircraft\\", there = "C:\\FS\\aircraft\\";
  const auto alias = [](const std::string& to) { return "[fltsim]\r\nalias=" + to + "\r\n"; };
  drive.write(here + "h\\panel\\panel.cfg", alias("lender\\panel"));
  drive.write(here + "h\\sound.x\\sound.cfg", alias("Lender\\sound"));
  drive.write(here + "h\\panel.y\\panel.cfg", alias("plane\\panel"));
  drive.write(here + "lender\\aircraft.cfg", "");
  drive.write(here + "lender\\sound\\sound.cfg", alias("gone\\sound"));
  drive.write(here + "gone\\sound\\sound.cfg", "no aircraft");
  const auto answers = [&](std::deque<ui::Answer> given) {
    hangarRow("h");
    windows.boxes.clear();
    windows.answers = std::move(given);
    press();
    return windows.boxes.size();
  };
  files.failWhen("readFile", here + "h\\panel\\panel.cfg", err::deviceIo);
  answers({yes});
  expectTold("h was not copied to the simulator.\r\nDevice I/O error");
  files.heal();
  EXPECT_EQ(answers({ui::Answer::cancel}), 1U);
  EXPECT_EQ(windows.boxes[0].text,
            "\"h\" uses the panel of \"lender\", which the simulator does not have.\r\r"
            "Copy that one to the simulator as well?");
  EXPECT_FALSE(drive.exists(there + "h"));
  EXPECT_EQ(answers({no}), 1U) << "each is asked about once";
  EXPECT_TRUE(drive.exists(there + "h") && !drive.exists(there + "lender"));
  EXPECT_EQ(answers({yes, no}), 2U);
  EXPECT_FALSE(drive.exists(there + "lender")) << "not without what it uses itself";
  EXPECT_EQ(answers({yes, yes}), 2U);
  EXPECT_TRUE(drive.exists(there + "lender\\sound\\sound.cfg") && !drive.exists(there + "gone"));
  EXPECT_TRUE(drive.read("C:\\FS\\SKV_AC.lst").ends_with(line("lender", there + "lender\\")));
  EXPECT_EQ(form.lblStatus.notice,
            "h copied to the simulator: 3 files; lender copied to the simulator: 2 files");
}

TEST_F(HangarTransferTest, ARowAtTheTargetHasNothingToCopy) {
  drive.write(hangarList, planeHere);
  drive.write("C:\\Hangar\\Main\\plane\\Gauges\\p.gau", "p");
  mnuViewHangar_Click(app);
  press();
  EXPECT_EQ(drive.read("C:\\FS\\aircraft\\plane\\panel\\panel.cfg"), "old");
  EXPECT_EQ(drive.read("C:\\FS\\Gauges\\p.gau"), "p");
}

// Both directions (true is to the Hangar), from a clean start each time.
class InterruptedTransferTest : public HangarTransferTest,
                                public ::testing::WithParamInterface<bool> {
 protected:
  InterruptedTransferTest() {
    const bool toHangar = GetParam();
    source = toHangar ? "C:\\FS\\aircraft\\plane" : "C:\\Hangar\\aircraft\\h";
    target = toHangar ? "C:\\Hangar\\aircraft\\plane" : "C:\\FS\\aircraft\\h";
    listFile = toHangar ? hangarList : "C:\\FS\\SKV_AC.lst";
    stage = target.substr(0, target.rfind('\\')) + "\\~SKVUnfinished";
    start();
  }
  void start() {
    drive.clear("C:\\Hangar");
    drive.remove("C:\\FS\\aircraft\\h");
    drive.clear("C:\\FS\\Gauges");
    drive.write(hangarList, others);
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
    form.lblStatus.notice = "";
  }
  void expectCopied() {
    EXPECT_EQ(drive.tree(target), drive.tree(source));
    for (const std::string& name : drive.tree(source))
      EXPECT_EQ(drive.read(target + "\\" + name), drive.read(source + "\\" + name));
  }
  void expectDone(const std::string& what) {
    SCOPED_TRACE(what);
    expectCopied();
    EXPECT_EQ(drive.read(listFile), others + line(GetParam() ? "Plane" : "h", target + "\\"));
    EXPECT_EQ(list.smallIcon(1), 6);
    EXPECT_EQ(drive.read("C:\\FS\\Gauges\\g.gau"), GetParam() ? "" : "gauge");
    for (const char* root : {"C:\\FS\\aircraft", "C:\\Hangar\\aircraft"})
      EXPECT_FALSE(drive.exists(root + std::string("\\~SKVUnfinished")));
    EXPECT_NE(form.lblStatus.notice, "");
  }
  void expectNotListed() {
    EXPECT_EQ(drive.read(listFile), others);
    EXPECT_EQ(list.smallIcon(1), before);
    EXPECT_EQ(form.lblStatus.notice->find("copied to"), std::string::npos);
  }
  // The first line of each list.
  const std::string others = planeHere + line("Other", "C:\\Hangar\\aircraft\\other\\");
  std::string source, target, stage, listFile;
  int before = 0;
};

// Failures are told; whatever it is, it marks nothing and the next try finishes the job.
class EndedTransferTest : public InterruptedTransferTest {
 protected:
  void endAnywhere(Ending ending) {
    Lines kept;
    bool clears = false;
    const auto begin = [&] {
      start();
      kept = drive.tree(source);
    };
    const auto check = [&](bool struck) {
      EXPECT_EQ(drive.tree(source), kept);
      const bool fails = ending == Ending::fullDisk || ending == Ending::failedLook;
      if (fails && windows.boxes.empty()) {
        expectDone("told as a success");
      } else if (struck) {
        if (drive.exists(target)) expectCopied();  // no half aircraft under its name
        if (!GetParam() && drive.read(listFile) != others) {
          EXPECT_EQ(drive.read("C:\\FS\\Gauges\\g.gau"), "gauge")
              << "listed before it is on the disk";
        }
        EXPECT_TRUE(ending != Ending::fullDisk || !drive.exists(stage)) << "nor under ours";
        if (fails) expectNotListed();
      }
      if (ending == Ending::kill) {
        drive.write(stage + "\\half", "what a process that is gone cannot take away");
        clears = !clears;
        if (clears) clearUnfinishedFolders(app);
        EXPECT_NE(drive.exists(stage), clears);
      }
      press();
      expectDone("the second try");
    };
    EXPECT_GT(forEveryCall(
                  files, ending, begin, [this] { press(); }, check),
              5);
  }
};

TEST_P(EndedTransferTest, AFullDisk) { endAnywhere(Ending::fullDisk); }
TEST_P(EndedTransferTest, AFailedLook) { endAnywhere(Ending::failedLook); }
TEST_P(EndedTransferTest, AKill) { endAnywhere(Ending::kill); }
TEST_P(EndedTransferTest, APowerCutThatLeavesNames) { endAnywhere(Ending::emptyFiles); }
TEST_P(EndedTransferTest, APowerCutThatLeavesNothing) { endAnywhere(Ending::lostFiles); }

TEST_P(InterruptedTransferTest, AStopLeavesNothing) {
  windows.onYield = [this] {
    EXPECT_FALSE(form.enabled);
    EXPECT_EQ(windows.pointers.back(), ui::Pointer::hourglass);
    app.stopRequested = true;
  };
  press();
  windows.onYield = nullptr;
  EXPECT_FALSE(drive.exists(target));
  expectNotListed();
  EXPECT_EQ(windows.boxTexts(), Lines{});
  EXPECT_TRUE(form.lblStatus.notice.get().starts_with("Stopped"));
  press();
  expectDone("the wish to stop is forgotten");
}

INSTANTIATE_TEST_SUITE_P(Both, EndedTransferTest, ::testing::Bool());
INSTANTIATE_TEST_SUITE_P(Both, InterruptedTransferTest, ::testing::Bool());

}  // namespace skv::test
