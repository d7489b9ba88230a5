#include "core/profile.h"

#include <fstream>
#include <iterator>

#include "support/disk_fixture.h"

namespace skv::test {

using namespace std::string_literals;

const CodePage western(1252);

std::string fixture(const std::string& name) {
  std::ifstream file(FIXTURES "/profile/" + name, std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

// Takes the escapes of reads.tsv back: "\\" and "\xNN".
std::string unescaped(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) == "\\x") {
      result += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
      i += 3;
      continue;
    }
    if (text[i] == '\\') ++i;
    result += text[i];
  }
  return result;
}

TEST(ProfileTest, AnswersAsTheSystemCallDid) {
  int answers = 0;
  for (const std::string& row : split(fixture("reads.tsv"), '\n')) {
    if (row.empty()) continue;
    const auto fields = split(row, '\t');
    ASSERT_EQ(fields.size(), 4U) << row;
    const Profile profile(fixture(fields[0]), western);
    EXPECT_EQ(profile.read(fields[1], fields[2]), unescaped(fields[3])) << row;
    ++answers;
  }
  EXPECT_EQ(answers, 60);
}

TEST(ProfileTest, ReadsWhatNoEditorWouldWrite) {
  const struct {
    std::string file, section, key, value;
  } cases[] = {
      {"[a]b] junk\r\nk=1\r\n", "a]b", "k", "1"},
      {"[s\r\nk=1\r\n", "s", "k", ""},
      {"[s]\r\n[k=1\r\n", "s", "[k", "1"},
      {"[s]\rk=1\rl=2", "s", "l", "2"},
      {"[s]\r\nk=1\rl=2\r\n", "s", "", "k\0l\0"s},
      {"[s]\r\nk\r\nk=2\r\n", "s", "k", ""},
      {"[s]\r\nk=a=b\r\n", "s", "k", "a=b"},
      {"[s]\r\n k\v=\x1a 1 \x1a\r\n\x1a", "s", "\tK ", "1"},
      // Keys without a name.
      {"[s]\r\nk=1\r\n=2\r\n=3\r\n\r\nl=4\r\n", "s", "", "k\0\0l\0"s},
      // Beyond A to Z capitals are other letters, and no-break spaces are letters too.
      {"[s]\r\nK\xe9=1\r\nk\xc9=\xa0\xfc\xa0\r\n", "s", "k\u00c9", "\u00a0\u00fc\u00a0"},
      {"\xef\xbb\xbf[s]\r\n\xc3\xa9=\xe4\xb8\xad\xc3\xbc\r\n", "s", "\u00e9", "?\u00fc"},
      {"\xff\xfe[\0s\0]\0\n\0\xe9\0=\0\x2d\x4e\xfc\0"s, "s", "\u00e9", "?\u00fc"},
      {"\xfe\xff\0[\0s\0]\0\n\0\xe9\0=\x4e\x2d\0\xfc"s, "s", "\u00e9", "?\u00fc"},
  };
  for (const auto& [file, section, key, value] : cases)
    EXPECT_EQ(Profile(file, western).read(section, key), value) << file << " - " << key;
}

struct Write {
  std::string section, key, value;
};

TEST(ProfileTest, WritesNothingButTheLine) {
  const struct {
    std::string before;
    std::vector<Write> writes;
    std::string after;
  } cases[] = {
      {"", {{"s", "k", "1"}, {"S", "K", "2"}, {"t", "l", ""}}, "[s]\r\nk=2\r\n[t]\r\nl=\r\n"},
      // In its line: the key's spelling, its blanks, and what stands around.
      {"; c\r\n\r\n[S]\r\n  Key = \"old\" \t\r\nkey=2\r\n\r\n",
       {{"s", "KEY", "new"}},
       "; c\r\n\r\n[S]\r\n  Key = new \t\r\nkey=2\r\n\r\n"},
      {"[s]\r\nk=\r\nl\r\n", {{"s", "k", "1"}, {"s", "l", "2"}}, "[s]\r\nk=1\r\nl=2\r\n"},
      // Blanks at the value's end don't grow.
      {"[s]\nk=1", {{"s", "k", "  2 "}, {"s", "k", "2 "}, {"s", "k", "3\t"}}, "[s]\nk=3\t"},
      {"[s]\nk=1 \t\x1a", {{"s", "k", "2 "}, {"s", "k", "3"}}, "[s]\nk=3 \x1a"},
      {"[s]\r\nk=1\0x\x1a"s, {{"s", "k", "22"}}, "[s]\r\nk=22\0x\x1a"s},
      // At the end of its section, before the blank lines that part it from the next.
      {"a=1\n[s]\r\n;c\r\n\r\n \r\n[t]\r\n[s]\r\nk=1\r\n",
       {{"s", "k", "2"}, {"s", "l", "3"}, {"", "b", "4"}},
       "a=1\nb=4\n[s]\r\n;c\r\nk=2\r\nl=3\r\n\r\n \r\n[t]\r\n[s]\r\nk=1\r\n"},
      {"[s]\r\n\r\nk=1\r\n\r\n", {{"s", "l", "2"}}, "[s]\r\n\r\nk=1\r\nl=2\r\n\r\n"},
      // With the line ends of the place.
      {"[s]\nk=1\n\n[t]\r\n",
       {{"s", "l", "2"}, {"t", "m", "3"}},
       "[s]\nk=1\nl=2\n\n[t]\r\nm=3\r\n"},
      {"[s]\rk=1", {{"s", "l", "2"}, {"t", "m", "3"}}, "[s]\rk=1\rl=2\r[t]\rm=3\r"},
      {"[s]\r\nk=1", {{"s", "l", "2"}}, "[s]\r\nk=1\r\nl=2\r\n"},
      // Before the mark that ends the file for older readers.
      {"[s]\r\nk=1\r\n\r\n\x1a\x1a",
       {{"s", "l", "2"}, {"t", "m", "3"}},
       "[s]\r\nk=1\r\nl=2\r\n\r\n[t]\r\nm=3\r\n\x1a\x1a"},
      {"[s]\r\nk=1\x1a", {{"s", "l", "2"}}, "[s]\r\nk=1\r\nl=2\r\n\x1a"},
      // No value begins lines of its own.
      {"[s]\r\nk=1\r\n", {{"s", "k", "a\r\n[x]\ny=1\rz\0tail"s}}, "[s]\r\nk=a [x] y=1 z\r\n"},
      {"[s]\r\nk=1\r\n[l=1\r\n", {{"s", "[k", "a]"}, {"s", "[l", "]"}}, "[s]\r\nk=1\r\n[l=1\r\n"},
      // In the file's encoding.
      {"[s]\r\nk=\x81\r\n", {{"s", "\u00e9", "\u20ac\u4e2d"}}, "[s]\r\nk=\x81\r\n\xe9=\x80?\r\n"},
      {"\xef\xbb\xbf[s]\r\nk=\xff\r\n",
       {{"s", "l", "\u00e9"}},
       "\xef\xbb\xbf[s]\r\nk=\xff\r\nl=\u00e9\r\n"},
      {"\xff\xfe[\0s\0]\0\n\0k\0=\0\x3d\xd8\x01\xde\x01\xde\n\0!"s,
       {{"s", "l", "\u20ac"}},
       "\xff\xfe[\0s\0]\0\n\0k\0=\0\x3d\xd8\x01\xde\x01\xde\n\0l\0=\0\xac\x20\n\0!"s},
      {"\xfe\xff\0[\0s\0]\0\n"s,
       {{"s", "l", "\u20ac"}},
       "\xfe\xff\0[\0s\0]\0\n\0l\0=\x20\xac\0\n"s},
  };
  for (const auto& [before, writes, after] : cases) {
    Profile profile(before, western);
    EXPECT_EQ(profile.bytes(), before);
    for (const auto& [section, key, value] : writes) profile.write(section, key, value);
    EXPECT_EQ(profile.bytes(), after) << "from " << before;
    // What it answers now is what the file will answer.
    const Profile again(after, western);
    EXPECT_EQ(profile.read("", ""), again.read("", "")) << after;
    for (const auto& [section, key, value] : writes) {
      EXPECT_EQ(profile.read(section, ""), again.read(section, "")) << after;
      EXPECT_EQ(profile.read(section, key), again.read(section, key)) << after;
    }
  }
}

TEST(ProfileTest, SaysWhenAKeyCannotBeOne) {
  Profile profile("[s]\r\n", western);
  EXPECT_FALSE(profile.write("s", "[t]", "1"));
  EXPECT_FALSE(profile.write("new", "[t", "a]"));
  EXPECT_FALSE(profile.write("s", "a=b", "1")) << "it would be the key a";
  EXPECT_TRUE(profile.write("s", "[t", "1"));
  EXPECT_EQ(profile.bytes(), "[s]\r\n[t=1\r\n");
}

class ProfileFileTest : public DiskTest {
 protected:
  const std::string file = "C:\\FS\\panel.cfg";

  Outcome write(const std::string& value) {
    return WriteProfile(files, western, file, "fltsim", "alias", value);
  }
};

TEST_F(ProfileFileTest, MakesAMissingFileButNeverInThePlaceOfOneThatStands) {
  EXPECT_EQ(write("x").number(), err::pathNotFound);
  ASSERT_TRUE(disk.makeFolder("C:\\FS").ok());
  EXPECT_EQ(ReadProfile(disk, western, file, "fltsim", "alias"), "");
  ASSERT_TRUE(write("x").ok());
  EXPECT_EQ(drive.read(file), "[fltsim]\r\nalias=x\r\n");

  for (const int error : {err::permissionDenied, err::deviceIo, err::fileNotFound}) {
    files.failWhen("readFile", file, error);
    EXPECT_EQ(write("y").number(), error);
    ASSERT_TRUE(files.heal());
    EXPECT_EQ(drive.read(file), "[fltsim]\r\nalias=x\r\n");
  }
  ASSERT_TRUE(disk.setAttributes(file, {.readOnly = true}).ok());
  EXPECT_FALSE(write("y").ok());
  EXPECT_EQ(ReadProfile(disk, western, file, "FLTSIM", "ALIAS"), "x");
}

}  // namespace skv::test
