#include "ui/qt/qt_windowing.h"

#include <QApplication>
#include <QClipboard>
#include <QEventLoop>
#include <QMenu>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "ui/model/dialogs.h"
#include "ui/qt/boxes.h"
#include "ui/qt/call_to_front.h"
#include "ui/qt/owned_dialogs.h"
#include "ui/qt/screen_reader.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {
using namespace std::chrono_literals;

// Operations yield after every entry of a folder; the window is looked after this often.
constexpr auto leastPause = 8ms;
// A window that is slow to draw gets half of the time, but is never left alone for longer.
constexpr auto longestPause = 40ms;
// A start that is over sooner would only flash the splash.
constexpr auto splashDelay = 150ms;
}  // namespace

// A box that asks is no time of waiting.
class QtWindowing::WithoutHourglass {
 public:
  explicit WithoutHourglass(const QtWindowing& windows)
      : suspended_(windows.pointer_ == Pointer::hourglass) {
    if (suspended_) QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
  }
  ~WithoutHourglass() {
    if (suspended_) QGuiApplication::restoreOverrideCursor();
  }
  WithoutHourglass(const WithoutHourglass&) = delete;
  WithoutHourglass& operator=(const WithoutHourglass&) = delete;

 private:
  bool suspended_;
};

QtWindowing::QtWindowing(const FileSystem& files, const PictureReader& pictures)
    : files_(files), bindings_(pictures) {
  describeToScreenReaders();
  QGuiApplication::setQuitOnLastWindowClosed(false);
  splashTimer_.setSingleShot(true);
  splashTimer_.setInterval(splashDelay);
  QObject::connect(&splashTimer_, &QTimer::timeout, [this] { presentSplash(); });
}

QtWindowing::~QtWindowing() { unloadAll(); }

void QtWindowing::prepare(Form& form) {
  windows_[&form];
  form.onChange = [this, &form] {
    if (!form.visible) return;
    // Later: the window's own binding takes the place of this function.
    QMetaObject::invokeMethod(
        &bindings_,
        [this, &form] {
          if (windows_.contains(&form) && form.visible) present(form, nullptr);
        },
        Qt::QueuedConnection);
  };
}

void QtWindowing::run(const std::function<void()>& start) {
  QEventLoop loop;
  loop_ = &loop;
  QTimer::singleShot(0, &loop, start);
  if (!ending_) loop.exec();
  loop_ = nullptr;
  unloadAll();
}

void QtWindowing::quit() {
  ending_ = true;
  // Not the application's quit: it would also cut short the boxes of an operation that is still at
  // work.
  if (loop_) loop_->quit();
}

void QtWindowing::unloadAll() {
  while (!windows_.empty()) QtWindowing::unload(*windows_.begin()->first);
  QtWindowing::setPointer(Pointer::normal);
}

QWidget* QtWindowing::shownWindow(Form* form) const {
  const auto found = form ? windows_.find(form) : windows_.end();
  return found != windows_.end() && found->second && found->second->isVisible()
             ? found->second.data()
             : nullptr;
}

QWidget* QtWindowing::boxOwner() const {
  if (QWidget* active = QApplication::activeWindow()) return active;
  for (const auto& [form, window] : windows_)
    if (window && window->isVisible()) return window;
  return nullptr;
}

Answer QtWindowing::messageBox(const Box& box) {
  const WithoutHourglass normal(*this);
  hideSplash();
  bindings_.flush();
  return runMessageBox(box, boxOwner());
}

std::optional<std::string> QtWindowing::inputBox(const std::string& prompt,
                                                 const std::string& title,
                                                 const std::string& text) {
  const WithoutHourglass normal(*this);
  hideSplash();
  bindings_.flush();
  return runInputBox(prompt, title, text, boxOwner());
}

Result<PickedFile> QtWindowing::openFile(const FileDialog& dialog) {
  const WithoutHourglass normal(*this);
  hideSplash();
  bindings_.flush();
  return runFileDialog(dialog, files_, boxOwner());
}

void QtWindowing::show(Form& form, Form* owner) {
  if (dynamic_cast<FrmSplash*>(&form)) {
    form.visible = true;
    splash_ = &form;
    splashTimer_.start();
    return;
  }
  hideSplash();
  // A new window gets the front by itself.
  QWidget* shown = shownWindow(&form);
  present(form, owner);
  if (shown) bringToFront(*shown);
}

void QtWindowing::presentSplash() {
  if (splash_ && splash_->visible) present(*splash_, nullptr);
}

// A picture that says nothing stands in the way of whatever asks.
void QtWindowing::hideSplash() {
  splashTimer_.stop();
  if (Form* splash = std::exchange(splash_, nullptr)) hide(*splash);
}

void QtWindowing::present(Form& form, Form* owner) {
  bindings_.flush();
  QPointer<QWidget>& window = windows_[&form];
  if (!window) window = makers_.make(bindings_, form, files_, shownWindow(owner));
  form.visible = true;
  bindings_.flush();
  window->raise();
}

void QtWindowing::showModal(Form& form, Form* owner) {
  hideSplash();
  unload(form);
  windows_[&form] = makers_.make(bindings_, form, files_, shownWindow(owner));
  windows_[&form]->setWindowModality(Qt::ApplicationModal);
  present(form, owner);
  yieldUntil([&form] { return !form.visible; });
}

void QtWindowing::hide(Form& form) {
  if (QWidget* window = shownWindow(&form)) endDialogsAbove(*window);
  form.visible = false;
  bindings_.flush();
}

void QtWindowing::unload(Form& form) {
  form.visible = false;
  if (splash_ == &form) splash_ = nullptr;
  const auto found = windows_.find(&form);
  if (found == windows_.end()) return;
  const QPointer<QWidget> window = found->second;
  windows_.erase(found);
  if (!window) {
    form.onChange = nullptr;
    return;
  }
  // The boxes above it are waited for, and must not go with it.
  endDialogsAbove(*window);
  window->hide();
  bindings_.setBlocked(window, false);
  Bindings::detachAll(*window);
  // Later: the caller may be an event of the window itself.
  window->deleteLater();
}

void QtWindowing::setPointer(Pointer pointer) {
  if (pointer == pointer_) return;
  pointer_ = pointer;
  if (pointer == Pointer::hourglass)
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QGuiApplication::restoreOverrideCursor();
}

void QtWindowing::setFocus(Control& control) {
  QWidget* widget = bindings_.widgetOf(control);
  if (!widget) return;
  bindings_.flush();
  widget->window()->raise();
  widget->window()->activateWindow();
  widget->setFocus();
}

int QtWindowing::longestScreenSide() const {
  const QWidget* window = boxOwner();
  const QScreen* screen = window ? window->screen() : QGuiApplication::primaryScreen();
  const QSizeF size = QSizeF(screen->size()) * screen->devicePixelRatio();
  return static_cast<int>(std::ceil(std::max(size.width(), size.height())));
}

void QtWindowing::copyText(const std::string& text) {
  QGuiApplication::clipboard()->setText(shown(text));
}

void QtWindowing::popUp(MenuItem& menu) {
  if (auto* widget = qobject_cast<QMenu*>(bindings_.widgetOf(menu))) {
    bindings_.flush();
    if (menu.available()) widget->popup(bindings_.menuPlace().value_or(QCursor::pos()));
  }
}

void QtWindowing::yield() {
  const auto begin = Clock::now();
  if (begin < nextLook_) return;
  bindings_.flush();
  QCoreApplication::processEvents();
  const auto end = Clock::now();
  nextLook_ = end + std::clamp<Clock::duration>(end - begin, leastPause, longestPause);
}

// A yield looks at most once in leastPause, and the rest would only ask for the time.
void QtWindowing::yieldTimes(int count) {
  if (count > 0) yield();
}

void QtWindowing::yieldUntil(const std::function<bool()>& condition) {
  bindings_.flush();
  while (!ending_ && !condition()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    bindings_.flush();
  }
}

}  // namespace skv::ui::qt
