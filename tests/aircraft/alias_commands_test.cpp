#include "aircraft/alias_commands.h"

#include "aircraft/aircraft_views.h"
#include "core/profile.h"
#include "support/every_call.h"
#include "support/program_fixture.h"

namespace skv::test {

class AliasCommandsTest : public ProgramTest {
 protected:
  AliasCommandsTest() {
    drive.write(root + "plane\\aircraft.cfg",
                "[fltsim.0]\r\ntitle=Plane\r\n[fltsim.1]\r\ntitle=Second\r\npanel=vfr\r\n");
    drive.write(root + "plane\\panel\\panel.cfg", real);
    drive.write(root + "other\\aircraft.cfg", "[fltsim.0]\r\ntitle=Other\r\n");
    drive.write(root + "other\\panel.big\\panel.cfg", "[Window Titles]\r\n");
    drive.write(root + "other\\sound\\sound.cfg", "[fltsim]\r\nalias=plane\\sound\r\n");
    drive.write("C:\\Far\\panel\\panel.cfg", "");
    drive.write("C:\\FS\\SKV_AC.lst",
                line("Plane", root + "plane\\") + line("Other", root + "other\\"));
    drive.write("C:\\FS\\SKV_PN.lst",
                line("Own", root + "plane\\panel\\") + line("Big", root + "other\\panel.big\\") +
                    line("Far", "C:\\Far\\panel\\") + line("Up", root + "..\\..\\Far\\panel\\"));
    mnuViewFSAircraft_Click(app);
  }
  void assign(int row) {
    form.lstPanel.select(row);
    click(form.lstPanel);
    click(form.btnAssignPN);
  }
  std::string alias() { return ReadProfile(disk, CodePage(), own, "fltsim", "alias"); }

  const std::string root = "C:\\FS\\aircraft\\", real = "[VC]\r\nx=1\r\n";
  const std::string own = root + "plane\\panel\\panel.cfg",
                    kept = root + "plane\\panel\\panel.preSKV.cfg";
};

TEST_F(AliasCommandsTest, AssignsAPanelKeepsTheRealOneAndGoesBack) {
  form.txtACTitle.text = "Edited";
  assign(2);
  EXPECT_EQ(form.txtACTitle.text, "Edited");
  EXPECT_TRUE(form.btnPNRestoreOriginal.enabled);
  EXPECT_EQ(drive.read(own), "[fltsim]\r\nalias=other\\panel.big\r\n");
  EXPECT_EQ(drive.read(kept), real);
  EXPECT_EQ(form.lblPNStatus.caption, "Alias: other\\panel.big");
  EXPECT_EQ(form.lstPanel.selected(), 2);
  drive.write(own, "[fltsim]\r\nalias=x\r\nnote=mine\r\n");
  assign(2);
  EXPECT_EQ(drive.read(own), "[fltsim]\r\nalias=other\\panel.big\r\nnote=mine\r\n");
  EXPECT_EQ(drive.read(kept), real) << "the first backup stays";
  click(form.btnPNRestoreOriginal);
  EXPECT_EQ(alias(), "other\\panel.big") << "not agreed";
  windows.answers = {ui::Answer::yes};
  click(form.btnPNRestoreOriginal);
  EXPECT_EQ(drive.read(own), real);
  EXPECT_FALSE(drive.exists(kept) || form.btnPNRestoreOriginal.enabled);
  EXPECT_TRUE(form.lblPNStatus.caption == "Original" && form.lstPanel.selected() == 1);
  form.txtACTitle.text = "Plane";
  files.failWhen("readFile", own, err::deviceIo);
  click(form.lstACVersions);
  EXPECT_TRUE(holds(form.lblPNStatus.caption, "could not be read"));
  files.heal();

  // A variation without a folder of its own gets one.
  form.lstACVersions.select(2);
  form.lstACVersions.click();
  files.failWhen("replaceFile", root + "plane\\panel.vfr\\panel.cfg", err::diskFull);
  assign(2);
  EXPECT_FALSE(drive.exists(root + "plane\\panel.vfr")) << "as it was";
  files.heal();
  assign(2);
  EXPECT_TRUE(drive.exists(root + "plane\\panel.vfr\\panel.cfg"));
  EXPECT_FALSE(drive.exists(root + "plane\\panel.vfr\\panel.preSKV.cfg"));

  // Without a variation it is only reset.
  drive.write(root + "plane\\aircraft.cfg", "");
  drive.write(kept, "kept");
  form.lstAircraft.click();
  assign(2);
  EXPECT_TRUE(drive.read(own) == real && !form.btnAssignPN.enabled);
  EXPECT_EQ(answer(form.btnPNRestoreOriginal, {yes}), 2U);
  EXPECT_EQ(drive.read(own), "kept");
}

TEST_F(AliasCommandsTest, RefusesWhatWouldLeadNowhereOrInACircle) {
  for (const int row : {1, 3, 4}) {
    assign(row);
    expectTold("was not assigned.");
    EXPECT_EQ(drive.read(own), real);
  }
  drive.write(root + "other\\panel.big\\panel.cfg", "[fltsim]\r\nalias=far\\panel\r\n");
  assign(2);
  expectTold("already points to\ranother physical panel.");
  EXPECT_EQ(drive.read(own), real);
  EXPECT_FALSE(drive.exists(kept));
}

TEST_F(AliasCommandsTest, APanelThatOthersUseIsNotGivenAwayUnasked) {
  drive.write(root + "guest\\panel\\panel.cfg", "[fltsim]\r\nalias=Plane\\PANEL\r\n");
  drive.write(root + "plane\\panel.vfr\\panel.cfg", "[fltsim]\r\nalias=plane\\panel\r\n");
  assign(2);
  expectTold("The panel of this variation is used by:\rPlane\rguest\r\rThey would");
  EXPECT_EQ(drive.read(own), real);
  windows.answers = {ui::Answer::yes};
  assign(2);
  EXPECT_EQ(alias(), "other\\panel.big");
  windows.boxes.clear();
  assign(2);
  EXPECT_TRUE(windows.boxes.empty()) << "nobody has used it since";
  expectIdle();
}

TEST_F(AliasCommandsTest, AnAssignmentThatEndsAnywhereIsFinishedByTheNext) {
  const auto begin = [&] {
    drive.write(own, real);
    drive.remove(kept);
  };
  const auto check = [&](bool) {
    EXPECT_TRUE(drive.read(own) == real || drive.read(kept) == real);
    assign(2);
    EXPECT_EQ(drive.read(own), "[fltsim]\r\nalias=other\\panel.big\r\n");
    EXPECT_EQ(drive.read(kept), real);
  };
  for (const Ending ending : {Ending::failedLook, Ending::kill})
    EXPECT_GT(forEveryCall(
                  files, ending, begin, [&] { assign(2); }, check),
              1);
}

TEST_F(AliasCommandsTest, OnlyRealPanelsComeIntoTheLibraryByHand) {
  picks(root + "other");
  click(form.btnAddPN, "This is not a valid Panel folder!");
  picks(root + "other\\sound");
  click(form.btnAddSN, "another physical sound. FS does not allow");
  picks(root + "plane\\panel");
  windows.inputs = {"Łódź", "Ours\x01", "none", "Loud"};
  click(form.btnAddPN);
  EXPECT_TRUE(holds(drive.read("C:\\FS\\SKV_PN.lst"), line("Ours ", root + "plane\\panel\\")));
  form.lstPanel.select(5);
  EXPECT_EQ(answer(form.btnDelPN, {yes}), 1U);
  EXPECT_FALSE(holds(drive.read("C:\\FS\\SKV_PN.lst"), "Ours"));

  windows.onShow[&app.frmDirSelect] = [this] {
    click(form.mnuViewHangar);
    app.frmDirSelect.txtDir.text = root + "plane\\panel";
    click(app.frmDirSelect.btnOK);
  };
  click(form.btnAddPN);
  EXPECT_EQ(form.lstPanel.count(), 0) << "another list came up meanwhile";
  mnuViewFSAircraft_Click(app);

  drive.write(root + "other\\sound.x\\sound.cfg", "");
  drive.write(root + "plane\\sound\\sound.cfg", real);
  picks(root + "other\\sound.x");
  click(form.btnAddSN);
  EXPECT_EQ(drive.read("C:\\FS\\SKV_SN.lst"), line("Loud", root + "other\\sound.x\\"));
  form.lstSound.select(1);
  windows.boxes.clear();
  windows.answers = {ui::Answer::yes};
  click(form.btnAssignSN, "The sound of this variation is used by:\rOther\r");
  EXPECT_EQ(form.lblSNStatus.caption, "Alias: other\\sound.x");
  EXPECT_TRUE(form.btnSNRestoreOriginal.enabled && !form.btnPNRestoreOriginal.enabled);
}

TEST_F(AliasCommandsTest, SynchronizesThePanelsFolderAndItsMirror) {
  app.PanelsDir = root + "Panels\\";
  mnuViewFSAircraft_Click(app);
  drive.write(root + "Panels\\a\\one", "1");
  mnuViewHangar_Click(app);
  click(form.mnuFileSynchPN);
  drive.write("C:\\Hangar\\aircraft\\Panels\\b\\two", "2");
  click(form.mnuFileSynchPN);
  EXPECT_EQ(drive.filesIn(root + "Panels"), (Lines{"a\\one", "b\\two"}));
  EXPECT_EQ(drive.filesIn("C:\\Hangar\\aircraft\\Panels"), (Lines{"a\\one", "b\\two"}));
  EXPECT_TRUE(windows.boxes.empty());
  for (const char* folder :
       {"C:\\Hangar\\aircraft\\Panels\\", "C:\\", "C:\\Hangar\\", "C:\\Hangar\\aircraft\\x\\x\\"}) {
    app.PanelsDir = folder;
    click(form.mnuFileSynchPN, "was not synchronized");
  }
  expectIdle();
}

}  // namespace skv::test
