#include "aircraft/aircraft_cfg.h"

#include "support/program_fixture.h"

namespace skv {
namespace {

constexpr const char* folder = "C:\\FS\\aircraft\\plane\\";
const std::string cfg =
    "; a comment\r\n"
    "[fltsim.0]\r\ntitle=First\r\nsim=air\r\n\r\n"
    "[fltsim.1]\r\ntitle=Second\r\nsim=air\r\npanel=vfr\r\ndescription=Fast\\nand low\r\n"
    "[General]\r\natc_type=X\r\n"
    "[fltsim.3]\r\ntitle=Never reached\r\n";

class AircraftCfgTest : public test::ProgramTest {
 protected:
  AircraftCfgTest() {
    app.ACRoot = "C:\\FS\\aircraft\\";
    app.ListDir = "C:\\FS\\";
    drive.write(path("Aircraft.cfg"), cfg);
    app.frmMain.lstAircraft.add("Plane", {folder});
  }
  static std::string path(const std::string& name) { return folder + name; }
  void selectVariation(int row) {
    app.frmMain.lstACVersions.select(row);
    lstACVersions_Click(app);
  }
  ui::FrmMain& form = app.frmMain;
};

TEST_F(AircraftCfgTest, ShowsTheVariationsAndTheKeysOfTheSelectedOne) {
  lstAircraft_Click(app);
  EXPECT_EQ(rows(form.lstACVersions), (std::vector<std::string>{"00|First", "01|Second"}));
  EXPECT_EQ(form.txtACTitle.text, "First");
  EXPECT_EQ(form.txtPanel.text, "");
  EXPECT_FALSE(form.btnACRestoreOriginal.enabled);
  selectVariation(2);
  EXPECT_EQ(form.txtACTitle.text, "Second");
  EXPECT_EQ(form.txtPanel.text, "vfr");
  EXPECT_EQ(form.txtACDescription.text, "Fast\\nand low");

  std::string many;
  for (int n = 0; n <= 100; ++n) many += "[fltsim." + std::to_string(n) + "]\r\ntitle=T\r\n";
  drive.write(path("Aircraft.cfg"), many);
  files.resetCounts();
  lstAircraft_Click(app);
  EXPECT_EQ(form.lstACVersions.text(101), "100");
  EXPECT_EQ(files.count("readFile", path("aircraft.cfg")), 1) << "one reading for all variations";

  drive.remove(path("Aircraft.cfg"));
  lstAircraft_Click(app);
  EXPECT_EQ(form.lstACVersions.count(), 0);
  EXPECT_EQ(form.txtACTitle.text, "");
}

TEST_F(AircraftCfgTest, SavingKeepsTheOriginalOnceAndEveryOtherByte) {
  lstAircraft_Click(app);
  selectVariation(2);
  form.txtPanel.text = "";
  form.txtATCID.text = "N42";
  form.txtACDescription.text = "One\r\nTwo\nThree";
  btnSaveACInfo_Click(app);
  const std::string saved = drive.read(path("Aircraft.cfg"));
  EXPECT_EQ(saved,
            "; a comment\r\n"
            "[fltsim.0]\r\ntitle=First\r\nsim=air\r\n\r\n"
            "[fltsim.1]\r\ntitle=Second\r\nsim=air\r\npanel=\r\ndescription=One\\nTwo\\nThree\r\n"
            "model=\r\nsound=\r\ntexture=\r\natc_id=N42\r\natc_airline=\r\natc_flight_number=\r\n"
            "ui_manufacturer=\r\nui_type=\r\nui_variation=\r\n"
            "[General]\r\natc_type=X\r\n"
            "[fltsim.3]\r\ntitle=Never reached\r\n");
  EXPECT_EQ(drive.read(path("Aircraft.preSKV.cfg")), cfg);
  EXPECT_EQ(form.lstACVersions.selected(), 1) << "the tab is rebuilt";
  EXPECT_TRUE(form.btnACRestoreOriginal.enabled);

  form.txtACTitle.text = "Changed again";
  btnSaveACInfo_Click(app);
  EXPECT_EQ(drive.read(path("Aircraft.preSKV.cfg")), cfg);
  EXPECT_EQ(form.lstAircraft.text(1), "Plane");

  windows.answers = {ui::Answer::no, ui::Answer::yes};
  btnACRestoreOriginal_Click(app);
  EXPECT_TRUE(drive.exists(path("Aircraft.preSKV.cfg")));
  btnACRestoreOriginal_Click(app);
  EXPECT_EQ(drive.read(path("Aircraft.cfg")), cfg);
  EXPECT_FALSE(drive.exists(path("Aircraft.preSKV.cfg")));
  EXPECT_FALSE(form.btnACRestoreOriginal.enabled);
  EXPECT_EQ(windows.boxTexts().back(), "Aircraft reset to original version!");
}

TEST_F(AircraftCfgTest, NoSaveWithoutABackupAndAlwaysOneOfTheTwoFiles) {
  lstAircraft_Click(app);
  form.txtACTitle.text = "Changed";
  files.failWhen("copyFile", path("Aircraft.cfg"), err::diskFull);
  btnSaveACInfo_Click(app);
  EXPECT_EQ(drive.read(path("Aircraft.cfg")), cfg);
  EXPECT_EQ(windows.boxes.size(), 1U);
  EXPECT_EQ(form.txtACTitle.text, "Changed") << "what was typed is kept";

  files.heal();
  ASSERT_TRUE(disk.setAttributes(path("Aircraft.cfg"), {.readOnly = true}).ok());
  btnSaveACInfo_Click(app);
  EXPECT_EQ(drive.read(path("Aircraft.cfg")), cfg);
  EXPECT_EQ(windows.boxes.size(), 2U);

  windows.answers = {ui::Answer::yes};
  btnACRestoreOriginal_Click(app);
  EXPECT_TRUE(drive.exists(path("Aircraft.cfg")));
  EXPECT_EQ(windows.boxes.size(), 4U) << "the question and the failure";
}

TEST_F(AircraftCfgTest, SaveKilledAnywhereLeavesTheOldFileOrTheNew) {
  for (int call = 1;; ++call) {
    drive.write(path("Aircraft.cfg"), cfg);
    drive.remove(path("Aircraft.preSKV.cfg"));
    lstAircraft_Click(app);
    form.txtACTitle.text = "New";
    files.killAt(call);
    bool killed = false;
    try {
      btnSaveACInfo_Click(app);
    } catch (const test::Killed&) {
      killed = true;
    }
    files.heal();
    const std::string now = drive.read(path("Aircraft.cfg"));
    if (now != cfg) {
      EXPECT_NE(now.find("title=New"), std::string::npos) << call;
      EXPECT_EQ(drive.read(path("Aircraft.preSKV.cfg")), cfg) << call;
    }
    if (!killed) {
      EXPECT_NE(now, cfg);
      break;
    }
  }
}

TEST_F(AircraftCfgTest, NothingHappensWithoutASelectedRow) {
  form.lstAircraft.clear();
  form.txtPanel.text = "vfr";
  btnSaveACInfo_Click(app);
  btnACRestoreOriginal_Click(app);
  mnuViewACCfgAC_Click(app);
  mnuViewACCfgPN_Click(app);
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_TRUE(shell.edited.empty());
}

TEST_F(AircraftCfgTest, OpensTheFilesOfTheVariation) {
  lstAircraft_Click(app);
  selectVariation(2);
  form.mnuViewACCfgAC.click();
  form.mnuViewACCfgPN.click();
  form.mnuViewACCfgSN.click();
  form.mnuViewACCfgMD.click();
  EXPECT_EQ(shell.edited,
            (std::vector<std::string>{path("\\Aircraft.cfg"), path("panel.vfr\\panel.cfg"),
                                      path("sound\\Sound.cfg"), path("model\\Model.cfg")}));
  shell.editOutcome = Outcome::failure(err::fileNotFound, "no editor");
  form.mnuViewACCfgAC.click();
  EXPECT_EQ(windows.boxes.size(), 1U);
}

TEST_F(AircraftCfgTest, EnterInTheDescriptionTypesTheLineBreakOfTheFile) {
  int key = 13;
  EXPECT_EQ(txtACDescription_KeyPress(key), "\\n");
  EXPECT_EQ(key, 0);
  key = 'a';
  EXPECT_EQ(txtACDescription_KeyPress(key), "");
  EXPECT_EQ(key, 'a');
}

TEST_F(AircraftCfgTest, TabsShowTheAliasAndItsLibraryRow) {
  drive.write(path("panel\\panel.cfg"), "[FLTSIM]\r\nalias=Other\\Panel.ifr\r\n");
  drive.write(path("sound.cfg"), "[fltsim]\r\n");
  form.lstPanel.add("mine", {path("panel\\")});
  form.lstPanel.add("other", {"c:\\fs\\aircraft\\other\\panel.IFR\\"});
  form.lstSound.add("top", {folder});
  lstAircraft_Click(app);
  EXPECT_EQ(form.lblPNStatus.caption, "Alias: Other\\Panel.ifr");
  EXPECT_EQ(form.lblPNStatus.colour, 65280U);
  EXPECT_EQ(form.lstPanel.selected(), 2);
  EXPECT_EQ(app.PanelPicDir, "C:\\FS\\aircraft\\Other\\Panel.ifr\\");
  EXPECT_EQ(form.lblSNStatus.caption, "Original");
  EXPECT_EQ(form.lstSound.selected(), 1);
  selectVariation(2);
  EXPECT_EQ(form.lblPNStatus.caption, "Original");
  EXPECT_EQ(form.lstPanel.selected(), 0);
}

}  // namespace
}  // namespace skv
