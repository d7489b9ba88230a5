#include "packaging/scenery_installer.h"

#include "packaging/left_over.h"
#include "sample/zip_file.h"
#include "support/every_call.h"
#include "support/scenery_fixture.h"

namespace skv::test {

class SceneryInstallerTest : public SceneryTest {
 protected:
  static Lines words(const std::string& text) { return text.empty() ? Lines{} : split(text, ' '); }
  void zip(const std::string& names) {
    sample::Files content;
    for (const std::string& name : words(names)) content.push_back({name, "x"});
    sample::writeZip(disk.nativePath("C:\\Alps.zip").value(), content, {});
    open();
  }
  void install(const std::string& told = "") {
    windows.picks = {"C:\\Alps.zip"};
    click(form.mnuFileInstallSC, told);
  }
  const std::string alps = "C:\\Lib\\Scenery\\Alps", work = "C:\\Temp\\SKVInstallTemp";
};

TEST_F(SceneryInstallerTest, RecognisesASceneryInAnyLayout) {
  const std::array<std::string, 3> layouts[] = {
      {"My/Scenery/a.bgl My/Texture/a.bmp", R"(Scenery\a.bgl Texture\a.bmp)"},
      {"SCENERY/a.BGL Texture/a.bmp", R"(Scenery\a.BGL Texture\a.bmp)"},
      {"a.bgl Texture/a.bmp", R"(Scenery\Texture\a.bmp Scenery\a.bgl)"},
      {"Files/a.bgl Texture/a.bmp", R"(Scenery\a.bgl)", R"(Texture\a.bmp)"},
      {"one/a.bgl two/b.bgl two/Scenery2/c.bgl",
       R"(Scenery\Scenery2\c.bgl Scenery\a.bgl Scenery\b.bgl)"},
      {"Effects/e.fx Scenery/a.bgl", R"(Scenery\a.bgl)", R"(Effects\e.fx)"},
      // Effects among the files take them along.
      {"s/e.fx s/a.bgl"},
      {"Texture/a.bmp"},
  };
  for (const auto& [archive, scenery, main] : layouts) {
    SCOPED_TRACE(archive);
    clearLibrary();
    zip(archive);
    install();
    const bool found = !scenery.empty();
    EXPECT_EQ(drive.filesIn(alps), words(scenery));
    EXPECT_EQ(drive.filesIn("C:\\Lib\\Main\\Alps"), words(main));
    EXPECT_EQ(drive.exists(alps), found);
    EXPECT_EQ(windows.boxTexts(), found ? Lines{} : Lines{"No scenery files found!"});
    EXPECT_EQ(listed(), found ? Lines{"Alps|ADDON SCENERY\\Alps"} : Lines{});
    EXPECT_EQ(drive.tree(work), Lines{});
    windows.boxes.clear();
  }
}

TEST_F(SceneryInstallerTest, TheRowComesOnTopAndASecondOneOfTheNameIsRefused) {
  putLibrary("Old|ADDON SCENERY\\Old\r\n");
  zip("Scenery/a.bgl");
  install();
  EXPECT_EQ(listed(), (Lines{"Alps|ADDON SCENERY\\Alps", "Old|ADDON SCENERY\\Old"}));
  EXPECT_TRUE(drive.read(library).starts_with("Alps\x01"));
  install("Scenery 'Alps' already exists!");
  EXPECT_EQ(listed().size(), 2U);
}

TEST_F(SceneryInstallerTest, NoFileTakesThePlaceOfAnotherAndWhatIsLeftOverIsKept) {
  const auto embedded = [](const std::string& name) {
    return sample::zipBytes({{"Scenery/" + name, name}, {"read.me", name}});
  };
  sample::writeZip(disk.nativePath("C:\\Alps.zip").value(),
                   {{"day/Scenery/a.bgl", "1"},
                    {"day/Texture/t.bmp", "1"},
                    {"night/Scenery/A.bgl", "2"},
                    {"night/Scenery/b.bgl", "2"},
                    {"night/Texture/t.bmp", "2 2"},
                    {"same/Scenery/a.bgl", "1"},
                    {"n/s.zip", embedded("n.bgl")},
                    {"s/s.zip", embedded("s.bgl")}},
                   {});
  const std::string left = "C:\\Temp\\SKVLeftOver\\";
  files.failWhen("rename", "C:\\Lib\\Scenery\\~SKVUnfinished", err::diskFull);
  install();
  files.heal();
  windows.boxes.clear();
  EXPECT_EQ(drive.filesIn(left), Lines{}) << "the archive has all of it";
  windows.usual["Show what was left over"] = yes;
  install("Left over in the archive: 3 files, the first: \"night\\Scenery\\A.bgl\"");
  EXPECT_EQ(drive.filesIn(alps), words(R"(Scenery\a.bgl Scenery\b.bgl Scenery\n.bgl Scenery\s.bgl)"
                                       R"( Texture\t.bmp read.me)"));
  EXPECT_EQ(drive.read(alps + "\\Scenery\\a.bgl"), "1");
  EXPECT_EQ(shell.opened, Lines{left + "Alps\\"});
  EXPECT_EQ(drive.filesIn(left + "Alps"),
            words(R"(night\Scenery\A.bgl night\Texture\t.bmp s.zip\read.me)"));
  EXPECT_EQ(drive.read(left + "Alps\\night\\Scenery\\A.bgl"), "2");
  EXPECT_EQ(drive.tree(work), Lines{});

  // Nothing of it outlives the next start.
  clearLeftOver(app);
  EXPECT_FALSE(drive.exists("C:\\Temp\\SKVLeftOver"));
  // A link in its place leads nowhere.
  drive.write("C:\\Own\\mine.txt", "m");
  drive.link("C:\\Temp\\SKVLeftOver", drive.native("C:\\Own"));
  zip("x/c.bgl read.me");
  windows.inputs = {"Next"};
  install("could not be kept of what was left over");
  EXPECT_EQ(listed()[0], "Next|ADDON SCENERY\\Next");
  EXPECT_TRUE(holds(::testing::PrintToString(drive.filesIn(work)), "read.me")) << "not lost unseen";
  clearLeftOver(app);
  EXPECT_EQ(drive.tree("C:\\Own"), Lines{"mine.txt"});
}

// What a deletion that failed half way, or the user, has left gives way when he agrees.
TEST_F(SceneryInstallerTest, AFolderThatHoldsNoSceneryIsPutAside) {
  zip("Scenery/a.bgl");
  putLibrary("Other|ADDON SCENERY\\Other\r\nMine|ADDON SCENERY\\Alps||5\r\n");
  drive.write(alps + "\\readme.txt", "r");
  install("Scenery 'Alps' already exists!\r\n\r\nBut the folder \"C:\\Lib\\Scenery\\Alps\"");
  EXPECT_EQ(drive.filesIn(alps), Lines{"readme.txt"});
  EXPECT_EQ(drive.tree("C:\\Lib\\Main"), Lines{});
  windows.answers = {yes};
  install();
  EXPECT_EQ(drive.filesIn(alps), Lines{"Scenery\\a.bgl"});
  EXPECT_EQ(listed(), (Lines{"Other|ADDON SCENERY\\Other", "Mine|ADDON SCENERY\\Alps"}));
}

TEST_F(SceneryInstallerTest, ARunThatEndsAnywhereLeavesAWholeSceneryOrNone) {
  zip("Files/a.bgl Files/b.bgl Texture/t.bmp Effects/e.fx");
  const auto isWhole = [&] {
    return drive.filesIn(alps).size() == 2 && drive.exists("C:\\Lib\\Main\\Alps\\Texture\\t.bmp");
  };
  const auto run = [&] {
    windows.answers = {yes};
    install();
  };
  forEveryEnding(
      files,
      [&] {
        clearLibrary();
        drive.clear(work);
        drive.write(alps + "\\readme.txt", "r");
        open();
      },
      run,
      [&](bool struck) {
        EXPECT_TRUE(struck || isWhole());
        EXPECT_TRUE(isWhole() || !holds(drive.read(library), "Alps"));
        open();
        run();
        EXPECT_TRUE(isWhole());
        EXPECT_TRUE(holds(::testing::PrintToString(drive.filesIn("C:\\Lib\\Scenery")), "readme"));
        open();
        EXPECT_EQ(listed(), Lines{"Alps|ADDON SCENERY\\Alps"});
        EXPECT_TRUE(drive.exists("C:\\Alps.zip"));
      },
      {Ending::fullDisk, Ending::failedLook, Ending::kill, Ending::lostFiles});
}

}  // namespace skv::test
