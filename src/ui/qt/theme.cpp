#include "ui/qt/theme.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QThreadPool>
#include <QTimer>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

#include "ui/qt/desktop_scheme.h"
#include "ui/qt/flat_style.h"
#include "ui/qt/icons.h"
#include "ui/qt/session_bus.h"

// A library's resources are not there until they are asked for, and not from within a namespace.
static void loadDrawings() { Q_INIT_RESOURCE(icons); }

namespace skv::ui::qt {

namespace {

struct Tones {
  const char *window, *card, *base, *alternate, *text, *muted, *faint, *border, *hover, *accent,
      *onAccent, *selection, *bar;
};

constexpr Tones lightTones{"#eef1f5", "#f8fafc", "#ffffff", "#f5f8fb", "#1c2733",
                           "#536170", "#9aa6b2", "#ccd5de", "#e6eef6", "#1f6cb0",
                           "#ffffff", "#d3e6f7", "#b4c0cc"};
constexpr Tones darkTones{"#1b2026", "#21272e", "#171b20", "#1c2127", "#e4e9ee",
                          "#a3b0bd", "#66727e", "#39424c", "#2b343d", "#58a8ea",
                          "#0d1a26", "#24435f", "#4b5763"};

// Borders and marks in the colour of the text, and grounds that are told apart.
constexpr Tones strongLightTones{"#ffffff", "#ffffff", "#ffffff", "#ffffff", "#000000",
                                 "#000000", "#5a5a5a", "#000000", "#d9d9d9", "#0000b0",
                                 "#ffffff", "#6cb4ff", "#000000"};
constexpr Tones strongDarkTones{"#000000", "#000000", "#000000", "#000000", "#ffffff",
                                "#ffffff", "#a6a6a6", "#ffffff", "#333333", "#ffff00",
                                "#000000", "#0a4fb5", "#ffffff"};

QPalette paletteOf(const Tones& tones) {
  QPalette palette;
  const auto set = [&palette](QPalette::ColorRole role, const char* colour) {
    palette.setColor(role, QColor(colour));
  };
  set(QPalette::Window, tones.window);
  set(QPalette::WindowText, tones.text);
  set(QPalette::Base, tones.base);
  set(QPalette::AlternateBase, tones.alternate);
  set(QPalette::Text, tones.text);
  set(QPalette::PlaceholderText, tones.muted);
  set(QPalette::Button, tones.card);
  set(QPalette::ButtonText, tones.text);
  set(QPalette::BrightText, tones.onAccent);
  set(QPalette::ToolTipBase, tones.card);
  set(QPalette::ToolTipText, tones.text);
  set(QPalette::Highlight, tones.selection);
  set(QPalette::HighlightedText, tones.text);
  set(QPalette::Link, tones.accent);
  set(QPalette::Light, tones.card);
  set(QPalette::Midlight, tones.hover);
  set(QPalette::Mid, tones.border);
  set(QPalette::Dark, tones.bar);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
    palette.setColor(QPalette::Disabled, role, QColor(tones.faint));
  return palette;
}

double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
  const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

// The desktop's own colours, with what our style needs beside them.
QPalette strongPalette(const QPalette& desktop, bool dark) {
  if (!isHighContrast(desktop)) return paletteOf(dark ? strongDarkTones : strongLightTones);
  QPalette palette = desktop;
  for (const auto role : {QPalette::Light, QPalette::AlternateBase, QPalette::Button})
    palette.setColor(role, desktop.color(QPalette::Window));
  for (const auto role : {QPalette::Mid, QPalette::Dark, QPalette::PlaceholderText})
    palette.setColor(role, desktop.color(QPalette::WindowText));
  palette.setColor(QPalette::Midlight,
                   QColor(isDark(desktop) ? strongDarkTones.hover : strongLightTones.hover));
  palette.setColor(QPalette::BrightText, contrast(palette.color(QPalette::Link), Qt::white) >= 4.5
                                             ? Qt::white
                                             : Qt::black);
  return palette;
}

QColor plain(Colour colour) {
  return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
          static_cast<int>(colour >> 16 & 0xFF)};
}

QColor mixed(const QColor& a, const QColor& b, float share) {
  const auto part = [share](float x, float y) { return x + (y - x) * share; };
  return QColor::fromRgbF(part(a.redF(), b.redF()), part(a.greenF(), b.greenF()),
                          part(a.blueF(), b.blueF()));
}

// Does what the first window need not wait for when that one is complete.
class Afterwards : public QObject {
 public:
  Afterwards(QObject* parent, std::function<void()> work)
      : QObject(parent), work_(std::move(work)) {}

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::Paint) return false;
    qApp->removeEventFilter(this);
    constexpr auto restOfTheWindow = std::chrono::milliseconds(100);  // more than it takes
    QTimer::singleShot(restOfTheWindow, this, [this] {
      work_();
      deleteLater();
    });
    return false;
  }

 private:
  std::function<void()> work_;
};

void wear(const QPalette& palette) {
  QApplication::setPalette(palette);
  QToolTip::setPalette(palette);
}

// Dresses anew when the user of the desktop goes from light to dark, or back.
void followDesktop(const QPalette& desktop, const DesktopScheme& scheme) {
  constexpr auto restOfTheChange = std::chrono::milliseconds(50);  // it comes as several signals
  auto* settle = new QTimer(qApp);
  settle->setSingleShot(true);
  settle->setInterval(restOfTheChange);
  QObject::connect(settle, &QTimer::timeout, qApp, [desktop, worn = scheme]() mutable {
    worn = schemeAfter(worn, desktop);
    wear(paletteFor(worn, desktop));
  });
  startAtSchemeChanges(*settle);
}

}  // namespace

QPalette paletteFor(const DesktopScheme& scheme, const QPalette& desktop) {
  return scheme.highContrast ? strongPalette(desktop, scheme.dark)
                             : paletteOf(scheme.dark ? darkTones : lightTones);
}

void dress(QApplication& application) {
  spareSearchForSessionBus();
  loadDrawings();
  const QPalette desktop = QApplication::palette();
  const DesktopScheme scheme = desktopScheme(desktop);
  // The search for the machine's fonts takes its time, and goes on beside what comes before the
  // first widget. Whoever needs a font waits for the end of it. Not before the application is made
  // and the desktop has been asked: at that it is they who need the other processor.
  QThreadPool::globalInstance()->start([] { QFontDatabase::families(); });
  application.installEventFilter(new Afterwards(&application, [desktop, scheme] {
    QApplication::setWindowIcon(drawnIcon(QStringLiteral("fsskyvault")));  // of many sizes
    followDesktop(desktop, scheme);
  }));
  application.setStyle(new FlatStyle);
  wear(paletteFor(scheme, desktop));
}

bool isDark(const QPalette& palette) {
  return luminance(palette.color(QPalette::Window)) <
         luminance(palette.color(QPalette::WindowText));
}

bool isHighContrast(const QPalette& palette) {
  constexpr double nearlyAll = 20;  // black and white have 21
  return contrast(palette.color(QPalette::Window), palette.color(QPalette::WindowText)) >=
         nearlyAll;
}

bool hasStrongBorders(const QPalette& palette) {
  return palette.color(QPalette::Mid) == palette.color(QPalette::WindowText);
}

QColor legible(Colour colour, const QPalette& palette) {
  if (colour == defaultColour) return palette.color(QPalette::Text);
  constexpr double readable = 4.5;
  const QColor goal = isDark(palette) ? Qt::white : Qt::black;
  QColor result = plain(colour);
  const auto reads = [&] {
    return std::ranges::all_of(
        std::initializer_list<QColor>{palette.color(QPalette::Base),
                                      palette.color(QPalette::Window),
                                      palette.color(QPalette::Highlight), tint(colour, palette)},
        [&](const QColor& background) { return contrast(result, background) >= readable; });
  };
  for (int steps = 0; steps < 40 && !reads(); ++steps) result = mixed(result, goal, 0.08F);
  return result;
}

QColor tint(Colour colour, const QPalette& palette) {
  const QColor base = palette.color(QPalette::Base);
  return colour == defaultColour ? base : mixed(base, plain(colour), 0.3F);
}

}  // namespace skv::ui::qt
