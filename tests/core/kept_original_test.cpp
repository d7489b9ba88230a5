#include "core/kept_original.h"

#include "support/disk_fixture.h"
#include "support/every_call.h"

namespace skv::test {

class KeptOriginalTest : public DiskTest {
 protected:
  const std::string folder = "C:\\plane\\";
  const std::string current = folder + "Aircraft.cfg", original = folder + "Aircraft.preSKV.cfg";

  // Both files read-only, as they stand before a change or before a reset.
  void put(const std::string& now, const std::string& kept) {
    drive.clear(folder);
    drive.write(current, now);
    if (!kept.empty()) drive.write(original, kept);
    for (const std::string& file : {current, original})
      EXPECT_EQ(disk.setAttributes(file, {.readOnly = true}).ok(), drive.exists(file));
  }
};

// One of the two files always stands whole, the disk's cache being lost or not, and a second try
// ends well.
TEST_F(KeptOriginalTest, ChangesAndResetsThatEndAnywhereLoseNeitherFile) {
  enum Job { change, changeAgain, reset };
  for (const Job job : {change, changeAgain, reset}) {
    SCOPED_TRACE(job);
    bool ok = false, failed = false;  // neither when the run was killed
    const auto run = [&] {
      ok = failed = false;
      ok = (job == reset ? restoreOriginal(files, current, original)
                         : changeKeepingOriginal(files, current, original, "changed"))
               .ok();
      failed = !ok;
    };
    forEveryEnding(
        files, [&] { job == change ? put("original", "") : put("edited", "original"); }, run,
        [&](bool struck) {
          const std::string now = drive.read(current);
          EXPECT_EQ(now == "original" ? now : drive.read(original), "original");
          if (failed) {
            EXPECT_TRUE(disk.attributes(current).value().readOnly) << "a failure puts it back";
            EXPECT_EQ(drive.exists(original), job != change) << "a backup of nothing";
          }
          if (struck) run();
          EXPECT_TRUE(ok || now == "original") << "nothing is left to reset";
          EXPECT_EQ(drive.read(current), job == reset ? "original" : "changed");
          EXPECT_EQ(drive.read(original), job == reset ? "" : "original");
          EXPECT_TRUE(struck || disk.attributes(current).value().readOnly);
        },
        {Ending::failure, Ending::failedLook, Ending::kill, Ending::emptyFiles, Ending::lostFiles});
  }
}

TEST_F(KeptOriginalTest, AChangeNeedsABackupAndAResetAnOriginal) {
  drive.write(current, "now");
  ASSERT_TRUE(disk.makeFolder(original).ok());
  EXPECT_FALSE(changeKeepingOriginal(files, current, original, "changed").ok())
      << "a folder is no backup";
  ASSERT_TRUE(disk.removeFolder(original).ok());
  EXPECT_FALSE(restoreOriginal(files, current, original).ok());
  drive.write(original, "");
  EXPECT_FALSE(restoreOriginal(files, current, original).ok())
      << "what a power cut has left of a copy";
  EXPECT_EQ(drive.read(current), "now");
  ASSERT_TRUE(disk.setAttributes(current, {.readOnly = true}).ok());
  for (const char* state : {"read-only meanwhile", "gone"}) {
    drive.write(original, "original");
    EXPECT_TRUE(restoreOriginal(files, current, original).ok()) << state;
    EXPECT_EQ(drive.read(current), "original");
    EXPECT_FALSE(disk.attributes(current).value().readOnly) << "as the original was";
    drive.remove(current);
  }
}

}  // namespace skv::test
