#include "scenery/scenery_database.h"

#include "scenery/scenery_lists.h"
#include "support/every_call.h"
#include "support/scenery_fixture.h"

namespace skv {
namespace {

using test::Ending;

class SceneryDatabaseTest : public test::SceneryTest {
 protected:
  void save() { ui::raise(app.frmMain.btnFSScenerySave.click); }
  void rewrite(const std::string& content, FileTime time) {
    drive.write(cfg, content);
    drive.setModified(cfg, time);
  }
};

TEST_F(SceneryDatabaseTest, ShowsTheHighestLayerOnTopAndSavesByPosition) {
  putDatabase();
  const std::string before = drive.read(cfg);
  open();
  EXPECT_EQ(areas(), "Alps+ World+ Rome+");
  EXPECT_EQ(app.frmMain.lstScenery.colour(2), 255U);
  EXPECT_EQ(app.frmMain.lstScenery.colour(1), ui::defaultColour);
  EXPECT_FALSE(app.frmMain.btnFSScenerySave.enabled);
  EXPECT_EQ(drive.read(cfg), before) << "a look changes nothing";

  app.frmMain.lstScenery.setChecked(2, false);
  ui::raise(app.frmMain.lstScenery.itemCheck, 2);
  EXPECT_TRUE(app.frmMain.btnFSScenerySave.enabled && app.frmMain.lblSceneryChanged.visible);
  save();
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(areasInFile(), "Rome World Alps");
  EXPECT_EQ(valueOf("Area.002", "Active"), "FALSE");
  EXPECT_EQ(valueOf("Area.001", "Flatten.0"), "b");
  EXPECT_EQ(valueOf("General", "Cache_Size") + valueOf("General", "Clean_On_Exit"), "7TRUE");
  EXPECT_EQ(drive.read(org), before);
  EXPECT_FALSE(app.frmMain.btnFSScenerySave.enabled || app.frmMain.lblSceneryChanged.visible);
  EXPECT_EQ(app.frmMain.lblStatus.caption, "");
  expectIdle();

  // A second save, from rows that came from the cache, whose file has other values by now.
  app.CfgCacheSize = "another simulator's";
  open();
  app.frmMain.lstScenery.setChecked(1, false);
  save();
  EXPECT_EQ(drive.read(org), before) << "the original is never replaced";
  EXPECT_EQ(valueOf("General", "Cache_Size"), "7");
}

TEST_F(SceneryDatabaseTest, TheCacheHoldsForTheVeryFileOnly) {
  putDatabase();
  drive.setModified(cfg, {1'000'000'000, 500'000'000});
  open();
  ASSERT_TRUE(drive.exists(cache));
  EXPECT_EQ(app.frmMain.lstScenery.selected(), 1);
  // Rows that only the cache has show that it was read.
  const std::string stamp = drive.read(cache).substr(0, drive.read(cache).find('\n') + 1);
  const std::string cached = stamp + test::coded("False|Cached|SceneDB\\x\r\n");
  drive.write(cache, cached);
  open();
  EXPECT_EQ(areas(), "Cached");
  EXPECT_EQ(app.frmMain.lstScenery.colour(1), 255U);
  const std::string other = area(1, "Other", "1", "x");
  for (const FileTime time : {FileTime{1'000'000'000, 500'100'000}, FileTime{999'999'000, 0}}) {
    rewrite(other, time);
    drive.write(cache, cached);
    open();
    EXPECT_EQ(areas(), "Other+");
    EXPECT_EQ(app.frmMain.lstScenery.selected(), 0);
    EXPECT_NE(drive.read(cache), cached);
  }
  for (const char* broken : {"", "0\r\nTrue\x01x\r\n"}) {
    drive.write(cache, broken);
    open();
    EXPECT_EQ(areas(), "Other+");
  }
}

TEST_F(SceneryDatabaseTest, ALoadThatAnotherOneEndsLeavesTheListInSight) {
  putDatabase();
  open();
  drive.remove(cache);
  windows.onYield = [&] {
    if (!app.frmMain.lblListLoading.visible) return;
    windows.onYield = nullptr;
    app.FSRoot.clear();
    ui::raise(app.frmMain.mnuViewRefresh.click);
  };
  open();
  EXPECT_TRUE(app.frmMain.lstScenery.visible && !app.frmMain.lblListLoading.visible);
}

TEST_F(SceneryDatabaseTest, AsksBeforeItDropsWhatTheRowsDoNotKnowOf) {
  putDatabase();
  open();
  rewrite(area(1, "Mine", "1", "x") + area(2, "Far", "1", "y"), {1'000'000'000, 0});
  const std::string changed = drive.read(cfg);
  app.frmMain.lstScenery.setChecked(1, false);
  save();
  ASSERT_EQ(windows.boxes.size(), 1U);
  EXPECT_EQ(windows.boxes[0].defaultButton, ui::DefaultButton::no);
  expectTold("Another program has changed");
  EXPECT_EQ(drive.read(cfg), changed);
  EXPECT_FALSE(drive.exists(org));
  EXPECT_TRUE(app.frmMain.btnFSScenerySave.enabled);
  windows.answers = {ui::Answer::yes};
  save();
  EXPECT_EQ(areasInFile(), "Rome World Alps");
  EXPECT_EQ(drive.read(org), changed);

  windows.boxes.clear();
  rewrite(area(1, "Mine", "1", "x") + "[Area.700]\r\nTitle=Far\r\n", {1'000'000'001, 0});
  open();
  save();
  expectTold("has 1 area that is not listed");
  windows.answers = {ui::Answer::yes};
  save();
  EXPECT_EQ(areasInFile(), "Mine");

  while (app.frmMain.lstScenery.count() < 1000) app.frmMain.lstScenery.add("x");
  save();
  EXPECT_TRUE(test::holds(windows.boxes.back().text, "has 1000 areas now"));
}

TEST_F(SceneryDatabaseTest, ADatabaseThatIsMissingOrCannotBeReadIsNotTakenForAnEmptyOne) {
  putDatabase();
  const std::string before = drive.read(cfg);
  for (const char* look : {"attributes", "readFile"}) {
    files.failWhen(look, cfg, err::deviceIo);
    open();
    expectTold("could not be read");
  }
  EXPECT_EQ(areas(), "");
  files.heal();
  save();
  expectTold("could not be read before");
  EXPECT_EQ(drive.read(cfg), before);
  EXPECT_FALSE(drive.exists(cache));

  open();
  drive.remove(cfg);
  app.frmMain.lstScenery.setChecked(1, false);
  save();
  EXPECT_EQ(areasInFile(), "Rome World Alps");
  EXPECT_EQ(valueOf("General", "Cache_Size"), "7");
  EXPECT_TRUE(windows.boxes.empty());
}

TEST_F(SceneryDatabaseTest, AtEveryMomentAWholeDatabaseStands) {
  putDatabase();
  const std::string before = drive.read(cfg);
  const auto put = [&] {
    drive.remove(org);
    drive.write(cfg, before);
    EXPECT_TRUE(disk.setAttributes(cfg, {.readOnly = true}).ok());
    open();
    app.frmMain.lstScenery.setChecked(1, false);
    windows.boxes.clear();
  };
  const auto check = [&](bool struck) {
    const bool saved = areasInFile() == "Rome World Alps";
    EXPECT_TRUE(saved || drive.read(cfg) == before);
    EXPECT_TRUE(!saved || drive.read(org) == before);
    EXPECT_TRUE(struck || saved);
    EXPECT_EQ(app.frmMain.lstScenery.count(), 3);
    disk.setAttributes(cfg, {}).skipped();
    disk.setAttributes(org, {}).skipped();
    return saved;
  };
  forEveryEnding(
      files, put, [&] { save(); },
      [&](bool struck) {
        EXPECT_TRUE(check(struck) || !windows.boxes.empty());
        expectIdle();
      },
      {Ending::fullDisk, Ending::failedLook});
  forEveryEnding(files, put, [&] { save(); }, check,
                 {Ending::kill, Ending::emptyFiles, Ending::lostFiles});
}

TEST_F(SceneryDatabaseTest, UnsavedChangesAreAskedAboutBeforeTheyGo) {
  putDatabase();
  open();
  app.frmMain.lstScenery.setChecked(1, false);
  ui::raise(app.frmMain.mnuViewRefresh.click);
  ui::raise(app.frmMain.mnuViewHangar.click);
  EXPECT_EQ(windows.boxes.size(), 2U);
  EXPECT_TRUE(app.frmMain.frameScenery.visible);
  EXPECT_EQ(areas(), "Alps World+ Rome+");
  windows.answers = {ui::Answer::no, ui::Answer::yes};
  ui::raise(app.frmMain.mnuViewRefresh.click);
  EXPECT_EQ(areas(), "Alps+ World+ Rome+") << "lost, as the user wished";
  app.frmMain.lstScenery.setChecked(1, false);
  ui::raise(app.frmMain.mnuViewHangar.click);
  EXPECT_FALSE(app.frmMain.frameScenery.visible || app.frmMain.mnuFileImportSceneries.enabled);
  EXPECT_EQ(valueOf("Area.003", "Active"), "FALSE");
}

}  // namespace
}  // namespace skv
