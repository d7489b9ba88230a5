#include "core/working_folder.h"

#include "support/program_fixture.h"

namespace skv {
namespace {

using WorkingFolderTest = test::ProgramTest;

TEST_F(WorkingFolderTest, GoesWithWhatIsHiddenAndWithNothingBehindLinks) {
  const std::string temp = "C:\\Temp\\SKVInstallTemp\\";
  drive.write(temp + "mailed.zip", "m");
  drive.write(temp + "1.5\\plane\\.DS_Store", "");
  drive.write(temp + "1.5\\__MACOSX\\plane\\._a.bmp", "a");
  drive.write(temp + ".git\\config", "c");
  drive.write("C:\\FS\\aircraft\\.hidden", "h");
  drive.link(temp + "1.5\\plane\\.link", "C:\\FS\\aircraft");
  drive.link(temp + "link", "C:\\FS\\aircraft");
  clearWorkingFolders(app);
  EXPECT_EQ(drive.tree(temp), std::vector<std::string>{"mailed.zip"});
  drive.write(temp + ".hidden", "");
  emptyWorkingFolder(app);
  EXPECT_TRUE(drive.tree(temp).empty());
  EXPECT_TRUE(drive.exists("C:\\FS\\aircraft\\.hidden"));
}

}  // namespace
}  // namespace skv
