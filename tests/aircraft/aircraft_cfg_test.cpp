#include "aircraft/aircraft_cfg.h"

#include "support/program_fixture.h"

namespace skv::test {

constexpr const char* folder = "C:\\FS\\aircraft\\plane\\";
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
  static std::string path(const std::string& name) { return folder + name; }
  void selectVariation(int row) {
    form.lstACVersions.select(row);
    form.lstACVersions.click();
  }
  // As at the first click on the aircraft, whose files stand as they came.
  void startAnew() {
    windows.boxes.clear();
    for (const std::string& file : {current, original}) disk.setAttributes(file, {}).skipped();
    drive.write(current, cfg);
    drive.remove(original);
    ClearInfoTab(app);
    form.lstAircraft.select(1);
    lstAircraft_Click(app);
  }
  bool saved(const std::string& text) { return holds(drive.read(current), text); }
  const std::string current = path("Aircraft.cfg"), original = path("Aircraft.preSKV.cfg");
  const std::string other = "C:\\FS\\aircraft\\other\\";
};

TEST_F(AircraftCfgTest, ShowsTheVariationsAndTheKeysOfTheSelectedOne) {
  lstAircraft_Click(app);
  EXPECT_EQ(rows(form.lstACVersions), (Lines{"00|First", "01|Second"}));
  EXPECT_EQ(form.txtACTitle.text, "First");
  EXPECT_EQ(form.txtPanel.text, "");
  EXPECT_FALSE(form.btnACRestoreOriginal.enabled);
  selectVariation(2);
  EXPECT_EQ(form.txtACTitle.text, "Second");
  EXPECT_EQ(form.txtPanel.text, "vfr");
  EXPECT_EQ(form.txtACDescription.text, "Fast\\nand low");
  files.failWhen("readFile", current, err::deviceIo);
  selectVariation(1);
  EXPECT_TRUE(holds(form.lblStatus.notice, "could not be read"));
  files.heal();
}

TEST_F(AircraftCfgTest, SavingKeepsTheOriginalOnceAndEveryOtherByte) {
  lstAircraft_Click(app);
  selectVariation(2);
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
  EXPECT_EQ(form.lblStatus.notice, "Variation 01 is saved in " + current);
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
  EXPECT_EQ(form.lstAircraft.text(1), "Plane");

  windows.answers = {ui::Answer::no, ui::Answer::yes};
  btnACRestoreOriginal_Click(app);
  EXPECT_TRUE(drive.exists(original));
  btnACRestoreOriginal_Click(app);
  EXPECT_EQ(drive.read(current), cfg);
  EXPECT_FALSE(drive.exists(original));
  EXPECT_FALSE(form.btnACRestoreOriginal.enabled);
  EXPECT_EQ(windows.boxTexts().back(), "Aircraft reset to original version!");
}

TEST_F(AircraftCfgTest, ASaveThatCannotBeSafeChangesNothingAndCanBeRepeated) {
  const struct {
    const char* operation;
    std::string file;
    int error;
    const char* told;
  } faults[] = {{"attributes", original, err::deviceIo, "Device I/O error"},
                {"attributes", original, err::permissionDenied, "Permission denied"},
                {"copyFileDurably", current, err::diskFull, "original cannot be kept"},
                {"readFile", current, err::deviceIo, "Device I/O error"},
                {"replaceFile", current, err::diskFull, "Disk full"}};
  for (const auto& [operation, file, error, told] : faults) {
    SCOPED_TRACE(std::string(operation) + " " + std::to_string(error));
    startAnew();
    ASSERT_TRUE(disk.setAttributes(current, {.readOnly = true}).ok());
    form.txtACTitle.text = "Changed";
    files.failWhen(operation, file, error);
    btnSaveACInfo_Click(app);
    ASSERT_TRUE(files.heal());
    expectTold(told);
    EXPECT_EQ(drive.read(current), cfg);
    EXPECT_TRUE(disk.attributes(current).value().readOnly) << "a failure puts it back";
    EXPECT_FALSE(drive.exists(original)) << "a backup of nothing";
    EXPECT_FALSE(form.btnACRestoreOriginal.enabled);
    EXPECT_EQ(form.txtACTitle.text, "Changed");
    btnSaveACInfo_Click(app);
    EXPECT_TRUE(saved("title=Changed"));
    EXPECT_EQ(drive.read(original), cfg);
  }
  ASSERT_TRUE(disk.setAttributes(original, {}).ok()) << "a copy of a read-only file";
  drive.write(original, "the original");
  files.failWhen("attributes", original, err::deviceIo);
  btnSaveACInfo_Click(app);
  files.heal();
  btnSaveACInfo_Click(app);
  EXPECT_EQ(drive.read(original), "the original") << "a backup that one look has missed";
}

TEST_F(AircraftCfgTest, BoxesThatShowNothingOrSomethingElseAreNotSaved) {
  const std::string before = drive.read(other + "aircraft.cfg");
  const std::string theirs = "[fltsim.0]\r\ntitle=First\r\n";
  const auto unread = [&] { files.failWhen("readFile", current, err::deviceIo); };
  const auto changed = [&] { drive.write(current, theirs); };
  const auto nothing = [] {};
  const auto reload = [&] { lstAircraft_Click(app); };
  const auto variation = [&] { selectVariation(2); };
  const struct {
    const char* what;
    std::function<void()> spoil, then;
    std::string left = cfg;
  } cases[] = {
      {"unread", unread, reload},
      {"the variation unread", unread, variation},
      {"the variation gone", changed, variation, theirs},
      {"changed by another program", changed, [&] { form.txtACTitle.text = "Mine"; }, theirs},
      {"another row", [&] { form.lstAircraft.select(2); }, nothing},
      {"another variation", [&] { form.lstACVersions.select(2); }, nothing},
      {"no title", [&] { form.txtACTitle.text = "\"\""; }, nothing},
      {"what the file cannot hold", [&] { form.txtACTitle.text = "\u0141\u00f3d\u017a"; },
       nothing}};
  for (const auto& [what, spoil, then, left] : cases) {
    SCOPED_TRACE(what);
    startAnew();
    spoil();
    then();
    files.heal();
    btnSaveACInfo_Click(app);
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
  const struct {
    bool variation;  // a click on another variation, or on another aircraft
    ui::Answer answer;
    int error = 0;  // of the save
  } cases[] = {{false, ui::Answer::cancel}, {true, ui::Answer::cancel},
               {false, ui::Answer::no},     {false, ui::Answer::yes},
               {true, ui::Answer::yes},     {false, ui::Answer::yes, err::diskFull}};
  for (const auto& [variation, answer, error] : cases) {
    const bool saves = answer == ui::Answer::yes && error == 0;
    const bool goes = saves || answer == ui::Answer::no;
    SCOPED_TRACE(std::to_string(static_cast<int>(answer)) + (variation ? " variation" : " row"));
    startAnew();
    form.txtATCID.text = "N42";
    form.lstAircraft.click();
    EXPECT_EQ(form.txtATCID.text, "N42") << "a click on the row that they belong to";
    windows.answers = {answer};
    if (error != 0) files.failWhen("replaceFile", current, error);
    if (variation) {
      selectVariation(2);
    } else {
      form.lstAircraft.select(2);
      form.lstAircraft.itemClick();
    }
    files.heal();
    EXPECT_EQ(windows.boxes.size(), error == 0 ? 1U : 2U);
    EXPECT_EQ(windows.boxes[0].text, "Save the changes of \"First\"?");
    EXPECT_EQ(form.lstAircraft.selected(), goes && !variation ? 2 : 1);
    EXPECT_EQ(form.lstACVersions.selected(), goes && variation ? 2 : 1);
    EXPECT_EQ(form.txtATCID.text, goes ? "" : "N42");
    EXPECT_EQ(form.txtACTitle.text, !goes ? "First" : variation ? "Second" : "Other");
    EXPECT_EQ(saved("atc_id=N42"), saves);
    windows.boxes.clear();
    EXPECT_EQ(mayLeaveInfo(app), goes) << "the answers have run out: Cancel";
    EXPECT_EQ(windows.boxes.size(), goes ? 0U : 1U);
  }
}

TEST_F(AircraftCfgTest, ReadOnlyIsNoObstacleAndStays) {
  for (const bool readOnly : {true, false}) {
    ASSERT_TRUE(disk.setAttributes(current, {.readOnly = readOnly}).ok());
    lstAircraft_Click(app);
    form.txtACTitle.text = "Changed";
    btnSaveACInfo_Click(app);
    EXPECT_TRUE(saved("title=Changed"));
    EXPECT_EQ(disk.attributes(current).value().readOnly, readOnly);
    // The user has changed both meanwhile.
    ASSERT_TRUE(disk.setAttributes(current, {.readOnly = !readOnly}).ok());
    ASSERT_TRUE(disk.setAttributes(original, {.readOnly = readOnly}).ok());
    windows.answers = {ui::Answer::yes};
    btnACRestoreOriginal_Click(app);
    EXPECT_EQ(windows.boxTexts().back(), "Aircraft reset to original version!");
    EXPECT_EQ(form.txtACTitle.text, "First");
    EXPECT_EQ(drive.read(current), cfg);
    EXPECT_EQ(disk.attributes(current).value().readOnly, readOnly);
    EXPECT_FALSE(drive.exists(original));
  }
}

}  // namespace skv::test
