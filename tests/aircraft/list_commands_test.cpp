#include "aircraft/list_commands.h"

#include "aircraft/aircraft_views.h"
#include "core/staged_folder.h"
#include "support/every_call.h"
#include "support/program_fixture.h"

namespace skv::test {

class ListCommandsTest : public ProgramTest {
 protected:
  ListCommandsTest() {
    for (const std::string& root : {fs, hangar}) {
      drive.write(root + "a\\aircraft.cfg", "[fltsim.0]\r\ntitle=Plane A\r\n");
      drive.write(root + "a\\.hidden", "");
      drive.write(root + "a\\panel\\panel.cfg", "[fltsim]\r\nalias=a\\panel.x\r\n");
      drive.write(root + "a\\panel.x\\panel.cfg", "[fltsim]\r\nalias=bb\\panel\r\n");
      drive.write(root + "b\\Aircraft.cfg", "");
      drive.write(root + "b\\panel\\panel.cfg", "[fltsim]\r\nalias=A\\panel\r\n");
      drive.write(root + "b\\sound\\sound.cfg", "");
    }
    drive.write("C:\\Hangar\\Main\\a\\Gauges\\g.gau", "");
    drive.write("C:\\Packs\\a.zip", "");
  }
  void open(void (*view)(App&), const std::string& root) {
    const std::string store = root == fs ? "C:\\FS\\" : "C:\\Hangar\\";
    drive.write(store + "SKV_AC.lst", line("A", root + "a\\") + line("B", root + "b\\"));
    view(app);
  }
  // Answers how many questions were asked.
  std::size_t remove(int row, std::deque<ui::Answer> answers) {
    windows.boxes.clear();
    windows.answers = std::move(answers);
    select(form.lstAircraft, row);
    click(form.btnDelAC);
    expectIdle();
    return windows.boxes.size();
  }
  const std::string fs = "C:\\FS\\aircraft\\", hangar = "C:\\Hangar\\aircraft\\";
};

TEST_F(ListCommandsTest, ImportsWhatTheListsLack) {
  for (const auto& [file, content] : {std::pair{"c\\AIRCRAFT.CFG", "[FLTSIM.0]\r\nTitle=C"},
                                      {"known\\aircraft.cfg", "[fltsim.0]\r\ntitle=Known"},
                                      {"c\\Panel\\panel.cfg", "[fltsim]\r\nalias="},
                                      {"Glass\\panel.cfg", "[Window Titles]"},
                                      {"~SKVUnfinished\\aircraft.cfg", "[fltsim.0]"}})
    drive.write(fs + file, content);
  const std::string known = line("Mine", "c:\\fs\\AIRCRAFT\\KNOWN\\");
  drive.write("C:\\FS\\SKV_AC.lst", known);
  mnuViewFSAircraft_Click(app);
  for (int i = 0; i < 2; ++i) {
    click(form.mnuFileImportAC);
    click(form.mnuFileImportPN);
    click(form.mnuFileImportSN);
    EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"), known + line("Plane A", fs + "a\\") +
                                                    line("*Unknown*", fs + "b\\") +
                                                    line("C", fs + "c\\"));
    EXPECT_EQ(rows(form.lstPanel), (Lines{"c|" + fs + "c\\Panel\\", "Glass|" + fs + "Glass\\"}))
        << "an alias is no panel";
    EXPECT_EQ(rows(form.lstSound), (Lines{"b|" + fs + "b\\sound\\"}));
  }
  EXPECT_EQ(form.lstAircraft.smallIcon(2), 8) << "in all three places";

  drive.write("C:\\FS\\SKV_AC.lst", line("The root itself", fs));
  mnuViewFSAircraft_Click(app);
  click(form.mnuFileImportAC);
  EXPECT_EQ(form.lstAircraft.count(), 1);
}

TEST_F(ListCommandsTest, AddsOnlyAnAircraftBelowTheRoot) {
  open(mnuViewFSAircraft_Click, fs);
  for (const auto& [folder, taken] :
       {std::pair(fs, false), {fs + "b\\panel", false}, {"C:\\FS", false}, {fs + "a", true}}) {
    windows.boxes.clear();
    picks(folder);
    windows.inputs = {"Mine"};
    click(form.btnAddAC);
    EXPECT_EQ(form.lstAircraft.count() == 3, taken) << folder;
    EXPECT_EQ(windows.boxes.size(), taken ? 0U : 1U);
  }
  EXPECT_EQ(form.lstAircraft.selected(), 3);
  EXPECT_TRUE(drive.read("C:\\FS\\SKV_AC.lst").ends_with(line("Mine", fs + "a\\")));
}

TEST_F(ListCommandsTest, DeletesInTheSimulator) {
  open(mnuViewFSAircraft_Click, fs);
  EXPECT_EQ(remove(1, {no}), 1U);
  EXPECT_EQ(windows.boxes[0].text, "Remove selected Aircraft?\r\"A\", " + fs + "a\\");
  EXPECT_EQ(remove(1, {yes, ui::Answer::cancel}), 2U) << "Esc calls all off";
  EXPECT_EQ(form.lstAircraft.count(), 2);
  EXPECT_EQ(remove(2, {yes, no}), 2U);
  EXPECT_TRUE(windows.boxes[1].text.ends_with(fs + "b\\")) << "nobody's panel is in it";
  EXPECT_TRUE(drive.exists(fs + "b\\sound"));
  open(mnuViewFSAircraft_Click, fs);
  files.failWhen("deleteFile", fs + "~SKVUnfinished\\aircraft.cfg", err::permissionDenied);
  EXPECT_EQ(remove(1, {yes, yes, ui::Answer::cancel}), 3U);
  EXPECT_TRUE(holds(windows.boxes[1].text, fs + "a\\\r\rIts panel or sound is used by:\rB"));
  EXPECT_TRUE(windows.boxes[2].details.starts_with(fs + "a\\aircraft.cfg\n"));
  EXPECT_EQ(form.lstAircraft.count(), 2);
  windows.onYield = [&] { app.stopRequested = app.stopRequested || windows.boxes.size() == 3; };
  EXPECT_EQ(remove(1, {yes, yes, ui::Answer::ok}), 4U) << "the user has closed the window";
  EXPECT_EQ(form.lstAircraft.count(), 2);
  windows.onYield = {};
  files.heal();
  EXPECT_EQ(remove(1, {yes, yes}), 2U);
  EXPECT_FALSE(drive.exists(fs + "a"));
  EXPECT_TRUE(drive.exists(hangar + "a\\aircraft.cfg") && drive.exists("C:\\Packs\\a.zip"));
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"), line("B", fs + "b\\"));
  EXPECT_EQ(remove(1, {yes, no}), 2U);
  EXPECT_FALSE(form.btnDelAC.enabled);
}

TEST_F(ListCommandsTest, ADeletionThatWasCutOffIsFinishedByTheNext) {
  for (const bool inHangar : {false, true}) {
    const std::string root = inHangar ? hangar : fs, folder = root + "a";
    const auto prepare = [&] {
      for (const char* file : {"\\aircraft.cfg", "\\.hidden", "\\panel\\panel.cfg"})
        drive.write(folder + file, "");
      drive.write("C:\\Hangar\\Main\\a\\Gauges\\g.gau", "");
      drive.write("C:\\Packs\\a.zip", "");
      open(inHangar ? mnuViewHangar_Click : mnuViewFSAircraft_Click, root);
      windows.answers = {yes, yes, yes};
      form.lstAircraft.select(1);
    };
    const auto expectGone = [&] {
      EXPECT_FALSE(drive.exists(folder) || drive.exists(root + "~SKVUnfinished"));
      EXPECT_FALSE(inHangar && drive.exists("C:\\Hangar\\Main\\a"));
      EXPECT_FALSE(inHangar && drive.exists("C:\\Packs\\a.zip"));
    };
    for (const Ending ending : inHangar
                                   ? std::vector{Ending::failure, Ending::failedLook, Ending::kill}
                                   : std::vector{Ending::failure})
      forEveryCall(
          files, ending, prepare, [&] { form.btnDelAC.click(); },
          [&](bool struck) {
            const bool listed = form.lstAircraft.count() == 2;
            EXPECT_TRUE(struck || !listed);
            if (!listed) return expectGone();
            clearUnfinishedFolders(app);  // the next start
            EXPECT_TRUE(!drive.exists(folder) || ending != Ending::kill ||
                        drive.exists(folder + "\\panel\\panel.cfg"))
                << "half of it under its name";
            remove(1, {yes, yes, yes});
            expectGone();
            EXPECT_EQ(form.lstAircraft.count(), 1);
          });
  }
}

TEST_F(ListCommandsTest, TheRowBehindADeletedOneIsShownAndItsEditsAreNotAskedFor) {
  open(mnuViewFSAircraft_Click, fs);
  form.lstAircraft.add("C", {fs + "c\\"});
  form.lstAircraft.add("D", {fs + "d\\"});
  form.txtACTitle.text = "edited";
  for (const auto& [row, next] : {std::pair(1, "B"), {2, "D"}, {2, "B"}}) {
    EXPECT_EQ(remove(row, {yes, no}), 2U);
    EXPECT_EQ(form.lstAircraft.text(form.lstAircraft.selected()), next);
  }
}

TEST_F(ListCommandsTest, DeletesInTheHangar) {
  open(mnuViewHangar_Click, hangar);
  EXPECT_EQ(remove(1, {yes, yes, no}), 3U);
  EXPECT_FALSE(drive.exists(hangar + "a") || drive.exists("C:\\Hangar\\Main\\a"));
  EXPECT_TRUE(drive.exists("C:\\Packs\\a.zip") && drive.exists(fs + "a\\aircraft.cfg"));
  EXPECT_EQ(form.lstAircraft.selected(), 1);
  drive.write("C:\\Packs\\b.zip", "");
  EXPECT_EQ(remove(1, {yes, yes, yes}), 3U);
  EXPECT_FALSE(drive.exists("C:\\Packs\\b.zip"));

  // Of two aircraft whose folders have one name, the row's own folder goes and nothing else.
  drive.write(hangar + "alpha\\b\\aircraft.cfg", "");
  for (const char* shared : {"C:\\Packs\\b.zip", "C:\\Hangar\\Main\\b\\Gauges\\g.gau"})
    drive.write(shared, "");
  drive.write(hangar + "b\\aircraft.cfg", "");
  drive.write("C:\\Hangar\\SKV_AC.lst",
              line("B", hangar + "b\\") + line("Deep", hangar + "alpha\\b\\"));
  mnuViewFSAircraft_Click(app);
  mnuViewHangar_Click(app);
  EXPECT_EQ(remove(2, {yes, yes, yes}), 2U);
  EXPECT_FALSE(drive.exists(hangar + "alpha\\b"));
  for (const std::string& other :
       {std::string("C:\\Packs\\b.zip"), std::string("C:\\Hangar\\Main\\b\\Gauges\\g.gau"),
        hangar + "b\\aircraft.cfg"})
    EXPECT_TRUE(drive.exists(other)) << other;
  EXPECT_EQ(rows(form.lstAircraft), Lines{"B|" + hangar + "b\\"});
}

TEST_F(ListCommandsTest, FilesThatAreNotTheRowsAloneStay) {
  for (const std::string& folder :
       {std::string("C:\\FS\\"), fs, std::string("C:\\"), std::string("C:\\FS\\aircraft"),
        fs + "b\\..\\", fs + "B", std::string("\\"), std::string()}) {
    SCOPED_TRACE(folder);
    drive.write("C:\\FS\\SKV_AC.lst", line("X", folder) + line("B", fs + "b\\"));
    mnuViewFSAircraft_Click(app);
    const bool root = folder == fs || folder + "\\" == fs;
    remove(1, {yes, yes, yes});
    EXPECT_EQ(form.lstAircraft.count(), root ? 1 : 2);
    if (!root) remove(1, {yes, no});
    EXPECT_EQ(rows(form.lstAircraft), Lines{"B|" + fs + "b\\"});
    EXPECT_TRUE(drive.exists(fs + "a\\aircraft.cfg") && drive.exists(fs + "b\\Aircraft.cfg"));
  }
}

}  // namespace skv::test
