#include "aircraft/original_cfg.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/disk/drive_file_system.h"
#include "support/faulty_file_system.h"
#include "support/temporary_drive.h"

namespace skv {
namespace {

using test::FaultyFileSystem;

class OriginalCfgTest : public ::testing::Test {
 protected:
  const std::string folder = "C:\\plane\\";
  const std::string current = folder + aircraftCfg, original = folder + originalAircraftCfg;
  test::TemporaryDrive drive;
  DriveFileSystem disk{drive.drives()};
  FaultyFileSystem files{disk};

  // Both files read-only, as they stand before a change or before a reset.
  void put(const char* now, const char* kept) {
    for (const std::string& file : {current, original}) {
      if (!drive.exists(file)) continue;
      EXPECT_TRUE(disk.setAttributes(file, {}).ok());
      drive.remove(file);
    }
    drive.write(current, now);
    if (*kept != 0) drive.write(original, kept);
    for (const std::string& file : {current, original})
      if (drive.exists(file)) {
        EXPECT_TRUE(disk.setAttributes(file, {.readOnly = true}).ok());
      }
  }
};

// One of the two files always stands whole: each call failed and killed, the disk's cache being
// lost or not.
TEST_F(OriginalCfgTest, ChangesAndResetsThatEndAnywhereLoseNeitherFile) {
  struct Ending {
    const char* what;
    std::function<void(int)> at;
    std::function<void()> afterwards = [] {};
  };
  const Ending endings[] = {
      {"failed", [this](int call) { files.failAt(call, err::deviceIo); }},
      {"failed look", [this](int call) { files.failReadAt(call, err::deviceIo); }},
      {"killed", [this](int call) { files.killAt(call); }},
      {"power cut, empty files", [this](int call) { files.killAt(call); },
       [this] { files.powerCut(FaultyFileSystem::Lost::contents); }},
      {"power cut, lost files", [this](int call) { files.killAt(call); },
       [this] { files.powerCut(FaultyFileSystem::Lost::files); }},
  };
  for (const auto& [what, at, afterwards] : endings) {
    for (const bool resets : {false, true}) {
      bool struck = true;
      for (int call = 1; struck && call < 20; ++call) {
        SCOPED_TRACE(std::string(what) + (resets ? " reset " : " change ") + std::to_string(call));
        if (resets)
          put("changed", "original");
        else
          put("original", "");
        at(call);
        bool ok = false;
        try {
          ok = (resets ? restoreAircraftCfg(files, folder)
                       : changeAircraftCfg(files, folder, "changed"))
                   .ok();
        } catch (const test::Killed&) {
        }
        struck = files.heal();
        afterwards();
        const std::string now = drive.read(current);
        if (now == "changed")
          EXPECT_EQ(drive.read(original), "original");
        else
          EXPECT_EQ(now, "original");
        if (!struck) {
          EXPECT_TRUE(ok);
          EXPECT_EQ(now, resets ? "original" : "changed");
        }
      }
      EXPECT_FALSE(struck) << "more calls than there can be";
    }
  }
}

TEST_F(OriginalCfgTest, AChangeNeedsABackupAndAResetAnOriginal) {
  drive.write(current, "now");
  ASSERT_TRUE(disk.makeFolder(original).ok());
  EXPECT_FALSE(changeAircraftCfg(files, folder, "changed").ok()) << "a folder is no backup";
  EXPECT_EQ(drive.read(current), "now");
  ASSERT_TRUE(disk.removeFolder(original).ok());
  EXPECT_FALSE(restoreAircraftCfg(files, folder).ok());

  drive.write(original, "");
  EXPECT_FALSE(restoreAircraftCfg(files, folder).ok()) << "what a power cut has left of a copy";
  EXPECT_EQ(drive.read(current), "now");
  drive.remove(current);
  drive.write(original, "original");
  EXPECT_TRUE(restoreAircraftCfg(files, folder).ok()) << "the file in force may be gone";
  EXPECT_EQ(drive.read(current), "original");
}

}  // namespace
}  // namespace skv
