#include "sample/sample_pictures.h"

#include <jpeglib.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "sample/sample_files.h"

namespace skv::sample {
namespace {

constexpr int width = 320, height = 200;
constexpr int samples = 2;  // of a pixel, each way

struct Colour {
  double red = 0, green = 0, blue = 0;
};

Colour of(Paint paint) {
  return {static_cast<double>(paint.red), static_cast<double>(paint.green),
          static_cast<double>(paint.blue)};
}
Colour mixed(Colour a, Colour b, double share) {
  const double part = std::clamp(share, 0.0, 1.0);
  return {a.red + (b.red - a.red) * part, a.green + (b.green - a.green) * part,
          a.blue + (b.blue - a.blue) * part};
}
constexpr Colour black{}, white{255, 255, 255};

struct Point {
  double x, y;
};

// Whether the point lies in the polygon.
bool in(const std::vector<Point>& corners, Point at) {
  bool inside = false;
  for (std::size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
    const Point a = corners[i], b = corners[j];
    if ((a.y > at.y) != (b.y > at.y) && at.x < (b.x - a.x) * (at.y - a.y) / (b.y - a.y) + a.x)
      inside = !inside;
  }
  return inside;
}

double ellipse(Point at, Point middle, double across, double down) {
  return std::hypot((at.x - middle.x) / across, (at.y - middle.y) / down);
}

// Between 0 and 1.
double chance(Random& random) { return random.below(1000) / 1000.0; }

// Paints every point of a picture that is 1.6 wide and 1 high.
template <class At>
std::string jpeg(const At& at) {
  std::vector<unsigned char> rows;
  rows.reserve(std::size_t{width} * height * 3);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      Colour sum;
      for (int part = 0; part < samples * samples; ++part) {
        const double dx = (part % samples + 0.5) / samples, dy = (part / samples + 0.5) / samples;
        const Colour seen = at(Point{(x + dx) / height, (y + dy) / height});
        sum = {sum.red + seen.red, sum.green + seen.green, sum.blue + seen.blue};
      }
      for (const double value : {sum.red, sum.green, sum.blue})
        rows.push_back(static_cast<unsigned char>(value / (samples * samples)));
    }

  jpeg_compress_struct file;
  jpeg_error_mgr errors;
  file.err = jpeg_std_error(&errors);
  jpeg_create_compress(&file);
  unsigned char* bytes = nullptr;
  unsigned long count = 0;
  jpeg_mem_dest(&file, &bytes, &count);
  file.image_width = width;
  file.image_height = height;
  file.input_components = 3;
  file.in_color_space = JCS_RGB;
  jpeg_set_defaults(&file);
  jpeg_set_quality(&file, 85, TRUE);
  jpeg_start_compress(&file, TRUE);
  while (file.next_scanline < file.image_height) {
    JSAMPROW row = rows.data() + std::size_t{file.next_scanline} * width * 3;
    jpeg_write_scanlines(&file, &row, 1);
  }
  jpeg_finish_compress(&file);
  std::string result(bytes, bytes + count);
  jpeg_destroy_compress(&file);
  std::free(bytes);
  return result;
}

// A sky with clouds over hills.
class Country {
 public:
  explicit Country(Random& random)
      : high_(mixed({58, 118, 196}, {38, 62, 120}, chance(random))),
        low_(mixed({196, 222, 242}, {250, 206, 168}, chance(random))),
        field_(mixed({92, 128, 62}, {142, 128, 74}, chance(random))),
        phase_(6 * chance(random)) {
    for (int i = 0; i < 9; ++i)
      clouds_.push_back({1.7 * chance(random), 0.08 + 0.4 * chance(random)});
  }
  Colour at(Point p, double horizon) const {
    const double hill = horizon - 0.05 + 0.035 * std::sin(5 * p.x + phase_) +
                        0.018 * std::sin(13 * p.x + 2 * phase_);
    if (p.y > horizon) return mixed(mixed(field_, low_, 0.35), field_, (p.y - horizon) * 5);
    if (p.y > hill) return mixed({74, 96, 110}, field_, (p.y - hill) * 9);
    Colour sky = mixed(high_, low_, p.y / horizon);
    for (const Point& cloud : clouds_)
      for (int puff = -1; puff <= 1; ++puff) {
        const Point middle{cloud.x + 0.07 * puff, cloud.y + 0.012 * puff * puff};
        sky = mixed(sky, white, 0.55 * (1 - ellipse(p, middle, 0.11, 0.035)));
      }
    return sky;
  }

 private:
  Colour high_, low_, field_;
  double phase_;
  std::vector<Point> clouds_;
};

}  // namespace

std::string aircraftJpeg(Paint body, Paint accent, std::string_view seed) {
  Random random(seed);
  const Country country(random);
  const Colour hull = of(body), stripe = of(accent);
  const std::vector<Point> fin{{0.25, 0.46}, {0.19, 0.20}, {0.29, 0.20}, {0.46, 0.45}},
      tail{{0.22, 0.47}, {0.12, 0.41}, {0.18, 0.41}, {0.40, 0.47}},
      wing{{0.98, 0.55}, {0.74, 0.55}, {0.46, 0.71}, {0.54, 0.71}};
  return jpeg([&](Point p) {
    const double nose = p.x > 0.95 ? (p.x - 0.95) / 0.42 : (0.95 - p.x) / 0.78;
    const double half = 0.082 * std::sqrt(std::max(0.0, 1 - nose * nose)),
                 axis = p.x < 0.6 ? 0.5 - (0.6 - p.x) * 0.06 : 0.5, from = (p.y - axis) / 0.082;
    if (in(wing, p)) return mixed({190, 196, 202}, {120, 128, 138}, (p.y - 0.55) * 5);
    const double engine = ellipse(p, {0.76, 0.615}, 0.095, 0.036);
    if (engine < 1) return p.x > 0.835 ? Colour{60, 64, 70} : mixed(stripe, black, engine * 0.4);
    if (std::abs(p.y - axis) < half) {
      const bool window = p.x > 0.42 && p.x < 1.16 && from > -0.32 && from < -0.08;
      if (window && std::fmod(p.x, 0.032) < 0.016) return Colour{48, 58, 74};
      if (p.x > 1.21 && p.x < 1.29 && from > -0.5 && from < -0.1) return Colour{40, 50, 66};
      if (from > 0.12 && from < 0.34) return stripe;
      return mixed(hull, {110, 118, 132}, 0.75 * (from + 0.35));
    }
    if (in(fin, p))
      return mixed(stripe, white, ellipse(p, {0.27, 0.31}, 0.035, 0.035) < 1 ? 0.8 : 0);
    if (in(tail, p)) return mixed(hull, black, 0.22);
    return country.at(p, 0.86);
  });
}

std::string panelJpeg(std::string_view seed) {
  Random random(seed);
  const Country country(random);
  std::vector<double> needles;
  for (int i = 0; i < 12; ++i) needles.push_back(6.28 * chance(random));
  return jpeg([&](Point p) {
    const double top = 0.34 + 0.05 * std::pow(p.x - 0.8, 2);
    if (p.y < top) return country.at({p.x, p.y + 0.35}, 0.62);
    if (p.y < top + 0.025) return Colour{22, 22, 24};
    const int column = static_cast<int>((p.x - 0.05) / 0.25), row = p.y < 0.69 ? 0 : 1;
    const Point middle{0.05 + 0.25 * column + 0.125, row == 0 ? 0.54 : 0.82};
    const double far = ellipse(p, middle, 0.105, 0.105);
    if (far < 1 && column >= 0 && column < 6) {
      if (far > 0.94) return Colour{176, 178, 180};
      const double turn = needles[static_cast<std::size_t>(row * 6 + column)];
      const double along = (p.x - middle.x) * std::cos(turn) + (p.y - middle.y) * std::sin(turn),
                   beside = (p.y - middle.y) * std::cos(turn) - (p.x - middle.x) * std::sin(turn);
      if (along > -0.015 && along < 0.075 && std::abs(beside) < 0.006) return Colour{250, 246, 232};
      const double angle = std::atan2(p.y - middle.y, p.x - middle.x);
      if (far > 0.74 && std::fmod(angle + 6.3, 0.524) < 0.07) return Colour{216, 216, 206};
      if (row == 0 && column == 1)
        return p.y < middle.y + 0.25 * (p.x - middle.x) ? Colour{64, 132, 196}
                                                        : Colour{120, 88, 52};
      return Colour{18, 19, 22};
    }
    return mixed({84, 90, 96}, {58, 62, 68}, (p.y - 0.4) * 1.6);
  });
}

std::string sceneryJpeg(std::string_view seed) {
  Random random(seed);
  const Country country(random);
  const double to = 0.6 + 0.4 * chance(random), horizon = 0.44;
  const double lake = 0.2 + 1.2 * chance(random);
  return jpeg([&](Point p) {
    if (p.y < horizon + 0.02) return country.at(p, horizon);
    if (ellipse(p, {lake, 0.52}, 0.34, 0.035) < 1) return Colour{104, 152, 190};
    const double near = (p.y - horizon) / (1 - horizon);  // 0 at the horizon
    const double middle = to + (0.8 - to) * near, half = 0.012 + 0.26 * near;
    const double across = (p.x - middle) / half;
    if (near > 0.12 && std::abs(across) < 1) {
      const bool line = std::abs(across) < 0.03 && std::fmod(1 / near, 0.6) < 0.35;
      const bool edge = std::abs(across) > 0.9 && std::abs(across) < 0.95;
      return line || edge ? Colour{232, 232, 228} : Colour{92, 94, 98};
    }
    const Colour grass = country.at({p.x, p.y}, horizon);
    const bool mown = std::fmod(p.x / (0.2 + near) + 9, 0.3) < 0.15;
    return mown ? grass : mixed(grass, black, 0.07);
  });
}

}  // namespace skv::sample
