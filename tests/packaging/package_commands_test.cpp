#include "packaging/package_commands.h"

#include "aircraft/aircraft_views.h"
#include "sample/zip_file.h"
#include "support/every_call.h"
#include "support/scenery_fixture.h"

namespace skv::test {

class PackageTest : public SceneryTest {
 protected:
  PackageTest() { putAircraft(); }
  // An aircraft in the Hangar, whole.
  void putAircraft() {
    for (const char* folder : {"C:\\Hangar\\aircraft", "C:\\Hangar\\Main", "C:\\Packs"})
      drive.clear(folder);
    for (const std::string& file : whole) drive.write(plane + file, file);
    drive.write(plane + ".hidden", "stays");
    drive.write(gauge, "gauge");
    list(line("Plane", plane));
    windows.boxes.clear();
  }
  void list(const std::string& rows) {
    drive.write("C:\\Hangar\\SKV_AC.lst", rows);
    mnuViewHangar_Click(app);
  }
  void compress(const std::string& told = "") { click(form.mnuFilePackage, told); }
  void uncompress(const std::string& told = "") { click(form.mnuFileUnpackage, told); }
  // What a user does at each yield at which the status line begins so.
  void compressWhile(const std::string& status, std::function<void()> does) {
    SCOPED_TRACE(status);
    putAircraft();
    duringYields(status, std::move(does));
    compress();
    windows.onYield = {};
  }
  // What is in sight of it.
  Lines aircraft() {
    Lines names = drive.filesIn(plane);
    std::erase(names, ".hidden");
    return names;
  }
  int icon() const { return form.lstAircraft.smallIcon(1); }
  std::size_t packed() {
    const auto zipped = zip.load(disk);
    const bool opens = drive.exists(package) && zipped->setArchivefile(package).ok();
    return opens ? zipped->entries().size() : 0;
  }

  const std::string plane = "C:\\Hangar\\aircraft\\plane\\", package = "C:\\Packs\\plane.zip",
                    gauge = "C:\\Hangar\\Main\\plane\\Gauges\\g.gau";
  const Lines whole{"aircraft.cfg", "model\\a.mdl", "panel\\cfg", "panel\\panel.cfg",
                    "texture\\t.bmp"};
  const Lines thin{"aircraft.cfg", "panel\\cfg", "panel\\panel.cfg"};
};

TEST_F(PackageTest, AnAircraftGoesIntoItsPackageAndComesBackWithItsEdits) {
  drive.write("C:\\Temp\\SKVInstallTemp\\left\\over", "of a failed job");
  for (const char* file : {"model\\a.mdl", "panel\\panel.cfg", "aircraft.cfg"})
    EXPECT_TRUE(disk.setAttributes(plane + file, {.readOnly = true}).ok());
  drive.write("C:\\Big\\behind.bmp", "a link");
  drive.link(plane + "big", "C:\\Big");
  compress();
  EXPECT_TRUE(drive.exists("C:\\Big\\behind.bmp"));
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(aircraft(), thin);
  EXPECT_TRUE(drive.exists(plane + "texture") && drive.exists(plane + ".hidden"));
  EXPECT_FALSE(drive.exists(gauge));
  EXPECT_TRUE(icon() == 7 && packed() == 7);
  EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Lines{});
  EXPECT_TRUE(holds(form.lblStatus.notice.get(), "is compressed: 3 files"))
      << form.lblStatus.notice.get();
  expectIdle();

  compress("This Aircraft is already compressed!");
  drive.remove(plane + "aircraft.cfg");
  drive.write(plane + "aircraft.cfg", "edited");
  uncompress();
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_EQ(aircraft(), whole);
  EXPECT_EQ(drive.read(plane + "aircraft.cfg") + drive.read(gauge), "editedgauge");
  EXPECT_TRUE(icon() == 5 && !drive.exists(package));
  EXPECT_TRUE(holds(form.lblStatus.notice.get(), "is unpacked: 7 files"))
      << form.lblStatus.notice.get();
}

TEST_F(PackageTest, ASceneryLikewise) {
  const Lines scenery{"Main\\Alps\\Texture\\t.bmp", "SKV_SL.lst", "Scenery\\Alps\\Scenery\\a.bgl",
                      "Scenery\\Alps\\readme.txt"};
  for (const std::string& file : scenery) drive.write("C:\\Lib\\" + file, "x");
  putLibrary("Alps|ADDON SCENERY\\Alps\r\n");
  compress();
  EXPECT_EQ(drive.filesIn("C:\\Lib"), (Lines{"SKV_SL.lst", "Scenery\\Alps\\readme.txt"}));
  EXPECT_EQ(form.lstInactScenery.smallIcon(1), 3);
  uncompress();
  EXPECT_EQ(drive.filesIn("C:\\Lib"), scenery);
}

TEST_F(PackageTest, TheDiskDecidesWhetherThereIsAPackage) {
  list(line("Plane", plane) + line("Twin", plane));
  drive.write(package, "somebody else's");
  compress("already compressed");
  EXPECT_EQ(form.lstAircraft.smallIcon(2), 7) << "of the same aircraft";
  EXPECT_TRUE(drive.read(package) == "somebody else's" && icon() == 7);
  drive.remove(package);
  uncompress("not yet compressed");
  EXPECT_EQ(icon(), 5);
  app.InstallTempDir = "\\\\server\\temp\\";
  compress("does not support UNC");
}

TEST_F(PackageTest, TheSimulatorsViewAsksForTheSameAircraftOfTheHangar) {
  list(line("Other", "C:\\Hangar\\aircraft\\other\\") + line("Plane", plane));
  const auto compressFrom = [&](const std::string& folder, ui::Answer given) {
    drive.write("C:\\FS\\SKV_AC.lst", line("Mine", "C:\\FS\\aircraft\\" + folder + "\\"));
    mnuViewHangar_Click(app);
    form.lstAircraft.select(1);
    mnuViewFSAircraft_Click(app);
    const std::size_t questions = answer(form.mnuFilePackage, {given});
    EXPECT_TRUE(form.mnuViewHangar.checked);
    return questions;
  };
  EXPECT_EQ(compressFrom("PLANE", no), 1U);
  EXPECT_TRUE(holds(windows.boxes[0].text, "\"Plane\"\r\n" + plane));
  EXPECT_FALSE(drive.exists(package));
  EXPECT_EQ(compressFrom("plane", yes), 1U);
  EXPECT_EQ(packed(), 6U);
  EXPECT_EQ(compressFrom("away", yes), 0U);
  EXPECT_TRUE(holds(form.lblStatus.notice.get(), "\"Mine\" is not in the Hangar"));
  uncompress();
  EXPECT_EQ(packed(), 6U) << "no row is selected";
  EXPECT_EQ(aircraft(), thin);
}

TEST_F(PackageTest, ADeeperFolderIsTheOneBothWays) {
  const std::string deeper = "C:\\Hangar\\aircraft\\alpha\\plane\\";
  ASSERT_TRUE(disk.makeFolder("C:\\Hangar\\aircraft\\alpha").ok());
  ASSERT_TRUE(disk.rename(plane, deeper).ok());
  list(line("Plane", deeper));
  compress();
  EXPECT_EQ(packed(), 6U);
  uncompress();
  EXPECT_EQ(drive.filesIn(deeper).size(), whole.size() + 1);
  EXPECT_FALSE(drive.exists(plane) || drive.exists(package));
  // Of two of that name nobody could tell whose Package it is.
  compress();
  list(line("Plane", deeper) + line("Twin", plane));
  EXPECT_EQ(answer(form.mnuFileUnpackage, {no}), 1U);
  EXPECT_TRUE(holds(windows.boxes[0].text, deeper) && holds(windows.boxes[0].text, plane));
  EXPECT_FALSE(drive.exists(deeper + "texture\\t.bmp") || drive.exists(plane));
}

TEST_F(PackageTest, WhatCannotBeCompressedStaysAndTheReasonIsTold) {
  const std::string inside = plane + "panel\\", beside = "C:\\Hangar\\aircraft\\b\\plane\\";
  for (const auto& [row, other, told] :
       {std::tuple{plane, inside, "the folder of another row, \"" + inside},
        {plane, beside, "\"" + beside + "\" would have the same Package"},
        {beside, std::string("C:\\x\\"), "\"Plane\" was not compressed."},
        {std::string("C:\\FS\\aircraft\\"), plane, std::string("does not lie in")}}) {
    list(line("Plane", row) + line("Other", other));
    form.lstAircraft.select(1);
    compress(told);
    EXPECT_TRUE(aircraft() == whole && drive.tree("C:\\Packs").empty());
  }
}

TEST_F(PackageTest, ASecondTryThinsOnlyWhatThePackageSurelyHolds) {
  const auto wholeAgain = [&] {
    putAircraft();
    for (const std::string& file : whole) drive.write(plane + file, std::string(9000, 'x') + file);
    compress();
    for (const std::string& file : whole) drive.write(plane + file, std::string(9000, 'x') + file);
  };
  const auto spoil = [&](std::size_t at) {
    std::string bytes = drive.read(package);
    bytes[at] = static_cast<char>(~bytes[at]);
    drive.write(package, bytes);
  };
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { drive.write(plane + "texture\\t.bmp", "newer"); }, "already compressed!\r\n\r\nIts"},
      {[&] { drive.write(plane + "late.bmp", "late"); }, "already compressed!\r\n\r\nIts"},
      {[&] { spoil(60); }, "is corrupt"},
      {[] {}, ""},
  };
  for (const auto& [change, told] : cases) {
    SCOPED_TRACE(told);
    wholeAgain();
    change();
    const Lines before = aircraft();
    compress(told);
    EXPECT_EQ(aircraft(), told.empty() ? thin : before);
    EXPECT_EQ(icon(), 7);
    EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Lines{});
  }
}

TEST_F(PackageTest, AStopBetweenTheHalvesOfAnUnpackingLeavesThePackage) {
  compress();
  windows.onYield = [&] {
    app.stopRequested = form.lblStatus.caption.get().ends_with("Package\\Aircraft\\texture");
  };
  uncompress();
  windows.onYield = {};
  EXPECT_TRUE(drive.exists(plane + "texture\\t.bmp") && !drive.exists(gauge) && packed() == 6);
  EXPECT_TRUE(icon() == 7 && form.lblStatus.notice.get().starts_with("Stopped"));
  uncompress();
  EXPECT_TRUE(aircraft() == whole && drive.exists(gauge) && !drive.exists(package));
}

TEST_F(PackageTest, APackageOfAStrangerStaysWhenItHoldsMore) {
  for (const char* more :
       {"read.me", "Aircraft/.DS_Store", "aircraft/MODEL/A.mdl", "Aircraft/aux"}) {
    SCOPED_TRACE(more);
    sample::writeZip(disk.nativePath(package).value(),
                     {{more, "x"}, {"AIRCRAFT/model/a.mdl", "new"}}, {});
    mnuViewHangar_Click(app);
    uncompress("its Package stays");
    EXPECT_EQ(drive.read(plane + "model\\a.mdl"), "new");
    EXPECT_TRUE(drive.exists(package) && icon() == 7);
    EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Lines{});
  }
}

TEST_F(PackageTest, WhatComesWhileItIsPackedStays) {
  for (const std::string moment : {"Compressing", "Processing", "Deleting"}) {
    const bool packs = moment == "Compressing";
    const std::string late = plane + (packs ? "late.txt" : "texture\\late.bmp");
    compressWhile(moment, [&] {
      if (packs == drive.exists(package)) return;
      drive.write(late, "late");
      drive.write(plane + "texture\\t.bmp", "TEXTURE\\t.bmp");
    });
    EXPECT_EQ(drive.read(late), "late");
    EXPECT_EQ(drive.read(plane + "texture\\t.bmp"), "TEXTURE\\t.bmp");
    EXPECT_EQ(drive.exists(package), !drive.exists(plane + "model\\a.mdl"));
    EXPECT_EQ(windows.boxes.size(), 1U);
  }
  for (const char* moment : {"Compressing", "Processing"}) {
    compressWhile(moment, [&] { drive.write(package, "another's"); });
    expectTold("File already exists");
    EXPECT_EQ(drive.read(package), "another's");
    EXPECT_TRUE(aircraft() == whole && icon() == 7);
  }
  // And what lies behind a link.
  compressWhile("Deleting", [&] {
    if (drive.exists("C:\\Own")) return;
    EXPECT_TRUE(disk.rename(plane + "texture", "C:\\Own").ok());
    drive.link(plane + "texture", drive.native("C:\\Own"));
  });
  EXPECT_EQ(drive.filesIn("C:\\Own"), Lines{"t.bmp"});
  EXPECT_TRUE(!drive.exists(plane + "model\\a.mdl") && icon() == 7);
}

// And a second try finishes what the first one has left.
TEST_F(PackageTest, EitherTheFolderOrThePackageIsWholeWhateverEndsTheRun) {
  for (const bool back : {false, true})
    forEveryEnding(
        files,
        [&] {
          putAircraft();
          if (back) compress();
        },
        [&] { back ? uncompress() : compress(); },
        [&](bool struck) {
          const auto unpacked = [&] {
            return aircraft() == whole && drive.read(gauge) == "gauge" &&
                   drive.read(plane + "texture\\t.bmp") == "texture\\t.bmp";
          };
          const auto packs = [&] { return packed() == 6; };
          const auto ended = [&] {
            return back ? unpacked() && !packs() : packs() && aircraft() == thin;
          };
          EXPECT_TRUE(unpacked() || packs());
          EXPECT_TRUE(packs() || !drive.exists(package)) << "no half Package";
          EXPECT_TRUE(struck || ended());
          mnuViewHangar_Click(app);
          back ? uncompress() : compress();
          EXPECT_TRUE(ended()) << "a second try: " << ::testing::PrintToString(windows.boxTexts());
        },
        {back ? Ending::failedLook : Ending::fullDisk, Ending::lostFiles});
}

}  // namespace skv::test
