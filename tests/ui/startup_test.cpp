#include "ui/startup.h"

#include "aircraft/aircraft_views.h"
#include "core/long_operation.h"
#include "support/program_fixture.h"

namespace skv::test {

class StartupTest : public ProgramTest {
 protected:
  StartupTest() {
    storeSettings();
    drive.write("C:\\FS\\SKV_AC.lst", rowA + rowB);
    app.FSRoot = app.HangarDir = app.PacksDir = "";
  }
  // Plays the user of the settings, at each showing.
  void atSettings(std::function<void()> user) {
    windows.onShow[&app.frmSettings] = [this, user = std::move(user)] {
      ++settingsShown;
      user();
    };
  }
  void startAgain() {
    Form_Unload(app);
    app.ending = false;
  }
  const std::string rowA = line("a", "C:\\FS\\aircraft\\a\\");
  const std::string rowB = line("b", "C:\\FS\\aircraft\\b\\");
  int settingsShown = 0;
};

TEST_F(StartupTest, ANormalStartShowsTheSimulatorsAircraft) {
  settings.values["General/LastACSelected"] = "2";
  settings.values["Window/MainTop"] = "300";
  settings.values["Window/MainWidth"] = "12000";
  settings.values["Window/MainState"] = "2";
  drive.write("C:\\Temp\\SKVInstallTemp\\left\\over.txt", "x");
  drive.write("C:\\FS\\aircraft\\~SKVUnfinished\\folder\\half", "of a killed run");
  Form_Load(app);
  EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Lines{});
  EXPECT_FALSE(drive.exists("C:\\FS\\aircraft\\~SKVUnfinished"));
  EXPECT_EQ(app.frmMain.lblStatus.caption, "");
  EXPECT_EQ(form.lstAircraft.count(), 2);
  EXPECT_EQ(form.lstAircraft.selected(), 2);
  EXPECT_EQ(app.ACRoot, "C:\\FS\\aircraft\\");
  EXPECT_TRUE(drive.exists("C:\\Packs\\Scenery"));
  EXPECT_EQ(form.top, 300);
  EXPECT_EQ(form.left, 0) << "a left that was never stored";
  EXPECT_EQ(form.windowState, ui::Form::State::maximised);
  EXPECT_TRUE(windows.boxes.empty());
}

TEST_F(StartupTest, AnArchiveThatCameByMailSurvivesARunThatWasKilled) {
  const std::string mailed = "C:\\Temp\\SKVInstallTemp\\mail.zip";
  drive.write(mailed, "the only copy");
  drive.write("C:\\Temp\\mail.zip", "another");
  files.failWhen("rename", mailed, err::deviceIo);
  Form_Load(app);
  EXPECT_EQ(drive.read(mailed), "the only copy");
  files.heal();
  windows.boxes.clear();
  app.ending = false;
  EXPECT_TRUE(disk.setAttributes(mailed, {.readOnly = true}).ok());
  Form_Load(app);
  EXPECT_EQ(drive.filesIn("C:\\Temp"), (Lines{"mail (2).zip", "mail.zip"}));
  EXPECT_EQ(drive.read("C:\\Temp\\mail (2).zip"), "the only copy");
  expectTold("had installed these archives. They are kept:\r\nC:\\Temp\\mail (2).zip");
}

TEST_F(StartupTest, AWorkingFolderIsFoundOrTheStartIsOver) {
  const std::string own = "C:\\cache\\FSSkyvault";
  drive.write("C:\\cache\\FSSkyvault\\x", "");
  drive.write("C:\\file", "");
  app.platform.environment.cacheFolder = own;
  for (const char* TEMP : {"Q:\\gone", "C:\\file", "/no:name", "C:\\full"}) {
    app.platform.environment.TEMP = TEMP;
    files.failWhen("makeFolder", "C:\\full\\SKVInstallTemp", err::diskFull);
    EXPECT_TRUE(Form_Load(app)) << TEMP;
    EXPECT_EQ(app.InstallTempDir, own + "\\SKVInstallTemp\\");
    EXPECT_TRUE(form.visible && form.lstAircraft.count() == 2);
    EXPECT_TRUE(holds(windows.boxes.back().text, TEMP));
    expectTold("in this one instead:\r\n" + own);
  }
  app.platform.environment.TEMP = "";
  EXPECT_TRUE(Form_Load(app));
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(drive.tree(own), (Lines{"SKVInstallTemp\\", "x"}));
  // It stands, and its disk can only be read.
  files.failWhen("makeFolder", own + "\\SKVInstallTemp\\probe", err::permissionDenied);
  for (const std::string& folder : {own, std::string()}) {
    startAgain();
    app.platform.environment.cacheFolder = folder;
    app.platform.environment.nativeCacheFolder = "/home/u/.cache";
    EXPECT_FALSE(Form_Load(app));
    EXPECT_TRUE(app.ending && !form.visible);
    expectTold("cannot work in its own folder:\r\n/home/u/.cache");
  }
}

TEST_F(StartupTest, AnEmptyListTellsHowManyAircraftAnImportWouldBring) {
  drive.remove("C:\\FS\\SKV_AC.lst");
  for (const char* aircraft : {"a\\aircraft.cfg", "a\\old\\Aircraft.CFG", "b\\panel\\panel.cfg",
                               "~SKVUnfinished\\c\\aircraft.cfg", "group\\d\\aircraft.cfg"})
    drive.write("C:\\FS\\aircraft\\" + std::string(aircraft), "");
  drive.link("C:\\FS\\aircraft\\group\\circle", drive.native("C:\\FS\\aircraft"));
  Form_Load(app);
  EXPECT_TRUE(holds(form.lstAircraft.emptyText, "3 aircraft stand in the simulator"));
  form.mnuFileImportAC.click();
  EXPECT_EQ(form.lstAircraft.count(), 3);
}

TEST_F(StartupTest, TheRememberedRowIsTheAircraft) {
  for (const char* stored : {"", "3", "-1", "row", "1e9"}) {
    settings.values["General/LastACSelected"] = stored;
    Form_Load(app);
    EXPECT_EQ(form.lstAircraft.selected(), 1) << stored;
  }
  form.lstAircraft.select(2);
  startAgain();
  drive.write("C:\\FS\\SKV_AC.lst", rowB + rowA + line("c", "C:\\FS\\aircraft\\c\\"));
  form.lstAircraft.select(3);
  Form_Load(app);
  EXPECT_EQ(form.lstAircraft.text(form.lstAircraft.selected()), "b");
  mnuViewHangar_Click(app);
  startAgain();
  mnuViewFSAircraft_Click(app);
  form.lstAircraft.select(2);
  Form_Load(app);
  EXPECT_EQ(form.lstAircraft.text(form.lstAircraft.selected()), "b") << "left from the Hangar";
}

TEST_F(StartupTest, SettingsThatCannotBeReadAreAskedForAgain) {
  settings.failedReads = 2;
  windows.answers = {ui::Answer::yes, ui::Answer::yes};
  EXPECT_TRUE(settingsCanBeRead(windows, settings));
  EXPECT_EQ(windows.boxes.size(), 2U);
  EXPECT_TRUE(holds(windows.boxes[0].text, "settings.ini"));
  settings.failedReads = 1;
  EXPECT_FALSE(settingsCanBeRead(windows, settings)) << "answered No";
}

TEST_F(StartupTest, AFirstStartCanBeQuit) {
  settings.values.clear();
  atSettings([this] {
    EXPECT_TRUE(app.frmSettings.lblIntro.visible && app.frmSettings.btnQuit.visible);
    app.frmSettings.btnQuit.click();
  });
  Form_Load(app);
  EXPECT_TRUE(app.ending);
  EXPECT_FALSE(form.visible || app.frmSplash.visible || app.frmSettings.visible);
  EXPECT_TRUE(settings.values.empty());
}

TEST_F(StartupTest, AFirstStartOffersTheSimulatorsThatAreThere) {
  auto& dialog = app.frmSettings;
  const auto folders = [&dialog] {
    return Lines{dialog.txtFSRoot.text, dialog.txtHangarDir.text, dialog.txtPacksDir.text};
  };
  const Lines ofFS{"C:\\FS\\", "C:\\FS\\SKV-Hangar\\", "C:\\FS\\SKV-Packages\\"};
  settings.values.clear();
  simulators.found = {"C:\\FS\\"};
  atSettings([&] {
    EXPECT_EQ(folders(), ofFS);
    EXPECT_EQ(dialog.lblHangarState.caption, "Will be made") << "nothing is made unseen";
    EXPECT_FALSE(dialog.cmbFound.visible);
    dialog.btnQuit.click();
  });
  Form_Load(app);
  app.ending = false;
  simulators.found.emplace_back("D:\\FS2002\\");
  atSettings([&] {
    EXPECT_TRUE(dialog.cmbFound.visible);
    EXPECT_EQ(dialog.cmbFound.items.get(), simulators.found);
    EXPECT_EQ(folders(), ofFS);
    dialog.cmbFound.listIndex = 1;
    dialog.cmbFound.click();
    EXPECT_EQ(folders(),
              (Lines{"D:\\FS2002\\", "D:\\FS2002\\SKV-Hangar\\", "D:\\FS2002\\SKV-Packages\\"}));
    dialog.txtHangarDir.text = "C:\\mine\\";
    dialog.cmbFound.listIndex = 0;
    dialog.cmbFound.click();
    EXPECT_EQ(folders(), (Lines{ofFS[0], "C:\\mine\\", ofFS[2]}));
    dialog.btnOK.click();
  });
  Form_Load(app);
  EXPECT_EQ(settings.values["General/FSRoot"], "C:\\FS\\");
  // Who has chosen once is not asked again, wherever another simulator turns up.
  settings.values["General/AppVersion"] = "older";
  atSettings([&] {
    EXPECT_FALSE(dialog.cmbFound.visible);
    EXPECT_EQ(dialog.txtHangarDir.text, "C:\\mine\\");
    dialog.btnOK.click();
  });
  Form_Load(app);
  EXPECT_EQ(settingsShown, 3);
}

// What was the whole computer may be a backup of it now, with all the same folders.
TEST_F(StartupTest, ADriveThatIsNoLongerTheProgramsOwnIsAskedAbout) {
  settings.values["General/OwnDrive"] = "C";
  app.platform.environment.ownDrive = "Y";
  atSettings([this] { app.frmSettings.closed(); });
  Form_Load(app);
  expectTold("Drive C: was FS Skyvault's own name for the whole of this computer.");
  EXPECT_TRUE(app.ending) << "nothing is done there without a word of the user's";
  EXPECT_EQ(settings.values["General/OwnDrive"], "C");

  startAgain();
  atSettings([this] { app.frmSettings.btnOK.click(); });
  Form_Load(app);
  expectTold("Drive C: ");
  EXPECT_FALSE(app.ending);
  EXPECT_EQ(settings.values["General/OwnDrive"], "Y");
  // One that no folder is on.
  startAgain();
  app.platform.environment.ownDrive = "";
  Form_Load(app);
  EXPECT_EQ(settings.values["General/OwnDrive"], "");
  EXPECT_EQ(settingsShown, 2);
  EXPECT_TRUE(windows.boxes.empty());
}

TEST_F(StartupTest, NothingIsMadeWhereTheSimulatorsDiskIsAway) {
  ASSERT_TRUE(disk.makeFolder("C:\\mnt").ok());
  drive.write("C:\\Program\\SKV_PN.lst", line("kept", "C:\\p\\"));
  drive.link("C:\\dangling", "nowhere");
  for (const std::string away : {"C:\\dangling\\FS\\", "C:\\mnt\\FS\\", "C:\\Gone\\FS\\"}) {
    app.FSRoot = app.HangarDir = app.PacksDir = app.SceneryPacksPath = "";
    settings.values["General/FSRoot"] = away;
    settings.values["General/HangarDir"] = away + "Hangar\\";
    settings.values["General/PacksDir"] = away + "Packs\\";
    Form_Load(app);
    mnuViewHangar_Click(app);
    EXPECT_TRUE(form.visible);
    EXPECT_TRUE(drive.tree("C:\\mnt").empty() && !drive.exists("C:\\Gone"));
    EXPECT_TRUE(holds(form.lblStatus.notice, away + " is not there"));
    EXPECT_TRUE(holds(form.lblStatus.notice, "F2"));
    EXPECT_TRUE(windows.boxes.empty()) << away;
  }
  settings.values["General/PacksDir"] = "C:\\FS\\deep\\Packs\\";
  Form_Load(app);
  EXPECT_TRUE(drive.exists("C:\\FS\\deep\\Packs\\Scenery")) << "that disk is there";
}

TEST_F(StartupTest, ACloseRequestDuringAnOperationAsks) {
  EXPECT_TRUE(frmMain_QueryUnload(app));
  EXPECT_TRUE(windows.boxes.empty());
  std::optional<LongOperation> busy(app);
  windows.answers = {ui::Answer::no, ui::Answer::yes};
  EXPECT_FALSE(frmMain_QueryUnload(app));
  EXPECT_FALSE(app.stopRequested) << "the user waits";
  EXPECT_FALSE(frmMain_QueryUnload(app));
  EXPECT_TRUE(app.stopRequested);
  EXPECT_FALSE(frmMain_QueryUnload(app));
  EXPECT_EQ(windows.boxes.size(), 2U) << "asked no more";
  busy.reset();
  EXPECT_FALSE(app.stopRequested) << "the next one is not meant";
}

TEST_F(StartupTest, AFirstStartLeadsThroughTheSettings) {
  settings.values.clear();
  for (const char* lacking : {"FSRoot", "HangarDir", "PacksDir"}) {
    settingsShown = 0;
    if (*lacking != 'F') storeSettings();
    settings.values.erase("General/" + std::string(lacking));
    const auto before = settings.values;
    atSettings([this] {
      EXPECT_TRUE(app.frmSettings.btnQuit.visible);
      app.FSRoot = "C:\\FS\\";  // browsed for, and not accepted
      app.frmSettings.closed();
    });
    EXPECT_TRUE(Form_Load(app));
    EXPECT_FALSE(form.visible || app.frmSplash.visible) << "closed: the start is over";
    EXPECT_EQ(settingsShown, 1);
    EXPECT_TRUE(app.ending);
    EXPECT_EQ(settings.values.count("General/AppVersion"), before.count("General/AppVersion"));
    app.ending = false;
  }
  settings.values.clear();
  settingsShown = 1;
  atSettings([this] {
    EXPECT_FALSE(form.visible);
    EXPECT_EQ(app.frmSettings.txtFSRoot.text, "C:\\Program Files\\Microsoft Games\\FS2002\\");
    app.frmSettings.txtFSRoot.text = "C:\\FS";
    app.frmSettings.txtFSRoot.lostFocus();
    app.frmSettings.btnOK.click();
  });
  Form_Load(app);
  EXPECT_EQ(settingsShown, 2);
  EXPECT_EQ(settings.values["General/FSRoot"], "C:\\FS\\");
  EXPECT_EQ(settings.values["General/HangarDir"], "C:\\FS\\SKV-Hangar\\");
  EXPECT_EQ(settings.values["General/PacksDir"], "C:\\FS\\SKV-Packages\\");
  EXPECT_EQ(settings.values["General/AppVersion"], versionText());
  EXPECT_TRUE(form.visible);
  EXPECT_EQ(form.lstAircraft.count(), 2);
  EXPECT_FALSE(drive.exists("C:\\Scenery")) << "no Packages folder, no stray scenery folder";
}

TEST_F(StartupTest, OldListFilesMoveAndAreNeverLost) {
  const std::string old = "C:\\Program\\SKV_PN.lst", now = "C:\\FS\\SKV_PN.lst";
  drive.write("C:\\Program\\SKV_AC.lst", line("moved", "C:\\FS\\aircraft\\m\\"));
  drive.write(old, line("kept", "C:\\p\\"));
  files.failWhen("copyFileDurably", old, err::diskFull);
  Form_Load(app);
  EXPECT_EQ(rows(form.lstAircraft), Lines{"moved|C:\\FS\\aircraft\\m\\"});
  expectTold("could not be moved to \"C:\\FS\\\". It stays where it is");
  EXPECT_FALSE(drive.exists("C:\\Program\\SKV_AC.lst"));
  EXPECT_TRUE(drive.exists(old));
  EXPECT_EQ(files.count("copyFile", "C:\\Program\\SKV_AC.lst"), 0)
      << "not only in the disk's cache";

  drive.write(now, "of the simulator");
  files.failWhen("attributes", now, err::deviceIo);
  Form_Load(app);
  EXPECT_EQ(drive.read(now), "of the simulator") << "who knows what stands there";
  EXPECT_TRUE(drive.exists(old));
  windows.boxes.clear();
  files.failWhen("deleteFile", old, err::permissionDenied);
  Form_Load(app);
  EXPECT_EQ(windows.boxes.size(), 1U) << "the next start would copy it over the newer list";
}

TEST_F(StartupTest, ClosingStoresTheNormalWindowAndTheRow) {
  Form_Load(app);
  form.lstAircraft.select(2);
  form.left = 450;
  form.width = 13500;
  form.windowState = ui::Form::State::maximised;
  Form_Unload(app);
  EXPECT_EQ(settings.values["Window/MainState"], "2");
  form.lstAircraft.remove(1);
  Form_Unload(app);
  EXPECT_EQ(form.windowState, ui::Form::State::normal) << "or the width is the screen's";
  EXPECT_FALSE(form.visible);
  for (const auto& [key, value] : {std::pair{"Window/MainLeft", "450"},
                                   {"Window/MainWidth", "13500"},
                                   {"General/LastACSelected", "2"}})  // one row leaves the old one
    EXPECT_EQ(settings.values[key], value) << key;
}

}  // namespace skv::test
