#include "aircraft/aircraft_views.h"

#include "scenery/scenery_view.h"
#include "support/program_fixture.h"
#include "ui/views.h"

namespace skv {
namespace {

std::string line(const std::string& name, const std::string& root) {
  return name + "\x01" + root + "aircraft\\" + name + "\\\r\n";
}

class AircraftViewsTest : public test::ProgramTest {
 protected:
  AircraftViewsTest() {
    std::string simulator;
    for (const char* name : {"a", "b", "c", "d", "e"}) {
      simulator += line(name, "C:\\FS\\");
      drive.write("C:\\FS\\aircraft\\" + std::string(name) + "\\aircraft.cfg",
                  "[fltsim.0]\r\ntitle=" + std::string(name) + "\r\n");
    }
    drive.write("C:\\FS\\SKV_AC.lst", simulator);
    drive.write("C:\\Hangar\\SKV_AC.lst",
                line("h", "C:\\Hangar\\") + line("i", "C:\\Hangar\\") + line("j", "C:\\Hangar\\"));
  }
  void select(int row) {
    list.select(row);
    list.itemClick();
  }
  // Frames, menu, captions and rows are those of one view.
  void expectWholly(View view) {
    EXPECT_EQ(form.mnuViewFSAircraft.checked, view == View::fsAircraft);
    EXPECT_EQ(form.mnuViewHangar.checked, view == View::hangar);
    EXPECT_EQ(form.frameScenery.visible, view == View::scenery);
    EXPECT_EQ(form.frameAircraft.visible, view != View::scenery);
    const bool hangar = app.aircraftView == View::hangar;
    EXPECT_EQ(form.btnHangar.caption, hangar ? "To FS2002..." : "To Hangar...");
    EXPECT_EQ(form.mnuListHangar.caption, form.btnHangar.caption.get());
    EXPECT_EQ(app.ListDir, hangar ? "C:\\Hangar\\" : "C:\\FS\\");
    EXPECT_EQ(list.count(), hangar ? 3 : 5);
  }
  ui::FrmMain& form = app.frmMain;
  ui::ListView& list = form.lstAircraft;
};

TEST_F(AircraftViewsTest, EachViewKeepsItsAircraft) {
  mnuViewFSAircraft_Click(app);
  select(5);
  mnuViewFSScenery_Click(app);
  mnuViewFSAircraft_Click(app);
  EXPECT_EQ(list.selected(), 5);
  EXPECT_EQ(list.visibleRow(), 5);
  mnuViewHangar_Click(app);
  select(2);
  mnuViewFSScenery_Click(app);
  mnuViewHangar_Click(app);
  EXPECT_EQ(list.selected(), 2);

  // The rows have moved: the aircraft counts, and its number only when it is gone.
  drive.write("C:\\FS\\SKV_AC.lst", line("e", "C:\\FS\\") + line("b", "C:\\FS\\"));
  mnuViewFSAircraft_Click(app);
  EXPECT_EQ(list.text(list.selected()), "e");
  EXPECT_EQ(form.txtACTitle.text, "e");
  drive.write("C:\\FS\\SKV_AC.lst", line("a", "C:\\FS\\") + line("b", "C:\\FS\\"));
  list.select(2);
  drive.write("C:\\FS\\SKV_AC.lst", line("c", "C:\\FS\\") + line("d", "C:\\FS\\"));
  mnuViewFSAircraft_Click(app);
  EXPECT_EQ(list.selected(), 2);
}

TEST_F(AircraftViewsTest, AReloadKeepsTheAircraftAndItsTabs) {
  mnuViewFSAircraft_Click(app);
  select(4);
  drive.write("C:\\FS\\SKV_AC.lst", line("d", "C:\\FS\\") + line("a", "C:\\FS\\"));
  form.mnuViewRefresh.click();
  EXPECT_EQ(list.text(list.selected()), "d");
  EXPECT_EQ(list.visibleRow(), 1);
  EXPECT_EQ(form.txtACTitle.text, "d");

  // The settings have named another simulator.
  app.FSRoot = "C:\\Other\\";
  drive.write("C:\\Other\\SKV_AC.lst", line("x", "C:\\Other\\"));
  EXPECT_TRUE(reloadAircraftList(app));
  EXPECT_EQ(app.ACRoot, "C:\\Other\\aircraft\\");
  EXPECT_EQ(list.text(1), "x");
  EXPECT_EQ(form.txtACTitle.text, "");
}

TEST_F(AircraftViewsTest, EditsAreAskedAboutBeforeTheViewGoes) {
  using Show = std::function<void()>;
  const Show ways[] = {[&] { form.mnuViewHangar.click(); }, [&] { form.mnuViewFSScenery.click(); },
                       [&] { form.mnuViewFSAircraft.click(); },
                       [&] { form.mnuViewRefresh.click(); },
                       [&] { form.frameAircraft.dblClick(); }};
  mnuViewFSAircraft_Click(app);
  select(2);
  form.txtACTitle.text = "mine";
  for (const Show& leave : ways) {
    windows.boxes.clear();
    leave();
    EXPECT_EQ(windows.boxTexts(), std::vector<std::string>{"Save the changes of \"b\"?"});
    expectWholly(View::fsAircraft);
    EXPECT_EQ(list.selected(), 2);
    EXPECT_EQ(form.txtACTitle.text, "mine");
  }
  windows.answers = {ui::Answer::yes};
  form.mnuViewHangar.click();
  expectWholly(View::hangar);
  EXPECT_NE(drive.read("C:\\FS\\aircraft\\b\\aircraft.cfg").find("title=mine"), std::string::npos);
}

// Whatever view is chosen while another is on its way, all on screen belongs together, during the
// yield too.
TEST_F(AircraftViewsTest, ASwitchInsideAnother) {
  using Show = void (*)(App&);
  const std::pair<Show, View> views[] = {{mnuViewFSAircraft_Click, View::fsAircraft},
                                         {mnuViewHangar_Click, View::hangar},
                                         {mnuViewFSScenery_Click, View::scenery}};
  for (const auto& [outer, outerView] : views) {
    for (const auto& [inner, innerView] : views) {
      SCOPED_TRACE(std::to_string(static_cast<int>(outerView)) + " " +
                   std::to_string(static_cast<int>(innerView)));
      mnuViewFSAircraft_Click(app);
      select(3);
      windows.onYield = [&, show = inner] {
        windows.onYield = nullptr;
        show(app);
      };
      outer(app);
      windows.onYield = nullptr;
      expectWholly(innerView);
      mnuViewFSAircraft_Click(app);
      EXPECT_EQ(list.selected(), 3);
    }
  }
}

TEST_F(AircraftViewsTest, NoHangarIsMadeInThePlaceOfOneOnADiskThatIsAway) {
  ASSERT_TRUE(disk.makeFolder("C:\\mount").ok());
  for (const auto& [simulator, hangar] : {std::pair{"C:\\gone\\", "C:\\gone\\Hangar\\"},
                                          {"C:\\FS\\", "Q:\\Hangar\\"},
                                          {"C:\\FS\\", "C:\\mount\\Hangar\\"}}) {
    app.FSRoot = simulator;
    app.HangarDir = hangar;
    mnuViewHangar_Click(app);
    EXPECT_FALSE(drive.exists("C:\\gone")) << hangar;
    EXPECT_EQ(drive.tree("C:\\mount"), std::vector<std::string>{});
    EXPECT_NE(list.emptyText->find("is not there: " + std::string(hangar)), std::string::npos);
    EXPECT_NE(list.emptyText->find("F2"), std::string::npos);
  }
  app.HangarDir = "C:\\FS\\Hangar\\";
  mnuViewHangar_Click(app);
  EXPECT_EQ(drive.tree("C:\\FS\\Hangar"), (std::vector<std::string>{"Main\\", "aircraft\\"}));
  EXPECT_NE(list.emptyText->find("The Hangar is empty."), std::string::npos);
  EXPECT_TRUE(windows.boxes.empty());
}

TEST_F(AircraftViewsTest, AnEmptyListSaysWhy) {
  const auto shown = [this] {
    mnuViewFSAircraft_Click(app);
    return form.lstAircraft.emptyText.get();
  };
  files.failWhen("readFile", "C:\\FS\\SKV_AC.lst", err::deviceIo);
  EXPECT_NE(shown().find("could not be read"), std::string::npos);
  files.heal();
  drive.remove("C:\\FS\\SKV_AC.lst");
  files.resetCounts();
  EXPECT_EQ(shown().find("5 aircraft stand in the simulator"), 0U) << shown();
  EXPECT_NE(shown().find("File, Import, Aircrafts will list"), std::string::npos);
  form.mnuFileImportAC.click = [] {};
  EXPECT_NE(shown().find("File, Import, Aircrafts lists what is there."), std::string::npos);
  EXPECT_NE(form.lstPanel.emptyText->find("File, Import, Panels"), std::string::npos);

  files.failWhen("list", "C:\\FS\\aircraft\\", err::permissionDenied);
  EXPECT_NE(shown().find("cannot be read: Permission denied"), std::string::npos);
  files.heal();
  app.FSRoot = "C:\\Packs\\";
  EXPECT_NE(shown().find("no aircraft folder in C:\\Packs\\"), std::string::npos);
  app.FSRoot = "C:\\gone\\";
  EXPECT_NE(shown().find("The simulator's folder is not there: C:\\gone\\"), std::string::npos);
  EXPECT_EQ(form.lstPanel.emptyText, form.lstAircraft.emptyText.get());
  app.FSRoot = "";
  EXPECT_NE(shown().find("not set"), std::string::npos);
}

TEST_F(AircraftViewsTest, ARowsMenuActsOnIt) {
  mnuViewFSAircraft_Click(app);
  select(2);
  form.mnuListOpen.click();
  EXPECT_EQ(shell.opened, std::vector<std::string>{"C:\\FS\\aircraft\\b\\"});
  form.mnuListCfg.click();
  EXPECT_EQ(shell.edited, std::vector<std::string>{"C:\\FS\\aircraft\\b\\\\Aircraft.cfg"});
  form.mnuListCopy.click();
  EXPECT_EQ(windows.copied, "C:\\FS\\aircraft\\b\\");
  form.mnuListRename.click();
  EXPECT_EQ(list.labelEditWishes(), 1U);
  form.mnuListHangar.click();
  EXPECT_TRUE(drive.exists("C:\\Hangar\\Aircraft\\b\\aircraft.cfg"));
  shell.result = 2;
  form.mnuListOpen.click();
  EXPECT_EQ(windows.boxTexts(), std::vector<std::string>{"File not found"});

  list.clear();
  form.mnuListOpen.click();
  form.mnuListCopy.click();
  form.mnuListRename.click();
  EXPECT_EQ(shell.opened.size(), 2U);
  EXPECT_EQ(windows.copied, "C:\\FS\\aircraft\\b\\");
  EXPECT_EQ(list.labelEditWishes(), 1U);
}

}  // namespace
}  // namespace skv
