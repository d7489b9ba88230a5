#include "packaging/package_commands.h"

#include "aircraft/aircraft_views.h"
#include "sample/zip_file.h"
#include "support/every_call.h"
#include "support/scenery_fixture.h"

namespace skv {
namespace {

using test::Ending;
using Tree = std::vector<std::string>;

class PackageTest : public test::SceneryTest {
 protected:
  PackageTest() { putAircraft(); }
  // An aircraft in the Hangar, whole.
  void putAircraft() {
    for (const char* folder : {"C:\\Hangar\\aircraft", "C:\\Hangar\\Main", "C:\\Packs"})
      drive.clear(folder);
    for (const std::string& file : whole) drive.write(plane + file, file);
    drive.write(plane + ".hidden", "stays");
    drive.write("C:\\Hangar\\Main\\plane\\Gauges\\g.gau", "gauge");
    drive.write("C:\\Hangar\\SKV_AC.lst", test::line("Plane", plane));
    mnuViewHangar_Click(app);
    windows.boxes.clear();
  }
  void compress() { ui::raise(app.frmMain.mnuFilePackage.click); }
  void uncompress() { ui::raise(app.frmMain.mnuFileUnpackage.click); }
  // What is in sight of it.
  Tree aircraft() {
    Tree names = drive.filesIn("C:\\Hangar\\aircraft\\plane");
    std::erase(names, ".hidden");
    return names;
  }
  int icon() const { return app.frmMain.lstAircraft.smallIcon(1); }

  const std::string plane = "C:\\Hangar\\aircraft\\plane\\", package = "C:\\Packs\\plane.zip";
  const Tree whole{"aircraft.cfg", "model\\a.mdl", "panel\\panel.cfg", "texture\\t.bmp"};
  const Tree thin{"aircraft.cfg", "panel\\panel.cfg"};
};

TEST_F(PackageTest, AnAircraftGoesIntoItsPackageAndComesBackWithItsEdits) {
  drive.write("C:\\Temp\\SKVInstallTemp\\left\\over", "of a failed job");
  compress();
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(aircraft(), thin);
  EXPECT_TRUE(drive.exists(plane + "texture") && drive.exists(plane + ".hidden"));
  EXPECT_FALSE(drive.exists("C:\\Hangar\\Main\\plane\\Gauges\\g.gau"));
  EXPECT_EQ(icon(), 7);
  EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Tree{});
  const auto zipped = zip.load(disk);
  ASSERT_TRUE(zipped->setArchivefile(package).ok());
  Tree names;
  for (const ZipEntry& entry : zipped->entries()) names.push_back(entry.Filename);
  EXPECT_EQ(names,
            (Tree{"Aircraft\\aircraft.cfg", "Aircraft\\model\\a.mdl", "Aircraft\\panel\\panel.cfg",
                  "Aircraft\\texture\\t.bmp", "Main\\Gauges\\g.gau"}));
  expectIdle();

  compress();
  expectTold("This Aircraft is already compressed!");
  drive.write(plane + "aircraft.cfg", "edited");
  uncompress();
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(aircraft(), whole);
  EXPECT_EQ(drive.read(plane + "aircraft.cfg"), "edited");
  EXPECT_EQ(drive.read(plane + "model\\a.mdl"), "model\\a.mdl");
  EXPECT_TRUE(drive.exists("C:\\Hangar\\Main\\plane\\Gauges\\g.gau"));
  EXPECT_FALSE(drive.exists(package));
  EXPECT_EQ(icon(), 5);
  uncompress();
  expectTold("This Aircraft not yet compressed!");
}

TEST_F(PackageTest, ASceneryLikewise) {
  drive.write("C:\\Lib\\Scenery\\Alps\\Scenery\\a.bgl", "bgl");
  drive.write("C:\\Lib\\Scenery\\Alps\\readme.txt", "");
  drive.write("C:\\Lib\\Main\\Alps\\Texture\\t.bmp", "bmp");
  drive.write(library,
              "Alps\x01"
              "ADDON SCENERY\\Alps\r\n");
  open();
  compress();
  EXPECT_EQ(drive.filesIn("C:\\Lib"), (Tree{"SKV_SL.lst", "Scenery\\Alps\\readme.txt"}));
  EXPECT_EQ(app.frmMain.lstInactScenery.smallIcon(1), 3);
  uncompress();
  EXPECT_EQ(drive.filesIn("C:\\Lib"),
            (Tree{"Main\\Alps\\Texture\\t.bmp", "SKV_SL.lst", "Scenery\\Alps\\Scenery\\a.bgl",
                  "Scenery\\Alps\\readme.txt"}));
  EXPECT_EQ(drive.tree("C:\\Packs\\Scenery"), Tree{});
}

TEST_F(PackageTest, TheDiskDecidesWhetherThereIsAPackage) {
  drive.write("C:\\Hangar\\SKV_AC.lst", test::line("Plane", plane) + test::line("Twin", plane));
  mnuViewHangar_Click(app);
  drive.write(package, "somebody else's");
  compress();
  expectTold("already compressed");
  EXPECT_EQ(app.frmMain.lstAircraft.smallIcon(2), 7) << "of the same aircraft";
  EXPECT_EQ(drive.read(package), "somebody else's");
  EXPECT_EQ(icon(), 7);
  drive.remove(package);
  uncompress();
  expectTold("not yet compressed");
  EXPECT_EQ(icon(), 5);
  EXPECT_EQ(aircraft(), whole);
  mnuViewFSAircraft_Click(app);
  drive.write("C:\\FS\\SKV_AC.lst", test::line("Plane", "C:\\FS\\aircraft\\plane\\"));
  mnuViewFSAircraft_Click(app);
  compress();
  EXPECT_TRUE(app.frmMain.mnuViewHangar.checked) << "a second click does the work";
  EXPECT_FALSE(drive.exists(package));
}

TEST_F(PackageTest, APackageOfAStrangerStaysWhenItHoldsMore) {
  for (const char* more :
       {"read.me", "Aircraft/.DS_Store", "aircraft/MODEL/A.mdl", "Aircraft/aux"}) {
    SCOPED_TRACE(more);
    sample::writeZip(disk.nativePath(package).value(),
                     {{more, "x"}, {"AIRCRAFT/model/a.mdl", "new"}}, {});
    mnuViewHangar_Click(app);
    uncompress();
    EXPECT_EQ(drive.read(plane + "model\\a.mdl"), "new");
    expectTold("its Package stays");
    EXPECT_TRUE(drive.exists(package));
    EXPECT_EQ(icon(), 7);
  }
}

TEST_F(PackageTest, WhatComesWhileItIsPackedStays) {
  for (const char* moment : {"Compressing", "Deleting"}) {
    putAircraft();
    windows.onYield = [&] {
      if (!drive.exists(package) || !app.frmMain.lblStatus.caption.get().starts_with(moment))
        return;
      drive.write(plane + "texture\\late.bmp", "late");
      drive.write(plane + "texture\\t.bmp", "changed");
    };
    compress();
    windows.onYield = {};
    EXPECT_EQ(drive.read(plane + "texture\\late.bmp"), "late") << moment;
    EXPECT_EQ(drive.read(plane + "texture\\t.bmp"), "changed") << moment;
    EXPECT_EQ(windows.boxes.size(), 1U) << moment;
  }
}

TEST_F(PackageTest, EitherTheFolderOrThePackageIsWholeWhateverEndsTheRun) {
  for (const bool back : {false, true})
    for (const Ending ending :
         {Ending::fullDisk, back ? Ending::failedLook : Ending::lostFiles, Ending::kill})
      forEveryCall(
          files, ending,
          [&] {
            files.heal();
            putAircraft();
            if (back) compress();
            windows.boxes.clear();
          },
          [&] { back ? uncompress() : compress(); },
          [&](bool struck) {
            const bool folderWhole = aircraft() == whole &&
                                     drive.exists("C:\\Hangar\\Main\\plane\\Gauges\\g.gau") &&
                                     drive.read(plane + "texture\\t.bmp") == "texture\\t.bmp";
            const auto zipped = zip.load(disk);
            const bool packed = drive.exists(package) && zipped->setArchivefile(package).ok() &&
                                zipped->entries().size() == 5;
            EXPECT_TRUE(folderWhole || packed);
            EXPECT_TRUE(packed || !drive.exists(package)) << "no half Package";
            EXPECT_TRUE(struck || (back ? folderWhole && !packed : packed && aircraft() == thin));
          });
}

}  // namespace
}  // namespace skv
