#include "aircraft/aircraft_cfg.h"

#include "support/program_fixture.h"

namespace skv::test {

const std::string cfg =
    "; a comment\r\n"
    "[fltsim.0]\r\ntitle=First\r\nsim=air\r\n\r\n"
    "[fltsim.1]\r\ntitle=Second\r\nsim=air\r\npanel=vfr\r\ndescription=Fast\\nand low\r\n"
    "[General]\r\natc_type=X\r\n"
    "[fltsim.3]\r\ntitle=Never reached\r\n";

class AircraftCfgTest : public ProgramTest {
 protected:
  AircraftCfgTest() {
    app.ACRoot = "C:\\FS\\aircraft\\";
    app.ListDir = "C:\\FS\\";
    drive.write(current, cfg);
    drive.write(other + "aircraft.cfg", "[fltsim.0]\r\ntitle=Other\r\n");
    form.lstAircraft.add("Plane", {folder});
    form.lstAircraft.add("Other", {other});
  }
  void selectVariation(int row) {
    form.lstACVersions.select(row);
    form.lstACVersions.click();
  }
  // As at the first click on the aircraft, whose files stand as they came.
  void startAnew() {
    windows.boxes.clear();
    drive.write(current, cfg);
    drive.remove(original);
    ClearInfoTab(app);
    form.lstAircraft.select(1);
    lstAircraft_Click(app);
  }
  bool saved(const std::string& text) { return holds(drive.read(current), text); }
  const std::string folder = "C:\\FS\\aircraft\\plane\\";
  const std::string current = folder + "Aircraft.cfg", original = folder + "Aircraft.preSKV.cfg";
  const std::string other = "C:\\FS\\aircraft\\other\\";
};

TEST_F(AircraftCfgTest, SavingKeepsTheOriginalOnceAndEveryOtherByte) {
  lstAircraft_Click(app);
  EXPECT_EQ(rows(form.lstACVersions), (Lines{"00|First", "01|Second"}));
  selectVariation(2);
  EXPECT_EQ(form.txtPanel.text, "vfr");
  EXPECT_EQ(form.txtACDescription.text, "Fast\\nand low");
  form.txtPanel.text = "";
  form.txtATCID.text = "N42";
  form.txtACDescription.text = "One\r\nTwo\nThree";
  btnSaveACInfo_Click(app);
  EXPECT_EQ(drive.read(current),
            "; a comment\r\n"
            "[fltsim.0]\r\ntitle=First\r\nsim=air\r\n\r\n"
            "[fltsim.1]\r\ntitle=Second\r\nsim=air\r\npanel=\r\ndescription=One\\nTwo\\nThree\r\n"
            "model=\r\nsound=\r\ntexture=\r\natc_id=N42\r\natc_airline=\r\natc_flight_number=\r\n"
            "ui_manufacturer=\r\nui_type=\r\nui_variation=\r\n"
            "[General]\r\natc_type=X\r\n"
            "[fltsim.3]\r\ntitle=Never reached\r\n");
  EXPECT_EQ(form.lstACVersions.selected(), 1) << "the tab is rebuilt";
  EXPECT_TRUE(form.btnACRestoreOriginal.enabled);

  drive.write(current, "[fltsim.0]\r\ntitle = \"Quoted\"\r\nsim=air\r\n");
  lstAircraft_Click(app);
  form.txtACTitle.text = "Quoted";
  form.txtATCID.text = "N43";
  btnSaveACInfo_Click(app);
  EXPECT_TRUE(saved("title = \"Quoted\"\r\n")) << "what is unchanged stays as it was written";
  btnSaveACInfo_Click(app);
  EXPECT_EQ(drive.read(original), cfg);

  windows.answers = {ui::Answer::no, ui::Answer::yes};
  btnACRestoreOriginal_Click(app);
  EXPECT_TRUE(drive.exists(original));
  btnACRestoreOriginal_Click(app);
  EXPECT_EQ(drive.read(current), cfg);
  EXPECT_FALSE(drive.exists(original));
  EXPECT_FALSE(form.btnACRestoreOriginal.enabled);
  EXPECT_EQ(form.txtACTitle.text, "First");
}

TEST_F(AircraftCfgTest, WhatCannotBeSavedChangesNothingAndIsTold) {
  const std::string before = drive.read(other + "aircraft.cfg");
  const std::string theirs = "[fltsim.0]\r\ntitle=First\r\n";
  const auto title = [&](const char* text) {
    return [this, text] { form.txtACTitle.text = text; };
  };
  const auto fails = [&](const char* call, const std::string& file) {
    return [=, this] { files.failWhen(call, file, err::deviceIo); };
  };
  const auto changed = [&] { drive.write(current, theirs); };
  const auto nothing = [] {};
  const auto reload = [&] {
    lstAircraft_Click(app);
    files.heal();
  };
  const auto variation = [&] {
    selectVariation(2);
    files.heal();
  };
  const struct {
    const char* what;
    std::function<void()> spoil, then;
    std::string left = cfg;
  } cases[] = {{"boxes that show nothing", fails("readFile", current), reload},
               {"the variation unread", fails("readFile", current), variation},
               {"the variation gone", changed, variation, theirs},
               {"changed by another program", changed, title("Mine"), theirs},
               {"another row", [&] { form.lstAircraft.select(2); }, nothing},
               {"another variation", [&] { form.lstACVersions.select(2); }, nothing},
               {"unread", fails("readFile", current), nothing},
               {"a backup of which the disk does not tell", fails("attributes", original), nothing},
               {"a backup that cannot be made", fails("copyFileDurably", current), nothing},
               {"a full disk", fails("replaceFile", current), nothing},
               {"no title", title("\"\""), nothing},
               {"what the file cannot hold", title("\u0141\u00f3d\u017a"), nothing}};
  for (const auto& [what, spoil, then, left] : cases) {
    SCOPED_TRACE(what);
    startAnew();
    spoil();
    then();
    btnSaveACInfo_Click(app);
    files.heal();
    ASSERT_EQ(windows.boxes.size(), 1U);
    EXPECT_TRUE(windows.boxes[0].text.starts_with("The aircraft could not be saved.\r\n"));
    EXPECT_GT(windows.boxes[0].text.size(), 50U) << "no reason in " << windows.boxes[0].text;
    EXPECT_EQ(drive.read(current), left);
    EXPECT_FALSE(drive.exists(original));
    EXPECT_EQ(drive.read(other + "aircraft.cfg"), before);
  }
  expectTold("\"\u0141\u017a\"");  // names the characters
}

TEST_F(AircraftCfgTest, EditsDoNotGoWithoutAQuestion) {
  for (const bool variation : {false, true}) {  // a click on another one, or on another aircraft
    for (const auto& [answer, full] :
         {std::pair{ui::Answer::cancel, false}, {no, false}, {yes, false}, {yes, true}}) {
      SCOPED_TRACE(std::to_string(static_cast<int>(answer)) + (variation ? " variation" : " row"));
      const bool goes = answer == no || (answer == yes && !full);
      startAnew();
      form.txtATCID.text = "N42";
      form.lstAircraft.click();
      EXPECT_EQ(form.txtATCID.text, "N42") << "a click on the row that they belong to";
      windows.answers = {answer};
      if (full) files.failWhen("replaceFile", current, err::diskFull);
      variation ? selectVariation(2) : select(form.lstAircraft, 2);
      files.heal();
      EXPECT_EQ(windows.boxes.size(), full ? 2U : 1U);
      EXPECT_EQ(windows.boxes[0].text, "Save the changes of \"First\"?");
      EXPECT_EQ(form.lstAircraft.selected(), goes && !variation ? 2 : 1);
      EXPECT_EQ(form.lstACVersions.selected(), goes && variation ? 2 : 1);
      EXPECT_EQ(form.txtATCID.text, goes ? "" : "N42");
      EXPECT_EQ(form.txtACTitle.text, !goes ? "First" : variation ? "Second" : "Other");
      EXPECT_EQ(saved("atc_id=N42"), goes && answer == yes);
      windows.answers = {yes};
      EXPECT_TRUE(mayLeaveInfo(app));
      EXPECT_EQ(saved("atc_id=N42"), answer != no) << "what has stayed is saved by the next try";
    }
  }
}

}  // namespace skv::test
