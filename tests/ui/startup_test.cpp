#include "ui/startup.h"

#include <cmath>

#include "core/long_operation.h"
#include "support/program_fixture.h"
#include "ui/settings.h"
#include "ui/views.h"

namespace skv {
namespace {

class StartupTest : public test::ProgramTest {
 protected:
  StartupTest() {
    for (const auto& [key, value] :
         std::map<std::string, std::string>{{"General/FSRoot", "C:\\FS\\"},
                                            {"General/HangarDir", "C:\\Hangar\\"},
                                            {"General/PacksDir", "C:\\Packs\\"},
                                            {"General/AppVersion", versionText()}})
      settings.values[key] = value;
    drive.write("C:\\FS\\SKV_AC.lst",
                "a\x01"
                "C:\\FS\\aircraft\\a\\\r\nb\x01"
                "C:\\FS\\aircraft\\b\\\r\n");
    app.FSRoot = app.HangarDir = app.PacksDir = "";
  }
  int settingsShown = 0;
  ui::FrmMain& form = app.frmMain;
};

TEST_F(StartupTest, ANormalStartShowsTheSimulatorsAircraft) {
  settings.values["General/LastACSelected"] = "2";
  settings.values["Window/MainTop"] = "300";
  settings.values["Window/MainWidth"] = "12000";
  settings.values["Window/MainState"] = "2";
  drive.write("C:\\Temp\\SKVInstallTemp\\left\\over.txt", "x");
  const double aspect = static_cast<double>(form.width) / form.height;
  Form_Load(app);
  EXPECT_EQ(form.caption, "FS Skyvault - " + versionText());
  EXPECT_TRUE(form.visible);
  EXPECT_FALSE(app.frmSplash.visible);
  EXPECT_EQ(app.frmSplash.lblVersion.caption, "Version " + versionText());
  EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), std::vector<std::string>{});
  EXPECT_EQ(form.lstAircraft.count(), 2);
  EXPECT_EQ(form.lstAircraft.selected(), 2);
  EXPECT_EQ(app.ACRoot, "C:\\FS\\aircraft\\");
  EXPECT_TRUE(drive.exists("C:\\Packs\\Scenery"));
  EXPECT_EQ(form.top, 300);
  EXPECT_EQ(form.left, 0) << "a left that was never stored";
  EXPECT_EQ(form.height, std::lround(12000 / aspect));
  EXPECT_EQ(form.windowState, ui::Form::State::maximised);
  EXPECT_TRUE(windows.boxes.empty());
}

TEST_F(StartupTest, TheRememberedRowIsCheckedAgainstTheList) {
  for (const char* stored : {"0", "", "3", "-1", "row", "1e9"}) {
    settings.values["General/LastACSelected"] = stored;
    Form_Load(app);
    EXPECT_EQ(form.lstAircraft.selected(), 1) << stored;
  }
}

TEST_F(StartupTest, TheRememberedRowIsTheAircraft) {
  Form_Load(app);
  form.lstAircraft.select(2);
  Form_Unload(app);
  drive.write("C:\\FS\\SKV_AC.lst",
              "b\x01"
              "C:\\FS\\aircraft\\b\\\r\na\x01"
              "C:\\FS\\aircraft\\a\\\r\nc\x01"
              "C:\\FS\\aircraft\\c\\\r\n");
  app.ending = false;
  form.lstAircraft.select(3);
  Form_Load(app);
  EXPECT_EQ(form.lstAircraft.text(form.lstAircraft.selected()), "b");
}

TEST_F(StartupTest, ListsLookAsTheyDidAtTheEndOfTheLastRun) {
  Form_Load(app);
  form.lstAircraft.setColumnWidth(0, 4000);
  form.lstAircraft.sort(1, ui::SortOrder::descending);
  Form_Unload(app);
  form.lstAircraft.setColumnWidth(0, 6350);
  form.lstAircraft.clearSort();
  settings.values["Lists/lstPanel"] = "10,2000";
  settings.values["Lists/lstScenery"] = "5000,2000,900,0,0,0,0,0,0";
  settings.values["Lists/lstSound"] = "5000";
  app.ending = false;
  Form_Load(app);
  const auto width = [](const ui::ListView& list, std::size_t column) {
    return list.columns()[column].width;
  };
  EXPECT_EQ(width(form.lstAircraft, 0), 4000);
  EXPECT_EQ(rows(form.lstAircraft)[0], "b|C:\\FS\\aircraft\\b\\");
  EXPECT_EQ(form.lstAircraft.sortOrder(), ui::SortOrder::descending);
  EXPECT_EQ(width(form.lstPanel, 0), 6350) << "too narrow to be seen";
  EXPECT_EQ(width(form.lstPanel, 1), 2000);
  EXPECT_EQ(width(form.lstScenery, 0), 5000);
  EXPECT_EQ(width(form.lstScenery, 2), 0) << "a column of data stays out of sight";
  EXPECT_EQ(width(form.lstSound, 0), 6350) << "of a list with other columns";
}

TEST_F(StartupTest, SettingsThatCannotBeReadAreAskedForAgain) {
  settings.failedReads = 2;
  windows.answers = {ui::Answer::yes, ui::Answer::yes};
  EXPECT_TRUE(settingsCanBeRead(windows, settings));
  EXPECT_EQ(windows.boxes.size(), 2U);
  EXPECT_NE(windows.boxes[0].text.find("settings.ini"), std::string::npos);
  settings.failedReads = 1;
  EXPECT_FALSE(settingsCanBeRead(windows, settings)) << "answered No";
}

TEST_F(StartupTest, AFirstStartCanBeQuit) {
  settings.values.clear();
  windows.onShow[&app.frmSettings] = [this] {
    EXPECT_TRUE(app.frmSettings.lblIntro.visible);
    EXPECT_TRUE(app.frmSettings.btnQuit.visible);
    app.frmSettings.btnQuit.click();
  };
  Form_Load(app);
  EXPECT_TRUE(app.ending);
  EXPECT_FALSE(form.visible || app.frmSplash.visible || app.frmSettings.visible);
  EXPECT_TRUE(settings.values.empty());
  app.ending = false;
  app.starting = false;
  windows.onShow[&app.frmSettings] = [this] {
    EXPECT_FALSE(app.frmSettings.btnQuit.visible) << "a first start only";
    app.frmSettings.closed();
  };
  form.mnuFileSettings.click();
}

TEST_F(StartupTest, NothingIsMadeWhereTheSimulatorsDiskIsAway) {
  ASSERT_TRUE(disk.makeFolder("C:\\mnt").ok());
  settings.values["General/FSRoot"] = "C:\\mnt\\FS\\";
  settings.values["General/PacksDir"] = "C:\\mnt\\FS\\Packs\\";
  Form_Load(app);
  EXPECT_TRUE(form.visible);
  EXPECT_EQ(drive.tree("C:\\mnt"), std::vector<std::string>{});
  EXPECT_NE(form.lblStatus.notice->find("C:\\mnt\\FS\\"), std::string::npos);
  EXPECT_NE(form.lblStatus.notice->find("F2"), std::string::npos);
  settings.values["General/PacksDir"] = "C:\\FS\\deep\\Packs\\";
  Form_Load(app);
  EXPECT_TRUE(drive.exists("C:\\FS\\deep\\Packs\\Scenery")) << "that disk is there";
}

TEST_F(StartupTest, ACloseRequestDuringAnOperationAsks) {
  EXPECT_TRUE(frmMain_QueryUnload(app));
  EXPECT_TRUE(windows.boxes.empty());
  const LongOperation busy(app);
  windows.answers = {ui::Answer::yes, ui::Answer::no};
  EXPECT_FALSE(frmMain_QueryUnload(app));
  EXPECT_FALSE(app.stopRequested) << "the user waits";
  EXPECT_FALSE(frmMain_QueryUnload(app));
  EXPECT_TRUE(app.stopRequested);
  EXPECT_FALSE(frmMain_QueryUnload(app));
  EXPECT_EQ(windows.boxes.size(), 2U) << "asked no more";
}

TEST_F(StartupTest, ClosingDuringTheFirstSettingsEndsTheStart) {
  settings.values.clear();
  windows.onShow[&app.frmSettings] = [this] { Form_Unload(app); };
  Form_Load(app);
  EXPECT_FALSE(form.visible || app.frmSplash.visible);
  EXPECT_EQ(settings.values.count("General/AppVersion"), 0U);
}

TEST_F(StartupTest, WithoutAnyDriveTheBoxNamesWhatIsLookedFor) {
  DriveFileSystem none(drive.native() + "/nowhere");
  App other(Platform{none, settings, clock, shell, zip, {"\\", "\\"}}, windows);
  Form_Load(other);
  ASSERT_EQ(windows.boxes.size(), 1U);
  for (const char* place : {"SKYVAULT_DRIVES", "WINEPREFIX", "~/.wine/dosdevices"})
    EXPECT_NE(windows.boxes[0].text.find(place), std::string::npos) << place;
  EXPECT_TRUE(other.frmMain.visible);
}

TEST_F(StartupTest, AFirstStartLeadsThroughTheSettings) {
  settings.values.clear();
  windows.onShow[&app.frmSettings] = [this] {
    ++settingsShown;
    EXPECT_FALSE(form.visible);
    EXPECT_EQ(app.frmSettings.txtFSRoot.text, "C:\\Program Files\\Microsoft Games\\FS2002\\");
    app.frmSettings.txtFSRoot.text = "C:\\FS";
    app.frmSettings.txtFSRoot.lostFocus();
    app.frmSettings.btnOK.click();
  };
  Form_Load(app);
  EXPECT_EQ(settingsShown, 1);
  EXPECT_EQ(settings.values["General/FSRoot"], "C:\\FS\\");
  EXPECT_EQ(settings.values["General/HangarDir"], "C:\\FS\\SKV-Hangar\\");
  EXPECT_EQ(settings.values["General/PacksDir"], "C:\\FS\\SKV-Packages\\");
  EXPECT_EQ(settings.values["General/AppVersion"], versionText());
  EXPECT_TRUE(form.visible);
  EXPECT_EQ(form.lstAircraft.count(), 2);
  EXPECT_FALSE(drive.exists("C:\\Scenery")) << "no Packages folder, no stray scenery folder";
}

TEST_F(StartupTest, SettingsClosedWithoutOkGoOnAndAskAgain) {
  settings.values.clear();
  windows.onShow[&app.frmSettings] = [this] {
    ++settingsShown;
    app.frmSettings.closed();
  };
  Form_Load(app);
  EXPECT_EQ(settingsShown, 3) << "once for the start, once each for Hangar and Packages";
  EXPECT_TRUE(form.visible);
  EXPECT_EQ(app.FSRoot, "");
  EXPECT_EQ(settings.values["General/AppVersion"], versionText());
  EXPECT_EQ(form.lstAircraft.count(), 0);
  EXPECT_TRUE(windows.boxes.empty());
}

TEST_F(StartupTest, ANewVersionAsksOnce) {
  settings.values["General/AppVersion"] = "0.05.0001";
  windows.onShow[&app.frmSettings] = [this] {
    ++settingsShown;
    app.frmSettings.closed();
  };
  Form_Load(app);
  Form_Load(app);
  EXPECT_EQ(settingsShown, 1);
}

TEST_F(StartupTest, OldListFilesMoveAndAreNeverLost) {
  ASSERT_TRUE(disk.makeFolder("C:\\Program").ok());
  drive.write("C:\\Program\\SKV_AC.lst",
              "moved\x01"
              "C:\\FS\\aircraft\\m\\\r\n");
  drive.write("C:\\Program\\SKV_PN.lst",
              "kept\x01"
              "C:\\p\\\r\n");
  files.failWhen("copyFileDurably", "C:\\Program\\SKV_PN.lst", err::diskFull);
  Form_Load(app);
  EXPECT_EQ(rows(form.lstAircraft), std::vector<std::string>{"moved|C:\\FS\\aircraft\\m\\"});
  EXPECT_FALSE(drive.exists("C:\\Program\\SKV_AC.lst"));
  EXPECT_TRUE(drive.exists("C:\\Program\\SKV_PN.lst"));
  EXPECT_EQ(files.count("copyFile", "C:\\Program\\SKV_AC.lst"), 0)
      << "not only in the disk's cache";

  drive.write("C:\\FS\\SKV_PN.lst", "of the simulator");
  files.failWhen("attributes", "C:\\FS\\SKV_PN.lst", err::deviceIo);
  Form_Load(app);
  EXPECT_EQ(drive.read("C:\\FS\\SKV_PN.lst"), "of the simulator") << "who knows what stands there";
  EXPECT_TRUE(drive.exists("C:\\Program\\SKV_PN.lst"));
  files.failWhen("deleteFile", "C:\\Program\\SKV_PN.lst", err::permissionDenied);
  Form_Load(app);
  EXPECT_EQ(windows.boxes.size(), 1U) << "the next start would copy it over the newer list";
}

TEST_F(StartupTest, AMissingWorkingFolderEndsTheStartWithABox) {
  ASSERT_TRUE(disk.removeFolder("C:\\Temp\\SKVInstallTemp").ok());
  files.failWhen("makeFolder", "C:\\Temp\\SKVInstallTemp\\", err::pathFileAccess);
  Form_Load(app);
  EXPECT_EQ(windows.boxTexts().size(), 1U);
  EXPECT_TRUE(windows.boxTexts()[0].starts_with("Error #75\r\nPath/File access error"));
  EXPECT_TRUE(form.visible);
  EXPECT_EQ(form.lstAircraft.count(), 0);
}

TEST_F(StartupTest, ClosingStoresTheNormalWindowAndTheRow) {
  Form_Load(app);
  form.lstAircraft.select(2);
  form.left = 450;
  form.width = 13500;
  form.windowState = ui::Form::State::maximised;
  Form_Unload(app);
  EXPECT_EQ(settings.values["Window/MainState"], "2");
  EXPECT_EQ(settings.values["Window/MainLeft"], "450");
  EXPECT_EQ(settings.values["Window/MainWidth"], "13500");
  EXPECT_EQ(settings.values["General/LastACSelected"], "2");
  EXPECT_FALSE(form.visible);

  form.lstAircraft.remove(1);
  Form_Unload(app);
  EXPECT_EQ(settings.values["General/LastACSelected"], "2") << "one row leaves the old value";
}

}  // namespace
}  // namespace skv
