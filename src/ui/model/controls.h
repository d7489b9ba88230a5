// The small controls of the forms. Captions carry their mnemonic as "&File".
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/pixels.h"
#include "ui/model/control.h"
#include "ui/model/list_view.h"

namespace skv::ui {

class Button : public Control {
 public:
  explicit Button(std::string name, std::string text = {})
      : Control(std::move(name)), caption(*this, std::move(text)) {}
  Text caption;
  std::function<void()> click;
};

class OptionButton : public Control {
 public:
  OptionButton(std::string name, std::string text, bool chosen)
      : Control(std::move(name)), caption(*this, std::move(text)), value(*this, chosen) {}
  Text caption;
  Property<bool> value;
  std::function<void()> click;
};

class Label : public Control {
 public:
  explicit Label(std::string name, std::string text = {})
      : Control(std::move(name)), caption(*this, std::move(text)) {}
  Text caption;
  Property<Colour> colour{*this, defaultColour};
  std::function<void()> click;  // a label that has one is drawn as a link
};

// The bar between two lists. `y` is the pointer's offset from the place where the bar was when the
// event came, in twips, positive downwards.
class SplitBar : public Control {
 public:
  using Control::Control;
  std::function<void(MouseButton, int y)> mouseDown, mouseMove, mouseUp;
};

// The border between the halves of a view, which the user drags.
class Divider : public Control {
 public:
  using Control::Control;
  Property<int> share{*this, 500};  // of the left half, in thousandths of both
};

class TextBox : public Control {
 public:
  // `labelText` is the label that stands before the box.
  explicit TextBox(std::string name, std::string labelText = {})
      : Control(std::move(name)), label(std::move(labelText)) {}
  Text text{*this};
  const std::string label;
  bool password = false;    // shown as asterisks
  bool multiLine = false;   // wraps; holds no line breaks unless the next says so
  bool lineBreaks = false;  // the Enter key and pasted line ends break the line; they are "\n"
  Button* save = nullptr;   // what Ctrl+S in the box presses; owned by the form
  std::function<void()> gotFocus, lostFocus;
  std::function<void()> change;  // the user has changed the text
  // Key 13 is Enter. A handler that sets `key` to 0 cancels the key and returns what is to be typed
  // in its place.
  std::function<std::string(int& key)> keyPress;
};

class ComboBox : public Control {
 public:
  using Control::Control;
  Property<std::vector<std::string>> items{*this};
  Property<int> listIndex{*this, -1};  // from 0; -1 is none
  std::function<void()> click;
};

class TabStrip : public Control {
 public:
  using Control::Control;
  Property<std::vector<std::string>> tabs{*this};
  Property<int> value{*this, 0};  // index of the current tab, from 0
  std::function<void(int index)> click;
};

class Frame : public Control {
 public:
  explicit Frame(std::string name, std::string text = {})
      : Control(std::move(name)), caption(*this, std::move(text)) {}
  Text caption;
  Property<Colour> colour{*this, defaultColour};  // of the caption
  std::function<void()> dblClick;
};

// A picture on the form. `picture` is the Windows path of the file it shows, "" for none. A file
// that has changed is shown anew when the control changes or the window is painted.
class Image : public Control {
 public:
  using Control::Control;
  Text picture{*this};
  // Shown in the place of `picture` while it is not null. Another picture is another object.
  Property<std::shared_ptr<const Pixels>> pixels{*this};
  Text tag{*this};
  std::function<void()> click;
  std::function<void(MouseButton)> mouseDown;
  // A file was dropped on the picture; a Windows path.
  std::function<void(const std::string& path)> fileDropped;
};

// One control that shows a text and a progress fill.
class StatusLine : public Control {
 public:
  using Control::Control;
  Text caption{*this};
  // How the last operation ended; shown while there is no caption, until the user's next event.
  Text notice{*this};
  Property<int> value{*this, 0};               // percent
  Property<bool> showsProgress{*this, false};  // whether the fill is drawn
  void setProgress(int percent) {
    value = percent;
    showsProgress = true;
  }
  void clearProgress() {
    value = 0;
    showsProgress = false;
  }
};

// The folder tree of a form. `folder` ends in a backslash.
class FolderTree : public Control {
 public:
  using Control::Control;
  Text folder{*this};
  std::function<void()> change;  // the user has selected another folder
};

class MenuItem : public Control {
 public:
  MenuItem(std::string name, std::string text, std::string keys = {})
      : Control(std::move(name)), caption(*this, std::move(text)), shortcut(std::move(keys)) {}
  Text caption;
  const std::string shortcut;  // "Ctrl+A", "F2", "" for none
  Property<bool> checked{*this, false};
  std::vector<MenuItem*> entries;  // a submenu's; owned by the form
  bool separator = false;
  std::function<void()> click;
  std::function<void()> closed;  // of a pop-up menu: it went away, and an entry's click is done
  // Whether the entry has something to do: an operation, or entries that have. A front-end draws
  // one that has not disabled.
  bool available() const {
    return click != nullptr || std::ranges::any_of(entries, &MenuItem::available);
  }
};

class Form : public Control {
 public:
  enum class State { normal = 0, minimised = 1, maximised = 2 };
  explicit Form(std::string name, std::string text = {})
      : Control(std::move(name)), caption(*this, std::move(text)) {
    visible = false;
  }
  Text caption;
  // Of the normal window, in twips. The front-end keeps them true; setting one moves the window.
  Property<int> left{*this}, top{*this}, width{*this}, height{*this};
  Property<State> windowState{*this, State::normal};

  // The window's close box was used. The default hides the form.
  std::function<void()> closed;
  // The same while the form takes no input: nothing is closed, and by default nothing happens.
  std::function<void()> closeRequested;
  std::function<void()> resized;
  // The user has done something: called before the event of the control that it was done to.
  std::function<void()> userActed;
};

}  // namespace skv::ui
