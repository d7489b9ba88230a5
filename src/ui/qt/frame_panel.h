// A Frame on screen: its caption above its content. A card has a ground of its own.
#pragma once

#include <QFrame>

#include "ui/qt/bindings.h"

class QVBoxLayout;

namespace skv::ui::qt {

class CaptionLabel;

class FramePanel : public QFrame {
 public:
  FramePanel(Bindings& bindings, Form& form, Frame& frame, bool card);
  // Where the content goes.
  QVBoxLayout* body() { return body_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void refresh();

  Frame& frame_;
  bool card_;
  QVBoxLayout* body_;
  CaptionLabel* caption_;
  Binding* binding_;
};

}  // namespace skv::ui::qt
