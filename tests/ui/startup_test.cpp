#include "ui/startup.h"

#include <cmath>

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
                                            {"General/AppVersion", "0.06.0129"}})
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
  EXPECT_EQ(form.caption, "FS Skyvault - 0.06.0129");
  EXPECT_TRUE(form.visible);
  EXPECT_FALSE(app.frmSplash.visible);
  EXPECT_EQ(app.frmSplash.lblVersion.caption, "Version 0.06.0129");
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
  EXPECT_EQ(settings.values["General/AppVersion"], "0.06.0129");
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
  EXPECT_EQ(settings.values["General/AppVersion"], "0.06.0129");
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
  files.failWhen("copyFile", "C:\\Program\\SKV_PN.lst", err::diskFull);
  Form_Load(app);
  EXPECT_EQ(rows(form.lstAircraft), std::vector<std::string>{"moved|C:\\FS\\aircraft\\m\\"});
  EXPECT_FALSE(drive.exists("C:\\Program\\SKV_AC.lst"));
  EXPECT_TRUE(drive.exists("C:\\Program\\SKV_PN.lst"));
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
