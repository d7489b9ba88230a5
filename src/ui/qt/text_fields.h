// A TextBox on screen, in one line or in several.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include "ui/qt/bindings.h"

namespace skv::ui::qt {

class TextLine : public QLineEdit {
 public:
  TextLine(Bindings& bindings, Form& form, TextBox& box);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  TextBox& box_;
  Binding* binding_;
};

// Wraps long text. Where the box holds no line breaks, what is pasted goes through its key handler,
// a line break as the Enter key.
class TextArea : public QPlainTextEdit {
 public:
  TextArea(Bindings& bindings, Form& form, TextBox& box);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  TextBox& box_;
  Binding* binding_;
  bool refreshing_ = false;
};

}  // namespace skv::ui::qt
