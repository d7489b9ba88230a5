#include "packaging/aircraft_installer.h"
#include "aircraft/aircraft_views.h"

#include "core/disk_queries.h"
#include "sample/zip_file.h"
#include "support/program_fixture.h"
#include "ui/views.h"

namespace skv {
namespace {

using sample::Files;
using Tree = std::vector<std::string>;

const std::string cfg = "[fltsim.0]\r\nTitle=The Plane\r\n";

class InstallerTest : public test::ProgramTest {
 protected:
  InstallerTest() { mnuViewFSAircraft_Click(app); }
  void zip(const Files& content, const sample::ZipStyle& style = {},
           const std::string& name = "C:\\plane.zip") {
    sample::writeZip(disk.nativePath(name).value(), content, style);
  }
  void install(const std::string& name = "C:\\plane.zip") {
    windows.picks = {name};
    app.frmMain.mnuFileInstallAC.click();
    expectIdle();
  }
  // What stands in the Hangar after the run, below aircraft\ and Main\; the folders that every run
  // makes are left out.
  Tree hangar() {
    Tree result;
    for (const std::string& path : drive.tree("C:\\Hangar"))
      if (!path.ends_with("\\")) result.push_back(path);
    return result;
  }
  void expectClean() {
    EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Tree{});
    EXPECT_EQ(app.frmMain.lblStatus.caption, "");
  }
};

struct Layout {
  const char* what;
  Files files;
  Tree placed;  // below C:\Hangar; empty: no aircraft found
  sample::ZipStyle style = {};
};

TEST_F(InstallerTest, RecognisesWhatIsInAnArchiveOfAnyLayout) {
  const std::string AC = "aircraft\\plane\\", MAIN = "Main\\plane\\", LST = "SKV_AC.lst";
  const Layout layouts[] = {
      {"the root is the aircraft",
       {{"aircraft.cfg", cfg},
        {"texture/a.bmp", "t"},
        {"panel/panel.cfg", "p"},
        {"sound/sound.cfg", "s"}},
       {LST, AC + "aircraft.cfg", AC + "panel\\panel.cfg", AC + "sound\\sound.cfg",
        AC + "texture\\a.bmp"}},
      {"a wrapped aircraft beside shared folders",
       {{"MyPlane/aircraft.cfg", cfg},
        {"MyPlane/model/a.mdl", "m"},
        {"Gauges/g.gau", "g"},
        {"Effects/e.fx", "e"},
        {"Sound/s.wav", "s"},
        {"Texture/t.bmp", "t"},
        {"readme.txt", "r"}},
       {MAIN + "Effects\\e.fx", MAIN + "Gauges\\g.gau", MAIN + "Sound\\s.wav",
        MAIN + "Texture\\t.bmp", LST, AC + "aircraft.cfg", AC + "model\\a.mdl"}},
      {"a Package, with backslashes",
       {{"Aircraft/Aircraft.cfg", cfg},
        {"Main/Gauges/sub/x.gau", "g"},
        {"Main/Texture/t.bmp", "t"}},
       {MAIN + "Gauges\\x.gau", MAIN + "Texture\\t.bmp", LST, AC + "Aircraft.cfg"},
       {.backslashes = true}},
      {"gauges in the panel folder take the panel along",
       {{"aircraft.cfg", cfg}, {"panel/panel.cfg", "p"}, {"panel/g.gau", "g"}},
       {MAIN + "Gauges\\g.gau", MAIN + "Gauges\\panel.cfg", LST, AC + "aircraft.cfg"}},
      {"a gauge beside aircraft.cfg takes the aircraft along",
       {{"aircraft.cfg", cfg}, {"g.gau", "g"}},
       {}},
      {"loose sounds leave the aircraft",
       {{"aircraft.cfg", cfg}, {"sound/s.wav", "s"}},
       {MAIN + "Sound\\s.wav", LST, AC + "aircraft.cfg"}},
      {"the first of two aircraft",
       {{"b/aircraft.cfg", "second"}, {"a/aircraft.cfg", cfg}},
       {LST, AC + "aircraft.cfg"}},
      {"a panel beside an aircraft without one",
       {{"MyPlane/aircraft.cfg", cfg}, {"Panel/panel.cfg", "p"}, {"Panel/p.bmp", "b"}},
       {LST, AC + "Panel\\p.bmp", AC + "Panel\\panel.cfg", AC + "aircraft.cfg"}},
      {"a panel beside an aircraft that has one",
       {{"MyPlane/aircraft.cfg", cfg},
        {"MyPlane/panel/panel.cfg", "own"},
        {"Panel/panel.cfg", "p"}},
       {LST, AC + "aircraft.cfg", AC + "panel\\panel.cfg"}},
      {"textures outside the aircraft, by the end of the folder's name",
       {{"p/aircraft.cfg", cfg}, {"mytexture/t.bmp", "t"}, {"texture.abc/u.bmp", "u"}},
       {MAIN + "Texture\\t.bmp", LST, AC + "aircraft.cfg"}},
      {"ZIPs in the ZIP, in two folders and letter cases; the second level stays closed",
       {{"addon.ZIP", sample::zipBytes({{"x/aircraft.cfg", cfg},
                                        {"x/deep.zip", sample::zipBytes({{"no.fx", "n"}})}})},
        {"more/gauges.zip", sample::zipBytes({{"g.gau", "g"}})}},
       {MAIN + "Gauges\\g.gau", LST, AC + "aircraft.cfg", AC + "deep.zip"}},
      {"what a Macintosh adds",
       {{"p/aircraft.cfg", cfg}, {"p/.DS_Store", "d"}, {"__MACOSX/p/._aircraft.cfg", "resource"}},
       {LST, AC + "aircraft.cfg"}},
      {"nothing of an aircraft", {{"readme.txt", "r"}, {"Gauges/g.gau", "g"}}, {}},
  };
  for (const Layout& layout : layouts) {
    SCOPED_TRACE(layout.what);
    drive.clear("C:\\Hangar");
    mnuViewFSAircraft_Click(app);
    zip(layout.files, layout.style);
    install();
    EXPECT_EQ(hangar(), layout.placed);
    expectClean();
    EXPECT_EQ(windows.boxTexts(), layout.placed.empty() ? Tree{"No Aircraft.cfg found!"} : Tree{});
    windows.boxes.clear();
    EXPECT_EQ(drive.exists("C:\\Hangar\\Main\\plane\\Effects"), !layout.placed.empty());
  }
}

TEST_F(InstallerTest, TheNewRowIsSavedSelectedAndMarked) {
  zip({{"aircraft.cfg", "[fltsim.0]\r\nsim=x\r\n"}});
  mnuViewFSAircraft_Click(app);
  windows.inputs = {"My Plane"};
  install();
  auto& list = app.frmMain.lstAircraft;
  EXPECT_EQ(windows.inputPrompts, Tree{"Foldername for aircraft:|plane"});
  EXPECT_EQ(app.frmMain.btnHangar.caption, "To FS2002...");
  EXPECT_EQ(rows(list), Tree{"My Plane|C:\\Hangar\\aircraft\\My Plane\\"});
  EXPECT_EQ(list.selected(), 1);
  EXPECT_EQ(list.smallIcon(1), 5);
  EXPECT_EQ(drive.read("C:\\Hangar\\SKV_AC.lst"),
            "My Plane\x01"
            "C:\\Hangar\\aircraft\\My Plane\\\r\n");
  EXPECT_EQ(app.LastZIPDir, "C:\\");
  EXPECT_EQ(settings.values["General/LastZIPDir"], "C:\\");
  EXPECT_EQ(windows.fileDialogs.at(0).filter, "Zip Files|*.zip");

  windows.inputs = {"my plane"};
  install();
  EXPECT_EQ(windows.boxTexts(), Tree{"Aircraft 'my plane' already exists!"});
}

TEST_F(InstallerTest, EveryRefusalComesBackToAnEnabledWindow) {
  mnuViewHangar_Click(app);
  app.frmMain.mnuFileInstallAC.click();
  EXPECT_TRUE(windows.boxes.empty()) << "a cancelled dialog says nothing";
  expectIdle();

  zip({{"aircraft.cfg", cfg}});
  const Tree before = drive.tree("C:\\Hangar");
  for (const char* name : {"", "..", "a\\b", "..\\up", "x/y", "a:b"}) {
    windows.boxes.clear();
    windows.inputs = {name};
    install();
    EXPECT_EQ(windows.boxes.size(), 1U) << name;
    EXPECT_EQ(drive.tree("C:\\Hangar"), before) << name;
  }
  drive.write("C:\\bad.zip", "this is no archive");
  for (const char* archive : {"C:\\bad.zip", "C:\\missing.zip"}) {
    windows.boxes.clear();
    install(archive);
    ASSERT_EQ(windows.boxes.size(), 1U) << archive;
    EXPECT_TRUE(windows.boxes[0].text.starts_with("Error #")) << windows.boxes[0].text;
    EXPECT_EQ(app.frmMain.lblStatus.caption, "");
  }
  EXPECT_EQ(drive.tree("C:\\Hangar"), before);
}

TEST_F(InstallerTest, TooLittleSpaceIsToldBeforeAnythingIsWritten) {
  zip({{"aircraft.cfg", std::string(1000, 'x')}});
  files.freeSpace = 999;
  install();
  EXPECT_EQ(windows.boxTexts(), Tree{"Insufficient Disk Space in \"C:\\Temp\\SKVInstallTemp\\\"!"});
  files.freeSpace = 1000;
  install();
  EXPECT_EQ(app.frmMain.lstAircraft.count(), 1) << "equal is enough";
}

TEST_F(InstallerTest, APendingArchiveNeedsNoDialogAndGoesWithTheCleanUp) {
  zip({{"aircraft.cfg", cfg}}, {}, "C:\\Temp\\SKVInstallTemp\\mail.zip");
  app.PendingZIP = "C:\\Temp\\SKVInstallTemp\\mail.zip";
  app.LastZIPDir = "C:\\kept\\";
  app.frmMain.mnuFileInstallAC.click();
  EXPECT_EQ(app.PendingZIP, "");
  EXPECT_EQ(app.LastZIPDir, "C:\\kept\\");
  EXPECT_TRUE(windows.fileDialogs.empty());
  EXPECT_EQ(rows(app.frmMain.lstAircraft), Tree{"The Plane|C:\\Hangar\\aircraft\\mail\\"});
  expectClean();
}

TEST_F(InstallerTest, BadEmbeddedArchivesEndTheRunAndTheNextOneWorks) {
  const std::pair<const char*, std::string> bad[] = {{"empty", ""}, {"broken", "PK no zip"}};
  for (const auto& [name, bytes] : bad) {
    SCOPED_TRACE(name);
    windows.boxes.clear();
    zip({{"aircraft.cfg", "[fltsim.0]\r\nTitle=Wrong\r\n"}, {"in.zip", bytes}});
    windows.inputs = {name};
    install();
    EXPECT_EQ(windows.boxes.size(), 1U);
    EXPECT_EQ(app.frmMain.lstAircraft.count(), 0);
    EXPECT_EQ(app.frmMain.lblStatus.caption, "");
  }
  zip({{"p/aircraft.cfg", cfg}, {"locked.zip", sample::zipBytes({{"g.gau", "g"}})}});
  files.failWhen("deleteFile", "", err::pathFileAccess);
  windows.inputs = {"locked"};
  windows.boxes.clear();
  install();
  EXPECT_EQ(windows.boxes.size(), 1U) << "an archive that cannot be deleted is given up";
  files.heal();

  windows.boxes.clear();
  clock.time += 1;
  windows.inputs = {"good"};
  install();
  EXPECT_EQ(windows.boxTexts(), Tree{});
  EXPECT_EQ(rows(app.frmMain.lstAircraft), Tree{"The Plane|C:\\Hangar\\aircraft\\good\\"});
  EXPECT_EQ(drive.read("C:\\Hangar\\aircraft\\good\\aircraft.cfg"), cfg)
      << "what a failed run left must not get into the next";
  expectClean();
}

TEST_F(InstallerTest, ARunKeepsToTheHangarItBeganWith) {
  drive.write("C:\\Other\\readme.txt", "another Hangar");
  app.HangarDir = "C:\\Other\\";
  mnuViewHangar_Click(app);
  // Settings that were accepted take effect at the next switch of the view, and at an installation.
  app.HangarDir = "C:\\Hangar\\";
  zip({{"p/aircraft.cfg", cfg}, {"Gauges/g.gau", "g"}});
  windows.onYield = [this] {
    if (windows.inputPrompts.empty() || app.HangarDir == "C:\\Other\\") return;
    app.HangarDir = "C:\\Other\\";
    mnuViewFSAircraft_Click(app);
  };
  install();
  windows.onYield = nullptr;
  EXPECT_EQ(hangar(),
            (Tree{"Main\\plane\\Gauges\\g.gau", "SKV_AC.lst", "aircraft\\plane\\aircraft.cfg"}));
  EXPECT_EQ(drive.read("C:\\Hangar\\SKV_AC.lst"),
            "The Plane\x01"
            "C:\\Hangar\\aircraft\\plane\\\r\n");
  EXPECT_FALSE(drive.exists("C:\\Other\\SKV_AC.lst"));
  EXPECT_FALSE(drive.exists("C:\\FS\\SKV_AC.lst"));
  expectClean();
}

TEST_F(InstallerTest, AnyFailingCallLeavesTheWindowEnabledAndTheSimulatorUntouched) {
  zip({{"p/aircraft.cfg", cfg},
       {"Gauges/g.gau", "g"},
       {"in.zip", sample::zipBytes({{"e.fx", "e"}})}});
  const Tree simulator = drive.tree("C:\\FS");
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    drive.clear("C:\\Hangar");
    mnuViewFSAircraft_Click(app);
    drive.clear("C:\\Temp\\SKVInstallTemp");
    files.failAt(call, err::diskFull);
    install();
    const bool failed = files.heal();
    EXPECT_EQ(drive.tree("C:\\FS"), simulator);
    EXPECT_TRUE(drive.exists("C:\\plane.zip"));
    if (!failed) {
      EXPECT_TRUE(drive.exists("C:\\Hangar\\aircraft\\plane\\aircraft.cfg"));
      break;
    }
  }
}

}  // namespace
}  // namespace skv
