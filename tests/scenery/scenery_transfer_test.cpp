#include "scenery/scenery_transfer.h"

#include "support/every_call.h"
#include "support/scenery_fixture.h"
#include "support/zip_maker.h"

namespace skv::test {

class SceneryTransferTest : public SceneryTest {
 protected:
  SceneryTransferTest() {
    drive.write("C:\\Lib\\Scenery\\Paris\\Scenery\\p.bgl", "new");
    drive.write("C:\\Lib\\Main\\Paris\\Texture\\p.bmp", "t");
    drive.write("C:\\Lib\\Main\\Paris\\Effects\\p.fx", "e");
    putLibrary("Paris|ADDON SCENERY\\Europe\\Paris||||||f;g\r\n");
  }
  void add(const std::string& told = "") { click(form.btnAddSLtoFS, told); }
  std::size_t remove(int row, std::deque<ui::Answer> answers) {
    select(form.lstScenery, row);
    return answer(form.btnFSScenDel, std::move(answers));
  }
  const std::string addons = "C:\\FS\\ADDON SCENERY\\", paris = addons + "Europe\\Paris\\";
};

TEST_F(SceneryTransferTest, ALibrarySceneryBecomesTheTopArea) {
  drive.write("C:\\FS\\Texture\\p.bmp", "older or newer: replaced");
  add();
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(areas(), "Alps+ World+ Paris+ Rome+") << "by its number among those of the file";
  EXPECT_EQ(areasInFile() + valueOf("Area.002", "Flatten.0"), "Rome Paris World Alpsg");
  EXPECT_EQ(drive.tree(paris), (Lines{"Scenery\\", "Scenery\\p.bgl"}));
  EXPECT_EQ(drive.read("C:\\FS\\Texture\\p.bmp") + drive.read("C:\\FS\\Effects\\p.fx"), "te");
  EXPECT_TRUE(form.lstInactScenery.smallIcon(1) == 2 && !form.btnFSScenerySave.enabled);

  // Before it gets a twin the user is asked.
  drive.write("C:\\Lib\\Scenery\\Paris\\Scenery\\p.bgl", "newer");
  EXPECT_EQ(answer(form.btnAddSLtoFS, {}), 1U);
  EXPECT_EQ(drive.read(paris + "Scenery\\p.bgl"), "new");
  answer(form.btnAddSLtoFS, {no});
  EXPECT_EQ(drive.read(paris + "Scenery\\p.bgl"), "newer");
  EXPECT_EQ(form.lstScenery.count(), 4);
  answer(form.btnAddSLtoFS, {yes});
  EXPECT_EQ(form.lstScenery.count(), 5);
}

TEST_F(SceneryTransferTest, ASceneryWithAPackageComesFromIt) {
  drive.write("C:\\Packs\\Scenery\\Paris.zip",
              rawZip({{.name = "Scenery/Scenery/p.bgl", .data = "packed"},
                      {.name = "Main/Texture/q.bmp", .data = "q"}}));
  files.freeSpace = 3;
  add("Insufficient Disk Space in");
  EXPECT_TRUE(form.lstScenery.count() == 4 && form.btnFSScenerySave.enabled) << "unsaved";
  EXPECT_EQ(areasInFile(), "World Rome Alps");
  files.freeSpace.reset();
  add();
  EXPECT_TRUE(windows.boxes.empty() && form.lstScenery.count() == 4) << "that area, and no other";
  EXPECT_EQ(drive.read(addons + "Paris\\Scenery\\p.bgl"), "packed");
  EXPECT_EQ(drive.read("C:\\FS\\Texture\\q.bmp"), "q");
  EXPECT_TRUE(form.lstInactScenery.smallIcon(1) == 3 && drive.tree(app.InstallTempDir).empty());
}

TEST_F(SceneryTransferTest, NothingIsFilledOutsideTheSimulatorOrInItsOwnFolders) {
  for (const std::string& folder :
       Lines{"D:\\x", "Scenery", "ADDON SCENERY", "..\\x", "x\\..\\..\\x", "Texture", "aircraft"}) {
    put({"C:\\Lib\\Scenery\\" + folder.substr(folder.rfind('\\') + 1) + "\\x"});
    putLibrary("Paris|" + folder + "\r\n");
    add("was not added");
    EXPECT_EQ(form.lstScenery.count(), 3) << folder;
  }
  EXPECT_FALSE(drive.exists("C:\\x") || drive.exists("C:\\FS\\Texture\\x"));
}

TEST_F(SceneryTransferTest, AnAddThatEndsAnywhereLeavesAWholeDatabaseAndNoHalfScenery) {
  forEveryEnding(
      files,
      [&] {
        drive.clear("C:\\FS\\ADDON SCENERY");
        drive.remove(org);
        putDatabase();
        EXPECT_TRUE(disk.setAttributes(cfg, {.readOnly = true}).ok());
        open();
        windows.boxes.clear();
      },
      [&] { add(); },
      [&](RunEnd end) {
        const bool listed = areasInFile() == "Rome Paris World Alps";
        EXPECT_EQ(drive.read(listed ? org : cfg), database);
        EXPECT_TRUE(listed || (end.struck && (end.killed || !windows.boxes.empty())));
        const bool whole = drive.read(paris + "Scenery\\p.bgl") == "new";
        EXPECT_TRUE(whole || !(listed || drive.exists(paris)));
        EXPECT_TRUE(whole || areas() == "Alps+ World+ Rome+" || end.killed)
            << "no row without files";
        if (end.killed) open();
        answer(form.btnAddSLtoFS, {no, no});
        EXPECT_EQ(areas() + " " + areasInFile(), "Alps+ World+ Paris+ Rome+ Rome Paris World Alps");
        EXPECT_EQ(drive.tree(paris), (Lines{"Scenery\\", "Scenery\\p.bgl"}));
        for (const std::string& file : {cfg, org}) disk.setAttributes(file, {}).skipped();
      });
}

TEST_F(SceneryTransferTest, ADeletionThatEndsAnywhereIsFinishedByASecondOne) {
  const std::string rome = addons + "Rome\\";
  forEveryEnding(
      files,
      [&] {
        drive.clear("C:\\FS\\ADDON SCENERY");
        put({rome + "Scenery\\r.bgl", rome + "Texture\\r.bmp", rome + "readme.txt"});
        drive.remove(org);
        putDatabase();
        open();
      },
      [&] {
        remove(3, {yes, yes});
      },
      [&](RunEnd end) {
        EXPECT_TRUE(end.struck || !drive.exists(rome));
        EXPECT_TRUE(end.killed || !drive.exists(rome) ||
                    windows.boxes.back().buttons == ui::BoxButtons::ok)
            << "told";
        EXPECT_TRUE(end.killed || form.lstScenery.count() == (drive.exists(rome) ? 3 : 2));
        if (end.killed) open();
        // What has no files has no area, whatever happens; a kill may leave the files.
        EXPECT_TRUE(drive.exists(rome) || areasInFile() == "World Alps");
        if (form.lstScenery.count() == 3) remove(3, {yes, yes});
        EXPECT_EQ(areas() + " " + areasInFile(), "Alps+ World+ World Alps");
        EXPECT_TRUE(end.killed || !drive.exists(rome));
      });
}

TEST_F(SceneryTransferTest, DeletesAnAreaWithItsFolder) {
  const std::string rome = "C:\\FS\\Addon Scenery\\Rome";
  put({rome + "\\r.bgl", rome + "\\.hidden", "C:\\Lib\\Scenery\\Rome\\x", "C:\\Big\\kept"});
  drive.link(addons + "Alps", "C:\\Big");
  putLibrary("Rome|Addon Scenery\\Rome\r\n");
  EXPECT_EQ(remove(2, {yes, yes}), 0U) << "the simulator's own";
  EXPECT_EQ(remove(3, {no}), 1U);
  EXPECT_TRUE(holds(windows.boxes[0].text, "\"C:\\FS\\Addon Scenery\\Rome\" and below."));
  EXPECT_TRUE(form.lblSceneryTitle.caption == "Rome" && form.lstInactScenery.smallIcon(1) == 2);
  EXPECT_EQ(remove(3, {yes}), 1U) << "it is in the library";
  EXPECT_FALSE(drive.exists(rome));
  EXPECT_TRUE(form.lblSceneryTitle.caption == "World" && form.lstInactScenery.smallIcon(1) == 1);
  EXPECT_EQ(areas() + " " + areasInFile(), "Alps+ World+ World Alps");
  EXPECT_EQ(remove(1, {yes, yes}), 2U);
  EXPECT_TRUE(drive.exists("C:\\Big\\kept") && !drive.exists(addons + "Alps"));
}

TEST_F(SceneryTransferTest, EveryQuestionComesBeforeTheDeed) {
  const std::string required = area(1, "Rome", "1", "ADDON SCENERY\\Rome", "Required=true\r\n") +
                               "[Area.500]\r\nTitle=Far\r\n";
  const std::string rome = addons + "Rome\\x";
  put({rome});
  drive.write(cfg, required);
  open();
  // The folder, the library, the area's own word, the area that is not listed.
  for (std::size_t agreed = 0; agreed < 4; ++agreed) {
    EXPECT_EQ(remove(1, std::deque<ui::Answer>(agreed, yes)), agreed + 1);
    EXPECT_TRUE(drive.exists(rome) && drive.read(cfg) == required);
  }
  EXPECT_TRUE(holds(windows.boxes[2].text, "Required=TRUE"));
  EXPECT_EQ(windows.boxes[3].details, "Area.500: Far\r\n");
  answer(form.btnAddSLtoFS, {});
  EXPECT_EQ(windows.boxes.size(), 1U);
  EXPECT_TRUE(!drive.exists(paris) && areas() == "Rome+");
  // A save drops that word, which the original keeps.
  remove(1, {yes, yes, yes, yes});
  EXPECT_TRUE(!drive.exists(rome) && areas().empty() && form.lblSceneryTitle.caption->empty());
  EXPECT_EQ(form.imgScenery.tag, "");
  putDatabase();
  drive.write(cfg, area(1, "Rome", "1", "ADDON SCENERY\\Rome"));
  open();
  EXPECT_EQ(remove(1, {yes, yes}), 3U);
}

TEST_F(SceneryTransferTest, DeletesNoFilesOfAnotherAreaOrOfTheSimulator) {
  put({addons + "Alps\\x"});
  for (const char* folder : {"", "ADDON SCENERY", "Addon Scenery\\", "ADDON SCENERY\\.", "Texture",
                             "..", "ADDON SCENERY\\Alps\\..", "ADDON SCENERY\\Alps", "Scenery\\.",
                             "C:\\Lib\\Scenery\\Paris"}) {
    SCOPED_TRACE(folder);
    drive.write(cfg, area(2, "Bad", "9", folder) + area(1, "Alps", "1", "ADDON SCENERY\\Alps"));
    open();
    EXPECT_EQ(remove(1, {}), 1U);
    EXPECT_EQ(areas(), "Bad+ Alps+") << "neither files nor area";
    EXPECT_EQ(remove(1, {yes}), 1U);
    EXPECT_EQ(areas(), "Alps+");
    EXPECT_TRUE(drive.exists(addons + "Alps\\x") && drive.exists("C:\\FS\\Texture"));
  }
  EXPECT_TRUE(drive.exists("C:\\Lib\\Scenery\\Paris\\Scenery\\p.bgl"));
}

}  // namespace skv::test
