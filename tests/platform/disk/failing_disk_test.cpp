// Disks that fail, fill up or are away: what the layer then says, and what it leaves behind.
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>

#include "platform/disk/dos_attributes.h"
#include "support/disk_fixture.h"
#include "support/failing_calls.h"

namespace skv::test {

namespace fs = std::filesystem;
using Entries = FileSystem::Entries;

constexpr long getxattrat = 464;
const std::vector<long> attributeCalls = {SYS_getxattr, getxattrat};

class FailingDiskTest : public DiskTest {};

TEST_F(FailingDiskTest, WhatCannotBeLookedAtIsNotMissing) {
  drive.write("C:\\d\\a.txt", "x");
  drive.write("C:\\d\\b\\c.txt", "x");
  using Look = std::function<Outcome(DriveFileSystem&)>;
  const auto attributes = [](const char* path) -> Look {
    return [path](auto& fresh) { return fresh.attributes(path).outcome(); };
  };
  const auto list = [](Entries entries) -> Look {
    return [entries](auto& fresh) { return fresh.list("C:\\d", entries).outcome(); };
  };
  const std::string file = "C:\\d\\a.txt", copy = "C:\\d\\copy";
  const Look read = [&](auto& fresh) { return fresh.readFile(file).outcome(); };
  const Look time = [&](auto& fresh) { return fresh.modified(file).outcome(); };
  const Look remove = [](auto& fresh) { return fresh.removeFolder("C:\\e"); };
  const Look set = [&](auto& fresh) { return fresh.setAttributes(file, {}); };
  const Look copied = [&](auto& fresh) { return fresh.copyFile(file, copy); };
  const Look durable = [&](auto& fresh) { return fresh.copyFileDurably(file, copy); };
  const Look moved = [&](auto& fresh) { return fresh.moveFile(file, "C:\\d\\b\\c.txt"); };
  const Look room = [](auto& fresh) { return fresh.freeBytes("C:\\d").outcome(); };
  const Look flush = [](auto& fresh) { return fresh.flushDisk("C:\\D"); };
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
      DriveFileSystem fresh(drive.drives());
      return std::to_string(work(fresh).number());
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
  fs::create_directory(onMachine("d/folder"));
  for (const char* name : {"d/hidden", "d/folder"})
    if (::setxattr(onMachine(name).c_str(), "user.DOSATTRIB", "0x2", 3, 0) != 0)
      GTEST_SKIP() << "no attributes here";
  const auto seen = [&] {
    DriveFileSystem fresh(drive.drives());
    std::string names;
    for (const Entries entries : {Entries::plain, Entries::named})
      for (const auto& entry : fresh.list("C:\\d", entries).valueOr({})) names += entry.name + " ";
    const auto hidden = fresh.attributes("C:\\d\\hidden");
    return names + (hidden.ok() ? std::to_string(hidden.value().hidden) : "?");
  };
  const std::string right = "shown hidden shown 1";
  EXPECT_EQ(seen(), right);
  // Each way of asking alone: by the folder, which older systems lack, and by the whole path.
  EXPECT_EQ(withFailingCalls({getxattrat}, ENOSYS, seen).value_or(right), right);
  EXPECT_EQ(withFailingCalls({getxattrat}, EPERM, seen).value_or(right), right);
  if (::syscall(getxattrat, -1, "", 0, "", nullptr, 0) == -1 && errno != ENOSYS) {
    const std::string unknown = "shown hidden shown ?";
    EXPECT_EQ(withFailingCalls({SYS_getxattr}, EIO, seen).value_or(unknown), unknown);
  }
}

TEST_F(FailingDiskTest, BehindALinkThatLeadsNowhereMayBeADisk) {
  drive.write("C:\\file", "x");
  fs::create_symlink("nowhere", onMachine("away"));
  fs::create_symlink("file/none", onMachine("awry"));
  fs::create_symlink("circle", onMachine("circle"));
  fs::create_symlink(onMachine("unmounted"), drive.drives() + "/d:");
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
  EXPECT_EQ(disk.list("C:\\").valueOr({}).size(), 1U) << "links to nowhere are not listed";
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

}  // namespace skv::test
