#include "core/working_folder.h"

#include "support/program_fixture.h"

namespace skv::test {

class WorkingFolderTest : public ProgramTest {
 protected:
  const std::string temp = "C:\\Temp\\SKVInstallTemp\\";
};

TEST_F(WorkingFolderTest, GoesWithWhatIsHiddenAndWithNothingBehindLinks) {
  drive.write(temp + "mailed.zip", "m");
  drive.write(temp + "1.5\\plane\\.DS_Store", "");
  drive.write(temp + "1.5\\__MACOSX\\plane\\._a.bmp", "a");
  drive.write(temp + ".git\\config", "c");
  drive.write("C:\\FS\\aircraft\\.hidden", "h");
  drive.link(temp + "1.5\\plane\\.link", "C:\\FS\\aircraft");
  drive.link(temp + "link", "C:\\FS\\aircraft");
  app.stopRequested = true;  // cleaning up goes on
  for (const auto& [call, path] :
       {std::pair{"deleteFile", temp + ".git\\config"}, {"list", temp}}) {
    files.failWhen(call, path, err::deviceIo);
    EXPECT_FALSE(clearWorkingFolders(app).ok()) << "what a failed job left goes before the next";
    files.heal();
  }
  EXPECT_TRUE(clearWorkingFolders(app).ok());
  EXPECT_EQ(drive.tree(temp), Lines{"mailed.zip"});
  drive.write(temp + ".hidden", "");
  emptyWorkingFolder(app);
  EXPECT_TRUE(drive.tree(temp).empty());
  EXPECT_TRUE(drive.exists("C:\\FS\\aircraft\\.hidden"));
  drive.remove(temp);
  EXPECT_TRUE(prepareWorkingFolder(app).ok());
  EXPECT_TRUE(drive.exists(temp));
}

TEST_F(WorkingFolderTest, IsRefusedWhereItsContentIsNotTheProgramsOwn) {
  const auto refused = [this](const char* what) {
    const Lines before = drive.tree("C:\\");
    EXPECT_FALSE(prepareWorkingFolder(app).ok()) << what;
    EXPECT_FALSE(clearWorkingFolders(app).ok()) << what;
    emptyWorkingFolder(app);
    files.heal();
    EXPECT_EQ(drive.tree("C:\\"), before) << what;
  };
  drive.write(temp + "sub\\file", "kept");
  files.failWhen("isLink", temp, err::deviceIo);
  refused("a folder of which the disk does not tell");
  app.HangarDir = temp + "Hangar\\";
  refused("a folder with a store in it");
  app.HangarDir = "C:\\Hangar\\";
  drive.remove("C:\\Temp\\SKVInstallTemp");
  drive.write("C:\\data\\sub\\file", "kept");
  drive.link("C:\\Temp\\SKVInstallTemp", "C:\\data");
  refused("a link");
  EXPECT_EQ(drive.read("C:\\data\\sub\\file"), "kept");
  drive.remove("C:\\Temp\\SKVInstallTemp");
  drive.write("C:\\Temp\\SKVInstallTemp", "a file");
  refused("a file");
}

}  // namespace skv::test
