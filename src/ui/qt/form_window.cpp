#include "ui/qt/form_window.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <utility>

#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

constexpr int settleMilliseconds = 120;
constexpr int refusalMilliseconds = 1000;

int pixels(int twips) { return twips / twipsPerPixel; }

QSize sizeOf(const Form& form) { return {pixels(form.width), pixels(form.height)}; }

// A stored place may lie on a screen that is no longer there.
QPoint onScreen(QPoint place, QSize size) {
  constexpr int leastSeen = 80;
  const QRect titleBar(place, QSize(size.width(), 40));
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry() & titleBar;
    if (seen.width() >= leastSeen && seen.height() >= 20) return place;
  }
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  return {area.x() + qMax(0, (area.width() - size.width()) / 2),
          area.y() + qMax(0, (area.height() - size.height()) / 2)};
}

Form::State stateOf(const QWidget& window) {
  if (window.isMinimized()) return Form::State::minimised;
  return window.isMaximized() ? Form::State::maximised : Form::State::normal;
}

}  // namespace

FormWindow::FormWindow(Bindings& bindings, Form& form, QWidget& window)
    : QObject(&window), bindings_(bindings), form_(form), window_(window) {
  settle_.setSingleShot(true);
  settle_.setInterval(settleMilliseconds);
  connect(&settle_, &QTimer::timeout, this, [this] { binding_->note(); });
  window_.installEventFilter(this);
  binding_ = new Binding(bindings, form, form, &window, [this] { refresh(); });
  if (form.width == 0)
    binding_->onDetach = [&form] { form.left = form.top = form.width = form.height = 0; };
}

void FormWindow::refresh() {
  if (!std::exchange(filled_, true)) {
    // After the parts that were made with it: a window that grows when it has been shown may lose
    // its place.
    binding_->note();
    return;
  }
  window_.setWindowTitle(shown(form_.caption));
  bindings_.setBlocked(&window_, !form_.enabled);
  if (!form_.visible) window_.hide();
  place();
  if (form_.visible && !window_.isVisible()) {
    window_.show();
    window_.raise();
    window_.activateWindow();
  }
  if (onRefresh) onRefresh();
}

void FormWindow::place() {
  if (form_.width == 0) return;
  if (const Form::State state = form_.windowState; state != stateOf(window_)) {
    constexpr auto states = Qt::WindowMaximized | Qt::WindowMinimized;
    const auto wanted = state == Form::State::maximised   ? Qt::WindowMaximized
                        : state == Form::State::minimised ? Qt::WindowMinimized
                                                          : Qt::WindowNoState;
    // The normal place is what the window comes back to.
    if (!window_.isVisible()) {
      window_.resize(sizeOf(form_));
      window_.move(onScreen({pixels(form_.left), pixels(form_.top)}, sizeOf(form_)));
    }
    window_.setWindowState((window_.windowState() & ~states) | wanted);
  }
  if (stateOf(window_) != Form::State::normal || settle_.isActive()) return;
  if (const QSize size = sizeOf(form_); size != window_.size()) giveSize(size);
  if (const QPoint place{pixels(form_.left), pixels(form_.top)};
      place != window_.pos() || !window_.isVisible())
    window_.move(onScreen(place, window_.size()));
}

void FormWindow::giveSize(QSize size) {
  const QSize now = window_.size();
  if (size == given_ && now == before_ && sinceGiven_.isValid() &&
      sinceGiven_.elapsed() < refusalMilliseconds) {
    form_.width = now.width() * twipsPerPixel;
    form_.height = now.height() * twipsPerPixel;
    return;
  }
  before_ = now;
  given_ = size;
  sinceGiven_.start();
  window_.resize(size);
}

bool FormWindow::isNormal() const {
  return window_.isVisible() && stateOf(window_) == Form::State::normal && binding_->attached();
}

void FormWindow::followPlace() {
  const QPoint place = window_.pos();
  if (!isNormal() || place == QPoint(pixels(form_.left), pixels(form_.top))) return;
  form_.left = place.x() * twipsPerPixel;
  form_.top = place.y() * twipsPerPixel;
}

void FormWindow::followSize() {
  const QSize size = window_.size();
  if (!isNormal() || size == sizeOf(form_)) return;
  form_.width = size.width() * twipsPerPixel;
  form_.height = size.height() * twipsPerPixel;
  settle_.start();
  raise(form_.resized);
}

void FormWindow::noteState() {
  if (!window_.isVisible() || !binding_->attached()) return;
  const Form::State state = stateOf(window_);
  if (state == form_.windowState) return;
  form_.windowState = state;
  // Place and size of the new state are still to come.
  settle_.start();
  raise(form_.resized);
}

void FormWindow::close() {
  // A window that is disabled, or already on its way out, has no close box.
  if (!binding_->accepts() || !form_.visible) return;
  // The dialogs above it go first.
  for (QDialog* dialog : window_.findChildren<QDialog*>(Qt::FindDirectChildrenOnly))
    if (dialog->isVisible()) dialog->close();
  if (form_.closed)
    form_.closed();
  else
    form_.visible = false;
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &window_) return false;
  switch (event->type()) {
    case QEvent::Move:
      followPlace();
      return false;
    case QEvent::Resize:
      followSize();
      return false;
    case QEvent::WindowStateChange:
      noteState();
      return false;
    case QEvent::Close:
      event->ignore();
      close();
      return true;
    default:
      return false;
  }
}

void FormDialog::reject() {
  if (onEscape)
    onEscape();
  else
    close();
}

}  // namespace skv::ui::qt
