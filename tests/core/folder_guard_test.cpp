#include "core/folder_guard.h"

#include "support/program_fixture.h"

namespace skv {
namespace {

class FolderGuardTest : public test::ProgramTest {
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
  struct Case {
    const char* folder;
    bool goes, takes;  // may be given up, may be filled
  };
  const Case cases[] = {
      {"C:\\Hangar\\aircraft\\b737\\", true, true},
      {"C:\\Hangar\\aircraft\\b737", true, true},
      {"c:\\HANGAR\\Aircraft\\B737\\", true, true},
      {"C:\\Hangar\\aircraft\\B747\\panel\\", true, true},
      {"C:\\Hangar\\aircraft\\not there\\", true, true},
      {"C:\\Hangar\\aircraft\\toBig\\", true, true},
      {"C:\\Hangar\\aircraft\\toFS\\", true, false},  // only the link goes, but files follow it
      {"", false, false},
      {"\\", false, false},
      {"C:\\", false, false},
      {"C:", false, false},
      {"b737\\", false, false},
      {"C:\\Hangar\\aircraft\\", false, false},
      {"C:\\Hangar\\", false, false},
      {"C:\\Hangar\\aircraftb737\\", false, false},
      {"C:\\Hangar\\aircraft\\.\\", false, false},
      {"C:\\Hangar\\aircraft\\..\\", false, false},
      {"C:\\Hangar\\aircraft\\b737\\..\\", false, false},
      {"C:\\Hangar\\aircraft\\b737\\..\\..\\Main\\", false, false},
      {"C:\\Hangar\\aircraft\\ . .\\", false, false},
      {"C:\\Hangar\\aircraft\\\\", false, false},
      {"C:\\Hangar\\aircraft/b737\\", false, false},
      {"C:/Hangar/aircraft/b737/", false, false},
      {"C:\\FS\\aircraft\\b737\\", false, false},
      {"C:\\D\\Hangar\\aircraft\\b737\\", false, false},
      {"C:\\Hangar\\aircraft\\away\\plane\\", false, false},
      {"C:\\Hangar\\aircraft\\toFS\\aircraft\\", false, false},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(mayBeGivenUp(app, {each.folder, store}).ok(), each.goes) << each.folder;
    EXPECT_EQ(mayBeFilled(app, {each.folder, store}).ok(), each.takes) << each.folder;
  }
  EXPECT_FALSE(mayBeGivenUp(app, {"C:\\Hangar\\aircraft\\b737\\", ""}).ok());
  EXPECT_EQ(mayBeGivenUp(app, {"C:\\FS\\", store}).description(),
            "\"C:\\FS\\\" does not lie in \"C:\\Hangar\\aircraft\\\".");
}

TEST_F(FolderGuardTest, WhatIsKeptIsFoundByPathAndByPlace) {
  const auto may = [this](const std::string& folder) {
    return mayBeCopied(app, folder).ok() || mayBeEmptied(app, folder).ok();
  };
  drive.link("C:\\linked", "C:\\Lib\\Scenery");
  for (const char* kept :
       {"C:\\FS\\", "C:\\fs\\Aircraft\\", "C:\\FS\\Gauges\\", "C:\\Hangar\\", "C:\\Hangar\\Main\\",
        "C:\\Packs\\", "C:\\Lib\\", "C:\\Lib\\Scenery\\", "C:\\Home\\", "C:\\Home\\me\\",
        "C:\\Program\\", "C:\\Temp\\", "C:\\", "C:\\D\\Hangar\\aircraft\\"})
    EXPECT_FALSE(may(kept)) << kept;
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
  // Many rows cost no call to the disk for each.
  std::vector<std::string> others;
  for (int i = 0; i < 1000; ++i) others.push_back(store + "row" + std::to_string(i) + "\\");
  files.resetCounts();
  EXPECT_TRUE(mayBeGivenUp(app, {store + "b737\\", store, others}).ok());
  for (const char* call : {"attributes", "canonicalPath", "isLink", "identity"})
    EXPECT_EQ(files.count(call, others[500]), 0) << call;
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

}  // namespace
}  // namespace skv
