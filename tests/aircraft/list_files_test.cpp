#include "aircraft/list_files.h"

#include "aircraft/place_mask.h"
#include "base/paths.h"
#include "support/program_fixture.h"

namespace skv::test {

class ListFilesTest : public ProgramTest {
 protected:
  ListFilesTest() {
    app.ListDir = "C:\\FS\\";
    app.ACRoot = "C:\\FS\\aircraft\\";
  }
  const std::string listFile = "C:\\FS\\SKV_AC.lst";
  ui::ListView& list = form.lstAircraft;
};

TEST_F(ListFilesTest, RowsShowWhereTheAircraftLives) {
  for (const char* folder :
       {"C:\\FS\\aircraft\\All", "C:\\FS\\aircraft\\fs", "C:\\Hangar", "C:\\Hangar\\Aircraft",
        "C:\\Hangar\\Aircraft\\ALL", "C:\\FS\\aircraft\\x.zip"})
    ASSERT_TRUE(disk.makeFolder(folder).ok());
  drive.write("C:\\Packs\\all.ZIP", "");
  drive.write("C:\\Packs\\packed.zip", "");
  const struct {
    std::string stored, shown;
    int mask;
  } cases[] = {{line("Everywhere", "D:\\else\\all\\"), "Everywhere|D:\\else\\all\\", 7},
               {line("Sim", "C:\\FS\\aircraft\\FS\\"), "Sim|C:\\FS\\aircraft\\FS\\", 1},
               {line("P\xe9", "C:\\x\\packed\\\x01third"), "P\xc3\xa9|C:\\x\\packed\\", 2},
               {"Gone\001C:\\FS\\aircraft\\gone\\\n", "Gone|C:\\FS\\aircraft\\gone\\", 0},
               {"no separator\r\n\r\n\n", "no separator|", 0},
               {"last\001nothing", "last|nothing", 0}};
  std::string stored;
  for (const auto& c : cases) stored += c.stored;
  drive.write(listFile, stored);
  LoadACList(app);
  ASSERT_EQ(list.count(), 6);
  for (int row = 1; row <= 6; ++row) {
    EXPECT_EQ(rows(list)[row - 1], cases[row - 1].shown);
    EXPECT_EQ(list.smallIcon(row), cases[row - 1].mask + 1) << row;
    EXPECT_EQ(PlaceMask(app, FolderName(list.subItem(row, 1))), cases[row - 1].mask) << row;
  }
}

TEST_F(ListFilesTest, RenamingSavesAndChangesNoFolder) {
  list.add("first", {"C:\\1\\"});
  list.add("old", {"C:\\a\\"});
  list.select(2);
  bool cancel = false;
  const auto rename = [&](const std::string& name, const std::string& then) {
    cancel = true;
    lstAircraft_AfterLabelEdit(app, cancel, name);
    EXPECT_EQ(list.text(2), then);
  };
  rename("old", "old");
  EXPECT_TRUE(cancel);
  EXPECT_FALSE(drive.exists(listFile));
  rename("new\x01na\r\nme e\u0301", "new na  me \u00e9");  // at once what is stored
  EXPECT_FALSE(cancel);
  EXPECT_EQ(drive.read(listFile), line("first", "C:\\1\\") + line("new na  me \xe9", "C:\\a\\"));

  rename("\u0141\u00f3d\u017a", "new na  me \u00e9");
  EXPECT_TRUE(cancel);
  expectTold("\"\u0141\u017a\"");
  files.failWhen("replaceFile", listFile, err::diskFull);
  rename("again", "new na  me \u00e9");  // or it could not be entered again
  EXPECT_TRUE(cancel);
  expectTold("Disk full");
  files.heal();
  rename("again", "again");
  EXPECT_TRUE(holds(drive.read(listFile), "again\x01"));
}

// Each of the three libraries has its own list and file, and a list is written over what it was
// loaded from, and over nothing else.
TEST_F(ListFilesTest, WhatWasNotReadIsNotWrittenOver) {
  const struct {
    ui::ListView& list;
    std::string file;
    void (*load)(App&);
    bool (*save)(App&);
    void (*rename)(App&, bool&, const std::string&);
  } libraries[] = {
      {list, listFile, LoadACList, SaveACList, lstAircraft_AfterLabelEdit},
      {form.lstPanel, "C:\\FS\\SKV_PN.lst", LoadPNList, SavePNList, lstPanel_AfterLabelEdit},
      {form.lstSound, "C:\\FS\\SKV_SN.lst", LoadSNList, SaveSNList, lstSound_AfterLabelEdit}};
  const std::string two = line("a", "C:\\a\\") + line("b", "C:\\b\\");
  for (const auto& library : libraries) {
    const auto move = [this](const std::string& from, const std::string& to) {
      ASSERT_TRUE(disk.rename(from, to).ok());
    };
    const std::string file = library.file;
    const struct {
      const char* what;
      std::function<void()> before, after;  // the load
    } cases[] = {
        {"unread", [&] { files.failWhen("readFile", file, err::deviceIo); },
         [&] {
           files.heal();
           expectTold("Device I/O error");
         }},
        {"its disk away", [&] { move("C:\\FS", "C:\\away"); }, [&] { move("C:\\away", "C:\\FS"); }},
        {"an empty mount point", [&] { move(file, "C:\\kept"); }, [&] { move("C:\\kept", file); }},
        {"that of another folder", [&] { app.ListDir = "C:\\Packs\\"; },
         [&] { app.ListDir = "C:\\FS\\"; }},
        {"changed by another program", [&] { drive.write(file, "x\001y\r\n"); },
         [&] { drive.write(file, two); }},
        {"unread at the save", [] {},
         [&] { files.failWhen("readFile", file, err::permissionDenied); }}};
    for (const auto& [what, before, after] : cases) {
      SCOPED_TRACE(file + ", " + what);
      drive.write(file, two);
      library.load(app);  // an earlier time all went well
      before();
      library.load(app);
      after();
      EXPECT_TRUE(windows.boxes.empty());
      library.list.add("new", {"C:\\new\\"});
      const int count = library.list.count();
      EXPECT_FALSE(library.save(app));
      files.heal();
      expectTold("The list \"" + file + "\" could not be saved.\r\n");
      EXPECT_EQ(library.list.count(), count);
      EXPECT_EQ(drive.read(file), two);
      library.load(app);
      EXPECT_EQ(rows(library.list), (Lines{"a|C:\\a\\", "b|C:\\b\\"}));
      library.list.add("new", {"C:\\new\\"});
      EXPECT_TRUE(library.save(app)) << "after a reload";
      EXPECT_TRUE(library.save(app)) << "again";
      EXPECT_EQ(drive.read(file), two + line("new", "C:\\new\\"));
    }
    drive.write(file, two);
    library.load(app);
    library.list.select(1);
    bool cancel = true;
    library.rename(app, cancel, file);
    EXPECT_EQ(drive.read(file), line(file, "C:\\a\\") + line("b", "C:\\b\\"));
  }
}

// Stored as "?", the folder of a row would lead nowhere.
TEST_F(ListFilesTest, AFolderThatTheFileCannotHoldIsTold) {
  list.add("one", {"C:\\1\\"});
  list.add("polish", {"C:\\\u0141\u00f3d\u017a\\"});
  list.add("\u20ac \u4e2d", {"C:\\3\\"});
  SaveACList(app);
  expectTold("\"C:\\\u0141\u00f3d\u017a\\\"");
  EXPECT_EQ(drive.read(listFile), line("one", "C:\\1\\") + line("\x80 ?", "C:\\3\\"));
  EXPECT_FALSE(listInLibrary(app, "C:\\o.lst", {"p", "C:\\\u0141\\"}).ok());
  EXPECT_FALSE(drive.exists("C:\\o.lst"));

  // The same in a code page that has them.
  settings.values["General/CodePage"] = "1250";
  App polish(app.platform, windows);
  polish.ListDir = "C:\\FS\\";
  LoadACList(polish);
  polish.frmMain.lstAircraft.add("p", {"C:\\\u0141\u00f3d\u017a\\"});
  EXPECT_TRUE(SaveACList(polish));
  EXPECT_TRUE(windows.boxes.empty());
  EXPECT_TRUE(holds(drive.read(listFile), "C:\\\243\363d\237\\\r\n"));
}

TEST_F(ListFilesTest, AppendingKeepsAFileWithoutALastLineEnd) {
  const std::string old = "C:\\o.lst", none = "C:\\none.lst";
  drive.write(old, "a\001C:\\a\\");
  EXPECT_TRUE(listInLibrary(app, old, {"b", "C:\\b\\"}).ok());
  EXPECT_TRUE(listInLibrary(app, "C:\\n.lst", {"c", "C:\\c\\"}).ok());
  EXPECT_EQ(drive.read("C:\\n.lst"), line("c", "C:\\c\\"));
  for (const auto& [call, path] : {std::pair{"readFile", old}, {"attributes", none}}) {
    files.failWhen(call, path, err::deviceIo);
    EXPECT_EQ(listInLibrary(app, path, {"d", "C:\\d\\"}).outcome().number(), err::deviceIo);
    ASSERT_TRUE(files.heal());
  }
  EXPECT_EQ(drive.read(old), line("a", "C:\\a\\") + line("b", "C:\\b\\"));
  EXPECT_FALSE(drive.exists(none));
  EXPECT_FALSE(listInLibrary(app, "C:\\away\\o.lst", {"d", "C:\\d\\"}).ok());
}

}  // namespace skv::test
