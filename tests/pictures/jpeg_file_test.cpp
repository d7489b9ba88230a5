#include "pictures/jpeg_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cmath>

#include "platform/desktop/qt_pictures.h"
#include "support/disk_fixture.h"
#include "support/failing_calls.h"
#include "support/text.h"

namespace skv::test {

class JpegFileTest : public DiskTest {
 protected:
  // Colours that change slowly: red to the right, green downwards, no blue.
  static cDIBSection picture(int width, int height) {
    cDIBSection dib;
    EXPECT_TRUE(dib.Create(width, height));
    for (int y = 0; y < height; ++y) {
      std::uint8_t* pixel = dib.DIBSectionBitsPtr() + (height - 1 - y) * dib.BytesPerScanLine();
      for (int x = 0; x < width; ++x) {
        *pixel++ = 20;
        *pixel++ = static_cast<std::uint8_t>(40 + y);
        *pixel++ = static_cast<std::uint8_t>(90 + x);
      }
      std::fill_n(pixel, dib.BytesPerScanLine() - width * 3, 255);  // must not be seen
    }
    return dib;
  }

  struct stat status() const {
    struct stat found {};
    EXPECT_EQ(::stat(disk.nativePath(file).valueOr("").c_str(), &found), 0);
    return found;
  }

  const std::string folder = "C:\\plane\\", file = folder + "SKVscrn.jpg";
};

TEST_F(JpegFileTest, AnotherDecoderSeesTheSamePicture) {
  const QtPictureReader reader(disk);
  drive.clear(folder);
  const std::pair<int, int> sizes[] = {{1, 1}, {2, 3}, {3, 2}, {4, 4}, {5, 9}, {158, 97}};
  for (const auto& [width, height] : sizes) {
    const cDIBSection dib = picture(width, height);
    ASSERT_TRUE(SaveJPEGFile(files, dib, file, 100).ok());
    const auto read = reader.read(file);
    ASSERT_TRUE(read.ok()) << read.outcome().description();
    const Pixels& seen = read.value();
    ASSERT_EQ(std::pair(seen.width, seen.height), std::pair(width, height));
    double difference = 0;
    for (int y = 0; y < height; ++y)
      for (int i = 0; i < width * 3; ++i)
        difference += std::abs(
            seen.rows[static_cast<std::size_t>(y) * seen.rowBytes() + static_cast<std::size_t>(i)] -
            dib.DIBSectionBitsPtr()[(height - 1 - y) * dib.BytesPerScanLine() + i]);
    EXPECT_LT(difference / (width * height * 3), 4) << width;
  }
  ASSERT_TRUE(SaveJPEGFile(files, picture(158, 97), file, 100).ok());
  const auto fine = disk.fileLength(file).valueOr(0);
  ASSERT_TRUE(SaveJPEGFile(files, picture(158, 97), file, 20).ok());
  EXPECT_LT(disk.fileLength(file).valueOr(0), fine / 2);
}

TEST_F(JpegFileTest, AReplacedFileKeepsItsAttributesAndTimes) {
  const struct timespec times[] = {{1000000000, 123456789}, {1020304050, 987654321}};
  for (const bool kept : {false, true}) {
    drive.clear(folder);
    drive.write(folder + "skvSCRN.jpg", "old");
    ASSERT_TRUE(disk.setAttributes(file, {.readOnly = kept, .archive = kept}).ok());
    const auto before = disk.attributes(file);  // a disk may know no archive
    ASSERT_EQ(::utimensat(AT_FDCWD, drive.native(folder + "skvSCRN.jpg").c_str(), times, 0), 0);
    ASSERT_TRUE(SaveJPEGFile(files, picture(9, 9), file, 70).ok());
    EXPECT_EQ(drive.tree(folder), Lines{"skvSCRN.jpg"});
    EXPECT_GT(disk.fileLength(file).valueOr(0), 100U);
    const struct stat now = status();
    EXPECT_EQ(std::tuple(now.st_atim.tv_sec, now.st_atim.tv_nsec, now.st_mtim.tv_sec),
              std::tuple(times[0].tv_sec, times[0].tv_nsec, times[1].tv_sec));
    EXPECT_EQ(now.st_mtim.tv_nsec, times[1].tv_nsec);
    EXPECT_EQ(disk.attributes(file).value().readOnly, kept);
    EXPECT_EQ(disk.attributes(file).value().archive, before.value().archive);
  }
  // Behind a link lies no file of the add-on's.
  drive.clear(folder);
  drive.write("C:\\elsewhere.jpg", "foreign");
  drive.setModified("C:\\elsewhere.jpg", {1, 0});
  drive.link(file, "C:\\elsewhere.jpg");
  ASSERT_TRUE(SaveJPEGFile(files, picture(9, 9), file, 70).ok());
  EXPECT_EQ(drive.read("C:\\elsewhere.jpg"), "foreign");
  EXPECT_FALSE(disk.isLink(file));
  EXPECT_GT(status().st_mtim.tv_sec, 1600000000) << "a file of now";
}

TEST_F(JpegFileTest, AFailedSaveTellsWhyAndLeavesTheOldFile) {
  drive.write(file, "old");
  const auto fails = [&](const cDIBSection& dib, const std::string& path, const char* told) {
    const Outcome saved = SaveJPEGFile(files, dib, path, 70);
    EXPECT_TRUE(saved.description().starts_with("Failed to save to JPG ") &&
                holds(saved.description(), told));
    EXPECT_EQ(drive.tree(folder), Lines{"SKVscrn.jpg"});
    EXPECT_EQ(drive.read(file), "old");
  };
  cDIBSection wide;
  ASSERT_TRUE(wide.Create(65501, 1));
  fails(wide, file, "65500");
  fails(cDIBSection(), file, "");
  fails(picture(9, 9), "C:\\missing\\a.jpg", "76: Path not found: C:\\missing");
  withFullDisk(100, [&] { fails(picture(64, 64), file, "61"); });
}

}  // namespace skv::test
