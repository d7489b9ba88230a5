// The small icons of the aircraft list: eight pictures, numbered from 1, each of three cells that
// say where an aircraft lives. Picture n stands for the places in n - 1: bit 1 the simulator (left
// cell), bit 2 the Packages (middle), bit 4 the Hangar (right). Picture 1 is blank.
#pragma once

#include <QPalette>
#include <QPixmap>
#include <QString>
#include <map>

namespace skv::ui::qt {

class PlacePictures {
 public:
  // Device-independent pixels.
  static constexpr int cell = 32;
  static constexpr QSize size{3 * cell, cell};

  // Blank for a number that is no picture. Drawn once for each sharpness.
  const QPixmap& picture(int number, const QPalette& palette, qreal ratio);
  // "in FS2002, in Hangar"; "" for the blank picture.
  static QString words(int number);

 private:
  std::map<std::pair<int, qreal>, QPixmap> drawn_;
};

}  // namespace skv::ui::qt
