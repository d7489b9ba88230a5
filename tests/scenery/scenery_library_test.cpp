#include "scenery/scenery_library.h"

#include <fstream>

#include "support/every_call.h"
#include "support/scenery_fixture.h"

namespace skv::test {

class SceneryLibraryTest : public SceneryTest {
 protected:
  SceneryLibraryTest() { putSource(); }
  void putSource() {
    drive.write(source + "Scenery\\a.bgl", "bgl");
    drive.write(source + "readme.txt", "read me");
  }
  void add(const std::string& folder, const std::string& told = "") {
    form.ftreeScenery.folder = folder;
    ui::raise(form.ftreeScenery.change);
    click(form.btnAddToSL, told);
  }

  const std::string source = "C:\\Down\\Rome\\", rome = "C:\\Lib\\Scenery\\Rome\\";
  const Lines whole{"Scenery\\", "Scenery\\a.bgl", "readme.txt"};
};

TEST_F(SceneryLibraryTest, TakesAFolderUnderTheNameThatTheUserGives) {
  EXPECT_FALSE(form.btnAddToSL.enabled) << "no folder is picked yet";
  windows.inputs = {"a:b", "Rome2"};
  add(source, "cannot hold: :");
  EXPECT_EQ(windows.inputPrompts, (Lines{"Scenery/Foldername|Rome", "Scenery/Foldername|a_b"}));
  EXPECT_EQ(listed(), (Lines{"Rome2|ADDON SCENERY\\Rome2"}));
  EXPECT_EQ(drive.tree("C:\\Lib\\Scenery\\Rome2\\"), whole);
  EXPECT_TRUE(drive.exists("C:\\Lib\\Main\\Rome2\\Texture"));
  EXPECT_EQ(drive.tree(source), whole);
  EXPECT_TRUE(holds(drive.read(library), coded("Rome2|ADDON SCENERY\\Rome2|")));

  add("C:\\Down\\Gone\\", "Nothing was added");
  windows.inputs = {"Rome2", "", std::nullopt};
  add(source, "Error #75");
  add(source, "Error #75");
  add(source);
  // A folder of the library without a row gets one, and nothing is copied or emptied.
  click(form.optMove);
  put({"C:\\Lib\\Scenery\\Lost\\x"});
  add("C:\\Lib\\Scenery\\Lost\\");
  EXPECT_EQ(listed().front(), "Lost|ADDON SCENERY\\Lost");
  EXPECT_TRUE(drive.exists("C:\\Lib\\Scenery\\Lost\\x") && holds(drive.read(library), "Lost"));
  // One with other files is completed when the user wants it, and its row taken where there is one.
  click(form.optCopy);
  put({rome + "other"});
  add(source, "that it does not list");
  EXPECT_FALSE(drive.exists(rome + "readme.txt"));
  windows.answers = {yes};
  add(source);
  EXPECT_EQ(drive.tree(rome).size(), 4U);
  drive.clear("C:\\Lib\\Scenery");
  add(source);
  EXPECT_EQ(drive.tree(rome), whole);
  EXPECT_EQ(listed().size(), 3U);
}

TEST_F(SceneryLibraryTest, AMoveEmptiesNoFolderOfWhichSomethingWasLeftOut) {
  for (const char* twin : {"a.txt", "A.TXT"})
    std::ofstream(drive.native(source) + "/" + twin) << twin;
  click(form.optMove);
  add(source, "was not emptied");
  EXPECT_EQ(drive.filesIn(source).size(), 4U);
}

TEST_F(SceneryLibraryTest, NeedsATenthMoreRoomThanTheSceneryHas) {
  drive.write(source + "big", std::string(990, 'x'));  // 1000 bytes with the others
  files.freeSpace = 1099;
  add(source, "Insufficient diskspace on \"C:\\Lib\\\"!");
  EXPECT_TRUE(listed().empty());
  files.freeSpace = 1100;
  add(source);
  EXPECT_EQ(listed().size(), 1U);
}

TEST_F(SceneryLibraryTest, TexturesGoToTheSelectedScenery) {
  putLibrary("Alps|ADDON SCENERY\\Alps\r\nBad|ADDON SCENERY\\..\r\n");
  click(form.optTextures);
  add(source);
  EXPECT_FALSE(drive.exists("C:\\Lib\\Main\\Alps")) << "the default is No";
  windows.answers = {yes};
  add(source);
  EXPECT_EQ(drive.tree("C:\\Lib\\Main\\Alps\\Texture\\"), whole);
  windows.boxes.clear();
  form.lstInactScenery.select(2);
  add(source, "cannot be the name of a scenery's folder");
}

TEST_F(SceneryLibraryTest, AMoveThatEndsAnywhereLosesNoFile) {
  forEveryEnding(
      files,
      [&] {
        clearLibrary();
        putSource();
        open();
        click(form.optMove);
      },
      [&] { add(source); },
      [&](bool struck) {
        const bool arrived = drive.read(rome + "Scenery\\a.bgl") == "bgl" &&
                             drive.read(rome + "readme.txt") == "read me";
        EXPECT_TRUE(arrived || drive.tree(source) == whole);
        EXPECT_TRUE(struck || (drive.exists(source) && drive.tree(source).empty()));
        EXPECT_TRUE(arrived || !holds(drive.read(library), "Rome")) << "no half scenery";
        if (!struck || drive.tree(source) != whole) return;
        open();
        windows.boxes.clear();
        if (listed().empty()) add(source);
        EXPECT_TRUE(windows.boxes.empty() && holds(drive.read(library), "Rome"));
        EXPECT_EQ(drive.tree(rome), whole) << "by a second try";
      });
}

TEST_F(SceneryLibraryTest, ImportsTheAddOnsThatItCanAndNothingElse) {
  drive.write(cfg,
              area(7, "Alps", "7", "ADDON SCENERY\\Alps") + area(6, "Store", "6", "ADDON SCENERY") +
                  area(5, "Up", "5", "ADDON SCENERY\\..") +
                  area(4, "Far", "4", "Else\\Far", "Remote=D:\\Addon Scenery\\Far\r\n") +
                  area(3, "World", "3", "Scenery") + area(2, "Had", "2", "Addon Scenery\\Had") +
                  area(1, "Nowhere", "1", "", "Remote=D:\\Addon Scenery\\x\r\n"));
  const std::string bgl = "C:\\FS\\ADDON SCENERY\\Alps\\Scenery\\a.bgl";
  put({bgl, "C:\\FS\\ADDON SCENERY\\Had\\new", "C:\\Lib\\Scenery\\Had\\Scenery\\x"});
  open();
  click(form.mnuFileImportSceneries, "Listed without their files:");
  EXPECT_EQ(listed(), (Lines{"Alps|ADDON SCENERY\\Alps", "Up|ADDON SCENERY\\..", "Far|Else\\Far",
                             "Had|Addon Scenery\\Had"}));
  EXPECT_EQ(drive.filesIn("C:\\Lib\\Scenery"), (Lines{"Alps\\Scenery\\a.bgl", "Had\\Scenery\\x"}));
  EXPECT_TRUE(drive.exists("C:\\Lib\\Main\\Alps\\Effects"));
  EXPECT_TRUE(holds(drive.read(library), coded("Far|Else\\Far|004|4|")));

  // A copy that fails leaves neither a folder nor a row.
  const std::string alps = "C:\\FS\\ADDON SCENERY\\Alps";
  for (const auto& [call, path] : {std::pair("copyFile", bgl), {"canonicalPath", alps}}) {
    drive.clear("C:\\Lib\\Scenery");
    putLibrary("");
    files.failWhen(call, path, err::deviceIo);
    click(form.mnuFileImportSceneries);
    EXPECT_FALSE(windows.boxes.empty());
    EXPECT_EQ(listed().front(), "Up|ADDON SCENERY\\..") << call;
    EXPECT_FALSE(drive.exists("C:\\Lib\\Scenery\\Alps"));
    files.heal();
  }
  // The next one takes what is missing, and the others once more only when the user wants it.
  EXPECT_EQ(answer(form.mnuFileImportSceneries, {ui::Answer::cancel}), 1U);
  EXPECT_EQ(listed().size(), 3U);
  answer(form.mnuFileImportSceneries, {no});
  EXPECT_EQ(listed().size(), 4U);
  EXPECT_TRUE(drive.exists("C:\\Lib\\Scenery\\Alps\\Scenery\\a.bgl"));
  drive.remove("C:\\Lib\\Scenery\\Alps\\Scenery\\a.bgl");
  answer(form.mnuFileImportSceneries, {yes});
  EXPECT_EQ(listed().size(), 8U);
}

TEST_F(SceneryLibraryTest, DeletesARowAndItsFilesOnlyWhenTheyAreItsOwn) {
  const std::string main = "C:\\Lib\\Main\\Rome\\a", zipped = "C:\\Packs\\Scenery\\Rome.zip";
  put({rome + ".hidden", main, zipped, "C:\\Big\\kept"});
  drive.link("C:\\Lib\\Main\\Alps", "C:\\Big");
  putLibrary("Alps|x\\Alps\r\nUp|x\\..\r\nTwin|x\\Rome\r\nRome|x\\Rome\r\n");
  const auto remove = [&](const std::deque<ui::Answer>& answers) {
    answer(form.btnSLDel, answers);
    return listed().size();
  };
  form.lstInactScenery.select(0);
  EXPECT_TRUE(remove({yes, yes}) == 4 && windows.boxes.empty()) << "no row is selected";
  select(form.lstInactScenery, 1);
  EXPECT_EQ(remove({no}), 4U);
  EXPECT_EQ(remove({yes, ui::Answer::cancel}), 4U);
  EXPECT_EQ(remove({yes, yes}), 3U);
  EXPECT_TRUE(!drive.exists("C:\\Lib\\Main\\Alps") && drive.exists("C:\\Big\\kept"));
  EXPECT_EQ(remove({yes, yes}), 2U);
  EXPECT_TRUE(holds(windows.boxes.back().text, "stay"));
  EXPECT_EQ(remove({yes, yes}), 1U) << "another row has the same folder";
  EXPECT_TRUE(drive.exists(rome + ".hidden"));
  EXPECT_EQ(remove({yes, yes, no}), 0U);
  EXPECT_TRUE(!drive.exists(rome) && !drive.exists(main) && drive.exists(zipped));
  EXPECT_TRUE(drive.read(library).empty() && !form.btnSLDel.enabled);
  EXPECT_TRUE(form.lblSceneryTitle.caption->empty() && form.imgScenery.tag->empty());
}

TEST_F(SceneryLibraryTest, ADeletionThatEndsAnywhereIsFinishedByASecondOne) {
  const std::string main = "C:\\Lib\\Main\\Rome\\Texture\\a.bmp",
                    zipped = "C:\\Packs\\Scenery\\Rome.zip";
  const auto remove = [&] {
    form.lstInactScenery.select(1);
    answer(form.btnSLDel, {yes, yes, yes});
  };
  forEveryEnding(
      files,
      [&] {
        clearLibrary();
        put({rome + "Scenery\\a.bgl", rome + "readme.txt", main, zipped});
        putLibrary("Rome|ADDON SCENERY\\Rome\r\n");
      },
      remove,
      [&](RunEnd end) {
        const bool gone = !drive.exists(rome) && !drive.exists(main) && !drive.exists(zipped);
        EXPECT_TRUE(gone || holds(drive.read(library), "Rome")) << "the row waits for its files";
        EXPECT_TRUE(end.killed || windows.boxes.back().buttons == ui::BoxButtons::ok ||
                    drive.read(library).empty())
            << "told";
        EXPECT_TRUE(end.struck || drive.read(library).empty());
        open();
        remove();
        EXPECT_FALSE(drive.exists(rome) || drive.exists(main) || drive.exists(zipped));
        EXPECT_EQ(drive.read(library), "");
      });
}

TEST_F(SceneryLibraryTest, OptionsAreEditedWithoutLosingWhatIsNotShown) {
  putLibrary("Rome|x\\Rome||||||a;;c|1;2;3;4;5;6;7;8;9;10;11\r\n");
  form.lstInactScenery.select(1);
  auto& dialog = app.frmSCOptions;
  const auto edit = [](ui::ListView& list, int row, const std::string& text) {
    bool cancel = true;
    list.select(row);
    list.afterLabelEdit(cancel, text);
  };
  for (const auto& [button, after] :
       {std::pair(&dialog.btnCancel, "|a;;c|1;2;3;4;5;6;7;8;9;10;11\r"),
        {&dialog.btnOK, "|a;c|2;x y;4;5;6;7;8;9;10;11\r"}}) {
    windows.onShow[&dialog] = [&, pressed = button] {
      EXPECT_EQ(dialog.lstFlatten.text(3) + dialog.lstExclude.text(9), "c9");
      edit(dialog.lstFlatten, 2, "");
      edit(dialog.lstExclude, 3, " x\x05y\x01 ");
      edit(dialog.lstExclude, 1, "");
      click(*pressed);
    };
    ui::raise(form.lstInactScenery.dblClick);
    EXPECT_TRUE(holds(drive.read(library), coded(after)));
  }
}

}  // namespace skv::test
