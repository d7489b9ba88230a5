#include "core/folder_guard.h"

#include "support/program_fixture.h"

namespace skv::test {

class FolderGuardTest : public ProgramTest {
 protected:
  FolderGuardTest() {
    for (const char* file :
         {"C:\\Hangar\\aircraft\\b737\\aircraft.cfg",
          "C:\\Hangar\\aircraft\\B747\\panel\\panel.cfg", "C:\\Hangar\\Main\\b737\\Gauges\\g.gau",
          "C:\\FS\\aircraft\\b737\\aircraft.cfg", "C:\\Lib\\Scenery\\Alps\\a.bgl",
          "C:\\Home\\me\\x", "C:\\Big\\plane\\x"})
      drive.write(file, "");
    app.SceneryLib = "C:\\Lib";
    app.AppDir = "C:\\Program\\";
    app.platform.environment.home = "C:\\Home\\me\\";
    drive.link("C:\\D", "C:\\");
    drive.link("C:\\Hangar\\aircraft\\toFS", "C:\\FS");
    drive.link("C:\\Hangar\\aircraft\\toBig", "C:\\Big\\plane");
    drive.link("C:\\Hangar\\aircraft\\away", "C:\\Big");
  }
  const std::string store = "C:\\Hangar\\aircraft\\";
};

TEST_F(FolderGuardTest, OnlyAFolderOfItsOwnInItsStoreMayGo) {
  const auto goes = [&](const std::string& path) { return mayBeGivenUp(app, {path, store}).ok(); };
  const auto takes = [&](const std::string& path) { return mayBeFilled(app, {path, store}).ok(); };
  for (const char* own : {"C:\\Hangar\\aircraft\\b737\\", "C:\\Hangar\\aircraft\\b737",
                          "c:\\HANGAR\\Aircraft\\B737\\", "C:\\Hangar\\aircraft\\B747\\panel\\",
                          "C:\\Hangar\\aircraft\\not there\\", "C:\\Hangar\\aircraft\\toBig\\"})
    EXPECT_TRUE(goes(own) && takes(own)) << own;
  std::vector<std::string> others;
  for (const char* elsewhere :
       {"", "\\", "C:\\", "C:", "b737\\", "C:\\Hangar\\", "C:\\Hangar\\aircraftb737\\",
        "C:/Hangar/aircraft/b737/", "C:\\FS\\aircraft\\b737\\", "C:\\D\\Hangar\\aircraft\\b737\\",
        "C:\\Hangar\\aircraft/b737\\"})
    others.emplace_back(elsewhere);
  for (const char* inStore : {"", ".\\", "..\\", "b737\\..\\", "b737\\..\\..\\Main\\", " . .\\",
                              "\\", "/b737\\", "away\\plane\\", "toFS\\aircraft\\"})
    others.push_back(store + inStore);
  for (const std::string& other : others) EXPECT_FALSE(goes(other) || takes(other)) << other;
  const char* toFS = "C:\\Hangar\\aircraft\\toFS\\";
  EXPECT_TRUE(goes(toFS) && !takes(toFS)) << "only the link goes, but files follow it";
  EXPECT_FALSE(mayBeGivenUp(app, {"C:\\Hangar\\aircraft\\b737\\", ""}).ok());
  EXPECT_EQ(mayBeGivenUp(app, {"C:\\FS\\", store}).description(),
            "\"C:\\FS\\\" does not lie in \"C:\\Hangar\\aircraft\\\".");
}

TEST_F(FolderGuardTest, WhatIsKeptIsFoundByPathAndByPlace) {
  drive.link("C:\\linked", "C:\\Lib\\Scenery");
  for (const char* kept :
       {"C:\\FS\\", "C:\\fs\\Aircraft\\", "C:\\FS\\Gauges\\", "C:\\Hangar\\", "C:\\Hangar\\Main\\",
        "C:\\Packs\\", "C:\\Lib\\", "C:\\Lib\\Scenery\\", "C:\\Home\\", "C:\\Home\\me\\",
        "C:\\Program\\", "C:\\Temp\\", "C:\\", "C:\\D\\Hangar\\aircraft\\"})
    EXPECT_FALSE(mayBeCopied(app, kept).ok() || mayBeEmptied(app, kept).ok()) << kept;
  EXPECT_TRUE(mayBeCopied(app, "C:\\Big\\").ok());
  EXPECT_TRUE(mayBeEmptied(app, app.InstallTempDir).ok());
  EXPECT_TRUE(mayBeCopied(app, "C:\\Hangar\\aircraft\\toBig\\").ok());
  EXPECT_FALSE(mayBeEmptied(app, "C:\\Hangar\\aircraft\\toBig\\").ok()) << "a link";
  EXPECT_FALSE(mayBeCopied(app, "C:\\Hangar\\aircraft\\toFS\\").ok());
  // A store that a link in it leads to.
  app.PanelsDir = "C:\\linked";
  drive.link("C:\\Hangar\\aircraft\\b737\\in", "C:\\FS");
  EXPECT_TRUE(mayBeGivenUp(app, {"C:\\Hangar\\aircraft\\b737\\", store}).ok());
  app.PanelsDir = "C:\\D\\Hangar\\aircraft\\b737\\panels";
  EXPECT_FALSE(mayBeGivenUp(app, {"C:\\Hangar\\aircraft\\b737\\", store}).ok());
}

TEST_F(FolderGuardTest, AnotherRowsFolderStays) {
  const auto may = [&](const char* folder, const char* other) {
    return mayBeGivenUp(app, {folder, store, {"", "odd", other, "C:\\FS\\aircraft\\b737\\"}}).ok();
  };
  EXPECT_TRUE(may("C:\\Hangar\\aircraft\\b737\\", "C:\\Hangar\\aircraft\\b747\\"));
  EXPECT_TRUE(may("C:\\Hangar\\aircraft\\b737\\", "C:\\Hangar\\aircraft\\b737-400\\"));
  EXPECT_FALSE(may("C:\\Hangar\\aircraft\\b747\\", "C:\\hangar\\AIRCRAFT\\B747\\Panel"));
  EXPECT_FALSE(may("C:\\Hangar\\aircraft\\b747\\", "C:\\Hangar\\aircraft\\B747\\"));
  EXPECT_FALSE(may("C:\\Hangar\\aircraft\\B747.\\", "C:\\Hangar\\aircraft\\B747\\panel\\"))
      << "the disk drops the dot";
}

TEST_F(FolderGuardTest, WhatTheDiskDoesNotTellIsRefused) {
  const FolderUse use{"C:\\Hangar\\aircraft\\b737\\", store};
  for (const char* path :
       {"C:\\Hangar\\aircraft\\b737", "C:\\Hangar\\aircraft", "C:\\FS", "C:\\Packs"}) {
    files.failWhen("canonicalPath", path, err::deviceIo);
    EXPECT_FALSE(mayBeGivenUp(app, use).ok()) << path;
    EXPECT_FALSE(mayBeFilled(app, use).ok()) << path;
    files.heal();
  }
  app.PacksDir = "Q:\\no such drive\\";
  EXPECT_TRUE(mayBeGivenUp(app, use).ok());
}

}  // namespace skv::test
