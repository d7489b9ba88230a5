// skyvault-bench-pictures: pictures saved and scaled, and the seconds it took.
//   draw FILE.ppm      makes a picture of 1920 by 1080, for cjpeg
//   save FILE.ppm      SaveJPEGFile of its pixels to FILE.ppm.jpg: encoding, flushing, naming
//   resample           cDIBSection::Resample of 1600 by 1200 to 3200 by 2400, and the same by Qt's
//                      smooth scaling in the pixel format that it is fastest with
#include <QImage>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <iostream>
#include <stdexcept>

#include "pictures/cdib_section.h"
#include "pictures/jpeg_file.h"
#include "platform/disk/drive_file_system.h"
#include "sample/sample_simulator.h"

namespace skv::bench {
namespace {

template <class Work>
double seconds(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// As photographs have it: soft shapes, and some noise.
QImage drawn(int width, int height) {
  QImage image(width, height, QImage::Format_BGR888);
  unsigned noise = 1;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width * 3; ++x) {
      noise = noise * 1664525 + 1013904223;
      image.scanLine(y)[x] = static_cast<uchar>(120 + 80 * std::sin(x / 70.0) * std::cos(y / 50.0) +
                                                static_cast<double>(noise >> 28));
    }
  }
  return image;
}

cDIBSection dibOf(const QImage& image) {
  cDIBSection dib;
  dib.CreateFromPicture({image.width(),
                         image.height(),
                         static_cast<std::size_t>(image.bytesPerLine()),
                         {image.constBits(), static_cast<std::size_t>(image.sizeInBytes())}});
  return dib;
}

double save(const std::filesystem::path& ppm) {
  sample::makeDrives(ppm.parent_path() / "run");
  DriveFileSystem disk((ppm.parent_path() / "run/dosdevices").string());
  const cDIBSection dib = dibOf(QImage(ppm.c_str()).convertToFormat(QImage::Format_BGR888));
  const std::string target = disk.windowsPath(ppm.string() + ".jpg");
  return seconds([&] {
    if (!SaveJPEGFile(disk, dib, target, 70).ok()) throw std::runtime_error("not saved");
  });
}

std::pair<double, double> resample() {
  const QImage image = drawn(1600, 1200);
  const cDIBSection dib = dibOf(image);
  double ours = 1, theirs = 1;
  for (int round = 0; round < 15; ++round) {
    ours = std::min(ours, seconds([&] {
                      if (!dib.Resample(2400, 3200)) throw std::runtime_error("not scaled");
                    }));
    for (const auto format : {QImage::Format_RGB32, QImage::Format_RGB888}) {
      const QImage source = image.convertToFormat(format);
      theirs = std::min(theirs, seconds([&] {
                          const QImage scaled = source.scaled(3200, 2400, Qt::IgnoreAspectRatio,
                                                              Qt::SmoothTransformation);
                          if (scaled.isNull()) throw std::runtime_error("not scaled by Qt");
                        }));
    }
  }
  return {ours, theirs};
}

int run(int count, char** words) {
  const std::string what = count > 1 ? words[1] : "";
  if (what == "draw" && count == 3) return drawn(1920, 1080).save(words[2]) ? 0 : 1;
  if (what == "save" && count == 3) {
    std::cout << save(words[2]) << '\n';
    return 0;
  }
  if (what != "resample") return 2;
  const auto [ours, theirs] = resample();
  std::cout << ours << ' ' << theirs << '\n';
  return 0;
}

}  // namespace
}  // namespace skv::bench

int main(int count, char** words) try {
  return skv::bench::run(count, words);
} catch (const std::exception& failure) {
  std::cerr << failure.what() << '\n';
  return 1;
}
