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

// One of the two files always stands whole, the disk's cache being lost or not.
TEST_F(KeptOriginalTest, ChangesAndResetsThatEndAnywhereLoseNeitherFile) {
  for (const Ending ending :
       {Ending::failure, Ending::failedLook, Ending::kill, Ending::emptyFiles, Ending::lostFiles}) {
    for (const bool resets : {false, true}) {
      SCOPED_TRACE(resets ? "reset" : "change");
      bool ok = false;
      const int calls = forEveryCall(
          files, ending, [&] { resets ? put("changed", "original") : put("original", ""); },
          [&] {
            ok = (resets ? restoreOriginal(files, current, original)
                         : changeKeepingOriginal(files, current, original, "changed"))
                     .ok();
          },
          [&](bool struck) {
            const std::string now = drive.read(current);
            EXPECT_EQ(now == "changed" ? drive.read(original) : now, "original");
            EXPECT_TRUE(struck || (ok && now == (resets ? "original" : "changed")));
          });
      EXPECT_GT(calls, 1);
    }
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
  drive.remove(current);
  drive.write(original, "original");
  EXPECT_TRUE(restoreOriginal(files, current, original).ok()) << "the file in force may be gone";
  EXPECT_EQ(drive.read(current), "original");
}

}  // namespace skv::test
