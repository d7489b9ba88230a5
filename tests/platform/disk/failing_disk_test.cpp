// Disks that fail, fill up or are away: what the layer then says, and what it leaves behind.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>

#include "platform/disk/dos_attributes.h"
#include "platform/disk/drive_file_system.h"
#include "support/failing_calls.h"
#include "support/temporary_drive.h"

namespace skv {
namespace {

namespace fs = std::filesystem;
using Entries = FileSystem::Entries;
using test::withFailingCalls;

constexpr long getxattrat = 464;
const std::vector<long> attributeCalls = {SYS_getxattr, getxattrat};

class FailingDiskTest : public ::testing::Test {
 protected:
  std::string native(const std::string& name) const { return drive.native() + "/" + name; }
  // The folder's entries in a text, or the number of its failure.
  static std::string listed(const DriveFileSystem& disk, const std::string& folder,
                            Entries entries) {
    const auto list = disk.list(folder, entries);
    if (!list.ok()) return std::to_string(list.outcome().number());
    std::string names;
    for (const FolderEntry& entry : list.value()) names += entry.name + " ";
    return names;
  }

  test::TemporaryDrive drive;
  DriveFileSystem disk{drive.drives()};
};

TEST_F(FailingDiskTest, WhatCannotBeLookedAtIsNotMissing) {
  drive.write("C:\\d\\a.txt", "x");
  drive.write("C:\\d\\b\\c.txt", "x");
  using Look = std::function<Outcome(DriveFileSystem&)>;
  const auto attributes = [](const char* path) -> Look {
    return [path](auto& files) { return files.attributes(path).outcome(); };
  };
  const auto list = [](Entries entries) -> Look {
    return [entries](auto& files) { return files.list("C:\\d", entries).outcome(); };
  };
  const std::string file = "C:\\d\\a.txt", copy = "C:\\d\\copy";
  const Look read = [&](auto& files) { return files.readFile(file).outcome(); };
  const Look time = [&](auto& files) { return files.modified(file).outcome(); };
  const Look remove = [](auto& files) { return files.removeFolder("C:\\e"); };
  const Look set = [&](auto& files) { return files.setAttributes(file, {}); };
  const Look copied = [&](auto& files) { return files.copyFile(file, copy); };
  const Look durable = [&](auto& files) { return files.copyFileDurably(file, copy); };
  const Look moved = [&](auto& files) { return files.moveFile(file, "C:\\d\\b\\c.txt"); };
  const Look room = [](auto& files) { return files.freeBytes("C:\\d").outcome(); };
  const Look flush = [](auto& files) { return files.flushDisk("C:\\D"); };
  const struct {
    std::vector<long> calls;
    int error;
    Look look;
    int number = err::deviceIo;
  } looks[] = {
      {{SYS_newfstatat}, EIO, attributes("C:\\d\\a.txt")},
      {{SYS_newfstatat}, ESTALE, attributes("C:\\d\\none"), err::deviceUnavailable},
      {{SYS_newfstatat}, EIO, time},
      {{SYS_newfstatat}, EIO, list(Entries::measured)},
      {{SYS_newfstatat}, EIO, remove},
      // In the search for other letters.
      {{SYS_openat}, EMFILE, attributes("C:\\d\\A.txt"), err::tooManyFiles},
      {{SYS_openat}, EMFILE, attributes("C:\\D\\a.txt"), err::tooManyFiles},
      {{SYS_openat}, EACCES, attributes("C:\\d\\none"), err::permissionDenied},
      {{SYS_getdents64}, EIO, attributes("C:\\d\\none")},
      {{SYS_getdents64}, EIO, list(Entries::plain)},
      {{SYS_openat}, EIO, list(Entries::plain)},
      {{SYS_openat}, EIO, read},
      {{SYS_read}, EIO, read},
      {attributeCalls, EIO, attributes("C:\\d\\a.txt")},
      {attributeCalls, EIO, list(Entries::plain)},
      {attributeCalls, EIO, set},
      {{SYS_fgetxattr}, EIO, copied},
      {{SYS_statfs}, EIO, room},
      {{SYS_syncfs}, EIO, flush},
      {{SYS_syncfs}, ENOSPC, flush, err::diskFull},
      {{SYS_syncfs}, ENOSYS, flush, 0},
      {{SYS_fsync}, EIO, durable},
      {{SYS_fsync}, EIO, moved},
  };
  int number = 0;
  for (const auto& [calls, error, look, expected] : looks) {
    const auto answer = withFailingCalls(calls, error, [&, work = look] {
      DriveFileSystem files(drive.drives());
      return std::to_string(work(files).number());
    });
    if (!answer) GTEST_SKIP() << "calls cannot be made to fail here";
    EXPECT_EQ(*answer, std::to_string(expected)) << "look " << number;
    ++number;
  }
  EXPECT_EQ(drive.tree("C:\\d"), (std::vector<std::string>{"a.txt", "b\\", "b\\c.txt"}));
}

TEST_F(FailingDiskTest, ListingAndAttributesSeeTheSame) {
  drive.write("C:\\d\\shown", "x");
  drive.write("C:\\d\\hidden", "x");
  fs::create_directory(native("d/folder"));
  for (const char* name : {"d/hidden", "d/folder"})
    if (::setxattr(native(name).c_str(), "user.DOSATTRIB", "0x2", 3, 0) != 0)
      GTEST_SKIP() << "no attributes here";
  const auto seen = [&] {
    DriveFileSystem files(drive.drives());
    const auto hidden = files.attributes("C:\\d\\hidden");
    return listed(files, "C:\\d", Entries::plain) + "|" + listed(files, "C:\\d", Entries::named) +
           "|" + (hidden.ok() ? std::to_string(hidden.value().hidden) : "?");
  };
  const std::string right = "shown |hidden shown |1";
  EXPECT_EQ(seen(), right);
  // Each way of asking alone: by the folder, which older systems lack, and by the whole path.
  EXPECT_EQ(withFailingCalls({getxattrat}, ENOSYS, seen).value_or(right), right);
  EXPECT_EQ(withFailingCalls({getxattrat}, EPERM, seen).value_or(right), right);
  if (::syscall(getxattrat, -1, "", 0, "", nullptr, 0) == -1 && errno != ENOSYS) {
    const std::string unknown = "shown |hidden shown |?";
    EXPECT_EQ(withFailingCalls({SYS_getxattr}, EIO, seen).value_or(unknown), unknown);
  }
}

TEST_F(FailingDiskTest, BehindALinkThatLeadsNowhereMayBeADisk) {
  drive.write("C:\\file", "x");
  fs::create_symlink("nowhere", native("away"));
  fs::create_symlink("file/none", native("awry"));
  fs::create_symlink("circle", native("circle"));
  fs::create_symlink(native("unmounted"), drive.drives() + "/d:");
  for (const char* path : {"C:\\away", "C:\\AWAY", "C:\\away\\a", "C:\\Away\\a\\b", "C:\\awry",
                           "D:\\", "D:\\a", "D:\\a\\b", "d:"}) {
    EXPECT_EQ(disk.attributes(path).outcome().number(), err::deviceUnavailable) << path;
    EXPECT_EQ(disk.list(path).outcome().number(), err::deviceUnavailable) << path;
    EXPECT_EQ(disk.readFile(path).outcome().number(), err::deviceUnavailable) << path;
    EXPECT_EQ(disk.setCurrentFolder(path).number(), err::deviceUnavailable) << path;
  }
  for (const char* path : {"C:\\circle", "C:\\CIRCLE", "C:\\circle\\a", "C:\\Circle\\a\\b"})
    EXPECT_EQ(disk.attributes(path).outcome().number(), err::pathFileAccess) << path;
  EXPECT_EQ(disk.makeFolder("D:\\a").number(), err::deviceUnavailable);
  EXPECT_EQ(disk.replaceFile("D:\\a", "").number(), err::deviceUnavailable);
  EXPECT_EQ(disk.nativePath("D:\\a").outcome().number(), err::deviceUnavailable);
  EXPECT_EQ(disk.attributes("E:\\a").outcome().number(), err::pathNotFound) << "no drive at all";
  EXPECT_EQ(disk.attributes("C:\\file\\a").outcome().number(), err::pathNotFound);
  EXPECT_EQ(listed(disk, "C:\\", Entries::plain), "file ");
  EXPECT_TRUE(disk.isLink("C:\\Away"));
  EXPECT_TRUE(disk.deleteFile("C:\\Away").ok());
  EXPECT_EQ(disk.attributes("C:\\away").outcome().number(), err::fileNotFound);
}

TEST_F(FailingDiskTest, AFileIsNoFolderAndAFolderNotItsOwn) {
  drive.write("C:\\file.txt", "x");
  drive.write("C:\\dir\\a", "a");
  const std::string file = "C:\\file.txt\\", other = "C:\\dir\\a";
  for (const Outcome& outcome :
       {disk.attributes(file).outcome(), disk.readFile(file).outcome(),
        disk.fileLength(file).outcome(), disk.canonicalPath("C:\\file.txt").outcome(),
        disk.copyFile(file, "C:\\b"), disk.rename(file, "C:\\b"), disk.deleteFile(file),
        disk.removeFolder(file)})
    EXPECT_EQ(outcome.number(), err::pathNotFound) << outcome.description();
  for (const Outcome& outcome :
       {disk.copyFile(other, file), disk.moveFile(other, file), disk.rename(other, "C:\\b\\"),
        disk.rename("C:\\dir", "C:\\DIR\\sub")})
    EXPECT_EQ(outcome.number(), err::pathFileAccess) << outcome.description();
  EXPECT_EQ(drive.tree("C:\\"), (std::vector<std::string>{"dir\\", "dir\\a", "file.txt"}));
  EXPECT_EQ(drive.read("C:\\dir\\a"), "a");
}

}  // namespace
}  // namespace skv
