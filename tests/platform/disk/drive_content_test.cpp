// Copying, moving, replacing, renaming and deleting files on a real disk.
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "platform/disk/file_writer.h"
#include "platform/disk/hidden_files.h"
#include "support/disk_fixture.h"
#include "support/failing_calls.h"

namespace skv::test {

namespace fs = std::filesystem;

class DriveContentTest : public DiskTest {
 protected:
  std::string native(const std::string& path) const { return drive.native(path); }
  fs::perms mode(const std::string& path) const { return fs::status(native(path)).permissions(); }
  void setMode(const std::string& path, mode_t mode) const {
    fs::permissions(native(path), fs::perms(mode));
  }

  std::string content = "new";
  // Every way to bring the content to a path. The source lies beside the drive's other folders.
  using Way = std::function<Outcome(const std::string& to)>;
  const Way copy = [this](const std::string& to) { return disk.copyFile("C:\\new", to); };
  const Way replace = [this](const std::string& to) { return disk.replaceFile(to, content); };
  const Way move = [this](const std::string& to) { return disk.moveFile("C:\\new", to); };
  const Way create = [this](const std::string& to) {
    auto writer = disk.createFile(to);
    if (!writer.ok()) return writer.outcome();
    const Outcome written = writer.value()->write(content);
    const Outcome committed = writer.value()->commit({});
    return written.ok() ? committed : written;
  };
  const std::vector<Way> ways = {copy, replace, move, create};
};

TEST_F(DriveContentTest, ACopyAndAReplacementKeepPermissionsAndAttributes) {
  content = "\x01\r\n" + std::string(300000, 'x');
  drive.write("C:\\a.bgl", content);
  drive.setModified("C:\\a.bgl", {1012345678, 123456789});
  setMode("C:\\a.bgl", 0640);
  ::setxattr(native("C:\\a.bgl").c_str(), "user.DOSATTRIB", "0x22", 4, 0);
  const Attributes stored = disk.attributes("C:\\a.bgl").value();
  ASSERT_TRUE(disk.copyFile("C:\\A.BGL", "C:\\b.bgl").ok());
  EXPECT_EQ(disk.readFile("C:\\b.bgl").valueOr(""), content);
  EXPECT_EQ(disk.modified("C:\\b.bgl").value(), (FileTime{1012345678, 123456789}));
  EXPECT_EQ(disk.fileLength("C:\\b.bgl").value(), content.size());
  EXPECT_EQ(mode("C:\\b.bgl"), fs::perms(0640));
  EXPECT_EQ(disk.attributes("C:\\b.bgl").value().hidden, stored.hidden);

  const bool root = ::geteuid() == 0;
  EXPECT_TRUE(!root || ::chown(native("C:\\b.bgl").c_str(), 12, 34) == 0);
  EXPECT_TRUE(disk.replaceFile("C:\\B.bgl", "new").ok());
  EXPECT_EQ(drive.read("C:\\b.bgl"), "new");
  EXPECT_EQ(mode("C:\\b.bgl"), fs::perms(0640));
  EXPECT_EQ(disk.attributes("C:\\b.bgl").value().archive, stored.archive);
  struct stat status {};
  ASSERT_EQ(::stat(native("C:\\b.bgl").c_str(), &status), 0);
  EXPECT_TRUE(!root || (status.st_uid == 12 && status.st_gid == 34));

  setMode("C:\\a.bgl", 0444);
  drive.write("C:\\old.bgl", "longer ago");
  EXPECT_TRUE(disk.copyFile("C:\\a.bgl", "C:\\OLD.bgl").ok());
  EXPECT_EQ(disk.readFile("C:\\old.bgl").valueOr(""), content);
  EXPECT_TRUE(disk.attributes("C:\\old.bgl").value().readOnly) << "the source's";
}

TEST_F(DriveContentTest, ManyCopiesAreToldInTheirOrder) {
  std::vector<FileCopy> copies;
  for (int i = 0; i < 40; ++i) {
    const std::string name = std::to_string(i);
    if (i != 7) drive.write("C:\\s\\" + name, std::string(static_cast<std::size_t>(i) * 5000, 'x'));
    copies.push_back({"C:\\s\\" + name, "C:\\d\\" + name});
  }
  for (const std::size_t count : {copies.size(), std::size_t{2}}) {
    copies.resize(count);
    drive.clear("C:\\d");
    std::size_t told = 0;
    disk.copyFiles(copies, [&](const Outcome& copied) {
      EXPECT_EQ(copied.ok(), told != 7) << told;
      EXPECT_EQ(drive.read(copies[told].to), drive.read(copies[told].from)) << told;
      ++told;
      return true;
    });
    EXPECT_EQ(told, count);

    drive.clear("C:\\d");
    told = 0;
    disk.copyFiles(copies, [&](const Outcome&) { return ++told == 0; });
    EXPECT_EQ(drive.tree("C:\\d").size(), told - (told > 7 ? 1 : 0)) << "no copy that is not told";
  }
  copies.assign(30, {"C:\\s\\2", "C:\\d\\1"});
  EXPECT_THROW(disk.copyFiles(copies, [](const Outcome&) -> bool { throw 1; }), int);
}

TEST_F(DriveContentTest, ManyDeletionsTakeReadOnlyFilesAndNoFolders) {
  std::vector<std::string> paths;
  for (int i = 0; i < 40; ++i) {
    paths.push_back("C:\\S\\" + std::to_string(i));
    if (i != 7) drive.write(paths.back(), "x");
  }
  setMode("C:\\S\\2", 0444);
  drive.write("C:\\S\\7\\kept", "x");
  std::size_t told = 0;
  disk.deleteFiles(paths, [&](const Outcome& deleted) {
    EXPECT_EQ(deleted.number(), told == 7 ? err::pathFileAccess : 0) << told;
    ++told;
    return true;
  });
  EXPECT_EQ(told, paths.size());
  EXPECT_EQ(drive.tree("C:\\S"), (Lines{"7\\", "7\\kept"}));

  drive.clear("C:\\S");
  for (const std::string& path : paths) drive.write(path, "x");
  told = 0;
  disk.deleteFiles(paths, [&](const Outcome&) { return ++told == 0; });
  EXPECT_EQ(drive.tree("C:\\S").size(), paths.size() - told) << "no deletion that is not told";
}

TEST_F(DriveContentTest, AReadOnlyFileStaysAsItIs) {
  drive.write("C:\\new", content);
  drive.write("C:\\ro", "old");
  auto writer = disk.createFile("C:\\ro");
  setMode("C:\\ro", 0444);
  for (const Way& way : ways) EXPECT_EQ(way("C:\\RO").number(), err::pathFileAccess);
  EXPECT_EQ(writer.value()->commit({}).number(), err::pathFileAccess) << "since it was begun";
  EXPECT_EQ(disk.deleteFile("C:\\ro").number(), err::pathFileAccess);
  EXPECT_EQ(disk.moveFile("C:\\ro", "C:\\moved").number(), err::pathFileAccess);
  EXPECT_EQ(drive.read("C:\\ro"), "old");
  EXPECT_EQ(drive.tree("C:\\"), (Lines{"new", "ro"}));
  ASSERT_TRUE(disk.setAttributes("C:\\ro", {}).ok());
  EXPECT_TRUE(copy("C:\\RO").ok());
  EXPECT_TRUE(disk.deleteFile("C:\\Ro").ok());
  EXPECT_EQ(drive.tree("C:\\"), Lines{"new"});
}

TEST_F(DriveContentTest, AFileOntoItselfComesToNoHarm) {
  drive.write("C:\\dir\\a.txt", "content");
  drive.link("C:\\link", "C:\\dir");
  drive.link("C:\\to_a", "C:\\dir\\a.txt");
  fs::create_hard_link(native("C:\\dir\\a.txt"), native("C:\\dir") + "/hard");
  for (const char* same : {"C:\\dir\\a.txt", "c:\\DIR\\A.TXT", "C:\\link\\a.txt", "C:\\LINK\\A.txt",
                           "C:\\to_a", "C:\\dir\\hard"}) {
    EXPECT_EQ(disk.copyFile("C:\\dir\\a.txt", same).number(), err::permissionDenied) << same;
    EXPECT_EQ(disk.copyFile(same, "C:\\dir\\a.txt").number(), err::permissionDenied) << same;
    EXPECT_EQ(disk.moveFile("C:\\dir\\a.txt", same).number(), err::permissionDenied) << same;
    EXPECT_EQ(drive.read("C:\\dir\\a.txt"), "content") << same;
  }
  EXPECT_TRUE(disk.isLink("C:\\to_a"));
}

TEST_F(DriveContentTest, LinksAreNeverWrittenThrough) {
  drive.write("C:\\out\\target", "kept");
  setMode("C:\\out\\target", 0444);
  drive.link("C:\\outlink", "C:\\out");
  for (const Way& way : ways) {
    drive.write("C:\\new", content);
    for (const auto& [to, number] : {std::pair{"C:\\out", err::pathFileAccess},
                                     {"C:\\outlink", err::pathFileAccess},
                                     {"C:\\none\\a", err::pathNotFound},
                                     {"C:\\", err::pathFileAccess},
                                     {"C:\\nul", err::badFileName}})
      EXPECT_EQ(way(to).number(), number) << to;
    for (const char* target : {"C:\\out\\target", "C:\\nowhere"}) {
      drive.write("C:\\new", content);
      drive.remove("C:\\link");
      drive.link("C:\\link", target);
      EXPECT_TRUE(way("C:\\LINK").ok());
      EXPECT_FALSE(disk.isLink("C:\\link"));
      EXPECT_EQ(drive.read("C:\\link"), "new");
      EXPECT_EQ(drive.read("C:\\out\\target"), "kept");
    }
  }
  drive.link("C:\\link2", "C:\\out\\target");
  EXPECT_TRUE(disk.moveFile("C:\\link2", "C:\\content").ok());
  EXPECT_FALSE(disk.isLink("C:\\content") || drive.exists("C:\\link2"));
  EXPECT_EQ(drive.read("C:\\content") + drive.read("C:\\out\\target"), "keptkept");
  drive.link("C:\\link3", "C:\\out\\target");
  for (const char* link : {"C:\\link3", "C:\\outlink"}) EXPECT_TRUE(disk.deleteFile(link).ok());
  EXPECT_EQ(drive.tree("C:\\out"), Lines{"target"});
  EXPECT_EQ(disk.deleteFile("C:\\out").number(), err::pathFileAccess);
}

TEST_F(DriveContentTest, AMoveIsACopyAndADelete) {
  drive.write("C:\\a.txt", "new");
  drive.setModified("C:\\a.txt", {1000000000, 5});
  drive.write("C:\\dir\\B.txt", "old");
  EXPECT_TRUE(disk.moveFile("C:\\A.txt", "C:\\Dir\\b.TXT").ok());
  EXPECT_EQ(drive.tree("C:\\"), (Lines{"dir\\", "dir\\B.txt"}));
  EXPECT_EQ(drive.read("C:\\dir\\B.txt"), "new");
  EXPECT_EQ(disk.modified("C:\\dir\\b.txt").value(), (FileTime{1000000000, 5}));
  EXPECT_EQ(disk.moveFile("C:\\none", "C:\\x").number(), err::fileNotFound);
  EXPECT_EQ(disk.moveFile("C:\\dir", "C:\\x").number(), err::pathFileAccess);

  // To another disk and back.
  const std::string away = "Z:\\dev\\shm\\skv-test-" + std::to_string(::getpid());
  EXPECT_TRUE(disk.moveFile("C:\\dir\\b.txt", away).ok());
  EXPECT_FALSE(drive.exists("C:\\dir\\b.txt"));
  EXPECT_EQ(disk.modified(away).value(), (FileTime{1000000000, 5}));
  EXPECT_TRUE(disk.moveFile(away, "C:\\back").ok());
  EXPECT_EQ(drive.read("C:\\back"), "new");
  EXPECT_FALSE(disk.attributes(away).ok());
}

TEST_F(DriveContentTest, RenamingNeverReplaces) {
  drive.write("C:\\a.txt", "a");
  drive.write("C:\\dir\\b.txt", "b");
  for (const auto& [to, number] : {std::pair{"C:\\DIR\\B.TXT", err::fileExists},
                                   {"C:\\Dir", err::fileExists},
                                   {"C:\\none\\a.txt", err::pathNotFound},
                                   {"C:\\a:b", err::badFileName}})
    EXPECT_EQ(disk.rename("C:\\a.txt", to).number(), number) << to;
  EXPECT_EQ(disk.rename("C:\\none", "C:\\b.txt").number(), err::fileNotFound);
  EXPECT_TRUE(disk.rename("C:\\a.txt", "c:\\A.Txt").ok()) << "itself, in other letters";
  EXPECT_TRUE(disk.rename("C:\\a.txt", "c:\\A.Txt").ok());
  EXPECT_TRUE(disk.rename("C:\\DIR\\", "C:\\Folder\\").ok());
  EXPECT_EQ(drive.tree("C:\\"), (Lines{"A.Txt", "Folder\\", "Folder\\b.txt"}));
  fs::create_hard_link(native("C:\\A.Txt"), native("C:\\Folder") + "/a.txt");
  EXPECT_EQ(disk.rename("C:\\a.txt", "C:\\folder\\A.txt").number(), err::fileExists);
}

TEST_F(DriveContentTest, AWriterLeavesNothingUntilItCommits) {
  drive.write("C:\\old.txt", "old");
  ASSERT_TRUE(disk.makeFolder("C:\\elsewhere").ok());
  for (const char* path : {"new.txt", "OLD.TXT"}) {
    auto given = disk.createFile(std::string("C:\\") + path);
    EXPECT_TRUE(given.value()->write(std::string("half")).ok());
  }
  EXPECT_EQ(drive.tree("C:\\"), (Lines{"elsewhere\\", "old.txt"}));
  EXPECT_EQ(drive.read("C:\\old.txt"), "old");
  EXPECT_TRUE(disk.setCurrentFolder("C:\\").ok());
  auto writer = disk.createFile("new.txt");
  ASSERT_TRUE(writer.ok());
  EXPECT_TRUE(disk.setCurrentFolder("C:\\elsewhere").ok());
  EXPECT_TRUE(writer.value()->write(std::string("all")).ok());
  EXPECT_TRUE(writer.value()->commit(FileTime{1000000000, 7}).ok());
  EXPECT_EQ(drive.read("C:\\new.txt"), "all");
  EXPECT_EQ(disk.modified("C:\\new.txt").value(), (FileTime{1000000000, 7}));
}

TEST_F(DriveContentTest, AFullDiskLeavesTheOldFile) {
  content.assign(100000, 'x');
  drive.write("C:\\new", content);
  drive.write("C:\\old", "old");
  drive.write("C:\\d\\3", "old");
  std::vector<FileCopy> copies;
  for (int i = 0; i < 30; ++i) {
    const std::string name = std::to_string(i);
    drive.write("C:\\s\\" + name, i % 3 == 0 ? content : std::string(i % 3 == 1 ? 20000 : 5, 'y'));
    copies.push_back({"C:\\s\\" + name, "C:\\d\\" + name});
  }
  const NewFile many[] = {{"one", "1", {}}, {"two", content, {}}, {"three", "3", {}}};
  std::size_t complete = 0;
  std::vector<int> numbers, told;
  withFullDisk(10000, [&] {
    for (const char* to : {"C:\\old", "C:\\fresh"}) {
      for (const Way& way : {copy, replace, create}) numbers.push_back(way(to).number());
      numbers.push_back(disk.copyFileDurably("C:\\new", to).number());
    }
    disk.copyFiles(copies, [&](const Outcome& copied) {
      told.push_back(copied.number());
      return true;
    });
    numbers.push_back(disk.writeFiles("C:\\d", many, complete).number());
  });
  EXPECT_EQ(numbers, std::vector<int>(9, err::diskFull));
  EXPECT_EQ(drive.read("C:\\old"), "old");
  EXPECT_EQ(complete, 1U);
  ASSERT_EQ(told.size(), copies.size());
  for (std::size_t i = 0; i < told.size(); ++i) {
    EXPECT_EQ(told[i], i % 3 == 2 ? 0 : err::diskFull) << i;
    EXPECT_EQ(drive.read(copies[i].to), i % 3 == 2 ? "yyyyy" : i == 3 ? "old" : "") << i;
  }
  EXPECT_EQ(drive.tree("C:\\d").size(), 12U) << "neither a half file nor a leftover";
}

// On a disk that does not know files without a name.
TEST_F(DriveContentTest, AHiddenNameServesWhereFilesNeedOne) {
  PendingFile file(drive.native());
  ASSERT_TRUE(file.ok());
  EXPECT_EQ(writeAll(file.fd(), std::string("new")), 0);
  drive.write("C:\\to", "old");
  EXPECT_EQ(file.publish("to", false), EEXIST);
  EXPECT_EQ(file.publish("to", true), 0);
  EXPECT_EQ(drive.read("C:\\to"), "new");
  EXPECT_EQ(drive.tree("C:\\"), Lines{"to"});
}

TEST_F(DriveContentTest, WhatAKilledRunHasLeftGoesAtTheNextStartAndNothingElse) {
  const std::string notes = onMachine("notes/unfinished"),
                    other = "C:\\d\\.skv-0123456789abcdef.tmp";
  drive.write("C:\\d\\old", "old");
  drive.write(other, "of another run");
  const auto killed = [&](const std::function<void()>& work) {
    if (const pid_t child = ::fork(); child == 0) {
      HiddenFiles hidden(notes);
      work();
      ::_exit(0);
    } else {
      ::waitpid(child, nullptr, 0);
    }
  };
  // By name, as on a disk that knows no files without one; the second run ends while it has two.
  const auto begin = [&](const char* folder) {
    const std::string name = onMachine(folder) + "/" + someHiddenName();
    HiddenFiles::begin(name);
    std::ofstream(name) << "half";
  };
  fs::create_directory(onMachine("away"));
  killed([&] {
    EXPECT_TRUE(disk.replaceFile("C:\\d\\old", "new").ok());
    begin("d");
    begin("away");
  });
  EXPECT_EQ(drive.tree("C:\\d").size(), 3U);
  fs::rename(onMachine("away"), onMachine("unmounted"));
  { const HiddenFiles hidden(notes); }
  EXPECT_EQ(drive.tree("C:\\d"), (Lines{other.substr(5), "old"}));
  fs::rename(onMachine("unmounted"), onMachine("away"));
  killed([&] {
    begin("d");
    const HiddenFiles second(notes);
    begin("d");
  });
  EXPECT_EQ(drive.tree("C:\\d").size(), 4U) << "which are in use by the first of two runs";
  { const HiddenFiles hidden(notes); }
  EXPECT_EQ(drive.tree("C:\\d").size(), 2U);
  EXPECT_EQ(drive.tree("C:\\away"), Lines{});
  EXPECT_EQ(drive.read("C:\\notes\\unfinished"), "");
}

}  // namespace skv::test
