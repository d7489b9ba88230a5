#include "scenery/scenery_order.h"

#include "scenery/scenery_row.h"
#include "support/scenery_fixture.h"

namespace skv {
namespace {

using test::coded;

class SceneryOrderTest : public test::SceneryTest {
 protected:
  void putLibrary(const std::string& flatten, const std::string& exclude) {
    drive.write(library,
                coded("Rome|ADDON SCENERY\\Rome||||||" + flatten + "|" + exclude + "\r\nBare\r\n"));
  }
  std::string column(int index) const { return app.frmMain.lstInactScenery.subItem(1, index); }
  void editsRow(ui::ListView& list, int row, const std::string& text) {
    bool cancel = true;
    list.select(row);
    list.afterLabelEdit(cancel, text);
  }
};

TEST_F(SceneryOrderTest, MovesChangeTheRowsAndASaveNumbersThem) {
  putDatabase();
  open();
  auto& form = app.frmMain;
  const auto enabled = [&] {
    return std::pair(form.btnSCup.enabled.get(), form.btnSCdn.enabled.get());
  };
  EXPECT_EQ(enabled(), std::pair(false, true));
  ui::raise(form.btnSCup.click);
  EXPECT_EQ(areas(), "Alps+ World+ Rome+");
  ui::raise(form.btnSCdn.click);
  EXPECT_EQ(areas(), "World+ Alps+ Rome+");
  EXPECT_EQ(form.lstScenery.selected(), 2);
  EXPECT_EQ(enabled(), std::pair(true, true));
  ui::raise(form.lstScenery.moveSelected, 5);
  EXPECT_EQ(areas(), "World+ Rome+ Alps+");
  EXPECT_EQ(enabled(), std::pair(true, false));
  ui::raise(form.lstScenery.moveSelected, -2);
  EXPECT_EQ(areas(), "Alps+ World+ Rome+");
  EXPECT_FALSE(form.btnFSScenerySave.enabled) << "back as it was";
  ui::raise(form.lstScenery.moveSelected, 1);
  ui::raise(form.btnFSScenerySave.click);
  EXPECT_EQ(areasInFile(), "Rome Alps World");
  EXPECT_EQ(valueOf("Area.003", "Layer"), "3");

  // Layers of areas that a hand has made equal have nothing to exchange.
  drive.write(cfg, area(1, "A", "3", "a") + area(2, "B", "3", "b"));
  open();
  const std::string before = areas();
  select(form.lstScenery, 1);
  ui::raise(form.lstScenery.moveSelected, 1);
  EXPECT_EQ(areas(), before);
}

TEST_F(SceneryOrderTest, AClickShowsTitleAndPicture) {
  putDatabase();
  putLibrary("", "");
  const std::string picture = "C:\\FS\\ADDON SCENERY\\Alps\\SKVscrn.jpg";
  drive.write(picture, "x");
  open();
  auto& form = app.frmMain;
  EXPECT_EQ(form.lblSceneryTitle.caption, "Alps");
  EXPECT_EQ(form.imgScenery.picture, picture);
  EXPECT_EQ(form.imgScenery.tag, "C:\\FS\\ADDON SCENERY\\Alps\\");
  select(form.lstInactScenery, 1);
  EXPECT_EQ(form.imgScenery.tag, "C:\\Lib\\Scenery\\Rome\\");
  EXPECT_EQ(form.imgScenery.picture, "");
  select(form.lstInactScenery, 2);
  EXPECT_EQ(form.lblSceneryTitle.caption, "Bare");
  EXPECT_EQ(form.imgScenery.tag, "C:\\Lib\\Scenery\\Rome\\") << "a row without a folder has none";
  form.ftreeScenery.folder = "C:\\FS\\ADDON SCENERY\\Alps";
  ui::raise(form.ftreeScenery.change);
  EXPECT_EQ(form.imgScenery.picture, picture);
}

TEST_F(SceneryOrderTest, OptionsAreEditedWithoutLosingWhatIsNotShown) {
  putDatabase();
  putLibrary("a;;c", "1;2;3;4;5;6;7;8;9;10;11");
  const std::string before = drive.read(library);
  open();
  auto& dialog = app.frmSCOptions;
  const auto edit = [&](bool ok) {
    windows.onShow[&dialog] = [&, ok] {
      EXPECT_EQ(dialog.lstFlatten.count(), 9);
      EXPECT_EQ(dialog.lstFlatten.text(3), "c");
      EXPECT_EQ(dialog.lstExclude.text(9), "9");
      editsRow(dialog.lstFlatten, 2, "");
      editsRow(dialog.lstExclude, 3, " x\x05y\x01 ");
      editsRow(dialog.lstExclude, 1, "");
      ui::raise(ok ? dialog.btnOK.click : dialog.btnCancel.click);
    };
    ui::raise(app.frmMain.lstInactScenery.dblClick);
    EXPECT_FALSE(dialog.visible);
  };
  edit(false);
  EXPECT_EQ(drive.read(library), before);
  edit(true);
  EXPECT_EQ(column(sceneryColumn::Flatten), coded("a;c"));
  EXPECT_EQ(column(sceneryColumn::Exclude), coded("2;x y;4;5;6;7;8;9;10;11"));
  EXPECT_TRUE(test::holds(drive.read(library), coded("|a;c|2;x y;4;")));
}

}  // namespace
}  // namespace skv
