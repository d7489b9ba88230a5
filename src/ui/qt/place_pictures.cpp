#include "ui/qt/place_pictures.h"

#include <QPainter>
#include <QStringList>
#include <array>

#include "ui/qt/icons.h"
#include "ui/qt/theme.h"

namespace skv::ui::qt {

namespace {

struct Place {
  const char* drawing;
  const char* words;
  const char* onLight;
  const char* onDark;
};

// In the order of the cells, which is that of the bits.
constexpr std::array<Place, 3> places{{{"aircraft", "in FS2002", "#1f6cb0", "#62aef0"},
                                       {"package", "as Package", "#a4620c", "#e3a552"},
                                       {"hangar", "in Hangar", "#2a7a45", "#67c088"}}};
constexpr int glyph = 20;

bool stands(int number, std::size_t place) {
  return number >= 1 && number <= 8 && ((number - 1) >> place & 1) != 0;
}

}  // namespace

const QPixmap& PlacePictures::picture(int number, const QPalette& palette, qreal ratio) {
  QPixmap& pixmap = drawn_[{number, ratio}];
  if (!pixmap.isNull()) return pixmap;
  pixmap = QPixmap(size * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  constexpr int margin = (cell - glyph) / 2;
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!stands(number, i)) continue;
    const QColor colour(isDark(palette) ? places[i].onDark : places[i].onLight);
    painter.drawPixmap(static_cast<int>(i) * cell + margin, margin,
                       drawing(QLatin1String(places[i].drawing), {glyph, glyph}, ratio, colour));
  }
  return pixmap;
}

QString PlacePictures::words(int number) {
  QStringList words;
  for (std::size_t i = 0; i < places.size(); ++i)
    if (stands(number, i)) words << QLatin1String(places[i].words);
  return words.join(QStringLiteral(", "));
}

}  // namespace skv::ui::qt
