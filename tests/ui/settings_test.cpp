#include "ui/settings.h"

#include "core/long_operation.h"
#include "support/scenery_fixture.h"
#include "ui/dialogs/folder_text.h"
#include "ui/move_packages.h"

namespace skv::test {

class SettingsTest : public ProgramTest {
 protected:
  SettingsTest() {
    storeSettings();
    settings.values["Mail/POPPassword"] = "secret";
  }
  // Opens the dialog from the menu and plays the user.
  void open(std::function<void()> user) {
    windows.onShow[&form] = std::move(user);
    app.frmMain.mnuFileSettings.click();
  }
  void ok() { form.btnOK.click(); }
  void accept(ui::TextBox& field, const std::string& folder) {
    open([&] {
      field.text = folder;
      ok();
    });
  }
  void acceptPackages(const std::string& folder) { accept(form.txtPacksDir, folder); }
  void expectRefused() {
    ok();
    EXPECT_TRUE(form.visible);
    form.closed();
  }
  ui::FrmSettings& form = app.frmSettings;
};

TEST_F(SettingsTest, StoresWhatIsAcceptedAndNothingElse) {
  const auto before = settings.values;
  open([this] {
    EXPECT_EQ(form.txtPOPPassword.text, "secret");
    form.txtFSRoot.text = "C:\\Packs";
    form.txtPOPHost.text = "mail";
    expectRefused();
  });
  expectTold("'C:\\Packs\\' is not the FS2002 folder!");
  for (ui::TextBox* field :
       {&form.txtHangarDir, &form.txtPacksDir, &form.txtCentralPanel, &form.txtSceneryLib}) {
    open([this, field] {
      field->text = "here";
      expectRefused();
    });
    expectTold(field->label + "\r\n\"here\" ");
  }
  open([this] {
    const LongOperation busy(app);
    form.txtPacksDir.text = "C:\\new";
    expectRefused();  // folders do not change under an operation
  });
  expectTold("");
  EXPECT_EQ(settings.values, before);

  open([this] {
    drive.write("C:\\FS\\SKV_AC.lst", line("Late", "C:\\FS\\aircraft\\late\\"));
    form.txtFSRoot.text = "C:\\fs";
    form.txtCentralPanel.text = "C:\\FS\\panels";
    form.txtSceneryLib.text = "C:\\lib\\scenery";
    ok();
  });
  EXPECT_EQ(settings.values["General/FSRoot"], "C:\\fs\\");
  EXPECT_EQ(app.FSRoot, "C:\\fs\\");
  EXPECT_EQ(app.frmMain.lstAircraft.findSubItem1("C:\\FS\\aircraft\\late\\"), 1);
  EXPECT_EQ(settings.values["General/PanelsDir"], "C:\\FS\\panels\\");
  EXPECT_EQ(drive.tree("C:\\lib\\scenery"), (Lines{"Main\\", "Scenery\\"}));
  EXPECT_TRUE(!form.visible && app.frmMain.visible);
}

TEST_F(SettingsTest, APasswordThatCouldNotBeReadIsNotEmptied) {
  settings.values["Mail/POPPassword"] = "";
  settings.values["Mail/POPPasswordPlace"] = "desktop";
  secrets.kept["POPPassword"] = "kept";
  secrets.runs = false;
  open([this] {
    secrets.runs = true;
    windows.boxes.clear();
    form.btnOutlookFile.click();
    ok();
  });
  EXPECT_EQ(secrets.kept["POPPassword"], "kept");
  EXPECT_TRUE(windows.boxes.empty()) << "a file dialog that was left tells nothing";
}

TEST_F(SettingsTest, FoldersAreUnderstoodHoweverTheyAreTyped) {
  drive.write("C:\\My Sim\\100%41\\x", "");
  const std::pair<std::string, std::string> cases[] = {
      {"C:\\FS", "C:\\FS\\"},
      {" \"c:/FS//sub/\" ", "c:\\FS\\sub\\"},
      {"C:", "C:\\"},
      {"C:\\a\\.\\b\\..\\c. ", "C:\\a\\c\\"},
      {drive.native() + "/FS", "C:\\FS\\"},
      {drive.native() + "/not/yet\\", "C:\\not\\yet\\"},
      {drive.native() + "/My%20Sim", "C:\\My Sim\\"},
      {drive.native() + "/My Sim/100%41", "C:\\My Sim\\100%41\\"},
      {"file://" + drive.native() + "/My%20Sim", "C:\\My Sim\\"},
      {"FILE://host" + drive.native() + "/FS", "C:\\FS\\"},
      {"~/FS", "C:\\FS\\"}};
  app.platform.environment.home = "C:\\";
  for (const auto& [typed, folder] : cases)
    EXPECT_EQ(folderFromText(app, typed).valueOr(""), folder) << typed;
  for (const char* typed : {"", "\\", "Hangar", "C:Hangar", "\\\\server\\share", "C:\\a\\..\\..\\b",
                            "C:\\what?", "C:\\Łódź"})
    EXPECT_FALSE(folderFromText(app, typed).ok()) << typed;
}

class SettingsOverSceneriesTest : public SceneryTest {};

TEST_F(SettingsOverSceneriesTest, AnOKWhoseQuestionIsCancelledStoresNothing) {
  storeSettings();
  const auto before = settings.values;
  form.lstScenery.select(1);
  ui::raise(form.lstScenery.moveSelected, 1);
  windows.onShow[&app.frmSettings] = [this] {
    app.frmSettings.txtHangarDir.text = "C:\\other";
    windows.answers = {ui::Answer::cancel, ui::Answer::no};
    app.frmSettings.btnOK.click();
    EXPECT_EQ(windows.boxes.size(), 1U);
    EXPECT_TRUE(app.frmSettings.visible);
    app.frmSettings.closed();
  };
  app.frmMain.mnuFileSettings.click();
  EXPECT_EQ(settings.values, before);
  EXPECT_EQ(app.HangarDir, "C:\\Hangar\\");
}

TEST_F(SettingsTest, WhatCannotBeToldIsNotTheSimulatorsFolder) {
  open([&] {
    form.txtFSRoot.text = "C:\\FS";
    files.failWhen("attributes", "C:\\FS\\Scenery.cfg", err::deviceIo);
    expectRefused();
    EXPECT_FALSE(windows.boxTexts().back().ends_with("is not the FS2002 folder!"));
  });
}

TEST_F(SettingsTest, WhatCannotBeStoredChangesNothing) {
  drive.write("C:\\Packs\\a.zip", "a");
  const auto before = settings.values;
  windows.answers = {ui::Answer::yes};
  for (const char* failing : {"General/FSRoot", "General/PacksDir", "General/SceneryLib"}) {
    settings.failedWrite = failing;
    open([this] {
      form.txtHangarDir.text = "C:\\other";
      form.txtPacksDir.text = "C:\\new";
      expectRefused();
    });
    for (const auto& [key, value] : before) EXPECT_EQ(settings.values[key], value) << failing;
    EXPECT_EQ(app.PacksDir, "C:\\Packs\\");
    EXPECT_TRUE(drive.exists("C:\\Packs\\a.zip"));
  }
  EXPECT_EQ(windows.boxes.size(), 3U);
  settings.failedWrite = "Mail/POPHost";
  open([this] { expectRefused(); });  // the mail accounts can be tried again
  EXPECT_EQ(windows.boxes.size(), 4U);
}

TEST_F(SettingsTest, PackagesMoveWhenTheUserWishes) {
  acceptPackages("C:\\Old");
  acceptPackages("C:\\Packs");
  EXPECT_TRUE(windows.boxes.empty()) << "there are none";
  drive.write("C:\\Packs\\a.ZIP", "a");
  drive.write("C:\\Packs\\Scenery\\sub\\b.txt", "b");
  acceptPackages("C:\\PACKS\\");
  EXPECT_TRUE(windows.boxes.empty()) << "the same folder in other letters";
  for (const auto answer : {ui::Answer::no, ui::Answer::yes}) {
    settings.values["General/PacksDir"] = "C:\\Packs\\";
    windows.answers = {answer};
    acceptPackages("C:\\deep\\new");
    EXPECT_EQ(drive.exists("C:\\Packs\\a.ZIP"), answer == ui::Answer::no);
  }
  EXPECT_EQ(drive.filesIn("C:\\deep\\new"), (Lines{"Scenery\\sub\\b.txt", "a.ZIP"}));
  EXPECT_FALSE(drive.exists("C:\\Packs"));
  EXPECT_TRUE(form.enabled);
  expectIdle();
}

TEST_F(SettingsTest, PackagesStayWhereOtherThingsWouldGoAlong) {
  drive.write("C:\\Hangar\\aircraft\\h\\aircraft.cfg", "");
  const struct {
    const char *old, *to = "C:\\new\\", *name = "General/PanelsDir", *other = "";
  } cases[] = {{"C:\\"},
               {"C:\\FS\\"},
               {"C:\\Hangar\\"},
               {"C:\\store\\", "C:\\new\\", "General/PanelsDir", "C:\\store\\Panels\\"},
               {"C:\\store\\", "C:\\new\\", "General/SceneryLib", "C:\\store\\"},
               {"C:\\store\\", "C:\\new\\", "General/SceneryPacksPath", "C:\\store\\scenes\\"},
               {"C:\\store\\", "C:\\store\\new\\"},
               {"C:\\store\\new\\", "C:\\store\\"},
               {"C:\\Home\\"},
               {"C:\\link\\"}};
  drive.link("C:\\link", drive.native("C:\\store"));
  app.platform.environment.home = "C:\\Home\\";
  for (const auto& [old, to, name, other] : cases) {
    SCOPED_TRACE(std::string(old) + other);
    for (const char* folder : {"", "FS\\", "Hangar\\", "store\\", "store\\new\\", "Home\\"})
      drive.write("C:\\" + std::string(folder) + "a.zip", "a");
    const Lines before = drive.tree("C:\\");
    windows.boxes.clear();
    windows.answers = {ui::Answer::yes};
    const auto kept = settings.values;
    settings.values["General/PacksDir"] = old;
    settings.values[name] = other;
    app.SceneryLib = app.PanelsDir = "";
    acceptPackages(to);
    ASSERT_EQ(windows.boxes.size(), 1U);
    EXPECT_EQ(windows.boxes[0].buttons, ui::BoxButtons::ok) << "told, not asked";
    EXPECT_EQ(settings.values["General/PacksDir"], to);
    for (const std::string& path : before) EXPECT_TRUE(drive.exists("C:\\" + path)) << path;
    settings.values = kept;
  }
}

TEST_F(SettingsTest, AMoveOfPackagesLosesNothing) {
  const auto put = [this](const std::string& path, const char* content, std::int64_t time) {
    drive.write(path, content);
    drive.setModified(path, {time, 0});
  };
  for (const char* name : {"a.zip", "b.zip", "c.zip", "sub\\d.zip"})
    put(std::string("C:\\Packs\\") + name, "old place", 1000000000);
  put("C:\\new\\a.zip", "newer", 1000000001);
  put("C:\\new\\B.zip", "older", 999999999);
  put("C:\\new\\c.zip", "as old", 1000000000);
  drive.write("C:\\data\\e.zip", "elsewhere");
  drive.link("C:\\Packs\\linked", "C:\\data");
  files.failWhen("moveFile", "C:\\Packs\\sub\\d.zip", err::diskFull);
  windows.answers = {ui::Answer::yes};
  acceptPackages("C:\\new");
  EXPECT_EQ(drive.read("C:\\new\\a.zip"), "newer");
  EXPECT_EQ(drive.read("C:\\new\\b.zip") + drive.read("C:\\new\\c.zip"), "old placeold place");
  EXPECT_EQ(drive.filesIn("C:\\Packs"), (Lines{"a.zip", "sub\\d.zip"}));
  EXPECT_TRUE(drive.exists("C:\\data\\e.zip"));
  EXPECT_TRUE(holds(windows.boxes.at(1).text,
                    "3 of 5 files could not be moved, the first:\r\nC:\\Packs\\a.zip\r\nThe new "
                    "folder holds a newer file"));
  EXPECT_EQ(settings.values["General/PacksMoveFrom"], "C:\\Packs\\");
  windows.boxes.clear();
  files.failWhen("list", "C:\\new", err::deviceIo);
  acceptPackages("C:\\third");
  expectTold("The Packages in \"C:\\new\\\" stay");
}

TEST_F(SettingsTest, AMoveOfPackagesThatHasEndedEarlyIsFinishedAtALaterStart) {
  const auto pending = [this] { return settings.values["General/PacksMoveFrom"]; };
  drive.write("C:\\Packs\\a.zip", "a");
  drive.write("C:\\Packs\\Scenery\\b.txt", "b");
  files.failWhen("moveFile", "C:\\Packs\\Scenery\\b.txt", err::diskFull);
  windows.answers = {ui::Answer::yes};
  acceptPackages("C:\\new");
  windows.boxes.clear();
  for (const char* look : {"list", "canonicalPath"}) {
    files.failWhen(look, "C:\\Packs", err::deviceIo);
    offerToFinishMove(app);
    EXPECT_TRUE(windows.boxes.empty() && pending() == "C:\\Packs\\") << look;
  }
  files.heal();
  windows.answers = {ui::Answer::yes};
  offerToFinishMove(app);
  EXPECT_TRUE(drive.exists("C:\\new\\Scenery\\b.txt") && !drive.exists("C:\\Packs"));
  EXPECT_EQ(pending(), "");
  expectTold("Old folder: C:\\Packs\\");
  offerToFinishMove(app);
  acceptPackages("C:\\third");  // answered No, which holds
  EXPECT_EQ(windows.boxes.size(), 1U);
  EXPECT_EQ(pending(), "");
  settings.values["General/PacksMoveFrom"] = "X:\\Packs\\";
  offerToFinishMove(app);
  EXPECT_EQ(pending(), "X:\\Packs\\") << "its disk may come back";
}

TEST_F(SettingsTest, ProposalsFollowTheSimulatorsFolderUntilTheyAreTouched) {
  settings.values.clear();
  const auto before = drive.tree("C:\\");
  const auto root = [this](const char* folder) {
    form.txtFSRoot.text = folder;
    form.txtFSRoot.lostFocus();
  };
  open([&] {
    root("D:\\Sim");
    EXPECT_EQ(form.txtFSRoot.text, "D:\\Sim\\");
    EXPECT_EQ(form.txtHangarDir.text, "D:\\Sim\\SKV-Hangar\\");
    EXPECT_EQ(form.txtPacksDir.text, "D:\\Sim\\SKV-Packages\\");
    form.txtPacksDir.text = "C:\\mine\\";
    windows.onShow[&app.frmDirSelect] = [this] {
      app.frmDirSelect.txtDir.text = "C:\\FS";
      app.frmDirSelect.btnOK.click();
    };
    form.btnBrowse.click();
    EXPECT_EQ(form.txtHangarDir.text, "C:\\FS\\SKV-Hangar\\");
    EXPECT_EQ(form.txtPacksDir.text, "C:\\mine\\");
    form.txtHangarDir.text = "";
    form.txtHangarDir.gotFocus();
    EXPECT_EQ(form.txtHangarDir.text, "C:\\FS\\SKV-Hangar\\");
    EXPECT_EQ(drive.tree("C:\\"), before) << "nothing is made before OK";
    form.closed();
  });
}

}  // namespace skv::test
