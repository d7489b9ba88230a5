#include "ui/qt/theme.h"

#include <QApplication>
#include <algorithm>
#include <cmath>

#include "ui/qt/flat_style.h"

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
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(tones.faint));
  return palette;
}

constexpr const char* sheet = R"(
QMenuBar { background: @window; padding: 3px 6px; border-bottom: 1px solid @border; }
QMenuBar::item { padding: 5px 11px; border-radius: 5px; background: transparent; }
QMenuBar::item:selected { background: @hover; }
QMenu { background: @base; border: 1px solid @border; padding: 5px; }
QMenu::item { padding: 6px 26px 6px 24px; border-radius: 4px; background: transparent; }
QMenu::item:selected { background: @selection; }
QMenu::item:disabled { color: @faint; background: transparent; }
QMenu::separator { height: 1px; background: @border; margin: 5px 8px; }

QFrame[card="true"] { background: @card; border: 1px solid @border; border-radius: 8px; }
QFrame[outline="true"] { border: 1px solid @bar; }

QPushButton { background: @base; color: @text; border: 1px solid @border; border-radius: 5px;
  padding: 4px 14px; min-height: 18px; }
QPushButton[small="true"] { padding: 4px 8px; min-width: 16px; }
QPushButton:hover { background: @hover; }
QPushButton:pressed { background: @selection; }
QPushButton:focus { border-color: @accent; }
QPushButton:default { background: @accent; border-color: @accent; color: @onAccent; }
QPushButton:default:focus { border-color: @text; }
QPushButton:disabled { background: transparent; color: @faint; border-color: @border; }

QLineEdit, QPlainTextEdit { background: @base; border: 1px solid @border; border-radius: 5px;
  padding: 3px 7px; selection-background-color: @accent; selection-color: @onAccent; }
QLineEdit { min-height: 18px; }
QLineEdit:focus, QPlainTextEdit:focus { border-color: @accent; }
QLineEdit:disabled, QPlainTextEdit:disabled { background: @card; color: @faint; }
QTreeView QLineEdit { border-radius: 0; padding: 0 3px; min-height: 0; border-color: @accent; }

QTreeView { background: @base; border: 1px solid @border; border-radius: 5px; padding: 1px; }
QTreeView:focus { border-color: @accent; }
QHeaderView { background: @card; border: none; border-bottom: 1px solid @border; }
QHeaderView::section { background: @card; color: @muted; border: none; padding: 5px 6px;
  border-right: 1px solid @border; border-bottom: 1px solid @border; font-weight: 600; }
QHeaderView::section:hover { background: @hover; }

QTabBar { qproperty-drawBase: 0; }
QTabBar::tab { background: transparent; color: @muted; padding: 6px 15px; border: none;
  border-bottom: 2px solid transparent; }
QTabBar::tab:hover { color: @text; border-bottom-color: @border; }
QTabBar::tab:selected { color: @text; border-bottom-color: @accent; }
QTabBar::tab:selected:focus { background: @hover; }

QScrollBar:vertical { background: transparent; width: 12px; margin: 2px; }
QScrollBar:horizontal { background: transparent; height: 12px; margin: 2px; }
QScrollBar::handle { background: @bar; border-radius: 4px; }
QScrollBar::handle:vertical { min-height: 28px; }
QScrollBar::handle:horizontal { min-width: 28px; }
QScrollBar::handle:hover { background: @muted; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }

QToolTip { background: @card; color: @text; border: 1px solid @border; padding: 4px 6px; }
)";

QString sheetOf(const Tones& tones) {
  QString text = QString::fromLatin1(sheet);
  for (const auto& [name, colour] : {std::pair{"@window", tones.window},
                                     {"@card", tones.card},
                                     {"@base", tones.base},
                                     {"@text", tones.text},
                                     {"@muted", tones.muted},
                                     {"@faint", tones.faint},
                                     {"@border", tones.border},
                                     {"@bar", tones.bar},
                                     {"@hover", tones.hover},
                                     {"@accent", tones.accent},
                                     {"@onAccent", tones.onAccent},
                                     {"@selection", tones.selection}})
    text.replace(QLatin1String(name), QLatin1String(colour));
  return text;
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

QColor plain(Colour colour) {
  return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
          static_cast<int>(colour >> 16 & 0xFF)};
}

QColor mixed(const QColor& a, const QColor& b, float share) {
  const auto part = [share](float x, float y) { return x + (y - x) * share; };
  return QColor::fromRgbF(part(a.redF(), b.redF()), part(a.greenF(), b.greenF()),
                          part(a.blueF(), b.blueF()));
}

}  // namespace

void dress(QApplication& application) {
  loadDrawings();
  const Tones& tones = isDark(QApplication::palette()) ? darkTones : lightTones;
  application.setStyle(new FlatStyle);
  QApplication::setPalette(paletteOf(tones));
  application.setStyleSheet(sheetOf(tones));
}

bool isDark(const QPalette& palette) {
  return luminance(palette.color(QPalette::Window)) <
         luminance(palette.color(QPalette::WindowText));
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
