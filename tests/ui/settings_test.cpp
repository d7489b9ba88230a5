#include "ui/settings.h"

#include "support/program_fixture.h"

namespace skv {
namespace {

class SettingsTest : public test::ProgramTest {
 protected:
  SettingsTest() {
    settings.values = {{"General/FSRoot", "C:\\FS\\"},
                       {"General/HangarDir", "C:\\Hangar\\"},
                       {"General/PacksDir", "C:\\Packs\\"},
                       {"Mail/POPPassword", "secret"}};
  }
  // Opens the dialog from the menu and plays the user.
  void open(std::function<void()> user) {
    windows.onShow[&form] = std::move(user);
    app.frmMain.mnuFileSettings.click();
  }
  void ok() { form.btnOK.click(); }
  ui::FrmSettings& form = app.frmSettings;
};

TEST_F(SettingsTest, StoresWhatIsAcceptedAndNothingElse) {
  const auto before = settings.values;
  open([this] {
    EXPECT_EQ(form.txtPOPPassword.text, "secret");
    form.txtFSRoot.text = "C:\\Packs";
    form.txtPOPHost.text = "mail";
    ok();
    EXPECT_TRUE(form.visible);
    form.closed();
  });
  EXPECT_EQ(settings.values, before);
  ASSERT_EQ(windows.boxes.size(), 1U);
  EXPECT_EQ(windows.boxes[0].text, "'C:\\Packs\\' is not the FS2002 folder!");
  EXPECT_EQ(windows.boxes[0].title, "FS Skyvault - Settings");

  open([this] {
    form.txtFSRoot.text = "C:\\fs";
    form.txtHangarDir.text = "";
    form.txtCentralPanel.text = "C:\\FS\\panels";
    form.txtSceneryLib.text = "C:\\lib\\scenery\\";
    ok();
  });
  EXPECT_EQ(settings.values["General/FSRoot"], "C:\\fs\\");
  EXPECT_EQ(app.FSRoot, "C:\\fs\\");
  EXPECT_EQ(settings.values["General/HangarDir"], "\\");
  EXPECT_EQ(settings.values["General/PanelsDir"], "C:\\FS\\panels");
  EXPECT_EQ(drive.tree("C:\\lib"),
            (std::vector<std::string>{"scenery\\", "scenery\\Main\\", "scenery\\Scenery\\"}));
  EXPECT_FALSE(form.visible);
  EXPECT_TRUE(app.frmMain.visible);
}

TEST_F(SettingsTest, PackagesMoveWhenTheUserWishes) {
  drive.write("C:\\Packs\\a.ZIP", "a");
  drive.write("C:\\Packs\\Scenery\\b.txt", "b");
  const auto move = [this](const char* folder) {
    open([this, folder] {
      form.txtPacksDir.text = folder;
      ok();
    });
  };
  move("C:\\PACKS\\");
  EXPECT_TRUE(windows.boxes.empty()) << "the same folder in other letters";
  settings.values["General/PacksDir"] = "C:\\Packs\\";
  move("C:\\deep\\new");
  EXPECT_EQ(drive.tree("C:\\deep\\new"), std::vector<std::string>{}) << "answered No";
  settings.values["General/PacksDir"] = "C:\\Packs\\";
  windows.answers = {ui::Answer::yes};
  move("C:\\deep\\new");
  EXPECT_EQ(drive.tree("C:\\deep\\new"),
            (std::vector<std::string>{"Scenery\\", "Scenery\\b.txt", "a.ZIP"}));
  EXPECT_FALSE(drive.exists("C:\\Packs"));
  EXPECT_TRUE(form.enabled);
  expectIdle();
  move("C:\\third");
  windows.boxes.clear();
  settings.values["General/PacksDir"] = "C:\\third\\";
  move("C:\\fourth");
  EXPECT_TRUE(windows.boxes.empty()) << "no Packages, no question";
  EXPECT_TRUE(drive.exists("C:\\fourth") && drive.exists("C:\\third"));
}

TEST_F(SettingsTest, DefaultsFollowTheSimulatorsFolder) {
  open([this] {
    form.txtFSRoot.text = "D:\\Sim";
    form.txtHangarDir.text = "";
    form.txtPacksDir.text = "C:\\mine\\";
    form.txtFSRoot.lostFocus();
    EXPECT_EQ(form.txtFSRoot.text, "D:\\Sim\\");
    EXPECT_EQ(form.txtHangarDir.text, "D:\\Sim\\SKV-Hangar\\");
    EXPECT_EQ(form.txtPacksDir.text, "C:\\mine\\");
    form.closed();
  });
}

TEST_F(SettingsTest, BrowsingTakesAnExistingFolderOnly) {
  auto& picker = app.frmDirSelect;
  const auto browse = [this, &picker](ui::Button& button, std::function<void()> user) {
    windows.onShow[&picker] = std::move(user);
    open([this, &button] {
      button.click();
      form.closed();
    });
  };
  browse(form.btnBrowse, [&] {
    EXPECT_EQ(picker.txtDir.text, "C:\\FS\\");
    picker.Dir1.folder = "C:\\Packs";
    picker.Dir1.change();
    picker.btnOK.click();
  });
  EXPECT_EQ(form.txtFSRoot.text, "C:\\Packs\\");
  EXPECT_EQ(app.FSRoot, "C:\\Packs\\") << "holds before the dialog is accepted";

  browse(form.Command1, [&] {
    EXPECT_EQ(picker.txtDir.text, "C:\\Hangar\\SceneryLib\\");
    picker.txtDir.text = " C:\\nowhere ";
    picker.btnOK.click();
  });
  EXPECT_EQ(form.txtSceneryLib.text, "C:\\Hangar\\SceneryLib\\");
  EXPECT_EQ(windows.boxTexts(), std::vector<std::string>{"You must specify a valid location!"});

  browse(form.btnBrowsePanel, [&] {
    EXPECT_EQ(picker.txtDir.text, "C:\\FS\\aircraft\\");
    picker.btnCancel.click();
  });
  EXPECT_EQ(form.txtCentralPanel.text, "C:\\FS\\aircraft\\Panels\\");
}

TEST_F(SettingsTest, ThePickerMakesFolders) {
  auto& picker = app.frmDirSelect;
  windows.onShow[&picker] = [&] {
    picker.txtDir.text = "C:\\Packs\\";
    windows.inputs = {"New Folder", "", "made", "made", "a:b"};
    for (int i = 0; i < 5; ++i) picker.btnMkDir.click();
    EXPECT_EQ(picker.txtDir.text, "C:\\Packs\\made\\made\\");
    picker.btnOK.click();
  };
  open([this] {
    form.btnBrowsePacks.click();
    form.closed();
  });
  EXPECT_EQ(drive.tree("C:\\Packs"), (std::vector<std::string>{"made\\", "made\\made\\"}));
  EXPECT_EQ(windows.boxTexts(), std::vector<std::string>{"Unable to create folder!"});
}

}  // namespace
}  // namespace skv
