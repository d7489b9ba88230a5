// Small icons that say where an add-on lives: a picture has a cell for each place, and picture n
// stands for the places in n - 1, bit by bit.
//
//   aircraft  1 to 8   bit 1 the simulator, bit 2 the Packages, bit 4 the Hangar; picture 1 is
//   blank library   1 to 4   bit 1 the simulator, bit 2 the Packages; the library itself is in all
//   of them
#pragma once

#include <QPalette>
#include <QPixmap>
#include <QString>
#include <map>
#include <span>

namespace skv::ui::qt {

struct PlaceSet {
  struct Place {
    const char* drawing;
    const char* words;
    const char* onLight;
    const char* onDark;
    int bit;  // 0: in every picture
  };
  std::span<const Place> places;  // in the order of the cells
  const char* onlyFirst;          // the words for picture 1
  int pictures;
  // Device-independent pixels.
  int cell;
  int glyph;

  QSize size() const { return {static_cast<int>(places.size()) * cell, cell}; }
  bool stands(int number, const Place& place) const {
    return number >= 1 && number <= pictures && (place.bit == 0 || ((number - 1) & place.bit) != 0);
  }
  // "in FS2002, in Hangar"; "" for a number that is no picture.
  QString words(int number) const;
};

const PlaceSet& aircraftPlaces();
const PlaceSet& libraryPlaces();

class PlacePictures {
 public:
  explicit PlacePictures(const PlaceSet& set) : set_(set) {}

  QSize size() const { return set_.size(); }
  // Blank for a number that is no picture. Drawn once for each sharpness, light or
  // dark, and contrast.
  const QPixmap& picture(int number, const QPalette& palette, qreal ratio);

 private:
  const PlaceSet& set_;
  std::map<std::tuple<int, qreal, bool, bool>, QPixmap> drawn_;
};

}  // namespace skv::ui::qt
