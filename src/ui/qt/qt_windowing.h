// The window system of the program: Qt.
#pragma once

#include <QPointer>
#include <QTimer>
#include <chrono>
#include <functional>
#include <map>
#include <string>

#include "platform/file_system.h"
#include "platform/pictures.h"
#include "ui/model/windowing.h"
#include "ui/qt/bindings.h"
#include "ui/qt/form_makers.h"

class QEventLoop;
class QWidget;

namespace skv::ui::qt {

// Made after the QApplication and before the forms it shows; run() gives every window back, so that
// the forms may go first.
class QtWindowing : public Windowing {
 public:
  QtWindowing(const FileSystem& files, const PictureReader& pictures);
  ~QtWindowing() override;

  // Which forms have windows here. One that has none stops the program with a word.
  const FormMakers& makers() const { return makers_; }

  // From now on the form's window follows form.visible; it is made when that is first set.
  void prepare(Form& form);
  // The event loop of the program: calls `start` first and returns after quit(), when every
  // operation that was running has come to its end.
  void run(const std::function<void()>& start);
  // Ends run() and all waits.
  void quit();
  // Gives all windows back.
  void unloadAll();

  Answer messageBox(const Box& box) override;
  std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                      const std::string& text) override;
  Result<PickedFile> openFile(const FileDialog& dialog) override;
  void show(Form& form, Form* owner) override;
  void showModal(Form& form, Form* owner) override;
  void hide(Form& form) override;
  void unload(Form& form) override;
  void setPointer(Pointer pointer) override;
  void setFocus(Control& control) override;
  int longestScreenSide() const override;
  void copyText(const std::string& text) override;
  void popUp(MenuItem& menu) override;
  void yield() override;
  void yieldTimes(int count) override;
  void yieldUntil(const std::function<bool()>& condition) override;

 private:
  using Clock = std::chrono::steady_clock;

  void present(Form& form, Form* owner);
  void presentSplash();
  void hideSplash();
  QWidget* shownWindow(Form* form) const;
  QWidget* boxOwner() const;

  const FileSystem& files_;
  Bindings bindings_;
  FormMakers makers_;
  std::map<Form*, QPointer<QWidget>> windows_;
  Pointer pointer_ = Pointer::normal;
  QEventLoop* loop_ = nullptr;
  bool ending_ = false;
  // Shown as far as the program knows, and on screen when the start takes its time.
  Form* splash_ = nullptr;
  QTimer splashTimer_;
  Clock::time_point nextLook_;  // before it a yield costs nothing

  class WithoutHourglass;
};

}  // namespace skv::ui::qt
