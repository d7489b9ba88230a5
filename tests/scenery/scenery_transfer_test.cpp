#include "scenery/scenery_transfer.h"

#include "support/every_call.h"
#include "support/scenery_fixture.h"
#include "support/zip_maker.h"

namespace skv {
namespace {

using Paths = std::vector<std::string>;

class SceneryTransferTest : public test::SceneryTest {
 protected:
  SceneryTransferTest() {
    putDatabase();
    drive.write(library, test::coded("Paris|ADDON SCENERY\\Europe\\Paris||||||f;g\r\n"));
    drive.write("C:\\Lib\\Scenery\\Paris\\Scenery\\p.bgl", "new");
    drive.write("C:\\Lib\\Main\\Paris\\Texture\\p.bmp", "t");
    drive.write("C:\\Lib\\Main\\Paris\\Effects\\p.fx", "e");
  }
  void add() { ui::raise(app.frmMain.btnAddSLtoFS.click); }
  void remove(int row, std::deque<ui::Answer> answers) {
    select(app.frmMain.lstScenery, row);
    windows.boxes.clear();
    windows.answers = std::move(answers);
    ui::raise(app.frmMain.btnFSScenDel.click);
  }
  const ui::Answer yes = ui::Answer::yes;
  const std::string paris = "C:\\FS\\ADDON SCENERY\\Europe\\Paris\\";
};

TEST_F(SceneryTransferTest, ALibrarySceneryBecomesTheTopArea) {
  open();
  drive.write("C:\\FS\\Texture\\p.bmp", "older or newer: replaced");
  add();
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(areas(), "Alps+ World+ Paris+ Rome+") << "by its number among those of the file";
  EXPECT_EQ(areasInFile(), "Rome Paris World Alps");
  EXPECT_EQ(valueOf("Area.002", "Flatten.0"), "g");
  EXPECT_EQ(drive.tree(paris), (Paths{"Scenery\\", "Scenery\\p.bgl"}));
  EXPECT_EQ(drive.read("C:\\FS\\Texture\\p.bmp") + drive.read("C:\\FS\\Effects\\p.fx"), "te");
  EXPECT_EQ(app.frmMain.lstInactScenery.smallIcon(1), 2);
  EXPECT_FALSE(app.frmMain.btnFSScenerySave.enabled);
  expectIdle();
  add();
  EXPECT_EQ(app.frmMain.lstScenery.count(), 5) << "a copy: it can be added again";
}

TEST_F(SceneryTransferTest, ASceneryWithAPackageComesFromIt) {
  drive.write("C:\\Packs\\Scenery\\Paris.zip",
              test::rawZip({{.name = "Scenery/Scenery/p.bgl", .data = "packed"},
                            {.name = "Main/Texture/q.bmp", .data = "q"}}));
  open();
  files.freeSpace = 3;
  add();
  EXPECT_TRUE(test::holds(windows.boxes.back().text, "Insufficient Disk Space in"));
  EXPECT_EQ(app.frmMain.lstScenery.count(), 4) << "unsaved";
  EXPECT_TRUE(app.frmMain.btnFSScenerySave.enabled);
  EXPECT_EQ(areasInFile(), "World Rome Alps");
  files.freeSpace.reset();
  windows.answers = {ui::Answer::no};
  open();
  add();
  EXPECT_EQ(drive.read("C:\\FS\\ADDON SCENERY\\Paris\\Scenery\\p.bgl"), "packed");
  EXPECT_EQ(drive.read("C:\\FS\\Texture\\q.bmp"), "q");
  EXPECT_FALSE(drive.exists(paris));
  EXPECT_EQ(drive.tree(app.InstallTempDir), Paths{});
  EXPECT_EQ(app.frmMain.lstInactScenery.smallIcon(1), 3);
}

TEST_F(SceneryTransferTest, NothingIsFilledOutsideTheSimulatorOrInItsOwnFolders) {
  for (const std::string& folder : Paths{"D:\\Paris", "Scenery", "ADDON SCENERY", "..\\Paris",
                                         "x\\..\\..\\Paris", "Texture", "aircraft"}) {
    drive.write(library, "Paris\x01" + folder + "\r\n");
    drive.write("C:\\Lib\\Scenery\\" + folder.substr(folder.rfind('\\') + 1) + "\\x", "");
    open();
    add();
    expectTold("was not added");
    EXPECT_EQ(app.frmMain.lstScenery.count(), 3) << folder;
  }
  EXPECT_FALSE(drive.exists("C:\\Paris") || drive.exists("C:\\FS\\Texture\\x"));
}

TEST_F(SceneryTransferTest, AnAddThatEndsAnywhereLeavesAWholeDatabaseAndNoHalfScenery) {
  const std::string before = drive.read(cfg);
  forEveryEnding(
      files,
      [&] {
        drive.clear("C:\\FS\\ADDON SCENERY");
        drive.remove(org);
        drive.write(cfg, before);
        open();
        windows.boxes.clear();
      },
      [&] { add(); },
      [&](bool struck) {
        const bool listed = areasInFile() == "Rome Paris World Alps";
        EXPECT_TRUE(listed || drive.read(cfg) == before);
        EXPECT_TRUE(!listed || drive.read(paris + "Scenery\\p.bgl") == "new");
        EXPECT_TRUE(!drive.exists(paris) || drive.read(paris + "Scenery\\p.bgl") == "new");
        EXPECT_TRUE(struck || listed);
      });
}

TEST_F(SceneryTransferTest, DeletesAnAreaWithItsFolder) {
  drive.write("C:\\FS\\Addon Scenery\\Rome\\Scenery\\r.bgl", "");
  drive.write("C:\\FS\\Addon Scenery\\Rome\\.hidden", "");
  drive.write("C:\\Lib\\Scenery\\Rome\\x", "");
  drive.write("C:\\Elsewhere\\kept", "");
  drive.link("C:\\FS\\ADDON SCENERY\\Alps", "C:\\Elsewhere");
  open();
  EXPECT_TRUE(app.frmMain.btnFSScenDel.enabled);
  remove(2, {yes, yes});
  EXPECT_TRUE(windows.boxes.empty()) << "the simulator's own";
  EXPECT_FALSE(app.frmMain.btnFSScenDel.enabled);
  remove(3, {ui::Answer::no});
  EXPECT_EQ(windows.boxes.size(), 1U);
  EXPECT_EQ(windows.boxes[0].text,
            "This will delete ALL folders and files\rin \"{FSRoot}\\Addon Scenery\\Rome\" and "
            "below.\r\rDo you want to proceed?");
  remove(3, {yes});
  EXPECT_EQ(windows.boxes.size(), 1U) << "it is in the library";
  EXPECT_FALSE(drive.exists("C:\\FS\\Addon Scenery\\Rome"));
  EXPECT_EQ(areas(), "Alps+ World+");
  EXPECT_EQ(areasInFile(), "World Alps") << "at once";
  remove(1, {yes, yes});
  EXPECT_EQ(windows.boxes.size(), 2U);
  EXPECT_TRUE(drive.exists("C:\\Elsewhere\\kept"));
  EXPECT_FALSE(drive.exists("C:\\FS\\ADDON SCENERY\\Alps"));
}

TEST_F(SceneryTransferTest, DeletesNoFilesOfAnotherAreaOrOfTheSimulator) {
  drive.write("C:\\FS\\ADDON SCENERY\\Alps\\x", "");
  const auto all = [&] {
    Paths tree = drive.tree("C:\\FS\\");
    std::erase_if(tree,
                  [](const std::string& path) { return path.find('\\') == std::string::npos; });
    return tree;
  };
  const Paths before = all();
  for (const char* folder : {"", "ADDON SCENERY", "Addon Scenery\\", "ADDON SCENERY\\.", "Texture",
                             "..", "ADDON SCENERY\\Alps\\..", "ADDON SCENERY\\Alps", "Scenery\\.",
                             "C:\\Lib\\Scenery\\Paris"}) {
    SCOPED_TRACE(folder);
    drive.write(cfg, area(2, "Bad", "9", folder) + area(1, "Alps", "1", "ADDON SCENERY\\Alps"));
    open();
    remove(1, {yes, yes});
    EXPECT_EQ(areas(), "Alps+");
    EXPECT_EQ(all(), before);
    EXPECT_EQ(windows.boxes.size() > 1 || *folder == '\0', true);
  }
  EXPECT_TRUE(drive.exists("C:\\Lib\\Scenery\\Paris\\Scenery\\p.bgl"));
}

}  // namespace
}  // namespace skv
