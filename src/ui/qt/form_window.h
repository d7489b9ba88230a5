// A Form on screen: title, place and size, state, and its close box, for any kind of window.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <vector>

#include "ui/qt/bindings.h"

namespace skv::ui::qt {

// Twips of a device-independent pixel: 1,440 to the inch, 96 pixels to the inch.
inline constexpr int twipsPerPixel = 15;

class FormWindow : public QObject {
 public:
  // `window` owns the result. A form that has a size gives it to the window; another takes the
  // window's own, until the window is put away.
  FormWindow(Bindings& bindings, Form& form, QWidget& window);

  // What is greyed while the form takes no input for more than a moment; without a call all of the
  // window's parts.
  void setGreyedParts(std::vector<QWidget*> parts) { parts_ = std::move(parts); }
  // Called after each change of the form's data.
  std::function<void()> onRefresh;
  Binding& binding() { return *binding_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void refresh();
  void place();
  void hideAway();
  void block();
  void setGreyed(bool greyed);
  bool turnTab(const QKeyEvent& key);
  void fitToScreen();
  QSize bounded(QSize size) const;
  void giveSize(QSize size);
  bool isNormal() const;
  void followPlace();
  void followSize();
  void noteState();
  void close();
  void abandon();

  Bindings& bindings_;
  Form& form_;
  QWidget& window_;
  Binding* binding_;
  bool filled_ = false;  // the parts have followed their controls once
  // The size that was last given to the window, when, and the one it had before. A window system
  // that soon goes back to the latter has refused, and is not asked again.
  QSize given_;
  QSize before_;
  QElapsedTimer sinceGiven_;
  std::vector<QWidget*> parts_;
  bool greyed_ = false;
  QTimer patience_;          // before a form that takes no input is greyed
  QPointer<QWidget> focus_;  // had the keyboard when the form was greyed
  // While the user drags a border, or the window system changes the state, the window is left
  // alone.
  QTimer settle_;
};

// A dialog whose Escape key is its close box, or its cancel button when it has one. The Enter key
// is a click on the default button: the field it was pressed in loses the focus first.
class FormDialog : public QDialog {
 public:
  explicit FormDialog(QWidget* owner) : QDialog(owner) {}
  std::function<void()> onEscape;
  std::function<void()> onAbandon;  // the window below goes away
  void reject() override;
};

}  // namespace skv::ui::qt
