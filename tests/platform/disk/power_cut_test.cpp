// What the calls promise for a power cut, as FaultyFileSystem plays it: the tests of whole
// operations rest on it.
#include <gtest/gtest.h>

#include "platform/disk/drive_file_system.h"
#include "support/faulty_file_system.h"
#include "support/temporary_drive.h"

namespace skv::test {
namespace {

constexpr auto emptied = FaultyFileSystem::Lost::contents, undone = FaultyFileSystem::Lost::files;

TEST(PowerCutTest, LosesWhatNoCallHasFlushed) {
  TemporaryDrive drive;
  DriveFileSystem disk(drive.drives());
  FaultyFileSystem files(disk);
  const auto make = [&] {
    drive.clear("C:\\");
    drive.write("C:\\s\\a", "new");
    for (const char* name : {"replaced", "saved"}) drive.write(std::string("C:\\") + name, "old");
    EXPECT_TRUE(files.copyFile("C:\\s\\a", "C:\\copied").ok());
    EXPECT_TRUE(files.copyFile("C:\\s\\a", "C:\\REPLACED").ok());
    EXPECT_TRUE(files.copyFileDurably("C:\\s\\a", "C:\\durable").ok());
    EXPECT_TRUE(files.replaceFile("C:\\saved", "new").ok());
    EXPECT_TRUE(files.copyFile("C:\\s\\a", "C:\\s\\b").ok());
    EXPECT_TRUE(files.rename("C:\\S", "C:\\t").ok());
    EXPECT_TRUE(files.moveFile("C:\\T\\B", "C:\\moved").ok());
    EXPECT_TRUE(files.createFile("C:\\t\\made").value()->commit({}).ok());
    EXPECT_TRUE(files.moveFile("C:\\t\\a", "C:\\durable").ok());
  };
  using Tree = std::vector<std::string>;
  make();
  files.powerCut(emptied);
  EXPECT_EQ(drive.tree("C:\\"),
            (Tree{"copied", "durable", "moved", "replaced", "saved", "t\\", "t\\made"}));
  EXPECT_EQ(drive.read("C:\\copied") + drive.read("C:\\moved"), "");
  EXPECT_EQ(drive.read("C:\\durable") + drive.read("C:\\saved") + drive.read("C:\\replaced"),
            "newnewnew");
  make();
  files.powerCut(undone);
  EXPECT_EQ(drive.tree("C:\\"), (Tree{"durable", "replaced", "saved", "t\\"}));
  EXPECT_EQ(drive.read("C:\\replaced"), "old");
  make();
  EXPECT_TRUE(files.flushDisk("C:\\").ok());
  for (const auto lost : {emptied, undone}) files.powerCut(lost);
  EXPECT_EQ(drive.read("C:\\copied") + drive.read("C:\\moved") + drive.read("C:\\replaced"),
            "newnewnew");
  files.failWhen("flushDisk", "", 57);
  EXPECT_TRUE(files.copyFile("C:\\moved", "C:\\more").ok());
  EXPECT_FALSE(files.flushDisk("C:\\").ok());
  files.powerCut(emptied);
  EXPECT_EQ(drive.read("C:\\more"), "");
}

TEST(PowerCutTest, LooksFailByTheirOwnCount) {
  TemporaryDrive drive;
  DriveFileSystem disk(drive.drives());
  FaultyFileSystem files(disk);
  files.failReadAt(2, err::deviceIo);
  EXPECT_TRUE(files.attributes("C:\\").ok());
  EXPECT_TRUE(files.makeFolder("C:\\d").ok());
  EXPECT_EQ(files.list("C:\\", FileSystem::Entries::all).outcome().number(), err::deviceIo);
  EXPECT_TRUE(files.heal());
  files.killReadAt(1);
  EXPECT_THROW(files.readFile("C:\\a").outcome().skipped(), Killed);
}

}  // namespace
}  // namespace skv::test
