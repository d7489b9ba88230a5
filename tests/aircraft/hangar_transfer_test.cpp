#include "aircraft/hangar_transfer.h"

#include "aircraft/aircraft_views.h"
#include "core/staged_folder.h"
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
  press();
  EXPECT_EQ(drive.tree("C:\\Hangar"),
            (Lines{"Aircraft\\", "Aircraft\\plane\\", "Aircraft\\plane\\aircraft.cfg",
                   "Aircraft\\plane\\panel\\", "Aircraft\\plane\\panel\\panel.cfg", "Main\\",
                   "Main\\plane\\", "Main\\plane\\Effects\\", "Main\\plane\\Gauges\\",
                   "Main\\plane\\Sound\\", "Main\\plane\\Texture\\", "SKV_AC.lst"}));
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
}

TEST_F(HangarTransferTest, ToTheSimulatorMergesAndReadOnlyIsNoObstacle) {
  const std::string here = "C:\\Hangar\\aircraft\\h\\", main = "C:\\Hangar\\Main\\h\\",
                    there = "C:\\FS\\aircraft\\h\\", same = "model\\same.mdl";
  const Lines shared = {"Gauges\\g.gau", "Sound\\s.wav", "Texture\\t.bmp", "Effects\\e.fx"};
  for (const std::string& file : shared) drive.write(main + file, "mine");
  drive.write(main + "Gauges\\old.gau", "mine");
  drive.setModified(main + "Gauges\\old.gau", {1000, 0});
  drive.write("C:\\FS\\Gauges\\OLD.GAU", "newer");
  drive.remove("C:\\FS\\Effects");
  drive.write(here + "aircraft.cfg", "mine");
  drive.write(here + same, "same");
  drive.write(there + same, "same");
  drive.write(there + "aircraft.cfg", "old");
  drive.write("C:\\FS\\Gauges\\g.gau", "old");
  for (const std::string& file :
       {there + "aircraft.cfg", there + same, std::string("C:\\FS\\Gauges\\g.gau")}) {
    drive.setModified(file, {1000, 0});
    ASSERT_TRUE(disk.setAttributes(file, {.readOnly = true}).ok());
  }
  hangarRow("h");
  files.failWhen("setAttributes", there + "aircraft.cfg", err::permissionDenied);
  press();
  expectTold("files could not be copied");
  EXPECT_EQ(drive.read(there + "aircraft.cfg"), "old") << "one that cannot be freed";
  files.heal();
  press();
  EXPECT_EQ(windows.boxTexts(), Lines{});
  EXPECT_EQ(drive.read(there + "aircraft.cfg"), "mine");
  EXPECT_TRUE(disk.attributes(there + same).value().readOnly) << "left alone";
  for (const std::string& file : shared) EXPECT_EQ(drive.read("C:\\FS\\" + file), "mine") << file;
  EXPECT_EQ(drive.read("C:\\FS\\Gauges\\old.gau"), "newer");
}

TEST_F(HangarTransferTest, APackageGoesBeforeTheHangarFolder) {
  drive.write("C:\\Hangar\\aircraft\\h\\aircraft.cfg", "thinned");
  drive.write("C:\\Temp\\SKVInstallTemp\\Aircraft\\stray.txt", "of a failed job");
  package();
  files.freeSpace = 50;
  press();
  EXPECT_EQ(drive.tree("C:\\FS\\aircraft\\h"), (Lines{"aircraft.cfg", "model\\", "model\\m.mdl"}));
  EXPECT_EQ(drive.read("C:\\FS\\aircraft\\h\\aircraft.cfg"), "packed");
  EXPECT_EQ(drive.read("C:\\FS\\Gauges\\g.gau"), "g");
  EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Lines{});
  EXPECT_EQ(list.smallIcon(1), 8);
  EXPECT_TRUE(windows.boxes.empty() && drive.exists("C:\\Packs\\h.zip"));
  EXPECT_EQ(files.count("freeBytes", "C:\\FS"), 1) << "the simulator's disk has to hold it, too";

  drive.remove("C:\\FS\\aircraft\\h");
  files.freeSpace = 49;
  press();
  expectTold("Insufficient Disk Space in \"C:\\Temp\\SKVInstallTemp\\\"!");
  sample::writeZip(disk.nativePath("C:\\Packs\\h.zip").value(), {{"aircraft.cfg", "loose"}});
  press();
  expectTold("h was not copied to the simulator.\r\nThe Package \"C:\\Packs\\h.zip\" holds no");
  EXPECT_FALSE(drive.exists("C:\\FS\\aircraft\\h"));
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

TEST_F(HangarTransferTest, OddRowsSpreadNoStore) {
  const Lines before = drive.tree("C:\\");
  for (const char* folder :
       {"", "no backslash", "C:/FS/aircraft/plane\\", "\\", "C:\\FS\\aircraft\\..\\", "C:\\",
        "C:\\FS\\", "C:\\FS\\aircraft\\", "C:\\FS\\Gauges\\", "C:\\FS\\aircraft\\x\\..\\plane\\"}) {
    list.select(list.add("odd", {folder}));
    press();
    EXPECT_EQ(drive.tree("C:\\"), before) << folder;
  }
  mnuViewFSAircraft_Click(app);
  app.HangarDir = "C:\\no\\parent\\";
  press();
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
  void start() {
    drive.clear("C:\\Hangar");
    drive.remove("C:\\FS\\aircraft\\h");
    drive.clear("C:\\FS\\Gauges");
    drive.write(hangarList, others);
    if (!toHangar) {
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
    EXPECT_EQ(drive.read(listFile), others + line(toHangar ? "Plane" : "h", target + "\\"));
    EXPECT_EQ(list.smallIcon(1), 6);
    EXPECT_EQ(drive.read("C:\\FS\\Gauges\\g.gau"), toHangar ? "" : "gauge");
    EXPECT_FALSE(drive.exists(stage));
    EXPECT_TRUE(holds(form.lblStatus.notice, " copied to the "));
  }
  void expectNotListed() {
    EXPECT_EQ(drive.read(listFile), others);
    EXPECT_EQ(list.smallIcon(1), before);
    EXPECT_FALSE(holds(form.lblStatus.notice, "copied to"));
  }
  const bool toHangar = GetParam();
  // The first line of each list.
  const std::string others = planeHere + line("Other", "C:\\Hangar\\aircraft\\other\\");
  const std::string source = toHangar ? "C:\\FS\\aircraft\\plane" : "C:\\Hangar\\aircraft\\h";
  const std::string root = toHangar ? "C:\\Hangar\\" : "C:\\FS\\";
  const std::string target = root + (toHangar ? "aircraft\\plane" : "aircraft\\h");
  const std::string listFile = root + "SKV_AC.lst", stage = root + "aircraft\\~SKVUnfinished";
  int before = 0;
};

// Failures are told; whatever it is, it marks nothing and the next try finishes the job.
TEST_P(InterruptedTransferTest, AnEndAnywhereLeavesAWholeAircraftOrNone) {
  for (const Ending ending : mostEndings) {
    const bool fails = ending == Ending::fullDisk || ending == Ending::failedLook;
    bool clears = false;
    Lines kept;
    const auto begin = [&] {
      start();
      kept = drive.tree(source);
    };
    const auto check = [&](bool struck) {
      EXPECT_EQ(drive.tree(source), kept);
      if (fails && windows.boxes.empty()) {
        expectDone("told as a success");
      } else if (struck) {
        if (drive.exists(target)) expectCopied();  // no half aircraft under its name
        EXPECT_TRUE(toHangar || drive.read(listFile) == others ||
                    drive.read("C:\\FS\\Gauges\\g.gau") == "gauge")
            << "listed before it is on the disk";
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
}

TEST_P(InterruptedTransferTest, AStopLeavesNothing) {
  start();
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

INSTANTIATE_TEST_SUITE_P(Both, InterruptedTransferTest, ::testing::Bool());

}  // namespace skv::test
