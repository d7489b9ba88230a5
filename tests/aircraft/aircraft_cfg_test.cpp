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

// What stops a save is told; the file, its missing backup and what was typed stay, and the next try
// saves.
TEST_F(AircraftCfgTest, ASaveThatCannotBeSafeChangesNothingAndCanBeRepeated) {
  const struct {
    const char *operation, *file;
    int error;
    const char* told;
  } faults[] = {
      {"attributes", "Aircraft.preSKV.cfg", err::deviceIo, "Device I/O error"},
      {"attributes", "Aircraft.preSKV.cfg", err::permissionDenied, "Permission denied"},
      {"copyFileDurably", "Aircraft.cfg", err::diskFull, "original cannot be kept"},
      {"readFile", "aircraft.cfg", err::deviceIo, "Device I/O error"},
      {"replaceFile", "Aircraft.cfg", err::diskFull, "Disk full"},
  };
  for (const auto& [operation, file, error, told] : faults) {
    SCOPED_TRACE(std::string(operation) + " " + std::to_string(error));
    drive.write(path("Aircraft.cfg"), cfg);
    drive.remove(path("Aircraft.preSKV.cfg"));
    lstAircraft_Click(app);
    form.txtACTitle.text = "Changed";
    files.failWhen(operation, path(file), error);
    windows.boxes.clear();
    btnSaveACInfo_Click(app);
    ASSERT_TRUE(files.heal());
    ASSERT_EQ(windows.boxes.size(), 1U);
    EXPECT_NE(windows.boxes[0].text.find(told), std::string::npos) << windows.boxes[0].text;
    EXPECT_EQ(drive.read(path("Aircraft.cfg")), cfg);
    EXPECT_FALSE(drive.exists(path("Aircraft.preSKV.cfg"))) << "a backup of nothing";
    EXPECT_FALSE(form.btnACRestoreOriginal.enabled);
    EXPECT_EQ(form.txtACTitle.text, "Changed");
    btnSaveACInfo_Click(app);
    EXPECT_NE(drive.read(path("Aircraft.cfg")).find("title=Changed"), std::string::npos);
    EXPECT_EQ(drive.read(path("Aircraft.preSKV.cfg")), cfg);
  }
}

TEST_F(AircraftCfgTest, ABackupThatOneLookMissesIsNotOverwritten) {
  drive.write(path("Aircraft.preSKV.cfg"), "the original");
  lstAircraft_Click(app);
  form.txtACTitle.text = "Changed";
  files.failWhen("attributes", path("Aircraft.preSKV.cfg"), err::deviceIo);
  btnSaveACInfo_Click(app);
  files.heal();
  btnSaveACInfo_Click(app);
  EXPECT_EQ(drive.read(path("Aircraft.preSKV.cfg")), "the original");
}

// Boxes are saved where they were filled from, or nowhere.
TEST_F(AircraftCfgTest, BoxesThatShowNothingOrSomethingElseAreNotSaved) {
  const std::string other = "C:\\FS\\aircraft\\other\\";
  drive.write(other + "aircraft.cfg", cfg);
  form.lstAircraft.add("Other", {other});
  const struct {
    const char* what;
    std::function<void()> spoil;
  } cases[] = {
      {"unread",
       [&] {
         files.failWhen("readFile", path("aircraft.cfg"), err::deviceIo);
         lstAircraft_Click(app);
       }},
      {"the variation unread",
       [&] {
         lstAircraft_Click(app);
         files.failWhen("readFile", path("aircraft.cfg"), err::deviceIo);
         selectVariation(2);
         EXPECT_NE(form.lblStatus.notice->find("could not be read"), std::string::npos);
       }},
      {"the variation gone",
       [&] {
         lstAircraft_Click(app);
         drive.write(path("Aircraft.cfg"), "[fltsim.0]\r\ntitle=First\r\n");
         selectVariation(2);
       }},
      {"changed by another program",
       [&] {
         lstAircraft_Click(app);
         form.txtACTitle.text = "Mine";
         drive.write(path("Aircraft.cfg"), "[fltsim.0]\r\ntitle=First\r\nsim=theirs\r\n");
       }},
      {"another row",
       [&] {
         lstAircraft_Click(app);
         form.lstAircraft.select(2);
       }},
      {"another variation",
       [&] {
         lstAircraft_Click(app);
         form.lstACVersions.select(2);
       }},
      {"a character that the file cannot hold",
       [&] {
         lstAircraft_Click(app);
         form.txtACTitle.text = "\u0141\u00f3d\u017a";
       }},
  };
  for (const auto& [what, spoil] : cases) {
    SCOPED_TRACE(what);
    drive.write(path("Aircraft.cfg"), cfg);
    form.lstAircraft.select(1);
    windows.boxes.clear();
    windows.answers = {ui::Answer::no};  // what the last case typed may go
    ClearInfoTab(app);
    spoil();
    files.heal();
    const std::string before = drive.read(path("Aircraft.cfg"));
    btnSaveACInfo_Click(app);
    ASSERT_EQ(windows.boxes.size(), 1U);
    EXPECT_TRUE(windows.boxes[0].text.starts_with("The aircraft could not be saved.\r\n"));
    EXPECT_GT(windows.boxes[0].text.size(), 50U) << "no reason in " << windows.boxes[0].text;
    EXPECT_EQ(drive.read(path("Aircraft.cfg")), before);
    EXPECT_FALSE(drive.exists(path("Aircraft.preSKV.cfg")));
    EXPECT_EQ(drive.read(other + "aircraft.cfg"), cfg);
  }
  EXPECT_NE(windows.boxes[0].text.find("\"\u0141\u017a\""), std::string::npos)
      << "names the characters";
}

TEST_F(AircraftCfgTest, WhatStandsWithoutARowOrABoxToFillTakesNoInput) {
  lstAircraft_Click(app);
  const std::vector<ui::Control*> filled = {&form.btnSaveACInfo, &form.txtACTitle,
                                            &form.txtACDescription, &form.mnuViewACCfgPN};
  const std::vector<ui::Control*> ofRow = {&form.btnHangar, &form.mnuViewACCfgAC, &form.mnuListOpen,
                                           &form.mnuListHangar, &form.mnuListRename};
  const auto expectEnabled = [&](bool whenFilled, bool withRow) {
    for (const ui::Control* control : filled)
      EXPECT_EQ(control->enabled, whenFilled) << control->name();
    for (const ui::Control* control : ofRow)
      EXPECT_EQ(control->enabled, withRow) << control->name();
  };
  expectEnabled(true, true);
  drive.remove(path("Aircraft.cfg"));
  lstAircraft_Click(app);
  expectEnabled(false, true);
  EXPECT_NE(form.lstACVersions.emptyText->find("is not there"), std::string::npos);
  form.lstAircraft.clear();
  lstAircraft_Click(app);
  expectEnabled(false, false);
}

TEST_F(AircraftCfgTest, EditsDoNotGoWithoutAQuestion) {
  const std::string other = "C:\\FS\\aircraft\\other\\";
  drive.write(other + "aircraft.cfg", "[fltsim.0]\r\ntitle=Other\r\n");
  form.lstAircraft.add("Other", {other});
  const struct {
    bool variation;  // a click on another variation, or on another aircraft
    ui::Answer answer;
    bool goes, saves;
  } cases[] = {{false, ui::Answer::cancel, false, false}, {true, ui::Answer::cancel, false, false},
               {false, ui::Answer::no, true, false},      {true, ui::Answer::no, true, false},
               {false, ui::Answer::yes, true, true},      {true, ui::Answer::yes, true, true}};
  for (const auto& [variation, answer, goes, saves] : cases) {
    SCOPED_TRACE(std::to_string(static_cast<int>(answer)) + (variation ? " variation" : " row"));
    drive.write(path("Aircraft.cfg"), cfg);
    ClearInfoTab(app);
    form.lstAircraft.select(1);
    form.lstAircraft.click();
    form.txtATCID.text = "N42";
    form.lstAircraft.click();
    EXPECT_EQ(form.txtATCID.text, "N42") << "a click on the row that they belong to";
    windows.boxes.clear();
    windows.answers = {answer};
    if (variation) {
      form.lstACVersions.select(2);
      form.lstACVersions.click();
    } else {
      form.lstAircraft.select(2);
      form.lstAircraft.itemClick();
    }
    EXPECT_EQ(windows.boxTexts(), std::vector<std::string>{"Save the changes of \"First\"?"});
    EXPECT_EQ(form.lstAircraft.selected(), goes && !variation ? 2 : 1);
    EXPECT_EQ(form.lstACVersions.selected(), goes && variation ? 2 : 1);
    EXPECT_EQ(form.txtATCID.text, goes ? "" : "N42");
    EXPECT_EQ(form.txtACTitle.text, !goes ? "First" : variation ? "Second" : "Other");
    EXPECT_EQ(drive.read(path("Aircraft.cfg")).find("atc_id=N42") != std::string::npos, saves);
    windows.boxes.clear();
    EXPECT_EQ(mayLeaveInfo(app), goes) << "the answers have run out: Cancel";
    EXPECT_EQ(windows.boxes.size(), goes ? 0U : 1U);
  }
  drive.write(path("Aircraft.cfg"), cfg);
  ClearInfoTab(app);
  form.lstAircraft.select(1);
  form.lstAircraft.click();
  form.txtATCID.text = "N42";
  files.failWhen("replaceFile", path("Aircraft.cfg"), err::diskFull);
  windows.answers = {ui::Answer::yes};
  form.lstAircraft.select(2);
  form.lstAircraft.itemClick();
  EXPECT_EQ(form.lstAircraft.selected(), 1) << "what could not be saved stays";
  EXPECT_EQ(form.txtATCID.text, "N42");
}

TEST_F(AircraftCfgTest, ReadOnlyIsNoObstacleAndStays) {
  const auto isReadOnly = [this](const std::string& name) {
    return disk.attributes(path(name)).value().readOnly;
  };
  for (const bool readOnly : {true, false}) {
    ASSERT_TRUE(disk.setAttributes(path("Aircraft.cfg"), {.readOnly = readOnly}).ok());
    lstAircraft_Click(app);
    form.txtACTitle.text = "Changed";
    btnSaveACInfo_Click(app);
    EXPECT_NE(drive.read(path("Aircraft.cfg")).find("title=Changed"), std::string::npos);
    EXPECT_EQ(isReadOnly("Aircraft.cfg"), readOnly);
    // The user has changed both meanwhile.
    ASSERT_TRUE(disk.setAttributes(path("Aircraft.cfg"), {.readOnly = !readOnly}).ok());
    ASSERT_TRUE(disk.setAttributes(path("Aircraft.preSKV.cfg"), {.readOnly = readOnly}).ok());
    windows.answers = {ui::Answer::yes};
    btnACRestoreOriginal_Click(app);
    EXPECT_EQ(windows.boxTexts().back(), "Aircraft reset to original version!");
    EXPECT_EQ(drive.read(path("Aircraft.cfg")), cfg);
    EXPECT_EQ(isReadOnly("Aircraft.cfg"), readOnly);
    EXPECT_FALSE(drive.exists(path("Aircraft.preSKV.cfg")));
  }
  ASSERT_TRUE(disk.setAttributes(path("Aircraft.cfg"), {.readOnly = true}).ok());
  lstAircraft_Click(app);
  form.txtACTitle.text = "Changed";
  files.failWhen("replaceFile", path("Aircraft.cfg"), err::diskFull);
  btnSaveACInfo_Click(app);
  EXPECT_TRUE(isReadOnly("Aircraft.cfg")) << "a failure puts it back";
  EXPECT_FALSE(drive.exists(path("Aircraft.preSKV.cfg")));
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
  EXPECT_EQ(form.lblSNStatus.colour, ui::defaultColour);
  EXPECT_EQ(form.lstSound.selected(), 1);
  selectVariation(2);
  EXPECT_EQ(form.lblPNStatus.caption, "Original");
  EXPECT_EQ(form.lstPanel.selected(), 0);
  EXPECT_EQ(form.lstPanel.visibleRow(), 2) << "the row that was assigned came into view";

  // A click in a library shows the state of its own row.
  drive.write("C:\\FS\\aircraft\\x\\panel.cfg", "[fltsim]\r\nalias=far\\panel\r\n");
  drive.write("C:\\FS\\aircraft\\x\\sound\\sound.cfg", "[fltsim]\r\nalias=far\\sound\r\n");
  for (ui::ListView* list : {&form.lstPanel, &form.lstSound}) {
    list->select(list->add("x", {"C:\\FS\\aircraft\\x\\"}));
    list->click();
  }
  EXPECT_EQ(form.lblPNStatus.caption, "Alias: far\\panel");
  EXPECT_EQ(form.lblSNStatus.caption, "Alias: far\\sound");
  files.failWhen("readFile", "C:\\FS\\aircraft\\x\\panel.cfg", err::deviceIo);
  form.lstPanel.click();
  EXPECT_NE(form.lblPNStatus.caption->find("could not be read"), std::string::npos);
}

}  // namespace
}  // namespace skv
