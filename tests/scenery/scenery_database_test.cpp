#include "scenery/scenery_database.h"

#include "support/scenery_fixture.h"

namespace skv::test {

class SceneryDatabaseTest : public SceneryTest {
 protected:
  void save(const std::string& told = "") { click(form.btnFSScenerySave, told); }
  std::string moved(int steps) {
    ui::raise(form.lstScenery.moveSelected, steps);
    return areas();
  }
  void uncheckTop() { form.lstScenery.setChecked(1, false); }
  void rewrite(const std::string& content, FileTime time) {
    drive.write(cfg, content);
    drive.setModified(cfg, time);
  }
};

TEST_F(SceneryDatabaseTest, ShowsTheHighestLayerOnTopAndSavesByPosition) {
  EXPECT_EQ(areas(), "Alps+ World+ Rome+");
  EXPECT_TRUE(form.lstScenery.colour(2) == 255 && form.lstScenery.colour(1) == ui::defaultColour);
  EXPECT_TRUE(!form.btnFSScenerySave.enabled && drive.read(cfg) == database);
  form.lstScenery.setChecked(2, false);
  ui::raise(form.lstScenery.itemCheck, 2);
  EXPECT_TRUE(form.btnFSScenerySave.enabled && form.lblSceneryChanged.visible);
  save();
  EXPECT_FALSE(form.btnFSScenerySave.enabled || form.lblSceneryChanged.visible);
  EXPECT_EQ(areasInFile(), "Rome World Alps");
  EXPECT_EQ(valueOf("Area.002", "Active") + valueOf("Area.001", "Flatten.0"), "FALSEb");
  EXPECT_EQ(valueOf("General", "Cache_Size") + valueOf("General", "Clean_On_Exit"), "7TRUE");

  // A second save, from rows that came from the cache, whose file has other values by now.
  app.CfgCacheSize = "another simulator's";
  open();
  uncheckTop();
  save();
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(drive.read(org), database) << "the original is never replaced";
  EXPECT_EQ(valueOf("General", "Cache_Size"), "7");
}

TEST_F(SceneryDatabaseTest, MovesChangeTheRowsAndASaveNumbersThem) {
  EXPECT_TRUE(!form.btnSCup.enabled && form.btnSCdn.enabled);
  EXPECT_EQ(moved(-1), "Alps+ World+ Rome+");
  click(form.btnSCdn);
  EXPECT_EQ(areas(), "World+ Alps+ Rome+");
  EXPECT_EQ(moved(5), "World+ Rome+ Alps+");
  EXPECT_TRUE(form.btnSCup.enabled && !form.btnSCdn.enabled);
  click(form.btnSCup);
  EXPECT_EQ(moved(-1), "Alps+ World+ Rome+");
  EXPECT_FALSE(form.btnFSScenerySave.enabled) << "back as it was";
  moved(1);
  save();
  EXPECT_EQ(areasInFile() + valueOf("Area.003", "Layer"), "Rome Alps World3");

  // Where the file has one layer for several areas, the rows' places tell them apart.
  std::string equal;
  for (int number = 1; number <= 3; ++number)
    equal += area(number, std::string(1, static_cast<char>('A' + number)), "7", "x");
  rewrite(equal, {1'000'000'000, 0});
  open();
  form.lstScenery.select(1);
  EXPECT_EQ(moved(1), "C+ B+ D+");
  EXPECT_EQ(moved(1), "C+ D+ B+");
  save();
  open();
  EXPECT_EQ(areas() + " " + areasInFile(), "C+ D+ B+ B D C");
}

TEST_F(SceneryDatabaseTest, TheCacheHoldsForTheVeryFileOnly) {
  rewrite(database, {1'000'000'000, 500'000'000});
  open();
  // Rows that only the cache has show that it was read.
  const std::string stamp = drive.read(cache).substr(0, drive.read(cache).find('\n') + 1);
  const std::string cached = stamp + coded("False|Cached|SceneDB\\x\r\n");
  drive.write(cache, cached);
  open();
  EXPECT_EQ(areas(), "Cached");
  EXPECT_EQ(form.lstScenery.colour(1), 255U);
  const std::string other = area(1, "Other", "1", "x");
  for (const FileTime time : {FileTime{1'000'000'000, 500'100'000}, FileTime{999'999'000, 0}}) {
    rewrite(other, time);
    drive.write(cache, cached);
    open();
    EXPECT_EQ(areas(), "Other+");
    EXPECT_NE(drive.read(cache), cached);
  }
}

TEST_F(SceneryDatabaseTest, AsksBeforeItDropsWhatTheRowsDoNotKnowOf) {
  const std::string changed = area(1, "Mine", "1", "x") + "[Area.700]\r\nTitle=Far\r\n";
  rewrite(area(1, "Mine", "1", "x"), {1'000'000'000, 0});
  uncheckTop();
  save("Another program has changed");
  EXPECT_EQ(areasInFile(), "Mine");
  EXPECT_TRUE(!drive.exists(org) && form.btnFSScenerySave.enabled);
  answer(form.btnFSScenerySave, {yes});
  EXPECT_EQ(areasInFile(), "Rome World Alps");

  windows.boxes.clear();
  rewrite(changed, {1'000'000'001, 0});
  open();
  for (int times = 0; times < 2; ++times) {
    EXPECT_TRUE(form.lblSceneryUnreached.visible);
    EXPECT_EQ(form.lblSceneryUnreached.caption.get(), "1 area of Scenery.cfg is not listed");
    open();  // from the cache
  }
  save();
  EXPECT_EQ(windows.boxes.back().details, "Area.700: Far\r\n");
  expectTold("has 1 area that is not listed");
  EXPECT_EQ(drive.read(cfg), changed);
  answer(form.btnFSScenerySave, {yes});
  EXPECT_NE(drive.read(cfg), changed);
  EXPECT_FALSE(form.lblSceneryUnreached.visible);
}

TEST_F(SceneryDatabaseTest, ADatabaseThatIsMissingOrCannotBeReadIsNotTakenForAnEmptyOne) {
  drive.remove(cache);
  for (const char* look : {"attributes", "readFile"}) {
    files.failWhen(look, cfg, err::deviceIo);
    open();
    expectTold("could not be read");
  }
  files.heal();
  save("could not be read before");
  EXPECT_EQ(drive.read(cfg), database);

  open();
  drive.remove(cfg);
  uncheckTop();
  save();
  EXPECT_EQ(areasInFile() + valueOf("General", "Cache_Size"), "Rome World Alps7");
  EXPECT_TRUE(windows.boxes.empty());
}

TEST_F(SceneryDatabaseTest, UnsavedChangesAreAskedAboutBeforeTheyGo) {
  uncheckTop();
  click(form.mnuViewRefresh);
  click(form.mnuViewFSScenery);
  click(form.mnuViewHangar);
  EXPECT_EQ(windows.boxes.size(), 3U);
  EXPECT_TRUE(form.frameScenery.visible);
  EXPECT_EQ(areas(), "Alps World+ Rome+");
  answer(form.mnuViewRefresh, {no, yes});
  EXPECT_EQ(areas(), "Alps+ World+ Rome+") << "lost, as the user wished";
  uncheckTop();
  click(form.mnuViewHangar);
  EXPECT_FALSE(form.frameScenery.visible || form.mnuFileImportSceneries.enabled);
  EXPECT_EQ(valueOf("Area.003", "Active"), "FALSE");
}

}  // namespace skv::test
