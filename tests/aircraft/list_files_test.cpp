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
  list.add("first", {"C:\\1\\"});
  list.add("old", {"C:\\a\\"});
  list.select(2);
  bool cancel = true;
  lstAircraft_AfterLabelEdit(app, cancel, "old");
  EXPECT_TRUE(cancel);
  EXPECT_FALSE(drive.exists("C:\\FS\\SKV_AC.lst"));
  lstAircraft_AfterLabelEdit(app, cancel, "new\x01na\r\nme e\u0301");
  EXPECT_FALSE(cancel);
  EXPECT_EQ(list.text(2), "new na  me \u00e9") << "at once what is stored";
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"),
            "first\x01"
            "C:\\1\\\r\nnew na  me \xe9\x01"
            "C:\\a\\\r\n");

  cancel = true;
  lstAircraft_AfterLabelEdit(app, cancel, "\u0141\u00f3d\u017a");
  EXPECT_TRUE(cancel);
  EXPECT_EQ(list.text(2), "new na  me \u00e9");
  ASSERT_EQ(windows.boxes.size(), 1U);
  EXPECT_NE(windows.boxes[0].text.find("\"\u0141\u017a\""), std::string::npos);

  files.failWhen("replaceFile", "C:\\FS\\SKV_AC.lst", err::diskFull);
  lstAircraft_AfterLabelEdit(app, cancel, "again");
  EXPECT_TRUE(cancel);
  EXPECT_EQ(list.text(2), "new na  me \u00e9") << "or it could not be entered again";
  files.heal();
  lstAircraft_AfterLabelEdit(app, cancel, "again");
  EXPECT_NE(drive.read("C:\\FS\\SKV_AC.lst").find("again\x01"), std::string::npos);
}

// The three libraries, each with its own list and file.
class LibraryTest : public ListFilesTest {
 protected:
  struct Library {
    ui::ListView& list;
    const char* file;
    void (*load)(App&);
    bool (*save)(App&);
    void (*rename)(App&, bool&, const std::string&);
  };
  std::vector<Library> libraries{
      {app.frmMain.lstAircraft, "SKV_AC.lst", LoadACList, SaveACList, lstAircraft_AfterLabelEdit},
      {app.frmMain.lstPanel, "SKV_PN.lst", LoadPNList, SavePNList, lstPanel_AfterLabelEdit},
      {app.frmMain.lstSound, "SKV_SN.lst", LoadSNList, SaveSNList, lstSound_AfterLabelEdit}};
  const std::string two =
      "a\x01"
      "C:\\a\\\r\nb\x01"
      "C:\\b\\\r\n";
};

TEST_F(LibraryTest, EachListHasItsOwnFile) {
  for (const Library& library : libraries) {
    drive.write(std::string("C:\\FS\\") + library.file,
                std::string(library.file) + "\x01" + "C:\\1\\\r\n" + two);
  }
  for (const Library& library : libraries) {
    library.load(app);
    EXPECT_EQ(rows(library.list),
              (Lines{std::string(library.file) + "|C:\\1\\", "a|C:\\a\\", "b|C:\\b\\"}));
    library.list.select(1);
    bool cancel = true;
    library.rename(app, cancel, "c");
    EXPECT_EQ(drive.read(std::string("C:\\FS\\") + library.file),
              "c\x01"
              "C:\\1\\\r\n" +
                  two);
  }
}

// A list is written over what it was loaded from, and over nothing else.
TEST_F(LibraryTest, WhatWasNotReadIsNotWrittenOver) {
  for (const Library& library : libraries) {
    const std::string file = std::string("C:\\FS\\") + library.file;
    const struct {
      const char* what;
      bool told;  // at the load
      std::function<void()> load;
    } cases[] = {
        {"unread", true,
         [&] {
           files.failWhen("readFile", file, err::deviceIo);
           library.load(app);
         }},
        {"its disk away", false,
         [&] {
           ASSERT_TRUE(disk.rename("C:\\FS", "C:\\away").ok());
           library.load(app);
           ASSERT_TRUE(disk.rename("C:\\away", "C:\\FS").ok());
         }},
        {"an empty mount point", false,
         [&] {
           ASSERT_TRUE(disk.rename(file, "C:\\kept").ok());
           library.load(app);
           ASSERT_TRUE(disk.rename("C:\\kept", file).ok());
         }},
        {"that of another folder", false,
         [&] {
           app.ListDir = "C:\\Packs\\";
           library.load(app);
           app.ListDir = "C:\\FS\\";
         }},
        {"changed by another program", false,
         [&] {
           drive.write(file, "x\x01y\r\n");
           library.load(app);
           drive.write(file, two);
         }},
        {"unread at the save", false,
         [&] {
           library.load(app);
           files.failWhen("readFile", file, err::permissionDenied);
         }},
    };
    for (const auto& [what, told, load] : cases) {
      SCOPED_TRACE(file + ", " + what);
      drive.write(file, two);
      windows.boxes.clear();
      load();
      EXPECT_EQ(windows.boxes.size(), told ? 1U : 0U);
      const int before = library.list.count();
      library.list.add("new", {"C:\\new\\"});
      windows.boxes.clear();
      EXPECT_FALSE(library.save(app));
      files.heal();
      ASSERT_EQ(windows.boxes.size(), 1U);
      EXPECT_TRUE(
          windows.boxes[0].text.starts_with("The list \"" + file + "\" could not be saved.\r\n"));
      EXPECT_EQ(library.list.count(), before + 1);
      EXPECT_EQ(drive.read(file), two);
      library.load(app);
      EXPECT_EQ(library.list.count(), 2);
      library.list.add("new", {"C:\\new\\"});
      EXPECT_TRUE(library.save(app)) << "after a reload";
      EXPECT_TRUE(library.save(app)) << "again";
      EXPECT_EQ(drive.read(file), two +
                                      "new\x01"
                                      "C:\\new\\\r\n");
    }
  }
}

TEST_F(ListFilesTest, AListThatCannotBeSavedSaysSoAndKeepsItsRows) {
  list.add("row", {"C:\\r\\"});
  files.failWhen("replaceFile", "C:\\FS\\SKV_AC.lst", err::diskFull);
  EXPECT_FALSE(SaveACList(app));
  ASSERT_EQ(windows.boxes.size(), 1U);
  EXPECT_NE(windows.boxes[0].text.find("Disk full"), std::string::npos);
  EXPECT_EQ(rows(list), Lines{"row|C:\\r\\"});
  files.heal();
  EXPECT_TRUE(SaveACList(app));
}

// Stored as "?", the folder of a row would lead nowhere.
TEST_F(ListFilesTest, AFolderThatTheFileCannotHoldIsTold) {
  list.add("one", {"C:\\1\\"});
  list.add("polish", {"C:\\\u0141\u00f3d\u017a\\"});
  list.add("three", {"C:\\3\\"});
  SaveACList(app);
  ASSERT_EQ(windows.boxes.size(), 1U);
  EXPECT_NE(windows.boxes[0].text.find("\"C:\\\u0141\u00f3d\u017a\\\""), std::string::npos);
  EXPECT_EQ(drive.read("C:\\FS\\SKV_AC.lst"),
            "one\x01"
            "C:\\1\\\r\nthree\x01"
            "C:\\3\\\r\n");
  EXPECT_FALSE(appendLibraryRow(app, "C:\\o.lst", {"p", "C:\\\u0141\\"}).ok());
  EXPECT_FALSE(drive.exists("C:\\o.lst"));

  // The same in a code page that has them.
  settings.values["General/CodePage"] = "1250";
  App polish(app.platform, windows);
  polish.ListDir = "C:\\FS\\";
  LoadACList(polish);
  polish.frmMain.lstAircraft.add("p", {"C:\\\u0141\u00f3d\u017a\\"});
  EXPECT_TRUE(SaveACList(polish));
  EXPECT_EQ(windows.boxes.size(), 1U);
  EXPECT_NE(drive.read("C:\\FS\\SKV_AC.lst")
                .find("C:\\\xa3\xf3"
                      "d\x9f\\\r\n"),
            std::string::npos);
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
  const std::string kept = drive.read("C:\\o.lst");
  for (const char* operation : {"readFile", "attributes"}) {
    files.failWhen(operation, operation[0] == 'a' ? "C:\\none.lst" : "C:\\o.lst", err::deviceIo);
    const char* file = operation[0] == 'a' ? "C:\\none.lst" : "C:\\o.lst";
    EXPECT_EQ(appendLibraryRow(app, file, {"d", "C:\\d\\"}).number(), err::deviceIo);
    ASSERT_TRUE(files.heal());
  }
  EXPECT_EQ(drive.read("C:\\o.lst"), kept);
  EXPECT_FALSE(drive.exists("C:\\none.lst"));
  EXPECT_FALSE(appendLibraryRow(app, "C:\\away\\o.lst", {"d", "C:\\d\\"}).ok());
}

}  // namespace
}  // namespace skv
