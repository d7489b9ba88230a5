#include "ui/qt/form_window.h"

#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QScreen>
#include <QTabBar>
#include <algorithm>
#include <utility>

#include "ui/qt/owned_dialogs.h"
#include "ui/qt/scroll_room.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

constexpr int settleMilliseconds = 120;
constexpr int refusalMilliseconds = 1000;
// Most operations are over sooner, and a window that greys for a blink is worse than one that
// does not.
constexpr int patienceMilliseconds = 500;

int pixels(int twips) { return twips / twipsPerPixel; }

QSize sizeOf(const Form& form) { return {pixels(form.width), pixels(form.height)}; }

// The screen on which enough of the title bar is seen to move the window; null when none has it.
const QScreen* screenOf(QPoint place, QSize size) {
  constexpr int leastSeen = 80;
  const QRect titleBar(place, QSize(size.width(), 40));
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry() & titleBar;
    if (seen.width() >= leastSeen && seen.height() >= 20) return screen;
  }
  return nullptr;
}

// Where a window opens: all of it on a screen. A stored place may lie on one that is gone.
QPoint onScreen(QPoint place, QSize size) {
  const QScreen* screen = screenOf(place, size);
  const QRect area = (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
  const QSize spare = roomOnScreen(screen ? *screen : *QGuiApplication::primaryScreen()) - size;
  if (!screen) return area.topLeft() + QPoint(qMax(0, spare.width()), qMax(0, spare.height())) / 2;
  return {qBound(area.x(), place.x(), area.x() + qMax(0, spare.width())),
          qBound(area.y(), place.y(), area.y() + qMax(0, spare.height()))};
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
  patience_.setSingleShot(true);
  patience_.setInterval(patienceMilliseconds);
  connect(&patience_, &QTimer::timeout, this, [this] { setGreyed(true); });
  if (auto* dialog = dynamic_cast<FormDialog*>(&window)) dialog->onAbandon = [this] { abandon(); };
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
  window_.setWindowTitle(captioned(form_.caption));
  block();
  if (!form_.visible) hideAway();
  place();
  if (form_.visible && !window_.isVisible()) {
    if (form_.width == 0) fitToScreen();
    window_.show();
    window_.raise();
    window_.activateWindow();
  }
  if (onRefresh) onRefresh();
}

void FormWindow::hideAway() {
  if (window_.isVisible()) endDialogsAbove(window_);
  window_.hide();
}

void FormWindow::block() {
  bindings_.setBlocked(&window_, !form_.enabled);
  if (form_.enabled) {
    patience_.stop();
    setGreyed(false);
  } else if (!greyed_ && !patience_.isActive()) {
    patience_.start();
  }
}

void FormWindow::setGreyed(bool greyed) {
  if (greyed == greyed_ || (greyed && form_.enabled)) return;
  greyed_ = greyed;
  if (greyed) focus_ = window_.focusWidget();
  if (parts_.empty())
    for (QWidget* part : window_.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
      if (!part->isWindow()) parts_.push_back(part);
  for (QWidget* part : parts_) part->setEnabled(!greyed);
  // As if the window had only been away: the field was never left.
  if (!greyed && focus_) focus_->setFocus(Qt::ActiveWindowFocusReason);
}

// A dialog is as large as its layout likes, and scrolls where the screen is smaller.
void FormWindow::fitToScreen() {
  const QSize wanted = window_.sizeHint();
  const QSize room = roomOnScreen(*window_.screen());
  if (wanted.boundedTo(room) == wanted || !window_.layout() || qobject_cast<QMainWindow*>(&window_))
    return;
  QWidget* focus = window_.focusWidget();
  ScrollRoom::wrap(window_);
  if (focus) focus->setFocus();
  window_.resize(wanted.boundedTo(room));
}

// The program makes no window larger than its screen; a user may have done so.
QSize FormWindow::bounded(QSize size) const {
  const QPoint place{pixels(form_.left), pixels(form_.top)};
  const QScreen* screen = window_.isVisible() ? window_.screen() : screenOf(place, size);
  const QSize room = roomOnScreen(screen ? *screen : *QGuiApplication::primaryScreen());
  return size.boundedTo(window_.isVisible() ? room.expandedTo(window_.size()) : room);
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
      window_.resize(bounded(sizeOf(form_)));
      window_.move(onScreen({pixels(form_.left), pixels(form_.top)}, window_.size()));
    }
    window_.setWindowState((window_.windowState() & ~states) | wanted);
  }
  if (stateOf(window_) != Form::State::normal || settle_.isActive()) return;
  if (const QSize size = bounded(sizeOf(form_)); size != window_.size()) giveSize(size);
  const QPoint place{pixels(form_.left), pixels(form_.top)};
  if (!window_.isVisible())
    window_.move(onScreen(place, window_.size()));
  else if (place != window_.pos())
    window_.move(screenOf(place, window_.size()) ? place : onScreen(place, window_.size()));
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
  if (!binding_->attached() || !form_.visible) return;
  if (!form_.enabled) {
    raise(form_.closeRequested);
    return;
  }
  endDialogsAbove(window_);
  if (form_.closed)
    form_.closed();
  else
    form_.visible = false;
}

void FormWindow::abandon() {
  if (!binding_->attached() || !form_.visible) return;
  raise(form_.closed);
  form_.visible = false;
}

bool FormWindow::turnTab(const QKeyEvent& key) {
  const bool back = key.key() == Qt::Key_Backtab;
  if (!(key.modifiers() & Qt::ControlModifier) || (key.key() != Qt::Key_Tab && !back)) return false;
  // The strip nearest to the keyboard, else the first one.
  const QWidget* focus = window_.focusWidget();
  const auto holdsFocus = [&](const QTabBar* bar) {
    return focus && (bar == focus || bar->parentWidget()->isAncestorOf(focus));
  };
  QTabBar* nearest = nullptr;
  for (QTabBar* bar : window_.findChildren<QTabBar*>()) {
    if (!bar->isVisible() || !bar->isEnabled() || bar->window() != &window_ || bar->count() < 2)
      continue;
    const bool inside = nearest && nearest->parentWidget()->isAncestorOf(bar);
    if (!nearest || (holdsFocus(bar) && (inside || !holdsFocus(nearest)))) nearest = bar;
  }
  if (!nearest) return false;
  // What has the keyboard is about to go out of sight.
  if (holdsFocus(nearest)) nearest->setFocus(Qt::TabFocusReason);
  const int count = nearest->count();
  nearest->setCurrentIndex((nearest->currentIndex() + (back ? count - 1 : 1)) % count);
  return true;
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
    case QEvent::KeyPress:
      return turnTab(*static_cast<QKeyEvent*>(event));
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
