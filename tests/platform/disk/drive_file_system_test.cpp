// Names, attributes, listing and folders on a real disk.

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "support/disk_fixture.h"

namespace skv::test {

namespace fs = std::filesystem;

class DriveFileSystemTest : public DiskTest {
 protected:
  std::vector<std::string> names(const std::string& folder,
                                 FileSystem::Entries entries = FileSystem::Entries::plain) const {
    std::vector<std::string> result;
    for (const FolderEntry& entry : disk.list(folder, entries).valueOr({}))
      result.push_back(entry.folder ? entry.name + "\\" : entry.name);
    return result;
  }
  bool stands(const std::string& path) const { return disk.attributes(path).ok(); }
  // A change by somebody else, in exactly this spelling.
  void foreign(const std::string& name, const std::string& content) const {
    std::ofstream(onMachine(name)) << content;
  }
};

TEST_F(DriveFileSystemTest, NamesMatchWithoutRegardToCase) {
  drive.write("C:\\FS2002\\aircraft\\B737\\Stra\u00dfe \u00e4.cfg", "here");
  for (const char* path :
       {"C:\\FS2002\\aircraft\\B737\\Stra\u00dfe \u00e4.cfg",
        "c:\\fs2002\\AIRCRAFT\\b737\\STRA\u00dfE \u00c4.CFG",
        "C:\\FS2002\\AIRCRAFT\\B737\\Stra\u00dfe \u00c4.cfg",
        "C:\\..\\fs2002\\.\\x\\..\\aircraft\\B737.\\stra\u00dfe \u00e4.cfg. ."}) {
    EXPECT_EQ(disk.readFile(path).valueOr("missing"), "here") << path;
  }
  EXPECT_TRUE(disk.setCurrentFolder("c:\\FS2002\\Aircraft").ok());
  EXPECT_EQ(disk.readFile("b737\\stra\u00dfe \u00e4.CFG").valueOr(""), "here");
  for (const auto& [path, number] : {std::pair{"C:\\FS2002\\none.cfg", err::fileNotFound},
                                     {"C:\\none\\b.cfg", err::pathNotFound},
                                     {"Q:\\a.cfg", err::pathNotFound},
                                     {"C:\\FS2002\\aircraft:b", err::badFileName}})
    EXPECT_EQ(disk.readFile(path).outcome().number(), number) << path;
  const Outcome longName = disk.replaceFile("c:\\" + std::string(300, 'n') + "\\a.cfg", "");
  EXPECT_EQ(longName.number(), err::badFileName);
  EXPECT_NE(longName.description().find(" C:\\nnn"), std::string::npos) << "no place on disk";
}

TEST_F(DriveFileSystemTest, NothingIsMadeThatDiffersInCaseAlone) {
  ASSERT_TRUE(disk.makeFolder("C:\\Aircraft").ok());
  EXPECT_EQ(disk.makeFolder("C:\\AIRCRAFT").number(), err::pathFileAccess);
  EXPECT_TRUE(disk.makeFolder("C:\\aircraft\\b737").ok());
  EXPECT_TRUE(disk.replaceFile("C:\\AIRCRAFT\\B737\\a.cfg", "1").ok());
  EXPECT_TRUE(disk.replaceFile("C:\\aircraft\\b737\\A.CFG", "2").ok());
  EXPECT_TRUE(disk.copyFile("C:\\aircraft\\b737\\A.CFG", "C:\\AirCraft\\b737\\B.cfg").ok());
  EXPECT_TRUE(disk.copyFile("C:\\aircraft\\b737\\A.CFG", "C:\\AirCraft\\b737\\b.CFG").ok());
  EXPECT_TRUE(disk.moveFile("C:\\aircraft\\b737\\A.CFG", "C:\\AIRCRAFT\\B737\\b.cfg").ok());
  auto writer = disk.createFile("C:\\AIRCRAFT\\B737\\C.txt");
  auto other = disk.createFile("C:\\Aircraft\\B737\\c.TXT");
  ASSERT_TRUE(writer.ok() && other.ok());
  EXPECT_TRUE(writer.value()->commit({}).ok());
  EXPECT_TRUE(other.value()->commit({}).ok());
  EXPECT_EQ(drive.tree("C:\\"), (Lines{"Aircraft\\", "Aircraft\\b737\\", "Aircraft\\b737\\B.cfg",
                                       "Aircraft\\b737\\C.txt"}));
  EXPECT_EQ(drive.read("C:\\Aircraft\\b737\\B.cfg"), "2");
}

TEST_F(DriveFileSystemTest, OfTwinsTheExactSpellingWins) {
  foreign("Readme.txt", "first");
  foreign("README.txt", "second");
  EXPECT_EQ(disk.readFile("C:\\Readme.txt").valueOr(""), "first");
  EXPECT_EQ(disk.readFile("C:\\README.txt").valueOr(""), "second");
  EXPECT_EQ(disk.readFile("C:\\readme.txt").valueOr(""), "second") << "the first by its bytes";
  EXPECT_EQ(names("C:\\"), (Lines{"README.txt", "Readme.txt"}));
  EXPECT_EQ(disk.rename("C:\\Readme.txt", "C:\\README.txt").number(), err::fileExists);
  EXPECT_TRUE(disk.replaceFile("C:\\Readme.txt", "new").ok());
  EXPECT_EQ(disk.readFile("C:\\README.txt").valueOr(""), "second");
}

TEST_F(DriveFileSystemTest, ChangesBySomebodyElseAreSeenAtOnce) {
  EXPECT_TRUE(disk.makeFolder("C:\\d").ok());
  for (int round = 0; round < 3; ++round) {
    EXPECT_FALSE(stands("C:\\d\\FILE.txt"));
    foreign("d/file.txt", "x");
    EXPECT_TRUE(stands("C:\\d\\FILE.txt"));
    fs::rename(onMachine("d/file.txt"), onMachine("d/other.txt"));
    EXPECT_FALSE(stands("C:\\d\\FILE.txt"));
    EXPECT_TRUE(stands("C:\\d\\OTHER.txt"));
    fs::remove(onMachine("d/other.txt"));
    EXPECT_FALSE(stands("C:\\d\\OTHER.txt"));
  }
  foreign("d/file.txt", "x");
  EXPECT_TRUE(stands("C:\\D\\FILE.txt"));
  // The folder itself, or one above it, may become another one under the same path.
  fs::rename(onMachine("d"), onMachine("away"));
  fs::create_directory(onMachine("d"));
  EXPECT_FALSE(stands("C:\\D\\FILE.txt"));
  EXPECT_TRUE(stands("C:\\AWAY\\FILE.txt"));
  fs::remove_all(onMachine("d"));
  EXPECT_FALSE(stands("C:\\D\\FILE.txt"));
  fs::create_symlink("away", onMachine("d"));
  EXPECT_TRUE(stands("C:\\D\\FILE.txt"));
  fs::rename(onMachine("away/file.txt"), onMachine("away/File.TXT"));
  EXPECT_EQ(names("C:\\D"), Lines{"File.TXT"});
  EXPECT_TRUE(stands("C:\\D\\FILE.txt"));
}

TEST_F(DriveFileSystemTest, MoreChangesThanTheSystemTellsOfAreNotMissed) {
  drive.write("C:\\d\\a.txt", "x");
  EXPECT_TRUE(disk.attributes("C:\\d\\A.TXT").ok());
  int most = 0;
  std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
  ASSERT_GT(most, 0);
  // Two reports each: one alone would be taken for the same as the one before it.
  const std::string real = onMachine("d/a.txt"), other = onMachine("d/x");
  for (int told = 0; told <= most; told += 2)
    ASSERT_TRUE(::link(real.c_str(), other.c_str()) == 0 && ::unlink(other.c_str()) == 0);
  fs::rename(real, onMachine("d/B.txt"));
  EXPECT_EQ(disk.attributes("C:\\d\\A.TXT").outcome().number(), err::fileNotFound);
  EXPECT_TRUE(disk.attributes("C:\\d\\b.TXT").ok());
}

TEST_F(DriveFileSystemTest, ThreadsMakeNoTwins) {
  EXPECT_TRUE(disk.makeFolder("C:\\d").ok());
  constexpr int rounds = 200;
  // Turning threads meet more closely than waiting ones.
  std::atomic<int> come = 0;
  const auto make = [&](const std::string& file, const std::string& folder) {
    for (int round = 1; round <= rounds; ++round) {
      auto writer = disk.createFile("C:\\d\\" + file + std::to_string(round));
      for (++come; come < 2 * round;) continue;
      disk.makeFolder("C:\\d\\" + folder + std::to_string(round)).skipped();
      if (writer.ok()) writer.value()->commit({}).skipped();
    }
  };
  std::thread other([&] { make("FILE", "SUB"); });
  make("file", "sub");
  other.join();
  EXPECT_EQ(drive.tree("C:\\d").size(), 2U * rounds);
}

TEST_F(DriveFileSystemTest, ListingIsInTheOrderOfNtfs) {
  for (const char* name :
       {"b.txt", "B_.txt", "a", "\u00c4.txt", "\u00e4a", "z", "_x", "C", ".dot", "\xff\xfe"})
    foreign(name, "");
  for (const char* refused : {"a:b", "what?", "back\\slash", "con", "dot.", "blank "})
    foreign(refused, "");
  fs::create_directory(onMachine("Sub"));
  fs::create_symlink("Sub", onMachine("linked"));
  fs::create_symlink("nowhere", onMachine("broken"));
  ASSERT_EQ(::mkfifo(onMachine("pipe").c_str(), 0600), 0);
  const Lines plain = {"a", "b.txt", "B_.txt",     "C",       "linked\\", "Sub\\",
                       "z", "_x",    "\u00c4.txt", "\u00e4a", "\xff\xfe"};
  EXPECT_EQ(names("C:\\"), plain);
  Lines all = plain;
  all.insert(all.begin(), ".dot");
  EXPECT_EQ(names("C:\\", FileSystem::Entries::all), all);
  EXPECT_EQ(names("C:\\", FileSystem::Entries::named), plain);
  EXPECT_EQ(names("C:\\", FileSystem::Entries::measured), plain);
  foreign("b.txt", "12345");
  EXPECT_EQ(disk.list("C:\\", FileSystem::Entries::measured).value()[1].length, 5U);
  EXPECT_EQ(disk.list("C:\\a").outcome().number(), err::pathNotFound);
  EXPECT_EQ(disk.list("C:\\none").outcome().number(), err::pathNotFound);
  EXPECT_EQ(disk.identity("C:\\linked"), disk.identity("c:\\SUB\\"));
  EXPECT_NE(disk.identity("C:\\"), disk.identity("c:\\SUB\\"));
}

TEST_F(DriveFileSystemTest, AttributesLiveWhereWineKeepsThem) {
  drive.write("C:\\a.txt", "x");
  const std::string file = onMachine("a.txt");
  if (::setxattr(file.c_str(), "user.test", "", 0, 0) != 0) GTEST_SKIP() << "no attributes here";
  ASSERT_TRUE(disk.setAttributes("C:\\A.TXT", {.hidden = true, .archive = true}).ok());
  char stored[16] = {};
  EXPECT_GT(::getxattr(file.c_str(), "user.DOSATTRIB", stored, sizeof stored - 1), 0);
  EXPECT_STREQ(stored, "0x22");
  EXPECT_TRUE(disk.attributes("C:\\a.txt").value().hidden);
  EXPECT_TRUE(disk.attributes("C:\\a.txt").value().archive);
  EXPECT_EQ(names("C:\\"), Lines{});
  ASSERT_TRUE(disk.setAttributes("C:\\a.txt", {.readOnly = true, .system = true}).ok());
  EXPECT_EQ(fs::status(file).permissions() & fs::perms::owner_write, fs::perms::none);
  EXPECT_FALSE(disk.attributes("C:\\a.txt").value().hidden);
  EXPECT_TRUE(disk.attributes("C:\\a.txt").value().system);
  EXPECT_EQ(names("C:\\"), Lines{});

  ASSERT_TRUE(disk.setAttributes("C:\\a.txt", {}).ok());
  EXPECT_NE(fs::status(file).permissions() & fs::perms::owner_write, fs::perms::none);
  EXPECT_EQ(names("C:\\"), Lines{"a.txt"});

  drive.link("C:\\to_a", "C:\\a.txt");
  ::chmod(file.c_str(), 0444);
  EXPECT_TRUE(disk.setAttributes("C:\\to_a", {}).ok());
  EXPECT_TRUE(disk.attributes("C:\\a.txt").value().readOnly) << "the link's target is left alone";
  EXPECT_EQ(disk.setAttributes("C:\\none", {}).number(), err::fileNotFound);
}

TEST_F(DriveFileSystemTest, AFolderGoesOnlyWhenNothingIsInIt) {
  for (const char* name : {"keep/.hidden", "keep/a:b"}) {
    fs::create_directories(onMachine("keep"));
    foreign(name, "x");
    EXPECT_EQ(disk.removeFolder("C:\\Keep").number(), err::pathFileAccess);
    fs::remove(onMachine(name));
  }
  drive.write("C:\\keep\\.skv-0123456789abcdef.tmp", "of a killed run");
  drive.link("C:\\link", "C:\\keep");
  EXPECT_TRUE(disk.removeFolder("C:\\LINK\\").ok());
  EXPECT_TRUE(drive.exists("C:\\keep")) << "the link itself went";
  EXPECT_TRUE(disk.removeFolder("C:\\KEEP\\").ok());
  drive.write("C:\\file", "x");
  for (const auto& [folder, number] : {std::pair{"C:\\", err::pathFileAccess},
                                       {"C:\\File", err::pathFileAccess},
                                       {"C:\\File\\a", err::pathNotFound},
                                       {"C:\\a\\b", err::pathNotFound}}) {
    EXPECT_EQ(disk.removeFolder(folder).number(), number) << folder;
    EXPECT_EQ(disk.makeFolder(folder).number(), number) << folder;
  }
}

TEST_F(DriveFileSystemTest, APrefixThatIsShutOffGetsADriveForTheMachine) {
  fs::remove(drive.drives() + "/z:");
  const DriveFileSystem shut(drive.drives());
  EXPECT_EQ(shut.windowsPath("/etc/hostname"), "Z:\\etc\\hostname");
  EXPECT_EQ(shut.nativePath("Z:\\ETC\\hostname").valueOr(""), "/etc/hostname");
  EXPECT_TRUE(shut.attributes("Z:\\").ok());
  EXPECT_EQ(shut.windowsPath(onMachine("a")), "C:\\a");
  // The letter of a disk that is away is not free.
  fs::create_symlink("/no/disk", drive.drives() + "/z:");
  EXPECT_EQ(DriveFileSystem(drive.drives()).windowsPath("/etc"), "Y:\\etc");
  // Without any drive something is wrong that this would hide.
  for (const char* link : {"/c:", "/z:"}) fs::remove(drive.drives() + link);
  EXPECT_FALSE(DriveFileSystem(drive.drives()).attributes("Z:\\").ok());
}

TEST_F(DriveFileSystemTest, DrivesLeadToTheMachineAndBack) {
  drive.write("C:\\Games\\a.txt", "x");
  for (const auto& [path, place] :
       {std::pair<const char*, std::string>{"C:\\GAMES\\A.txt", onMachine("Games/a.txt")},
        {"C:\\games\\New\\b.txt", onMachine("Games/New/b.txt")},
        {"C:\\", drive.native()},
        {"Z:\\", "/"}})
    EXPECT_EQ(disk.nativePath(path).valueOr(""), place);
  for (const auto& [place, path] :
       {std::pair<std::string, const char*>{onMachine("Games/new.txt"), "C:\\Games\\new.txt"},
        {drive.native(), "C:\\"},
        {"/usr/../etc/hostname", "Z:\\etc\\hostname"},
        {drive.drives() + "/c:/Games/a.txt", "C:\\Games\\a.txt"},
        {"/a:b", ""},
        {"/", "Z:\\"}})
    EXPECT_EQ(disk.windowsPath(place), path) << place;
  fs::create_symlink(onMachine("Games"), drive.drives() + "/g:");
  EXPECT_EQ(disk.windowsPath(onMachine("Games/a.txt")), "G:\\a.txt");
  struct statvfs mounted {};
  ASSERT_EQ(::statvfs("/dev", &mounted), 0);
  EXPECT_NEAR(disk.freeBytes("Z:\\DEV\\").valueOr(-1),
              static_cast<double>(mounted.f_bavail) * static_cast<double>(mounted.f_frsize), 1e6)
      << "of what is mounted there, not of the drive's root";
}

}  // namespace skv::test
