#include "scenery/scenery_library.h"

#include <fstream>

#include "support/every_call.h"
#include "support/scenery_fixture.h"

namespace skv {
namespace {

using test::coded;
using Paths = std::vector<std::string>;

class SceneryLibraryTest : public test::SceneryTest {
 protected:
  SceneryLibraryTest() {
    drive.write(source + "Scenery\\a.bgl", "bgl");
    drive.write(source + "readme.txt", "read me");
  }
  void pick(const std::string& folder) {
    app.frmMain.ftreeScenery.folder = folder;
    ui::raise(app.frmMain.ftreeScenery.change);
  }
  void add(const std::string& folder) {
    pick(folder);
    ui::raise(app.frmMain.btnAddToSL.click);
  }
  Paths listed() const { return rows(app.frmMain.lstInactScenery); }

  const std::string source = "C:\\Down\\Rome\\";
  const Paths whole{"Scenery\\", "Scenery\\a.bgl", "readme.txt"};
};

TEST_F(SceneryLibraryTest, TakesAFolderUnderTheNameThatTheUserGives) {
  open();
  EXPECT_FALSE(app.frmMain.btnAddToSL.enabled) << "no folder is picked yet";
  windows.inputs = {"a:b", "Rome2"};
  add(source);
  expectTold("cannot hold: :");
  EXPECT_EQ(windows.inputPrompts, (Paths{"Scenery/Foldername|Rome", "Scenery/Foldername|a_b"}));
  EXPECT_EQ(listed(), (Paths{"Rome2|ADDON SCENERY\\Rome2"}));
  EXPECT_EQ(app.frmMain.lstInactScenery.smallIcon(1), 1);
  EXPECT_EQ(drive.tree("C:\\Lib\\Scenery\\Rome2\\"), whole);
  EXPECT_TRUE(drive.exists("C:\\Lib\\Main\\Rome2\\Texture"));
  EXPECT_EQ(drive.tree(source), whole);
  EXPECT_TRUE(test::holds(drive.read(library), coded("Rome2|ADDON SCENERY\\Rome2|")));
  expectIdle();

  add("C:\\Down\\Gone\\");
  expectTold("Nothing was added");
  windows.inputs = {"Rome2", "", std::nullopt};
  for (const char* told : {"Error #75", "Error #75"}) {
    add(source);
    expectTold(told);
  }
  add(source);
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(listed().size(), 1U);

  ui::raise(app.frmMain.optMove.click);
  add(source);
  EXPECT_EQ(listed().front(), "Rome|ADDON SCENERY\\Rome");
  EXPECT_EQ(drive.tree("C:\\Lib\\Scenery\\Rome\\"), whole);
  EXPECT_EQ(drive.tree(source), Paths{}) << "moved";
  EXPECT_TRUE(drive.exists(source));
  for (const char* twin : {"a.txt", "A.TXT"})
    std::ofstream(drive.native(source) + "/" + twin) << twin;
  windows.inputs = {"Rome3"};
  add(source);
  expectTold("was not emptied");
  EXPECT_EQ(drive.tree(source), (Paths{"A.TXT", "a.txt"}));
}

TEST_F(SceneryLibraryTest, NeedsATenthMoreRoomThanTheSceneryHas) {
  open();
  drive.write(source + "big", std::string(990, 'x'));  // 1000 bytes with the others
  drive.write("C:\\FS\\ADDON SCENERY\\Alps\\big", std::string(1000, 'x'));
  files.freeSpace = 1099;
  add(source);
  expectTold("Insufficient diskspace on \"C:\\Lib\\\"!");
  EXPECT_TRUE(listed().empty());
  files.freeSpace = 1100;
  add(source);
  EXPECT_EQ(listed().size(), 1U);
  putDatabase();
  open();
  ui::raise(app.frmMain.mnuFileImportSceneries.click);
  expectTold("Insufficient diskspace");
  EXPECT_FALSE(drive.exists("C:\\Lib\\Scenery\\Alps"));
  EXPECT_EQ(listed().back(), "Alps|ADDON SCENERY\\Alps") << "the row stays";
}

TEST_F(SceneryLibraryTest, TexturesGoToTheSelectedScenery) {
  open();
  pick(source);
  EXPECT_FALSE(app.frmMain.optTextures.enabled);
  drive.write(library, coded("Alps|ADDON SCENERY\\Alps\r\nBad|ADDON SCENERY\\..\r\n"));
  open();
  ui::raise(app.frmMain.optTextures.click);
  add(source);
  EXPECT_FALSE(drive.exists("C:\\Lib\\Main\\Alps")) << "the default is No";
  windows.answers = {ui::Answer::yes};
  add(source);
  EXPECT_EQ(drive.tree("C:\\Lib\\Main\\Alps\\Texture\\"), whole);
  windows.boxes.clear();
  app.frmMain.lstInactScenery.select(2);
  add(source);
  expectTold("cannot be the name of a scenery's folder");
}

TEST_F(SceneryLibraryTest, AMoveThatEndsAnywhereLosesNoFile) {
  forEveryEnding(
      files,
      [&] {
        clearLibrary();
        drive.write(source + "Scenery\\a.bgl", "bgl");
        drive.write(source + "readme.txt", "read me");
        open();
        ui::raise(app.frmMain.optMove.click);
        windows.boxes.clear();
      },
      [&] { add(source); },
      [&](bool struck) {
        const bool arrived = drive.tree("C:\\Lib\\Scenery\\Rome\\") == whole &&
                             drive.read("C:\\Lib\\Scenery\\Rome\\readme.txt") == "read me" &&
                             drive.read("C:\\Lib\\Scenery\\Rome\\Scenery\\a.bgl") == "bgl";
        EXPECT_TRUE(arrived || drive.tree(source) == whole);
        EXPECT_TRUE(arrived || !test::holds(drive.read(library), "Rome")) << "no half scenery";
        EXPECT_TRUE(struck || arrived);
      });
}

TEST_F(SceneryLibraryTest, ImportsTheAddOnsThatItCanAndNothingElse) {
  drive.write(cfg,
              area(7, "Alps", "7", "ADDON SCENERY\\Alps") + area(6, "Store", "6", "ADDON SCENERY") +
                  area(5, "Up", "5", "ADDON SCENERY\\..") +
                  area(4, "Far", "4", "Else\\Far", "Remote=D:\\Addon Scenery\\Far\r\n") +
                  area(3, "World", "3", "Scenery") + area(2, "Had", "2", "Addon Scenery\\Had") +
                  area(1, "Nowhere", "1", "", "Remote=D:\\Addon Scenery\\x\r\n"));
  drive.write("C:\\FS\\ADDON SCENERY\\Alps\\Scenery\\a.bgl", "bgl");
  drive.write("C:\\FS\\ADDON SCENERY\\Had\\new.txt", "");
  drive.write("C:\\Lib\\Scenery\\Had\\Scenery\\x", "");
  open();
  EXPECT_TRUE(app.frmMain.mnuFileImportSceneries.enabled);
  ui::raise(app.frmMain.mnuFileImportSceneries.click);
  EXPECT_EQ(listed(), (Paths{"Alps|ADDON SCENERY\\Alps", "Up|ADDON SCENERY\\..", "Far|Else\\Far",
                             "Had|Addon Scenery\\Had"}));
  expectTold("Listed without their files:");
  EXPECT_EQ(app.frmMain.lstInactScenery.smallIcon(1), 2);
  EXPECT_EQ(drive.tree("C:\\Lib\\Scenery\\"),
            (Paths{"Alps\\", "Alps\\Scenery\\", "Alps\\Scenery\\a.bgl", "Had\\", "Had\\Scenery\\",
                   "Had\\Scenery\\x"}));
  EXPECT_TRUE(drive.exists("C:\\Lib\\Main\\Alps\\Effects"));
  EXPECT_TRUE(test::holds(drive.read(library), coded("Far|Else\\Far|004|4|")));

  // A copy that fails leaves neither a folder nor a row.
  drive.clear("C:\\Lib\\Scenery");
  drive.write(library, "");
  open();
  files.failWhen("copyFile", "C:\\FS\\ADDON SCENERY\\Alps\\Scenery\\a.bgl", err::deviceIo);
  ui::raise(app.frmMain.mnuFileImportSceneries.click);
  EXPECT_FALSE(windows.boxes.empty());
  EXPECT_EQ(listed().front(), "Up|ADDON SCENERY\\..");
  EXPECT_FALSE(drive.exists("C:\\Lib\\Scenery\\Alps"));
}

TEST_F(SceneryLibraryTest, DeletesARowAndItsFilesOnlyWhenTheyAreItsOwn) {
  drive.write(library, coded("Alps|ADDON SCENERY\\Alps\r\nUp|ADDON SCENERY\\..\r\n"
                             "Twin|x\\Rome\r\nRome|ADDON SCENERY\\Rome\r\n"));
  for (const char* name : {"Alps", "Rome"}) {
    drive.write("C:\\Lib\\Scenery\\" + std::string(name) + "\\.hidden", "");
    drive.write("C:\\Lib\\Main\\" + std::string(name) + "\\Texture\\a.bmp", "");
    drive.write("C:\\Packs\\Scenery\\" + std::string(name) + ".zip", "");
  }
  drive.write("C:\\Big\\kept", "");
  drive.remove("C:\\Lib\\Main\\Alps");
  drive.link("C:\\Lib\\Main\\Alps", "C:\\Big");
  open();
  const auto remove = [&](int row, std::deque<ui::Answer> answers) {
    select(app.frmMain.lstInactScenery, row);
    windows.boxes.clear();
    windows.answers = std::move(answers);
    ui::raise(app.frmMain.btnSLDel.click);
    return windows.boxes.size();
  };
  const auto yes = ui::Answer::yes, no = ui::Answer::no;
  EXPECT_EQ(app.frmMain.lstInactScenery.smallIcon(1), 3);
  EXPECT_EQ(remove(1, {no}), 1U);
  EXPECT_EQ(remove(1, {yes, yes, no}), 3U);
  EXPECT_FALSE(drive.exists("C:\\Lib\\Scenery\\Alps") || drive.exists("C:\\Lib\\Main\\Alps"));
  EXPECT_TRUE(drive.exists("C:\\Big\\kept") && drive.exists("C:\\Packs\\Scenery\\Alps.zip"));
  EXPECT_EQ(remove(1, {yes, yes}), 3U);
  EXPECT_TRUE(test::holds(windows.boxes.back().text, "stay"));
  EXPECT_EQ(remove(1, {yes, yes}), 3U) << "another row has the same folder";
  EXPECT_TRUE(drive.exists("C:\\Lib\\Scenery\\Rome\\.hidden"));
  EXPECT_EQ(app.frmMain.lstInactScenery.selected(), 1);
  EXPECT_EQ(remove(1, {yes, yes, yes}), 3U);
  EXPECT_FALSE(drive.exists("C:\\Lib\\Main\\Rome") || drive.exists("C:\\Packs\\Scenery\\Rome.zip"));
  EXPECT_EQ(drive.read(library), "");
  EXPECT_FALSE(app.frmMain.btnSLDel.enabled);
}

}  // namespace
}  // namespace skv
