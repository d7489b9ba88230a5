#include "aircraft/aircraft_views.h"

#include "scenery/scenery_view.h"
#include "support/program_fixture.h"

namespace skv::test {

static std::string rowOf(const std::string& name, const std::string& root) {
  return line(name, root + "aircraft\\" + name + "\\");
}

class AircraftViewsTest : public ProgramTest {
 protected:
  AircraftViewsTest() {
    app.SceneryLib = "C:\\Lib\\";
    std::string simulator;
    for (const char* name : {"a", "b", "c", "d", "e"}) {
      simulator += rowOf(name, "C:\\FS\\");
      drive.write("C:\\FS\\aircraft\\" + std::string(name) + "\\aircraft.cfg",
                  "[fltsim.0]\r\ntitle=" + std::string(name) + "\r\n");
    }
    drive.write("C:\\FS\\SKV_AC.lst", simulator);
    drive.write("C:\\Hangar\\SKV_AC.lst", rowOf("h", "C:\\Hangar\\") + rowOf("i", "C:\\Hangar\\") +
                                              rowOf("j", "C:\\Hangar\\"));
  }
  // Frames, menu, captions and rows are those of one view.
  void expectWholly(View view) {
    EXPECT_EQ(form.mnuViewFSAircraft.checked, view == View::fsAircraft);
    EXPECT_EQ(form.mnuViewHangar.checked, view == View::hangar);
    EXPECT_EQ(form.mnuViewFSScenery.checked, view == View::scenery);
    const bool aircraft = view != View::scenery;
    EXPECT_EQ(form.frameScenery.visible, !aircraft);
    EXPECT_EQ(form.mnuFileInstallSC.enabled, !aircraft);
    EXPECT_TRUE(form.frameAircraft.visible == aircraft && form.frameAddon.visible == aircraft);
    for (const auto* entry : {&form.mnuFileInstallAC, &form.mnuFileImportAC, &form.mnuViewCfg})
      EXPECT_EQ(entry->enabled, aircraft) << entry->name();
    const bool hangar = app.aircraftView == View::hangar;
    EXPECT_EQ(form.frameAircraft.caption, hangar ? "Aircraft: HANGAR" : "Aircraft: FS 2002");
    EXPECT_EQ(form.btnHangar.caption, hangar ? "To FS2002..." : "To Hangar...");
    EXPECT_EQ(app.ListDir, hangar ? "C:\\Hangar\\" : "C:\\FS\\");
    EXPECT_EQ(list.count(), hangar ? 3 : 5);
  }
  ui::ListView& list = form.lstAircraft;
};

TEST_F(AircraftViewsTest, EachViewKeepsItsAircraft) {
  for (const auto& [view, row] :
       {std::pair{&mnuViewFSAircraft_Click, 5}, {&mnuViewHangar_Click, 2}}) {
    view(app);
    select(list, row);
    mnuViewFSScenery_Click(app);
    view(app);
    EXPECT_EQ(list.selected(), row);
    EXPECT_EQ(list.visibleRow(), row);
  }
  mnuViewFSAircraft_Click(app);
  EXPECT_EQ(list.selected(), 5);

  // The rows have moved: the aircraft counts, and its number only when it is gone.
  const auto reloaded = [this](const Lines& names) {
    std::string stored;
    for (const std::string& name : names) stored += rowOf(name, "C:\\FS\\");
    drive.write("C:\\FS\\SKV_AC.lst", stored);
    form.mnuViewRefresh.click();
    return list.selected();
  };
  EXPECT_EQ(reloaded({"b", "a", "e"}), 3);
  EXPECT_EQ(form.txtACTitle.text, "e");
  EXPECT_EQ(reloaded({"e", "b"}), 1);
  list.select(2);
  EXPECT_EQ(reloaded({"c", "d"}), 2);
  EXPECT_EQ(reloaded({"a"}), 1);

  // The settings have named another simulator.
  app.FSRoot = "C:\\Other\\";
  drive.write("C:\\Other\\SKV_AC.lst", rowOf("x", "C:\\Other\\"));
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
  select(list, 2);
  form.txtACTitle.text = "mine";
  for (const Show& leave : ways) {
    leave();
    expectTold("Save the changes of \"b\"?");
    expectWholly(View::fsAircraft);
    EXPECT_EQ(list.selected(), 2);
    EXPECT_EQ(form.txtACTitle.text, "mine");
  }
  windows.answers = {ui::Answer::yes};
  form.mnuViewHangar.click();
  expectWholly(View::hangar);
  EXPECT_TRUE(holds(drive.read("C:\\FS\\aircraft\\b\\aircraft.cfg"), "title=mine"));
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
      select(list, 3);
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
  const auto show = [this](const std::string& simulator, const std::string& hangar) {
    app.FSRoot = simulator;
    app.HangarDir = hangar;
    mnuViewHangar_Click(app);
    return list.emptyText.get();
  };
  for (const auto& [simulator, hangar] : {std::pair{"C:\\gone\\", "C:\\gone\\Hangar\\"},
                                          {"C:\\FS\\", "Q:\\Hangar\\"},
                                          {"C:\\FS\\", "C:\\mount\\Hangar\\"}}) {
    EXPECT_TRUE(holds(show(simulator, hangar), "is not there: " + std::string(hangar)));
    EXPECT_TRUE(holds(list.emptyText, "F2"));
    EXPECT_FALSE(drive.exists("C:\\gone")) << hangar;
    EXPECT_EQ(drive.tree("C:\\mount"), Lines{});
  }
  for (const char* made : {"C:\\FS\\Hangar", "C:\\new\\Hangar"}) {
    EXPECT_TRUE(holds(show("C:\\FS\\", made + std::string("\\")), "The Hangar is empty."));
    EXPECT_EQ(drive.tree(made), (Lines{"Main\\", "aircraft\\"}));
  }
  EXPECT_TRUE(windows.boxes.empty());
}

}  // namespace skv::test
