#include "ui/views.h"
#include "aircraft/aircraft_views.h"
#include "scenery/scenery_view.h"

#include "support/program_fixture.h"

namespace skv {
namespace {

class ViewsTest : public test::ProgramTest {
 protected:
  ViewsTest() {
    drive.write("C:\\FS\\SKV_AC.lst",
                "a\x01"
                "C:\\FS\\aircraft\\a\\\r\nb\x01"
                "C:\\FS\\aircraft\\b\\\r\n"
                "c\x01"
                "C:\\FS\\aircraft\\c\\\r\n");
    drive.write("C:\\Hangar\\SKV_AC.lst",
                "h\x01"
                "C:\\Hangar\\aircraft\\h\\\r\n"
                "i\x01"
                "C:\\Hangar\\aircraft\\i\\\r\n");
  }
  ui::FrmMain& form = app.frmMain;
};

TEST_F(ViewsTest, EachViewSetsFramesMenusAndCaptions) {
  struct {
    void (*show)(App&);
    bool aircraft;
    const char *caption, *hangar;
    const ui::MenuItem* checked;
  } const views[] = {
      {mnuViewHangar_Click, true, "Aircraft: HANGAR", "To FS2002...", &form.mnuViewHangar},
      {mnuViewFSScenery_Click, false, "Aircraft: HANGAR", "To FS2002...", &form.mnuViewFSScenery},
      {mnuViewFSAircraft_Click, true, "Aircraft: FS 2002", "To Hangar...", &form.mnuViewFSAircraft},
  };
  for (const auto& view : views) {
    view.show(app);
    EXPECT_EQ(form.frameAircraft.visible, view.aircraft);
    EXPECT_EQ(form.frameAddon.visible, view.aircraft);
    EXPECT_EQ(form.frameScenery.visible, !view.aircraft);
    EXPECT_EQ(form.frameAircraft.caption, view.caption);
    EXPECT_EQ(form.btnHangar.caption, view.hangar);
    EXPECT_EQ(form.mnuFileInstallAC.enabled, view.aircraft);
    EXPECT_EQ(form.mnuViewCfg.enabled, view.aircraft);
    for (const ui::MenuItem* entry :
         {&form.mnuViewHangar, &form.mnuViewFSScenery, &form.mnuViewFSAircraft})
      EXPECT_EQ(entry->checked, entry == view.checked) << entry->name();
    EXPECT_EQ(form.mnuFileImportAC.enabled, view.aircraft);
    EXPECT_EQ(form.mnuFileInstallSC.enabled, !view.aircraft);
  }
}

TEST_F(ViewsTest, TheHangarIsMadeWithItsOwnFolders) {
  app.HangarDir = "C:\\new\\Hangar\\";
  mnuViewHangar_Click(app);
  EXPECT_EQ(drive.tree("C:\\new"),
            (std::vector<std::string>{"Hangar\\", "Hangar\\Main\\", "Hangar\\aircraft\\"}));
}

TEST_F(ViewsTest, EachAircraftViewComesBackToItsRow) {
  mnuViewFSAircraft_Click(app);
  form.lstAircraft.select(3);
  mnuViewHangar_Click(app);
  form.lstAircraft.select(2);
  mnuViewFSAircraft_Click(app);
  EXPECT_EQ(form.lstAircraft.selected(), 3);
  mnuViewHangar_Click(app);
  EXPECT_EQ(form.lstAircraft.selected(), 2);

  drive.write("C:\\FS\\SKV_AC.lst",
              "a\x01"
              "C:\\FS\\aircraft\\a\\\r\n");
  mnuViewFSAircraft_Click(app);
  EXPECT_EQ(form.lstAircraft.selected(), 1) << "the file shrank meanwhile";
}

TEST_F(ViewsTest, DoubleClicksWalkThroughTheViews) {
  mnuViewFSAircraft_Click(app);
  form.frameAircraft.dblClick();
  EXPECT_TRUE(form.mnuViewHangar.checked);
  form.frameAircraft.dblClick();
  EXPECT_TRUE(form.mnuViewFSScenery.checked);
  form.frameScenery.dblClick();
  EXPECT_TRUE(form.mnuViewFSAircraft.checked);
}

TEST_F(ViewsTest, TabsShowOneFrame) {
  form.tabAddon.click(2);
  EXPECT_TRUE(form.frameSound.visible && !form.frameInfo.visible && !form.framePanel.visible);
  form.tabAddon.click(3);
  EXPECT_TRUE(form.frameSound.visible);
  form.tabACInfo.click(1);
  EXPECT_TRUE(form.frameACInfoATC.visible && !form.frameACInfoGeneral.visible);
}

TEST_F(ViewsTest, TheSplitBarStopsBeforeAListGetsTooSmall) {
  form.sceneryHeight = 3000;
  form.libraryHeight = 2000;
  form.lblSepBar.mouseMove(ui::MouseButton::left, 100);
  EXPECT_EQ(form.sceneryHeight, 3000) << "not dragging";
  form.lblSepBar.mouseDown(ui::MouseButton::right, 0);
  form.lblSepBar.mouseMove(ui::MouseButton::left, 100);
  EXPECT_EQ(form.sceneryHeight, 3000);
  form.lblSepBar.mouseDown(ui::MouseButton::left, 0);
  form.lblSepBar.mouseMove(ui::MouseButton::left, 1000);
  EXPECT_EQ(form.sceneryHeight, 4000);
  EXPECT_EQ(form.libraryHeight, 1000);
  form.lblSepBar.mouseMove(ui::MouseButton::left, 1);
  form.lblSepBar.mouseMove(ui::MouseButton::left, -3001);
  EXPECT_EQ(form.sceneryHeight, 4000);
  form.lblSepBar.mouseUp(ui::MouseButton::left, 0);
  form.lblSepBar.mouseMove(ui::MouseButton::left, -100);
  EXPECT_EQ(form.sceneryHeight, 4000);
}

TEST_F(ViewsTest, HeightFollowsWidth) {
  const int height = form.height;
  form.width = 5000;
  Form_Resize(app);
  EXPECT_EQ(form.width, 5000) << "nothing happens before start-up";
  app.LayoutAspect = 1.5;
  struct {
    ui::Form::State state;
    int width, expectedWidth, expectedHeight;
  } const cases[] = {{ui::Form::State::normal, 15000, 15000, 10000},
                     {ui::Form::State::normal, 9000, 10335, 6890},
                     {ui::Form::State::maximised, 20000, 20000, height},
                     {ui::Form::State::maximised, 9000, 10335, 6890},
                     {ui::Form::State::minimised, 9000, 9000, height}};
  for (const auto& c : cases) {
    form.windowState = c.state;
    form.width = c.width;
    form.height = height;
    Form_Resize(app);
    EXPECT_EQ(form.width, c.expectedWidth);
    EXPECT_EQ(form.height, c.expectedHeight);
  }
}

}  // namespace
}  // namespace skv
