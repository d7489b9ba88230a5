#include "aircraft/list_files.h"

#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "support/program_fixture.h"

namespace skv {
namespace {

using Lines = std::vector<std::string>;

class ListFilesTest : public test::ProgramTest {
 protected:
  ListFilesTest() {
    app.ListDir = "C:\\FS\\";
    app.ACRoot = "C:\\FS\\aircraft\\";
  }
  ui::ListView& list = app.frmMain.lstAircraft;
};

TEST_F(ListFilesTest, RowsShowWhereTheAircraftLives) {
  for (const char* folder :
       {"C:\\FS\\aircraft\\All", "C:\\FS\\aircraft\\fs", "C:\\Hangar", "C:\\Hangar\\Aircraft",
        "C:\\Hangar\\Aircraft\\ALL", "C:\\FS\\aircraft\\x.zip"})
    ASSERT_TRUE(disk.makeFolder(folder).ok());
  drive.write("C:\\Packs\\all.ZIP", "");
  drive.write("C:\\Packs\\packed.zip", "");
  drive.write("C:\\FS\\SKV_AC.lst",
              "Everywhere\x01"
              "D:\\else\\all\\\r\n"
              "Sim\x01"
              "C:\\FS\\aircraft\\FS\\\r\n"
              "P\xe9\x01"
              "C:\\x\\packed\\\x01third\r\n"
              "Gone\x01"
              "C:\\FS\\aircraft\\gone\\\n"
              "no separator\r\n"
              "\r\n"
              "last\x01nothing");
  LoadACList(app);
  EXPECT_EQ(rows(list), (Lines{"Everywhere|D:\\else\\all\\", "Sim|C:\\FS\\aircraft\\FS\\",
                               "P\xc3\xa9|C:\\x\\packed\\", "Gone|C:\\FS\\aircraft\\gone\\",
                               "no separator|", "|", "last|nothing"}));
  const int masks[] = {7, 1, 2, 0, 0, 0, 0};
  for (int row = 1; row <= list.count(); ++row) {
    EXPECT_EQ(list.smallIcon(row), masks[row - 1] + 1) << row;
    EXPECT_EQ(PlaceMask(app, FolderName(list.subItem(row, 1))), masks[row - 1]) << row;
  }
}

TEST_F(ListFilesTest, SavingWritesTheRowsAsTheyStand) {
  SaveACList(app);
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"), "");
  list.add("b\xc3\xa9", {"C:\\b\\"});
  list.add("A", {"C:\\a\\"});
  list.add("\xe2\x82\xac \xe4\xb8\xad", {"C:\\c\\"});
  SaveACList(app);
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"),
            "b\xe9\x01"
            "C:\\b\\\r\nA\x01"
            "C:\\a\\\r\n\x80 ?\x01"
            "C:\\c\\\r\n");
  lstAircraft_ColumnClick(app, 1);
  EXPECT_EQ(list.text(1), "A");
  LoadACList(app);
  EXPECT_EQ(list.text(1), "b\xc3\xa9") << "a sort is not remembered as such";
  lstAircraft_ColumnClick(app, 2);
  EXPECT_EQ(list.text(1), "A") << "the first click sorts ascending";
  lstAircraft_ColumnClick(app, 1);
  EXPECT_EQ(list.text(3), "A") << "a click on another column flips the order";
}

TEST_F(ListFilesTest, RenamingSavesAndChangesNoFolder) {
  list.add("old", {"C:\\a\\"});
  bool cancel = true;
  lstAircraft_AfterLabelEdit(app, cancel, "old");
  EXPECT_TRUE(cancel);
  EXPECT_FALSE(drive.exists("C:\\FS\\SKV_AC.lst"));
  lstAircraft_AfterLabelEdit(app, cancel, "new\x01name");
  EXPECT_FALSE(cancel);
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"),
            "new name\x01"
            "C:\\a\\\r\n");
  app.frmMain.lstPanel.add("p", {"C:\\p\\"});
  lstPanel_AfterLabelEdit(app, cancel, "q");
  EXPECT_EQ(drive.read("C:\\FS\\SKV_PN.lst"),
            "q\x01"
            "C:\\p\\\r\n");
}

TEST_F(ListFilesTest, AListThatCannotBeSavedSaysSoAndLosesNothing) {
  drive.write("C:\\FS\\SKV_AC.lst",
              "kept\x01"
              "C:\\k\\\r\n");
  list.add("row", {"C:\\r\\"});
  files.failWhen("replaceFile", "C:\\FS\\SKV_AC.lst", err::diskFull);
  SaveACList(app);
  ASSERT_EQ(windows.boxes.size(), 1U);
  EXPECT_NE(windows.boxes[0].text.find("Disk full"), std::string::npos);
  EXPECT_EQ(rows(list), Lines{"row|C:\\r\\"});

  // What cannot be read now shows as empty, and is not overwritten by that.
  files.heal();
  files.failWhen("readFile", "C:\\FS\\SKV_AC.lst", err::deviceIo);
  LoadACList(app);
  SaveACList(app);
  EXPECT_EQ(windows.boxes.size(), 3U);
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"),
            "kept\x01"
            "C:\\k\\\r\n");
}

TEST_F(ListFilesTest, AppendingKeepsAFileWithoutALastLineEnd) {
  drive.write("C:\\o.lst",
              "a\x01"
              "C:\\a\\");
  EXPECT_TRUE(appendLibraryRow(app, "C:\\o.lst", {"b", "C:\\b\\"}).ok());
  EXPECT_TRUE(appendLibraryRow(app, "C:\\n.lst", {"c", "C:\\c\\"}).ok());
  EXPECT_EQ(drive.read("C:\\o.lst"),
            "a\x01"
            "C:\\a\\\r\nb\x01"
            "C:\\b\\\r\n");
  EXPECT_EQ(drive.read("C:\\n.lst"),
            "c\x01"
            "C:\\c\\\r\n");
}

}  // namespace
}  // namespace skv
