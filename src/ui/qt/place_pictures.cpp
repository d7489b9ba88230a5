#include "ui/qt/place_pictures.h"

#include <QPainter>
#include <QStringList>
#include <array>

#include "ui/qt/icons.h"
#include "ui/qt/language.h"
#include "ui/qt/theme.h"

namespace skv::ui::qt {

namespace {

constexpr std::array<PlaceSet::Place, 3> ofAircraft{
    {{"aircraft", "in FS2002", "#1f6cb0", "#62aef0", 1},
     {"package", "as Package", "#a4620c", "#e3a552", 2},
     {"hangar", "in Hangar", "#2a7a45", "#67c088", 4}}};
constexpr std::array<PlaceSet::Place, 3> ofLibrary{
    {{"library", "in the library", "#2a7a45", "#67c088", 0},
     {"aircraft", "in FS2002", "#1f6cb0", "#62aef0", 1},
     {"package", "as Package", "#a4620c", "#e3a552", 2}}};

}  // namespace

const PlaceSet& aircraftPlaces() {
  static constexpr PlaceSet set{
      .places = ofAircraft, .onlyFirst = "", .pictures = 8, .cell = 32, .glyph = 20};
  return set;
}

const PlaceSet& libraryPlaces() {
  static constexpr PlaceSet set{.places = ofLibrary,
                                .onlyFirst = "only in the library",
                                .pictures = 4,
                                .cell = 24,
                                .glyph = 17};
  return set;
}

QString PlaceSet::words(int number) const {
  if (number == 1) return captioned(onlyFirst);
  QStringList words;
  for (const Place& place : places)
    if (stands(number, place)) words << captioned(place.words);
  return words.join(QStringLiteral(", "));
}

const QPixmap& PlacePictures::picture(int number, const QPalette& palette, qreal ratio) {
  QPixmap& pixmap = drawn_[{number, ratio, isDark(palette), hasStrongBorders(palette)}];
  if (!pixmap.isNull()) return pixmap;
  pixmap = QPixmap(set_.size() * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  const int margin = (set_.cell - set_.glyph) / 2;
  int left = margin;
  for (const PlaceSet::Place& place : set_.places) {
    if (set_.stands(number, place)) {
      const QColor hue(isDark(palette) ? place.onDark : place.onLight);
      // The hues do not stand out enough on a selected row of strong contrast.
      const QColor colour = hasStrongBorders(palette) ? palette.color(QPalette::WindowText) : hue;
      painter.drawPixmap(
          left, margin,
          drawing(QLatin1String(place.drawing), {set_.glyph, set_.glyph}, ratio, colour));
    }
    left += set_.cell;
  }
  return pixmap;
}

}  // namespace skv::ui::qt
