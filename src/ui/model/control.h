// What every control has, and the one notification by which a window learns of changes.
//
// A control is data. The operations read and write it; a front-end that draws it sets `onChange`
// and looks at the data when it is called. Measures are twips, 1,440 to the inch.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace skv::ui {

class Control;

// A member of a control that tells its owner when its value changes.
template <class T>
class Property {
 public:
  explicit Property(Control& owner, T value = {}) : owner_(owner), value_(std::move(value)) {}
  Property(const Property&) = delete;
  Property& operator=(const Property& other) { return *this = other.value_; }
  Property& operator=(T value);

  operator const T&() const { return value_; }  // NOLINT(google-explicit-constructor)
  const T& get() const { return value_; }
  const T* operator->() const { return &value_; }

 private:
  Control& owner_;
  T value_;
};

using Text = Property<std::string>;

inline bool operator==(const Text& a, std::string_view b) { return a.get() == b; }
inline std::string operator+(const Text& a, std::string_view b) { return a.get() + std::string(b); }
inline std::string operator+(std::string_view a, const Text& b) { return std::string(a) + b.get(); }

class Control {
 public:
  // `name`: as the program's users of forms know it ("btnHangar"); also the widget's object name.
  explicit Control(std::string name) : name_(std::move(name)) {}
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& name() const { return name_; }

  Property<bool> visible{*this, true};
  Property<bool> enabled{*this, true};
  std::string hint;  // a tool tip, set before a window is made; "" for none

  // Set by the front-end; called after every change of the control's data. May be called many times
  // in a row, so a front-end notes the change and draws later.
  std::function<void()> onChange;
  void changed() {
    if (onChange) onChange();
  }

 private:
  std::string name_;
};

template <class T>
Property<T>& Property<T>::operator=(T value) {
  if (!(value_ == value)) {
    value_ = std::move(value);
    owner_.changed();
  }
  return *this;
}

// Calls an event's handler when there is one.
template <class... Declared, class... Given>
void raise(const std::function<void(Declared...)>& event, Given&&... arguments) {
  if (event) event(std::forward<Given>(arguments)...);
}

}  // namespace skv::ui
