// Picture files of every kind that is read, of kinds that are not, and broken ones.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "platform/desktop/qt_pictures.h"
#include "support/disk_fixture.h"
#include "support/metafile_program.h"
#include "support/zip_maker.h"

namespace skv::test {

using namespace std::string_literals;

std::string fromHex(std::string_view hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes.push_back(static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16)));
  return bytes;
}

// `header`: its size; what is longer than 40 bytes stands at the beginning of `rest`.
std::string bmp(long width, long height, int bits, long compression, const std::string& rest,
                int header = 40) {
  const int colours = bits <= 8 ? 2 : 0;
  return "BM" + little(0, 8) + little(14 + header + colours * 4, 4) + little(header, 4) +
         little(width, 4) + little(height, 4) + little(1, 2) + little(bits, 2) +
         little(compression, 4) + little(0, 8) + little(0, 4) + little(colours, 4) + little(0, 4) +
         rest;
}
std::string masks(std::initializer_list<long> each) {
  std::string bytes;
  for (const long mask : each) bytes += little(mask, 4);
  return bytes;
}
constexpr long dxt1 = 0x31545844, dxt3 = 0x33545844;
// A block of red pixels, but for the first, which is blue, and the last, which is between.
const std::string block = little(0xF800, 2) + little(0x001F, 2) + "\x01\0\0\x80"s;

const std::string red = "\x00\x00\xFF"s, green = "\x00\xFF\x00"s;  // blue, green, red
// 2 by 2, red over green.
const std::string twoRows = red + red + little(0, 2) + green + green + little(0, 2);
const std::string palette = red + little(0, 1) + green + little(0, 1);

// A red and a green pixel on a screen of the size.
std::string gif(int width, int height, bool redIsClear = false) {
  return "GIF89a" + little(width, 2) + little(height, 2) + "\xF0\0\0"s + "\xFF\0\0\0\xFF\0"s +
         "!\xF9\x04"s + (redIsClear ? "\x01" : "\0"s) + "\0\0\0\0"s + "," + little(0, 4) +
         little(2, 2) + little(1, 2) + "\0\x02\x02\x44\x0A\0;"s;
}

// Red and green.
const std::string png = fromHex(
    "89504e470d0a1a0a0000000d49484452000000020000000108020000007b40e8dd0000001249444154081d010700f8"
    "ff00ff000000ff0007ff01ff8e2f870e0000000049454e44ae426082");
const std::string webp =
    fromHex("524946461e000000574542505650384c110000002f010000000fb0fff31ff31f1532a2ff0100");

// 16 by 8 pixels in grey, the left half black, the right one white.
const std::string jpeg = fromHex(
    "ffd8ffe000104a46494600010100000100010000ffdb0043001b12141714111b1716171e1c1b2028422b2825252851"
    "3a3d3042605565645f555d5b6a7899816a7190735b5d85b586909ea3abadab6780bcc9baa6c799a8aba4ffc0000b08"
    "0008001001011100ffc4001500010100000000000000000000000000000607ffc40014100100000000000000000000"
    "000000000000ffda0008010100003f0032a63fffd9");
std::string turned(char orientation) {
  const std::string exif = "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0"s +
                           orientation + std::string(6, '\0');
  return jpeg.substr(0, 2) + "\xFF\xE1\0"s + static_cast<char>(exif.size() + 2) + exif +
         jpeg.substr(2);
}

std::string record(int function, std::initializer_list<int> words) {
  std::string bytes = little(3 + static_cast<long>(words.size()), 4) + little(function, 2);
  for (const int word : words) bytes += little(word, 2);
  return bytes;
}
// A red rectangle in the right lower quarter of what `window` sets up.
std::string metafile(const std::string& window) {
  const std::string body = window + record(0x02FC, {0, 0xFF, 0, 0}) + record(0x012D, {0}) +
                           record(0x041B, {80, 180, 50, 100}) + record(0, {});
  return little(1, 2) + little(9, 2) + little(0x300, 2) +
         little(static_cast<long>(body.size()) / 2 + 9, 4) + little(2, 2) + little(7, 4) +
         little(0, 2) + body;
}
std::string window(int width, int height) {
  return record(0x020B, {0, 0}) + record(0x020C, {height, width});
}
std::string placeable(int width, int height, int inch) {
  return "\xD7\xCD\xC6\x9A"s + little(0, 6) + little(width, 2) + little(height, 2) +
         little(inch, 2) + little(0, 6) + metafile(window(200, 100));
}

class PictureReaderTest : public DiskTest {
 protected:
  Result<Pixels> read(const std::string& content, int longestSide = 0) {
    drive.write("C:\\picture.jpg", content);
    return reader.read("C:\\picture.jpg", longestSide);
  }
  // As red, green, blue.
  static int pixel(const Pixels& picture, int x, int y) {
    const auto* at = &picture.rows[static_cast<std::size_t>(y) * picture.rowBytes() +
                                   static_cast<std::size_t>(x) * 3];
    return at[2] << 16 | at[1] << 8 | at[0];
  }

  QtPictureReader reader{files, metafileProgram()};
};

TEST_F(PictureReaderTest, ReadsByContentUprightAndOnWhite) {
  struct {
    const char* what;
    std::string content;
    int longestSide, width, height;
    int first, last;  // the pixels in the corners
  } const cases[] = {
      {"bitmap", bmp(2, 2, 24, 0, twoRows), 0, 2, 2, 0x00FF00, 0xFF0000},
      {"top-down bitmap", bmp(2, -2, 24, 0, twoRows), 0, 2, 2, 0xFF0000, 0x00FF00},
      {"run lengths", bmp(4, 2, 8, 1, palette + "\4\0\0\0\4\1\0\1"s), 0, 4, 2, 0x00FF00, 0xFF0000},
      {"32 bits without alpha", bmp(1, 1, 32, 0, red + little(0, 1)), 0, 1, 1, 0xFF0000, 0xFF0000},
      {"pixels that are skipped", bmp(3, 3, 8, 1, palette + "\1\1\0\0\0\2\2\1\1\1\0\1"s), 0, 3, 3,
       0xFF0000, 0xFF0000},
      {"and ended early, in halves", bmp(4, 2, 4, 2, palette + "\0\3\x11\x10\0\1"s), 0, 4, 2,
       0xFF0000, 0xFF0000},
      {"no mark of the end", bmp(2, 1, 8, 1, palette + "\2\1"s), 0, 2, 1, 0x00FF00, 0x00FF00},
      {"two colours", bmp(9, 1, 1, 0, palette + "\x80\0\0\0"s), 0, 9, 1, 0x00FF00, 0xFF0000},
      {"OS/2",
       "BM" + little(0, 8) + little(32, 4) + little(12, 4) + little(2, 2) + little(1, 2) +
           little(1, 2) + little(1, 2) + red + green + "\x40\0\0\0"s,
       0, 2, 1, 0xFF0000, 0x00FF00},
      {"header of 52 bytes",
       bmp(2, 1, 16, 3, masks({0xF800, 0x7E0, 0x1F}) + little(0xF800, 2) + little(0x7E0, 2), 52), 0,
       2, 1, 0xFF0000, 0x00FF00},
      {"header of 56 bytes, one bit of alpha",
       bmp(2, 1, 16, 3,
           masks({0x7C00, 0x3E0, 0x1F, 0x8000}) + little(0x7C00, 2) + little(0x83E0, 2), 56),
       0, 2, 1, 0xFFFFFF, 0x00FF00},
      {"masks of ten bits",
       bmp(2, 1, 32, 3, masks({0x3FF00000, 0xFFC00, 0x3FF, 0}) + masks({0x3FF00000, 0x80200}), 56),
       0, 2, 1, 0xFF0000, 0x008080},
      {"texture, a block and its edge", bmp(5, -4, 24, dxt1, block + block), 0, 5, 4, 0x0000FF,
       0xFF0000},
      {"texture from the bottom, half clear, behind its own header",
       bmp(4, 4, 32, dxt3, "FS70" + little(20, 16) + "\xFF\xFF\xFF\xFF\xFF\xFF\xF0\xFF"s + block),
       0, 4, 4, 0xFFFFFF, 0xFF0000},
      {"PNG", png, 0, 2, 1, 0xFF0000, 0x00FF00},
      {"WebP", webp, 0, 2, 1, 0xFF0000, 0x00FF00},
      {"GIF with a clear pixel", gif(2, 1, true), 0, 2, 1, 0xFFFFFF, 0x00FF00},
      {"part of the screen", gif(4, 3), 0, 4, 3, 0xFF0000, 0xFF0000},
      {"upside down", turned(3), 0, 16, 8, 0xFFFFFF, 0x000000},
      {"turned and smaller", turned(6), 8, 4, 8, 0x000000, 0xFFFFFF},
      {"JPEG, not made larger", jpeg, 1000, 16, 8, 0x000000, 0xFFFFFF},
      {"plain metafile", metafile(window(200, 100)), 0, 200, 100, 0xFFFFFF, 0xFFFFFF},
      {"smaller metafile", metafile(window(200, 100)), 50, 50, 25, 0xFFFFFF, 0xFFFFFF},
      {"large metafile", metafile(window(20000, 10000)), 0, 2000, 1000, 0xFFFFFF, 0xFFFFFF},
      {"placeable metafile", placeable(1000, 500, 960), 0, 100, 50, 0xFFFFFF, 0xFFFFFF},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const auto picture = read(c.content, c.longestSide);
    ASSERT_TRUE(picture.ok()) << picture.outcome().description();
    EXPECT_EQ(picture.value().width, c.width);
    EXPECT_EQ(picture.value().height, c.height);
    EXPECT_EQ(pixel(picture.value(), 0, 0), c.first);
    EXPECT_EQ(pixel(picture.value(), picture.value().width - 1, picture.value().height - 1),
              c.last);
  }
  const auto drawn = read(placeable(1000, 500, 960));
  EXPECT_EQ(pixel(drawn.value(), 75, 37), 0xFF0000) << "the window fills the picture";
  EXPECT_EQ(pixel(drawn.value(), 25, 37), 0xFFFFFF);
}

TEST_F(PictureReaderTest, SaysWhyThereIsNoPicture) {
  const std::string whole = bmp(2, 2, 24, 0, twoRows);
  std::string hugeJpeg = jpeg;
  std::string hugePng = png;
  hugePng[16] = '\x7F';
  hugeJpeg.replace(hugeJpeg.find("\xFF\xC0") + 5, 4, "\xFF\xDC\xFF\xDC");
  struct {
    const char* what;
    std::string content;
    const char* reason;
  } const cases[] = {
      {"nothing", "", "no JPEG"},
      {"vector picture", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>",
       "no JPEG"},
      {"bitmap cut short", whole.substr(0, whole.size() - 1), "cut short"},
      {"GIF cut short", gif(2, 1).substr(0, gif(2, 1).size() - 3), "cut short"},
      {"JPEG cut short", jpeg.substr(0, jpeg.size() - 2), "cut short"},
      {"metafile cut short", metafile(window(9, 9)).substr(0, 60), "damaged"},
      {"bitmap too large", bmp(60000, 60000, 24, 0, twoRows), "100 million"},
      {"GIF too large", gif(65535, 65535), "100 million"},
      {"JPEG too large", hugeJpeg, "100 million"},
      {"size below zero", bmp(-5, 5, 24, 0, twoRows), "no JPEG"},
      {"lowest size", bmp(5, -2147483648L, 24, 0, twoRows), "100 million"},
      {"header cut short", whole.substr(0, 30), "no JPEG"},
      {"run lengths cut short", bmp(2, 2, 8, 1, palette + "\2\1\0"s), "cut short"},
      {"texture cut short", bmp(8, 4, 24, dxt1, block + block.substr(1)), "cut short"},
      {"PNG too large", hugePng, "100 million"},
      {"WebP cut short", webp.substr(0, webp.size() - 6), "damaged"},
      {"unknown depth", bmp(2, 2, 7, 0, twoRows), "damaged"},
  };
  testing::internal::CaptureStderr();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const auto picture = read(c.content);
    ASSERT_FALSE(picture.ok());
    EXPECT_EQ(picture.outcome().number(), err::invalidPicture);
    EXPECT_TRUE(holds(picture.outcome().description(), c.reason));
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_TRUE(read(png.substr(0, png.size() - 20)).outcome().description().ends_with("short)"));
}

TEST_F(PictureReaderTest, WhatIsNoFileIsNotOpened) {
  std::filesystem::create_directory(drive.native("C:\\folder.jpg"));
  ASSERT_EQ(mkfifo(drive.native("C:\\pipe.jpg").c_str(), 0600), 0);
  drive.link("C:\\device.jpg", "/dev/zero");
  drive.write("C:\\huge.bmp", "BM");
  ASSERT_EQ(truncate(drive.native("C:\\huge.bmp").c_str(), off_t{2} << 30), 0);
  for (const auto& [path, number] : {std::pair{"C:\\folder.jpg", err::pathFileAccess},
                                     {"C:\\pipe.jpg", err::pathFileAccess},
                                     {"C:\\device.jpg", err::pathFileAccess},
                                     {"C:\\huge.bmp", err::invalidPicture},
                                     {"C:\\missing.jpg", err::fileNotFound},
                                     {"C:\\missing\\a.jpg", err::pathNotFound}})
    EXPECT_EQ(reader.read(path).outcome().number(), number) << path;
}

TEST_F(PictureReaderTest, StopsWhenToldAndNeedsItsProgramForMetafilesOnly) {
  std::stop_source stop;
  stop.request_stop();
  for (const std::string& content : {jpeg, metafile(window(9, 9))}) {
    drive.write("C:\\a.jpg", content);
    EXPECT_EQ(reader.read("C:\\a.jpg", 0, stop.get_token()).outcome().number(), err::cancelled);
  }
  const QtPictureReader without(files, "/nowhere/skyvault-wmf");
  EXPECT_EQ(without.read("C:\\a.jpg").outcome().number(), err::invalidPicture);
  drive.write("C:\\a.jpg", jpeg);
  EXPECT_TRUE(without.read("C:\\a.jpg").ok());
}

// The drawing program may go wrong in any way: it is a picture less, and nothing is left of it.
TEST_F(PictureReaderTest, AProgramThatFailsIsAPictureLess) {
  drive.write("C:\\a.wmf", metafile(window(9, 9)));
  const std::string program = drive.native("C:\\draw");
  const auto descriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto before = descriptors();
  for (const char* script : {"exit 1", "kill -SEGV $$", "printf 'P6\\n99999 99999\\n255\\n'",
                             "printf 'P6\\n2 2\\n255\\nab'", "printf 'P6\\n-2 2\\n255\\n'",
                             "cat /dev/zero", "printf 'P6\\n99999999999999999999'"}) {
    drive.write("C:\\draw", std::string("#!/bin/sh\n") + script + "\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    const auto picture = QtPictureReader(files, program).read("C:\\a.wmf");
    EXPECT_EQ(picture.outcome().number(), err::invalidPicture) << script;
  }
  EXPECT_EQ(descriptors(), before);
}

TEST_F(PictureReaderTest, AnotherFileIsAnotherState) {
  drive.write("C:\\a.jpg", jpeg);
  const std::string first = reader.state("C:\\a.jpg");
  EXPECT_NE(first, "");
  EXPECT_EQ(reader.state("C:\\A.JPG"), first);
  drive.write("C:\\b.jpg", turned(3).substr(0, jpeg.size()));
  const auto time = files.modified("C:\\a.jpg");
  ASSERT_TRUE(files.moveFile("C:\\b.jpg", "C:\\a.jpg").ok());
  drive.setModified("C:\\a.jpg", time.value());
  EXPECT_NE(reader.state("C:\\a.jpg"), first) << "of the same length and time";
  drive.remove("C:\\a.jpg");
  EXPECT_EQ(reader.state("C:\\a.jpg"), "");
}

}  // namespace skv::test
