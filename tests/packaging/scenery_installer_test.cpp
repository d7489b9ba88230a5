#include "packaging/scenery_installer.h"

#include "sample/zip_file.h"
#include "support/every_call.h"
#include "support/scenery_fixture.h"

namespace skv {
namespace {

using Tree = std::vector<std::string>;

class SceneryInstallerTest : public test::SceneryTest {
 protected:
  SceneryInstallerTest() { open(); }
  void zip(const std::string& names) {
    sample::Files content;
    for (const std::string& name : split(names, ' ')) content.push_back({name, "x"});
    sample::writeZip(disk.nativePath("C:\\Alps.zip").value(), content, {});
  }
  void install() {
    windows.picks = {"C:\\Alps.zip"};
    app.frmMain.mnuFileInstallSC.click();
    expectIdle();
    EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Tree{});
  }
  static Tree words(const std::string& text) { return text.empty() ? Tree{} : split(text, ' '); }
};

TEST_F(SceneryInstallerTest, RecognisesASceneryInAnyLayout) {
  const struct {
    const char* what;
    std::string archive, scenery, main = {};
  } layouts[] = {
      {"a wrapped scenery", "My/Scenery/a.bgl My/Texture/a.bmp", R"(Scenery\a.bgl Texture\a.bmp)"},
      {"at the root", "SCENERY/a.BGL Texture/a.bmp", R"(Scenery\a.BGL Texture\a.bmp)"},
      {"files at the root", "a.bgl Texture/a.bmp", R"(Scenery\Texture\a.bmp Scenery\a.bgl)"},
      {"textures beside a folder of another name", "Files/a.bgl Texture/a.bmp", R"(Scenery\a.bgl)",
       R"(Texture\a.bmp)"},
      {"two folders", "one/a.bgl two/b.bgl two/Scenery2/c.bgl",
       R"(Scenery\Scenery2\c.bgl Scenery\a.bgl Scenery\b.bgl)"},
      {"effects", "Effects/e.fx Scenery/a.bgl", R"(Scenery\a.bgl)", R"(Effects\e.fx)"},
      {"effects among the files take them along", "s/e.fx s/a.bgl", ""},
      {"nothing of a scenery", "Texture/a.bmp", ""},
  };
  for (const auto& [what, archive, scenery, main] : layouts) {
    SCOPED_TRACE(what);
    clearLibrary();
    open();
    zip(archive);
    install();
    EXPECT_EQ(drive.filesIn("C:\\Lib\\Scenery\\Alps"), words(scenery));
    EXPECT_EQ(drive.filesIn("C:\\Lib\\Main\\Alps"), words(main));
    EXPECT_EQ(drive.exists("C:\\Lib\\Scenery\\Alps"), !scenery.empty());
    EXPECT_EQ(drive.exists("C:\\Lib\\Main\\Alps\\Texture"), !scenery.empty());
    EXPECT_EQ(windows.boxTexts(), scenery.empty() ? Tree{"No scenery files found!"} : Tree{});
    EXPECT_EQ(rows(app.frmMain.lstInactScenery),
              scenery.empty() ? Tree{} : Tree{"Alps|ADDON SCENERY\\Alps"});
    windows.boxes.clear();
  }
}

TEST_F(SceneryInstallerTest, TheRowComesOnTopAndASecondOneOfTheNameIsRefused) {
  drive.write(library, test::coded("Old|ADDON SCENERY\\Old\r\n"));
  open();
  zip("Scenery/a.bgl");
  install();
  const auto& list = app.frmMain.lstInactScenery;
  EXPECT_EQ(rows(list), (Tree{"Alps|ADDON SCENERY\\Alps", "Old|ADDON SCENERY\\Old"}));
  EXPECT_EQ(std::pair(list.selected(), list.smallIcon(1)), std::pair(1, 1));
  EXPECT_EQ(app.frmMain.lblSceneryTitle.caption, "Alps");
  EXPECT_TRUE(drive.read(library).starts_with("Alps\x01"));
  EXPECT_EQ(windows.inputPrompts, Tree{"Foldername for aircraft:|Alps"});
  install();
  expectTold("Scenery 'Alps' already exists!");
  EXPECT_EQ(list.count(), 2);
  // One whose row a kill has cost gets it back.
  drive.write(library, "");
  open();
  install();
  expectTold("already exists");
  EXPECT_TRUE(drive.read(library).starts_with("Alps\x01"));
}

TEST_F(SceneryInstallerTest, ARunThatEndsAnywhereLeavesAWholeSceneryOrNone) {
  zip("Files/a.bgl Files/b.bgl Texture/t.bmp Effects/e.fx");
  using test::Ending;
  forEveryEnding(
      files,
      [&] {
        clearLibrary();
        drive.clear("C:\\Temp\\SKVInstallTemp");
        open();
        windows.boxes.clear();
      },
      [&] {
        windows.picks = {"C:\\Alps.zip"};
        app.frmMain.mnuFileInstallSC.click();
      },
      [&](bool struck) {
        const bool whole = drive.exists("C:\\Lib\\Scenery\\Alps");
        EXPECT_TRUE(!whole || (drive.filesIn("C:\\Lib\\Scenery\\Alps").size() == 2 &&
                               drive.exists("C:\\Lib\\Main\\Alps\\Texture\\t.bmp")));
        EXPECT_TRUE(whole || !test::holds(drive.read(library), "Alps"));
        EXPECT_TRUE(struck || whole);
        EXPECT_TRUE(drive.exists("C:\\Alps.zip"));
      },
      {Ending::fullDisk, Ending::failedLook, Ending::kill, Ending::lostFiles});
}

}  // namespace
}  // namespace skv
