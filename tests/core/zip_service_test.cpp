#include "core/zip_service.h"

#include "support/program_fixture.h"

namespace skv {
namespace {

class ZipServiceTest : public test::ProgramTest {};

TEST_F(ZipServiceTest, AddToArchiveStoresTheListBelowTheCurrentFolder) {
  drive.write("C:\\FS\\aircraft\\b737\\aircraft.cfg", "[fltsim.0]");
  drive.write("C:\\FS\\aircraft\\b737\\hidden.sys", "system");
  ASSERT_TRUE(disk.setAttributes("C:\\FS\\aircraft\\b737\\hidden.sys", {.system = true}).ok());
  ASSERT_TRUE(files.setCurrentFolder("C:\\FS\\aircraft").ok());
  app.PackFileList = {"b737\\aircraft.cfg", "b737\\hidden.sys"};
  for (const bool systemFiles : {false, true}) {
    EXPECT_TRUE(AddToArchive(app, "C:\\Packs\\b737.zip", systemFiles));
    const auto archive = zip.load(files);
    ASSERT_TRUE(archive->setArchivefile("C:\\Packs\\b737.zip").ok());
    ASSERT_EQ(archive->entries().size(), systemFiles ? 2U : 1U);
    EXPECT_EQ(archive->entries()[0].Filename, "b737\\aircraft.cfg");
  }
  EXPECT_TRUE(windows.boxes.empty());
}

TEST_F(ZipServiceTest, AddToArchiveTellsAFailureAndLeavesNoArchive) {
  ASSERT_TRUE(files.setCurrentFolder("C:\\FS\\aircraft").ok());
  app.PackFileList = {"missing.txt"};
  EXPECT_FALSE(AddToArchive(app, "C:\\Packs\\b737.zip", true));
  ASSERT_EQ(windows.boxes.size(), 1U);
  EXPECT_NE(windows.boxes[0].text.find("missing.txt"), std::string::npos) << windows.boxes[0].text;
  EXPECT_FALSE(drive.exists("C:\\Packs\\b737.zip"));
}

}  // namespace
}  // namespace skv
