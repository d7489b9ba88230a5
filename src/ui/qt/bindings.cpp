#include "ui/qt/bindings.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QWidget>
#include <algorithm>

namespace skv::ui::qt {

Binding::Binding(Bindings& all, Form& form, Control& control, QObject* owner,
                 std::function<void()> refresh)
    : QObject(owner), all_(all), form_(form), control_(&control), refresh_(std::move(refresh)) {
  owner->setObjectName(QString::fromStdString(control.name()));
  control.onChange = [this] { note(); };
  all_.byControl_[&control] = this;
  note();
}

Binding::~Binding() {
  onDetach = nullptr;
  detach();
}

void Binding::detach() {
  if (!control_) return;
  control_->onChange = nullptr;
  all_.forget(*this);
  control_ = nullptr;
  if (onDetach) onDetach();
}

void Binding::note() {
  if (control_ && !noted_) all_.note(*this);
}

Bindings::Bindings(const PictureReader& pictures) : pictures_(pictures) {
  QCoreApplication::instance()->installEventFilter(this);
}

void Bindings::note(Binding& binding) {
  binding.noted_ = true;
  noted_.push_back(&binding);
  if (posted_) return;
  posted_ = true;
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void Bindings::forget(Binding& binding) {
  byControl_.erase(binding.control_);
  std::ranges::replace(noted_, &binding, nullptr);
}

void Bindings::flush() {
  // A refresh may note others and, by showing a window, end up here again.
  while (next_ < noted_.size()) {
    Binding* binding = noted_[next_++];
    if (!binding) continue;
    binding->noted_ = false;
    binding->refresh_();
  }
  noted_.clear();
  next_ = 0;
}

QWidget* Bindings::widgetOf(const Control& control) const {
  const auto found = byControl_.find(&control);
  return found == byControl_.end() ? nullptr : qobject_cast<QWidget*>(found->second->parent());
}

void Bindings::setBlocked(QWidget* window, bool blocked) {
  std::erase(blocked_, window);
  if (blocked) blocked_.push_back(window);
}

void Bindings::detachAll(QWidget& window) {
  for (QObject* object : window.findChildren<QObject*>())
    if (auto* binding = dynamic_cast<Binding*>(object)) binding->detach();
}

bool Bindings::event(QEvent* event) {
  if (event->type() != QEvent::User) return QObject::event(event);
  posted_ = false;
  flush();
  return true;
}

bool Bindings::isBlocked(QObject* receiver) const {
  if (blocked_.empty() || !receiver->isWidgetType()) return false;
  return std::ranges::find(blocked_, static_cast<QWidget*>(receiver)->window()) != blocked_.end();
}

bool Bindings::eventFilter(QObject* receiver, QEvent* event) {
  switch (event->type()) {
    case QEvent::UpdateRequest:
      flush();
      return false;
    case QEvent::KeyPress:
      menuPlace_.reset();
      flush();
      if (!isBlocked(receiver)) return false;
      if (static_cast<QKeyEvent*>(event)->keyCombination() == (Qt::CTRL | Qt::Key_Q))
        static_cast<QWidget*>(receiver)->window()->close();
      return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::ContextMenu:
      menuPlace_.reset();
      if (event->type() == QEvent::ContextMenu)
        if (const auto* menu = static_cast<QContextMenuEvent*>(event);
            menu->reason() == QContextMenuEvent::Keyboard)
          menuPlace_ = menu->globalPos();
      flush();
      return isBlocked(receiver);
    // A button's or key's release passes: a widget that was pressed before must see its end.
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::DragEnter:
    case QEvent::Drop:
      return isBlocked(receiver);
    default:
      return false;
  }
}

}  // namespace skv::ui::qt
