#include "ui/qt/call_to_front.h"

#include <QApplication>
#include <QWidget>

namespace skv::ui::qt {

namespace {

QWidget* windowToShow() {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  if (QWidget* active = QApplication::activeWindow()) return active;
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->isVisible() && window->windowType() != Qt::Popup &&
        window->windowType() != Qt::ToolTip)
      return window;
  return nullptr;
}

}  // namespace

void bringToFront(QWidget& window) {
  for (QWidget* each = &window; each; each = each->parentWidget())
    if (each->isWindow() && each->isMinimized())
      each->setWindowState(each->windowState() & ~Qt::WindowMinimized);
  window.raise();
  window.activateWindow();
}

void callToFront(const std::string& token) {
  QWidget* window = windowToShow();
  if (!window) return;
  if (!token.empty()) qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
  bringToFront(*window);
}

}  // namespace skv::ui::qt
