#include "packaging/aircraft_installer.h"
#include "aircraft/aircraft_views.h"
#include "packaging/left_over.h"

#include "sample/zip_file.h"
#include "support/every_call.h"
#include "support/program_fixture.h"

namespace skv::test {

using sample::Files;

const std::string cfg = "[fltsim.0]\r\nTitle=The Plane\r\n";

class InstallerTest : public ProgramTest {
 protected:
  InstallerTest() { mnuViewFSAircraft_Click(app); }
  void zip(const Files& content, const sample::ZipStyle& style = {},
           const std::string& name = "C:\\plane.zip") {
    sample::writeZip(disk.nativePath(name).value(), content, style);
  }
  void install(const std::string& name = "C:\\plane.zip") {
    windows.picks = {name};
    form.mnuFileInstallAC.click();
    expectIdle();
  }
  Lines hangar() { return drive.filesIn("C:\\Hangar"); }
  void expectClean(const std::string& status = "") {
    EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Lines{});
    EXPECT_EQ(form.lblStatus.caption.get(), status);
  }
};

// Files of the names, each holding "x" but for the aircraft's own.
Files filesOf(const std::string& names) {
  Files files;
  for (const std::string& name : split(names, ' '))
    files.push_back({name, upper(name).ends_with("AIRCRAFT.CFG") ? cfg : "x"});
  return files;
}

TEST_F(InstallerTest, RecognisesWhatIsInAnArchiveOfAnyLayout) {
  const struct {
    const char* what;
    std::string archive, aircraft, shared = {};  // what it holds, and what is placed where
    std::string left = {};
  } layouts[] = {
      {"the root is the aircraft", "aircraft.cfg texture/a.bmp panel/panel.cfg sound/sound.cfg",
       R"(aircraft.cfg panel\panel.cfg sound\sound.cfg texture\a.bmp)"},
      {"a wrapped aircraft beside shared folders",
       "P/aircraft.cfg P/model/a.mdl Gauges/g.gau Effects/e.fx Sound/s.wav Texture/t.bmp read.me",
       R"(aircraft.cfg model\a.mdl)", R"(Effects\e.fx Gauges\g.gau Sound\s.wav Texture\t.bmp)",
       "read.me"},
      {"a Package", "Aircraft/Aircraft.cfg Main/Gauges/sub/x.gau Main/Texture/t.bmp",
       "Aircraft.cfg", R"(Gauges\x.gau Texture\t.bmp)"},
      {"gauges in the panel folder take the panel along",
       "aircraft.cfg panel/panel.cfg panel/g.gau", "aircraft.cfg",
       R"(Gauges\g.gau Gauges\panel.cfg)"},
      {"a gauge beside aircraft.cfg takes the aircraft along", "aircraft.cfg g.gau", ""},
      {"loose sounds leave the aircraft", "aircraft.cfg sound/s.wav", "aircraft.cfg",
       R"(Sound\s.wav)"},
      {"a panel beside an aircraft without one", "P/aircraft.cfg Panel/panel.cfg Panel/p.bmp",
       R"(Panel\p.bmp Panel\panel.cfg aircraft.cfg)"},
      {"a panel beside an aircraft that has one",
       "P/aircraft.cfg P/panel/panel.cfg Panel/panel.cfg Panel/other",
       R"(aircraft.cfg panel\panel.cfg)", "", R"(Panel\other Panel\panel.cfg)"},
      {"textures outside the aircraft, by the end of the folder's name",
       "p/aircraft.cfg mytexture/t.bmp texture.abc/u.bmp", "aircraft.cfg", R"(Texture\t.bmp)",
       R"(texture.abc\u.bmp)"},
      {"two aircraft", "a/aircraft.cfg b/aircraft.cfg b/model/b.mdl", "aircraft.cfg", "",
       R"(b\aircraft.cfg b\model\b.mdl)"},
      {"nothing of an aircraft", "read.me Gauges/g.gau", ""},
  };
  for (const auto& [what, archive, aircraft, shared, left] : layouts) {
    SCOPED_TRACE(what);
    drive.clear("C:\\Hangar");
    clearLeftOver(app);
    mnuViewFSAircraft_Click(app);
    zip(filesOf(archive), {.backslashes = archive.starts_with("Aircraft/")});
    install();
    const auto placed = [this](const std::string& folder, const std::string& names) {
      EXPECT_EQ(drive.filesIn(folder), names.empty() ? Lines{} : split(names, ' ')) << folder;
    };
    placed("C:\\Hangar\\aircraft\\plane", aircraft);
    placed("C:\\Hangar\\Main\\plane", shared);
    EXPECT_EQ(drive.exists("C:\\Hangar\\Main\\plane\\Effects"), !aircraft.empty());
    placed("C:\\Temp\\SKVLeftOver\\plane", left);
    if (aircraft.empty())
      expectTold("No Aircraft.cfg found!");
    else if (!left.empty())
      expectTold("\"plane\" is installed. Left over in the archive: ");
    EXPECT_TRUE(windows.boxes.empty());
    expectClean();
  }
}

TEST_F(InstallerTest, TheNewRowIsSavedSelectedAndMarked) {
  zip({{"aircraft.cfg", "[fltsim.0]\r\nsim=x\r\n"}});
  mnuViewFSAircraft_Click(app);
  windows.inputs = {"My Plane"};
  install();
  auto& list = form.lstAircraft;
  EXPECT_EQ(windows.inputPrompts, Lines{"Foldername for aircraft:|plane"});
  EXPECT_EQ(rows(list), Lines{"My Plane|C:\\Hangar\\aircraft\\My Plane\\"});
  EXPECT_EQ(list.selected(), 1);
  EXPECT_EQ(list.smallIcon(1), 5);
  EXPECT_EQ(drive.read("C:\\Hangar\\SKV_AC.lst"),
            line("My Plane", "C:\\Hangar\\aircraft\\My Plane\\"));
  windows.inputs = {"my plane"};
  install();
  EXPECT_EQ(windows.boxTexts(), Lines{"Aircraft 'my plane' already exists!"});
  EXPECT_EQ(list.count(), 1);
}

TEST_F(InstallerTest, EveryRefusalComesBackToAnEnabledWindow) {
  mnuViewHangar_Click(app);
  form.mnuFileInstallAC.click();
  EXPECT_TRUE(windows.boxes.empty()) << "a cancelled dialog says nothing";
  expectIdle();

  files.freeSpace = 999;
  zip({{"aircraft.cfg", std::string(1000, 'x')}});
  zip({{"aircraft.cfg", cfg}, {"in.zip", ""}}, {}, "C:\\empty.zip");
  zip({{"aircraft.cfg", cfg}, {"in.zip", "PK no zip"}}, {}, "C:\\bad.zip");
  drive.write("C:\\none.zip", "this is no archive");
  drive.write("C:\\Hangar\\aircraft\\mine\\aircraft.cfg.txt", "no aircraft, but the user's");
  const Lines before = hangar();
  const struct {
    const char* archive;
    std::optional<std::string> name;
    const char* told;
  } cases[] = {
      {"C:\\plane.zip", std::nullopt, nullptr},
      {"C:\\plane.zip", "", "Aircraft '' already exists!"},
      {"C:\\plane.zip", "Mine", "Aircraft 'Mine' already exists!"},
      {"C:\\plane.zip", "plane", "Insufficient Disk Space in \"C:\\Temp\\SKVInstallTemp\\\"!"},
      {"C:\\empty.zip", "empty", "The embedded ZIP \"in.zip\" is empty."},
      {"C:\\bad.zip", "bad", "archive"},
      {"C:\\none.zip", "none", "Error #31000\r\n"},
      {"C:\\missing.zip", "missing", "Error #53\r\n"},
  };
  for (const auto& [archive, name, told] : cases) {
    SCOPED_TRACE(archive + name.value_or(" Cancel"));
    windows.inputs = {name};
    install(archive);
    if (told != nullptr) {
      EXPECT_EQ(windows.boxes.back().icon, ui::BoxIcon::exclamation);
      expectTold(told);
    }
    EXPECT_TRUE(windows.boxes.empty());
    EXPECT_EQ(hangar(), before);
    const bool taken = told != nullptr && std::string(told).starts_with("Aircraft");
    expectClean(taken ? "Extracting ZIP: C:\\plane.zip" : "");
  }
  files.freeSpace = 1000;
  install();
  EXPECT_EQ(form.lstAircraft.count(), 1) << "equal is enough";
}

TEST_F(InstallerTest, NamesThatCannotBeAreRefusedAndTheNearestOneOffered) {
  const struct {
    std::string typed;
    const char* told;     // part of the message
    std::string offered;  // next, and taken
  } cases[] = {
      {"a/b\\c:b/", "cannot hold: / \\ :", "a_b_c_b_"},
      {"Łódź", "files have no \"Łź\"", "Lódz"},
      {"con", "device", "_con"},
      {"plane . ", "at the end", "plane"},
      {".hidden", "hides", "_hidden"},
      {std::string(300, 'x'), "too long", std::string(228, 'x')},
      {"~SKVunfinished", "for itself", "_~SKVunfinished"},
  };
  zip({{"aircraft.cfg", "no title"}});
  for (const auto& [typed, told, offered] : cases) {
    SCOPED_TRACE(typed);
    windows.inputs = {typed};
    install();
    expectTold(told);
    EXPECT_EQ(windows.inputPrompts.back(), "Foldername for aircraft:|" + offered);
    EXPECT_TRUE(drive.exists("C:\\Hangar\\aircraft\\" + offered + "\\aircraft.cfg"));
  }
}

TEST_F(InstallerTest, AWholeInstallationIsToldAndTakesNoInputMeanwhile) {
  const std::string deep = sample::zipBytes(filesOf("no.fx"));
  zip({{"p/aircraft.cfg", cfg},
       {"p/what?.txt", "1"},
       {"Gauges/g.gau", "g"},
       {"Gauges/g.txt", "t"},
       {"Panel/panel.cfg", "p"},
       {"in.ZIP", sample::zipBytes({{"e?.fx", "e"}, {"deep.zip", deep}})}});
  windows.onYield = [&] {
    if (windows.fileDialogs.empty()) return;
    EXPECT_FALSE(form.enabled);
    EXPECT_EQ(windows.pointers.back(), ui::Pointer::hourglass);
  };
  install();
  EXPECT_EQ(hangar(), (Lines{"Main\\plane\\Effects\\deep.zip", "Main\\plane\\Effects\\e_.fx",
                             "Main\\plane\\Gauges\\g.gau", "Main\\plane\\Gauges\\g.txt",
                             "SKV_AC.lst", "aircraft\\plane\\Panel\\panel.cfg",
                             "aircraft\\plane\\aircraft.cfg", "aircraft\\plane\\what_.txt"}));
  EXPECT_EQ(form.lblStatus.notice, "The Plane installed: 7 files, 1 gauge");
  EXPECT_EQ(windows.boxes.at(0).details,
            "p\\what?.txt  ->  p\\what_.txt\r\nin.ZIP\\e?.fx  ->  e_.fx\r\n");
  expectTold(": 2. Their files got other names, by which an add-on may not find them.");
}

TEST_F(InstallerTest, TheLastCopyStaysWhenTheArchiveHasGoneMeanwhile) {
  duringYields("Processing: C:\\Hangar", [this] { drive.remove("C:\\plane.zip"); });
  files.failWhen("rename", "", err::diskFull);
  zip({{"p/aircraft.cfg", cfg}, {"more.txt", "t"}, {"Panel/panel.cfg", "p"}});
  install();
  EXPECT_TRUE(holds(windows.boxes.back().text, "stays in \"C:\\Temp\\SKVInstallTemp\\\""));
  EXPECT_EQ(drive.read("C:\\Hangar\\aircraft\\~SKVUnfinished\\aircraft.cfg"), cfg);
}

TEST_F(InstallerTest, WhatComesUnderTheNameMeanwhileStays) {
  const std::string root = "C:\\Hangar\\aircraft", place = root + "\\plane";
  drive.write("C:\\Own\\mine.txt", "m");
  zip({{"p/aircraft.cfg", cfg}, {"Gauges/g.gau", "g"}});
  const std::tuple<std::function<void()>, std::string, Lines> newcomers[] = {
      {[&] { drive.write(place + "\\AIRCRAFT.CFG", "another's"); },
       "File already exists",
       {"plane\\", "plane\\AIRCRAFT.CFG"}},
      {[&] { drive.link(place, drive.native("C:\\Own")); }, "is a link", {"plane\\"}},
      {[&] { drive.write(place, "a file"); }, "is a file", {"plane"}},
  };
  for (const auto& [comes, told, stands] : newcomers) {
    SCOPED_TRACE(told);
    windows.onYield = [&, &newcomer = comes] {
      if (drive.exists(root + "\\~SKVUnfinished") && !drive.exists(place)) newcomer();
    };
    install();
    windows.onYield = nullptr;
    expectTold(told);
    EXPECT_EQ(drive.tree(root), stands);
    EXPECT_EQ(drive.tree("C:\\Hangar\\Main"), Lines{});
    expectClean();
    drive.clear("C:\\Hangar");
    mnuViewFSAircraft_Click(app);
  }
  EXPECT_EQ(drive.tree("C:\\Own"), Lines{"mine.txt"});
}

TEST_F(InstallerTest, NothingGoesBehindALinkInPlaceOfTheWorkingFolder) {
  const std::string work = "C:\\Temp\\SKVInstallTemp";
  const Lines own{"mine.txt", "sub\\mine.txt"};
  for (const std::string& file : own) drive.write("C:\\Own\\" + file, "m");
  zip({{"p/aircraft.cfg", cfg}, {"Gauges/g.gau", "g"}, {"read.me", "r"}});
  const std::pair<std::string, std::string> cases[] = {
      {"", "An installation empties the working folder"},
      {"Processing: C:\\Hangar\\Main", "could not be kept of what was left over"},
      {"Cleaning temporary", "Left over in the archive: 1 file"},
  };
  for (const auto& [when, told] : cases) {
    SCOPED_TRACE(when);
    drive.clear("C:\\Hangar");
    drive.write("C:\\Hangar\\Main\\plane\\old", "what the new one is merged with");
    mnuViewFSAircraft_Click(app);
    duringYields(when, [&] {
      if (disk.isLink(work)) return;
      drive.remove(work);
      drive.link(work, drive.native("C:\\Own"));
    });
    install();
    windows.onYield = nullptr;
    expectTold(told);
    EXPECT_EQ(drive.filesIn("C:\\Own"), own);
    EXPECT_EQ(drive.exists("C:\\Hangar\\aircraft\\plane\\aircraft.cfg"), !when.empty());
    drive.remove(work);
  }
  EXPECT_EQ(drive.filesIn("C:\\Temp\\SKVLeftOver"), Lines{"plane\\read.me"});
}

TEST_F(InstallerTest, StopsWhenTheUserWantsIt) {
  zip({{"p/aircraft.cfg", cfg},
       {"Gauges/g.gau", "g"},
       {"in.zip", sample::zipBytes({{"e.fx", "e"}})}});
  for (const char* when :
       {"Extracting ZIP", "Extracting embedded", "Processing: C:\\Temp", "Cleaning temporary"}) {
    SCOPED_TRACE(when);
    app.stopRequested = false;
    duringYields(when, [&] { app.stopRequested = true; });
    install();
    windows.onYield = nullptr;
    EXPECT_TRUE(windows.boxes.empty());
    if (form.lstAircraft.count() == 0) {
      EXPECT_EQ(form.lblStatus.notice, "Installation stopped: nothing was added to the Hangar");
      EXPECT_EQ(hangar(), Lines{});
    } else {
      EXPECT_STREQ(when, "Cleaning temporary") << "the aircraft is in the Hangar by then";
    }
    expectClean();
  }
  EXPECT_EQ(form.lstAircraft.count(), 1);
}

TEST_F(InstallerTest, ARunKeepsToTheHangarItBeganWith) {
  drive.write("C:\\Other\\readme.txt", "another Hangar");
  zip({{"p/aircraft.cfg", cfg}, {"Gauges/g.gau", "g"}});
  windows.onYield = [this] {
    if (windows.inputPrompts.empty() || app.HangarDir == "C:\\Other\\") return;
    app.HangarDir = "C:\\Other\\";
    mnuViewFSAircraft_Click(app);
  };
  install();
  EXPECT_EQ(hangar(),
            (Lines{"Main\\plane\\Gauges\\g.gau", "SKV_AC.lst", "aircraft\\plane\\aircraft.cfg"}));
  EXPECT_FALSE(drive.exists("C:\\Other\\SKV_AC.lst") || drive.exists("C:\\FS\\SKV_AC.lst"));
}

// Every call that changes the disk, or looks at it, fails once, or is the last before a kill: the
// try either was whole or has left nothing but what the next one clears away, and the next one ends
// well.
TEST_F(InstallerTest, AnyFailingCallIsToldAndTheNextTryEndsWell) {
  zip({{"p/aircraft.cfg", cfg},
       {"Gauges/g.gau", "g"},
       {"read.me", "r"},
       {"in.zip", sample::zipBytes({{"e.fx", "e"}})}});
  const Lines simulator = drive.tree("C:\\FS");
  const Lines whole{"Main\\plane\\Effects\\e.fx", "Main\\plane\\Gauges\\g.gau", "SKV_AC.lst",
                    "aircraft\\plane\\aircraft.cfg"};
  const auto begin = [this] {
    drive.clear("C:\\Hangar");
    drive.clear("C:\\Temp\\SKVInstallTemp");
    clearLeftOver(app);
    mnuViewFSAircraft_Click(app);
    windows.boxes.clear();
  };
  const auto check = [&](RunEnd end) {
    const bool told = !windows.boxes.empty() || end.killed;
    windows.boxes.clear();
    EXPECT_EQ(drive.tree("C:\\FS"), simulator);
    EXPECT_TRUE(drive.exists("C:\\plane.zip"));
    if (drive.exists("C:\\Hangar\\aircraft\\plane")) {
      EXPECT_EQ(drive.read("C:\\Hangar\\aircraft\\plane\\aircraft.cfg"), cfg);
      EXPECT_EQ(drive.read("C:\\Hangar\\Main\\plane\\Gauges\\g.gau"), "g");
      EXPECT_TRUE(told || hangar() == whole);
    } else {
      EXPECT_TRUE(told && (end.killed || hangar().empty()));
    }

    mnuViewFSAircraft_Click(app);
    install();
    EXPECT_EQ(hangar(), whole);
    mnuViewHangar_Click(app);
    EXPECT_EQ(rows(form.lstAircraft), Lines{"The Plane|C:\\Hangar\\aircraft\\plane\\"});
    Lines texts = windows.boxTexts();
    std::erase_if(texts, [](const std::string& text) { return text.find("Left over") < 50; });
    EXPECT_TRUE(texts.empty() || texts == Lines{"Aircraft 'plane' already exists!"}) << texts[0];
  };
  forEveryEnding(
      files, begin, [this] { install(); }, check);
}

}  // namespace skv::test
