#include <sys/stat.h>

#include <fstream>
#include <sstream>

#include "platform/zip/libzip_zipit.h"
#include "support/disk_fixture.h"
#include "support/failing_calls.h"
#include "support/text.h"
#include "support/zip_maker.h"

namespace skv::test {

class ZipEngineTest : public DiskTest {
 protected:
  ZipEngineTest() { drive.clear("C:\\out"); }

  std::unique_ptr<Zipit> open(const std::string& bytes) {
    drive.write("C:\\a.zip", bytes);
    return open();
  }
  std::unique_ptr<Zipit> open() {
    auto zip = LibzipEngine(CodePage(1252)).load(files);
    opened = zip->setArchivefile("C:\\a.zip");
    zip->extractfolder = "C:\\out\\";
    zip->usedirectoryinfo = true;
    zip->ExtractProgress = [this](int percent) { percents.push_back(percent); };
    return zip;
  }
  static Lines namesOf(const Zipit& zip) {
    Lines names;
    for (const ZipEntry& entry : zip.entries()) names.push_back(entry.Filename);
    return names;
  }
  Outcome extract(const std::string& bytes) {
    drive.clear("C:\\out");
    percents.clear();
    const auto zip = open(bytes);
    return opened.ok() ? zip->extractfiles(namesOf(*zip)) : opened;
  }

  // The user is told of what, and nothing is written.
  void expectRefused(const Outcome& done, const std::string& what) {
    EXPECT_FALSE(done.ok()) << what;
    EXPECT_TRUE(holds(done.description(), what));
    EXPECT_TRUE(holds(done.description(), "a.zip"));
    EXPECT_EQ(drive.tree("C:\\out"), Lines{}) << what;
  }
  // Bytes that cannot be packed.
  static std::string noise(std::size_t length) {
    std::string bytes;
    for (unsigned x = 1; bytes.size() < length;)
      bytes += static_cast<char>((x = x * 1103515245 + 12345) >> 16U);
    return bytes;
  }

  Outcome opened;
  std::vector<int> percents;
};

TEST_F(ZipEngineTest, PutsEveryEntryInItsPlace) {
  const std::string text(100000, 't');
  const Outcome done = extract(rawZip({
      {"folder\\", ""},
      {"folder/stored.txt", "stored"},
      {"back\\slash\\deflated.txt", deflated(text), 8, 100000, {}, crc32Of(text)},
      {"./x//y/empty", ""},
      {"README.TXT", "first"},
      {"readme.txt", "second"},
      {"what?: a \"name\".", "w"},
      {"/from the root", "r"},
      {"D:\\on\\a drive", "d"},
      {"nul.txt", "device"},
      {"a\xCC\x88.txt", "an a and two dots apart"},
      {.name = "piped", .data = "p", .madeBy = 3, .attributes = 0010600U << 16U},
  }));
  EXPECT_TRUE(done.ok()) << done.description();
  EXPECT_EQ(drive.tree("C:\\out"),
            (Lines{"README.TXT", "_nul.txt", "back\\", "back\\slash\\", "back\\slash\\deflated.txt",
                   "folder\\", "folder\\stored.txt", "from the root", "on\\", "on\\a drive",
                   "piped", "what__ a _name_", "x\\", "x\\y\\", "x\\y\\empty", "\xC3\xA4.txt"}));
  EXPECT_EQ(drive.read("C:\\out\\README.TXT"), "second");
  EXPECT_EQ(drive.read("C:\\out\\back\\slash\\deflated.txt"), text);
  EXPECT_EQ(percents.back(), 100);
  EXPECT_TRUE(extract(rawZip({})).ok());
  EXPECT_EQ(percents, std::vector<int>{100});
}

TEST_F(ZipEngineTest, ReadsNamesAsTheirMakersWroteThem) {
  const std::string unicode = "\xC3\xA4";  // ä
  const RawEntry names[] = {
      {.name = unicode, .data = "", .flags = 0x800},  // marked
      {.name = unicode, .data = "", .madeBy = 3},
      {.name = "\x84", .data = ""},                // page 437
      {.name = "\xE4", .data = "", .madeBy = 11},  // page 1252
      {.name = "\xE4", .data = ""},                // a Greek letter in page 437
      // Page 437 from NTFS: 1252 has nothing at the place of the ü.
      {.name = "\x81\x84", .data = "", .madeBy = 11},
  };
  for (const RawEntry& entry : names)
    EXPECT_EQ(namesOf(*open(rawZip({entry}))).back(),
              (entry.name == "\x81\x84" ? "\xC3\xBC" : "") + unicode)
        << entry.madeBy << " " << entry.flags;
}

TEST_F(ZipEngineTest, RefusesHostileArchivesBeforeItWritesAnything) {
  const std::string bomb = deflated(std::string(1000, '\0'));
  const RawEntry honest{"honest.txt", "honest"};
  std::string deep;
  for (int i = 0; i < 100; ++i) deep += "d/";
  const std::pair<const char*, std::vector<RawEntry>> archives[] = {
      {"climbs", {honest, {"a/../../evil.txt", "e"}}},
      {"climbs with backslashes", {honest, {"..\\evil.txt", "e"}}},
      {"climbs as Windows would read it", {honest, {".. ./evil.txt", "e"}}},
      {"climbs from the root", {honest, {"/../evil.txt", "e"}}},
      {"another server", {honest, {"\\\\server\\share\\evil.txt", "e"}}},
      {"climbs from a drive", {honest, {"C:\\..\\evil.txt", "e"}}},
      {"a link",
       {honest, {.name = "evil", .data = "/etc", .madeBy = 3, .attributes = 0120777U << 16U}}},
      {"no end of folders", {honest, {deep + "evil", "e"}}},
      {"a file where a folder is needed", {{"a", "file"}, {"a/b", "e"}}},
      {"a folder where a file stands", {{"A/b", "file"}, {"a", "e"}}},
      {"encrypted", {honest, {.name = "evil", .data = "123456789012e", .flags = 1}}},
      {"an unknown method", {honest, {.name = "evil", .data = "e", .method = 97}}},
      {"absurd growth", {honest, {"evil", bomb, 8, 0x7FFFFFFF, {}, 0}}},
      {"absurd growth of something large",
       {honest, {"evil", std::string(1 << 20, '\0'), 8, 0x38000000, {}, 0}}},
      {"overlap", {honest, {.name = "evil", .data = "honest", .offset = 0}}},
      {"beyond the end", {honest, {.name = "evil", .data = "e", .size = 5000, .packed = 5000}}},
  };
  for (const auto& [what, entries] : archives) {
    SCOPED_TRACE(what);
    expectRefused(extract(rawZip(entries)), entries.back().name == "evil" ? "evil" : "");
    EXPECT_FALSE(drive.exists("C:\\evil.txt"));
  }
}

TEST_F(ZipEngineTest, StopsAtEntriesThatAreNotWhatTheySay) {
  const std::string text(50000, 'x'), packed = deflated(text), large(20 << 20, 'x');
  const std::uint32_t crc = crc32Of(text);
  const RawEntry entries[] = {
      {"larger", packed, 8, 100, {}, crc},
      {"shorter", packed, 8, 50001, {}, crc},
      {"wrong sum", packed, 8, 50000, {}, crc + 1},
      {"truncated", packed.substr(0, packed.size() / 2), 8, 50000, {}, crc},
      {"garbage", "\xFF\xFF\xFF\xFF", 8, 400, {}, crc},
      {"stored with another size", "abc", 0, 5, {}, crc32Of("abc")},
      {"large and larger", deflated(large), 8, 19 << 20, {}, crc32Of(large)},
      {"large with a wrong sum", deflated(large), 8, 20 << 20, {}, 1},
  };
  for (const RawEntry& entry : entries) {
    expectRefused(extract(rawZip({entry})), entry.name);
    EXPECT_EQ(percents.back(), 100) << entry.name;
  }
  // Without the field that has the true size.
  expectRefused(extract(rawZip({{.name = "a", .data = "", .size = 0xFFFFFFFF}})), "inconsistent");
  const std::string sound = rawZip({{"a", "aaaa"}, {"b", "bbbb"}});
  for (std::size_t cut = 0; cut < sound.size(); ++cut)
    EXPECT_FALSE(extract(sound.substr(0, cut)).ok()) << cut;
}

TEST_F(ZipEngineTest, HalfADownloadIsNoArchiveAndOneThatUnpacksItselfIs) {
  const std::string inner = rawZip({{"inner.txt", "inner"}});
  const std::string whole = rawZip({{"addon.zip", inner}, {"outer.txt", std::string(500, 'o')}});
  const std::string program = "MZ" + std::string(3000, 'm');
  const auto names = [&](const std::string& bytes) {
    const auto zip = open(bytes);
    return opened.ok() ? namesOf(*zip) : Lines{"refused"};
  };
  const Lines outer{"addon.zip", "outer.txt"}, refused{"refused"};
  EXPECT_EQ(names(whole), outer);
  EXPECT_EQ(names(program + whole), outer);
  EXPECT_EQ(names(rawZip({{"a", "a"}}, program)), Lines{"a"}) << "its offsets count the program in";
  EXPECT_EQ(names(whole.substr(0, 60) + inner), refused);
  for (const std::string& before : {std::string(), program})
    for (const std::size_t more : {0, 1, 40, 300})
      EXPECT_EQ(names(before + whole.substr(0, whole.find(inner) + inner.size() + more)), refused)
          << more;
}

// Made by 7z, and holding what the test makes itself.
TEST_F(ZipEngineTest, UnpacksTheMethodsOfOtherArchivers) {
  std::string config;
  for (int i = 0; i < 600; ++i)
    config += "key." + std::to_string(i) + "=" + std::to_string(i * i) + "\r\n";
  for (const char* method : {"lzma", "ppmd", "deflate64"}) {
    SCOPED_TRACE(method);
    std::ostringstream bytes;
    bytes << std::ifstream(ZIP_FIXTURES + std::string("/") + method + ".zip", std::ios::binary)
                 .rdbuf();
    std::string archive = bytes.str();
    EXPECT_TRUE(extract(archive).ok());
    EXPECT_EQ(drive.filesIn("C:\\out"), (Lines{"aircraft.cfg", "texture\\t.bmp"}));
    EXPECT_TRUE(drive.read("C:\\out\\aircraft.cfg") == config);
    EXPECT_TRUE(drive.read("C:\\out\\texture\\t.bmp") == noise(5000) + noise(5000));
    archive[1000] = static_cast<char>(~archive[1000]);
    EXPECT_TRUE(holds(extract(archive).description(), "\"aircraft.cfg\" in"));
    EXPECT_FALSE(drive.exists("C:\\out\\aircraft.cfg"));
  }
}

TEST_F(ZipEngineTest, TakesAddonsOfBlankPicturesAloneUpToAnAbsurdSize) {
  const std::string blank(2 << 20, '\0');
  const RawEntry picture{"", deflated(blank), 8, 2 << 20, {}, crc32Of(blank)};
  const auto pictures = [&](std::size_t count) {
    std::vector<RawEntry> entries(count, picture);
    for (std::size_t i = 0; i < count; ++i) entries[i].name = std::to_string(i);
    return rawZip(entries);
  };
  EXPECT_TRUE(extract(pictures(50)).ok());
  EXPECT_EQ(drive.tree("C:\\out").size(), 50U);
  // Each of them can be what it says, and all together cannot.
  expectRefused(extract(pictures(300)), "");
}

TEST_F(ZipEngineTest, NoTwoNamesThatTheDiskCannotTakeShareATarget) {
  const auto zip = open(rawZip({{"t/a?.bmp", "question"},
                                {"t/a*.bmp", "star"},
                                {"t/A*.BMP", "star again"},
                                {"t/a_.bmp", "honest"},
                                {"d?/x", "in d?"},
                                {"d*/x", "in d*"},
                                {"aux", "device"}}));
  ASSERT_TRUE(zip->extractfiles(namesOf(*zip)).ok());
  Lines found, renamed;
  for (const std::string& name : drive.filesIn("C:\\out"))
    found.push_back(name + ">" + drive.read("C:\\out\\" + name));
  EXPECT_EQ(found, (Lines{"_aux>device", "d_ (2)\\x>in d*", "d_\\x>in d?", "t\\a_ (2).bmp>question",
                          "t\\a_ (3).bmp>star again", "t\\a_.bmp>honest"}));
  for (const RenamedEntry& entry : zip->renamed()) renamed.push_back(entry.from + ">" + entry.to);
  EXPECT_EQ(renamed, (Lines{"t\\a?.bmp>t\\a_ (2).bmp", "t\\a*.bmp>t\\a_ (3).bmp", "d?>d_",
                            "d*>d_ (2)", "aux>_aux"}));
}

TEST_F(ZipEngineTest, LinksInItsFolderLeadNothingOut) {
  const auto zip = open(rawZip({{"file.txt", "new"}, {"sub/file.txt", "new"}}));
  drive.write("C:\\other\\file.txt", "precious");
  drive.link("C:\\out\\FILE.TXT", "C:\\other\\file.txt");
  EXPECT_TRUE(zip->extractfiles({"file.txt"}).ok());
  drive.link("C:\\out\\SUB", "C:\\other");
  EXPECT_FALSE(zip->extractfiles({"sub/file.txt"}).ok());
  EXPECT_EQ(drive.read("C:\\other\\file.txt"), "precious");
}

TEST_F(ZipEngineTest, AFullDiskIsToldWithTheEntryAndWhatWasCompleteStays) {
  const std::string large(7 << 20, 'l');
  const std::string bytes =
      rawZip({{"a", "a"}, {"b", "b"}, {"c", "c"}, {"l", large, 0, 7 << 20, {}, crc32Of(large)}});
  for (const char* call : {"createFile", "write", "commit"}) {
    for (const auto& [name, whole] : {std::pair{"b", Lines{"a"}}, {"l", Lines{"a", "b", "c"}}}) {
      files.failWhen(call, std::string("C:\\out\\") + name, err::diskFull);
      const Outcome done = extract(bytes);
      EXPECT_EQ(done.number(), err::diskFull) << call;
      EXPECT_TRUE(holds(done.description(), std::string("\"") + name + "\" from \"C:\\a.zip\""));
      Lines there = drive.tree("C:\\out");
      std::erase(there, "l");  // which another thread may have been done with
      EXPECT_EQ(there, whole);
    }
  }
}

TEST_F(ZipEngineTest, PacksAndUnpacksWithoutLoss) {
  const std::pair<std::string, std::string> contents[] = {{"a.txt", std::string(70000, 'a')},
                                                          {"sub\\noise.bin", noise(300000)},
                                                          {"sub\\empty", ""},
                                                          {"gr\xC3\xBC\xC3\x9F.txt", "1252"},
                                                          {"\xE4\xB8\xAD.txt", "utf8"},
                                                          {"\xC2\x81", "a gap in 1252"},
                                                          {"large", std::string(40 << 20, 'l')}};
  Lines names;
  for (const auto& [name, content] : contents) {
    drive.write("C:\\in\\" + name, content);
    names.push_back(name);
  }
  drive.setModified("C:\\in\\a.txt", {1040740001, 0});
  ASSERT_TRUE(disk.setCurrentFolder("C:\\in").ok());
  auto zip = open();
  ASSERT_TRUE(opened.ok()) << "a missing archive is to be made";
  zip->compressionlevel = 9;
  const Outcome added = zip->addfiles(names);
  ASSERT_TRUE(added.ok()) << added.description();
  EXPECT_TRUE(holds(drive.read("C:\\a.zip"), "gr\xC3\xBC\xC3\x9F.txt"));
  EXPECT_LT(drive.read("C:\\a.zip").size(), 400000U);
  zip = open();
  EXPECT_EQ(namesOf(*zip).size(), names.size());
  EXPECT_TRUE(zip->extractfiles(namesOf(*zip)).ok());
  for (const auto& [name, content] : contents)
    EXPECT_TRUE(drive.read("C:\\out\\" + name) == content) << name;
  EXPECT_EQ(disk.modified("C:\\out\\a.txt").value(), (FileTime{1040740001, 0}));

  // Without folders, and without what is marked as the system's.
  ASSERT_TRUE(disk.setAttributes("C:\\in\\a.txt", {.system = true}).ok());
  zip = open();
  zip->usedirectoryinfo = false;
  EXPECT_TRUE(zip->addfiles({"a.txt", "sub\\empty"}).ok());
  EXPECT_EQ(namesOf(*open()), Lines{"empty"});
}

TEST_F(ZipEngineTest, APackingThatFailsLeavesTheArchiveThatWasThere) {
  drive.write("C:\\in\\a.txt", "a");
  drive.write("C:\\in\\b.txt", "b");
  ASSERT_TRUE(disk.setCurrentFolder("C:\\in").ok());
  const std::string before = rawZip({{"older", ""}});
  drive.write("C:\\a.zip", before);
  const auto fails = [&](const Lines& names, const char* told) {
    const Outcome added = open()->addfiles(names);
    EXPECT_FALSE(added.ok());
    EXPECT_TRUE(holds(added.description(), told));
    EXPECT_EQ(drive.read("C:\\a.zip"), before);
    EXPECT_EQ(drive.tree("C:\\"), (Lines{"a.zip", "in\\", "in\\a.txt", "in\\b.txt", "out\\"}));
  };
  fails({"a.txt", "missing"}, "missing");
  fails({}, "");
  files.failWhen("readFile", "C:\\in\\b.txt", err::deviceIo);
  fails({"a.txt", "b.txt"}, "b.txt");
  files.heal();
  withFullDisk(100, [&] { fails({"a.txt", "b.txt"}, "a.zip"); });
  ::chmod(drive.native("C:\\a.zip").c_str(), 0600);
  EXPECT_TRUE(open()->addfiles({"b.txt"}).ok());
  struct stat status {};
  ::stat(drive.native("C:\\a.zip").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0600U);
  drive.write("C:\\a.zip", before);
  ASSERT_TRUE(disk.setAttributes("C:\\a.zip", {.readOnly = true}).ok());
  fails({"a.txt"}, "Path/File access error");
}

}  // namespace skv::test
