#include "core/walktree.h"

#include <filesystem>
#include <fstream>

#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "support/every_call.h"
#include "support/program_fixture.h"

namespace skv::test {

class WalkTreeTest : public ProgramTest {
 protected:
  void write(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) drive.write(path, path);
  }
  // Below C:\s in exactly this spelling: the drive puts no two beside one another that differ in
  // case alone.
  void foreign(const std::string& name, const std::string& content) {
    const std::filesystem::path path = drive.native() + "/s/" + name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << content;
  }
  void age(const std::string& path) { drive.setModified(path, {1000000000, 0}); }
  // For what shows on the disk and in the rows.
  void walk(const std::string& src, const std::string& dst, WalkCode code, bool overwrite) {
    WalkTree(app, src, dst, code, overwrite).skipped();
  }
  std::string find(WalkCode code) {
    app.FoundDir.clear();
    walk("C:\\s", "", code, true);
    return app.FoundDir;
  }
};

TEST_F(WalkTreeTest, CopyMergesAndKeepsNewerFilesOfTheTopFolderOnly) {
  write({"C:\\s\\top.txt", "C:\\s\\sub\\deep.txt", "C:\\s\\new.txt", "C:\\s\\Sub2\\x\\y.txt"});
  drive.write("C:\\d\\TOP.TXT", "newer");
  drive.write("C:\\d\\SUB\\Deep.txt", "newer");
  age("C:\\s\\top.txt");
  age("C:\\s\\sub\\deep.txt");
  walk("C:\\s", "C:\\d", WalkCopy, false);
  EXPECT_EQ(drive.filesIn("C:\\d"),
            (Lines{"SUB\\Deep.txt", "Sub2\\x\\y.txt", "TOP.TXT", "new.txt"}));
  EXPECT_EQ(drive.read("C:\\d\\top.txt"), "newer");
  EXPECT_EQ(drive.read("C:\\d\\sub\\deep.txt"), "C:\\s\\sub\\deep.txt");
  EXPECT_EQ(disk.modified("C:\\d\\sub\\deep.txt").value().seconds, 1000000000);
  walk("C:\\s\\", "C:\\d\\", WalkCopy, true);
  EXPECT_EQ(drive.read("C:\\d\\top.txt"), "C:\\s\\top.txt");
  EXPECT_EQ(drive.tree("C:\\s").size(), 7U) << "the source is as it was";
}

TEST_F(WalkTreeTest, MovesAndDeletionsEmptyTheSourceButForWhatIsHidden) {
  const auto fill = [this] {
    write({"C:\\s\\old.txt", "C:\\s\\sub\\a.txt", "C:\\s\\ro.txt", "C:\\s\\keep\\.hidden",
           "C:\\s\\cut.txt", "C:\\s\\same.txt"});
    for (const char* file : {"old.txt", "sub\\a.txt", "cut.txt", "same.txt"})
      age(std::string("C:\\s\\") + file);
    ASSERT_TRUE(disk.setAttributes("C:\\s\\ro.txt", {.readOnly = true}).ok());
  };
  fill();
  drive.write("C:\\d\\old.txt", "newer");
  write({"C:\\d\\same.txt"});
  drive.write("C:\\d\\cut.txt", "C:");
  age("C:\\d\\cut.txt");
  age("C:\\d\\same.txt");
  walk("C:\\s", "C:\\d", WalkMove, false);
  EXPECT_EQ(drive.tree("C:\\s"), (Lines{"keep\\", "keep\\.hidden"}));
  EXPECT_EQ(drive.read("C:\\d\\old.txt"), "newer") << "what is not newer is dropped";
  EXPECT_EQ(drive.read("C:\\d\\cut.txt"), "C:\\s\\cut.txt") << "half a copy is not current";
  EXPECT_EQ(drive.read("C:\\d\\same.txt"), "C:\\d\\same.txt");
  EXPECT_TRUE(drive.exists("C:\\d\\ro.txt"));
  EXPECT_EQ(disk.modified("C:\\d\\sub\\a.txt").value().seconds, 1000000000);
  fill();
  walk("C:\\s", "", WalkDelete, true);
  EXPECT_EQ(drive.tree("C:\\s"), (Lines{"keep\\", "keep\\.hidden"}));
}

TEST_F(WalkTreeTest, AFileIsDroppedOnlyForATargetThatIsSurelyItsOwn) {
  EXPECT_TRUE(disk.makeFolder("C:\\d").ok());
  const auto moved = [&](const char* name) {
    walk("C:\\s", "C:\\d", WalkMove, false);
    EXPECT_EQ(drive.read("C:\\s\\a.txt"), "C:\\s\\a.txt") << name;
    drive.clear("C:\\d");
  };
  write({"C:\\s\\a.txt"});
  drive.link("C:\\d\\a.txt", "C:\\s\\a.txt");
  moved("a link to the source");
  write({"C:\\d\\a.txt\\x"});
  moved("a folder");
  for (const char* question : {"attributes", "modified"}) {
    drive.write("C:\\d\\a.txt", "target");
    files.failWhen(question, "C:\\d\\a.txt", err::deviceIo);
    walk("C:\\s", "C:\\d", WalkCopy, false);
    EXPECT_EQ(drive.read("C:\\d\\a.txt"), "target") << question;
    age("C:\\d\\a.txt");
    moved(question);
  }
}

TEST_F(WalkTreeTest, FilesHiddenByAttributeAreNoHits) {
  write({"C:\\s\\a.gau", "C:\\s\\two\\b.gau"});
  if (!disk.setAttributes("C:\\s\\a.gau", {.hidden = true}).ok())
    GTEST_SKIP() << "not on this disk";
  EXPECT_EQ(find(WalkFindGauge), "C:\\s\\two\\") << "or its mover would never end";
}

TEST_F(WalkTreeTest, LinksAreFollowedForReadingButNeverForRemoving) {
  write({"C:\\real\\a.gau", "C:\\s\\b.txt"});
  drive.link("C:\\s\\link", "C:\\real");
  drive.link("C:\\s\\circle", "C:\\s");
  drive.link("C:\\s\\up", "C:\\");

  EXPECT_EQ(find(WalkFindGauge), "C:\\s\\link\\");
  EXPECT_TRUE(disk.makeFolder("C:\\d").ok());
  walk("C:\\s", "C:\\d", WalkCopy, true);
  EXPECT_EQ(drive.tree("C:\\d"), (Lines{"b.txt", "link\\", "link\\a.gau"}));

  for (const WalkCode code : {WalkMove, WalkDelete}) {
    walk("C:\\s", "C:\\d", code, true);
    EXPECT_EQ(drive.read("C:\\real\\a.gau"), "C:\\real\\a.gau") << static_cast<int>(code);
  }
  EXPECT_EQ(drive.tree("C:\\s"), Lines{}) << "deleting removes the links themselves";
}

TEST_F(WalkTreeTest, CopyIntoItselfEnds) {
  write({"C:\\s\\a.txt", "C:\\s\\sub\\b.txt"});
  EXPECT_TRUE(disk.makeFolder("C:\\s\\inside").ok());
  for (const bool tells : {true, false}) {
    if (!tells) files.failWhen("identity", "C:\\s\\inside", err::deviceIo);
    walk("C:\\s", "C:\\s\\inside", WalkCopy, true);
    EXPECT_EQ(drive.tree("C:\\s\\inside"), (Lines{"a.txt", "sub\\", "sub\\b.txt"}));
  }
  files.heal();
  walk("C:\\s", "C:\\S", WalkMove, true);
  EXPECT_EQ(drive.read("C:\\s\\a.txt"), "C:\\s\\a.txt");
  walk("C:\\s", "C:\\s\\inside", WalkMove, true);
  EXPECT_EQ(drive.filesIn("C:\\s"), (Lines{"inside\\a.txt", "inside\\sub\\b.txt"}));
}

TEST_F(WalkTreeTest, CollectsAFoldersFilesBeforeThoseBelowIt) {
  write({"C:\\s\\a.txt", "C:\\s\\Main\\b.JPG", "C:\\s\\Main\\Deep\\c.cfg", "C:\\s\\Main\\d.bgl",
         "C:\\s\\empty\\sub\\e.mdl"});
  walk("C:\\s", "", WalkCollect, true);
  EXPECT_EQ(app.PackFileList, (Lines{"a.txt", "empty\\sub\\e.mdl", "Main\\b.JPG", "Main\\d.bgl",
                                     "Main\\Deep\\c.cfg"}));
  EXPECT_TRUE(staysWhenThinned("b.Jpg") && staysWhenThinned("cfg") && !staysWhenThinned("txt.bgl"));
}

TEST_F(WalkTreeTest, AReportTellsWhatHappened) {
  struct Case {
    const char* fault;  // what fails
    const char* path;
    WalkCode code;
    bool overwrite;
    int done, failed;
    const char* where;  // of the first failure
  };
  const Case cases[] = {
      {"", "", WalkCopy, true, 4, 0, ""},
      {"list", "C:\\s\\b", WalkCopy, true, 2, 1, "C:\\s\\b\\"},
      {"list", "C:\\s\\b", WalkFindBgl, true, 0, 1, "C:\\s\\b\\"},
      {"identity", "C:\\d", WalkCopy, true, 0, 1, "C:\\d"},
      {"isLink", "C:\\s\\b", WalkMove, true, 2, 1, "C:\\s\\b"},
      {"copyFile", "C:\\s\\a.cfg", WalkCopy, false, 3, 1, "C:\\s\\a.cfg"},
      {"attributes", "C:\\d\\a.cfg", WalkCopy, false, 3, 1, "C:\\d\\a.cfg"},
      {"makeFolder", "C:\\d\\b", WalkCopy, true, 2, 3, "C:\\d\\b"},
      {"moveFile", "C:\\s\\b\\2.wav", WalkMove, true, 3, 1, "C:\\s\\b\\2.wav"},
      {"removeFolder", "C:\\s\\b", WalkMove, true, 4, 1, "C:\\s\\b"},
      {"deleteFile", "C:\\s\\c\\3.gau", WalkDelete, true, 3, 1, "C:\\s\\c\\3.gau"},
      {"attributes", "C:\\s\\b\\sound.cfg", WalkFindLooseWav, true, 0, 1, "C:\\s\\b\\2.wav"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(std::string(each.fault) + " " + each.path);
    drive.clear("C:\\s");
    drive.clear("C:\\d");
    write({"C:\\s\\a.cfg", "C:\\s\\b\\2.wav", "C:\\s\\b\\panel.cfg", "C:\\s\\c\\3.gau"});
    app.FoundDir.clear();
    if (*each.fault != '\0') files.failWhen(each.fault, each.path, err::deviceIo);
    const WalkReport report = WalkTree(app, "C:\\s", "C:\\d", each.code, each.overwrite);
    files.heal();
    EXPECT_EQ(report.done, each.done);
    EXPECT_EQ(report.failed, each.failed);
    EXPECT_EQ(report.where, each.where);
    EXPECT_EQ(report.first.number(), each.failed == 0 ? 0 : err::deviceIo);
    EXPECT_EQ(report.sourceMayGo(), each.failed == 0);
    EXPECT_EQ(app.FoundDir, "") << "a file of which the disk cannot tell is no hit";
  }
}

TEST_F(WalkTreeTest, WhatIsKeptOnPurposeIsNoFailureButStaysInTheSource) {
  struct Case {
    std::vector<const char*> source;
    std::vector<std::string> target;
    WalkCode code;
    int left;
    bool complete;
  };
  const Case cases[] = {
      {{"a", ".hidden", "sub/.hidden"}, {}, WalkMove, 0, true},
      {{"a", ".hidden", "sub/.hidden"}, {}, WalkDelete, 0, true},
      {{"a"}, {"a"}, WalkCopy, 0, true},
      {{"a", "A"}, {}, WalkCopy, 1, true},
      {{"sub/x", "Sub/X", "Sub/y"}, {}, WalkMove, 1, true},
      {{"a"}, {"a\\folder"}, WalkCopy, 0, false},
      {{"a/x"}, {"a"}, WalkMove, 0, false},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(::testing::PrintToString(each.source));
    drive.clear("C:\\s");
    drive.clear("C:\\d");
    for (const char* name : each.source) foreign(name, "x");
    for (const std::string& name : each.target) drive.write("C:\\d\\" + name, "x");
    const WalkReport report = WalkTree(app, "C:\\s", "C:\\d", each.code, false);
    EXPECT_EQ(report.left, each.left);
    EXPECT_EQ(report.complete(), each.complete) << report.first.description();
    EXPECT_EQ(report.sourceMayGo(), each.complete && each.left == 0);
  }
  // Links, and the folder that is filled.
  write({"C:\\real\\r", "C:\\m\\in\\old"});
  drive.link("C:\\m\\link", "C:\\real");
  WalkReport report = WalkTree(app, "C:\\m", "C:\\m\\in", WalkMove, true);
  EXPECT_EQ(report.left, 2);
  EXPECT_TRUE(report.complete());
  drive.link("C:\\top", "C:\\real");
  EXPECT_FALSE(WalkTree(app, "C:\\top", "C:\\m", WalkMove, true).sourceMayGo());
  EXPECT_FALSE(WalkTree(app, "C:\\real", "C:\\top", WalkMove, true).complete()) << "onto itself";
}

TEST_F(WalkTreeTest, AStopEndsAfterTheFileAtHand) {
  for (int i = 0; i < 50; ++i) write({"C:\\s\\" + std::to_string(i), "C:\\s\\sub\\x"});
  // With a fault to wait for there is no second thread that copies ahead.
  files.failWhen("copyFile", "C:\\nowhere", err::deviceIo);
  for (const WalkCode code : {WalkCopy, WalkMove, WalkDelete, WalkSize}) {
    drive.clear("C:\\d");
    int yields = 0;
    windows.onYield = [&] { app.stopRequested = app.stopRequested || ++yields == 10; };
    WalkReport report;
    {
      const StoppableOperation operation(app);
      report = WalkTree(app, "C:\\s", "C:\\d", code, true);
    }
    EXPECT_TRUE(report.stopped && !report.complete() && report.failed == 0);
    EXPECT_GE(report.done, 9) << static_cast<int>(code);
    EXPECT_LE(report.done, 10) << static_cast<int>(code);
    EXPECT_FALSE(drive.exists("C:\\d\\sub"));
    EXPECT_EQ(yields, 10);
  }
}

TEST_F(WalkTreeTest, ABoxNamesTheFirstFailureOnce) {
  WalkReport report{.done = 416};
  EXPECT_TRUE(tellWalk(app, report, "copied"));
  EXPECT_FALSE(report.note(Outcome::failure(err::diskFull, "C:\\A\\b.txt"), "C:\\a\\b.txt"));
  WalkReport next{.done = 1, .stopped = true};
  next.note(Outcome::failure(err::deviceIo, "C:\\to"), "C:\\from");
  report += next;
  EXPECT_FALSE(tellWalk(app, report, "copied"));
  expectTold("2 of 419 files could not be copied, the first:\r\nC:\\a\\b.txt\r\nDisk full");
  EXPECT_EQ(form.lblStatus.notice, "");
}

TEST_F(WalkTreeTest, MoveKilledAnywhereLosesNoFile) {
  const Lines names = {"a.txt", "sub\\b.txt", "sub\\c.txt"}, stores = {"C:\\s\\", "C:\\d\\"};
  forEveryCall(
      files, Ending::kill,
      [&] {
        drive.clear("C:\\d");
        for (const std::string& name : names) drive.write("C:\\s\\" + name, name);
      },
      [&] { walk("C:\\s", "C:\\d", WalkMove, true); },
      [&](bool) {
        for (const std::string& name : names)
          EXPECT_EQ(drive.read(stores[drive.exists("C:\\s\\" + name) ? 0 : 1] + name), name);
      });
}

}  // namespace skv::test
