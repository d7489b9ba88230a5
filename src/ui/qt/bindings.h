// Keeps the widgets of the windows like the controls they show.
//
// A control may change thousands of times in a row, so a change is only noted: the widgets follow
// when the event loop runs next, before anything is painted and before a click or a key is looked
// at. What the user does goes the other way at once: the control's data first, then its event.
#pragma once

#include <QObject>
#include <QPoint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ui/model/controls.h"
#include "ui/qt/picture_loader.h"

class QWidget;

namespace skv::ui::qt {

class Bindings;

// One widget (or action) and its control. Lives as long as its owner, which may outlive the
// control when it was detached before.
class Binding : public QObject {
 public:
  Binding(Bindings& all, Form& form, Control& control, QObject* owner,
          std::function<void()> refresh);
  ~Binding() override;

  // Forgets the control, for a window that is put away.
  void detach();
  bool attached() const { return control_ != nullptr; }
  Control* control() const { return control_; }  // null once it is detached
  // Called by detach; not when the binding itself goes.
  std::function<void()> onDetach;
  // Asks for a refresh as if the control had changed.
  void note();
  // Whether what the user does reaches the control.
  bool accepts() const { return control_ && form_.enabled && control_->enabled; }

  // The user has done something to the control.
  template <class Event, class... Arguments>
  void fire(const Event& event, Arguments&&... arguments) const {
    act();
    tell(event, std::forward<Arguments>(arguments)...);
  }
  void act() const {
    if (accepts()) raise(form_.userActed);
  }
  // Something that comes about without the user as well, such as a change of focus.
  template <class Event, class... Arguments>
  void tell(const Event& event, Arguments&&... arguments) const {
    if (accepts()) raise(event, std::forward<Arguments>(arguments)...);
  }

 private:
  friend class Bindings;
  Bindings& all_;
  Form& form_;
  Control* control_;
  std::function<void()> refresh_;
  bool noted_ = false;
};

class Bindings : public QObject {
 public:
  explicit Bindings(const PictureReader& pictures);

  // Brings all widgets up to date.
  void flush();
  // null when the control is on no window.
  QWidget* widgetOf(const Control& control) const;
  // A window that takes no input. It still hears a wish to close it, by key or close box.
  void setBlocked(QWidget* window, bool blocked);
  static void detachAll(QWidget& window);

  PictureLoader& pictures() { return pictures_; }
  // Where on the screen a menu belongs that a key has asked for; none when the mouse has.
  std::optional<QPoint> menuPlace() const { return menuPlace_; }

  bool event(QEvent* event) override;
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  friend class Binding;
  void note(Binding& binding);
  void forget(Binding& binding);
  bool isBlocked(QObject* receiver) const;

  std::vector<Binding*> noted_;  // null for one that is gone
  std::size_t next_ = 0;         // the first of them that a running flush has not reached
  bool posted_ = false;
  std::unordered_map<const Control*, Binding*> byControl_;
  std::vector<QWidget*> blocked_;
  std::optional<QPoint> menuPlace_;
  PictureLoader pictures_;
};

}  // namespace skv::ui::qt
