// The window system as the operations ask for it: boxes, dialogs, forms on screen, yields.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/outcome.h"
#include "ui/model/controls.h"

namespace skv::ui {

enum class BoxIcon { none, information, question, exclamation, warning };
enum class BoxButtons { ok, okCancel, yesNo, yesNoCancel };
enum class Answer { ok, yes, no, cancel };

inline constexpr const char* programTitle = "FS Skyvault";

// The button that Enter presses. By default Yes or OK, and with the two icons that warn No or
// Cancel: Enter does not remove anything.
enum class DefaultButton { byIcon, yes, no, cancel };

// Always shown as plain text, whatever it looks like.
struct Box {
  std::string text;
  BoxIcon icon = BoxIcon::none;
  BoxButtons buttons = BoxButtons::ok;
  std::string title = programTitle;
  DefaultButton defaultButton = DefaultButton::byIcon;
  std::string details = {};  // a long text, which scrolls below the other one
  // Captions in the place of Yes and No; "" for those.
  std::string yes = {}, no = {};
};

struct FileDialog {
  std::string initialFolder;  // Windows path; "" lets the window system choose
  std::string filter;         // "Zip Files|*.zip"
};

struct PickedFile {
  std::string path;           // Windows path
  std::string initialFolder;  // as the dialog reports it afterwards, with trailing backslash
};

enum class Pointer { normal, hourglass };

class Windowing {
 public:
  virtual ~Windowing() = default;

  // Blocks until answered. Closing a Yes/No box answers No, one with Cancel answers that. A box
  // whose window goes away under it is closed with it.
  virtual Answer messageBox(const Box& box) = 0;
  // The text as typed; none when it was cancelled.
  virtual std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                              const std::string& text) = 0;
  // Fails with err::cancelled when the user leaves it.
  virtual Result<PickedFile> openFile(const FileDialog& dialog) = 0;

  // Shows a form without blocking, above its owner. Sets form.visible. A form that is hidden or
  // unloaded takes the boxes and forms above it along: they end as cancelled.
  virtual void show(Form& form, Form* owner) = 0;
  // Shows a form and returns when it is hidden again; the other forms take no input meanwhile.
  virtual void showModal(Form& form, Form* owner) = 0;
  virtual void hide(Form& form) = 0;
  // Gives the form's window back. Showing the form again makes a new one.
  virtual void unload(Form& form) = 0;

  virtual void setPointer(Pointer pointer) = 0;
  virtual void setFocus(Control& control) = 0;
  // Of the main window's screen, in the pixels that it really has.
  virtual int longestScreenSide() const = 0;
  virtual void copyText(const std::string& text) = 0;  // to the desktop's clipboard
  // Opens a menu at the mouse, or at the control from which a key has asked for it.
  virtual void popUp(MenuItem& menu) = 0;

  // Lets pending events run: any operation may run inside the call.
  virtual void yield() = 0;
  // What that many in a row do, the program's only pacing.
  virtual void yieldTimes(int count) {
    for (int i = 0; i < count; ++i) yield();
  }
  // Yields until the condition holds, without burning a processor while there is nothing to do.
  // Returns early when the program is ending.
  virtual void yieldUntil(const std::function<bool()>& condition) = 0;
};

}  // namespace skv::ui
